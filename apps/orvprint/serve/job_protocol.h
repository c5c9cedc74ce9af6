// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "apps/orvprint/serve/HttpFront.h"

/// The protocol between the service and each worker, over a socket: the service sends a head, words and a
/// body for each job; the worker sends one byte when it is ready, then a head and a body for each job. Both
/// ends are the same program, so the heads are plain structures.

enum class JobKind : std::uint8_t { kPrint, kCheck };

/// The head of a job.
struct JobHead {
    JobKind kind = JobKind::kPrint;
    std::uint32_t wordBytes = 0;
    std::uint64_t bodyBytes = 0;
};

/// The head of an answer.
struct AnswerHead {
    static constexpr std::int64_t kNotCounted = -1;

    std::int32_t code = 0;                ///< an exit code
    std::uint8_t isOutOfMemory = 0;       ///< of the reason for a failure
    std::uint8_t isWorn = 0;              ///< the worker asks to be replaced
    std::int64_t findings = kNotCounted;  ///< number of findings
    std::uint32_t pages = 0;
    std::array<char, 8> format{};  ///< name of the body's format, padded with zeros
    std::uint64_t bodyBytes = 0;
};

inline constexpr char kWorkerReady = 'R';

std::string EncodeWords(const HttpWords& words);
/// @return false if the bytes are not a valid message
bool DecodeWords(std::string_view bytes, HttpWords& words);
