// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Marks symbols exported by the library of generators.
#if defined(ORV_GENERATORS_BUILD)
#define ORV_GENERATORS_EXPORT __attribute__((visibility("default")))
#else
#define ORV_GENERATORS_EXPORT
#endif
