// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "platform/visualization/fonts/family_index.h"
#include "platform/visualization/fonts/module/font_catalogue.h"

/// Answers of fontconfig, kept from one process to the next: to ask for a family, a process must load
/// fontconfig's configuration, which takes longer than most drawings. There are none without a face index, on
/// which they depend. Not thread-safe.
class FamilyAnswers {
public:
    struct Answer {
        const CatalogueEntry* entry = nullptr;
        bool isOfFamily = false;
    };

    explicit FamilyAnswers(const FontCatalogue& catalogue);

    /// @param query  family, slant, width and weight
    /// @return nullopt when fontconfig must be asked
    std::optional<Answer> Find(const std::string& query) const;
    /// Stores what fontconfig answered.
    void Add(const std::string& query, const Answer& answer);

private:
    const FontCatalogue& catalogue_;
    std::string folder_;  // empty when nothing is kept
    FamilyIndex index_;
    int added_ = 0;
};
