// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system/ORVBaseObject.h"

/// What fontconfig answered for a family that no installed face is called by.
struct FamilyAnswer {
    std::string query;        ///< family, slant, width and weight
    std::string path;         ///< file of the face; empty when no face was chosen
    std::uint32_t index = 0;  ///< index in a font collection
    bool isOfFamily = false;  ///< true when the face is better than a last resort

    bool operator==(const FamilyAnswer&) const = default;
};

/// The latest answers, together with what they depend on.
struct FamilyIndex {
    std::string basis;  ///< the face index, and the environment variables that affect matching
    std::vector<FamilyAnswer> answers;

    bool operator==(const FamilyIndex&) const = default;
};

/// Serialises an index.
ORV_PLATFORM_EXPORT std::string EncodeFamilyIndex(const FamilyIndex& index);
/// Deserialises an index. A checksum detects modified, truncated and foreign files; sizes are checked before
/// use.
/// @return false when the bytes are not an index of this version; `index` is then unspecified
[[nodiscard]] ORV_PLATFORM_EXPORT bool DecodeFamilyIndex(std::string_view bytes, FamilyIndex& index);

/// What a choice among installed faces depends on: the face index that describes them, the user's languages
/// and desktop, and the name of the program, which rules of fontconfig may test.
/// @param faceIndex  the bytes of the face index, or its header
ORV_PLATFORM_EXPORT std::string BasisOfAnswers(std::string_view faceIndex);
