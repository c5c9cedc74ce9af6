// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tests/interpreters/svg2/call_sketch.h"

namespace {

/// The expected line for a square of 10 px with this fill.
std::string Filled(const std::string& colour) { return "0,0 10,10 fill " + colour + "\n"; }

struct Row {
    const char *name, *content, *colour;
};

class CascadeTest : public testing::Test {
protected:
    template <std::size_t kCount>
    static void Check(const Row (&rows)[kCount]) {
        for (const Row& row : rows) EXPECT_EQ(SketchContent(row.content), Filled(row.colour)) << row.name;
    }
};

TEST_F(CascadeTest, GoesFromAttributesOverSheetsToTheStyleAttribute) {
    Check({
        {"initial", "<rect width='10' height='10'/>", "#000000"},
        {"attribute", "<rect width='10' height='10' fill='red'/>", "#ff0000"},
        {"sheet over attribute", "<style>rect{fill:blue}</style><rect width='10' height='10' fill='red'/>",
         "#0000ff"},
        {"style over sheet", "<style>rect{fill:blue}</style><rect width='10' height='10' style='fill:lime'/>",
         "#00ff00"},
        {"variable of nothing is as unset, whatever else is declared",
         "<g fill='lime'><rect width='10' height='10' style='fill:red;fill:var(--a)'/></g>", "#00ff00"},
        {"variable that is no colour",
         "<g style='--a:3'><rect width='10' height='10' fill='red' "
         "style='fill:var(--a)'/></g>",
         "#000000"},
        {"variable in an attribute", "<g style='--a:lime'><rect width='10' height='10' fill='var(--a)'/></g>",
         "#00ff00"},
        {"size that cannot be read", "<rect width='10' height='10' style='width:nonsense'/>", "#000000"},
        {"size below zero", "<rect width='10' height='10' style='width:-3px'/>", "#000000"},
        {"size that mixes a share with less than nothing",
         "<rect height='10' style='width:calc(20% - 10px)'/>", "#000000"},
        {"size of the parent", "<g style='width:10px'><rect height='10' style='width:inherit'/></g>",
         "#000000"},
        {"list of languages",
         "<style>:lang(de, \"en\"){fill:lime}</style>"
         "<rect width='10' height='10' xml:lang='en-GB'/>",
         "#00ff00"},
        {"other languages",
         "<style>:lang(de, e){fill:lime}</style>"
         "<rect width='10' height='10' xml:lang='en'/>",
         "#000000"},
        {"important sheet over style",
         "<style>rect{fill:blue!important}</style><rect width='10' height='10' style='fill:lime'/>",
         "#0000ff"},
        {"important style over all",
         "<style>rect{fill:blue!important}</style><rect width='10' height='10' style='fill:lime ! "
         "important'/>",
         "#00ff00"},
        {"later rule", "<style>rect{fill:blue}rect{fill:red}</style><rect width='10' height='10'/>",
         "#ff0000"},
        {"specificity",
         "<style>#a{fill:red}.b{fill:blue}rect{fill:lime}</style><rect id='a' class='b' "
         "width='10' height='10'/>",
         "#ff0000"},
        {"sheet after use", "<rect width='10' height='10'/><style>rect{fill:red}</style>", "#ff0000"},
        {"unreadable value falls back",
         "<style>rect{fill:blue;fill:nonsense}</style><rect width='10' height='10' fill='red'/>", "#0000ff"},
        {"inherited", "<g fill='red'><rect width='10' height='10'/></g>", "#ff0000"},
        {"inherit", "<g fill='red'><rect width='10' height='10' fill='inherit'/></g>", "#ff0000"},
        {"initial word", "<g fill='red'><rect width='10' height='10' fill='initial'/></g>", "#000000"},
        {"current colour",
         "<g color='red' fill='currentColor'><rect width='10' height='10' color='blue'/></g>", "#0000ff"},
        {"comments",
         "<style>/* a */rect/* b */{/* c */fill:/* d */red}</style><rect width='10' height='10'/>",
         "#ff0000"},
        {"comment in style", "<rect width='10' height='10' style='/* x */fill:red/**/'/>", "#ff0000"},
        {"CDATA", "<style><![CDATA[rect{fill:red}]]></style><rect width='10' height='10'/>", "#ff0000"},
        {"HTML comment", "<style>&lt;!-- rect{fill:red} --&gt;</style><rect width='10' height='10'/>",
         "#ff0000"},
        {"property in upper case", "<style>rect{FILL:Red}</style><rect width='10' height='10'/>", "#ff0000"},
        {"variables",
         "<style>:root{--a:red;--b:var(--a)}rect{fill:var(--b)}</style><rect width='10' "
         "height='10'/>",
         "#ff0000"},
        {"fallback of a variable", "<rect width='10' height='10' style='fill:var(--x, lime)'/>", "#00ff00"},
        {"variables in a circle",
         "<style>rect{--a:var(--b);--b:var(--a);fill:var(--a)}</style><rect "
         "width='10' height='10'/>",
         "#000000"},
        {"all", "<g fill='red'><rect width='10' height='10' fill='blue' style='all:unset'/></g>", "#ff0000"},
    });
}

TEST_F(CascadeTest, SelectorsSelect) {
    const char* const kDocument =
        "<g class='x y' id='g'><rect id='first' width='10' height='10' data-a='one two' lang='de-AT'/></g>";
    const struct {
        const char* selector;
        bool selects;
    } kRows[] = {
        {"rect", true},
        {"*", true},
        {"circle", false},
        {"#first", true},
        {"g#g > rect", true},
        {"svg > rect", false},
        {"svg rect", true},
        {".x rect", true},
        {".x.y rect", true},
        {".x.z rect", false},
        {"[data-a]", true},
        {"[data-a='one two']", true},
        {"[data-a~=two]", true},
        {"[data-a~=tw]", false},
        {"[data-a^=one]", true},
        {"[data-a$=two]", true},
        {"[data-a*='e t']", true},
        {"[data-a=ONE]", false},
        {"[data-a='ONE TWO' i]", true},
        {"[lang|=de]", true},
        {":lang(de)", true},
        {":lang(d)", false},
        {"rect:first-child", true},
        {"rect:last-child", true},
        {"rect:only-child", true},
        {"rect:nth-child(2n+1)", true},
        {"rect:nth-child(even)", false},
        {"rect:nth-last-child(1)", true},
        {"rect:nth-of-type(1)", true},
        {"rect:only-of-type", true},
        {"rect:empty", true},
        {"g:empty rect", false},
        {":root rect", true},
        {"rect:not(.x)", true},
        {"rect:not(#first)", false},
        {":is(circle, rect)", true},
        {":where(g) > rect", true},
        {"rect:hover", false},
        {"rect::before", false},
        {"rect, a:hover", true},
        {"rect, a:focus-VISIBLE", true},
        {"rect, a::-vendor-thing", true},
        {"rect, a:unheard", false},
        {"rect, a::unheard", false},
        {"rect, a:unheard(x)", false},
        {":is(:unheard, rect, )", true},
        {":is(:unheard)", false},
        {":not(:unheard)", false},
        {"circle, rect", true},
        {"rect, ]", false},
        {"g + rect", false},
    };
    for (const auto& row : kRows) {
        const std::string text = SketchContent("<style>" + std::string("@x y; ") + [&] {
            std::string escaped;
            for (const char* c = row.selector; *c; ++c) escaped += *c == '>' ? "&gt;" : std::string(1, *c);
            return escaped;
        }() + "{fill:red}</style>" + kDocument);
        EXPECT_EQ(text, Filled(row.selects ? "#ff0000" : "#000000")) << row.selector;
    }
}

TEST_F(CascadeTest, SiblingsAreTold) {
    EXPECT_EQ(SketchContent("<style>circle + rect{fill:red} circle ~ rect{stroke:blue}</style>"
                            "<rect width='1' height='1'/><circle r='2'/><rect width='3' height='3'/>"
                            "<rect width='4' height='4'/>"),
              "0,0 1,1 fill #000000\n"
              "-2,-2 2,2 fill #000000\n"
              "0,0 3,3 fill #ff0000 stroke #0000ff 1\n"
              "0,0 4,4 fill #000000 stroke #0000ff 1\n");
}

TEST_F(CascadeTest, EscapesStandForTheirCharacters) {
    const std::string square = "<rect class='a.b c d' id='1' data-a='x&quot;y' width='10' height='10'/>";
    for (const char* const sheet : {
             R"(.a\.b{fill:red})",
             R"(.a\2e b{fill:red})",
             R"(.\63{fill:red})",
             R"(.\000063{fill:red})",
             R"(#\31{fill:red})",
             R"(r\65 ct{fill:red})",
             R"([data-a="x\"y"]{fill:red})",
             R"([data-a=x\"y]{fill:red})",
             R"([data-a="x\22y"]{fill:red})",
             R"(rect{f\69ll:r\65 d})",
             R"(rect{fill:red;fill:blue\9})",
             R"(rect{foo:"\"};fill:blue";fill:red})",
             R"(.\d800,.\0,.\110000,rect{fill:red})",
             R"(.c\)",
         }) {
        const bool isWhole = std::string(sheet).back() == '}';
        EXPECT_EQ(SketchContent("<style>" + std::string(sheet) + "</style>" + square),
                  Filled(isWhole ? "#ff0000" : "#000000"))
            << sheet;
    }
    EXPECT_EQ(SketchContent("<rect width='10' height='10' style='f\\69ll:r\\65 d'/>"), Filled("#ff0000"));
}

