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

/// A drawing inside the drawing, or a definition: what its content covers, and what others would cut off of
/// it.
struct DrawnRegion {
    ORVMathBox2D region;     ///< in the coordinates of its content
    bool cuts = false;       ///< other programs show nothing beyond `region`
    bool isTold = false;     ///< something beyond it is a finding where it is drawn
    bool isOutside = false;  ///< something was
    ORVMathBox2D content;    ///< of all that was drawn
};

/// What elements hand down to those inside them, beside the interpreter's own state.
struct InForce {
    Visibility visibility;
    FontFamily family;
    MeantStyle meant;
    ORVMathAffine2D toRegion;  ///< from the element's coordinates to those of the region it is drawn in
    bool isMoved = false;      ///< those are not the page's
    bool isForeign = false;    ///< inside an element of another namespace
    bool isNested = false;     ///< inside a drawing or symbol that is not the page itself
};

/// What the checks of one document share while it is walked. Refers to the document and to the findings.
struct CheckContext {
    CheckContext(const CheckedDocument& document, Findings& out)
        : findings(document, out), identifiers(*document.root) {}

    FindingWriter findings;
    Identifiers identifiers;
    Namespaces namespaces;
    ValueChecks values;
    ResourceChecks resources;

    NumberedElement page;          ///< that is being looked at
    bool isPageInUnits = false;    ///< its size has a unit, which numbers on it should have, too
    bool isUnitScaleTold = false;  ///< of that page

    InForce inForce;              ///< where the walk stands
    std::vector<InForce> around;  ///< what it was around each open element; deep walks need it off the stack
    MetDefinitions definitions;   ///< of the page
    DrawnRegion* region = nullptr;              ///< the innermost; null on the page itself
    DefinitionFacts* openDefinition = nullptr;  ///< the one that is being read; null outside of any

    // Elements whose word goes for many others: what comes of it is one finding for all of them.
    std::unordered_set<const ORVXmlNode*> shown;     ///< that say "visible", and were reported
    std::unordered_set<const ORVXmlNode*> families;  ///< that name font families, and were looked at

    std::vector<double> numbers;  ///< room for the points that are being looked at
};

/// Keeps in force, until it goes out of scope, what an element declares and what is put into force for its
/// content.
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
