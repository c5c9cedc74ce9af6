// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Marks the symbols that the module exports; all others are hidden.
#define ORV_MODULE_EXPORT __attribute__((visibility("default")))
