// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/family_index.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>

#include "platform/visualization/fonts/font_cache_bytes.h"

namespace {

constexpr std::uint64_t kMagic = 0x31786449'6D61466FULL;  // includes the version of the format
constexpr std::size_t kLeastAnswerSize = 2 * 4 + 4 + 1;

}  // namespace

std::string EncodeFamilyIndex(const FamilyIndex& index) {
    CacheWriter body;
    body.PutText(index.basis);
    body.Put(static_cast<std::uint32_t>(index.answers.size()));
    for (const FamilyAnswer& answer : index.answers) {
        body.PutText(answer.query);
        body.PutText(answer.path);
        body.Put(answer.index);
        body.Put(static_cast<std::uint8_t>(answer.isOfFamily));
    }
    return SealCacheFile(kMagic, body.Bytes());
}

bool DecodeFamilyIndex(std::string_view bytes, FamilyIndex& index) {
    index = {};
    std::string_view body;
    if (!OpenCacheFile(bytes, kMagic, body)) return false;

    CacheReader reader(body);
    reader.TakeText(index.basis);
    index.answers.resize(reader.TakeCount(kLeastAnswerSize));
    for (FamilyAnswer& answer : index.answers) {
        reader.TakeText(answer.query);
        reader.TakeText(answer.path);
        reader.Take(answer.index);
        std::uint8_t isOfFamily = 0;
        reader.Take(isOfFamily);
        answer.isOfFamily = isOfFamily != 0;
    }
    return reader.IsAtEnd();
}

std::string BasisOfAnswers(std::string_view faceIndex) {
    std::string basis(HeaderOfCacheFile(faceIndex));
    for (const char* name : {"FC_LANG", "LC_ALL", "LC_CTYPE", "LANG", "XDG_CURRENT_DESKTOP"}) {
        basis += name;
        // A variable that is set but empty differs from one that is not set.
        if (const char* value = std::getenv(name)) (basis += '=') += value;
        basis += '\n';
    }
    return basis += program_invocation_short_name;
}
