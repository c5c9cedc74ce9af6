// SPDX-License-Identifier: Apache-2.0
#include "library/report/check_report.h"

#include <set>
#include <vector>

#include "library/check/document_check.h"
#include "library/check/standard_check.h"

namespace {

void WriteError(JsonWriter& json, const CheckedInput& input) {
    json.Key("error");
    json.BeginObject();
    json.Key("exitCode");
    json.Integer(input.failure);
    if (!input.error.message.empty()) {
        json.Key("line");
        json.Integer(static_cast<long long>(input.error.line));
        json.Key("column");
        json.Integer(static_cast<long long>(input.error.column));
        json.Key("message");
        json.Text(input.error.message);
    }
    json.EndObject();
}

void WriteFinding(JsonWriter& json, const Finding& finding) {
    json.LineBreak();
    json.BeginObject();
    json.Key("code");
    json.Text(GetFindingKind(finding.code).name);
    json.Key("line");
    json.Integer(finding.line);
    json.Key("column");
    json.Integer(finding.column);
    json.Key("element");
    json.Text(finding.element);
    json.Key("attribute");
    json.Text(finding.attribute);
    json.Key("value");
    json.Text(finding.value);
    json.Key("message");
    json.Text(finding.message);
    json.EndObject();
}

int ReportError(const InputOrigin& origin, const ORVXmlError& error) {
    const std::string place = error.line == 0
                                  ? std::string()
                                  : ":" + std::to_string(error.line) + ":" + std::to_string(error.column);
    if (error.isOutOfMemory) return origin.host.ReportOutOfMemory(origin.name);
    return origin.host.Report(kResultNotWellFormed, origin.name + place,
                              error.message.empty() ? "no element found" : error.message);
}

bool HoldsPages(const ORVXmlNode& node) {
    if (node.id == ElementName::kSvg) return true;
    for (const ORVXmlNode* child = node.firstChild; child; child = child->nextSibling)
        if (child->id == ElementName::kSvg) return true;
    return false;
}

/// Whether a length is in px or has no unit.
bool IsInPx(std::string_view length) {
    if (length.ends_with("px")) return true;
    return !length.empty() && ((length.back() >= '0' && length.back() <= '9') || length.back() == '.');
}

}  // namespace

CheckedInput CheckBytes(const InputOrigin& origin, const DrawingOptions& options, std::string_view bytes,
                        Findings& findings, const CheckedUse& use) {
    ORVLightXmlParser parser;
    ORVLightXmlElement root;
    std::vector<ORVXmlPlace> places;
    parser.Parse({bytes.data(), bytes.size()}, root, &places);
    if (!parser.GetError().message.empty() || !root.GetNode())
        return {ReportError(origin, parser.GetError()), parser.GetError(), false};

    CheckedDocument document{root.GetNode(), bytes, &places, origin.path, {}};
    if (IsFragmentInput(origin.path, options)) {
        const auto fragments = SelectFragments(root.GetNode(), origin, options);
        if (fragments.empty()) return {kResultNoPage, {}, false};
        document.fragments.insert(fragments.begin(), fragments.end());
        // The DOM parser treats the siblings after a drawing selected by name as part of it.
        if (options.parser == "dom" && !options.fragment.empty())
            for (const ORVXmlNode* node = fragments[0]->nextSibling; node; node = node->nextSibling)
                if (HoldsPages(*node)) document.fragments.insert(node);
    }
    if (options.interpreter == "SVG2")
        CheckStandardDocument(document, root.GetTree(), findings);
    else
        CheckDocument(document, findings);
    CheckedInput checked;
    if (use) checked.failure = use(document, root.GetTree(), findings);
    const ORVXmlNode& page = *root.GetNode();
    checked.hasPxSize =
        options.interpreter != "SVG2" && page.id == ElementName::kSvg &&
        (IsInPx(page.Value(AttributeName::kWidth)) || IsInPx(page.Value(AttributeName::kHeight)) ||
         (!page.Has(AttributeName::kWidth) && page.Has(AttributeName::kViewBox)));
    return checked;
}

void WriteCheckJson(JsonWriter& json, const std::string& path, const CheckedInput& input,
                    const Findings& findings) {
    json.BeginObject();
    json.Key("file");
    json.Text(path);
    if (input.failure != kResultDone) {
        WriteError(json, input);
    } else {
        json.Key("total");
        json.Integer(static_cast<long long>(findings.GetTotal()));
        json.Key("counts");
        json.BeginObject();
        for (const FindingKind& kind : GetFindingKinds()) {
            if (findings.GetCount(kind.code) == 0) continue;
            json.Key(kind.name);
            json.Integer(static_cast<long long>(findings.GetCount(kind.code)));
        }
        json.EndObject();
        json.Key("foreign");
        json.Integer(static_cast<long long>(findings.GetForeignCount()));
        json.Key("findings");
        json.BeginArray();
        for (const Finding& finding : findings.GetKept()) WriteFinding(json, finding);
        json.EndArray();
    }
    json.EndObject();
    json.LineBreak();
}
