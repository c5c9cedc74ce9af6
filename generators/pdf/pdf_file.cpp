#include "generators/pdf/pdf_file.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "generators/common/ORVOutput.h"
#include "platform/system/ORVUnicodeString.h"

namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

/// Takes the character at the start of `text` off; U+FFFD for a byte that begins none.
char32_t TakeCharacter(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length > text.size() || !ORVIsWellFormedUTF8(text.substr(0, length))) {
        text.remove_prefix(1);
        return 0xFFFD;
    }
    char32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i)
        character = character << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
    text.remove_prefix(length);
    return character;
}

}  // namespace

void AppendPdfNumber(std::string& text, double number) {
    constexpr std::int64_t kUnit = 10'000;
    // Drawings stay far within this; what does not is cut off before.
    if (!(std::fabs(number) < 1e12)) number = 0.0;
    auto scaled = static_cast<std::int64_t>(std::llround(number * static_cast<double>(kUnit)));
    if (scaled < 0) {
        text += '-';
        scaled = -scaled;
    }
    std::array<char, 24> digits;
    const std::int64_t whole = scaled / kUnit;
    auto fraction = static_cast<int>(scaled % kUnit);
    if (whole != 0 || fraction == 0)
        text.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), whole).ptr);
    if (fraction == 0) return;
    char places[5] = {'.', '0', '0', '0', '0'};
    std::size_t length = 5;
    for (std::size_t i = 4; i >= 1; --i, fraction /= 10) places[i] = static_cast<char>('0' + fraction % 10);
    while (places[length - 1] == '0') --length;
    text.append(places, length);
}

void AppendPdfFactor(std::string& text, double number) {
    // The format knows no exponents.
    if (number == 0.0 || !std::isfinite(number)) {
        text += '0';
        return;
    }
    const int places = std::clamp(8 - static_cast<int>(std::floor(std::log10(std::fabs(number)))), 0, 40);
    std::array<char, 400> digits;
    auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed, places)
            .ptr;
    if (places > 0) {
        while (end[-1] == '0') --end;
        if (end[-1] == '.') --end;
    }
    text.append(digits.data(), end);
}

void AppendHexUtf16(std::string& text, std::string_view utf8) {
    const auto unit = [&text](unsigned int value) {
        for (int shift = 12; shift >= 0; shift -= 4)
            text += kHexDigits[value >> static_cast<unsigned>(shift) & 15U];
    };
    while (!utf8.empty()) {
        const char32_t character = TakeCharacter(utf8);
        if (character < 0x10000) {
            unit(character);
        } else {
            unit(0xD800U + ((character - 0x10000U) >> 10U));
            unit(0xDC00U + ((character - 0x10000U) & 0x3FFU));
        }
    }
}

void AppendPdfText(std::string& text, std::string_view utf8) {
    text += "<FEFF";
    AppendHexUtf16(text, utf8);
    text += '>';
}

struct PdfFile::Compressor {
    z_stream stream{};
    std::array<unsigned char, 1U << 16U> buffer;
    std::string pending;  // not handed to zlib yet, so that it gets large pieces
};

PdfFile::PdfFile(ORVOutput& output) : output_(output), compressor_(std::make_unique<Compressor>()) {
    // Drawings compress well at once; higher levels take far longer for a few per cent.
    constexpr int kLevel = 5;
    if (deflateInit(&compressor_->stream, kLevel) != Z_OK) good_ = false;
    // The bytes of the second line tell transfer programs that the file is binary.
    Put("%PDF-1.4\n%\xE2\xE3\xCF\xD3\n");
}

PdfFile::~PdfFile() { deflateEnd(&compressor_->stream); }

void PdfFile::Put(std::string_view bytes) {
    if (good_ && output_.Write(bytes.data(), bytes.size()) != 1) good_ = false;
    position_ += bytes.size();
}

unsigned int PdfFile::Reserve() {
    offsets_.push_back(0);
    return static_cast<unsigned int>(offsets_.size());
}

void PdfFile::BeginObject(unsigned int number) {
    offsets_[number - 1] = position_;
    Put(std::to_string(number) + " 0 obj\n");
}

void PdfFile::WriteObject(unsigned int number, std::string_view content) {
    BeginObject(number);
    Put(content);
    Put("\nendobj\n");
}

void PdfFile::BeginStream(unsigned int number, std::string_view entries) {
    // The length is known when the stream has been written; it stands in an object of its own.
    lengthObject_ = Reserve();
    BeginObject(number);
    Put("<<");
    Put(entries);
    Put("/Filter/FlateDecode/Length " + std::to_string(lengthObject_) + " 0 R>>\nstream\n");
    streamStart_ = position_;
    if (deflateReset(&compressor_->stream) != Z_OK) good_ = false;
}

void PdfFile::AppendToStream(std::string_view bytes) {
    compressor_->pending += bytes;
    if (compressor_->pending.size() >= (1U << 16U)) Deflate(false);
}

void PdfFile::Deflate(bool atEnd) {
    z_stream& stream = compressor_->stream;
    stream.next_in = reinterpret_cast<Bytef*>(compressor_->pending.data());
    stream.avail_in = static_cast<uInt>(compressor_->pending.size());
    int status = Z_OK;
    do {
        stream.next_out = compressor_->buffer.data();
        stream.avail_out = static_cast<uInt>(compressor_->buffer.size());
        status = deflate(&stream, atEnd ? Z_FINISH : Z_NO_FLUSH);
        if (status == Z_STREAM_ERROR) good_ = false;
        Put({reinterpret_cast<const char*>(compressor_->buffer.data()),
             compressor_->buffer.size() - stream.avail_out});
    } while (good_ && (atEnd ? status != Z_STREAM_END : stream.avail_in > 0 || stream.avail_out == 0));
    compressor_->pending.clear();
}

void PdfFile::EndStream() {
    Deflate(true);
    const std::uint64_t length = position_ - streamStart_;
    Put("\nendstream\nendobj\n");
    WriteObject(lengthObject_, std::to_string(length));
}

void PdfFile::WriteStream(unsigned int number, std::string_view entries, std::string_view bytes,
                          bool compressed) {
    if (compressed) {
        BeginStream(number, entries);
        // Straight from the caller's memory, in pieces that zlib can count.
        for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(bytes.size(), 1U << 20U)))
            AppendToStream(bytes.substr(0, 1U << 20U));
        EndStream();
        return;
    }
    BeginObject(number);
    Put("<<");
    Put(entries);
    Put("/Length " + std::to_string(bytes.size()) + ">>\nstream\n");
    Put(bytes);
    Put("\nendstream\nendobj\n");
}

void PdfFile::Finish(unsigned int catalogue, unsigned int info) {
    const std::uint64_t start = position_;
    Put("xref\n0 " + std::to_string(offsets_.size() + 1) + "\n0000000000 65535 f \n");
    for (const std::uint64_t offset : offsets_) {
        std::array<char, 32> line;
        if (offset == 0)
            std::snprintf(line.data(), line.size(), "0000000000 00000 f \n");
        else
            std::snprintf(line.data(), line.size(), "%010llu 00000 n \n",
                          static_cast<unsigned long long>(offset));
        Put(line.data());
    }
    Put("trailer\n<</Size " + std::to_string(offsets_.size() + 1) + "/Root " + std::to_string(catalogue) +
        " 0 R/Info " + std::to_string(info) + " 0 R>>\nstartxref\n" + std::to_string(start) + "\n%%EOF\n");
}
