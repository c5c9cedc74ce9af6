// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <vector>

/// Calls `compare` with 20,000 texts composed of random `pieces`. `compare` returns a description of the
/// fault, or an empty string. The first faulty text ends the run, fails the test and is reported in reduced
/// form.
void CheckRandomTexts(const std::vector<std::string>& pieces,
                      const std::function<std::string(const std::string& text)>& compare);
