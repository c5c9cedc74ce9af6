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

/// Writes files. A part grows in a hidden file beside its final name and takes that name in Commit, so that
/// what stood there before stays until the new output is complete. Devices and pipes are written directly.
class ORV_GENERATORS_EXPORT ORVFileOutput final : public ORVOutput {
public:
    /// @param path      final name of the only part
    /// @param numbered  true: there may be several parts; "name.png" becomes "name-1.png", "name-2.png" ...
    ORVFileOutput(const std::string& path, bool numbered);
    ~ORVFileOutput() override;

    /// A file by what it is, not by its name.
    using Identity = std::pair<dev_t, ino_t>;

    /// Refuses to put a part in the place of this file, under whatever name, while it exists. Until Commit it
    /// is not too late. (Fonts are never replaced.)
    void Protect(const std::string& path);
    /// The same for a file that is known already.
    void Protect(const Identity& file) { protected_.insert(file); }

    /// Refuses to replace any file.
    void KeepFiles() { keepsFiles_ = true; }

    /// True for a font, as the first bytes of its file tell. Which fonts a drawing takes is known too late,
    /// and none is ever meant to become an output.
    static bool IsFont(const std::string& path);

    /// Finds out, before any work is done, whether the output can be written. @return 1, or 0 with an error
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
    std::unique_ptr<ORVDescriptorOutput> writer_;  // of the open part
};
