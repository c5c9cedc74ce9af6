// SPDX-License-Identifier: Apache-2.0
#include "library/input/drawings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <system_error>
#include <utility>

#include "library/input/foreign_input.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintModule.h"
#include "platform/system/ORVRef.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlFragments.h"

namespace {

/// A parsed document. Exactly one member is set.
struct Document {
    ORVLightXmlElement light;
    ORVIDOMElement_var dom;

    const ORVXmlNode* GetRoot() const { return dom ? dom.GetNode() : light.GetNode(); }
    ORVRef<const ORVXmlTree> GetTree() const { return dom ? dom.GetTree() : light.GetTree(); }
};

/// Parses a document for a single read of its drawings. Reports a document that is not well-formed, unless
/// the part before the error is wanted.
/// @return a result
int ParseDocument(const InputOrigin& origin, const DrawingOptions& options, bool wantsBroken,
                  InputBytes bytes, Document& document) {
    ORVXmlError error;
    if (IsStandard(options)) {
        // Standard SVG needs the positions of text between elements, and reads referenced elements
        // repeatedly.
        ORVParseXml({bytes.GetOwner(), bytes.GetView()}, document.dom, &error);
    } else if (options.parser == "dom") {
        ORVUnicodeString text;
        const std::string_view view = bytes.GetView();
        if (text.BuildFromUTF8(view.data(), view.size()) != 1) {
            // The light parser determines where the bytes stop being UTF-8, or that they are in another
            // encoding.
            ORVLightXmlParser parser;
            ORVLightXmlElement element;
            if (parser.Parse({view.data(), view.size()}, element) == 1)
                return origin.host.Report(
                    kResultNotWellFormed, origin.name,
                    "is not UTF-8, the only encoding that --parser dom reads; use --parser light");
            error = parser.GetError();
        } else {
            bytes = InputBytes();
            BuildParser(text, "SVG", document.dom, &error, ORVXmlReading::kOnce);
        }
    } else {
        ORVLightXmlParser parser;
        const auto reading = options.keepsBytes ? ORVXmlReading::kOnceInKeptSource : ORVXmlReading::kOnce;
        parser.Parse({bytes.GetOwner(), bytes.GetView(), reading}, document.light);
        error = parser.GetError();
    }
    if (error.isOutOfMemory) return origin.host.ReportOutOfMemory(origin.name);
    const bool hasContent = document.GetRoot() != nullptr;
    if (error.message.empty() && hasContent) return kResultDone;
    if (wantsBroken && hasContent) {
        if (options.keepGoing)
            origin.host.Report(
                kResultDone,
                origin.name + ":" + std::to_string(error.line) + ":" + std::to_string(error.column),
                error.message + "; continuing with what precedes the error");
        return kResultDone;
    }
    const std::string reason = error.message.empty() ? "no element found" : error.message;
    const std::string place = error.line == 0
                                  ? std::string()
                                  : ":" + std::to_string(error.line) + ":" + std::to_string(error.column);
    return origin.host.Report(kResultNotWellFormed, origin.name + place, reason);
}

/// The `svg` element selected by the options; null if there is none.
const ORVXmlNode* FindFragment(const ORVXmlNode* root, const std::string& name) {
    const std::vector<const ORVXmlNode*> fragments = FindSvgElements(root);
    if (std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        std::size_t number = 0;
        const auto status = std::from_chars(name.data(), name.data() + name.size(), number).ec;
        return status == std::errc{} && number >= 1 && number <= fragments.size() ? fragments[number - 1]
                                                                                  : nullptr;
    }
    const auto found = std::find_if(fragments.begin(), fragments.end(), [&](const ORVXmlNode* fragment) {
        return fragment->Value(AttributeName::kId) == name;
    });
    return found == fragments.end() ? nullptr : *found;
}

int ReportNoFragment(const InputOrigin& origin, const std::string& fragment) {
    return origin.host.Report(
        kResultNoPage, origin.name,
        fragment.empty() ? "has no svg element" : "has no svg element '" + fragment + "'");
}

std::vector<PageFacts> FactsOfPages(const ORVPrtModel& model) {
    std::vector<PageFacts> pages;
    for (const ORVPrtImageElt* image : *model.GetImages()) {
        PageFacts& facts = pages.emplace_back();
        image->GetSize(facts.width, facts.height);
        facts.hasArea = image->HasArea();
        facts.title = image->GetTitle().GetView();
    }
    return pages;
}

/// An interpreter and everything it reads from.
struct OpenedDrawing {
    std::shared_ptr<Document> document;
    ORVLightXmlElement holder;  // referred to by the input
    ORVRef<ORVPrintInputXMLElement> input;
    std::unique_ptr<ORVPrintInterpreter> interpreter;  // last member, since it uses the others
};

/// Measures the pages of a drawing without a model.
int UseWithoutModel(const InputOrigin& origin, const std::shared_ptr<OpenedDrawing>& opened, bool isOnly,
                    const std::function<int(const Drawing&)>& use) {
    ORVPrintInterpreter& interpreter = *opened->interpreter;
    unsigned int count = 0;
    const int result = interpreter.GetPageCount(count);
    if (result == -1)
        return origin.host.Report(kResultNoPage, origin.name,
                                  "is no drawing: its root is no svg element of SVG's namespace");
    if (result != 1) return origin.host.ReportOutOfMemory(origin.name);
    std::vector<PageFacts> pages;
    for (unsigned int page = 1; page <= count; ++page) {
        float width = 0.0F, height = 0.0F;
        ORVUnicodeString title;
        interpreter.SetCurrentPage(page);
        if (interpreter.GetSize(width, height) != 1 || interpreter.GetTitle(title) != 1)
            return origin.host.ReportOutOfMemory(origin.name);
        const bool hasArea = std::isfinite(width) && std::isfinite(height) && width > 0.0F && height > 0.0F;
        pages.push_back({width, height, hasArea, std::string(title.GetView())});
    }
    interpreter.SetCurrentPage(0);
    return use({interpreter, std::move(pages), isOnly, 0, opened});
}

/// @param isOnly  whether the drawing is the only one of its document, which is then released once the model
///         is built
int UseDrawing(const InputOrigin& origin, const std::shared_ptr<OpenedDrawing>& opened, bool isOnly,
               const std::function<int(const Drawing&)>& use) {
    ORVPrintInterpreter& interpreter = *opened->interpreter;
    Document& document = *opened->document;
    ORVRef<const ORVPrtModel> model;
    const int built = interpreter.GetModel(model);
    if (model)
        if (const ORVFailure failure = model->GetBudget().GetFailure())
            return origin.host.Report(origin.name, failure);
    // The element exists and nothing was left out, so only memory can have run out.
    if (built != 1)
        return origin.host.Report(
            origin.name,
            ORVFailure::Of(ORVFailureReason::kOutOfMemory, "could not be turned into pages; out of memory"));
    std::vector<PageFacts> pages = FactsOfPages(*model);
    const std::uint32_t unread = document.GetTree() ? document.GetTree()->GetUnreadElements() : 0;
    model = nullptr;  // release it: a last print consumes the model
    if (pages.empty()) return origin.host.Report(kResultNoPage, origin.name, "has no page");
    if (isOnly) document = Document();
    return use({interpreter, std::move(pages), isOnly, unread, opened});
}

/// @param isAlone  treat the element as a separate document. Interpreters for DOM elements also read its
///         following siblings: these are pages of a drawing selected by name, but if all drawings are
///         printed, they have their own turn
/// @return null when out of memory
ORVRef<ORVPrintInputXMLElement> MakeFragmentInput(const Document& document, const ORVXmlNode* fragment,
                                                  bool isAlone, ORVLightXmlElement& holder) {
    holder = ORVLightXmlElement(document.GetTree(), fragment);
    if (document.dom && !isAlone)
        return ORVRef<ORVPrintInputXMLElement>(
            new ORVPrintInputXMLElement(ORVIDOMElement_var(document.GetTree(), fragment)));
    if (!document.dom) return ORVRef<ORVPrintInputXMLElement>(new ORVPrintInputXMLElement(&holder));
    ORVLightXmlElement alone;
    if (alone.Assign(holder) != 1) return nullptr;
    const ORVIDOMElement_var element(alone.GetTree(), alone.GetNode());
    return ORVRef<ORVPrintInputXMLElement>(new ORVPrintInputXMLElement(element));
}

int UseStandardDrawings(const InputOrigin& origin, const DrawingOptions& options,
                        const std::shared_ptr<Document>& document,
                        const std::function<int(const Drawing&)>& use) {
    std::vector<const ORVXmlNode*> roots{document->GetRoot()};
    if (IsFragmentInput(origin.path, options)) roots = SelectFragments(document->GetRoot(), origin, options);
    if (roots.empty()) return kResultNoPage;
    for (const ORVXmlNode* root : roots) {
        const auto opened = std::make_shared<OpenedDrawing>();
        opened->document = document;
        const ORVIDOMElement_var element(document->GetTree(), root);
        opened->input = ORVRef<ORVPrintInputXMLElement>(new ORVPrintInputXMLElement(element));
        opened->interpreter = CreateInterpreter("SVG2", opened->input.get(), origin);
        if (!opened->interpreter) return kResultNoModule;
        const int code = UseWithoutModel(origin, opened, roots.size() == 1, use);
        if (code != kResultDone) return code;
    }
    return kResultDone;
}

/// Splits a list at commas and converts it to lower case.
std::vector<std::string> SplitLanguages(std::string_view list) {
    std::vector<std::string> languages;
    std::string language;
    for (const char c : list) {
        if (c == ',' && !language.empty()) languages.push_back(std::exchange(language, {}));
        if (c != ',' && c != ' ') language += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    if (!language.empty()) languages.push_back(language);
    return languages;
}

}  // namespace

bool IsStandard(const DrawingOptions& options) { return options.interpreter == "SVG2"; }

ORVPrintPreferences PreferencesOf(const DrawingOptions& options) {
    return {SplitLanguages(options.languages), options.fontSize};
}

std::unique_ptr<ORVPrintInterpreter> CreateInterpreter(const char* name, ORVPrintInput* input,
                                                       const InputOrigin& origin) {
    ORVFailure failure;
    auto interpreter = ORVPrintModule::CreateInterpreter(name, input, failure);
    if (!interpreter) {
        failure.text = std::string("the interpreter for ") + name + " cannot be loaded: " + failure.text;
        origin.host.Report("", failure);
    } else if (!origin.path.empty()) {
        ORVPrintModule::SetCurrentPath(name, *interpreter, origin.path);
    }
    return interpreter;
}

std::vector<const ORVXmlNode*> SelectFragments(const ORVXmlNode* root, const InputOrigin& origin,
                                               const DrawingOptions& options) {
    std::vector<const ORVXmlNode*> fragments;
    if (options.fragment.empty())
        fragments = FindOutermostSvgElements(root);
    else if (const ORVXmlNode* fragment = FindFragment(root, options.fragment))
        fragments.push_back(fragment);
    if (fragments.empty()) ReportNoFragment(origin, options.fragment);
    return fragments;
}

bool IsFragmentInput(const std::string& path, const DrawingOptions& options) {
    return options.qvxml || !options.fragment.empty() || path.ends_with(".qvxml") ||
           path.ends_with(".qvxml.gz");
}

namespace {

/// Whether a document encloses drawings. A root with a namespace prefix is a drawing, too.
bool HasDrawingsInside(const ORVXmlNode* root) {
    return root->id != ElementName::kSvg && !FindOutermostSvgElements(root).empty();
}

/// Passes the drawings of a parsed document to `use`.
int UseDocument(const InputOrigin& origin, const DrawingOptions& options,
                const std::shared_ptr<Document>& document, const std::function<int(const Drawing&)>& use) {
    if (IsStandard(options)) return UseStandardDrawings(origin, options, document, use);
    if (!IsFragmentInput(origin.path, options)) {
        const auto opened = std::make_shared<OpenedDrawing>();
        opened->document = document;
        opened->input =
            ORVRef<ORVPrintInputXMLElement>(document->dom ? new ORVPrintInputXMLElement(document->dom)
                                                          : new ORVPrintInputXMLElement(&document->light));
        opened->interpreter = CreateInterpreter("SVG", opened->input.get(), origin);
        return opened->interpreter ? UseDrawing(origin, opened, true, use) : kResultNoModule;
    }

    const std::vector<const ORVXmlNode*> fragments = SelectFragments(document->GetRoot(), origin, options);
    if (fragments.empty()) return kResultNoPage;
    for (const ORVXmlNode* fragment : fragments) {
        const auto opened = std::make_shared<OpenedDrawing>();
        opened->document = document;
        opened->input = MakeFragmentInput(*document, fragment, options.fragment.empty(), opened->holder);
        if (!opened->input) return origin.host.ReportOutOfMemory(origin.name);
        opened->interpreter = CreateInterpreter("QVXML", opened->input.get(), origin);
        if (!opened->interpreter) return kResultNoModule;
        const int code = UseDrawing(origin, opened, fragments.size() == 1, use);
        if (code != kResultDone) return code;
    }
    return kResultDone;
}

}  // namespace

int UseDrawings(const InputOrigin& origin, const DrawingOptions& options, InputBytes bytes,
                const std::function<int(const Drawing&)>& use) {
    if (!IsFragmentInput(origin.path, options) && IsHtml(bytes.GetView()))
        return origin.host.Report(
            kResultNoPage, origin.name,
            "is an HTML page, not an SVG drawing; drawings within well-formed XHTML print with --qvxml");
    const auto document = std::make_shared<Document>();
    if (const int code = ParseDocument(origin, options, options.keepGoing, std::move(bytes), *document);
        code != kResultDone)
        return code;
    if (!options.detectsQvxml || !HasDrawingsInside(document->GetRoot()))
        return UseDocument(origin, options, document, use);
    DrawingOptions asQvxml = options;
    asQvxml.qvxml = true;
    return UseDocument(origin, asQvxml, document, use);
}

int UseFragment(const InputOrigin& origin, const DrawingOptions& options, InputBytes bytes,
                const std::function<int(ORVPrintInterpreter&)>& use) {
    Document document;
    if (const int code = ParseDocument(origin, options, true, std::move(bytes), document);
        code != kResultDone)
        return code;
    const ORVXmlNode* fragment = FindFragment(document.GetRoot(), options.fragment);
    if (!fragment) return ReportNoFragment(origin, options.fragment);
    ORVLightXmlElement holder;
    const auto input = MakeFragmentInput(document, fragment, false, holder);
    const auto interpreter = CreateInterpreter("QVXML", input.get(), origin);
    return interpreter ? use(*interpreter) : kResultNoModule;
}
