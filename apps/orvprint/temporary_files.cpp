#include "apps/orvprint/temporary_files.h"

#include <sys/types.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <new>

#include "platform/system/ORVTemporaryData.h"

namespace {

std::atomic<bool> wasTooLarge = false;

ORVTemporaryData& DataOf(void* cookie) { return *static_cast<ORVTemporaryData*>(cookie); }

ssize_t Read(void* cookie, char* bytes, size_t size) { return DataOf(cookie).Read(bytes, size); }

ssize_t Write(void* cookie, const char* bytes, size_t size) {
    ORVTemporaryData& data = DataOf(cookie);
    const std::size_t written = data.Write(bytes, size);
    if (data.IsPastLimit()) wasTooLarge = true;
    return static_cast<ssize_t>(written);
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

bool WasTemporaryFileTooLarge() { return wasTooLarge; }

/// Takes the place of the C library's function for all libraries of the process.
extern "C" __attribute__((visibility("default"))) std::FILE* tmpfile() {
    wasTooLarge = false;
    std::unique_ptr<ORVTemporaryData> data(new (std::nothrow) ORVTemporaryData);
    if (!data) errno = ENOMEM;
    if (!data || !data->Open()) return nullptr;
    std::FILE* file = fopencookie(data.get(), "w+", {Read, Write, Seek, Close});
    if (file) static_cast<void>(data.release());  // now the file's
    return file;
}
