#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <set>
#include <string>

namespace {

// The names in the module's dynamic symbol table that it defines, demangled.
std::set<std::string> DefinedSymbols() {
    std::set<std::string> symbols;
    const std::string command = std::string("nm -D --defined-only -C '") + ORV_MODULE_PATH + "'";
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
    EXPECT_THAT(DefinedSymbols(), testing::ContainerEq(expected));
}

}  // namespace