TEST_F(CascadeTest, BrokenSheetsLoseWhatIsBroken) {
    for (const char* const sheet : {
             "rect/**/.c{fill:red}",
             "rect{fill/**/:/**/red/**/}",
             "rect{fill:red!/**/ important} .c{fill:blue}",
             "rect{foo:'a\n;fill:red}",
             "rect{fill:red;foo:'a",
             "rect{fill:red;foo:(};fill:blue);}",
             "rect{fill:red;foo:[)}{(]]};fill:blue",
             "rect{foo:url(a/*b);fill:red}/**/",
             "@media print{rect{fill:red",
             "@charset \"utf-8\";&lt;!-- rect{fill:red} -->",
         })
        EXPECT_EQ(SketchContent("<style>" + std::string(sheet) +
                                "</style><rect class='c' width='10' height='10'/>"),
                  Filled("#ff0000"))
            << sheet;
}

TEST_F(CascadeTest, RulesStandWithinRules) {
    for (const char* const sheet : {
             "g{rect{fill:red}}",
             "g{>rect{fill:red}}",
             "rect{&amp;.c{fill:red}}",
             "rect{g &amp;{fill:red}}",
             "rect{:is(g &amp;){fill:red}}",
             "svg{g{rect{fill:red}}}",
             "rect{@media print{fill:red}}",
             "rect{@media print{g &amp;{fill:red}}}",
             ".c{&amp;{fill:blue} fill:red}",
             "rect{fill:blue;%{fill:lime} fill:red;}",
             "#x,rect{&amp;{fill:red}} rect.c.c{fill:blue}",
             "&amp; rect{fill:red}",
             "rect{--a:{b};fill:red}",
         })
        EXPECT_EQ(SketchContent("<style>" + std::string(sheet) +
                                "</style><g><rect class='c' width='10' height='10'/></g>"),
                  Filled("#ff0000"))
            << sheet;
}

