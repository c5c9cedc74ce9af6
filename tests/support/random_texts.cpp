// SPDX-License-Identifier: Apache-2.0
#include "tests/support/random_texts.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <sstream>

namespace {

constexpr int kTexts = 20'000;
constexpr int kMostPieces = 16;

}  // namespace

void CheckRandomTexts(const std::vector<std::string>& pieces,
                      const std::function<std::string(const std::string& text)>& compare) {
    rc::detail::TestParams parameters = rc::detail::configuration().testParams;
    parameters.maxSuccess = kTexts;
    // All pieces are equally likely, whatever the size of the text.
    const auto piece = rc::gen::resize(rc::kNominalSize, rc::gen::elementOf(pieces));
    const auto list = rc::gen::resize(kMostPieces, rc::gen::container<std::vector<std::string>>(piece));
    const rc::detail::TestResult result =
        rc::detail::checkProperty(rc::detail::toProperty([&] {
                                      std::string text;
                                      for (const std::string& part : *list) text += part;
                                      const std::string wrong = compare(text);
                                      RC_LOG() << "text: \"" << text << "\"\n" << wrong << "\n";
                                      RC_ASSERT(wrong.empty());
                                  }),
                                  rc::detail::TestMetadata(), parameters);
    if (result.is<rc::detail::SuccessResult>()) return;
    std::ostringstream report;
    rc::detail::printResultMessage(result, report);
    ADD_FAILURE() << report.str();
}
