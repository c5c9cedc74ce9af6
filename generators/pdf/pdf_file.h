#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class ORVOutput;

/// Appends a number with at most four digits after the point: finer than any printer in user units.
void AppendPdfNumber(std::string& text, double number);
/// Appends a number with nine significant digits, for factors.
void AppendPdfFactor(std::string& text, double number);
/// Appends a text string in the format's Unicode form. What is no UTF-8 becomes U+FFFD.
void AppendPdfText(std::string& text, std::string_view utf8);
/// Appends UTF-8 as the hexadecimal digits of UTF-16.
void AppendHexUtf16(std::string& text, std::string_view utf8);

/// The objects of a PDF file, written as they come. One object or stream is open at a time. Write errors are
/// the output's to report; here, they end the writing.
class PdfFile {
public:
    explicit PdfFile(ORVOutput& output);
    ~PdfFile();
    PdfFile(const PdfFile&) = delete;
    PdfFile& operator=(const PdfFile&) = delete;

    /// The number of a new object, to be written later.
    unsigned int Reserve();
    void WriteObject(unsigned int number, std::string_view content);

    /// Begins a compressed stream.
    /// @param entries  of its dictionary, besides length and filter
    void BeginStream(unsigned int number, std::string_view entries);
    void AppendToStream(std::string_view bytes);
    void EndStream();
    /// A whole stream at once. @param compressed  whether the bytes are to be compressed
    void WriteStream(unsigned int number, std::string_view entries, std::string_view bytes, bool compressed);

    /// Writes the end of the file.
    void Finish(unsigned int catalogue, unsigned int info);

    /// False when the output failed, or memory is spent.
    bool IsGood() const { return good_; }

private:
    void Put(std::string_view bytes);
    void BeginObject(unsigned int number);
    void Deflate(bool atEnd);

    struct Compressor;

    ORVOutput& output_;
    bool good_ = true;
    std::uint64_t position_ = 0;
    std::vector<std::uint64_t> offsets_;  // by object number less one; 0 when not written yet
    std::unique_ptr<Compressor> compressor_;
    unsigned int lengthObject_ = 0;  // of the open stream
    std::uint64_t streamStart_ = 0;
};
