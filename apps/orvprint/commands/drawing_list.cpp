// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/drawing_list.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "apps/orvprint/commands/content_hash.h"
#include "apps/orvprint/process/report.h"

namespace {

bool ReadNumber(std::string_view text, std::uint32_t& number) {
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    return read.ec == std::errc() && read.ptr == end;
}

}  // namespace

bool BatchShard::Parse(std::string_view text) {
    const std::size_t slash = text.find('/');
    return slash != std::string_view::npos && ReadNumber(text.substr(0, slash), number) &&
           ReadNumber(text.substr(slash + 1), count) && number >= 1 && number <= count;
}

bool BatchShard::Takes(std::string_view name) const { return StableNumber(name) % count == number - 1; }

int ReadDrawingList(const std::string& path, char separator, std::vector<std::string>& names) {
    const std::string shown = DisplayName(path, "standard input");
    std::FILE* const list = path == "-" ? stdin : std::fopen(path.c_str(), "re");
    if (!list) return Report(kExitUnreadable, shown, std::strerror(errno));
    char* line = nullptr;
    std::size_t room = 0;
    errno = 0;
    for (ssize_t size = 0; (size = getdelim(&line, &room, separator, list)) > 0;) {
        std::string_view name(line, static_cast<std::size_t>(size));
        if (name.ends_with(separator)) name.remove_suffix(1);
        if (!name.empty()) names.emplace_back(name);
    }
    const int error = errno;
    const bool isRead = std::ferror(list) == 0 && error != ENOMEM;
    std::free(line);
    if (list != stdin) std::fclose(list);
    return isRead ? static_cast<int>(kExitDone) : Report(kExitUnreadable, shown, std::strerror(error));
}
