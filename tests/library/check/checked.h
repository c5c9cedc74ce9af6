// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "library/check/document_check.h"
#include "platform/system/files.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlFragments.h"

/// Returns the findings in a document given as text. The document may read files from the folder of `path`.
inline Findings CheckText(const std::string& text, const std::string& path = {}, bool hasFragments = false) {
    ORVLightXmlParser parser;
    ORVLightXmlElement root;
    std::vector<ORVXmlPlace> places;
    EXPECT_EQ(parser.Parse({text.data(), text.size()}, root, &places), 1) << text;
    CheckedDocument document{root.GetNode(), text, &places, path, {}};
    if (hasFragments)
        for (const ORVXmlNode* fragment : FindOutermostSvgElements(root.GetNode()))
            document.fragments.insert(fragment);

    ORVFolderAccessPolicy policy;
    ORVUnicodeString folder, name;
    ORVSplitPath(path, folder, name);
    if (!folder.IsEmpty()) policy.AllowFolder(folder);
    ORVFileAccessPolicy::SetCurrent(&policy);
    Findings findings;
    CheckDocument(document, findings);
    ORVFileAccessPolicy::SetCurrent(nullptr);
    return findings;
}

/// Returns the names of the kinds found, with counts above 1: "gradient, mask x2".
inline std::string KindsOf(const Findings& findings) {
    std::string kinds;
    for (const FindingKind& kind : GetFindingKinds()) {
        const std::uint64_t count = findings.GetCount(kind.code);
        if (count == 0) continue;
        if (!kinds.empty()) kinds += ", ";
        kinds += kind.name;
        if (count > 1) kinds += " x" + std::to_string(count);
    }
    return kinds;
}

/// Returns a drawing of 200 x 100 user units with the given content and a default font.
inline std::string CheckedDrawing(const std::string& content) {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='200' "
           "height='100' font-family='sans-serif'>" +
           content + "</svg>";
}
