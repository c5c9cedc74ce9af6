// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unordered_set>
#include <vector>

#include "library/check/definition_facts.h"
#include "library/check/finding_writer.h"
#include "library/check/font_family.h"
#include "library/check/identifiers.h"
#include "library/check/meant_style.h"
#include "library/check/namespaces.h"
#include "library/check/resource_checks.h"
#include "library/check/value_checks.h"
#include "library/check/visibility.h"

/// Bounds of a nested drawing or a definition, and whether its content would be clipped by other programs.
struct DrawnRegion {
    ORVMathBox2D region;     ///< in the coordinates of its content
    bool cuts = false;       ///< other programs clip the content to `region`
    bool isTold = false;     ///< content outside `region` is reported where it is drawn
    bool isOutside = false;  ///< some content was outside `region`
    ORVMathBox2D content;    ///< bounding box of everything drawn
};

/// Inherited state that the check keeps in addition to the interpreter's own drawing state.
struct InForce {
    Visibility visibility;
    FontFamily family;
    MeantStyle meant;
    ORVMathAffine2D toRegion;  ///< from the element's coordinates to those of the region it is drawn in
    bool isMoved = false;      ///< the region's coordinates differ from the page's
    bool isForeign = false;    ///< inside an element of another namespace
    bool isNested = false;     ///< inside a nested drawing or a symbol
};

/// State shared by the checks while they walk one document. Refers to the document and the findings, which
/// must outlive it.
struct CheckContext {
    CheckContext(const CheckedDocument& document, Findings& out)
        : findings(document, out), identifiers(*document.root) {}

    FindingWriter findings;
    Identifiers identifiers;
    Namespaces namespaces;
    ValueChecks values;
    ResourceChecks resources;

    NumberedElement page;  ///< the page being checked
    /// The page size has a physical unit, so lengths on the page need one as well.
    bool isPageInUnits = false;
    bool isUnitScaleTold = false;  ///< kUnitScale was already reported for this page

    InForce inForce;  ///< at the current element
    /// Saved values, one per open element; kept off the call stack for deep documents.
    std::vector<InForce> around;
    MetDefinitions definitions;                 ///< those met so far on the current page
    DrawnRegion* region = nullptr;              ///< innermost region; null on the page itself
    DefinitionFacts* openDefinition = nullptr;  ///< the definition being walked; null outside definitions

    // Elements whose value is inherited by many others: each is reported at most once.
    std::unordered_set<const ORVXmlNode*> shown;     ///< with visibility "visible", already reported
    std::unordered_set<const ORVXmlNode*> families;  ///< with a font-family, already checked

    std::vector<double> numbers;  ///< scratch buffer for point lists
};

/// Enters an element: saves the inherited state and adds the element's namespace declarations. The destructor
/// restores both.
class ElementScope {
public:
    ElementScope(CheckContext& check, const ORVXmlNode& element) : check_(check) {
        check_.around.push_back(check_.inForce);
        check_.namespaces.Enter(element);
    }
    ~ElementScope() {
        check_.namespaces.Leave();
        check_.inForce = check_.around.back();
        check_.around.pop_back();
    }
    ElementScope(const ElementScope&) = delete;
    ElementScope& operator=(const ElementScope&) = delete;

private:
    CheckContext& check_;
};
