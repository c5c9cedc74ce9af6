// SPDX-License-Identifier: Apache-2.0

// Printing to printers: to a queue of the tests' own scheduler, and to a printer that accepts only pixels.

#include <arpa/inet.h>
#include <cups/cups.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <thread>

#include "tests/apps/looks.h"
#include "tests/apps/tool_run.h"
#include "tests/cups/private_scheduler.h"
#include "tests/support/test_texts.h"

namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::string Rectangles(const std::string& colour) {
    return "<svg xmlns='http://www.w3.org/2000/svg' width='744' height='1052'><rect x='100' y='200' "
           "width='300' "
           "height='400' fill='" +
           colour + "'/></svg>";
}

/// Returns a port on which nobody listens at the moment.
int FreePort() {
    const int endpoint = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    int port = 0;
    if (bind(endpoint, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
        getsockname(endpoint, reinterpret_cast<sockaddr*>(&address), &size) == 0)
        port = ntohs(address.sin_port);
    close(endpoint);
    return port;
}

class DirectTest : public ToolTest {
protected:
    static void SetUpTestSuite() {
        if (PrivateScheduler::WhyNot().empty()) scheduler = std::make_unique<PrivateScheduler>();
    }
    static void TearDownTestSuite() { scheduler.reset(); }

    void SetUp() override {
        if (!scheduler) GTEST_SKIP() << PrivateScheduler::WhyNot();
        ASSERT_TRUE(scheduler->IsReady()) << scheduler->GetLog();
        WriteFile("a.svg", Rectangles("red"));
        WriteFile("b.svg", Rectangles("blue"));
        fs::remove(scheduler->GetOutput());
    }
    ToolRun RunHere(std::vector<std::string> arguments, const std::string& input = {}) const {
        arguments.insert(arguments.begin(), {"env", "CUPS_SERVER=" + scheduler->GetAddress(), ORV_TOOL_PATH});
        return RunProgram(arguments, input);
    }
    /// Returns the number of an accepted job.
    static int NumberOf(const ToolRun& run) {
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_THAT(run.output, StartsWith("job "));
        return run.output.starts_with("job ") ? std::atoi(run.output.c_str() + 4) : 0;
    }
    std::string PagesOfOutput() const {
        const std::string text = RunProgram({"pdfinfo", scheduler->GetOutput()}).output;
        const std::size_t at = text.find("Pages:");
        return at == std::string::npos ? "" : std::to_string(std::atoi(text.c_str() + at + 6));
    }
    Looks LooksOf(const std::string& pdf, const std::string& page = "1") const {
        const std::string name = "look" + std::to_string(++looks_);
        EXPECT_EQ(
            RunProgram({"pdftoppm", "-png", "-r", "36", "-f", page, "-l", page, "-singlefile", pdf, name})
                .exitCode,
            0);
        return {(Folder() / (name + ".png")).string(), 0};
    }

    static std::unique_ptr<PrivateScheduler> scheduler;

private:
    mutable int looks_ = 0;
};

std::unique_ptr<PrivateScheduler> DirectTest::scheduler;

TEST_F(DirectTest, PrintersAreListed) {
    const ToolRun run = RunHere({"printers"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("paper: idle, takes pdf pwg urf, First floor\n"));
    const ToolRun nobody = RunProgram({"env", "CUPS_SERVER=/nonexistent", ORV_TOOL_PATH, "printers"});
    EXPECT_EQ(nobody.exitCode, 9);
    EXPECT_THAT(nobody.errors, StartsWith("orvprint: the print system CUPS does not answer at /nonexistent"));
}

TEST_F(DirectTest, APrinterThatDoesNotAnswerIsNotTakenForOneThatIsMissing) {
    const ToolRun nobody =
        RunProgram({"env", "CUPS_SERVER=/nonexistent", ORV_TOOL_PATH, "a.svg", "-d", "paper"});
    EXPECT_EQ(nobody.exitCode, 8);
    EXPECT_THAT(nobody.errors, HasSubstr("paper: the print system CUPS does not answer at /nonexistent"));
    const ToolRun closed =
        RunHere({"a.svg", "-d", "ipp://127.0.0.1:" + std::to_string(FreePort()) + "/ipp/print"});
    EXPECT_EQ(closed.exitCode, 8);
    EXPECT_THAT(closed.errors, HasSubstr("/ipp/print: does not answer; is the address right"));
}

TEST_F(DirectTest, AQueueGetsSheetsOfItsPaper) {
    // The queue's paper, to a hundredth of a millimetre, and its margins, which are 0.
    ASSERT_EQ(
        Run({"a.svg", "b.svg", "--paper", "209.9x297.04mm", "--margin", "0", "-o", "wanted.pdf"}).exitCode,
        0);
    const ToolRun both = RunHere({"a.svg", "b.svg", "-d", "paper", "--wait"});
    NumberOf(both);
    EXPECT_THAT(both.errors, HasSubstr(": completed, 2 sheets\n"));
    ASSERT_EQ(PagesOfOutput(), "2");
    for (const char* page : {"1", "2"})
        EXPECT_LT(LooksOf(scheduler->GetOutput(), page).DifferenceFrom(LooksOf("wanted.pdf", page)), 0.5);

    NumberOf(RunHere({"a.svg", "b.svg", "-d", "paper", "-P", "2", "-n", "3", "--wait"}));
    ASSERT_EQ(PagesOfOutput(), "3");
    EXPECT_LT(LooksOf(scheduler->GetOutput(), "3").DifferenceFrom(LooksOf("wanted.pdf", "2")), 0.5);

    NumberOf(RunHere({"a.svg", "b.svg", "-d", "paper", "--nup", "2", "-o", "sides=one-sided", "-o",
                      "media=A4", "--wait"}));
    EXPECT_EQ(PagesOfOutput(), "1");
    NumberOf(RunHere({"-", "-d", "paper", "--wait"}, Rectangles("red")));
    EXPECT_LT(LooksOf(scheduler->GetOutput()).DifferenceFrom(LooksOf("wanted.pdf")), 0.5);
}

TEST_F(DirectTest, PaperOfAnySizeWithinThePrintersBounds) {
    NumberOf(RunHere({"a.svg", "-d", "paper", "--paper", "150x200mm", "--wait"}));
    EXPECT_THAT(RunProgram({"pdfinfo", scheduler->GetOutput()}).output,
                testing::ContainsRegex("Page size: +425[.0-9]* x 566[.0-9]*"));
    const ToolRun larger = RunHere({"a.svg", "-d", "paper", "--paper", "1500x2000mm"});
    EXPECT_EQ(larger.exitCode, 8);
    EXPECT_THAT(larger.errors, HasSubstr("has no paper '1500x2000mm'"));
}

TEST_F(DirectTest, TitlesAndOptionsGoWithTheJob) {
    const int job =
        NumberOf(RunHere({"a.svg", "-d", "paper", "-t", "Ground floor", "-o", "job-hold-until=indefinite"}));
    EXPECT_EQ(scheduler->GetJob(job).state, IPP_JSTATE_HELD);
    EXPECT_EQ(scheduler->GetJob(job).name, "Ground floor");
}

TEST_F(DirectTest, WaitTellsOfAJobThatWasNotPrinted) {
    // Its outputs go to other files, because other programs run at the same time.
    const RunningTool running = StartProgram(
        {"sh", "-c", "exec \"$@\" > said 2> told", "sh", "env", "CUPS_SERVER=" + scheduler->GetAddress(),
         ORV_TOOL_PATH, "a.svg", "-d", "paper", "--wait", "-o", "job-hold-until=indefinite"});
    int job = 0;
    while (job == 0) {
        const std::string output = ReadFile("said");
        if (output.starts_with("job ") && output.ends_with("\n")) job = std::atoi(output.c_str() + 4);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    EXPECT_EQ(RunProgram({"cancel", "-h", scheduler->GetAddress(), std::to_string(job)}).exitCode, 0);
    const ToolRun run = WaitFor(running);
    EXPECT_EQ(run.exitCode, 9);
    EXPECT_THAT(ReadFile("told"), HasSubstr("was not printed: canceled"));
}

TEST_F(DirectTest, WhatIsWrongEndsBeforeAJobIsMade) {
    WriteFile("broken.svg", "<svg><rect</svg>");
    struct Row {
        std::vector<std::string> arguments;
        int exitCode;
        const char* words;
    };
    for (const Row& row : {Row{{"a.svg", "-d", "none"}, 8, "there is no such printer"},
                           Row{{"a.svg", "-d", "paper", "-o", "media=A0"}, 8, "has no paper 'A0'"},
                           Row{{"a.svg", "-d", "http://"}, 8, "is no address of a printer"},
                           Row{{"broken.svg", "-d", "paper"}, 4, "broken.svg:1"},
                           Row{{"a.svg", "-d", "paper", "-P", "3"}, 6, "there is no page 3"},
                           Row{{"a.svg", "-d", "paper", "--scale", "50"}, 2, "--scale"},
                           Row{{"a.svg", "-d", "paper", "-f", "png"}, 2, "cannot be combined"},
                           Row{{"a.svg", "-d", "paper", "--out-dir", "x"}, 2, "cannot be combined"},
                           Row{{"a.svg", "-n", "2", "-o", "x.pdf"}, 2, "requires --printer"},
                           Row{{"a.svg", "-o", "x.pdf", "-o", "y.pdf"}, 2, "takes one file"}}) {
        const ToolRun run = RunHere(row.arguments);
        EXPECT_EQ(run.exitCode, row.exitCode) << row.words << run.errors;
        EXPECT_THAT(run.errors, HasSubstr(row.words));
        EXPECT_EQ(run.output, "");
    }
    EXPECT_FALSE(fs::exists(scheduler->GetOutput()));
    EXPECT_THAT(RunProgram({"sh", "-c", "ls | grep -v svg$"}).output, IsEmpty());
}

/// A printer with an address. It announces itself, for which it needs D-Bus and Avahi. Both run with it in
/// separate namespaces, where /run is a private folder, and all end together.
class PrinterTest : public ToolTest {
protected:
    void SetUp() override {
        for (const char* program : {"ippeveprinter", "ipptool", "dbus-daemon", "avahi-daemon", "unshare"})
            if (RunProgram({"sh", "-c", std::string("command -v ") + program}).exitCode != 0)
                GTEST_SKIP() << "there is no " << program
                             << "; packages cups-ipp-utils, dbus-daemon, avahi-daemon";
        if (RunProgram({"unshare", "-m", "-p", "-f", "true"}).exitCode != 0)
            GTEST_SKIP() << "the system gives no namespaces, which the printer needs";
    }
    void TearDown() override {
        if (printer_.pid <= 0) return;
        kill(printer_.pid, SIGKILL);
        WaitFor(printer_);
    }
    /// Starts a printer that accepts these formats. @return its address
    std::string StartPrinter(const std::string& formats) {
        fs::create_directory(Folder() / "spool");
        const std::string port = std::to_string(FreePort());
        const std::string address = "ipp://localhost:" + port + "/ipp/print";
        printer_ = StartProgram({"unshare", "-m", "-p", "-f", "--mount-proc", "--kill-child=KILL", "sh", "-c",
                                 "mount -t tmpfs tmpfs /run && mkdir -p /run/dbus /run/avahi-daemon && "
                                 "dbus-daemon --system --fork && "
                                 "avahi-daemon --no-chroot --no-drop-root --daemonize && "
                                 "ippeveprinter -p " +
                                     port + " -k -d spool -f " + formats + " Test"});
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (RunProgram({"ipptool", "-t", address, "get-printer-attributes.test"}).exitCode != 0 &&
               std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        return address;
    }
    std::string PathOfJob() const {
        for (const auto& entry : fs::directory_iterator(Folder() / "spool")) return entry.path();
        return "";
    }

private:
    RunningTool printer_;
};

unsigned int NumberAt(const std::string& bytes, std::size_t offset) {
    unsigned int number = 0;
    for (std::size_t i = 0; i < 4; ++i) number = number << 8U | static_cast<unsigned char>(bytes[offset + i]);
    return number;
}

TEST_F(PrinterTest, OneThatTakesPixelsGetsItsPaperAtItsResolution) {
    WriteFile("a.svg", Rectangles("red"));
    const ToolRun run = Run({"a.svg", "-d", StartPrinter("image/pwg-raster,image/urf"), "--wait"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.errors, HasSubstr(": completed"));
    const std::string job = ReadAll(PathOfJob());
    ASSERT_THAT(job, StartsWith("RaS2PwgRaster"));
    // As the printer reports: Letter, grey. The header follows the 4 bytes at the start of the stream.
    const unsigned int dotsPerInch = NumberAt(job, 4 + 276);
    EXPECT_EQ(dotsPerInch, 600U);
    EXPECT_EQ(NumberAt(job, 4 + 372), dotsPerInch * 17 / 2);
    EXPECT_EQ(NumberAt(job, 4 + 376), dotsPerInch * 11);
    EXPECT_EQ(NumberAt(job, 4 + 388), 8U);
}

TEST_F(PrinterTest, OneThatTakesOnlyAppleRasterGetsThat) {
    WriteFile("a.svg", Rectangles("red"));
    const ToolRun run = Run({"a.svg", "-d", StartPrinter("image/urf"), "--wait"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.errors, HasSubstr(": completed"));
    const std::string job = ReadAll(PathOfJob());
    ASSERT_THAT(job, StartsWith("UNIRAST"));
    EXPECT_EQ(NumberAt(job, 8), 1U);  // page
    // The header of a page: bits, colours, sides, quality, two other numbers, size in pixels, resolution.
    EXPECT_EQ(job[12], 24);
    EXPECT_EQ(NumberAt(job, 32), 600U);
    EXPECT_EQ(NumberAt(job, 24), 600U * 17 / 2);
    EXPECT_EQ(NumberAt(job, 28), 600U * 11);
}

TEST_F(PrinterTest, OneThatTakesPdfGetsPdf) {
    WriteFile("a.svg", Rectangles("red"));
    const std::string address = StartPrinter("application/pdf,image/pwg-raster");
    const ToolRun run = Run({"a.svg", "-d", address, "--wait"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    const std::string page = RunProgram({"pdfinfo", PathOfJob()}).output;
    EXPECT_THAT(page, testing::ContainsRegex("Page size: +612 x 792"));
}

TEST_F(PrinterTest, OneThatTakesNeitherIsRefused) {
    WriteFile("a.svg", Rectangles("red"));
    const ToolRun run = Run({"a.svg", "-d", StartPrinter("image/jpeg")});
    EXPECT_EQ(run.exitCode, 8);
    EXPECT_THAT(run.errors, HasSubstr("takes neither PDF nor PWG Raster nor Apple Raster"));
}

}  // namespace
