// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <linux/filter.h>

#include <span>
#include <string>

/// The filter that call_filter_compiler made of its table, for this kind of processor.
std::span<const sock_filter> CallFilterProgram();

/// Has the kernel refuse system calls that printing never needs, for this process from now on.
/// @return why it does not, empty when it does
std::string RefuseCalls();
