// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>

namespace {

/// Tests leave nothing in the home of who runs them: without a folder there is no index of faces. Programs
/// that tests start inherit that.
const int withoutCache = setenv("ORVPRINT_CACHE_DIR", "", 1);

/// Programs that tests start say the same whatever language is set, and do not complain of one that is not
/// installed.
const int withoutLanguage = setenv("LC_ALL", "C", 1);

}  // namespace
