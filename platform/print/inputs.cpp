// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"

const ORVMetaClass& ORVPrintInput::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrintInput", &ORVBaseObject::MetaClass());
    return metaClass;
}

ORVPrintInput::~ORVPrintInput() = default;

const ORVMetaClass& ORVPrintInputStream::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrintInputStream", &ORVPrintInput::MetaClass());
    return metaClass;
}

ORVPrintInputStream::~ORVPrintInputStream() = default;

const ORVMetaClass& ORVPrintInputMemoryStream::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrintInputMemoryStream", &ORVPrintInputStream::MetaClass());
    return metaClass;
}

ORVPrintInputMemoryStream::ORVPrintInputMemoryStream(std::string bytes) : bytes_(std::move(bytes)) {}

ORVPrintInputMemoryStream::~ORVPrintInputMemoryStream() = default;

int ORVPrintInputMemoryStream::Open(const char* /*mode*/) {
    open_ = true;
    atEnd_ = false;
    position_ = 0;
    return 1;
}

unsigned long ORVPrintInputMemoryStream::Read(void* buffer, unsigned long count) {
    const unsigned long available = std::min<unsigned long>(count, bytes_.size() - position_);
    if (available > 0) std::memcpy(buffer, bytes_.data() + position_, available);
    position_ += available;
    atEnd_ = available < count;
    return available;
}

int ORVPrintInputMemoryStream::Seek(long offset) {
    if (offset < 0 || static_cast<std::size_t>(offset) > bytes_.size()) return -1;
    position_ = static_cast<std::size_t>(offset);
    return 1;
}

const ORVMetaClass& ORVPrintInputFileStream::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrintInputFileStream", &ORVPrintInputStream::MetaClass());
    return metaClass;
}

ORVPrintInputFileStream::ORVPrintInputFileStream(const ORVUnicodeString& path) : path_(path) {}

ORVPrintInputFileStream::~ORVPrintInputFileStream() { Close(); }

int ORVPrintInputFileStream::Open(const char* mode) {
    Close();
    file_ = std::fopen(path_.ConvertToChar(), mode);
    return file_ ? 1 : -1;
}

unsigned long ORVPrintInputFileStream::Read(void* buffer, unsigned long count) {
    return file_ ? std::fread(buffer, 1, count, file_) : 0;
}

void ORVPrintInputFileStream::Reset() {
    if (file_) std::clearerr(file_);
}

int ORVPrintInputFileStream::Seek(long offset) {
    return file_ && std::fseek(file_, offset, SEEK_SET) == 0 ? 1 : -1;
}

void ORVPrintInputFileStream::Close() {
    if (file_) std::fclose(file_);
    file_ = nullptr;
}

const ORVMetaClass& ORVPrintInputXMLElement::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrintInputXMLElement", &ORVPrintInput::MetaClass());
    return metaClass;
}

ORVPrintInputXMLElement::~ORVPrintInputXMLElement() = default;
