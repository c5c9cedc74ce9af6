// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/family_index.h"

#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/scoped_environment.h"

namespace {

FamilyIndex SomeIndex() {
    return {"basis",
            {{"Arial\n0\n100\n400", "/fonts/a.ttf", 2, true}, {"Nobody\n0\n100\n400", "", 0, false}}};
}

TEST(FamilyIndexTest, ReadsWhatWasWritten) {
    for (const FamilyIndex& index : {SomeIndex(), FamilyIndex{}, FamilyIndex{"only", {}}}) {
        FamilyIndex read;
        ASSERT_TRUE(DecodeFamilyIndex(EncodeFamilyIndex(index), read));
        EXPECT_EQ(read, index);
    }
}

TEST(FamilyIndexTest, ChangedCutAndExtendedFilesAreRefused) {
    const std::string sound = EncodeFamilyIndex(SomeIndex());
    FamilyIndex read;
    for (std::size_t at = 0; at < sound.size(); ++at) {
        std::string changed = sound;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_FALSE(DecodeFamilyIndex(changed, read)) << at;
        EXPECT_FALSE(DecodeFamilyIndex(sound.substr(0, at), read)) << at;
    }
    EXPECT_FALSE(DecodeFamilyIndex(sound + "x", read));
}

TEST(FamilyIndexTest, AnswersDependOnTheFaceIndexLanguageAndDesktop) {
    const std::string first = "header of 16 byt", second = "another header..";
    const std::string basis = BasisOfAnswers(first);
    EXPECT_EQ(BasisOfAnswers(first + "with faces"), basis);
    EXPECT_NE(BasisOfAnswers(second), basis);
    for (const char* name : {"FC_LANG", "LC_ALL", "LC_CTYPE", "LANG", "XDG_CURRENT_DESKTOP"}) {
        std::string absent, empty, given;
        {
            const ScopedEnvironment variable(name, nullptr);
            absent = BasisOfAnswers(first);
        }
        {
            const ScopedEnvironment variable(name, "");
            empty = BasisOfAnswers(first);
        }
        {
            const ScopedEnvironment variable(name, "ja_JP.UTF-8");
            given = BasisOfAnswers(first);
        }
        EXPECT_NE(absent, empty) << name;
        EXPECT_NE(absent, given) << name;
        EXPECT_NE(empty, given) << name;
    }
}

}  // namespace
