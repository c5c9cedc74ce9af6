// SPDX-License-Identifier: Apache-2.0

// What `cmake --install` installs, and what a third-party project builds with it.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/apps/tool_run.h"
#include "tests/support/test_texts.h"

namespace {

namespace fs = std::filesystem;
using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// Programs that link a sanitized library need the sanitizers, too.
constexpr const char* kFlags = ORV_CONSUMER_FLAGS;

/// Installs the build that the test belongs to, into a folder of its own.
class PackageTest : public ToolTest {
protected:
    PackageTest() {
        const ToolRun run = RunProgram({"cmake", "--install", ORV_BUILD_PATH, "--prefix", Prefix().string()});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
    }
    fs::path Prefix() const { return Folder() / "installed"; }
    fs::path Libraries() const { return Prefix() / ORV_LIBRARY_FOLDER; }
    /// Configures a project with the installation, in the folder "build".
    ToolRun Configure(const std::string& project, std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"cmake", "-S", project, "-B", "build", "-G", "Ninja",
                                         "-DCMAKE_PREFIX_PATH=" + Prefix().string()});
        return RunProgram(options);
    }
};

// Returns the names of everything in a folder, links included.
std::set<std::string> NamesIn(const fs::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename().string());
    return names;
}

// Returns the files below a folder, by their relative paths.
std::set<std::string> FilesBelow(const fs::path& folder) {
    std::set<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file()) files.insert(fs::relative(entry.path(), folder).string());
    return files;
}

TEST_F(PackageTest, LibrariesHaveVersionsAndModulesHaveNone) {
    const std::string version = ORV_VERSION, interface = "0";
    std::set<std::string> expected{"cmake",
                                   "pkgconfig",
                                   "libORVPrtInterpreterSVG.so",
                                   "libORVPrtInterpreterSVG2.so",
                                   "liborvfonts.so",
                                   "liborvpostscript.so",
                                   "liborvcase.so",
                                   "liborvcolour.so",
                                   "liborvimages.so"};
    for (const std::string library : {"liborvplatform.so", "liborvgenerators.so"})
        expected.insert({library, library + "." + interface, library + "." + version});
    expected.insert({"liborvprint.so", "liborvprint.so.0", "liborvprint.so." + version});
    const std::set<std::string> names = NamesIn(Libraries());
    EXPECT_TRUE(std::includes(names.begin(), names.end(), expected.begin(), expected.end()))
        << testing::PrintToString(names);
    for (const std::string& name : names)
        EXPECT_EQ(name.find(".so.") != name.npos, name.starts_with("liborvplatform.so.") ||
                                                      name.starts_with("liborvgenerators.so.") ||
                                                      name.starts_with("liborvprint.so."))
            << name;
}

TEST_F(PackageTest, HeadersAreThoseOfTheList) {
    std::set<std::string> expected{"orvprint.h", "orvprint.hpp"};
    std::istringstream list(ORV_PUBLIC_HEADERS);
    for (std::string path; list >> path;) expected.insert(fs::relative(path, ORV_SOURCE_PATH).string());
    EXPECT_GT(expected.size(), 60U);
    EXPECT_EQ(FilesBelow(Prefix() / "include/orvprint"), expected);
}

TEST_F(PackageTest, ManualAndDocumentationAreThere) {
    for (const char* path :
         {"share/man/man1/orvprint.1", "share/bash-completion/completions/orvprint",
          "share/doc/orvprint/README.md", "share/doc/orvprint/LICENSE",
          "share/doc/orvprint/docs/supported-svg.md", "share/doc/orvprint/examples/print_file.cpp",
          "share/doc/orvprint/packaging/batch/shard.sh"})
        EXPECT_TRUE(fs::exists(Prefix() / path)) << path;
}

