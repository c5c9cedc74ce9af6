// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "generators/pdf/pdf_file.h"

/// Objects that a document holds once, however often they are asked for: what reads the same is the same
/// object. Remembers a bounded amount of text; what was forgotten is written once more.
class PdfObjectPool {
public:
    explicit PdfObjectPool(PdfFile& file) : file_(file) {}

    /// The object with this content, written when it is first asked for.
    unsigned int Find(std::string content) {
        return FindBy(std::move(content),
                      [this](unsigned int object, std::string_view key) { file_.WriteObject(object, key); });
    }
    /// The same for a stream. @param entries  of its dictionary, besides length and filter
    unsigned int FindStream(const std::string& entries, const std::string& bytes) {
        return FindBy(entries + "stream" + bytes, [&](unsigned int object, std::string_view /*key*/) {
            file_.WriteStream(object, entries, bytes, PdfFile::Packing::kStored);
        });
    }
    /// The object that a key stands for. @param write  called with its number and the key when it is new
    template <class Write>
    unsigned int FindBy(std::string key, Write write) {
        if (const auto known = objects_.find(key); known != objects_.end()) return known->second;
        const unsigned int object = file_.Reserve();
        write(object, std::string_view(key));
        Remember(std::move(key), object);
        return object;
    }
    PdfFile& GetFile() { return file_; }

private:
    void Remember(std::string key, unsigned int object) {
        constexpr std::size_t kMostBytes = std::size_t{16} << 20U, kOverhead = 64;
        bytes_ += key.size() + kOverhead;
        if (bytes_ > kMostBytes) {
            objects_.clear();
            bytes_ = key.size() + kOverhead;
        }
        objects_.emplace(std::move(key), object);
    }

    PdfFile& file_;
    std::unordered_map<std::string, unsigned int> objects_;
    std::size_t bytes_ = 0;  // of the keys, roughly
};
