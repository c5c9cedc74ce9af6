// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "apps/orvprint/serve/HttpFront.h"

/// Sends a request to a service and receives the response.
/// @param place  path of a Unix socket, or HOST:PORT with a numeric host
/// @param path   with the encoded query
/// @param most   maximum size of the response body in bytes
/// @return false with an error
bool AskService(const std::string& place, const std::string& path, std::string_view body, std::uint64_t most,
                HttpAnswer& answer, std::string& error);

/// A path with a query.
std::string PathWithQuery(const std::string& path, const HttpWords& words);