TEST_F(PackageTest, TheCommandRunsWithoutLibrariesAndModulesOfOurs) {
    WriteFile("text.svg", SmallDrawing("<text x='9' y='20' fill='red'>A</text>"));
    const ToolRun run = RunProgram({"env", "LD_DEBUG=files", (Prefix() / "bin/orvprint").string(), "text.svg",
                                    "-o", "text.ps", "--no-sandbox"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(ReadFile("text.ps"), StartsWith("%!PS"));
    EXPECT_THAT(run.errors, HasSubstr("libcairo.so"));
    EXPECT_THAT(run.errors, Not(AnyOf(HasSubstr("liborv"), HasSubstr("libORV"))));
    EXPECT_THAT(run.errors, Not(HasSubstr(ORV_BUILD_PATH)));
}

TEST_F(PackageTest, AProjectOfOthersBuildsTheExamples) {
    const ToolRun configured =
        Configure(ORV_SOURCE_PATH "/tests/package/consumer",
                  {"-DCMAKE_CXX_COMPILER=" ORV_CONSUMER_COMPILER, "-DCMAKE_C_COMPILER=" ORV_C_COMPILER,
                   std::string("-DCMAKE_CXX_FLAGS=") + kFlags, std::string("-DCMAKE_C_FLAGS=") + kFlags,
                   "-DVERSION=" ORV_VERSION, "-DEXAMPLES=" ORV_SOURCE_PATH "/examples",
                   "-DHEADERS=" + (Prefix() / "include/orvprint").string()});
    ASSERT_EQ(configured.exitCode, 0) << configured.errors;
    const ToolRun built = RunProgram({"cmake", "--build", "build"});
    ASSERT_EQ(built.exitCode, 0) << built.output;
    EXPECT_THAT(ReadFile("build/made.pdf"), StartsWith("%PDF"));

    WriteFile("a.svg", SmallDrawing("<g><rect x='5' y='5' width='20' height='20' fill='red' stroke='blue'/>"
                                    "<text x='9' y='20' fill='red'>Hello</text></g>"));
    EXPECT_EQ(RunProgram({"build/print_file", "a.svg", "b.svg"}).errors, "");
    EXPECT_EQ(Run({"a.svg", "-o", "c.svg", "--parser", "dom"}).exitCode, 0);
    EXPECT_EQ(ReadFile("b.svg"), ReadFile("c.svg"));
    const ToolRun refused = RunProgram({"build/print_file", "a.svg", "b.doc"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.errors, "b.doc: unknown format\n");

    EXPECT_EQ(RunProgram({"build/list_shapes", "a.svg"}).output,
              "page 1: 90 x 45\n"
              "shape of 5 verbs, filled, stroked\n"
              "text \"Hello\"\n");
    EXPECT_EQ(RunProgram({"build/read_model", "a.svg"}).output,
              "page of 90 x 45\n"
              "text \"Hello\"\n"
              "1 ORVPrtGroupElt\n"
              "1 ORVPrtImageElt\n"
              "1 ORVPrtRectangleElt\n"
              "1 ORVPrtTextElt\n");
    EXPECT_EQ(RunProgram({"build/read_model", "none.svg"}).exitCode, 1);

    const ToolRun byC = RunProgram({"build/print_c", "a.svg", "d.pdf", "paper", "A4"});
    EXPECT_EQ(byC.errors, "");
    EXPECT_EQ(byC.output, "page 1: 72.0 x 36.0 pt \"\"\n");
    EXPECT_EQ(Run({"a.svg", "-o", "e.pdf", "--paper", "A4"}).exitCode, 0);
    EXPECT_EQ(ReadFile("d.pdf"), ReadFile("e.pdf"));
    const ToolRun badOption = RunProgram({"build/print_c", "a.svg", "d.pdf", "paper", "A99"});
    EXPECT_EQ(badOption.exitCode, 2);
    EXPECT_THAT(badOption.errors, StartsWith("--paper: 'A99' is neither"));
    const ToolRun byCpp = RunProgram({"build/print_cpp", "a.svg", "png"});
    EXPECT_THAT(byCpp.output, StartsWith("\x89PNG"));
    EXPECT_THAT(byCpp.errors, StartsWith("page 1 of 1\n{\"file\":\"input\""));
    const ToolRun unread = RunProgram({"build/print_cpp", "none.svg", "png"});
    EXPECT_EQ(unread.exitCode, 3);
}

TEST_F(PackageTest, WhatIsNotInstalledIsNotFound) {
    const auto ask = [&](const std::string& wanted) {
        fs::remove_all(Folder() / "build");
        WriteFile("CMakeLists.txt",
                  "cmake_minimum_required(VERSION 3.25)\nproject(ask LANGUAGES NONE)\n"
                  "find_package(orvprint " +
                      wanted + ")\nmessage(STATUS \"found ${orvprint_FOUND}\")\n");
        return Configure(".").output;
    };
    EXPECT_THAT(ask(""), HasSubstr("found 1"));
    EXPECT_THAT(ask(ORV_VERSION " COMPONENTS generators"), HasSubstr("found 1"));
    EXPECT_THAT(ask("COMPONENTS library"), HasSubstr("found 1"));
    EXPECT_THAT(ask("99.0"), HasSubstr("found 0"));
    EXPECT_THAT(ask("COMPONENTS platform scanners"), HasSubstr("found 0"));
}

TEST_F(PackageTest, PkgConfigSaysHowToBuild) {
    const std::string settings = "PKG_CONFIG_PATH=" + (Libraries() / "pkgconfig").string();
    const auto build = [&](const std::string& example, const std::string& package) {
        return RunProgram({"sh", "-c",
                           settings + " && export PKG_CONFIG_PATH && " ORV_CONSUMER_COMPILER " -std=c++20 " +
                               kFlags + " " ORV_SOURCE_PATH "/examples/" + example + ".cpp -o " + example +
                               " $(pkg-config --cflags --libs " + package + ") -Wl,-rpath," +
                               Libraries().string()});
    };
    EXPECT_EQ(build("list_shapes", "orvprint").errors, "");
    EXPECT_EQ(build("print_file", "orvprint-generators").errors, "");
    WriteFile("a.svg", SmallDrawing("<rect width='9' height='9' fill='red'/>"));
    EXPECT_EQ(RunProgram({"./list_shapes", "a.svg"}).output, "page 1: 90 x 45\nshape of 5 verbs, filled\n");
    EXPECT_EQ(RunProgram({"./print_file", "a.svg", "a.pdf"}).errors, "");
    EXPECT_THAT(ReadFile("a.pdf"), StartsWith("%PDF"));
    EXPECT_EQ(RunProgram({"sh", "-c", "export " + settings + "; pkg-config --modversion orvprint"}).output,
              ORV_VERSION "\n");
}

// Returns the functions that the header declares.
std::set<std::string> DeclaredFunctions() {
    const std::string header = ReadAll(ORV_SOURCE_PATH "/library/api/orvprint.h");
    const std::regex declaration(R"(ORVPRINT_API [^;(]*?\b(orvprint_[a-z_]+)\()");
    std::set<std::string> names;
    for (std::sregex_iterator match(header.begin(), header.end(), declaration), end; match != end; ++match)
        names.insert((*match)[1]);
    return names;
}

TEST_F(PackageTest, TheLibraryShowsItsInterfaceAndNothingElse) {
    const std::string library = (Libraries() / "liborvprint.so").string();
    std::istringstream symbols(RunProgram({"nm", "-D", "--defined-only", "-f", "posix", library}).output);
    std::set<std::string> shown;
    for (std::string line; std::getline(symbols, line);) {
        const std::string name = line.substr(0, line.find(' '));
        if (name == "ORVPRINT_0") continue;  // the version node
        EXPECT_THAT(name, testing::EndsWith("@@ORVPRINT_0"));
        shown.insert(name.substr(0, name.find('@')));
    }
    EXPECT_EQ(shown, DeclaredFunctions());
    EXPECT_EQ(shown.size(), 23U);
    EXPECT_THAT(RunProgram({"readelf", "-d", library}).output, HasSubstr("soname: [liborvprint.so.0]"));
}

// Programs in other languages must do the same as the one in C.
class ScriptTest : public PackageTest {
protected:
    ScriptTest() {
        WriteFile("a.svg", SmallDrawing("<title>One</title><rect width='9' height='9' fill='red'/>"));
    }
    ToolRun RunScript(const std::vector<std::string>& program, const std::string& output,
                      const std::string& option) const {
        std::vector<std::string> command{"env", "PYTHONDONTWRITEBYTECODE=1",
                                         "ORVPRINT_LIBRARY=" + (Libraries() / "liborvprint.so.0").string()};
        command.insert(command.end(), program.begin(), program.end());
        command.insert(command.end(), {"a.svg", output, option});
        return RunProgram(command);
    }
    void ExpectThatItPrints(const std::vector<std::string>& program) const {
        const ToolRun run = RunScript(program, "b.pdf", "paper=A4");
        EXPECT_EQ(run.errors, "");
        EXPECT_EQ(run.output, "page 1: 72.0 x 36.0 pt \"One\"\n0 findings\n");
        EXPECT_EQ(Run({"a.svg", "-o", "c.pdf", "--paper", "A4"}).exitCode, 0);
        EXPECT_EQ(ReadFile("b.pdf"), ReadFile("c.pdf"));
        const ToolRun refused = RunScript(program, "b.pdf", "dpi=x");
        EXPECT_EQ(refused.exitCode, 2);
        EXPECT_EQ(refused.errors, "--dpi: 'x' is not a number from 1 to 10000\n");
    }
};

TEST_F(ScriptTest, PythonPrints) {
    if (*kFlags != '\0') GTEST_SKIP() << "sanitizers want to be loaded first";
    ExpectThatItPrints({"python3", ORV_SOURCE_PATH "/examples/api/python/print.py"});
}

TEST_F(ScriptTest, PipInstallsTheModuleWithoutNetwork) {
    if (*kFlags != '\0') GTEST_SKIP() << "sanitizers want to be loaded first";
    fs::copy(ORV_SOURCE_PATH "/examples/api/python", Folder() / "module");
    const std::set<std::string> sources = FilesBelow(Folder() / "module");
    ASSERT_EQ(RunProgram({"python3", "-m", "venv", "env"}).exitCode, 0);
    const std::vector<std::string> offline{"env", "PYTHONDONTWRITEBYTECODE=1", "PIP_CONFIG_FILE=/dev/null",
                                           "PIP_NO_INDEX=1", "PIP_FIND_LINKS="};
    const auto pip = [&](std::vector<std::string> words) {
        words.insert(words.begin(), offline.begin(), offline.end());
        return RunProgram(words);
    };
    const ToolRun run = pip({"env/bin/pip", "install", "./module"});
    EXPECT_EQ(run.exitCode, 0) << run.output << run.errors;
    EXPECT_EQ(FilesBelow(Folder() / "module"), sources) << "nothing is left beside the sources";

    WriteFile("installed.py",
              "import base64, hashlib, importlib.metadata, orvprint\n"
              "module, = [f for f in importlib.metadata.files('orvprint') if f.name == 'orvprint.py']\n"
              "digest = hashlib.sha256(module.read_binary()).digest()\n"
              "print(importlib.metadata.version('orvprint'), orvprint.version, module.size,\n"
              "      module.hash.value == base64.urlsafe_b64encode(digest).rstrip(b'=').decode())\n");
    const ToolRun installed = RunScript({"env/bin/python", "installed.py"}, "", "");
    EXPECT_EQ(installed.errors, "");
    const auto bytes = fs::file_size(Folder() / "module/orvprint.py");
    EXPECT_EQ(installed.output, ORV_VERSION " " ORV_VERSION " " + std::to_string(bytes) + " True\n");
    EXPECT_EQ(pip({"env/bin/pip", "uninstall", "-y", "orvprint"}).exitCode, 0);
    EXPECT_EQ(RunScript({"env/bin/python", "installed.py"}, "", "").exitCode, 1);
}

TEST_F(ScriptTest, NodePrints) {
    if (*kFlags != '\0') GTEST_SKIP() << "sanitizers want to be loaded first";
    if (RunProgram({"sh", "-c", "node -e 'require(\"koffi\")'"}).exitCode != 0)
        GTEST_SKIP() << "node is not installed, or finds no package koffi (npm install koffi, NODE_PATH)";
    ExpectThatItPrints({"node", ORV_SOURCE_PATH "/examples/api/node/print.js"});
}

}  // namespace
