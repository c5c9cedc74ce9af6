// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <concepts>
#include <ostream>
#include <string>
#include <string_view>

// Tables of tests whose rows have a name: a file that includes this gets tests named after their rows, and
// lists of tests that are the same in every run.

/// Names a test after its row, as the last argument of INSTANTIATE_TEST_SUITE_P.
inline constexpr auto kNameOfRow = [](const auto& row) { return std::string(row.param.name); };

/// A row that says by itself how it is printed.
template <class Row>
concept PrintedRow = requires(std::ostream& out, const Row& row) {
    out << row;
}
|| requires(std::ostream& out, const Row& row) { PrintTo(row, &out); };

/// A row that has a name only.
template <class Row>
concept NamedRow = !PrintedRow<Row> && requires(const Row& row) {
    { row.name } -> std::convertible_to<std::string_view>;
};

/// Prints rows by their names. GoogleTest would print their bytes, addresses among them. A PrintTo for all of
/// them it would not find, since it looks only where a row is declared.
template <NamedRow Row>
class testing::internal::UniversalPrinter<Row> {
public:
    static void Print(const Row& row, std::ostream* out) { *out << std::string_view(row.name); }
};
