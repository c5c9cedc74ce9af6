// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/check_command.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>

#include "apps/orvprint/process/memory_limit.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/time_limit.h"
#include "library/dump/json_writer.h"
#include "library/report/check_report.h"
#include "library/text/printable_text.h"

namespace {

constexpr std::size_t kShownOfAKind = 5;

std::string InputName(const std::string& path) { return DisplayName(path, "standard input"); }

CheckedInput CheckOne(const std::string& path, const ReadOptions& options, Findings& findings) {
    InputBytes bytes;
    if (const int code = ReadInput(path, bytes); code != kExitDone) return {code, {}, false};
    const AccessScope access(path, options);
    return CheckBytes(OriginOf(path), options, bytes.GetView(), findings);
}

std::string Plural(std::uint64_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::size_t CountKinds(const Findings& findings) {
    return static_cast<std::size_t>(
        std::count_if(GetFindingKinds().begin(), GetFindingKinds().end(),
                      [&](const FindingKind& kind) { return findings.GetCount(kind.code) > 0; }));
}

std::string Summary(const Findings& findings) {
    if (findings.GetTotal() == 0) return "nothing found";
    return Plural(findings.GetTotal(), "finding") + " of " + Plural(CountKinds(findings), "kind");
}

void WriteLine(std::FILE* file, const std::string& name, const Finding& finding, std::size_t times) {
    std::string line = name + ":" + std::to_string(finding.line) + ":" + std::to_string(finding.column) +
                       ": " + finding.element;
    if (!finding.attribute.empty()) line += " " + finding.attribute;
    if (!finding.value.empty()) line += " \"" + finding.value + "\"";
    TextLine text(file);
    text.Put(line).Put(": ").Put(finding.message);
    if (times > 1) text.Put(" (" + std::to_string(times) + " times)");
    text.End();
}

/// Findings with the same message about the same value, at several places.
struct Repeated {
    const Finding* first;
    std::size_t times = 1;
};

std::vector<Repeated> Fold(const std::vector<const Finding*>& findings) {
    std::vector<Repeated> folded;
    std::map<std::array<std::string_view, 3>, std::size_t> places;
    for (const Finding* finding : findings) {
        const auto [place, isNew] =
            places.try_emplace({finding->attribute, finding->value, finding->message}, folded.size());
        if (isNew)
            folded.push_back({finding});
        else
            ++folded[place->second].times;
    }
    return folded;
}

/// Prints findings by kind: what they have in common, their number, and the first of each.
void WriteText(std::FILE* file, const std::string& name, const Findings& findings, std::size_t shownOfAKind) {
    std::vector<std::vector<const Finding*>> byKind(static_cast<std::size_t>(FindingCode::kCount));
    for (const Finding& finding : findings.GetKept())
        byKind[static_cast<std::size_t>(finding.code)].push_back(&finding);
    for (const FindingKind& kind : GetFindingKinds()) {
        const std::uint64_t count = findings.GetCount(kind.code);
        if (count == 0) continue;
        auto& kept = byKind[static_cast<std::size_t>(kind.code)];
        // Some kinds report findings only after the walk has passed them.
        std::stable_sort(kept.begin(), kept.end(), [](const Finding* a, const Finding* b) {
            return a->line != b->line ? a->line < b->line : a->column < b->column;
        });
        TextLine(file).End().Put(kind.name).Put(" (" + std::to_string(count) + "): ").Put(kind.title).End();
        std::size_t shown = 0;
        if (shownOfAKind == Findings::kKept) {
            for (const Finding* finding : kept) WriteLine(file, name, *finding, 1);
            shown = kept.size();
        } else {
            std::vector<Repeated> folded = Fold(kept);
            folded.resize(std::min(shownOfAKind, folded.size()));
            for (const Repeated& finding : folded) {
                WriteLine(file, name, *finding.first, finding.times);
                shown += finding.times;
            }
        }
        if (count > shown)
            TextLine(file)
                .Put("  and " + std::to_string(count - shown) + " more")
                .Put(shown < kept.size() ? "; --verbose lists them" : "")
                .End();
    }
}

void WriteResult(const std::string& name, const Findings& findings, bool verbose, bool hasPxSize) {
    TextLine(stdout).Put(name).Put(": ").Put(Summary(findings)).End();
    if (hasPxSize)
        TextLine(stdout)
            .Put(
                "note: its size is in px, which are 1/90 inch here and 1/96 inch in browsers and editors: it "
                "prints 6.7 % larger than they show it; --interpreter svg2 counts as they do")
            .End();
    WriteText(stdout, name, findings, verbose ? Findings::kKept : kShownOfAKind);
    if (verbose && findings.GetForeignCount() > 0)
        TextLine(stdout)
            .End()
            .Put(Plural(findings.GetForeignCount(), "name") + " of other vocabularies left alone")
            .End();
}

/// Puts bytes back in front of standard input, all of which has been read.
bool PutBack(std::string_view bytes) {
    if (lseek(STDIN_FILENO, 0, SEEK_SET) == 0) return true;  // a file
    const int memory = memfd_create("standard input", MFD_CLOEXEC);
    if (memory < 0) return false;
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = write(memory, bytes.data() + written, bytes.size() - written);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        written += static_cast<std::size_t>(count);
    }
    const bool done = written == bytes.size() && lseek(memory, 0, SEEK_SET) == 0 &&
                      dup2(memory, STDIN_FILENO) == STDIN_FILENO;
    close(memory);
    return done;
}

}  // namespace

