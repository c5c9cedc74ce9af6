// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdio>

#include "platform/print/ORVPrintInput.h"

/// A stream over a file named by the host. ORVFileAccessPolicy, which restricts documents, does not apply.
class ORV_PLATFORM_EXPORT ORVPrintInputFileStream final : public ORVPrintInputStream {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    /// @param path  path of the file; it is not opened before Open
    explicit ORVPrintInputFileStream(const ORVUnicodeString& path);

    /// The path passed to the constructor.
    const ORVUnicodeString& GetPath() const { return path_; }

    int Open(const char* mode) override;
    int IsOpen() const override { return file_ ? 1 : 0; }
    int IsReadable() const override { return file_ && !std::ferror(file_) ? 1 : 0; }
    int HasMoreData() const override { return file_ && !std::feof(file_) ? 1 : 0; }
    unsigned long Read(void* buffer, unsigned long count) override;
    void Reset() override;
    int Seek(long offset) override;
    void Close() override;

private:
    ~ORVPrintInputFileStream() override;

    ORVUnicodeString path_;
    std::FILE* file_ = nullptr;
};
