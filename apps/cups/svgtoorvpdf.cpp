// SPDX-License-Identifier: Apache-2.0

// svgtoorvpdf: a filter from SVG to PDF for the print system. Paper, page ranges, copies and several pages on
// a sheet are left to the next filter, which handles them for all documents; handling them here too would
// apply them twice.

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "apps/cups/conversion.h"
#include "apps/cups/messages.h"
#include "apps/cups/settings.h"

namespace {

// Exit codes of the command, which mean nothing to the print system.
constexpr int kNoModule = 10, kNotStarted = 127;
constexpr int kDone = 0, kFailed = 1;

// The printer-state-reason while the installation of orvprint is incomplete.
constexpr const char* kIncomplete = "org.orvprint.incomplete-installation-error";

int Fail(const std::string& reason) {
    Say(LineKind::kError, reason);
    WaitUntilLinesAreRead();
    return kFailed;
}

int FailForInstallation(const std::string& reason) {
    Say(LineKind::kState, std::string("+ ") + kIncomplete);
    return Fail("orvprint is not installed completely: " + reason);
}

/// The reason for a failure is the command's last message; earlier ones are hints.
int ReportFailure(const Conversion& conversion) {
    std::string reason, text;
    for (const std::string& line : conversion.lines) {
        if (!TranslateLine(line, text)) {
            Say(LineKind::kDebug, line);
            continue;
        }
        if (!reason.empty()) Say(LineKind::kWarning, "The drawing: " + reason);
        reason = text;
    }
    if (conversion.exitCode == kNoModule || conversion.exitCode == kNotStarted)
        return FailForInstallation(reason.empty() ? "the command does not start" : reason);
    if (conversion.signal != 0)
        reason = std::string("the interpreter ended unexpectedly: ") + strsignal(conversion.signal);
    return Fail("The drawing cannot be printed: " + (reason.empty() ? "no reason is known" : reason));
}

void ReportWarnings(const Conversion& conversion) {
    std::string text;
    for (const std::string& line : conversion.lines)
        if (TranslateLine(line, text))
            Say(LineKind::kWarning, "The drawing: " + text);
        else
            Say(LineKind::kDebug, line);
}

int Run(int count, char** arguments) {
    if (count < 6 || count > 7) return Fail("Usage: svgtoorvpdf job-id user title copies options [file]");
    FilterSettings settings;
    std::string error;
    if (!ReadFilterSettings(arguments[5], settings, error)) return Fail(error);

    // Opens the file and drops its name: a drawing with a folder could name files beside it, which are other
    // users' jobs.
    const int drawing = count == 7 ? open(arguments[6], O_RDONLY | O_CLOEXEC) : STDIN_FILENO;
    if (drawing < 0) return Fail(std::string("The drawing cannot be read: ") + std::strerror(errno));
    HeldPages pages;
    if (!pages.Open())
        return Fail(std::string("The folder for temporary files, TMPDIR, cannot be used: ") +
                    std::strerror(errno));

    CatchEndingSignals();
    Say(LineKind::kDebug, "svgtoorvpdf prints with the interpreter " + settings.interpreter + ", " +
                              settings.seconds + " seconds at most");
    Conversion conversion;
    const bool isStarted = Convert(settings, drawing, pages.GetDescriptor(), conversion);
    const int reason = errno;
    EndBySignalCaught();
    if (!isStarted) return FailForInstallation(std::string("the command: ") + std::strerror(reason));
    if (conversion.signal != 0 || conversion.exitCode != 0) return ReportFailure(conversion);
    ReportWarnings(conversion);
    Say(LineKind::kState, std::string("- ") + kIncomplete);
    const bool isCopied = pages.CopyTo(STDOUT_FILENO);
    const int copyError = errno;
    EndBySignalCaught();
    return isCopied ? kDone : Fail(std::string("The pages cannot be passed on: ") + std::strerror(copyError));
}

}  // namespace

int main(int count, char** arguments) {
    // A later filter that ends early makes writing fail instead of terminating the process.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return Run(count, arguments);
    } catch (const std::exception& error) {
        return Fail(error.what());
    }
}
