// SPDX-License-Identifier: Apache-2.0

// The CUPS filter, run as the scheduler runs it.

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/apps/tool_run.h"
#include "tests/support/sample_images.h"

namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kStyled =
    "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='96' "
    "height='48'>"
    "<style>rect{fill:red}</style><rect width='48' height='48'/></svg>";

class FilterTest : public ToolTest {
protected:
    FilterTest() {
        fs::create_directory(Folder() / "tmp");
        WriteFile("spool/d00001-001", kStyled);
    }

    /// Builds the filter's command line, preceded by environment variables as "NAME=VALUE".
    std::vector<std::string> Command(const std::vector<std::string>& variables, const std::string& options,
                                     const std::string& file) const {
        std::vector<std::string> command{"env", "-u",   "ORVPRINT_CACHE_DIR",
                                         "-u",  "HOME", "TMPDIR=" + (Folder() / "tmp").string()};
        command.insert(command.end(), variables.begin(), variables.end());
        command.insert(command.end(), {ORV_FILTER_PATH, "17", "anna", "A title", "1", options});
        if (!file.empty()) command.push_back((Folder() / file).string());
        return command;
    }
    ToolRun Filter(const std::string& options = {}, const std::string& file = "spool/d00001-001",
                   const std::vector<std::string>& variables = {}) const {
        return RunProgram(Command(variables, options, file));
    }
    ToolRun FilterText(const std::string& text) const {
        WriteFile("spool/d00001-001", text);
        return Filter();
    }
    /// Returns the names of files left in the folder for temporary files, except the font index.
    std::vector<std::string> LeftBehind() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(Folder() / "tmp"))
            if (entry.path().filename() != "orvprint") names.push_back(entry.path().filename());
        return names;
    }
    /// Returns the lines of a kind, such as "ERROR".
    static std::vector<std::string> Lines(const ToolRun& run, const std::string& kind) {
        std::vector<std::string> lines;
        for (std::size_t at = 0; at < run.errors.size();) {
            const std::size_t end = std::min(run.errors.find('\n', at), run.errors.size());
            const std::string line = run.errors.substr(at, end - at);
            if (line.starts_with(kind + ": ")) lines.push_back(line.substr(kind.size() + 2));
            at = end + 1;
        }
        return lines;
    }
    /// Expects no page, one reason, and no name of a spool file.
    void ExpectFailure(const ToolRun& run, const std::string& reason) const {
        EXPECT_EQ(run.exitCode, 1) << run.signal << run.errors;
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(Lines(run, "ERROR"), ElementsAre(HasSubstr(reason)));
        EXPECT_THAT(run.errors, Not(HasSubstr("d00001")));
        EXPECT_THAT(run.errors, Not(HasSubstr(Folder().string())));
        EXPECT_THAT(LeftBehind(), IsEmpty());
    }
};

TEST_F(FilterTest, TheFileAndStandardInputGiveThePagesOfTheCommand) {
    const ToolRun page = Run({"-", "-f", "pdf", "-o", "-", "--interpreter", "svg2"}, kStyled);
    const ToolRun file = Filter();
    EXPECT_EQ(file.exitCode, 0) << file.errors;
    EXPECT_EQ(file.output, page.output);
    EXPECT_EQ(RunProgram(Command({}, "", ""), kStyled).output, page.output);
    EXPECT_THAT(page.output, StartsWith("%PDF"));
    EXPECT_THAT(LeftBehind(), IsEmpty());
}

