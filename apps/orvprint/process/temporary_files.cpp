// SPDX-License-Identifier: Apache-2.0

// Some libraries keep data in temporary files, for example cairo for PostScript pages. They create them with
// tmpfile(), which knows neither TMPDIR nor limits. In this command, tmpfile() returns an ORVTemporaryData
// instead.

#include <sys/types.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <new>

#include "platform/system/ORVTemporaryData.h"

namespace {

ORVTemporaryData& DataOf(void* cookie) { return *static_cast<ORVTemporaryData*>(cookie); }

ssize_t Read(void* cookie, char* bytes, size_t size) { return DataOf(cookie).Read(bytes, size); }

// cairo frees memory twice if such a write fails in the middle of an image. So write errors are not returned
// to it but recorded, and the generator asks for them.
ssize_t Write(void* cookie, const char* bytes, size_t size) {
    ORVTemporaryData& data = DataOf(cookie);
    if (data.Write(bytes, size) < size)
        ORVTemporaryData::NoteLoss(data.IsPastLimit() ? ORVTemporaryData::Loss::kPastLimit
                                                      : ORVTemporaryData::Loss::kNotWritten);
    return static_cast<ssize_t>(size);
}

int Seek(void* cookie, off64_t* offset, int origin) {
    const std::int64_t place = DataOf(cookie).Seek(*offset, origin);
    if (place < 0) return -1;
    *offset = place;
    return 0;
}

int Close(void* cookie) {
    delete static_cast<ORVTemporaryData*>(cookie);
    return 0;
}

}  // namespace

/// Replaces the C library's function for all libraries of the process.
extern "C" __attribute__((visibility("default"))) std::FILE* tmpfile() {
    ORVTemporaryData::NoteLoss(ORVTemporaryData::Loss::kNone);
    std::unique_ptr<ORVTemporaryData> data(new (std::nothrow) ORVTemporaryData);
    if (!data) errno = ENOMEM;
    if (!data || !data->Open()) return nullptr;
    std::FILE* file = fopencookie(data.get(), "w+", {Read, Write, Seek, Close});
    if (file) static_cast<void>(data.release());  // owned by the stream from here on
    return file;
}
