// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVFileOutput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include "generators/common/ORVDescriptorOutput.h"
#include "generators/common/ORVTemporaryFile.h"

namespace {

std::string SystemError() { return std::strerror(errno); }

/// Resolves symbolic links, so that the target is replaced and not the link.
std::string FollowLinks(const std::string& path) {
    std::array<char, PATH_MAX> target;
    struct stat information {};
    if (lstat(path.c_str(), &information) == 0 && S_ISLNK(information.st_mode) &&
        realpath(path.c_str(), target.data()))
        return target.data();
    return path;
}

/// True for devices, pipes and the like, which cannot be replaced by a new file.
bool IsSpecial(const std::string& path) {
    struct stat information {};
    return stat(path.c_str(), &information) == 0 && !S_ISREG(information.st_mode) &&
           !S_ISDIR(information.st_mode);
}

mode_t ModeForNewFiles() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666U & ~mask;
}

}  // namespace

ORVFileOutput::ORVFileOutput(const std::string& path, bool numbered) : path_(path), numbered_(numbered) {}

ORVFileOutput::~ORVFileOutput() {
    if (descriptor_ >= 0) close(descriptor_);
}

std::string ORVFileOutput::PathOfPart(std::size_t number) const {
    if (!numbered_) return path_;
    const std::size_t nameStart = path_.rfind('/') == path_.npos ? 0 : path_.rfind('/') + 1;
    std::size_t dot = path_.rfind('.');
    if (dot == path_.npos || dot <= nameStart) dot = path_.size();
    return path_.substr(0, dot) + "-" + std::to_string(number) + path_.substr(dot);
}

bool ORVFileOutput::IsFont(const std::string& path) {
    constexpr std::array<std::string_view, 12> kStarts{std::string_view("\0\1\0\0", 4),
                                                       "true",
                                                       "typ1",
                                                       "OTTO",
                                                       "ttcf",
                                                       "wOFF",
                                                       "wOF2",
                                                       "\x80\x01",
                                                       "%!PS-AdobeFont",
                                                       "%!FontType",
                                                       std::string_view("\1fcp", 4),
                                                       "STARTFONT"};
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return false;
    std::array<char, 16> start{};
    const ssize_t size = read(descriptor, start.data(), start.size());
    close(descriptor);
    const std::string_view view(start.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    return std::any_of(kStarts.begin(), kStarts.end(),
                       [&](std::string_view known) { return view.starts_with(known); });
}

int ORVFileOutput::CheckTarget(const std::string& path) {
    struct stat information {};
    if (stat(path.c_str(), &information) != 0) return 1;
    if (protected_.contains({information.st_dev, information.st_ino}))
        return Fail("is an input; choose another name");
    if (S_ISDIR(information.st_mode)) return Fail("is a folder");
    if (keepsFiles_ && S_ISREG(information.st_mode))
        return Fail("exists; replace it with --force, or name another file with -o");
    if (S_ISREG(information.st_mode) && IsFont(path)) return Fail("is a font; choose another name");
    if (access(path.c_str(), W_OK) != 0) return Fail(SystemError());
    return 1;
}

int ORVFileOutput::OpenTemporary(const std::string& finalPath, ORVTemporaryFile& temporary) {
    const int descriptor = temporary.Create(finalPath);
    if (descriptor < 0) {
        Fail(SystemError());
        return -1;
    }
    struct stat information {};
    const bool exists = stat(finalPath.c_str(), &information) == 0;
    if (fchmod(descriptor, exists ? information.st_mode & 07777U : ModeForNewFiles()) != 0) errno = 0;
    return descriptor;
}

void ORVFileOutput::Protect(const std::string& path) {
    struct stat information {};
    // Devices and pipes are exempt: they may be input and output at once.
    if (stat(path.c_str(), &information) == 0 && S_ISREG(information.st_mode))
        protected_.emplace(information.st_dev, information.st_ino);
}

int ORVFileOutput::Prepare() {
    return Try([&] {
        const std::string path = FollowLinks(PathOfPart(1));
        if (CheckTarget(path) != 1) return 0;
        if (IsSpecial(path)) return 1;
        ORVTemporaryFile trial;
        const int descriptor = OpenTemporary(path, trial);
        if (descriptor < 0) return 0;
        close(descriptor);
        return 1;
    });
}

int ORVFileOutput::BeginPart() {
    return Try([&] {
        if (!GetError().empty()) return 0;
        if (!numbered_ && !parts_.empty())
            return Fail("several pages do not fit into one file of this format");
        Part part;
        part.finalPath = FollowLinks(PathOfPart(parts_.size() + 1));
        if (CheckTarget(part.finalPath) != 1) return 0;
        if (IsSpecial(part.finalPath)) {
            descriptor_ = open(part.finalPath.c_str(), O_WRONLY | O_CLOEXEC);
            if (descriptor_ < 0) return Fail(SystemError());
        } else {
            part.temporary = std::make_unique<ORVTemporaryFile>();
            descriptor_ = OpenTemporary(part.finalPath, *part.temporary);
            if (descriptor_ < 0) return 0;
        }
        parts_.push_back(std::move(part));
        writer_ = std::make_unique<ORVDescriptorOutput>(descriptor_);
        return writer_->BeginPart();
    });
}

int ORVFileOutput::Append(const void* bytes, std::size_t size) {
    return Try([&] {
        if (!writer_) return Fail("no part is open");
        return writer_->Write(bytes, size) == 1 ? 1 : Fail(writer_->GetFailure());
    });
}

int ORVFileOutput::EndPart() {
    return Try([&] {
        if (!writer_) return Fail("no part is open");
        const bool written = writer_->EndPart() == 1;
        if (!written) Fail(writer_->GetFailure());
        writer_.reset();
        // Some file systems report a full disk only on close.
        if (close(std::exchange(descriptor_, -1)) != 0) return Fail(SystemError());
        return written ? 1 : 0;
    });
}

int ORVFileOutput::Commit() {
    return Try([&] {
        if (writer_ && EndPart() != 1) return 0;
        if (!GetError().empty()) return 0;
        // Protected files may have been added since. Check all parts first, so that either all are renamed or
        // none.
        for (const Part& part : parts_)
            if (part.temporary && CheckTarget(part.finalPath) != 1) return 0;
        for (Part& part : parts_) {
            if (part.temporary && !part.temporary->MoveTo(part.finalPath)) return Fail(SystemError());
            part.temporary.reset();
        }
        return 1;
    });
}
