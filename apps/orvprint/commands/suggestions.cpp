// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/suggestions.h"

#include <algorithm>

namespace {

constexpr std::size_t kLongest = 40;  // longest word that is considered, in characters

/// Edit distance between two words; swapped neighbours count as one edit.
std::size_t Distance(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> edits(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i)
        for (std::size_t k = 0; k <= b.size(); ++k) {
            if (i == 0 || k == 0) {
                edits[i][k] = i + k;
                continue;
            }
            edits[i][k] = std::min({edits[i - 1][k] + 1, edits[i][k - 1] + 1,
                                    edits[i - 1][k - 1] + (a[i - 1] == b[k - 1] ? 0 : 1)});
            const bool isExchanged = i > 1 && k > 1 && a[i - 1] == b[k - 2] && a[i - 2] == b[k - 1];
            if (isExchanged) edits[i][k] = std::min(edits[i][k], edits[i - 2][k - 2] + 1);
        }
    return edits[a.size()][b.size()];
}

}  // namespace

std::string FindNearest(std::string_view word, const std::vector<std::string>& known) {
    if (word.size() < 2 || word.size() > kLongest) return {};
    std::string nearest;
    std::size_t least = word.size() / 3 + 1;
    for (const std::string& one : known) {
        const std::size_t distance = Distance(word, one);
        if (distance >= least + (nearest.empty() ? 1 : 0)) continue;
        least = distance;
        nearest = one;
    }
    return nearest;
}
