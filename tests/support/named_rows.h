// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <concepts>
#include <ostream>
#include <string>
#include <string_view>

// Support for tables of test cases with named rows: tests are named after their rows, so that the list of
// tests is the same in every run.

/// Names a test after its row, as the last argument of INSTANTIATE_TEST_SUITE_P.
inline constexpr auto kNameOfRow = [](const auto& row) { return std::string(row.param.name); };

/// A row with its own output operator.
template <class Row>
concept PrintedRow = requires(std::ostream& out, const Row& row) {
    out << row;
}
|| requires(std::ostream& out, const Row& row) { PrintTo(row, &out); };

/// A row with a name but no output operator.
template <class Row>
concept NamedRow = !PrintedRow<Row> && requires(const Row& row) {
    { row.name } -> std::convertible_to<std::string_view>;
};

/// Prints rows by their names. GoogleTest would print their bytes, including addresses. A generic PrintTo
/// would not be found, as it is looked up only in the namespace of the row.
template <NamedRow Row>
class testing::internal::UniversalPrinter<Row> {
public:
    static void Print(const Row& row, std::ostream* out) { *out << std::string_view(row.name); }
};
