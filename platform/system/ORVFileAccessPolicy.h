// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVUnicodeString.h"

/// What the host lets documents read. Every file that a document names is asked for; the default allows
/// nothing. The host sets it before it loads a document.
class ORV_PLATFORM_EXPORT ORVFileAccessPolicy {
public:
    virtual ~ORVFileAccessPolicy() = default;
    /// True when a document may read the file at `path` (absolute or relative to the working directory),
    /// whether there is one or not. What is forbidden is not looked at, so that neither the answer nor the
    /// time it takes tells whether it exists.
    virtual bool MayRead(const ORVUnicodeString& path) const = 0;

    /// Installs the calling thread's policy; null forbids everything. The caller keeps ownership and
    /// outlives its use.
    static void SetCurrent(const ORVFileAccessPolicy* policy);
    /// The calling thread's policy; null for none.
    static const ORVFileAccessPolicy* GetCurrent();
};

/// Allows the folders it is given and everything below them. Symbolic links are followed within them, and
/// may lead from one to another. A path leads into a folder by the folder's real name, or by the very name
/// that the host gave.
class ORV_PLATFORM_EXPORT ORVFolderAccessPolicy final : public ORVFileAccessPolicy {
public:
    ORVFolderAccessPolicy();
    ~ORVFolderAccessPolicy() override;
    /// @return false when there is no such folder; it is then not added
    bool AllowFolder(const ORVUnicodeString& folder);
    bool MayRead(const ORVUnicodeString& path) const override;

private:
    struct Folders;
    Folders* folders_;
};
