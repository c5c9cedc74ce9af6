// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVUnicodeString.h"

/// What an interpreter reads. Hosts create one and keep it as long as the interpreter.
class ORV_PLATFORM_EXPORT ORVPrintInput : public ORVBaseObject {
public:
    static const ORVMetaClass& MetaClass();

protected:
    ~ORVPrintInput() override;
};

/// A stream of bytes. The protocol is that of C streams: the end shows after a read that failed.
class ORV_PLATFORM_EXPORT ORVPrintInputStream : public ORVPrintInput {
public:
    static const ORVMetaClass& MetaClass();

    /// Opens the stream; `mode` is "rb". @return negative on failure
    virtual int Open(const char* mode) = 0;
    /// Readiness: 0 when the stream is not open.
    virtual int IsOpen() const = 0;
    /// Readiness: 0 when the stream cannot be read.
    virtual int IsReadable() const = 0;
    /// 1 until a read has failed for lack of data. It stays 1 when one has failed for another reason.
    virtual int HasMoreData() const = 0;
    /// Reads up to `count` bytes into `buffer`. @return number of bytes read
    virtual unsigned long Read(void* buffer, unsigned long count) = 0;
    /// Clears the end-of-data state.
    virtual void Reset() = 0;
    /// Positions the stream at `offset` bytes from its start. @return negative on failure
    virtual int Seek(long offset) = 0;
    /// Closes the stream, which can be opened again.
    virtual void Close() = 0;

protected:
    ~ORVPrintInputStream() override;
};
