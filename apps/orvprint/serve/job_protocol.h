// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "apps/orvprint/serve/HttpFront.h"

/// What the service and its workers say to each other, over a socket for each worker: the service sends a
/// head, words and a body for each job; the worker one byte when it is ready, then a head and a body for each
/// job. Both are the same program.

enum class JobKind : std::uint8_t { kPrint, kCheck };

/// What comes first of a job.
struct JobHead {
    JobKind kind = JobKind::kPrint;
    std::uint32_t wordBytes = 0;
    std::uint64_t bodyBytes = 0;
};

/// What comes first of an answer.
struct AnswerHead {
    static constexpr std::int64_t kNotCounted = -1;

    std::int32_t code = 0;                ///< an exit code
    std::uint8_t isOutOfMemory = 0;       ///< that is why it failed
    std::uint8_t isWorn = 0;              ///< the worker asks to be replaced
    std::int64_t findings = kNotCounted;  ///< of the check
    std::uint32_t pages = 0;
    std::array<char, 8> format{};  ///< name of the body's format, ended by zeros
    std::uint64_t bodyBytes = 0;
};

inline constexpr char kWorkerReady = 'R';

std::string EncodeWords(const HttpWords& words);
/// @return false when the bytes are no such thing
bool DecodeWords(std::string_view bytes, HttpWords& words);
