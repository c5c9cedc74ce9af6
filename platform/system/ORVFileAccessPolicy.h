// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVUnicodeString.h"

/// Decides which files documents may read. Every file that a document names is checked against the policy of
/// the calling thread; without a policy, none may be read. The host installs its policy before it loads a
/// document.
class ORV_PLATFORM_EXPORT ORVFileAccessPolicy {
public:
    virtual ~ORVFileAccessPolicy() = default;
    /// True when a document may read the file at `path` (absolute, or relative to the working directory). The
    /// file need not exist. The file system is not consulted about forbidden paths, so neither the result nor
    /// the time taken reveals whether such a file exists.
    virtual bool MayRead(const ORVUnicodeString& path) const = 0;

    /// Installs the policy of the calling thread; null forbids everything. The caller keeps ownership and
    /// must keep the policy alive while it is installed.
    static void SetCurrent(const ORVFileAccessPolicy* policy);
    /// The policy of the calling thread; null when none is installed.
    static const ORVFileAccessPolicy* GetCurrent();
};

/// Allows the folders added to it and everything below them. Symbolic links are followed as long as they lead
/// to an allowed folder. A path may refer to a folder by its real name or by the name that was passed to
/// AllowFolder().
class ORV_PLATFORM_EXPORT ORVFolderAccessPolicy final : public ORVFileAccessPolicy {
public:
    ORVFolderAccessPolicy();
    ~ORVFolderAccessPolicy() override;
    /// Adds a folder. @return false when the folder does not exist; nothing is added
    bool AllowFolder(const ORVUnicodeString& folder);
    bool MayRead(const ORVUnicodeString& path) const override;

private:
    struct Folders;
    Folders* folders_;
};
