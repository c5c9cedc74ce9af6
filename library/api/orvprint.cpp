// SPDX-License-Identifier: Apache-2.0
#include "library/api/orvprint.h"

#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <string>

#include "generators/formats.h"
#include "library/api/LibraryDocument.h"

struct orvprint_document {
    LibraryDocument document;
};

namespace {

constexpr double kPointsPerUserUnit = 72.0 / 90.0;

/// Runs the body of a call that can fail, turning exceptions into results: none may reach the C caller.
template <class Work>
int Call(orvprint_document* handle, Work work) {
    if (!handle) return kResultUsage;
    LibraryDocument& document = handle->document;
    try {
        document.BeginCall();
        return work(document);
    } catch (const std::bad_alloc&) {
        return document.Fail(kResultFailed, "out of memory");
    } catch (const std::exception&) {
        return document.Fail(kResultFailed, "failed");
    }
}

int RefuseNull(LibraryDocument& document) { return document.Fail(kResultUsage, "null argument"); }

/// Copies a string for the caller, who frees it with orvprint_free_text().
int GiveText(LibraryDocument& document, const std::string& text, char** out) {
    char* const copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (!copy) return document.Fail(kResultFailed, "out of memory");
    std::memcpy(copy, text.c_str(), text.size() + 1);
    *out = copy;
    return kResultDone;
}

}  // namespace

const char* orvprint_version(void) { return ORVPRINT_VERSION; }

unsigned int orvprint_api_version(void) { return ORVPRINT_API_VERSION; }

const char* orvprint_format_name(unsigned int index) {
    const auto formats = ORVOutputFormats();
    // Names in the table are string literals, so they are null-terminated.
    return index < formats.size() ? formats[index].name.data() : nullptr;
}

orvprint_document* orvprint_new(void) {
    try {
        return new (std::nothrow) orvprint_document;
    } catch (const std::exception&) {
        return nullptr;
    }
}

void orvprint_free(orvprint_document* document) { delete document; }

int orvprint_error(const orvprint_document* document) {
    return document ? document->document.GetResult() : static_cast<int>(kResultUsage);
}

const char* orvprint_error_text(const orvprint_document* document) {
    return document ? document->document.GetError() : "null argument";
}

int orvprint_set_cancel(orvprint_document* document, orvprint_cancel_function cancel, void* data) {
    return Call(document, [&](LibraryDocument& of) {
        of.SetCancel(cancel, data);
        return kResultDone;
    });
}

int orvprint_set_progress(orvprint_document* document, orvprint_progress_function progress, void* data) {
    return Call(document, [&](LibraryDocument& of) {
        of.SetProgress(progress, data);
        return kResultDone;
    });
}

int orvprint_set_note(orvprint_document* document, orvprint_note_function note, void* data) {
    return Call(document, [&](LibraryDocument& of) {
        of.SetNote(note, data);
        return kResultDone;
    });
}

int orvprint_open_file(orvprint_document* document, const char* path, const char* const* options) {
    return Call(document,
                [&](LibraryDocument& of) { return path ? of.OpenFile(path, options) : RefuseNull(of); });
}

int orvprint_open_bytes(orvprint_document* document, const void* bytes, size_t size,
                        const char* const* options) {
    return Call(document, [&](LibraryDocument& of) {
        if (!bytes && size > 0) return RefuseNull(of);
        const auto copy = std::make_shared<std::string>(static_cast<const char*>(bytes), size);
        return of.OpenBytes(copy, *copy, options);
    });
}

int orvprint_open_borrowed(orvprint_document* document, const void* bytes, size_t size,
                           const char* const* options) {
    return Call(document, [&](LibraryDocument& of) {
        if (!bytes && size > 0) return RefuseNull(of);
        return of.OpenBytes(nullptr, {static_cast<const char*>(bytes), size}, options);
    });
}

int orvprint_open_reader(orvprint_document* document, orvprint_read_function read, void* data,
                         const char* const* options) {
    return Call(document, [&](LibraryDocument& of) {
        return read ? of.OpenReader(read, data, options) : RefuseNull(of);
    });
}

int orvprint_page_count(orvprint_document* document, unsigned int* count) {
    if (count) *count = 0;
    return Call(document,
                [&](LibraryDocument& of) { return count ? of.CountPages(*count) : RefuseNull(of); });
}

int orvprint_page_size(orvprint_document* document, unsigned int page, double* width, double* height) {
    if (width) *width = 0.0;
    if (height) *height = 0.0;
    return Call(document, [&](LibraryDocument& of) {
        if (!width || !height) return RefuseNull(of);
        const PageFacts* facts = nullptr;
        const int code = of.FindPage(page, facts);
        if (!facts) return code;
        *width = facts->width * kPointsPerUserUnit;
        *height = facts->height * kPointsPerUserUnit;
        return code;
    });
}

int orvprint_page_title(orvprint_document* document, unsigned int page, const char** title) {
    if (title) *title = "";
    return Call(document, [&](LibraryDocument& of) {
        if (!title) return RefuseNull(of);
        const PageFacts* facts = nullptr;
        const int code = of.FindPage(page, facts);
        if (facts) *title = facts->title.c_str();
        return code;
    });
}

int orvprint_render_file(orvprint_document* document, const char* path, const char* const* options) {
    return Call(document,
                [&](LibraryDocument& of) { return path ? of.RenderFile(path, options) : RefuseNull(of); });
}

int orvprint_render_descriptor(orvprint_document* document, int descriptor, const char* const* options) {
    return Call(document, [&](LibraryDocument& of) { return of.RenderDescriptor(descriptor, options); });
}

int orvprint_render_writer(orvprint_document* document, orvprint_write_function write, void* data,
                           const char* const* options) {
    return Call(document, [&](LibraryDocument& of) {
        return write ? of.RenderWriter(write, data, options) : RefuseNull(of);
    });
}

int orvprint_check(orvprint_document* document, const char* const* options, char** json) {
    if (json) *json = nullptr;
    return Call(document, [&](LibraryDocument& of) {
        if (!json) return RefuseNull(of);
        std::string text;
        const int code = of.Check(options, text);
        return code == kResultDone ? GiveText(of, text, json) : code;
    });
}

int orvprint_dump(orvprint_document* document, char** json) {
    if (json) *json = nullptr;
    return Call(document, [&](LibraryDocument& of) {
        if (!json) return RefuseNull(of);
        std::string text;
        const int code = of.Dump(text);
        return code == kResultDone ? GiveText(of, text, json) : code;
    });
}

void orvprint_free_text(char* text) { std::free(text); }
