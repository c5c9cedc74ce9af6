// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <vector>

/// Asks `compare` about some ten thousand texts, each put together from random `pieces`. It answers what is
/// wrong with the text, or nothing. The first wrong text fails the test and is reported shrunk.
void CheckRandomTexts(const std::vector<std::string>& pieces,
                      const std::function<std::string(const std::string& text)>& compare);