TEST_F(CascadeTest, ConditionsAndLayersDecide) {
    const struct {
        const char* sheet;
        bool isRed;
    } kRows[] = {
        {"@supports (fill:red){rect{fill:red}}", true},
        {"@supports (foo:red){rect{fill:red}}", false},
        {"@supports (fill:12px){rect{fill:red}}", false},
        {"@supports (width:1px) and (not (foo:red)){rect{fill:red}}", true},
        {"@supports (foo:red) or (--a:b){rect{fill:red}}", true},
        {"@supports (fill:red) and (r:1) or (x:1){rect{fill:red}}", false},
        {"@supports selector(a > b){rect{fill:red}}", true},
        {"@supports selector(%){rect{fill:red}}", false},
        {"@supports font-tech(color-COLRv1){rect{fill:red}}", false},
        {"@container (width > 1px){rect{fill:red}}", false},
        {"rect{fill:red} @layer a{rect.c{fill:blue}}", true},
        {"@layer a,b; @layer b{rect{fill:red}} @layer a{rect.c{fill:blue}}", true},
        {"@layer a{rect{fill:red!important}} rect.c{fill:blue!important}", true},
        {"@layer a{rect{fill:red!important}} @layer b{rect{fill:blue!important}}", true},
        {"@layer a{rect{fill:red} @layer b{rect.c{fill:blue}}}", true},
        {"@layer a{@layer b{rect{fill:blue}}} @layer a.b{rect{fill:red}} @layer a.b{}", true},
        {"@layer{rect{fill:blue}} @layer{rect{fill:red}}", true},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(SketchContent("<style>" + std::string(row.sheet) +
                                "</style><rect class='c' width='10' height='10'/>"),
                  Filled(row.isRed ? "#ff0000" : "#000000"))
            << row.sheet;
}

TEST_F(CascadeTest, SelectorsSeeWhatIsBelowAndCountKinds) {
    const auto widths = [](const std::string& selector) {
        const std::string drawn =
            SketchContent("<style>" + selector +
                          "{fill:red}</style><a href='#x'><rect width='1' height='1' class='k'/></a><g>"
                          "<rect width='2' height='1'/><rect width='3' height='1' class='k'/><g><rect "
                          "width='4' height='1'/>"
                          "</g><rect width='5' height='1' class='k'/></g>");
        std::string red;
        for (std::size_t line = 0, end = 0; line < drawn.size(); line = end + 1) {
            end = drawn.find('\n', line);
            if (drawn.substr(line, end - line).find("ff0000") != std::string::npos) red += drawn[line + 4];
        }
        return red;
    };
    const struct {
        const char *selector, *widths;
    } kRows[] = {
        {"a:link rect", "1"},
        {"a:any-link rect", "1"},
        {"a:visited rect", ""},
        {"g:has(g) > rect", "235"},
        {"g:has(> rect.k) > rect", "235"},
        {"rect:has(+ .k)", "2"},
        {"rect:has(~ g)", "23"},
        {"rect:has(~ g rect)", "23"},
        {"rect:not(:has(~ *))", "145"},
        {"g:has(:has(rect)) rect", ""},
        {"rect:nth-child(2 of .k)", "5"},
        {"rect:nth-child(odd of rect)", "1245"},
        {"rect:nth-last-child(1 of .k, g)", "15"},
        {":scope rect", "12345"},
        {"[class='K' s]", ""},
    };
    for (const auto& row : kRows) EXPECT_EQ(widths(row.selector), row.widths) << row.selector;
}

TEST_F(CascadeTest, MediaAreThoseOfPaper) {
    Check({
        {"print", "<style>@media print{rect{fill:red}}</style><rect width='10' height='10'/>", "#ff0000"},
        {"screen", "<style>@media screen{rect{fill:red}}</style><rect width='10' height='10'/>", "#000000"},
        {"not screen", "<style>@media not screen{rect{fill:red}}</style><rect width='10' height='10'/>",
         "#ff0000"},
        {"list", "<style>@media screen, print{rect{fill:red}}</style><rect width='10' height='10'/>",
         "#ff0000"},
        {"wide enough",
         "<style>@media (min-width:100px) and (max-width: 2in){rect{fill:red}}</style><rect width='10' "
         "height='10'/>",
         "#ff0000"},
        {"too narrow",
         "<style>@media (min-width:101px){rect{fill:red}}</style><rect width='10' height='10'/>", "#000000"},
        {"dark",
         "<style>@media (prefers-color-scheme:dark){rect{fill:red}}</style><rect width='10' "
         "height='10'/>",
         "#000000"},
        {"media attribute", "<style media='screen'>rect{fill:red}</style><rect width='10' height='10'/>",
         "#000000"},
        {"other type", "<style type='text/x'>rect{fill:red}</style><rect width='10' height='10'/>",
         "#000000"},
        {"import", "<style>@import 'a.css'; rect{fill:red}</style><rect width='10' height='10'/>", "#ff0000"},
        {"unknown rule",
         "<style>@font-face{a:b} @page{c{d:e}} rect{fill:red}</style><rect width='10' "
         "height='10'/>",
         "#ff0000"},
    });
}

TEST_F(CascadeTest, CopiesMatchWhereTheOriginalStandsAndInheritFromTheUse) {
    EXPECT_EQ(SketchContent("<style>defs rect{stroke:lime} g > use rect{fill:blue}</style>"
                            "<defs><rect id='r' width='5' height='5'/></defs>"
                            "<g><use xlink:href='#r' fill='red'/></g>"),
              "0,0 5,5 fill #ff0000 stroke #00ff00 1\n");
}

}  // namespace
