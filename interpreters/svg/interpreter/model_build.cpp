// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/interpreter/model_build.h"

#include <new>

#include "interpreters/svg/interpreter/SvgDocumentSource.h"
#include "interpreters/svg/state/element_access.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/structure/root_svg.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "platform/xml/ORVLightXml.h"

namespace {

constexpr int kLowMemoryInfo = 2;
// Kept unchanged although it names a different interpreter of the framework.
constexpr const char* kLowMemoryMessage = "ORVPrintCGM2Interpreter: Low Memory Error";
constexpr double kLowMemoryFraction = 0.9;

// Checks the available memory before each top-level child.
class LowMemoryWatch {
public:
    /// @return false if the walk must stop
    bool MayVisit() {
        if (low_) {
            ORVPrintPropertiesManager::AddInfo(kLowMemoryInfo, kLowMemoryMessage);
            if (onErrorAction_ == ORVPrintPropertiesManager::kStopOnError) return false;
        }
        // Checks nine of every ten children instead of one, on purpose.
        if (visits_ % 10 != 0) low_ = ORVPrintPropertiesManager::IsLowMemory(kLowMemoryFraction);
        ++visits_;
        return true;
    }

private:
    int onErrorAction_ = ORVPrintPropertiesManager::GetOnErrorAction();
    unsigned long visits_ = 0;
    bool low_ = false;
};

template <SvgElementAccess Element>
class ModelBuild {
public:
    ModelBuild(const SvgPageSource& source, ORVPrtModel& model) : source_(source), model_(model) {}

    /// Builds the pages of one top-level element.
    /// @return false if the build must end
    bool Build(const Element& root) {
        if (root.Name() != ElementName::kSvg) return BuildSvgChildren(root);
        if (CountSvgChildren(root) >= 2) return BuildSvgChildren(root);
        BuildPage(source_, root, model_);
        return true;
    }

private:
    // Stopping ends only the count: the number counted so far decides.
    unsigned long CountSvgChildren(const Element& root) {
        unsigned long count = 0;
        for (Element child = root.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
            if (!watch_.MayVisit()) break;
            if (child.Name() == ElementName::kSvg) ++count;
        }
        return count;
    }

    bool BuildSvgChildren(const Element& root) {
        for (Element child = root.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
            if (!watch_.MayVisit()) return false;
            if (child.Name() == ElementName::kSvg) BuildPage(source_, child, model_);
        }
        return true;
    }

    const SvgPageSource& source_;
    ORVPrtModel& model_;
    LowMemoryWatch watch_;
};

/// Result of a build that ran out of memory, which is also recorded in the model's budget.
int WithoutMemory(ORVPrtModel& model) {
    model.GetBudget().NoteOutOfMemory();
    return kUnusable;
}

int BuildWithLightParser(const SvgDocumentSource& source, const SvgPageSource& pageSource,
                         ORVPrtModel& model) {
    ORVLightXmlElement parsed;
    const ORVLightXmlElementItf* root = source.GetLightElement();
    if (!root) {
        // The source owns the bytes of a stream, and the model is built only once.
        const ORVLightXmlInputStreamBuffer stream(
            source.GetText(), static_cast<std::size_t>(source.GetTextSize()),
            ORVLightXmlInputStreamBuffer::Lifetime::kElements, ORVXmlReading::kOnce);
        ORVLightXmlParser parser;
        parser.Parse(stream, parsed);  // content before an error is drawn
        if (parser.GetError().isOutOfMemory) return WithoutMemory(model);
        root = &parsed;
    }
    if (root->GetNode())
        ModelBuild<LightElementAccess>(pageSource, model).Build(LightElementAccess(root->GetNode()));
    return kDone;
}

int BuildWithDOMParser(const SvgDocumentSource& source, const SvgPageSource& pageSource, ORVPrtModel& model) {
    ORVIDOMElement_var root = source.GetDOMElement();
    if (!root) {
        ORVUnicodeString text;
        if (text.BuildFromUTF8(source.GetText(), static_cast<std::size_t>(source.GetTextSize())) < 0)
            return kUnusable;
        ORVXmlError error;
        const int parsed = BuildParser(text, "SVG", root, &error, ORVXmlReading::kOnce);
        if (error.isOutOfMemory) return WithoutMemory(model);
        if (parsed < 0 || !root) return kUnusable;
    }
    ModelBuild<DomElementAccess> build(pageSource, model);
    for (DomElementAccess node(root.GetNode()); !node.IsNull(); node = node.NextSibling())
        if (!build.Build(node)) break;
    return kDone;
}

}  // namespace

int BuildModel(const SvgDocumentSource& source, ORVPrtModel* model) {
    const bool useDOM = source.GetUseDOM() == 1;
    const bool hasElement =
        useDOM ? static_cast<bool>(source.GetDOMElement()) : source.GetLightElement() != nullptr;
    if (!model || (!source.GetText() && !hasElement)) return kUnusable;

    const SvgPageSource pageSource{source.GetCurrentPath(), source.GetPrimaryDocument(),
                                   source.GetEmbeddedFragment()};
    try {
        return useDOM ? BuildWithDOMParser(source, pageSource, *model)
                      : BuildWithLightParser(source, pageSource, *model);
    } catch (const std::bad_alloc&) {
        model->RemoveImages();  // incomplete pages are discarded
        return WithoutMemory(*model);
    } catch (...) {  // an exception of the host's code, such as its file access policy
        model->RemoveImages();
        return kUnusable;
    }
}
