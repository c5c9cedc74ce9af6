#pragma once

/// Libraries that keep data in temporary files (cairo does, with pages of PostScript) ask the C library for
/// them, which looks for no TMPDIR and knows no limit. In this command they get ORVTemporaryData instead.
/// @return whether the latest of these files would have become larger than the limit of output bytes allows
bool WasTemporaryFileTooLarge();