TEST_F(FilterTest, OnlyTheOptionForTheInterpreterIsRead) {
    const ToolRun first = Run({"-", "-f", "pdf", "-o", "-"}, kStyled);
    const ToolRun standard = Run({"-", "-f", "pdf", "-o", "-", "--interpreter", "svg2"}, kStyled);
    ASSERT_NE(first.output, standard.output);
    struct Row {
        const char* options;
        bool isFirst;
    };
    for (const Row& row : {Row{"svg-interpreter=svg", true},
                           {"svg-interpreter=SVG", true},
                           {"svg-interpreter=svg2", false},
                           {"number-up=2 page-ranges=1-2 svg-interpreter=svg media=iso_a4_210x297mm", true},
                           {"  svg-interpreter='svg' ", true},
                           {"svg-interpreter=\"svg\"", true},
                           {"svg-interpreter=svg2 svg-interpreter=svg", true},
                           {"job-name='svg-interpreter=svg'", false},
                           {"job-name=a\\ svg-interpreter=svg", false},
                           {"job-name=\"it's svg-interpreter=svg\" sides=one-sided", false},
                           {"job-name='it\\'s svg-interpreter=svg'", false},
                           {"media-col={a=b svg-interpreter=svg}", false},
                           {"no-svg-interpreter=svg", false},
                           {"svg-interpreters=svg", false},
                           {"landscape", false},
                           {"'", false},
                           {"\\", false},
                           {"=", false}}) {
        const ToolRun run = Filter(row.options);
        EXPECT_EQ(run.exitCode, 0) << row.options << run.errors;
        EXPECT_EQ(run.output, (row.isFirst ? first : standard).output) << row.options;
    }
    for (const char* options : {"svg-interpreter=svg3", "svg-interpreter", "svg-interpreter="})
        ExpectFailure(Filter(options), "svg-interpreter takes svg or svg2");
}

TEST_F(FilterTest, DocumentsAroundDrawingsAreToldByTheirRoot) {
    const std::string inner =
        "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>"
        "<rect width='5' height='5' fill='red'/></svg>";
    for (const char* options : {"", "svg-interpreter=svg"}) {
        WriteFile("spool/d00001-001",
                  "<?xml version='1.0'?><report><a>" + inner + "</a>" + inner + "</report>");
        const ToolRun run = Filter(options);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_THAT(RunProgram({"sh", "-c", "pdfinfo -"}, run.output).output,
                    testing::ContainsRegex("Pages: +2"));
    }
    // A root element with a prefix is a drawing, not a document that contains drawings.
    EXPECT_EQ(FilterText("<s:svg xmlns:s='http://www.w3.org/2000/svg' width='9' height='9'/>").exitCode, 0);
}

TEST_F(FilterTest, ADrawingThatCannotBePrintedSaysWhyWithoutItsPlace) {
    ExpectFailure(FilterText("<svg xmlns='http://www.w3.org/2000/svg'>\n<rect</svg>"),
                  "The drawing cannot be printed: line 2, column 6: not well-formed");
    ExpectFailure(FilterText(""), "The drawing cannot be printed: it is empty");
    ExpectFailure(FilterText("%PDF-1.7\n"), "it is a PDF document, not an SVG drawing");
    ExpectFailure(FilterText("<catalog><book/></catalog>"), "it is no drawing");
    ExpectFailure(FilterText("<svg xmlns='http://www.w3.org/2000/svg' width='0' height='5'/>"), "no area");
    ExpectFailure(Filter("", "spool/d00009-001"), "cannot be read");
    // A document of several pages is printed completely or not at all.
    ExpectFailure(FilterText("<r><svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"
                             "<svg xmlns='http://www.w3.org/2000/svg' width='0' height='9'/></r>"),
                  "no area");
}

TEST_F(FilterTest, FilesBesideTheDrawingAreNotRead) {
    WriteFile("spool/d00002-001", SamplePng(40, 40));
    const std::string path = (Folder() / "spool/d00002-001").string();
    const ToolRun without = FilterText(
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='96' "
        "height='48'/>");
    ASSERT_EQ(without.exitCode, 0);
    for (const char* interpreter : {"svg", "svg2"})
        for (const std::string& name :
             std::vector<std::string>{"d00002-001", "./d00002-001", path, "file://" + path}) {
            const std::string drawing =
                "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
                "width='96' height='48'><image width='40' height='40' xlink:href='" +
                name + "'/></svg>";
            WriteFile("spool/d00001-001", drawing);
            // Control: the command, which knows the drawing's folder, reads the file.
            if (name == "d00002-001") {
                EXPECT_EQ(Run({"spool/d00001-001", "--interpreter", interpreter, "-o", "o.pdf"}).exitCode, 0);
                EXPECT_THAT(RunProgram({"pdfimages", "-list", "o.pdf"}).output, HasSubstr("image "));
            }
            const ToolRun run = Filter(std::string("svg-interpreter=") + interpreter);
            EXPECT_EQ(run.exitCode, 0) << run.errors;
            EXPECT_EQ(RunProgram({"sh", "-c", "cat > f.pdf; pdfimages -list f.pdf"}, run.output).output,
                      RunProgram({"sh", "-c", "cat > f.pdf; pdfimages -list f.pdf"}, without.output).output)
                << name;
        }
    // An image inside the drawing is printed.
    const ToolRun inside = FilterText(
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='96' "
        "height='48'>"
        "<image width='40' height='40' xlink:href='data:image/png;base64," +
        ToBase64(SamplePng(40, 40)) + "'/></svg>");
    EXPECT_THAT(RunProgram({"sh", "-c", "cat > f.pdf; pdfimages -list f.pdf"}, inside.output).output,
                HasSubstr("image "));
}

