#include "generators/pdf/ORVPdfGenerator.h"

#include <cairo-pdf.h>

#include <string_view>
#include <vector>

#include "generators/cairo/ORVCairoCanvas.h"
#include "generators/cairo/cairo_handles.h"
#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"

namespace {

constexpr double kPointsPerUserUnit = 72.0 / 90.0;
// The format's own limit for page sides is 14,400 units of one point.
constexpr double kLargestSide = 14'400.0;

constexpr const char* kLinkParentTag = "Sect";

/// Percent-encodes everything but the characters for which `keep` is true.
template <class Keep>
std::string Encode(std::string_view text, Keep keep) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (keep(byte)) {
            result += c;
        } else {
            result += '%';
            result += kDigits[byte >> 4U];
            result += kDigits[byte & 15U];
        }
    }
    return result;
}

/// An address in characters that neither the format's strings nor the library's attribute lists give a
/// meaning of their own.
std::string EncodeAddress(std::string_view address) {
    return Encode(address, [](unsigned char c) {
        return c > 0x20 && c < 0x7F &&
               std::string_view("\"'<>()\\").find(static_cast<char>(c)) == std::string_view::npos;
    });
}

/// Name of a link target; different identifiers have different names.
std::string EncodeTarget(std::string_view id) {
    return Encode(id, [](unsigned char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' ||
               c == '_' || c == '.' || c == ':';
    });
}

cairo_status_t WriteToOutput(void* closure, const unsigned char* bytes, unsigned int size) {
    return static_cast<ORVOutput*>(closure)->Write(bytes, size) == 1 ? CAIRO_STATUS_SUCCESS
                                                                     : CAIRO_STATUS_WRITE_ERROR;
}

}  // namespace

struct ORVPdfGenerator::State {
    explicit State(ORVOutput& sink) : output(sink) {}

    /// Turns the state of cairo and of the output into a status.
    int Check(cairo_status_t status) {
        if (status == CAIRO_STATUS_SUCCESS) return kGeneratorDone;
        if (status == CAIRO_STATUS_WRITE_ERROR) return kOutputFailed;
        if (error.empty()) error = cairo_status_to_string(status);
        return kDrawingFailed;
    }
    int Check() { return context ? Check(cairo_status(context.get())) : kDrawingFailed; }

    /// What a group opened, to be ended in the reverse order.
    struct OpenGroup {
        bool isTarget = false, isLink = false;
    };

    ORVOutput& output;
    ORVCairoCanvas canvas{ORVCairoCanvas::Medium::kVector};
    CairoSurface surface;
    CairoContext context;
    std::vector<OpenGroup> groups;
    bool insideLink = false;
    std::string title;
    std::string error;
};

ORVPdfGenerator::ORVPdfGenerator(ORVOutput& output) : state_(std::make_unique<State>(output)) {}

ORVPdfGenerator::~ORVPdfGenerator() = default;

const std::string& ORVPdfGenerator::GetError() const { return state_->error; }

int ORVPdfGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    state_->title = info.title;
    return state_->output.BeginPart() == 1 ? kGeneratorDone : kOutputFailed;
}

int ORVPdfGenerator::BeginPage(const ORVPrintPageInfo& info) {
    const double width = info.width * kPointsPerUserUnit, height = info.height * kPointsPerUserUnit;
    if (!(width <= kLargestSide) || !(height <= kLargestSide)) {
        state_->error = "page " + std::to_string(info.number) + " is larger than PDF allows (5080 mm)";
        return kPageTooLarge;
    }
    if (!state_->surface) {
        state_->surface.reset(
            cairo_pdf_surface_create_for_stream(WriteToOutput, &state_->output, width, height));
        state_->context.reset(cairo_create(state_->surface.get()));
        cairo_pdf_surface_set_metadata(state_->surface.get(), CAIRO_PDF_METADATA_CREATOR, "orvprint");
        if (!state_->title.empty())
            cairo_pdf_surface_set_metadata(state_->surface.get(), CAIRO_PDF_METADATA_TITLE,
                                           state_->title.c_str());
    } else {
        cairo_pdf_surface_set_size(state_->surface.get(), width, height);
    }
    state_->canvas.SetTarget(state_->context.get(), kPointsPerUserUnit);
    return state_->Check();
}

int ORVPdfGenerator::BeginGroup(const ORVPrintGroup& group) {
    State::OpenGroup open;
    if (group.isLinkTarget) {
        const std::string attributes = "name='" + EncodeTarget(group.id) + "'";
        cairo_tag_begin(state_->context.get(), CAIRO_TAG_DEST, attributes.c_str());
        open.isTarget = true;
    }
    // The format knows no link inside a link: the outer one stays.
    if (!state_->insideLink && (!group.linkElementId.empty() || !group.linkURL.empty())) {
        const std::string attributes = group.linkURL.empty()
                                           ? "dest='" + EncodeTarget(group.linkElementId) + "'"
                                           : "uri='" + EncodeAddress(group.linkURL) + "'";
        // A link that belongs to no other element of the document's structure refers to an element that cairo
        // never writes, and the file counts as damaged.
        cairo_tag_begin(state_->context.get(), kLinkParentTag, nullptr);
        cairo_tag_begin(state_->context.get(), CAIRO_TAG_LINK, attributes.c_str());
        open.isLink = true;
        state_->insideLink = true;
    }
    state_->groups.push_back(open);
    return state_->Check();
}

int ORVPdfGenerator::EndGroup() {
    if (state_->groups.empty()) return kDrawingFailed;
    const State::OpenGroup open = state_->groups.back();
    state_->groups.pop_back();
    if (open.isLink) {
        cairo_tag_end(state_->context.get(), CAIRO_TAG_LINK);
        cairo_tag_end(state_->context.get(), kLinkParentTag);
        state_->insideLink = false;
    }
    if (open.isTarget) cairo_tag_end(state_->context.get(), CAIRO_TAG_DEST);
    return state_->Check();
}

int ORVPdfGenerator::DrawShape(const ORVPrintShape& shape) {
    return state_->canvas.DrawShape(shape) == kGeneratorDone ? kGeneratorDone : state_->Check();
}

int ORVPdfGenerator::DrawText(const ORVPrintText& text) {
    return state_->canvas.DrawText(text) == kGeneratorDone ? kGeneratorDone : state_->Check();
}

int ORVPdfGenerator::DrawImage(const ORVPrintImage& image) {
    if (state_->canvas.DrawImage(image) == kGeneratorDone) return kGeneratorDone;
    if (const int result = state_->Check(); result != kGeneratorDone) return result;
    state_->error = "memory is spent";
    return kDrawingFailed;
}

int ORVPdfGenerator::EndPage() {
    cairo_show_page(state_->context.get());
    return state_->Check();
}

int ORVPdfGenerator::EndDocument() {
    state_->canvas.SetTarget(nullptr, 1.0);
    int result = kGeneratorDone;
    if (state_->surface) {
        // A drawing that broke off leaves groups open.
        while (!state_->groups.empty() && EndGroup() == kGeneratorDone) {
        }
        result = state_->Check();
        state_->context.reset();
        cairo_surface_finish(state_->surface.get());
        const int finished = state_->Check(cairo_surface_status(state_->surface.get()));
        if (result == kGeneratorDone) result = finished;
        state_->surface.reset();
    }
    const bool closed = state_->output.EndPart() == 1;
    return result == kGeneratorDone && !closed ? kOutputFailed : result;
}
