// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/serve_command.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <thread>

#include "apps/orvprint/commands/command_options.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/serve/PrintService.h"
#include "apps/orvprint/serve/fork_server.h"
#include "apps/orvprint/serve/listening_sockets.h"
#include "apps/orvprint/serve/serve_worker.h"
#include "platform/system/modules.h"

namespace {

constexpr double kUsualTimeLimit = 60.0;  // seconds

/// @return null if loading failed, which has been reported
std::unique_ptr<HttpFront> LoadFront() {
    std::string error;
    void* const module = ORVLoadModule(kServeModule, error);
    void* const factory = module ? ORVFindInModule(module, kServeFactory, error) : nullptr;
    std::unique_ptr<HttpFront> front(factory ? reinterpret_cast<HttpFrontFactory>(factory)() : nullptr);
    if (!front)
        Report(kExitFailed, "",
               std::string("the service needs ") + kServeModule + ", which cannot be used: " + error);
    return front;
}

/// Removes the reading options that make no sense for a service, and changes those that mean something else.
void FitReadOptions(CommandOptions& command) {
    for (const char* name : {"--allow-dir", "--no-file-images", "--fragment"}) command.remove_option(name);
    if (CLI::Option* const limit = command.get_option_no_throw("--time-limit"))
        limit->description("Abort a drawing after N seconds")->option_text("N [60]");
}

}  // namespace

void AddServeOptions(CommandOptions& command, ServeSettings& settings) {
    settings.read.timeLimit = kUsualTimeLimit;
    FitReadOptions(command);
    command.add_option("--socket", settings.socket, "Listen on a Unix socket of this name (mode 0660)")
        ->option_text("PATH");
    command.add_option("--listen", settings.address, "Listen on an address of this machine")
        ->option_text("HOST:PORT");
    command.add_flag("--allow-remote", settings.allowsRemote,
                     "With --listen: allow an address that other machines can reach");
    command
        .add_option("-j,--workers", settings.workers,
                    "Number of worker processes (default: one per processor)")
        ->option_text("N")
        ->check(command.IsInRange(1U, 256U));
    command
        .add_option("--queue", settings.queue, "Maximum number of waiting jobs; further ones get status 429")
        ->option_text("N [256]")
        ->check(command.IsInRange(1U, 100'000U));
    command.add_option("--max-request", settings.mostRequestBytes, "Maximum size of a request in bytes")
        ->option_text("N [67108864]")
        ->check(command.IsInRange(std::uint64_t{1}, std::uint64_t{1} << 32U));
    command.add_option("--max-connections", settings.mostConnections, "Maximum number of connections")
        ->option_text("N [1000]")
        ->check(command.IsInRange(1U, 60'000U));
    command
        .add_option("--patience", settings.patience,
                    "Seconds to wait for a slow client, sending or receiving")
        ->option_text("N [30]")
        ->check(command.IsInRange(1U, 3600U));
    command.add_option("--jobs-per-worker", settings.jobsPerWorker, "Replace a worker after N jobs")
        ->option_text("N [1000]")
        ->check(command.IsInRange(1U, 1'000'000U));
    command.add_flag("--quiet", settings.isQuiet, "Do not log jobs");
}

int RunServe(ServeSettings settings) {
    if (settings.workers == 0) settings.workers = std::max(1U, std::thread::hardware_concurrency());
    if (settings.allowsRemote && settings.address.empty())
        return Report(kExitUsage, "--allow-remote", "needs --listen HOST:PORT");
    ListeningSockets sockets;
    if (const int code = sockets.Open(settings); code != kExitDone) return code;
    // Forked before there is any client data and any thread.
    ForkServer forks;
    const auto work = [&settings](int socket) { return ServeWorker(settings, socket).Live(); };
    if (!forks.Start([&] { return WarmUp(settings); }, work))
        return Report(kExitFailed, "", std::string("workers: ") + std::strerror(errno));
    if (const int code = forks.WaitUntilReady(); code != 0) return code;
    const std::unique_ptr<HttpFront> front = LoadFront();
    if (!front) return kExitFailed;
    return PrintService(settings, forks, *front).Run(sockets.GetDescriptors(), sockets.GetPlaces());
}
