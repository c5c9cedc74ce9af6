// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/fontconfig_faces.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "platform/visualization/fonts/module/font_failure.h"

#if defined(__SANITIZE_ADDRESS__)
#define ORV_LOOKS_FOR_LEAKS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORV_LOOKS_FOR_LEAKS 1
#endif
#endif
#ifdef ORV_LOOKS_FOR_LEAKS
#include <sanitizer/lsan_interface.h>
#endif

namespace {

constexpr int kRegularWeight = 400;

bool IsTrue(FcPattern* pattern, const char* object) {
    FcBool value = FcFalse;
    return FcPatternGetBool(pattern, object, 0, &value) == FcResultMatch && value == FcTrue;
}

/// Outline fonts; of a variable font, only the default instance.
bool IsUsable(FcPattern* pattern) {
    return IsTrue(pattern, FC_OUTLINE) && !IsTrue(pattern, FC_VARIABLE) &&
           (NumberOf(pattern, FC_INDEX, 0) >> 16) == 0 && !TextOf(pattern, FC_FILE).empty() &&
           !TextOf(pattern, FC_FAMILY).empty();
}

/// Calls `use` for each name of a font: family, full and PostScript name.
template <class Use>
void ForEachName(FcPattern* pattern, const Use& use) {
    for (const char* object : {FC_FAMILY, FC_FULLNAME, FC_POSTSCRIPT_NAME}) {
        FcChar8* text = nullptr;
        for (int i = 0; FcPatternGetString(pattern, object, i, &text) == FcResultMatch; ++i)
            use(reinterpret_cast<const char*>(text));
    }
}

ORVFont::Kind KindOf(FcPattern* pattern) {
    const std::string format = TextOf(pattern, FC_FONTFORMAT);
    if (format == "TrueType") return ORVFont::kTrueType;
    return format == "CFF" ? ORVFont::kCFF : ORVFont::kPostScript;
}

InstalledFace Describe(FcPattern* pattern) {
    InstalledFace face;
    face.path = TextOf(pattern, FC_FILE);
    face.index = static_cast<unsigned int>(NumberOf(pattern, FC_INDEX, 0));
    face.foundry = TextOf(pattern, FC_FOUNDRY);
    face.family = TextOf(pattern, FC_FAMILY);
    face.style = TextOf(pattern, FC_STYLE);
    face.fullName = TextOf(pattern, FC_FULLNAME);
    face.postScriptName = TextOf(pattern, FC_POSTSCRIPT_NAME);
    face.weight = FcWeightToOpenType(NumberOf(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR));
    face.slant = NumberOf(pattern, FC_SLANT, FC_SLANT_ROMAN);
    face.width = NumberOf(pattern, FC_WIDTH, FC_WIDTH_NORMAL);
    face.kind = KindOf(pattern);
    return face;
}

// If a face exists in several formats, OpenType comes first, because it has more characters and kerning.
auto CatalogueOrder(const InstalledFace& face) {
    return std::make_tuple(std::string_view(face.family), face.slant, std::abs(face.width - FC_WIDTH_NORMAL),
                           std::abs(face.weight - kRegularWeight), face.kind == ORVFont::kPostScript,
                           std::string_view(face.style), std::string_view(face.path), face.index);
}

/// Appends the strings of a list and frees the list.
void AppendAll(FcStrList* list, std::vector<std::string>& texts) {
    const auto done = [](FcStrList* taken) { FcStrListDone(taken); };
    const std::unique_ptr<FcStrList, decltype(done)> owner(list);
    while (const FcChar8* text = list ? FcStrListNext(list) : nullptr)
        texts.emplace_back(reinterpret_cast<const char*>(text));
}

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// Configurations often reject such fonts, so the caches of the folders are read directly.
std::set<std::string, std::less<>> NamesOfBitmapFonts() {
    FcConfig* const configuration = FontconfigConfiguration();
    std::set<std::string, std::less<>> names;
    std::vector<std::string> folders;
    AppendAll(FcConfigGetFontDirs(configuration), folders);
    const auto unload = [](FcCache* cache) { FcDirCacheUnload(cache); };
    const auto destroy = [](FcFontSet* fonts) { FcFontSetDestroy(fonts); };
    for (const std::string& folder : folders) {
        const std::unique_ptr<FcCache, decltype(unload)> cache(
            FcDirCacheRead(reinterpret_cast<const FcChar8*>(folder.c_str()), FcFalse, configuration));
        const std::unique_ptr<FcFontSet, decltype(destroy)> fonts(cache ? FcCacheCopySet(cache.get())
                                                                        : nullptr);
        for (int i = 0; fonts && i < fonts->nfont; ++i)
            if (!IsTrue(fonts->fonts[i], FC_OUTLINE))
                ForEachName(fonts->fonts[i], [&names](const char* text) { names.emplace(text); });
    }
    return names;
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

std::string_view WithoutBlanks(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

/// An `include` or `dir` element of a configuration file. Commented-out elements are included, too; a
/// superfluous path does no harm.
struct ConfiguredPath {
    std::string_view attributes, text;
};

std::vector<ConfiguredPath> ConfiguredPaths(std::string_view file, std::string_view element) {
    std::vector<ConfiguredPath> paths;
    const std::string opening = "<" + std::string(element);
    for (std::size_t at = file.find(opening); at != file.npos; at = file.find(opening, at + 1)) {
        const std::string_view rest = file.substr(at + opening.size());
        const std::size_t end = rest.find('>');
        if (end == rest.npos || (rest[0] != '>' && !IsBlank(rest[0]))) continue;
        const std::string_view text = rest.substr(end + 1, rest.find('<', end) - end - 1);
        paths.push_back({rest.substr(0, end), WithoutBlanks(text)});
    }
    return paths;
}

bool Says(std::string_view attributes, std::string_view prefix) {
    const std::size_t at = attributes.find(prefix);
    return at != attributes.npos && attributes.find("prefix") < at;
}

/// The paths where fontconfig looks for an included configuration file.
void AppendIncluded(const ConfiguredPath& included, const std::string& includer,
                    std::vector<std::string>& paths) {
    const std::string text(included.text);
    const std::string home = Variable("HOME");
    if (Says(included.attributes, "xdg")) {
        const std::string folder = Variable("XDG_CONFIG_HOME");
        paths.push_back((folder.empty() ? home + "/.config" : folder) + "/" + text);
    } else if (text.starts_with('~')) {
        paths.push_back(home + text.substr(1));
    } else if (text.starts_with('/')) {
        paths.push_back(text);
    } else {
        paths.push_back(includer.substr(0, includer.rfind('/') + 1) + text);
        paths.push_back("/etc/fonts/" + text);
    }
}

/// True when a `dir` element does not depend on the working directory.
bool IsSteady(const ConfiguredPath& folder) {
    return Says(folder.attributes, "xdg") || Says(folder.attributes, "relative") ||
           folder.text.starts_with('/') || folder.text.starts_with('~');
}

}  // namespace

FcConfig* FontconfigConfiguration() {
    MakeSureOfMemory();
    static FcConfig* const configuration = [] {
        MakeSureOfHandles();
#ifdef ORV_LOOKS_FOR_LEAKS
        // fontconfig refers to some of its data by offsets instead of pointers, which the leak checker
        // reports.
        const __lsan::ScopedDisabler disabler;
#endif
        return FcConfigReference(nullptr);
    }();
    return configuration;
}

std::vector<InstalledFace> AskInstalledFaces() {
    std::vector<InstalledFace> all;
    FcConfig* const configuration = FontconfigConfiguration();
    for (const FcSetName set : {FcSetSystem, FcSetApplication}) {
        const FcFontSet* fonts = FcConfigGetFonts(configuration, set);
        for (int i = 0; fonts && i < fonts->nfont; ++i)
            if (IsUsable(fonts->fonts[i])) all.push_back(Describe(fonts->fonts[i]));
    }
    std::sort(all.begin(), all.end(), [](const InstalledFace& a, const InstalledFace& b) {
        return CatalogueOrder(a) < CatalogueOrder(b);
    });
    // A file reached through two configured folders is one font.
    std::unordered_set<std::string> seen;
    std::erase_if(
        all, [&](const InstalledFace& face) { return !seen.insert(FileKey(face.path, face.index)).second; });
    return all;
}

bool HasBitmapFont(std::string_view name) {
    // Cached, because reading the caches of all folders takes longer than most drawings.
    static const auto* const names = new const std::set<std::string, std::less<>>(NamesOfBitmapFonts());
    return names->contains(name);
}

std::optional<std::vector<std::string>> PathsThatDecide() {
    FcConfig* const configuration = FontconfigConfiguration();
    std::vector<std::string> files, paths;
    AppendAll(FcConfigGetConfigFiles(configuration), files);
    // Missing files may be created later: these, and those that the files name.
    for (const char* standard : {"/etc/fonts/fonts.conf", "/etc/fonts/conf.d"}) paths.emplace_back(standard);
    paths.push_back(Variable("FONTCONFIG_FILE"));
    // Rewritten when libraries are installed, including fontconfig.
    paths.emplace_back("/etc/ld.so.cache");
    for (const std::string& file : files) {
        paths.push_back(file);
        std::error_code ignored;
        if (!std::filesystem::is_regular_file(file, ignored)) continue;  // may be a folder of files
        std::ifstream stream(file, std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(stream), {}};
        for (const ConfiguredPath& included : ConfiguredPaths(text, "include"))
            AppendIncluded(included, file, paths);
        const std::vector<ConfiguredPath> folders = ConfiguredPaths(text, "dir");
        if (!std::all_of(folders.begin(), folders.end(), IsSteady)) return std::nullopt;
    }
    AppendAll(FcConfigGetConfigDirs(configuration), paths);
    AppendAll(FcConfigGetFontDirs(configuration), paths);

    std::sort(paths.begin(), paths.end());
    paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
    std::erase(paths, std::string());
    // FONTCONFIG_PATH is a list of folders; with it, or with relative paths, the result is valid for one
    // process only.
    const bool isSteady = Variable("FONTCONFIG_PATH").empty() &&
                          std::all_of(paths.begin(), paths.end(),
                                      [](const std::string& path) { return path.starts_with('/'); });
    if (!isSteady) return std::nullopt;
    return paths;
}

std::string TextOf(FcPattern* pattern, const char* object) {
    FcChar8* text = nullptr;
    if (FcPatternGetString(pattern, object, 0, &text) != FcResultMatch || !text) return {};
    return reinterpret_cast<const char*>(text);
}

int NumberOf(FcPattern* pattern, const char* object, int otherwise) {
    int number = 0;
    if (FcPatternGetInteger(pattern, object, 0, &number) == FcResultMatch) return number;
    double real = 0.0;
    return FcPatternGetDouble(pattern, object, 0, &real) == FcResultMatch ? static_cast<int>(real)
                                                                          : otherwise;
}

std::string FileKey(std::string_view path, unsigned int index) {
    std::string key(path);
    key += '\n';
    key += std::to_string(index & 0xFFFF);
    return key;
}

std::string FileKey(FcPattern* pattern) {
    return FileKey(TextOf(pattern, FC_FILE), static_cast<unsigned int>(NumberOf(pattern, FC_INDEX, 0)));
}
