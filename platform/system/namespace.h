// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Names of the public headers that do not begin with ORV, but for those that modules and hosts have always
/// known without it.
namespace orvprint {}

#if defined(ORV_OWN_SOURCES)
using namespace orvprint;  // orvprint's own sources are written as though they stood in it
#endif
