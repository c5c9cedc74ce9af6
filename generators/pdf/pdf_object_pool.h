// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "generators/pdf/pdf_file.h"

/// Shares equal objects of a document: content that was written before yields the same object. The amount of
/// text remembered is limited; forgotten objects are written again.
class PdfObjectPool {
public:
    explicit PdfObjectPool(PdfFile& file) : file_(file) {}

    /// Returns the object with this content, writing it on first use.
    unsigned int Find(std::string content) {
        return FindBy(std::move(content),
                      [this](unsigned int object, std::string_view key) { file_.WriteObject(object, key); });
    }
    /// The same for a stream. @param entries  of its dictionary, except length and filter
    unsigned int FindStream(const std::string& entries, const std::string& bytes) {
        return FindBy(entries + "stream" + bytes, [&](unsigned int object, std::string_view /*key*/) {
            file_.WriteStream(object, entries, bytes, PdfFile::Packing::kStored);
        });
    }
    /// Returns the object for a key. @param write  called with its number and the key if it is new
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
    std::size_t bytes_ = 0;  // approximate size of the keys
};
