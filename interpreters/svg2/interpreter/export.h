// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Marks what the module exports. Everything else in it is hidden.
#define ORV_MODULE_EXPORT __attribute__((visibility("default")))
