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

/// How drawings are read.
struct DrawingOptions {
    std::string interpreter = "SVG";  ///< or "SVG2", for standard SVG
    std::string parser = "light";     ///< or "dom"
    bool qvxml = false;               ///< drawings inside an XML document, whatever the input's name
    bool detectsQvxml = false;        ///< the same where there is an element around the drawings
    std::string fragment;             ///< number or identifier of one of them; empty for the outermost ones
    bool keepGoing = false;           ///< print what stands before an error in the XML
    bool keepsBytes = false;          ///< the bytes are read again later; else they are lost on the way
    std::vector<std::string> allowedFolders;
    std::string languages;   ///< that the user reads, as "en,de"; empty for the locale's
    double fontSize = 12.0;  ///< px, of text that states no size; for standard SVG only
};

/// What is known of a drawing's page.
struct PageFacts {
    double width = 0.0, height = 0.0;  ///< user units of 1/90 inch
    bool hasArea = false;              ///< else it cannot be printed
    std::string title;
};

/// A drawing whose pages are known.
struct Drawing {
    ORVPrintInterpreter& interpreter;
    std::vector<PageFacts> pages;
    bool isOnly;  ///< the only drawing of its input
    /// Elements of its document that the interpreter SVG does not read; see ORVXmlTree.
    std::uint32_t unreadElements = 0;
    /// Whoever holds it may use the interpreter when the call that gave the drawing has ended.
    std::shared_ptr<const void> keeper{};
};

/// Whether drawings are read as standard SVG.
bool IsStandard(const DrawingOptions& options);
/// Whether an input is read as an XML document with drawings inside.
bool IsFragmentInput(const std::string& path, const DrawingOptions& options);
/// What interpreters are told of the user.
ORVPrintPreferences PreferencesOf(const DrawingOptions& options);

/// The drawings inside an XML document that the options ask for; that there are none was reported.
std::vector<const ORVXmlNode*> SelectFragments(const ORVXmlNode* root, const InputOrigin& origin,
                                               const DrawingOptions& options);

/// Checks that an input is well formed, and hands its drawings to `use`, one after the other. Documents may
/// name files as far as the access policy of the thread allows.
/// @param bytes  unpacked, neither empty nor of another kind
/// @param use    returns a result; anything but kResultDone ends the reading. Drawings live only during its
///               call, but for those that it keeps
/// @return a result; a failure was reported
int UseDrawings(const InputOrigin& origin, const DrawingOptions& options, InputBytes bytes,
                const std::function<int(const Drawing& drawing)>& use);

/// Opens the fragment that the options name, in its place in the document, unchecked. For looking at what the
/// interpreter makes of it.
/// @return a result; a failure was reported
int UseFragment(const InputOrigin& origin, const DrawingOptions& options, InputBytes bytes,
                const std::function<int(ORVPrintInterpreter& interpreter)>& use);

/// Creates an interpreter and tells it where its document lies. @return null after a report
std::unique_ptr<ORVPrintInterpreter> CreateInterpreter(const char* name, ORVPrintInput* input,
                                                       const InputOrigin& origin);
