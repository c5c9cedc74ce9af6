// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

#include "platform/print/ORVPrintInput.h"

/// A stream over bytes in memory, which it owns.
class ORV_PLATFORM_EXPORT ORVPrintInputMemoryStream final : public ORVPrintInputStream {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    /// @param bytes  the document
    explicit ORVPrintInputMemoryStream(std::string bytes);

    int Open(const char* mode) override;
    int IsOpen() const override { return open_ ? 1 : 0; }
    int IsReadable() const override { return open_ ? 1 : 0; }
    int HasMoreData() const override { return atEnd_ ? 0 : 1; }
    unsigned long Read(void* buffer, unsigned long count) override;
    void Reset() override { atEnd_ = false; }
    int Seek(long offset) override;
    void Close() override { open_ = false; }

private:
    ~ORVPrintInputMemoryStream() override;

    std::string bytes_;
    std::size_t position_ = 0;
    bool open_ = false;
    bool atEnd_ = false;
};