TEST_F(FilterTest, LimitsComeFromTheEnvironment) {
    const std::string file = "spool/d00001-001";
    EXPECT_EQ(Filter("", file,
                     {"ORVPRINT_CUPS_TIME_LIMIT=200", "ORVPRINT_CUPS_MEMORY_LIMIT=800M",
                      "ORVPRINT_CUPS_LIMITS=pages=5, primitives=100"})
                  .exitCode,
              0);
    ExpectFailure(Filter("", file, {"ORVPRINT_CUPS_LIMITS=input-bytes=10"}),
                  "the administrator can set ORVPRINT_CUPS_LIMITS to input-bytes=N");
#if !defined(ORV_SANITIZED)
    const std::string large = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><title>" +
                              std::string(30U << 20U, 'x') + "</title></svg>";
    WriteFile(file, large);
    ExpectFailure(Filter("", file, {"ORVPRINT_CUPS_MEMORY_LIMIT=20M"}),
                  "to allow more, the administrator can set ORVPRINT_CUPS_MEMORY_LIMIT");
    WriteFile(file, kStyled);
#endif
    for (const char* bad : {"ORVPRINT_CUPS_TIME_LIMIT=soon", "ORVPRINT_CUPS_TIME_LIMIT=0",
                            "ORVPRINT_CUPS_TIME_LIMIT=5M", "ORVPRINT_CUPS_MEMORY_LIMIT=-1",
                            "ORVPRINT_CUPS_MEMORY_LIMIT=2X", "ORVPRINT_CUPS_MEMORY_LIMIT=99999999999G"})
        ExpectFailure(Filter("", file, {bad}), "but needs a");
    ExpectFailure(Filter("", file, {"ORVPRINT_CUPS_LIMITS=nonsense=1"}), "unknown limit");
}

TEST_F(FilterTest, ADrawingThatTakesTooLongIsGivenUp) {
    ASSERT_EQ(mkfifo((Folder() / "never").c_str(), 0600), 0);
    const int writer = open((Folder() / "never").c_str(), O_RDWR);
    ExpectFailure(Filter("", "never", {"ORVPRINT_CUPS_TIME_LIMIT=1"}),
                  "it takes longer than 1 second, the limit; to allow more, the administrator can set "
                  "ORVPRINT_CUPS_TIME_LIMIT");
    close(writer);
}

TEST_F(FilterTest, SignalsEndItWithoutAFileOrAProcessLeft) {
    ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    for (const int signal : {SIGTERM, SIGINT, SIGKILL}) {
        fs::remove(Folder() / "never");
        ASSERT_EQ(mkfifo((Folder() / "never").c_str(), 0600), 0);
        const RunningTool running = StartProgram(Command({}, "", "never"));
        // Opening waits for the filter. Writing more than a pipe holds waits for the command that it starts.
        const int writer = open((Folder() / "never").c_str(), O_WRONLY);
        const std::string much = "<svg xmlns='http://www.w3.org/2000/svg'>" + std::string(1U << 20U, ' ');
        EXPECT_EQ(write(writer, much.data(), much.size()), static_cast<ssize_t>(much.size()));
        kill(running.pid, signal);
        const ToolRun run = WaitFor(running);
        EXPECT_EQ(run.signal, signal) << run.errors;
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(Lines(run, "ERROR"), IsEmpty());
        // If the command is still running, it is the test's child now. It ends although its input does not.
        while (waitpid(-1, nullptr, 0) > 0 || errno == EINTR) {
        }
        close(writer);
        EXPECT_THAT(LeftBehind(), IsEmpty()) << signal;
    }
    prctl(PR_SET_CHILD_SUBREAPER, 0);
}

