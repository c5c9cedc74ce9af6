// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVTemporaryData.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <utility>

#include "platform/system/ORVPrintLimits.h"
#include "platform/system/files.h"

namespace {

std::atomic<ORVTemporaryData::Loss> latestLoss = ORVTemporaryData::Loss::kNone;

/// Creates a file under a temporary name and unlinks it, for file systems without O_TMPFILE. Signals are
/// blocked meanwhile, so that none can end the process and leave the file behind.
int OpenAndUnlink(const std::string& folder) {
    std::string path = folder + "/.orvprint-data.XXXXXX";
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const int descriptor = mkostemp(path.data(), O_CLOEXEC);
    if (descriptor >= 0) unlink(path.c_str());
    const int error = errno;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return descriptor;
}

}  // namespace

const char* ORVTemporaryData::GetFolder() {
    const char* folder = ORVGetEnv("TMPDIR");
    return folder && *folder ? folder : "/tmp";
}

void ORVTemporaryData::NoteLoss(Loss loss) { latestLoss = loss; }

ORVTemporaryData::Loss ORVTemporaryData::GetLoss() { return latestLoss; }

bool ORVTemporaryData::Open() {
    Close();
    isPastLimit_ = false;
    const char* const folder = GetFolder();
    descriptor_ = open(folder, O_TMPFILE | O_RDWR | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor_ >= 0) return true;
    try {
        descriptor_ = OpenAndUnlink(folder);
    } catch (const std::exception&) {
        errno = ENOMEM;
    }
    return descriptor_ >= 0;
}

void ORVTemporaryData::Close() {
    if (descriptor_ >= 0) close(std::exchange(descriptor_, -1));
}

std::size_t ORVTemporaryData::Write(const void* bytes, std::size_t size) {
    const off_t place = lseek(descriptor_, 0, SEEK_CUR);
    if (place < 0) return 0;
    const std::uint64_t limit = ORVPrintLimits::Get(ORVPrintLimit::kOutputBytes);
    if (static_cast<std::uint64_t>(place) > limit || size > limit - static_cast<std::uint64_t>(place)) {
        isPastLimit_ = true;
        errno = EFBIG;
        return 0;
    }
    const char* const from = static_cast<const char*>(bytes);
    std::size_t done = 0;
    while (done < size) {
        const ssize_t written = write(descriptor_, from + done, size - done);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) break;
        done += static_cast<std::size_t>(written);
    }
    return done;
}

std::ptrdiff_t ORVTemporaryData::Read(void* bytes, std::size_t size) const {
    for (;;) {
        const ssize_t count = read(descriptor_, bytes, size);
        if (count >= 0 || errno != EINTR) return count;
    }
}

std::int64_t ORVTemporaryData::Seek(std::int64_t offset, int origin) const {
    return lseek(descriptor_, offset, origin);
}

std::int64_t ORVTemporaryData::GetSize() const {
    struct stat facts {};
    return fstat(descriptor_, &facts) == 0 ? facts.st_size : -1;
}
