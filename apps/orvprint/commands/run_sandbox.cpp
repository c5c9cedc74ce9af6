// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/run_sandbox.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "apps/orvprint/process/report.h"
#include "apps/orvprint/sandbox/sandbox.h"

namespace {

#if defined(ORV_SANITIZED)
constexpr bool kIsPossible = false;  // sanitizers start programs and write files anywhere
#else
constexpr bool kIsPossible = true;
#endif

}  // namespace

bool KeepsTemporaryFiles(std::string_view format) {
    constexpr std::array<std::string_view, 3> kFormats{"ps", "eps", "tiff"};
    return std::find(kFormats.begin(), kFormats.end(), format) != kFormats.end();
}

int EnterSandboxFor(const ReadOptions& options, RunFiles files) {
    if (!kIsPossible || options.withoutSandbox) return kExitDone;
    files.allowedFolders = options.allowedFolders;
    const std::string missing = EnterSandbox(FileRulesFor(files));
    // In many containers the kernel refuses part of it. That is no reason to fail or to warn on every print;
    // who relies on the sandbox asks for it with --require-sandbox.
    if (missing.empty() || !options.requiresSandbox) return kExitDone;
    return Report(kExitFailed, "--require-sandbox",
                  missing + "; print without this option, or let the system give more");
}
