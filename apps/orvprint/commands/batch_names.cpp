// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/batch_names.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace {

constexpr std::array<std::string_view, 3> kDrawingEndings{".svg", ".svgz", ".qvxml"};
constexpr std::string_view kPackedEnding = ".gz";

bool EndsWith(std::string_view name, std::string_view ending) {
    if (name.size() < ending.size()) return false;
    name.remove_prefix(name.size() - ending.size());
    return std::equal(name.begin(), name.end(), ending.begin(), [](char given, char wanted) {
        return (given >= 'A' && given <= 'Z' ? static_cast<char>(given - 'A' + 'a') : given) == wanted;
    });
}

/// Appends the folders of a path, as if below another folder.
/// @return false if it leads upwards
bool AppendFolders(std::string_view path, std::string& to) {
    for (std::size_t slash = 0; (slash = path.find('/')) != std::string_view::npos;
         path.remove_prefix(slash + 1)) {
        const std::string_view folder = path.substr(0, slash);
        if (folder == "..") return false;
        if (!folder.empty() && folder != ".") to.append(folder).append("/");
    }
    return true;
}

}  // namespace

std::string BaseName(std::string_view input) {
    std::string_view name = input.substr(input.rfind('/') + 1);
    std::string_view bare = name;
    if (EndsWith(bare, kPackedEnding)) bare.remove_suffix(kPackedEnding.size());
    for (const std::string_view ending : kDrawingEndings) {
        // A file named ".svg" has no other name.
        if (EndsWith(bare, ending) && bare.size() > ending.size())
            return std::string(bare.substr(0, bare.size() - ending.size()));
    }
    return std::string(name);
}

std::vector<std::string> PlanOutputs(const std::vector<std::string>& inputs, const std::string& folder,
                                     std::string_view ending, bool keepsFolders, std::string& error) {
    std::vector<std::string> outputs;
    std::unordered_map<std::string, const std::string*> owners;
    for (const std::string& input : inputs) {
        const std::string name = BaseName(input);
        if (name.empty() || name == "." || name == "..") {
            error.assign(input).append(" names no file");
            return {};
        }
        std::string output = folder;
        if (!folder.ends_with('/')) output += '/';
        if (keepsFolders && !AppendFolders(input, output)) {
            error.assign(input).append(
                " leads out of its folder with ..; name it without, or leave out --keep-folders");
            return {};
        }
        output.append(name).append(".").append(ending);
        const auto [owner, isNew] = owners.emplace(output, &input);
        if (!isNew) {
            error = "both ";
            error.append(*owner->second)
                .append(" and ")
                .append(input)
                .append(" would become ")
                .append(output);
            return {};
        }
        outputs.push_back(std::move(output));
    }
    return outputs;
}
