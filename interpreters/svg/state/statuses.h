// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Results of element handlers. Anything but kDone ends the chain of handlers for the child.
inline constexpr int kDone = 1;       ///< processed, or not an element for this handler
inline constexpr int kNoMemory = 0;   ///< a primitive could not be allocated
inline constexpr int kUnusable = -1;  ///< no container, or unusable input

/// Results of value parsers. Other values mean that no number could be read.
inline constexpr int kRead = 1;    ///< the output was set
inline constexpr int kEmpty = -1;  ///< the text is empty
