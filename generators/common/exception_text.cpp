// SPDX-License-Identifier: Apache-2.0
#include "generators/common/exception_text.h"

#include <exception>
#include <filesystem>
#include <new>
#include <string_view>
#include <system_error>

namespace {

/// Describes the exception being handled; derived types are matched before their bases.
void Name(ORVFailure& failed) {
    failed.reason = ORVFailureReason::kNotDrawn;
    std::string& error = failed.text;
    try {
        throw;
    } catch (const std::bad_alloc&) {
        failed = ORVFailure::OutOfMemory();
    } catch (const std::filesystem::filesystem_error& failure) {
        error = failure.code().message() + ": " + failure.path1().string();
    } catch (const std::system_error& failure) {
        // std::thread throws this when the system allows no more threads.
        const bool isThread = failure.code() == std::errc::resource_unavailable_try_again;
        error = isThread ? "a thread could not be started" : failure.code().message();
    } catch (const std::exception& failure) {
        error = std::string_view("unexpected: ");
        error += failure.what();
    } catch (...) {
        error = "something unexpected was thrown";
    }
}

}  // namespace

void ORVNameException(ORVFailure& failure) noexcept {
    try {
        Name(failure);
    } catch (const std::exception&) {
        failure = ORVFailure::OutOfMemory();
    }
}
