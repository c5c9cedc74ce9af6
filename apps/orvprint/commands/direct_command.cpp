// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/direct_command.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

#include "apps/orvprint/commands/command_options.h"
#include "apps/orvprint/process/report.h"
#include "library/text/printable_text.h"
#include "platform/system/ORVTemporaryData.h"
#include "platform/system/modules.h"

namespace {

/// @return null with an error
std::unique_ptr<PrinterConnection> Connect(std::string& error) {
    void* const module = ORVLoadModule(kPrintingModule, error);
    void* const factory = module ? ORVFindInModule(module, kPrintingFactory, error) : nullptr;
    if (!factory) {
        error = std::string("printers need ") + kPrintingModule + ", which cannot be used: " + error;
        return nullptr;
    }
    std::unique_ptr<PrinterConnection> connection(reinterpret_cast<PrinterConnectionFactory>(factory)());
    if (!connection) error = "out of memory";
    return connection;
}

/// "name=value", or "name" for a switch, as for lp.
std::pair<std::string, std::string> OptionOf(const std::string& text) {
    const std::size_t sign = text.find('=');
    if (sign != std::string::npos) return {text.substr(0, sign), text.substr(sign + 1)};
    return text.starts_with("no") ? std::pair{text.substr(2), std::string("false")}
                                  : std::pair{text, std::string("true")};
}

std::string Millimetres(double length) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.2fmm", length);
    return text.data();
}

std::string BaseName(const std::string& path) { return path.substr(path.rfind('/') + 1); }

/// An unnamed file, which disappears with its descriptor.
int OpenHidden() {
    std::string name = std::string(ORVTemporaryData::GetFolder()) + "/orvprint-XXXXXX";
    const int file = open(ORVTemporaryData::GetFolder(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (file >= 0) return file;
    const int named = mkostemp(name.data(), O_CLOEXEC);
    if (named >= 0) unlink(name.c_str());
    return named;
}

}  // namespace

void AddDirectOptions(CommandOptions& command, DirectArguments& arguments) {
    constexpr const char* kGroup = "Printer";
    auto* printer =
        command.add_option("-d,--printer", arguments.printer,
                           "Print on this printer; with it, -o NAME=VALUE sets options of the job");
    printer->option_text("NAME|URI")->group(kGroup);
    command.add_option("-n,--copies", arguments.copies, "Number of copies")
        ->option_text("N [1]")
        ->check(command.IsInRange(1U, 9999U))
        ->needs(printer)
        ->group(kGroup);
    command.add_option("-t,--title", arguments.title, "Title of the job")
        ->option_text("TEXT")
        ->needs(printer)
        ->group(kGroup);
    command.add_flag("--wait", arguments.waits, "Wait until the job has been printed")
        ->needs(printer)
        ->group(kGroup)
        ->option_text(" ");
}

int DirectPrinting::Prepare(SheetWords& sheet, PrintOptions& print) {
    std::string error, medium = sheet.paper.value_or("");
    for (const std::string& text : arguments_.options) {
        job_.options.push_back(OptionOf(text));
        if (job_.options.back().first == "media") medium = job_.options.back().second;
    }
    std::erase_if(job_.options, [](const auto& option) { return option.first == "media"; });
    connection_ = Connect(error);
    if (!connection_) return Report(kExitFailed, "", error);
    if (!connection_->Open(arguments_.printer, error) || !connection_->Ask(medium, needs_, error))
        return Report(kExitUnwritable, arguments_.printer, error);

    print.format = needs_.format;
    print.output = "-";
    const PrinterMedium& paper = needs_.medium;
    sheet.paper = std::to_string(paper.width) + "x" + Millimetres(paper.height);
    // A landscape sheet is rotated, by the printer or by us, so any margin may end up on any side.
    const double widest = std::max({paper.top, paper.right, paper.bottom, paper.left});
    const bool isPdf = needs_.format == "pdf";
    if (!sheet.margin && isPdf) sheet.margin = Millimetres(widest);
    if (!sheet.margin)
        sheet.margin = Millimetres(paper.top) + "," + Millimetres(paper.right) + "," +
                       Millimetres(paper.bottom) + "," + Millimetres(paper.left);
    if (!isPdf) {
        // Raster data is in feed orientation.
        if (!sheet.orientation) sheet.orientation = "portrait";
        print.dotsPerInch = needs_.dotsPerInch;
        if (needs_.isGrey && !sheet.isMono) sheet.isGrey = true;
        if (needs_.isMono) sheet.isMono = true;
    }
    return kExitDone;
}

int DirectPrinting::Run(PrintOptions print) {
    const int pages = OpenHidden();
    if (pages < 0) return Report(kExitUnwritable, ORVTemporaryData::GetFolder(), std::strerror(errno));
    int code = Render(print, pages);
    if (code == kExitDone) code = SendPages(print, pages);
    close(pages);
    return code;
}

int DirectPrinting::Render(PrintOptions& print, int pages) const {
    std::fflush(stdout);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0) return Report(kExitFailed, "", std::strerror(errno));
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != parent || dup2(pages, STDOUT_FILENO) < 0) _exit(kExitFailed);
        // Neither the printer's connection nor anything else is the drawings' business.
        close_range(3, ~0U, 0);
        int code = kExitFailed;
        try {
            code = RunPrint(print);
        } catch (const std::bad_alloc&) {
            ReportOutOfMemory("");
        }
        std::fflush(stderr);
        _exit(code);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    return Report(kExitFailed, "",
                  std::string("printing ended unexpectedly: ") + strsignal(WTERMSIG(status)));
}

int DirectPrinting::SendPages(const PrintOptions& print, int pages) {
    job_.copies = arguments_.copies;
    job_.title = !arguments_.title.empty()     ? arguments_.title
                 : print.inputs.front() == "-" ? "(stdin)"
                                               : BaseName(print.inputs.front());
    int number = 0;
    std::string error;
    if (!connection_->Send(job_, needs_, pages, number, error))
        return Report(kExitUnwritable, arguments_.printer, error);
    TextLine(stdout).Put("job " + std::to_string(number)).End();
    std::fflush(stdout);
    if (!arguments_.waits) return kExitDone;
    const std::string job = "job " + std::to_string(number);
    const auto tell = [&](const std::string& state) { Report(kExitDone, job, state); };
    return connection_->Wait(number, tell, error) ? static_cast<int>(kExitDone)
                                                  : Report(kExitFailed, job, error);
}

int RunPrinters() {
    std::string error;
    const std::unique_ptr<PrinterConnection> connection = Connect(error);
    std::vector<PrinterFacts> printers;
    if (!connection || !connection->List(printers, error)) return Report(kExitFailed, "", error);
    TextLine line(stdout);
    for (const PrinterFacts& printer : printers) {
        std::string formats;
        for (const std::string& format : printer.formats) formats += (formats.empty() ? "" : " ") + format;
        line.Put(printer.name).Put(": " + printer.state);
        if (!formats.empty()) line.Put(", takes " + formats);
        if (!printer.location.empty()) line.Put(", ").Put(printer.location);
        if (printer.isDefault) line.Put(", the default");
        line.End();
    }
    return kExitDone;
}
