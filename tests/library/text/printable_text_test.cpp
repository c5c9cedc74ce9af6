// SPDX-License-Identifier: Apache-2.0
#include "library/text/printable_text.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "tests/apps/tool_run.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

std::string Escaped(std::string_view text) {
    std::string escaped;
    PrintablePieces pieces(text);
    for (std::string_view piece; pieces.Next(piece);) escaped += piece;
    return escaped;
}

struct TextRow {
    std::string_view text, escaped;
};

constexpr std::array kTexts{
    TextRow{"", ""},
    TextRow{"plan 3.svg", "plan 3.svg"},
    TextRow{"C:\\plan \"3\"", "C:\\plan \"3\""},
    TextRow{"H\u00f6he \u6f22\u5b57 \u0e01\u0e33 \U0001F600",
            "H\u00f6he \u6f22\u5b57 \u0e01\u0e33 \U0001F600"},
    TextRow{"\u0646\u0645\u06cc\u200c\u062e\u0648\u0627\u0647\u0645",  // Persian needs its non-joiner U+200C
            "\u0646\u0645\u06cc\u200c\u062e\u0648\u0627\u0647\u0645"},
    TextRow{"a\nb\rc\td", "a\\nb\\rc\\td"},
    TextRow{"\x1b[2J\x07", "\\x1b[2J\\x07"},
    TextRow{std::string_view("a\0b", 3), "a\\x00b"},
    TextRow{"\x7f", "\\x7f"},
    TextRow{"\u0080\u009b[2J\u009f", "\\u0080\\u009b[2J\\u009f"},
    TextRow{"\u00a0", "\u00a0"},
    TextRow{"\u061c\u200e\u200f", "\\u061c\\u200e\\u200f"},
    TextRow{"a\u202egvs.exe\u202c", "a\\u202egvs.exe\\u202c"},
    TextRow{"\u202a\u202d\u2066\u2069", "\\u202a\\u202d\\u2066\\u2069"},
    TextRow{"a\u2028b\u2029", "a\\u2028b\\u2029"},
    TextRow{"\ufeffa", "\\ufeffa"},
    TextRow{"\U000E0041", "\\U000e0041"},
    TextRow{"\xff\xfe", "\\xff\\xfe"},
    TextRow{"caf\xe9.svg", "caf\\xe9.svg"},
    TextRow{"\xc0\xaf \xed\xa0\x80 \xf4\x90\x80\x80", "\\xc0\\xaf \\xed\\xa0\\x80 \\xf4\\x90\\x80\\x80"},
    TextRow{"\xe6\xbc", "\\xe6\\xbc"},
    TextRow{"\x9b\x33\x31m", "\\x9b31m"},
};

TEST(PrintableTextTest, WhatATerminalObeysIsEscaped) {
    for (const TextRow& row : kTexts) EXPECT_EQ(Escaped(row.text), row.escaped);
}

// Messages of a worker are escaped both where they are written and where they are forwarded.
TEST(PrintableTextTest, EscapingTwiceIsEscapingOnce) {
    for (const TextRow& row : kTexts) EXPECT_EQ(Escaped(Escaped(row.text)), row.escaped);
}

TEST(PrintableTextTest, LongLinesComeWhole) {
    std::FILE* const file = std::tmpfile();
    ASSERT_TRUE(file);
    std::string expected;
    {
        TextLine line(file);
        for (int i = 0; i < 5000; ++i) {
            line.Put("a\n\u202e");
            expected += "a\\n\\u202e";
        }
        line.End();
    }
    std::string written(expected.size() + 2, '\0');
    std::rewind(file);
    written.resize(std::fread(written.data(), 1, written.size(), file));
    std::fclose(file);
    EXPECT_EQ(written, expected + "\n");
}

// ---- Output of the command ----

constexpr std::string_view kEvil = "e\x1b[2J\u202e\u009bm\xff\x7f\n!";
constexpr std::string_view kShown = "e\\x1b[2J\\u202e\\u009bm\\xff\\x7f\\n!";

/// Returns success if the text can be sent to a terminal unchanged.
testing::AssertionResult IsHarmless(std::string_view text) {
    while (!text.empty()) {
        char32_t character = 0;
        std::size_t length = 0;
        const bool isCharacter = FirstCharacter(text, character, length);
        if (!isCharacter || (character != '\n' && !IsPrintable(character)))
            return testing::AssertionFailure() << "character " << static_cast<unsigned int>(character)
                                               << " before \"" << Escaped(text.substr(length, 40)) << "\"";
        text.remove_prefix(length);
    }
    return testing::AssertionSuccess();
}

class EscapedOutputTest : public ToolTest {
protected:
    // XML forbids control characters below U+0020 except white space; other control characters can occur.
    static constexpr std::string_view kEvilText = "e\u202e\u009bm\x7f\ufeff";
    static constexpr std::string_view kShownText = "e\\u202e\\u009bm\\x7f\\ufeff";

    static std::string EvilName(std::string_view ending) { return std::string(kEvil) + std::string(ending); }
};

