#pragma once

#include <vector>

#include "platform/system/ORVUnicodeString.h"

/// The platform's value lists.
using ORVListValORVUnicodeString = std::vector<ORVUnicodeString>;
using ORVListValDouble = std::vector<double>;

/// A list of pointers that owns nothing; who holds references says so where the list lives.
template <class T>
using ORVListPtr = std::vector<T*>;
