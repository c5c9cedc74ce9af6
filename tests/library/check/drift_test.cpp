// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "interpreters/svg/structure/element_attributes.h"
#include "interpreters/svg/structure/walker.h"
#include "interpreters/svg/style/property_table.h"
#include "library/check/svg_names.h"
#include "platform/xml/vocabulary.h"
#include "tests/library/check/checked.h"

// The interpreter and the check must know the same names.

namespace {

bool Finds(const std::string& content, FindingCode code) {
    return CheckText(CheckedDrawing(content)).GetCount(code) > 0;
}

TEST(DriftTest, AnElementIsUnknownExactlyIfNothingIsMadeOfIt) {
    for (auto name = ElementName::kA; name <= ElementName::kUse;
         name = static_cast<ElementName>(static_cast<unsigned>(name) + 1)) {
        const std::string text(GetNameText(name));
        EXPECT_FALSE(Finds("<" + text + "/>", FindingCode::kUnknownElement)) << text;
        EXPECT_EQ(FindUnprintedElement(text), nullptr) << text << " is printed";
        EXPECT_TRUE(HasHandler(name) || name == ElementName::kDesc || name == ElementName::kTitle) << text;
    }
    EXPECT_TRUE(Finds("<rectangle/>", FindingCode::kUnknownElement));
}

TEST(DriftTest, AnAttributeIsNeverUnknownIfTheInterpreterKnowsIt) {
    for (unsigned i = 0; i < static_cast<unsigned>(AttributeName::kCount); ++i) {
        const std::string name(GetNameText(static_cast<AttributeName>(i)));
        EXPECT_FALSE(Finds("<g xmlns:tlv='urn:tlv' " + name + "='1'/>", FindingCode::kUnknownAttribute))
            << name;
        EXPECT_TRUE(FindAttributeRole(name) == AttributeRole::kUnknown) << name << " is read";
    }
}

TEST(DriftTest, APropertyIsUnknownExactlyIfTheInterpreterDoesNotKnowIt) {
    for (const PropertyRow& row : GetProperties()) {
        const std::string name(row.name);
        EXPECT_FALSE(Finds("<g style='" + name + ":1'/>", FindingCode::kUnknownProperty)) << name;
        EXPECT_FALSE(Finds("<g " + name + "='1'/>", FindingCode::kUnknownAttribute)) << name;
        EXPECT_TRUE(FindAttributeRole(name) == AttributeRole::kUnknown) << name << " is a property";
    }
    EXPECT_TRUE(Finds("<g style='fil:1'/>", FindingCode::kUnknownProperty));
}

// A property without effect is reported unless its value makes no difference or it is irrelevant on paper.
TEST(DriftTest, APropertyIsIgnoredExactlyIfItIsNotApplied) {
    for (const PropertyRow& row : GetProperties()) {
        const std::string name(row.name);
        const Findings findings = CheckText(CheckedDrawing("<text style='" + name + ":url(x)'/>"));
        const std::uint64_t ignored = findings.GetCount(FindingCode::kIgnoredProperty) +
                                      findings.GetCount(FindingCode::kAttributeOnlyProperty) +
                                      findings.GetCount(FindingCode::kClipPath) +
                                      findings.GetCount(FindingCode::kMask) +
                                      findings.GetCount(FindingCode::kFilter);
        EXPECT_EQ(ignored > 0, !row.apply && !IsSilentProperty(name)) << name;
        EXPECT_FALSE(row.apply && IsSilentProperty(name)) << name << " has an effect";
    }
}

// Exactly the attributes without effect are reported.
TEST(DriftTest, AnAttributeIsWithoutEffectOnlyWhereTheInterpreterHasNone) {
    for (auto element = ElementName::kA; element <= ElementName::kUse;
         element = static_cast<ElementName>(static_cast<unsigned>(element) + 1)) {
        if (!HasHandler(element)) continue;
        for (unsigned i = 0; i < static_cast<unsigned>(AttributeName::kCount); ++i) {
            const auto name = static_cast<AttributeName>(i);
            const std::string content = "<" + std::string(GetNameText(element)) + " xmlns:tlv='urn:tlv' " +
                                        std::string(GetNameText(name)) + "='7'/>";
            if (HasEffect(GetEffectiveAttributes(element), name)) {
                EXPECT_FALSE(Finds(content, FindingCode::kAttributeWithoutEffect)) << content;
            }
        }
    }
}

}  // namespace