TEST_F(FilterTest, WhatIsMissingIsNamed) {
    EXPECT_THAT(RunProgram({ORV_FILTER_PATH, "1"}).errors, StartsWith("ERROR: Usage: "));
    ExpectFailure(Filter("", "spool/d00001-001", {"TMPDIR=/proc"}), "TMPDIR, cannot be used");
    // Alone in a folder, as after an incomplete installation.
    fs::create_directory(Folder() / "alone");
    fs::copy_file(ORV_FILTER_PATH, Folder() / "alone/svgtoorvpdf");
    const ToolRun alone = RunProgram({"alone/svgtoorvpdf", "1", "anna", "t", "1", ""}, kStyled);
    EXPECT_EQ(alone.exitCode, 1);
    EXPECT_EQ(alone.output, "");
    EXPECT_THAT(Lines(alone, "ERROR"), ElementsAre(HasSubstr("orvprint is not installed completely")));
    EXPECT_THAT(Lines(alone, "STATE"), ElementsAre("+ org.orvprint.incomplete-installation-error"));
    // The next drawing that prints clears the state.
    EXPECT_THAT(Lines(Filter(), "STATE"), ElementsAre("- org.orvprint.incomplete-installation-error"));
}

TEST_F(FilterTest, PagesThatNobodyTakesAreAFailure) {
    std::vector<std::string> command{"sh", "-c", "exec \"$@\" > /dev/full", "sh"};
    for (const std::string& word : Command({}, "", "spool/d00001-001")) command.push_back(word);
    const ToolRun run = RunProgram(command);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(Lines(run, "ERROR"), ElementsAre(HasSubstr("The pages cannot be passed on: No space left")));
}

TEST_F(FilterTest, LinesAreAsLongAsTheSchedulerTakes) {
    const std::string text =
        "<svg xmlns='http://www.w3.org/2000/svg'><\xC3\xA9" + std::string(3, 'a') + "></b></svg>";
    WriteFile("spool/d00001-001", text);
    for (const int size : {80, 100, 2047}) {
        const ToolRun run = Filter("", "spool/d00001-001", {"CUPS_MAX_MESSAGE=" + std::to_string(size)});
        ASSERT_EQ(Lines(run, "ERROR").size(), 1U) << run.errors;
        EXPECT_LT(Lines(run, "ERROR").front().size() + std::string("ERROR: ").size(),
                  static_cast<std::size_t>(size));
    }
}

TEST_F(FilterTest, EndsWhenTheReasonOfAFailureHasBeenRead) {
    WriteFile("spool/d00001-001", "<svg");
    const std::string file = (Folder() / "spool/d00001-001").string();
    int errors[2];
    ASSERT_EQ(pipe2(errors, O_CLOEXEC), 0);
    const pid_t filter = fork();
    if (filter == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        setenv("TMPDIR", (Folder() / "tmp").c_str(), 1);
        unsetenv("HOME");
        dup2(errors[1], STDERR_FILENO);
        execl(ORV_FILTER_PATH, "svgtoorvpdf", "17", "anna", "A title", "1", "", file.c_str(), nullptr);
        _exit(127);
    }
    close(errors[1]);
    const auto hasEnded = [filter](int options) {
        siginfo_t ended{};
        return waitid(P_PID, static_cast<id_t>(filter), &ended, options) == 0 && ended.si_pid == filter;
    };
    // The last line has been written, but not read.
    std::string read;
    char c = '\0';
    while (!read.ends_with("ERROR: T") && ::read(errors[0], &c, 1) == 1) read += c;
    EXPECT_FALSE(hasEnded(WEXITED | WNOHANG | WNOWAIT)) << read;
    poll(nullptr, 0, 100);
    EXPECT_FALSE(hasEnded(WEXITED | WNOHANG | WNOWAIT)) << read;

    while (::read(errors[0], &c, 1) == 1) read += c;
    EXPECT_THAT(read, HasSubstr("ERROR: The drawing cannot be printed: line 1, column 1: "));
    EXPECT_TRUE(hasEnded(WEXITED));
    close(errors[0]);
}

}  // namespace
