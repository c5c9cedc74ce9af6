// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

class ORVOutput;

/// What the comments at the head of a PostScript file are to say.
struct DscHeader {
    std::string title;         ///< UTF-8, may be empty
    std::string creationDate;  ///< empty for none
    /// Size of the largest page, points.
    double width = 0.0, height = 0.0;
    bool encapsulated = false;
};

/// Passes a PostScript document on to an output, its head comments put right on the way: the author's words
/// for title and creator, no time of day, and the page as bounding box. Everything else goes through as it
/// comes.
class DscHeaderFilter {
public:
    /// @param header  is read when the head of the document comes along; must stay until then
    DscHeaderFilter(ORVOutput& output, const DscHeader& header) : output_(output), header_(header) {}

    /// @return false when the output failed
    bool Write(std::string_view bytes);
    /// To be called after the last byte. @return false when the output failed
    bool Finish();

private:
    bool Put(std::string_view bytes);
    std::string Rewrite(std::string_view line) const;

    ORVOutput& output_;
    const DscHeader& header_;
    bool isInHead_ = true;
    std::string line_;  // of the head, as far as it has come
};

/// A text as comments take it: as it is when it consists of printable characters, else as a PostScript
/// string, cut off where the line would be too long.
std::string DscText(std::string_view text);
