// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/interpreter/SvgDocumentSource.h"

#include <new>
#include <vector>

#include "platform/print/ORVPrintInput.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/system/files.h"

namespace {
constexpr const char* kLightParserVariable = "PRINT_WITHOUT_DOM_PARSER";
constexpr std::size_t kCountingBlock = 1U << 16U;  // bytes
}  // namespace

SvgDocumentSource::SvgDocumentSource(ORVPrintInputStream& stream)
    : useDOM_(ORVGetEnv(kLightParserVariable) ? 0 : 1) {
    ReadStream(stream);
}

SvgDocumentSource::SvgDocumentSource(const ORVLightXmlElementItf* element)
    : lightElement_(element), useDOM_(0) {}

SvgDocumentSource::SvgDocumentSource(const ORVIDOMElement_var& element) : domElement_(element), useDOM_(1) {}

// Reads the stream twice, first to determine its size: streams do not report it.
void SvgDocumentSource::ReadStream(ORVPrintInputStream& stream) {
    if (stream.Open("rb") < 0 || stream.IsOpen() == 0 || stream.IsReadable() == 0) return;

    const std::uint64_t most = ORVPrintLimits::Get(ORVPrintLimit::kInputBytes);
    std::size_t size = 0;
    bool hasFailed = false;
    {
        std::vector<char> block(kCountingBlock);
        while (stream.HasMoreData() && size <= most && !hasFailed) {
            const std::size_t got = stream.Read(block.data(), block.size());
            size += got;
            // Reading nothing before the end is a failure; a partial document is discarded.
            hasFailed = got == 0 && stream.HasMoreData();
        }
    }
    if (size > most || hasFailed) size = 0;
    stream.Reset();
    stream.Seek(0);
    if (size > 0) text_.reset(new (std::nothrow) char[size]);
    if (text_) {
        std::size_t filled = 0, got = 1;
        for (; got > 0 && filled < size; filled += got)
            got = stream.Read(text_.get() + filled, size - filled);
        // Reading failed, or the stream has become shorter.
        if (filled < size)
            text_.reset();
        else
            textSize_ = static_cast<std::int64_t>(size);
    }
    stream.Reset();
    stream.Seek(0);
    stream.Close();
}
