// SPDX-License-Identifier: Apache-2.0
#ifndef ORVPRINT_HPP
#define ORVPRINT_HPP

/// @file
/// C++17 wrapper around the C interface of liborvprint, with documents that free themselves and failures
/// reported as exceptions. It is header-only, so the library may be built with a different compiler.
/// orvprint.h documents the functions and their option keys.

#include <orvprint.h>

#include <cstddef>
#include <exception>
#include <functional>
#include <istream>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvprint {

/// A failed call. what() is the error text.
class Error : public std::runtime_error {
public:
    /// @param result  one of ORVPRINT_ERROR_...
    /// @param text    the message that what() returns
    Error(int result, const std::string& text) : std::runtime_error(text), result_(result) {}
    /// One of ORVPRINT_ERROR_...
    int GetResult() const noexcept { return result_; }

private:
    int result_;
};

/// Options as key and value, such as {{"dpi", "300"}, {"paper", "A4"}}. Applied in order.
using Options = std::vector<std::pair<std::string, std::string>>;

/// Size of a page in points (1/72 inch).
struct PageSize {
    double width = 0.0;   ///< in points
    double height = 0.0;  ///< in points
};

/// A document. Movable; must be used by only one thread at a time. Its functions throw Error on failure, and
/// rethrow any exception thrown by a callback.
class Document {
public:
    /// Creates a document with nothing open.
    Document() : state_(std::make_unique<State>()) {}

    /// Opens a file.
    void OpenFile(const std::string& path, const Options& options = {}) {
        Do([&](orvprint_document* handle,
               const char* const* pairs) { return orvprint_open_file(handle, path.c_str(), pairs); },
           options);
    }
    /// Opens a copy of the bytes.
    void OpenBytes(std::string_view bytes, const Options& options = {}) {
        Do(
            [&](orvprint_document* handle, const char* const* pairs) {
                return orvprint_open_bytes(handle, bytes.data(), bytes.size(), pairs);
            },
            options);
    }
    /// Reads a stream to its end and opens the content.
    void OpenStream(std::istream& stream, const Options& options = {}) {
        state_->stream = &stream;
        Do(
            [&](orvprint_document* handle, const char* const* pairs) {
                return orvprint_open_reader(handle, &State::Read, state_.get(), pairs);
            },
            options);
    }

    /// Number of pages.
    unsigned int GetPageCount() const {
        unsigned int count = 0;
        Do([&](orvprint_document* handle, const char* const*) {
            return orvprint_page_count(handle, &count);
        });
        return count;
    }
    /// Size of a page.
    /// @param page  page number, from 1
    PageSize GetPageSize(unsigned int page) const {
        PageSize size;
        Do([&](orvprint_document* handle, const char* const*) {
            return orvprint_page_size(handle, page, &size.width, &size.height);
        });
        return size;
    }
    /// Title of a page; empty if it has none.
    /// @param page  page number, from 1
    std::string GetPageTitle(unsigned int page) const {
        const char* title = "";
        Do([&](orvprint_document* handle, const char* const*) {
            return orvprint_page_title(handle, page, &title);
        });
        return title;
    }

    /// Renders to a file.
    void RenderFile(const std::string& path, const Options& options = {}) {
        Do([&](orvprint_document* handle,
               const char* const* pairs) { return orvprint_render_file(handle, path.c_str(), pairs); },
           options);
    }
    /// Renders to an open file descriptor, which stays open.
    void RenderDescriptor(int descriptor, const Options& options) {
        Do([&](orvprint_document* handle,
               const char* const* pairs) { return orvprint_render_descriptor(handle, descriptor, pairs); },
           options);
    }
    /// Renders and returns the output bytes.
    std::string Render(const Options& options) {
        state_->bytes.clear();
        Do(
            [&](orvprint_document* handle, const char* const* pairs) {
                return orvprint_render_writer(handle, &State::Write, state_.get(), pairs);
            },
            options);
        return std::move(state_->bytes);
    }

