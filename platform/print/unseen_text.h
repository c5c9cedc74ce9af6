// SPDX-License-Identifier: Apache-2.0
#pragma once

/// A power of generators beside those of ORVPrintGenerator: texts that have neither fill nor stroke are there
/// to be found and copied, and are not seen. Generators of files that cannot say so get no such texts.
inline constexpr unsigned int kUnseenText = 1U << 17U;
