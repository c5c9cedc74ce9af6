#include "tests/support/random_texts.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <sstream>

namespace {

constexpr int kTexts = 20'000;
constexpr int kMostPieces = 16;

}  // namespace

void CheckRandomTexts(const std::vector<std::string>& pieces,
                      const std::function<std::string(const std::string& text)>& compare) {
    rc::detail::TestParams parameters = rc::detail::configuration().testParams;
    parameters.maxSuccess = kTexts;
    const rc::detail::TestResult result =
        rc::detail::checkProperty(rc::detail::toProperty([&] {
                                      std::string text;
                                      for (const auto choice : *rc::gen::resize(
                                               kMostPieces, rc::gen::arbitrary<std::vector<std::uint8_t>>()))
                                          text += pieces[choice % pieces.size()];
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
