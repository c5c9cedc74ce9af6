// SPDX-License-Identifier: Apache-2.0
#include "generators/postscript/dsc_header.h"

#include <algorithm>
#include <cmath>

#include "generators/common/ORVOutput.h"
#include "generators/common/number_text.h"

std::string DscText(std::string_view text) {
    // A line has at most 255 characters, including the comment's keyword.
    constexpr std::size_t kLongest = 200;
    const bool isPlain = text.size() <= kLongest && !text.starts_with('(') &&
                         std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
    if (isPlain) return std::string(text);
    std::string result = "(";
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0U) == 0x80U) continue;  // continuation byte of UTF-8
        // Readers expect Latin-1, whose characters begin with these two bytes in UTF-8.
        const bool isLatin = (byte == 0xC2 || byte == 0xC3) && i + 1 < text.size();
        if (isLatin)
            byte = static_cast<unsigned char>((byte & 3U) << 6U |
                                              (static_cast<unsigned char>(text[i + 1]) & 0x3FU));
        std::string piece;
        if (byte == '(' || byte == ')' || byte == '\\') {
            piece = {'\\', static_cast<char>(byte)};
        } else if (isLatin || byte < 0x20) {
            piece = "\\";
            for (const unsigned int shift : {6U, 3U, 0U})
                piece += static_cast<char>('0' + (static_cast<unsigned int>(byte) >> shift & 7U));
        } else {
            piece = byte < 0x7F ? static_cast<char>(byte) : '?';
        }
        if (result.size() + piece.size() > kLongest) break;
        result += piece;
    }
    return result + ")";
}

bool DscHeaderFilter::Put(std::string_view bytes) {
    return bytes.empty() || output_.Write(bytes.data(), bytes.size()) == 1;
}

std::string DscHeaderFilter::Rewrite(std::string_view line) const {
    if (line.starts_with("%!PS-Adobe")) {
        std::string text(line);
        if (!header_.title.empty()) text += "%%Title: " + DscText(header_.title) + "\n";
        return text;
    }
    if (line.starts_with("%%Creator:")) return "%%Creator: orvprint\n";
    if (line.starts_with("%%CreationDate:"))
        return header_.creationDate.empty() ? std::string()
                                            : "%%CreationDate: " + header_.creationDate + "\n";
    if (line.starts_with("%%BoundingBox:")) {
        // The drawing is aligned with the top of a sheet of whole points.
        const double width = std::ceil(header_.width - 1e-6), height = std::ceil(header_.height - 1e-6);
        const auto number = [](double value) {
            std::string text;
            AppendDecimal(text, value, 4);
            return text.starts_with('.') ? "0" + text : text;
        };
        std::string text = "%%BoundingBox: 0 0 " + number(width) + " " + number(height) + "\n";
        if (header_.encapsulated)
            text += "%%HiResBoundingBox: 0 " + number(height - header_.height) + " " + number(header_.width) +
                    " " + number(height) + "\n";
        return text;
    }
    return std::string(line);
}

bool DscHeaderFilter::Write(std::string_view bytes) {
    while (isInHead_ && !bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        line_ += bytes.substr(0, end == bytes.npos ? bytes.size() : end + 1);
        bytes.remove_prefix(end == bytes.npos ? bytes.size() : end + 1);
        if (end == bytes.npos) return true;
        if (!Put(Rewrite(line_))) return false;
        if (line_.starts_with("%%EndComments")) isInHead_ = false;
        line_.clear();
    }
    return Put(bytes);
}

bool DscHeaderFilter::Finish() {
    const bool isGood = Put(line_);
    line_.clear();
    return isGood;
}
