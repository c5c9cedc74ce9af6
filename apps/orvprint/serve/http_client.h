// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "apps/orvprint/serve/HttpFront.h"

/// Sends one request to a service and takes its answer.
/// @param place  path of a Unix socket, or HOST:PORT with the number of a host
/// @param path   with the query, encoded
/// @param most   bytes that the answer's body may have
/// @return false with an error
bool AskService(const std::string& place, const std::string& path, std::string_view body, std::uint64_t most,
                HttpAnswer& answer, std::string& error);

/// A path with words behind it.
std::string PathWithQuery(const std::string& path, const HttpWords& words);
