#pragma once
// ULOStream: a binary stream of fixed encodings (see docs/stream-encoding.md), with chunks.
// Nothing reads past the end of the stream or past the end of an open read chunk.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "ulolib/ErrorCode.h"
#include "ulolib/Export.h"
#include "ulolib/Path.h"

class ULOLIB_API ULOStream {
public:
    virtual ~ULOStream();

    // Raw bytes; each returns the number of bytes actually transferred.
    size_t Read(void* data, size_t size);
    size_t Write(const void* data, size_t size);

    // The typed readers return false when the whole value could not be read; the value is then
    // left unchanged (the bytes that were there are consumed).
    // 16- and 32-bit values in the stream's fixed multi-byte order (big-endian).
    bool WriteSwap(uint16_t value);
    bool WriteSwap(uint32_t value);
    bool ReadSwap(uint16_t& value);
    bool ReadSwap(uint32_t& value);

    bool WriteSInt32(int32_t value);  // little-endian, 4 bytes
    bool ReadSInt32(int32_t& value);
    bool WriteByte(uint8_t value);
    bool ReadByte(uint8_t& value);

    // An array: its element count (SInt32) then count x elementSize raw bytes.
    bool WriteArray(const void* elements, int32_t count, size_t elementSize);
    // Reads the stored count n and then min(n, capacity) elements; stored elements beyond the
    // capacity are skipped. True only when n == capacity and every element was read. readCount
    // receives the number of whole elements stored into elements. A negative n fails.
    bool ReadArray(void* elements, int32_t capacity, size_t elementSize, int32_t* readCount = nullptr);

    // Position in bytes from the start of the stream.
    uint64_t GetPosition() const { return DoTell(); }
    bool Seek(uint64_t position) { return DoSeek(position); }
    // Bytes that can still be read (within the innermost open read chunk).
    uint64_t GetRemaining() const;

protected:
    virtual size_t DoRead(void* data, size_t size) = 0;
    virtual size_t DoWrite(const void* data, size_t size) = 0;
    virtual bool DoSeek(uint64_t position) = 0;
    virtual uint64_t DoTell() const = 0;
    virtual uint64_t DoLength() const = 0;

private:
    friend class ULOReadChunk;
    uint64_t readLimit_ = UINT64_MAX;  // end of the innermost open read chunk
};

// A stream over memory: grows on write, readable from any position.
class ULOLIB_API ULOMemoryStream : public ULOStream {
public:
    ULOMemoryStream() = default;
    ULOMemoryStream(const void* data, size_t size);
    ~ULOMemoryStream() override;
    const std::vector<uint8_t>& GetBuffer() const { return buffer_; }

protected:
    size_t DoRead(void* data, size_t size) override;
    size_t DoWrite(const void* data, size_t size) override;
    bool DoSeek(uint64_t position) override;
    uint64_t DoTell() const override { return position_; }
    uint64_t DoLength() const override { return buffer_.size(); }

private:
    std::vector<uint8_t> buffer_;
    size_t position_ = 0;
};

// A stream over a file.
class ULOLIB_API ULOFileStream : public ULOStream {
public:
    enum class Mode { kRead, kWrite };
    ULOFileStream() = default;
    ~ULOFileStream() override;
    ULOFileStream(const ULOFileStream&) = delete;
    ULOFileStream& operator=(const ULOFileStream&) = delete;

    ulo::ErrorCode Open(const ULOPath& path, Mode mode);
    void Close();
    bool IsOpen() const { return file_ != nullptr; }

protected:
    size_t DoRead(void* data, size_t size) override;
    size_t DoWrite(const void* data, size_t size) override;
    bool DoSeek(uint64_t position) override;
    uint64_t DoTell() const override;
    uint64_t DoLength() const override;

private:
    FILE* file_ = nullptr;
};

// Opens a chunk: writes its 16-bit identifier and a length that is filled in when the writer
// goes out of scope.
class ULOLIB_API ULOWriteChunk {
public:
    ULOWriteChunk(ULOStream* stream, uint16_t id);
    ~ULOWriteChunk();
    ULOWriteChunk(const ULOWriteChunk&) = delete;
    ULOWriteChunk& operator=(const ULOWriteChunk&) = delete;
    bool IsOk() const { return ok_; }  // false when the header could not be written
    // Fills in the length now (the destructor then does nothing) and reports whether it could:
    // false when the header failed, the chunk was closed before, or the payload exceeds 4 GiB - 1.
    bool Close();

private:
    ULOStream* stream_;
    uint64_t lengthPosition_ = 0;
    bool ok_ = false;
    bool closed_ = false;
};

// Opens a chunk for reading: reads are confined to it until the reader goes out of scope, when
// the stream moves to the chunk's end.
class ULOLIB_API ULOReadChunk {
public:
    explicit ULOReadChunk(ULOStream* stream);
    ~ULOReadChunk();
    ULOReadChunk(const ULOReadChunk&) = delete;
    ULOReadChunk& operator=(const ULOReadChunk&) = delete;

    bool IsOk() const { return ok_; }  // false when the header could not be read whole
    // Both are zero unless the header was read whole.
    uint16_t GetID() const { return id_; }
    // The length as stored; reads still stop at the end of the enclosing chunk or the stream.
    uint32_t GetLength() const { return length_; }

private:
    ULOStream* stream_;
    uint64_t savedLimit_ = 0;
    uint64_t end_ = 0;
    uint16_t id_ = 0;
    uint32_t length_ = 0;
    bool ok_ = false;
};