    /// Checks the document and returns the findings as JSON; see orvprint_check().
    std::string Check(const Options& options = {}) const {
        char* json = nullptr;
        Do([&](orvprint_document* handle,
               const char* const* pairs) { return orvprint_check(handle, pairs, &json); },
           options);
        return TakeText(json);
    }
    /// Returns the model as JSON; see orvprint_dump().
    std::string Dump() const {
        char* json = nullptr;
        Do([&](orvprint_document* handle, const char* const*) { return orvprint_dump(handle, &json); });
        return TakeText(json);
    }

    /// Sets the function that cancels a call by returning true; an empty function removes it.
    void SetCancel(std::function<bool()> cancel) {
        state_->cancel = std::move(cancel);
        orvprint_set_cancel(state_->handle.get(), state_->cancel ? &State::Cancel : nullptr, state_.get());
    }
    /// Sets the function called after each page with the number of pages rendered and the total; an empty
    /// function removes it.
    void SetProgress(std::function<void(unsigned int, unsigned int)> progress) {
        state_->progress = std::move(progress);
        orvprint_set_progress(state_->handle.get(), state_->progress ? &State::Progress : nullptr,
                              state_.get());
    }
    /// Sets the function that receives messages; an empty function removes it.
    void SetNote(std::function<void(const std::string&)> note) {
        state_->note = std::move(note);
        orvprint_set_note(state_->handle.get(), state_->note ? &State::Note : nullptr, state_.get());
    }

private:
    struct Free {
        void operator()(orvprint_document* handle) const { orvprint_free(handle); }
        void operator()(char* text) const { orvprint_free_text(text); }
    };

    // The data pointer of all callbacks. Its address stays the same when the document is moved.
    struct State {
        std::unique_ptr<orvprint_document, Free> handle{orvprint_new()};
        std::function<bool()> cancel;
        std::function<void(unsigned int, unsigned int)> progress;
        std::function<void(const std::string&)> note;
        std::istream* stream = nullptr;
        std::string bytes;
        std::exception_ptr thrown;

        // Exceptions must not propagate through the C library.
        template <class Result, class Work>
        Result Guard(Result failure, Work work) {
            try {
                return work();
            } catch (...) {
                if (!thrown) thrown = std::current_exception();
                return failure;
            }
        }
        static State& Of(void* data) { return *static_cast<State*>(data); }
        static int Cancel(void* data) {
            State& state = Of(data);
            if (state.thrown) return 1;
            return state.Guard(1, [&] { return state.cancel() ? 1 : 0; });
        }
        static void Progress(void* data, unsigned int done, unsigned int total) {
            State& state = Of(data);
            state.Guard(0, [&] { return state.progress(done, total), 0; });
        }
        static void Note(void* data, const char* text) {
            State& state = Of(data);
            state.Guard(0, [&] { return state.note(text), 0; });
        }
        static int Write(void* data, const void* bytes, std::size_t size) {
            State& state = Of(data);
            return state.Guard(0, [&] {
                state.bytes.append(static_cast<const char*>(bytes), size);
                return 1;
            });
        }
        static std::size_t Read(void* data, void* bytes, std::size_t size) {
            State& state = Of(data);
            return state.Guard(static_cast<std::size_t>(-1), [&] {
                state.stream->read(static_cast<char*>(bytes), static_cast<std::streamsize>(size));
                return state.stream->bad() ? static_cast<std::size_t>(-1)
                                           : static_cast<std::size_t>(state.stream->gcount());
            });
        }
    };

    static std::string TakeText(char* json) {
        const std::unique_ptr<char, Free> text(json);
        return text.get();
    }

    template <class Work>
    void Do(Work work, const Options& options = {}) const {
        orvprint_document* const handle = state_->handle.get();
        if (!handle) throw std::bad_alloc();
        std::vector<const char*> pairs;
        pairs.reserve(2 * options.size() + 1);
        for (const auto& option : options) {
            pairs.push_back(option.first.c_str());
            pairs.push_back(option.second.c_str());
        }
        pairs.push_back(nullptr);
        state_->thrown = nullptr;
        const int result = work(handle, pairs.data());
        if (state_->thrown) std::rethrow_exception(std::exchange(state_->thrown, nullptr));
        if (result != ORVPRINT_OK) throw Error(result, orvprint_error_text(handle));
    }

    std::unique_ptr<State> state_;
};

}  // namespace orvprint

#endif
