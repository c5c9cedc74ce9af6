// SPDX-License-Identifier: Apache-2.0
#include "platform/system/short_number.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <string_view>

namespace {

struct Reading {
    std::size_t length = 0;  // of the number; 0 if there is no short number
    double value = 0.0;
};

// Reference implementation: finds the end character by character; the C library converts the number.
Reading ReadPlainly(const std::string& text) {
    std::size_t length = 0, digits = 0, points = 0;
    for (; length < text.size(); ++length) {
        if (text[length] == '.' && points == 0)
            ++points;
        else if (text[length] >= '0' && text[length] <= '9')
            ++digits;
        else
            break;
    }
    const bool goesOn =
        length < text.size() && std::string_view(".eE").find(text[length]) != std::string_view::npos;
    if (digits == 0 || goesOn) return {};
    return {length, std::strtod(text.substr(0, length).c_str(), nullptr)};
}

Reading ReadShort(const std::string& text, const char* (*read)(const char*, const char*, double&)) {
    double value = 0.0;
    // A separate copy, so that sanitizers detect reads beyond the end of the text.
    const std::string copy(text.data(), text.size());
    const char* const behind = read(copy.data(), copy.data() + copy.size(), value);
    if (!behind) return {};
    return {static_cast<std::size_t>(behind - copy.data()), value};
}

// Both versions may leave numbers of more than 15 characters to others. What they read must be correct.
void ExpectSame(const std::string& text) {
    const Reading plain = ReadPlainly(text);
    for (const auto read : {+[](const char*begin, const char*end, double&value) {
                                return ORVReadShortNumber(begin, end, value);
                            },
                            +[](const char*begin, const char*end, double&value) {
                                return ORVReadShortNumberByCharacters(begin, end, value);
                            }}) {
        const Reading reading = ReadShort(text, read);
        if (reading.length == 0 && plain.length > 15) continue;
        ASSERT_EQ(reading.length, plain.length) << "\"" << text << "\"";
        ASSERT_EQ(reading.value, plain.value) << "\"" << text << "\"";
    }
}

// All combinations of digits, points and characters after a number, of up to 8 characters: texts of 8 are
// read as a word, shorter ones by characters.
TEST(ShortNumber, ReadsEveryArrangementAsCharacterByCharacter) {
    constexpr char kCharacters[] = {'0', '7', '.', 'L', 'e'};
    for (std::size_t length = 0; length <= 8; ++length) {
        std::string text(length, '0');
        std::size_t arrangements = 1;
        for (std::size_t i = 0; i < length; ++i) arrangements *= std::size(kCharacters);
        for (std::size_t arrangement = 0; arrangement < arrangements; ++arrangement) {
            std::size_t rest = arrangement;
            for (char& c : text) {
                c = kCharacters[rest % std::size(kCharacters)];
                rest /= std::size(kCharacters);
            }
            ASSERT_NO_FATAL_FAILURE(ExpectSame(text));
        }
    }
}

TEST(ShortNumber, ReadsNumbersAsTheCLibrary) {
    std::mt19937 random(7);
    for (int i = 0; i < 200'000; ++i) {
        std::string text;
        const std::size_t whole = random() % 9, places = random() % 10;
        for (std::size_t k = 0; k < whole; ++k) text += static_cast<char>('0' + random() % 10);
        if (random() % 4 != 0) text += '.';
        for (std::size_t k = 0; k < places; ++k) text += static_cast<char>('0' + random() % 10);
        text += std::string_view(" ,-LzE%\xb0\xae\xff.").substr(random() % 12, 1);
        for (std::size_t k = random() % 9; k > 0; --k) text += static_cast<char>(random() % 256);
        ASSERT_NO_FATAL_FAILURE(ExpectSame(text));
    }
}

struct WholeCase {
    std::string_view text;
    bool isRead;
    double value;
};

TEST(ShortNumber, TakesAWholeTextWithItsMinus) {
    for (const WholeCase& c : std::initializer_list<WholeCase>{{"12", true, 12.0},
                                                               {"-12.5", true, -12.5},
                                                               {".5", true, 0.5},
                                                               {"5.", true, 5.0},
                                                               {"", false, 0.0},
                                                               {"-", false, 0.0},
                                                               {".", false, 0.0},
                                                               {"--1", false, 0.0},
                                                               {"+1", false, 0.0},
                                                               {"1 ", false, 0.0},
                                                               {" 1", false, 0.0},
                                                               {"1mm", false, 0.0},
                                                               {"1e2", false, 0.0}}) {
        double value = 0.0;
        EXPECT_EQ(ORVReadWholeNumber(c.text, value), c.isRead) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
    }
}

}  // namespace
