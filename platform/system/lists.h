// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/system/ORVUnicodeString.h"

/// A list of strings.
using ORVListValORVUnicodeString = std::vector<ORVUnicodeString>;
/// A list of numbers.
using ORVListValDouble = std::vector<double>;

/// A list of pointers that owns nothing; who holds references says so where the list lives.
template <class T>
using ORVListPtr = std::vector<T*>;
