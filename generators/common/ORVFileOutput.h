// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "generators/common/ORVOutput.h"

class ORVDescriptorOutput;
class ORVTemporaryFile;

/// Writes files. Each part is written to a hidden temporary file next to its final path and renamed in
/// Commit, so an existing file stays until the new output is complete. Devices and pipes are written
/// directly.
class ORV_GENERATORS_EXPORT ORVFileOutput final : public ORVOutput {
public:
    /// @param path      final path of the only part, or pattern for the paths of several
    /// @param numbered  if true, parts are numbered: "name.png" becomes "name-1.png", "name-2.png" ...
    ORVFileOutput(const std::string& path, bool numbered);
    ~ORVFileOutput() override;

    /// Identifies a file independently of its path: device and inode.
    using Identity = std::pair<dev_t, ino_t>;

    /// Refuses to replace this file with a part, under any path, while the file exists. May be called at any
    /// time before Commit. Font files are never replaced, protected or not.
    void Protect(const std::string& path);
    /// The same for a file whose identity is known.
    void Protect(const Identity& file) { protected_.insert(file); }

    /// Refuses to replace existing files.
    void KeepFiles() { keepsFiles_ = true; }

    /// True if the first bytes of the file are those of a font. Fonts are protected by content because the
    /// fonts that a drawing uses become known too late to list them.
    static bool IsFont(const std::string& path);

    /// Checks, before any work is done, whether the output can be written. @return 1, or 0 with an error
    [[nodiscard]] int Prepare();

    int BeginPart() override;
    int EndPart() override;
    int Commit() override;

private:
    int Append(const void* bytes, std::size_t size) override;
    struct Part {
        std::unique_ptr<ORVTemporaryFile> temporary;  // null when the file is written directly
        std::string finalPath;
    };
    std::string PathOfPart(std::size_t number) const;
    int OpenTemporary(const std::string& finalPath, ORVTemporaryFile& temporary);
    int CheckTarget(const std::string& path);

    const std::string path_;
    const bool numbered_;
    bool keepsFiles_ = false;
    std::set<Identity> protected_;
    std::vector<Part> parts_;
    int descriptor_ = -1;
    std::unique_ptr<ORVDescriptorOutput> writer_;  // writes the open part
};
