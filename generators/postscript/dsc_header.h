// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

class ORVOutput;

/// Contents of the DSC header comments of a PostScript file.
struct DscHeader {
    std::string title;         ///< UTF-8, may be empty
    std::string creationDate;  ///< empty if not stated
    /// Size of the largest page, in points.
    double width = 0.0, height = 0.0;
    bool encapsulated = false;
};

/// Copies a PostScript document to an output and corrects its header comments: title and creator as given, no
/// time of day, and the page size as bounding box. All else is copied unchanged.
class DscHeaderFilter {
public:
    /// @param header  read when the header of the document is written; must live until then
    DscHeaderFilter(ORVOutput& output, const DscHeader& header) : output_(output), header_(header) {}

    /// @return false if the output failed
    bool Write(std::string_view bytes);
    /// Must be called after the last byte. @return false if the output failed
    bool Finish();

private:
    bool Put(std::string_view bytes);
    std::string Rewrite(std::string_view line) const;

    ORVOutput& output_;
    const DscHeader& header_;
    bool isInHead_ = true;
    std::string line_;  // current line of the header, possibly incomplete
};

/// Formats a text for a DSC comment: unchanged if it is printable ASCII, otherwise as a PostScript string,
/// truncated to the maximum line length.
std::string DscText(std::string_view text);
