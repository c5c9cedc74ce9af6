// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/system/ORVUnicodeString.h"

/// List of strings.
using ORVListValORVUnicodeString = std::vector<ORVUnicodeString>;
/// List of numbers.
using ORVListValDouble = std::vector<double>;

/// List of pointers that are not owned by the list. Where a list holds references, its owner documents that.
template <class T>
using ORVListPtr = std::vector<T*>;
