// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/input/drawings.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "apps/orvprint/process/limits.h"
#include "apps/orvprint/process/memory_limit.h"
#include "apps/orvprint/process/memory_prefault.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/time_limit.h"
#include "library/input/foreign_input.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintModule.h"
#include "platform/print/ORVPrintPreferences.h"
#include "platform/system/ORVRef.h"
#include "platform/system/files.h"
#include "platform/system/growing_bytes.h"
#include "platform/system/gzip.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlFragments.h"

namespace {

std::string InputName(const std::string& path) { return DisplayName(path, "standard input"); }

/// Replaces packed bytes by what they hold. @return an exit code; a failure was reported
int Unpack(const std::string& path, InputBytes& bytes) {
    if (!IsGzip(bytes.GetView())) return kExitDone;
    // To the limit of memory, it counts as it is stored: what it claims to hold costs its author nothing.
    const auto content = std::make_shared<GrowingBytes>();
    std::string error;
    switch (UnpackGzip(bytes.GetView(), UnpackLimits::InForce(), *content, error)) {
        case UnpackResult::kUnpacked: bytes = InputBytes(content, content->GetView()); return kExitDone;
        case UnpackResult::kOverLimit: return Report(kExitFailed, InputName(path), error);
        case UnpackResult::kDamaged: break;
    }
    return Report(kExitUnreadable, InputName(path), error);
}

/// Reads all of an input and unpacks it; it may be empty. @return an exit code; a failure was reported
int ReadBytes(const std::string& path, InputBytes& bytes) {
    const int descriptor = path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return Report(kExitUnreadable, path, std::strerror(errno));
    const bool read = ReadAll(descriptor, bytes);
    const int error = errno;
    if (descriptor != STDIN_FILENO) close(descriptor);
    if (!read && error == EFBIG)
        return Report(InputName(path), ORVFailure::OfLimit(ORVPrintLimit::kInputBytes));
    if (!read) return Report(kExitUnreadable, InputName(path), std::strerror(error));
    return Unpack(path, bytes);
}

/// True for a file that is no larger than inputs may be and holds plain text, as far as its first bytes tell.
/// What can be read only once, such as a pipe, is not looked at and is none.
bool IsPlainFile(const std::string& path) {
    struct stat information {};
    if (stat(path.c_str(), &information) != 0 || !S_ISREG(information.st_mode)) return false;
    if (static_cast<std::uint64_t>(information.st_size) > ORVPrintLimits::Get(ORVPrintLimit::kInputBytes))
        return false;
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return false;
    std::array<char, 2> start{};
    const ssize_t got = read(descriptor, start.data(), start.size());
    close(descriptor);
    return got >= 0 && !IsGzip({start.data(), static_cast<std::size_t>(got)});
}

std::uint64_t SizeOf(const std::string& path) {
    struct stat information {};
    return stat(path.c_str(), &information) == 0 ? static_cast<std::uint64_t>(information.st_size) : 0;
}

/// Whether drawings are read as standard SVG.
bool IsStandard(const ReadOptions& options) { return options.interpreter == "SVG2"; }

/// A parsed document. One of the two is set.
struct Document {
    ORVLightXmlElement light;
    ORVIDOMElement_var dom;

