// SPDX-License-Identifier: Apache-2.0

// What the command shows on a terminal while it runs.

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "apps/orvprint/commands/progress.h"
#include "tests/apps/batch_run.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// Runs the command with standard error on a terminal.
class TerminalTest : public BatchTest {
protected:
    void SetUp() override {
        int terminal = -1, other = -1;
        if (openpty(&terminal, &other, nullptr, nullptr, nullptr) != 0)
            GTEST_SKIP() << "this system has no terminals to give";
        close(terminal);
        close(other);
    }
    ~TerminalTest() override {
        if (terminal_ >= 0) close(terminal_);
    }

    void StartOnTerminal(std::vector<std::string> arguments, const char* kind = "xterm") {
        arguments.insert(arguments.begin(), ORV_TOOL_PATH);
        if (terminal_ >= 0) close(terminal_);
        winsize size{24, 60, 0, 0};
        pid_ = forkpty(&terminal_, nullptr, nullptr, &size);
        if (pid_ == 0) {
            TakeDefaultSignals();
            setenv("TERM", kind, 1);
            if (chdir(Folder().c_str()) != 0) _exit(126);
            std::vector<char*> words;
            for (const std::string& argument : arguments)
                words.push_back(const_cast<char*>(argument.c_str()));
            words.push_back(nullptr);
            execv(words.front(), words.data());
            _exit(127);
        }
        ASSERT_GT(pid_, 0);
    }
    /// Reads until the terminal has shown `text`; to the end if `text` is empty.
    void ReadUntil(const std::string& text) {
        for (const auto deadline = Deadline(); Clock::now() < deadline;) {
            if (!text.empty() && shown_.find(text) != std::string::npos) return;
            pollfd wait{terminal_, POLLIN, 0};
            if (poll(&wait, 1, 100) <= 0) continue;
            std::array<char, 4096> block;
            const ssize_t got = read(terminal_, block.data(), block.size());
            if (got <= 0) return;  // the other side was closed
            shown_.append(block.data(), static_cast<std::size_t>(got));
        }
        FAIL() << "never shown: " << text << "\nbut: " << shown_;
    }
    int Wait() {
        ReadUntil("");
        int status = 0;
        waitpid(pid_, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    /// Returns the text that is visible after all erasures.
    std::string Visible() const {
        std::string text;
        for (std::size_t at = 0; at < shown_.size(); ++at) {
            if (shown_.compare(at, 4, "\r\033[K") == 0) {
                text.erase(text.rfind('\n') + 1);
                at += 3;
            } else if (shown_[at] == '\r' && shown_.compare(at, 2, "\r\n") != 0) {
                text.erase(text.rfind('\n') + 1);
            } else if (shown_.compare(at, 3, "\033[K") == 0) {
                at += 2;
            } else if (shown_[at] != '\r') {
                text += shown_[at];
            }
        }
        return text;
    }

    pid_t pid_ = -1;
    int terminal_ = -1;
    std::string shown_;
};

TEST_F(TerminalTest, ShowsHowFarItIsAndWipesThatInTheEnd) {
    MakePipe("waits.svg");
    StartOnTerminal({"a.svg", "bad.svg", "waits.svg", "b.svg", "--out-dir", "out", "-f", "pdf", "-j", "1",
                     "--keep-going"});
    ReadUntil("2/4, 1 failed  waits.svg");
    EXPECT_THAT(Visible(), StartsWith("orvprint: bad.svg:2:"));
    EXPECT_THAT(Visible(), EndsWith("\n[############............] 2/4, 1 failed  waits.svg"));
    Feed(OpenForTool("waits.svg"), SmallDrawing(""));
    EXPECT_EQ(Wait(), 11);
    EXPECT_THAT(Visible(), testing::MatchesRegex("orvprint: bad.svg:2:[^\n]*\n"
                                                 "orvprint: 3 of 4 converted, 1 failed, [0-9.]+ s\n"));
}

TEST_F(TerminalTest, TellsWhatADrawingLosesInTheFirstDialect) {
    const struct {
        const char *content, *hint;
    } rows[] = {
        {"<style/><linearGradient/><text><tspan/></text>",
         "c.svg: contains style, linearGradient, tspan, not printed; list with: orvprint check; print with "
         "--interpreter svg2"},
        {"<mask/><style/><clipPath/><tspan/>", "contains style, tspan, clipPath and more, not printed"},
        {"<style/><foreignObject/>", "--interpreter svg2 prints part of it"},
        {"<foreignObject/>", "contains foreignObject, not printed; list with: orvprint check"},
        {"<g><blurb/></g>", "contains unknown elements, not printed"},
        {"<metadata/><x:y xmlns:x='z'/><rect/><title/><desc/>", ""},
    };
    for (const auto& row : rows) {
        WriteFile("c.svg", SmallDrawing(row.content));
        shown_.clear();
        StartOnTerminal({"c.svg", "-o", "c.pdf"});
        EXPECT_EQ(Wait(), 0);
        std::string shown;  // a terminal of 60 columns breaks no lines by itself
        for (const char c : shown_)
            if (c != '\r' && c != '\n') shown += c;
        if (*row.hint == '\0')
            EXPECT_EQ(shown, "");
        else
            EXPECT_THAT(shown, HasSubstr(row.hint));
    }
}

TEST_F(TerminalTest, TellsNothingOfLossToWhomItDoesNotConcern) {
    WriteFile("c.svg", SmallDrawing("<style/>"));
    const std::vector<std::vector<std::string>> silent{
        {"c.svg", "-o", "c.pdf", "--quiet"},
        {"c.svg", "-o", "c.pdf", "--interpreter", "svg2"},
        {"a.svg", "-o", "c.pdf"},
    };
    for (const auto& arguments : silent) {
        shown_.clear();
        StartOnTerminal(arguments);
        EXPECT_EQ(Wait(), 0);
        EXPECT_EQ(shown_, "");
    }
    EXPECT_EQ(Run({"c.svg", "-o", "c.pdf"}).errors, "") << "standard error is no terminal";
}

TEST_F(TerminalTest, IsWipedWhenInterruptedFromTheKeyboard) {
    MakePipe("waits.svg");
    StartOnTerminal({"a.svg", "waits.svg", "--out-dir", "out", "-f", "pdf", "-j", "1"});
    const int pipe = OpenForTool("waits.svg");
    ReadUntil("1/2  waits.svg");
    ASSERT_EQ(write(terminal_, "\x03", 1), 1);  // Ctrl-C reaches the workers, too
    Wait();
    close(pipe);
    EXPECT_THAT(Visible(), HasSubstr("orvprint: interrupted: 1 of 2 converted, 0 failed, 1 not done"));
    EXPECT_THAT(Visible(), Not(HasSubstr("[###")));
    EXPECT_THAT(Visible(), Not(HasSubstr("worker")));
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf"));
}

TEST_F(TerminalTest, ShowsNothingWhenQuietOrUnableTo) {
    StartOnTerminal({"a.svg", "b.svg", "--out-dir", "out", "-f", "pdf", "--quiet"});
    EXPECT_EQ(Wait(), 0);
    EXPECT_EQ(shown_, "");
    StartOnTerminal({"a.svg", "b.svg", "--out-dir", "out", "-f", "pdf"}, "dumb");
    EXPECT_EQ(Wait(), 0);
    EXPECT_THAT(shown_, StartsWith("orvprint: 2 of 2 converted"));
}

TEST_F(BatchTest, ShowsNoProgressInAPipe) {
    const ToolRun run = Run({"a.svg", "b.svg", "--out-dir", "out", "-f", "pdf"});
    EXPECT_THAT(run.errors, AllOf(Not(HasSubstr("\r")), Not(HasSubstr("\033"))));
}

TEST(ProgressLineTest, FitsTheTerminal) {
    EXPECT_EQ(ProgressLine(0, 8, 0, "a.svg", 60), "[........................] 0/8  a.svg");
    EXPECT_EQ(ProgressLine(7, 8, 2, "a.svg", 60), "[#####################...] 7/8, 2 failed  a.svg");
    EXPECT_EQ(ProgressLine(8, 8, 0, "", 60), "[########################] 8/8");
    EXPECT_EQ(ProgressLine(1, 8, 0, "a-long-name.svg", 40), "[###.....................] 1/8  a-long-");
    // The bar is dropped when it would fill the line together with the counts.
    EXPECT_EQ(ProgressLine(1, 8, 0, "", 31), "[###.....................] 1/8");
    EXPECT_EQ(ProgressLine(1, 8, 0, "", 30), "1/8");
    EXPECT_EQ(ProgressLine(1, 8, 0, "a.svg", 20), "1/8  a.svg");
    EXPECT_EQ(ProgressLine(1, 8, 0, "\n\x1b[2J.svg", 20), "1/8  \\n\\x1b[2J.svg");
    EXPECT_EQ(ProgressLine(1, 8, 0, "\u00e4\u6f22\u6f22.svg", 11), "1/8  \u00e4\u6f22\u6f22");
    // A full line makes some terminals wrap.
    for (std::size_t columns = 1; columns < 80; ++columns)
        EXPECT_LT(ProgressLine(1234, 99999, 12, "some-drawing.svg", columns).size(), columns);
    EXPECT_EQ(ProgressLine(1, 8, 0, "a.svg", 0), "");
}

}  // namespace
