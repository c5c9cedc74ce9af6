// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "library/input/input_bytes.h"
#include "platform/print/ORVPrintInput.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintPreferences.h"
#include "platform/xml/ORVXmlNode.h"

/// Options for reading drawings.
struct DrawingOptions {
    std::string interpreter = "SVG";  ///< "SVG", or "SVG2" for standard SVG
    std::string parser = "light";     ///< or "dom"
    bool qvxml = false;  ///< treat the input as an XML document with embedded drawings, whatever its name
    bool detectsQvxml = false;  ///< the same, if another element encloses the drawings
    std::string fragment;    ///< number or identifier of one embedded drawing; empty for all outermost ones
    bool keepGoing = false;  ///< print the content before an XML error
    /// Keep the bytes intact for reading them again; otherwise parsing consumes them.
    bool keepsBytes = false;
    std::vector<std::string> allowedFolders;
    std::string languages;   ///< the user's languages, such as "en,de"; empty to use the locale's
    double fontSize = 12.0;  ///< in px, of text without a font-size; standard SVG only
};

/// Properties of a drawing's page.
struct PageFacts {
    double width = 0.0, height = 0.0;  ///< in user units of 1/90 inch
    bool hasArea = false;              ///< false if the page has no area and cannot be printed
    std::string title;
};

/// A drawing whose pages have been measured.
struct Drawing {
    ORVPrintInterpreter& interpreter;
    std::vector<PageFacts> pages;
    bool isOnly;  ///< the only drawing of its input
    /// Number of elements that the interpreter SVG does not read; see ORVXmlTree.
    std::uint32_t unreadElements = 0;
    /// Keeps the interpreter alive after the call that supplied the drawing has returned.
    std::shared_ptr<const void> keeper{};
};

/// Whether drawings are read as standard SVG.
bool IsStandard(const DrawingOptions& options);
/// Whether an input is read as an XML document with embedded drawings.
bool IsFragmentInput(const std::string& path, const DrawingOptions& options);
/// The user's preferences, as passed to interpreters.
ORVPrintPreferences PreferencesOf(const DrawingOptions& options);

/// The embedded drawings selected by the options. Reports an error if there are none.
std::vector<const ORVXmlNode*> SelectFragments(const ORVXmlNode* root, const InputOrigin& origin,
                                               const DrawingOptions& options);

/// Checks that an input is well-formed and passes its drawings to `use`, one after the other. Documents may
/// refer to files as far as the thread's access policy allows.
/// @param bytes  decompressed, not empty and not of another file type
/// @param use    returns a result; anything but kResultDone stops the reading. Drawings live only during its
///         call unless it keeps Drawing::keeper
/// @return a result; failures are reported to the host
int UseDrawings(const InputOrigin& origin, const DrawingOptions& options, InputBytes bytes,
                const std::function<int(const Drawing& drawing)>& use);

/// Opens the fragment named by the options in the context of its document, without further checks. Used to
/// inspect the interpreter's result.
/// @return a result; failures are reported to the host
int UseFragment(const InputOrigin& origin, const DrawingOptions& options, InputBytes bytes,
                const std::function<int(ORVPrintInterpreter& interpreter)>& use);

/// Creates an interpreter and sets the location of its document.
/// @return null on failure, which is reported
std::unique_ptr<ORVPrintInterpreter> CreateInterpreter(const char* name, ORVPrintInput* input,
                                                       const InputOrigin& origin);
