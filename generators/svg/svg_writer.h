// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/mathematics/geometry.h"

class ORVOutput;

/// Maximum number of decimal places written.
inline constexpr int kSvgMostPlaces = 9;

/// Appends a transform attribute; nothing for the identity.
/// @param places  decimal places of the translation
void AppendSvgTransform(std::string& text, const ORVMathAffine2D& map, int places,
                        std::string_view attribute = "transform");

/// Buffered text of an SVG file. Consecutive elements of the same style are gathered in a group with that
/// style, so that it is written once. Write errors are reported by the output; here they only stop writing.
class SvgWriter {
public:
    explicit SvgWriter(ORVOutput& output) : output_(output) {}

    /// Appends anything that is not painted, around and between the elements of AddElement.
    void Put(std::string_view text);
    /// Appends bytes as base64. PutEndOfBase64 must follow the last ones.
    void PutBase64(std::span<const std::uint8_t> bytes);
    void PutEndOfBase64();

    /// Adds a painted element.
    /// @param name   such as "path"
    /// @param style  attributes that may be moved to a group around it, each preceded by a space
    /// @param rest   everything else, to the end of the element; the string may be changed
    void AddElement(std::string_view name, std::string_view style, std::string& rest);

    /// Holds back elements until EndRecording, or until there are too many.
    void BeginRecording();
    bool IsRecording() const { return isRecording_; }
    struct Record {
        std::string styled;     ///< as they would have been written
        std::string bare;       ///< without their style
        std::string style;      ///< the style of all of them
        bool isUniform = true;  ///< whether they all have the same style
    };
    Record EndRecording();
    /// True if so much was held back that it should be written.
    bool IsRecordFull() const { return record_.styled.size() > (std::size_t{1} << 20U); }

    /// Writes all buffered text. @return false if this or an earlier write failed
    bool Flush();
    bool IsGood() const { return good_; }

private:
    void EndRun();
    void Append(std::string_view text);

    ORVOutput& output_;
    bool good_ = true;
    std::string buffer_;
    // An element is held back until the next one shows whether it begins a group; none while a group is open.
    bool isWaiting_ = false, isGroupOpen_ = false;
    std::string waitingName_, style_, waitingRest_;
    bool isRecording_ = false;
    Record record_;
    std::uint32_t bits_ = 0;  // base64 input that is not yet written
    unsigned int bitCount_ = 0;
};
