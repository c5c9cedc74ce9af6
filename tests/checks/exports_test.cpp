// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <set>
#include <string>

#include "tests/support/shell_run.h"

namespace {

// The demangled names that a module defines in its dynamic symbol table.
std::set<std::string> DefinedSymbols(const std::string& module) {
    std::set<std::string> symbols;
    const std::string command = "nm -D --defined-only -C '" + module + "'";
    std::FILE* listing = popen(command.c_str(), "r");
    if (!listing) return symbols;
    std::array<char, 1024> line{};
    while (std::fgets(line.data(), line.size(), listing)) {
        const std::string text(line.data());  // address, type, name
        const std::size_t type = text.find(' ');
        if (type == std::string::npos) continue;
        const std::size_t name = type + 3;
        symbols.insert(text.substr(name, text.find('\n') - name));
    }
    pclose(listing);
    return symbols;
}

TEST(ExportsTest, AreTheTwoClassesTheTwoFactoriesAndTheMarker) {
    const std::string svg = "ORVPrintSVGInterpreter", qvxml = "ORVPrintQVXMLInterpreter";
    std::set<std::string> expected{
        "fctCreateORVPrintSVGInterpreter",           "fctCreateORVPrintQVXMLInterpreter",
        "TALVEN_QUB2_INTERNAL_ORVPrtInterpreterSVG", svg + "::" + svg + "()",
        svg + "::" + svg + "(ORVPrintInput*)",       qvxml + "::" + qvxml + "(ORVPrintInputXMLElement*)"};
    for (const std::string& name : {svg, qvxml}) {
        for (const char* kind : {"vtable for ", "typeinfo for ", "typeinfo name for "})
            expected.insert(kind + name);
        const std::string prefix = name + "::";
        expected.insert({prefix + name + "(" + name + " const&)", prefix + "operator=(" + name + " const&)",
                         prefix + "~" + name + "()", prefix + "GetSize(float&, float&)",
                         prefix + "GetPageCount(unsigned int&)", prefix + "GetTitle(ORVUnicodeString&)",
                         prefix + "SetCurrentPath(ORVUnicodeString const&)",
                         prefix + "Decode(ORVPrintGenerator*, ORVPrintParameters const&)"});
    }
    EXPECT_THAT(DefinedSymbols(ORV_MODULE_PATH), testing::ContainerEq(expected));
}

TEST(ExportsTest, OfTheFontModuleIsTheFontSystem) {
    EXPECT_THAT(DefinedSymbols(ORV_FONT_MODULE_PATH), testing::ElementsAre("orvGetFontSystem"));
}

// Packagers and the dynamic linker read the NEEDED entries: only the font module may have those of the font
// libraries.
TEST(ExportsTest, OnlyTheFontModuleNeedsTheFontLibraries) {
    const auto needed = [](const std::string& module) {
        return ShellRun("readelf -d '" + module + "' | grep NEEDED").text;
    };
    for (const char* library : {"libfontconfig.so.1", "libfreetype.so.6", "libfribidi.so.0",
                                "libharfbuzz.so.0", "libharfbuzz-subset.so.0"}) {
        EXPECT_THAT(needed(ORV_FONT_MODULE_PATH), testing::HasSubstr(library));
        EXPECT_THAT(needed(ORV_MODULE_PATH), testing::Not(testing::HasSubstr(library)));
        EXPECT_THAT(needed(ORV_PLATFORM_PATH), testing::Not(testing::HasSubstr(library)));
    }
}

}  // namespace
