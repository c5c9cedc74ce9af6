// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Contains the names of the public headers that do not start with ORV, except for those that modules and
/// hosts have always used without a namespace.
namespace orvprint {}

#if defined(ORV_OWN_SOURCES)
using namespace orvprint;  // orvprint's own sources are written as if inside the namespace
#endif
