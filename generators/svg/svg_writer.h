// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/mathematics/geometry.h"

class ORVOutput;

/// Digits after the period that anything is written with at most.
inline constexpr int kSvgMostPlaces = 9;

/// Appends a transform attribute, nothing for the identity.
/// @param places  digits after the period of the translation
void AppendSvgTransform(std::string& text, const ORVMathAffine2D& map, int places,
                        std::string_view attribute = "transform");

/// The text of an SVG file on its way to an output. Neighbouring elements of the same style are gathered in a
/// group that has it, so that it is written once. Write errors are the output's to report; here, they end the
/// writing.
class SvgWriter {
public:
    explicit SvgWriter(ORVOutput& output) : output_(output) {}

    /// Appends anything that is not painted: elements around and beside what AddElement takes.
    void Put(std::string_view text);
    /// Appends bytes as base64; PutEndOfBase64 ends them.
    void PutBase64(std::span<const std::uint8_t> bytes);
    void PutEndOfBase64();

    /// Adds a painted element.
    /// @param name   such as "path"
    /// @param style  attributes that may as well stand on a group around it, each with a blank before it
    /// @param rest   all else, to the end of the element; the string may be changed
    void AddElement(std::string_view name, std::string_view style, std::string& rest);

    /// From here on elements are held back, until EndRecording or until they take too much room.
    void BeginRecording();
    bool IsRecording() const { return isRecording_; }
    struct Record {
        std::string styled;     ///< as they would have been written
        std::string bare;       ///< without their style
        std::string style;      ///< of all of them
        bool isUniform = true;  ///< whether they have but one
    };
    Record EndRecording();
    /// True when what is held back has become so much that it should go on its way.
    bool IsRecordFull() const { return record_.styled.size() > (std::size_t{1} << 20U); }

    /// Hands everything to the output. @return false when it, or a call before, failed
    bool Flush();
    bool IsGood() const { return good_; }

private:
    void EndRun();
    void Append(std::string_view text);

    ORVOutput& output_;
    bool good_ = true;
    std::string buffer_;
    // The element that waits for the next one to tell whether it begins a group; none while a group is open.
    bool isWaiting_ = false, isGroupOpen_ = false;
    std::string waitingName_, style_, waitingRest_;
    bool isRecording_ = false;
    Record record_;
    std::uint32_t bits_ = 0;  // of base64, not written yet
    unsigned int bitCount_ = 0;
};