    const ORVXmlNode* GetRoot() const { return dom ? dom.GetNode() : light.GetNode(); }
    ORVRef<const ORVXmlTree> GetTree() const { return dom ? dom.GetTree() : light.GetTree(); }
};

/// Parses for one reading of its drawings; a document that is not well formed is reported, unless what was
/// read of it is wanted.
/// @return an exit code
int ParseDocument(const std::string& path, const ReadOptions& options, bool wantsBroken, InputBytes bytes,
                  Document& document) {
    ORVXmlError error;
    if (IsStandard(options)) {
        // Where text stands between elements matters, and whatever is used again is read again.
        ORVParseXml({bytes.GetOwner(), bytes.GetView()}, document.dom, &error);
    } else if (options.parser == "dom") {
        ORVUnicodeString text;
        const std::string_view view = bytes.GetView();
        if (text.BuildFromUTF8(view.data(), view.size()) != 1) {
            // The parser that looks at bytes knows where they stop being UTF-8, or that they are another
            // encoding.
            ORVLightXmlParser parser;
            ORVLightXmlElement element;
            if (parser.Parse({view.data(), view.size()}, element) == 1)
                return Report(kExitNotWellFormed, InputName(path),
                              "is not UTF-8, the only encoding that --parser dom reads; use --parser light");
            error = parser.GetError();
        } else {
            bytes = InputBytes();
            BuildParser(text, "SVG", document.dom, &error, ORVXmlReading::kOnce);
        }
    } else {
        ORVLightXmlParser parser;
        parser.Parse({bytes.GetOwner(), bytes.GetView(), ORVXmlReading::kOnce}, document.light);
        error = parser.GetError();
    }
    if (error.isOutOfMemory) return ReportOutOfMemory(InputName(path));
    const bool hasContent = document.GetRoot() != nullptr;
    if (error.message.empty() && hasContent) return kExitDone;
    if (wantsBroken && hasContent) {
        if (options.keepGoing)
            Report(kExitDone,
                   InputName(path) + ":" + std::to_string(error.line) + ":" + std::to_string(error.column),
                   error.message + "; continuing with what precedes the error");
        return kExitDone;
    }
    const std::string reason = error.message.empty() ? "no element found" : error.message;
    const std::string place = error.line == 0
                                  ? std::string()
                                  : ":" + std::to_string(error.line) + ":" + std::to_string(error.column);
    return Report(kExitNotWellFormed, InputName(path) + place, reason);
}

/// The `svg` element that the options name; null when there is none.
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

int ReportNoFragment(const std::string& path, const std::string& fragment) {
    return Report(kExitNoPage, InputName(path),
                  fragment.empty() ? "has no svg element" : "has no svg element '" + fragment + "'");
}

/// @return null after a report
std::unique_ptr<ORVPrintInterpreter> CreateInterpreter(const char* name, ORVPrintInput* input,
                                                       const std::string& path) {
    ORVFailure failure;
    auto interpreter = ORVPrintModule::CreateInterpreter(name, input, failure);
    if (!interpreter) {
        failure.text = std::string("the interpreter for ") + name + " cannot be loaded: " + failure.text;
        Report("", failure);
    } else if (path != "-") {
        ORVPrintModule::SetCurrentPath(name, *interpreter, path);
    }
    return interpreter;
}

/// Leaves a model to the end of the process, which gives its memory back at once; piece by piece takes a
/// tenth of a print.
void LeaveToProcess(std::unique_ptr<ORVPrintInterpreter> interpreter) {
    static auto* const left = new std::vector<std::unique_ptr<ORVPrintInterpreter>>;
    left->push_back(std::move(interpreter));
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

/// Pages of a drawing that has no model.
int UseWithoutModel(const std::string& path, ORVPrintInterpreter& interpreter, bool isOnly,
                    const std::function<int(const Drawing&)>& use) {
    unsigned int count = 0;
    const int result = interpreter.GetPageCount(count);
    if (result == -1)
        return Report(kExitNoPage, InputName(path),
                      "is no drawing: its root is no svg element of SVG's namespace");
    if (result != 1) return ReportOutOfMemory(InputName(path));
    std::vector<PageFacts> pages;
    for (unsigned int page = 1; page <= count; ++page) {
        float width = 0.0F, height = 0.0F;
        ORVUnicodeString title;
        interpreter.SetCurrentPage(page);
        if (interpreter.GetSize(width, height) != 1 || interpreter.GetTitle(title) != 1)
            return ReportOutOfMemory(InputName(path));
        const bool hasArea = std::isfinite(width) && std::isfinite(height) && width > 0.0F && height > 0.0F;
        pages.push_back({width, height, hasArea, std::string(title.GetView())});
    }
    interpreter.SetCurrentPage(0);
    return use({interpreter, std::move(pages), isOnly});
}

/// @param isOnly  whether the drawing is the only one of its document, which then ends as soon as the model
///                stands
int UseDrawing(const std::string& path, ORVPrintInterpreter& interpreter, Document& document, bool isOnly,
               const std::function<int(const Drawing&)>& use) {
    ORVRef<const ORVPrtModel> model;
    const int built = interpreter.GetModel(model);
    if (model)
        if (const ORVFailure failure = model->GetBudget().GetFailure())
            return Report(InputName(path), failure);
    // There is an element, and nothing that was left out: only memory can have been missing.
    if (built != 1)
        return Report(InputName(path), ORVFailure::Of(ORVFailureReason::kOutOfMemory,
                                                      "could not be turned into pages; out of memory"));
    std::vector<PageFacts> pages = FactsOfPages(*model);
    const std::uint32_t unread = document.GetTree() ? document.GetTree()->GetUnreadElements() : 0;
    model = nullptr;  // a last print takes it apart
    if (pages.empty()) return Report(kExitNoPage, InputName(path), "has no page");
    if (isOnly) document = Document();
    return use({interpreter, std::move(pages), isOnly, unread});
}

/// @param isAlone  the element as a document of its own: interpreters for DOM elements also take the siblings
///                 that follow it. Those are pages of a drawing that was asked for by name; where all
///                 drawings are, they come in their own turn.
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

int UseStandardDrawings(const std::string& path, const ReadOptions& options, const Document& document,
                        const std::function<int(const Drawing&)>& use) {
    std::vector<const ORVXmlNode*> roots{document.GetRoot()};
    if (IsFragmentInput(path, options)) roots = SelectFragments(document.GetRoot(), path, options);
    if (roots.empty()) return kExitNoPage;
    for (const ORVXmlNode* root : roots) {
        const ORVIDOMElement_var element(document.GetTree(), root);
        const ORVRef<ORVPrintInputXMLElement> input(new ORVPrintInputXMLElement(element));
        auto interpreter = CreateInterpreter("SVG2", input.get(), path);
        if (!interpreter) return kExitNoModule;
        const int code = UseWithoutModel(path, *interpreter, roots.size() == 1, use);
        if (options.endsWithInput) LeaveToProcess(std::move(interpreter));
        if (code != kExitDone) return code;
    }
    return kExitDone;
}

/// The words between commas, in lower case.
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

bool MeasuringAccessPolicy::MayRead(const ORVUnicodeString& path) const {
    if (!folders_.MayRead(path)) return false;
    const std::string name(path.GetView());
    if (!seen_.Add(name)) return true;
    FilesOfDrawings().Add(name);
    // No image that can be read is larger than that.
    constexpr std::uint64_t kLargest = std::uint64_t{256} << 20U;
    if (const std::uint64_t size = SizeOf(name); size <= kLargest) AllowMemoryFor(size);
    return true;
}

FileSet& FilesOfDrawings() {
    static auto* const files = new FileSet;
    return *files;
}

AccessScope::AccessScope(const std::string& path, const ReadOptions& options) {
    if (path != "-") {
        ORVUnicodeString folder, name;
        ORVSplitPath(path, folder, name);
        policy_.AllowFolder(folder.IsEmpty() ? ORVUnicodeString(".") : folder);
    }
    for (const std::string& folder : options.allowedFolders) policy_.AllowFolder(folder);
    ORVFileAccessPolicy::SetCurrent(&policy_);
}

AccessScope::~AccessScope() { ORVFileAccessPolicy::SetCurrent(nullptr); }

std::vector<const ORVXmlNode*> SelectFragments(const ORVXmlNode* root, const std::string& path,
                                               const ReadOptions& options) {
    std::vector<const ORVXmlNode*> fragments;
    if (options.fragment.empty())
        fragments = FindOutermostSvgElements(root);
    else if (const ORVXmlNode* fragment = FindFragment(root, options.fragment))
        fragments.push_back(fragment);
    if (fragments.empty()) ReportNoFragment(path, options.fragment);
    return fragments;
}

int ApplyReadOptions(const ReadOptions& options) {
    constexpr const char* kWithoutDOM = "PRINT_WITHOUT_DOM_PARSER";
    if (options.parser == "dom")
        unsetenv(kWithoutDOM);
    else
        setenv(kWithoutDOM, "1", 1);
    SetTimeLimit(options.timeLimit);
    ORVPrintPreferences::Set({SplitLanguages(options.languages), options.fontSize});
    return ApplyLimits(options.limits);
}

bool IsFragmentInput(const std::string& path, const ReadOptions& options) {
    return options.qvxml || !options.fragment.empty() || path.ends_with(".qvxml") ||
           path.ends_with(".qvxml.gz");
}

int ReadInput(const std::string& path, InputBytes& bytes) {
    if (const int code = ReadBytes(path, bytes); code != kExitDone) return code;
    if (bytes.GetView().empty()) return Report(kExitUnreadable, InputName(path), "is empty");
    if (const std::string_view kind = DescribeForeignInput(bytes.GetView()); !kind.empty())
        return Report(kExitNotWellFormed, InputName(path),
                      "is " + std::string(kind) + ", not an SVG drawing");
    return kExitDone;
}

int CheckInput(const std::string& path) {
    if (path == "-") return kExitDone;
    struct stat information {};
    if (path.find("://") != std::string::npos && stat(path.c_str(), &information) != 0)
        return Report(kExitUnreadable, path, "is an address, not a file; download the drawing first");
    if (stat(path.c_str(), &information) != 0 || access(path.c_str(), R_OK) != 0)
        return Report(kExitUnreadable, path, std::strerror(errno));
    if (S_ISDIR(information.st_mode)) return Report(kExitUnreadable, path, "is a folder");
    return kExitDone;
}

int ForEachDrawing(const std::string& path, const ReadOptions& options,
                   const std::function<int(const Drawing&)>& use) {
    InputBytes bytes;
    if (const int code = ReadInput(path, bytes); code != kExitDone) return code;
    if (!IsFragmentInput(path, options) && IsHtml(bytes.GetView()))
        return Report(kExitNoPage, InputName(path),
                      "is an HTML page, not an SVG drawing; drawings within well-formed XHTML print with "
                      "--qvxml");
    const MemoryPrefault memoryPrefault(bytes.GetView().size());
    Document document;
    if (const int code = ParseDocument(path, options, options.keepGoing, std::move(bytes), document);
        code != kExitDone)
        return code;

    const AccessScope access(path, options);
    if (IsStandard(options)) return UseStandardDrawings(path, options, document, use);
    if (!IsFragmentInput(path, options)) {
        const ORVRef<ORVPrintInputXMLElement> input(document.dom
                                                        ? new ORVPrintInputXMLElement(document.dom)
                                                        : new ORVPrintInputXMLElement(&document.light));
        auto interpreter = CreateInterpreter("SVG", input.get(), path);
        if (!interpreter) return kExitNoModule;
        const int code = UseDrawing(path, *interpreter, document, true, use);
        if (options.endsWithInput) LeaveToProcess(std::move(interpreter));
        return code;
    }

    const std::vector<const ORVXmlNode*> fragments = SelectFragments(document.GetRoot(), path, options);
    if (fragments.empty()) return kExitNoPage;
    for (const ORVXmlNode* fragment : fragments) {
        ORVLightXmlElement holder;
        const auto input = MakeFragmentInput(document, fragment, options.fragment.empty(), holder);
        if (!input) return ReportOutOfMemory(InputName(path));
        const auto interpreter = CreateInterpreter("QVXML", input.get(), path);
        if (!interpreter) return kExitNoModule;
        const int code = UseDrawing(path, *interpreter, document, fragments.size() == 1, use);
        if (code != kExitDone) return code;
    }
    return kExitDone;
}

int OpenForInspection(const std::string& path, const ReadOptions& options,
                      const std::function<int(ORVPrintInterpreter&)>& use) {
    if (IsStandard(options))
        return ForEachDrawing(path, options,
                              [&use](const Drawing& drawing) { return use(drawing.interpreter); });
    const AccessScope access(path, options);
    if (options.fragment.empty()) {
        if (const int code = CheckInput(path); code != kExitDone) return code;
        ORVRef<ORVPrintInput> input;
        if (path != "-" && IsPlainFile(path)) {
            AllowMemoryFor(SizeOf(path));
            input = ORVRef<ORVPrintInput>(new ORVPrintInputFileStream(path));
        } else {
            InputBytes bytes;
            if (const int code = ReadBytes(path, bytes); code != kExitDone) return code;
            input = ORVRef<ORVPrintInput>(new ORVPrintInputMemoryStream(std::string(bytes.GetView())));
        }
        const auto interpreter = CreateInterpreter("SVG", input.get(), path);
        return interpreter ? use(*interpreter) : kExitNoModule;
    }

    InputBytes bytes;
    if (const int code = ReadInput(path, bytes); code != kExitDone) return code;
    Document document;
    if (const int code = ParseDocument(path, options, true, std::move(bytes), document); code != kExitDone)
        return code;
    const ORVXmlNode* fragment = FindFragment(document.GetRoot(), options.fragment);
    if (!fragment) return ReportNoFragment(path, options.fragment);
    ORVLightXmlElement holder;
    const auto input = MakeFragmentInput(document, fragment, false, holder);
    const auto interpreter = CreateInterpreter("QVXML", input.get(), path);
    return interpreter ? use(*interpreter) : kExitNoModule;
}
