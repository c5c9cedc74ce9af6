// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include <fontconfig/fontconfig.h>

#include "platform/visualization/fonts/module/file_face.h"

/// Finds fonts for characters that are missing in a text's font, in fontconfig's order of similarity to that
/// font. Results are cached. For one thread at a time.
class FallbackFonts {
public:
    /// Throws FontFailure or std::bad_alloc when fonts cannot be searched.
    /// @return the face for `codePoint` in place of `base`; null when no installed font has the character
    const FileFace* Find(const FileFace& base, char32_t codePoint);
    /// The same, for fonts whose glyphs are colour images.
    const FileFace* FindColoured(char32_t codePoint);

private:
    struct Candidate {
        const FcCharSet* characters;
        const FileFace* face;
    };
    struct Chain {
        std::vector<Candidate> candidates;
        std::unordered_map<char32_t, const FileFace*> answers;
    };
    static std::vector<Candidate> SortedCandidates(const FileFace& base);

    void ListColoured();

    std::unordered_map<const FileFace*, Chain> chains_;
    std::vector<std::unique_ptr<const FileFace>> ownFaces_;  // faces that are not in the catalogue
    std::vector<Candidate> coloured_;
    bool isListed_ = false;
};
