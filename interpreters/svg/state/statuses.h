// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Results of element handlers. Anything but kDone ends the chain of handlers for that child.
inline constexpr int kDone = 1;       ///< processed, or not of the handler's kind
inline constexpr int kNoMemory = 0;   ///< a primitive could not be allocated
inline constexpr int kUnusable = -1;  ///< no container, or input that cannot be used

/// Results of value readers. Other values say that no number could be read.
inline constexpr int kRead = 1;    ///< the output was written
inline constexpr int kEmpty = -1;  ///< no text
