// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/FamilyAnswers.h"

#include <algorithm>
#include <utility>

#include "platform/visualization/fonts/font_cache.h"

namespace {

// A document may name any number of families. The file holds this many answers, and a process adds no more
// than this many, so that one document cannot replace all of them.
constexpr std::size_t kMostAnswers = 256;
constexpr int kMostAdded = 16;
constexpr std::size_t kLongestQuery = 128;

}  // namespace

FamilyAnswers::FamilyAnswers(const FontCatalogue& catalogue) : catalogue_(catalogue) {
    if (catalogue.GetIndexHeader().empty()) return;
    folder_ = FontCacheFolder();
    std::string basis = BasisOfAnswers(catalogue.GetIndexHeader());
    std::string bytes;
    if (folder_.empty() || !ReadFontCache(folder_, kFamilyIndexFile, bytes) ||
        !DecodeFamilyIndex(bytes, index_) || index_.basis != basis)
        index_ = {std::move(basis), {}};
}

std::optional<FamilyAnswers::Answer> FamilyAnswers::Find(const std::string& query) const {
    const auto found = std::find_if(index_.answers.begin(), index_.answers.end(),
                                    [&](const FamilyAnswer& answer) { return answer.query == query; });
    if (found == index_.answers.end()) return std::nullopt;
    if (found->path.empty()) return Answer{nullptr, found->isOfFamily};
    const CatalogueEntry* const entry = catalogue_.EntryOf(found->path, found->index);
    return entry ? std::optional(Answer{entry, found->isOfFamily}) : std::nullopt;
}

void FamilyAnswers::Add(const std::string& query, const Answer& answer) {
    if (folder_.empty() || added_ == kMostAdded || query.size() > kLongestQuery) return;
    ++added_;
    FamilyAnswer kept{query, {}, 0, answer.isOfFamily};
    if (answer.entry) {
        kept.path = answer.entry->ownFace->GetFilePath();
        kept.index = answer.entry->ownFace->GetFaceIndex();
    }
    if (index_.answers.size() >= kMostAnswers) index_.answers.erase(index_.answers.begin());
    index_.answers.push_back(std::move(kept));
    WriteFontCache(folder_, kFamilyIndexFile, EncodeFamilyIndex(index_));
}