int RunCheck(const CheckOptions& options) {
    int failure = kExitDone;
    bool found = false;
    JsonWriter json(stdout);
    if (options.asJson) json.BeginArray();
    bool isFirst = true;
    DrawingTime time;
    for (const std::string& path : options.inputs) {
        // Flush, so that earlier results are not lost if the time limit ends the process.
        std::fflush(stdout);
        time.Begin(InputName(path));
        Findings findings(options.ignored);
        const CheckedInput input = CheckOne(path, options.read, findings);
        if (input.failure != kExitDone && failure == kExitDone) failure = input.failure;
        found |= findings.GetTotal() > 0;
        if (options.asJson) {
            WriteCheckJson(json, path, input, findings);
        } else if (input.failure == kExitDone) {
            if (!isFirst) TextLine(stdout).End();
            WriteResult(InputName(path), findings, options.verbose, input.hasPxSize);
            isFirst = false;
        }
    }
    if (options.asJson) {
        json.EndArray();
        json.LineBreak();
        json.Flush();
    }
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        return Report(kExitUnwritable, "standard output", "cannot be written");
    if (failure != kExitDone) return failure;
    return found ? kExitFound : kExitDone;
}

int CheckBeforePrinting(const std::vector<std::string>& inputs, const ReadOptions& options,
                        const std::set<FindingCode>& ignored) {
    bool found = false;
    DrawingTime time;
    for (const std::string& path : inputs) {
        time.Begin(InputName(path));
        InputBytes bytes;
        if (const int code = ReadInput(path, bytes); code != kExitDone) return code;
        Findings findings(ignored);
        const AccessScope access(path, options);
        const CheckedInput input = CheckBytes(OriginOf(path), options, bytes.GetView(), findings);
        if (input.failure != kExitDone) return input.failure;
        if (findings.GetTotal() > 0) {
            found = true;
            Report(kExitFound, InputName(path), Summary(findings) + "; nothing is printed with --strict");
            WriteText(stderr, InputName(path), findings, kShownOfAKind);
        }
        if (path == "-" && !PutBack(bytes.GetView()))
            return Report(kExitUnreadable, InputName(path), "cannot be read twice, as --strict has to");
    }
    return found ? kExitFound : kExitDone;
}

int CheckBeforeInspection(const std::string& input, const ReadOptions& options, const CheckedUse& use) {
    InputBytes bytes;
    if (const int code = ReadInput(input, bytes); code != kExitDone) return code;
    if (input == "-" && !PutBack(bytes.GetView()))
        return Report(kExitUnreadable, InputName(input), "cannot be read twice, as inspect --html has to");
    Findings findings;
    const AccessScope access(input, options);
    return CheckBytes(OriginOf(input), options, bytes.GetView(), findings, use).failure;
}

std::uint64_t CountFindings(const std::string& path, const ReadOptions& options,
                            const std::set<FindingCode>& ignored) {
    BoundMemory();  // the input is read again, and counts again
    Findings findings(ignored);
    CheckOne(path, options, findings);
    return findings.GetTotal();
}
