#pragma once

#include <unordered_map>
#include <utility>
#include <vector>

#include <fontconfig/fontconfig.h>

class ORVFontFace;

/// Finds fonts for characters that a text's own font has not, in fontconfig's order of likeness to that font.
/// Every answer is kept. For one thread at a time.
class FallbackFonts {
public:
    /// @return the face to draw `codePoint` with in place of `base`, null when no installed font has it
    const ORVFontFace* Find(const ORVFontFace& base, char32_t codePoint);

private:
    struct Candidate {
        const FcCharSet* characters;
        const ORVFontFace* face;
    };
    struct Chain {
        std::vector<Candidate> candidates;
        std::unordered_map<char32_t, const ORVFontFace*> answers;
    };
    static std::vector<Candidate> SortedCandidates(const ORVFontFace& base);

    std::unordered_map<const ORVFontFace*, Chain> chains_;
};
