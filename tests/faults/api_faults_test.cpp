// SPDX-License-Identifier: Apache-2.0

// The C interface when memory is refused: each call returns a result, and its output is complete
// if it succeeded.

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "library/api/orvprint.h"
#include "tests/faults/allocation_trials.h"
#include "tests/support/named_rows.h"

namespace {

struct ApiRow {
    const char* name;
    const char* interpreter;
    /// @return the result of the call
    int (*call)(orvprint_document* document, std::string& answer);
};

int Append(void* data, const void* bytes, size_t size) {
    const Granted granted;
    static_cast<std::string*>(data)->append(static_cast<const char*>(bytes), size);
    return 1;
}

template <const char* kFormat>
int Render(orvprint_document* document, std::string& answer) {
    constexpr std::array options{
        "format", kFormat, "dpi", "45", "pages", "1", static_cast<const char*>(nullptr)};
    return orvprint_render_writer(document, Append, &answer, options.data());
}

int TakeText(int result, char* text, std::string& answer) {
    const Granted granted;
    if (result == ORVPRINT_OK) answer = text;
    orvprint_free_text(text);
    return result;
}

int Check(orvprint_document* document, std::string& answer) {
    char* json = nullptr;
    const int result = orvprint_check(document, nullptr, &json);
    return TakeText(result, json, answer);
}

int Dump(orvprint_document* document, std::string& answer) {
    char* json = nullptr;
    const int result = orvprint_dump(document, &json);
    return TakeText(result, json, answer);
}

int Describe(orvprint_document* document, std::string& answer) {
    unsigned int count = 0;
    int result = orvprint_page_count(document, &count);
    for (unsigned int page = 1; page <= count && result == ORVPRINT_OK; ++page) {
        double width = 0.0, height = 0.0;
        const char* title = nullptr;
        result = orvprint_page_size(document, page, &width, &height);
        if (result == ORVPRINT_OK) result = orvprint_page_title(document, page, &title);
        const Granted granted;
        answer += std::to_string(width) + " " + std::to_string(height) + (title ? title : "") + "\n";
    }
    return result;
}

constexpr char kPdf[] = "pdf", kSvg[] = "svg", kPng[] = "png";
constexpr std::array kRows{
    ApiRow{"pages", "svg", Describe},
    ApiRow{"pdf", "svg", Render<kPdf>},
    ApiRow{"svg", "svg", Render<kSvg>},
    ApiRow{"png", "svg", Render<kPng>},
    ApiRow{"check", "svg", Check},
    ApiRow{"dump", "svg", Dump},
    ApiRow{"standardPages", "svg2", Describe},
    ApiRow{"standardPdf", "svg2", Render<kPdf>},
    ApiRow{"standardSvg", "svg2", Render<kSvg>},
    ApiRow{"standardPng", "svg2", Render<kPng>},
    ApiRow{"standardDump", "svg2", Dump},
    ApiRow{"standardCheck", "svg2", Check},
};

class ApiFaults : public testing::TestWithParam<ApiRow> {};

TEST_P(ApiFaults, EndInAResultWithAText) {
    const std::string drawing = DocumentOfEverything();
    const std::array options{"interpreter", GetParam().interpreter, "keep-going", "true",
                             static_cast<const char*>(nullptr)};
    std::string answer, expected;
    int result = ORVPRINT_OK;
    bool hasText = true;
    WithEachRequestRefused(
        GetParam().name,
        [&] {
            answer.clear();
            hasText = true;
            result = ORVPRINT_ERROR_FAILED;
            orvprint_document* const document = orvprint_new();
            if (!document) return;
            result = orvprint_open_borrowed(document, drawing.data(), drawing.size(), options.data());
            if (result == ORVPRINT_OK) result = GetParam().call(document, answer);
            hasText = result == ORVPRINT_OK || orvprint_error_text(document)[0] != 0;
            orvprint_free(document);
        },
        [&] {
            if (expected.empty()) {
                EXPECT_EQ(result, ORVPRINT_OK);
                expected = answer;
            }
            EXPECT_GT(expected.size(), 5U);
            EXPECT_TRUE(hasText) << result;
            EXPECT_TRUE(result != ORVPRINT_OK || answer == expected)
                << "something else came: " << DifferenceOf(expected, answer);
        },
        // A check that lost a finding returns a plausible report, so each of the first 2000 requests is
        // refused, not just a sample.
        GetParam().call == Check ? Trials{2000} : Trials());
}

INSTANTIATE_TEST_SUITE_P(Calls, ApiFaults, testing::ValuesIn(kRows), kNameOfRow);

}  // namespace