TEST_F(EscapedOutputTest, FileNamesAndTextsOfDocumentsAreEscaped) {
    const std::string text(kEvilText);
    const std::string name = EvilName(".svg"), broken = EvilName("-broken.svg"), none = EvilName("-none.svg");
    WriteFile(name, SmallDrawing("<title>" + text + "</title><rect id='" + text + "' fill='" + text +
                                 "' width='9' height='9'/><use xlink:href='#no" + text +
                                 "'/><image xlink:href='" + text + ".png' width='9' height='9'/>"));
    WriteFile(broken, "<svg><" + text + ">");
    struct CommandRow {
        std::vector<std::string> arguments;
        bool namesFile, quotesDocument;
    };
    const std::vector<CommandRow> rows{
        {{"info", name}, true, true},
        {{"check", "--verbose", name}, true, true},
        {{"check", broken}, true, false},
        {{name, "-o", "x.pdf", "--strict"}, true, true},
        {{name, "-o", "x.pdf", "--fragment", text}, true, false},
        {{name, "-o", EvilName("/x.pdf")}, true, false},
        {{name, "-o", "x." + text}, false, true},
        {{name, "-o", "x.pdf", "-f", text}, false, true},
        {{name, "-o", "x.pdf", "--" + text}, false, true},
        {{name, "-o", "x.pdf", "--limit", text + "=1"}, false, true},
        {{none, "-o", "x.pdf"}, true, false},
        {{broken, "-o", "x.pdf"}, true, false},
        {{name, "-o", "x.pdf", "--time-limit", "0.001", "--limit", "input-bytes=1"}, true, false},
        {{broken, none, "--out-dir", "out", "-f", "pdf", "--keep-going"}, true, false},
    };
    for (const CommandRow& row : rows) {
        const ToolRun run = Run(row.arguments);
        const std::string said = run.output + run.errors;
        EXPECT_TRUE(IsHarmless(said)) << testing::PrintToString(row.arguments) << "\n" << Escaped(said);
        if (row.namesFile) EXPECT_THAT(said, HasSubstr(std::string(kShown)));
        if (row.quotesDocument) EXPECT_THAT(said, HasSubstr(std::string(kShownText)));
    }
}

TEST_F(EscapedOutputTest, JsonIsHarmlessToo) {
    const std::string text(kEvilText), name = EvilName(".svg");
    WriteFile(name, SmallDrawing("<title>" + text + "\U000E0041</title><text x='1' y='9' fill='" + text +
                                 "'>" + text + "</text>"));
    for (const char* command : {"info", "check", "inspect"}) {
        const ToolRun run = Run({command, "--json", name});
        EXPECT_TRUE(IsHarmless(run.output)) << Escaped(run.output);
        EXPECT_THAT(run.output, HasSubstr("e\\u202e\\u009bm\\u007f\\ufeff")) << command;
    }
    EXPECT_THAT(Run({"info", "--json", name}).output, HasSubstr("\\udb40\\udc41"));
}

TEST_F(EscapedOutputTest, TheTimeLimitNamesTheWholeInputEvenWhenItsNameIsLong) {
    const std::string name = std::string(60, '\x1b') + ".svg";
    const std::string pipe = (Folder() / name).string();
    ASSERT_EQ(RunProgram({"mkfifo", pipe}).exitCode, 0);
    const ToolRun run =
        RunProgram({"sh", "-c", "sleep 20 > \"$1\" & exec \"$2\" info \"$1\" --time-limit 0.2", "sh", pipe,
                    ORV_TOOL_PATH});
    EXPECT_EQ(run.exitCode, 9);
    EXPECT_TRUE(IsHarmless(run.errors));
    EXPECT_THAT(run.errors, HasSubstr("\\x1b.svg: takes longer than 0.2 seconds"));
}

bool IsOfName(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

// Output elsewhere would not be escaped, and only hostile names would reveal it.
TEST(EscapedOutputSourcesTest, TextGoesOutInOnePlace) {
    const std::array kWays{"printf(", "fprintf(", "fputs(",    "puts(",     "fputc(",   "putchar(",
                           "fwrite(", "perror(",  "std::cout", "std::cerr", "std::clog"};
    struct ExceptionRow {
        std::string_view file, why;
    };
    constexpr std::array kExceptions{
        ExceptionRow{"printable_text.cpp", "the one place"},
        ExceptionRow{"json_writer.cpp", "escapes in its own way"},
        ExceptionRow{"html_inspection.cpp", "writes a page for browsers, which escapes in its own way"},
        ExceptionRow{"progress.cpp", "moves the cursor; its only text is escaped before"},
        ExceptionRow{"formats_command.cpp", "lists constants"},
        ExceptionRow{"limits_command.cpp", "lists constants"},
        ExceptionRow{"call_filter_compiler.cpp", "no part of the command"},
    };
    std::size_t found = 0;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(ORV_SOURCE_PATH) / "apps")) {
        if (entry.path().extension() != ".cpp" && entry.path().extension() != ".h") continue;
        const std::string name = entry.path().filename();
        std::ifstream stream(entry.path());
        for (std::string line; std::getline(stream, line);)
            for (const std::string_view way : kWays) {
                const std::size_t at = line.find(way);
                if (at == line.npos || (at > 0 && IsOfName(line[at - 1]))) continue;
                ++found;
                EXPECT_TRUE(std::any_of(kExceptions.begin(), kExceptions.end(),
                                        [&](const ExceptionRow& row) { return row.file == name; }))
                    << entry.path() << ": " << line;
            }
    }
    EXPECT_GE(found, kExceptions.size());
}

}  // namespace
