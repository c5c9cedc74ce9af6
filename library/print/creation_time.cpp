// SPDX-License-Identifier: Apache-2.0
#include "library/print/creation_time.h"

#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <system_error>

#include "platform/system/files.h"

std::optional<std::int64_t> CreationTime(const std::vector<std::string>& inputs) {
    if (const char* text = ORVGetEnv("SOURCE_DATE_EPOCH")) {
        std::int64_t seconds = 0;
        const char* const end = text + std::strlen(text);
        if (const auto read = std::from_chars(text, end, seconds); read.ec == std::errc() && read.ptr == end)
            return seconds;
    }
    std::optional<std::int64_t> newest;
    for (const std::string& input : inputs) {
        struct stat facts {};
        if (input == "-" || stat(input.c_str(), &facts) != 0) continue;
        newest = std::max<std::int64_t>(newest.value_or(facts.st_mtime), facts.st_mtime);
    }
    return newest;
}
