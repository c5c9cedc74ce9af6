// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Marks what the library of generators exports.
#if defined(ORV_GENERATORS_BUILD)
#define ORV_GENERATORS_EXPORT __attribute__((visibility("default")))
#else
#define ORV_GENERATORS_EXPORT
#endif
