// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_writer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "generators/common/ORVOutput.h"
#include "generators/common/number_text.h"

namespace {

constexpr std::size_t kFlushSize = std::size_t{1} << 16U;
constexpr int kFactorDigits = 9;
constexpr char kBase64Digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

void AppendSvgTransform(std::string& text, const ORVMathAffine2D& map, int places,
                        std::string_view attribute) {
    const double greatest =
        std::max({std::fabs(map.m11), std::fabs(map.m12), std::fabs(map.m21), std::fabs(map.m22)});
    // Tolerance for rounding errors of 0 and 1.
    const auto isZero = [&](double factor) { return std::fabs(factor) <= 1e-9 * greatest; };
    const auto isOne = [](double factor) { return std::fabs(factor - 1.0) <= 1e-9; };
    const std::int64_t dx = ToFixed(map.dx, places), dy = ToFixed(map.dy, places);
    const bool isTranslation = isOne(map.m11) && isOne(map.m22) && isZero(map.m12) && isZero(map.m21);
    if (isTranslation && dx == 0 && dy == 0) return;
    text.append(" ").append(attribute).append(isTranslation ? "=\"translate(" : "=\"matrix(");
    if (!isTranslation)
        for (const double factor : {map.m11, map.m21, map.m12, map.m22}) {
            AppendSignificant(text, isZero(factor) ? 0.0 : factor, kFactorDigits);
            text += ' ';
        }
    AppendFixed(text, dx, places);
    text += ' ';
    AppendFixed(text, dy, places);
    text += ")\"";
}

void SvgWriter::Append(std::string_view text) {
    if (isRecording_) {
        record_.styled += text;
        return;
    }
    buffer_ += text;
    if (buffer_.size() < kFlushSize) return;
    if (good_ && output_.Write(buffer_.data(), buffer_.size()) != 1) good_ = false;
    buffer_.clear();
}

void SvgWriter::Put(std::string_view text) {
    EndRun();
    record_.isUniform = false;
    Append(text);
}

void SvgWriter::BeginRecording() {
    EndRun();
    record_ = {};
    isRecording_ = true;
}

SvgWriter::Record SvgWriter::EndRecording() {
    EndRun();
    isRecording_ = false;
    return std::move(record_);
}

void SvgWriter::EndRun() {
    if (isWaiting_) {
        Append("<");
        Append(waitingName_);
        Append(style_);
        Append(waitingRest_);
    }
    if (isGroupOpen_) Append("</g>\n");
    isWaiting_ = isGroupOpen_ = false;
}

void SvgWriter::AddElement(std::string_view name, std::string_view style, std::string& rest) {
    if (isRecording_ && record_.isUniform) {
        if (record_.bare.empty()) record_.style = style;
        record_.isUniform = record_.style == style;
        record_.bare += '<';
        record_.bare += name;
        record_.bare += rest;
    }
    const bool isAlike = (isWaiting_ || isGroupOpen_) && style_ == style;
    if (isAlike && isWaiting_) {
        Append("<g");
        Append(style);
        Append(">\n<");
        Append(waitingName_);
        Append(waitingRest_);
        isWaiting_ = false;
        isGroupOpen_ = true;
    }
    if (isAlike) {
        Append("<");
        Append(name);
        return Append(rest);
    }
    EndRun();
    if (style.empty()) {
        Append("<");
        Append(name);
        return Append(rest);
    }
    style_ = style;
    waitingName_ = name;
    waitingRest_.swap(rest);
    isWaiting_ = true;
}

void SvgWriter::PutBase64(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t kPiece = 4096;
    for (; !bytes.empty(); bytes = bytes.subspan(std::min(bytes.size(), kPiece))) {
        char text[kPiece / 3 * 4 + 8];
        char* end = text;
        for (const std::uint8_t byte : bytes.first(std::min(bytes.size(), kPiece))) {
            bits_ = bits_ << 8U | byte;
            bitCount_ += 8;
            while (bitCount_ >= 6) {
                bitCount_ -= 6;
                *end++ = kBase64Digits[bits_ >> bitCount_ & 63U];
            }
        }
        Append({text, static_cast<std::size_t>(end - text)});
    }
}

void SvgWriter::PutEndOfBase64() {
    if (bitCount_ > 0) {
        // The last digit holds the remaining bits, padded with zeros.
        Append({&kBase64Digits[bits_ << (6 - bitCount_) & 63U], 1});
        Append(bitCount_ == 2 ? "==" : "=");
    }
    bits_ = bitCount_ = 0;
}

bool SvgWriter::Flush() {
    EndRun();
    if (good_ && output_.Write(buffer_.data(), buffer_.size()) != 1) good_ = false;
    buffer_.clear();
    return good_;
}
