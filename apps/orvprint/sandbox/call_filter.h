// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <linux/filter.h>

#include <span>
#include <string>

/// The seccomp program that call_filter_compiler generated for this architecture.
std::span<const sock_filter> CallFilterProgram();

/// Makes the kernel refuse system calls that printing never needs, for the rest of this process's life.
/// @return why the kernel does not support it; empty on success
std::string RefuseCalls();
