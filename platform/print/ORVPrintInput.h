// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVUnicodeString.h"

/// Base class of the inputs of an interpreter. The host creates an input and keeps it alive as long as the
/// interpreter.
class ORV_PLATFORM_EXPORT ORVPrintInput : public ORVBaseObject {
public:
    static const ORVMetaClass& MetaClass();

protected:
    ~ORVPrintInput() override;
};

/// A stream of bytes. As with C streams, the end of data is reported only after a read has failed.
class ORV_PLATFORM_EXPORT ORVPrintInputStream : public ORVPrintInput {
public:
    static const ORVMetaClass& MetaClass();

    /// Opens the stream. @param mode  "rb" @return negative on failure
    virtual int Open(const char* mode) = 0;
    /// 1 when the stream is open, else 0.
    virtual int IsOpen() const = 0;
    /// 1 when the stream can be read, else 0.
    virtual int IsReadable() const = 0;
    /// 1 until a read has failed because the data ended, then 0. Other read errors leave it at 1.
    virtual int HasMoreData() const = 0;
    /// Reads up to `count` bytes into `buffer`. @return number of bytes read
    virtual unsigned long Read(void* buffer, unsigned long count) = 0;
    /// Clears the end-of-data state.
    virtual void Reset() = 0;
    /// Positions the stream at `offset` bytes from its start. @return negative on failure
    virtual int Seek(long offset) = 0;
    /// Closes the stream. It can be opened again.
    virtual void Close() = 0;

protected:
    ~ORVPrintInputStream() override;
};
