// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <vector>

/// Calls `compare` with about ten thousand texts composed of random `pieces`. It returns the fault, or an
/// empty string. The first faulty text fails the test and is reported in reduced form.
void CheckRandomTexts(const std::vector<std::string>& pieces,
                      const std::function<std::string(const std::string& text)>& compare);
