// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include <fontconfig/fontconfig.h>

#include "platform/visualization/fonts/module/file_face.h"

/// Finds fonts for characters that a text's own font has not, in fontconfig's order of likeness to that font.
/// Every answer is kept. For one thread at a time.
class FallbackFonts {
public:
    /// Throws FontFailure or std::bad_alloc where fonts cannot be looked for.
    /// @return the face to draw `codePoint` with in place of `base`, null when no installed font has it
    const FileFace* Find(const FileFace& base, char32_t codePoint);
    /// Likewise of fonts whose glyphs are images of several colours.
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
    std::vector<std::unique_ptr<const FileFace>> ownFaces_;  // that the catalogue does not list
    std::vector<Candidate> coloured_;
    bool isListed_ = false;
};
