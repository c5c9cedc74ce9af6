// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>

namespace {

/// Disables the font index, so that tests write nothing to the user's home. Child processes inherit this.
const int withoutCache = setenv("ORVPRINT_CACHE_DIR", "", 1);

/// Fixes the locale of child processes, so that their messages do not depend on the user's language, and they
/// do not complain about a missing one.
const int withoutLanguage = setenv("LC_ALL", "C", 1);

}  // namespace
