#include "ulolib/Stream.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <new>

// ---- ULOStream -------------------------------------------------------------------------------

ULOStream::~ULOStream() = default;

size_t ULOStream::Read(void* data, size_t size) {
    if (!data || size == 0) {
        return 0;
    }
    const uint64_t position = DoTell();
    if (position >= readLimit_) {
        return 0;
    }
    const uint64_t allowed = std::min<uint64_t>(size, readLimit_ - position);
    return DoRead(data, static_cast<size_t>(allowed));
}

size_t ULOStream::Write(const void* data, size_t size) {
    if (!data || size == 0) {
        return 0;
    }
    return DoWrite(data, size);
}

bool ULOStream::WriteSwap(uint16_t value) {
    const uint8_t bytes[2] = {uint8_t(value >> 8), uint8_t(value)};
    return Write(bytes, sizeof bytes) == sizeof bytes;
}

bool ULOStream::WriteSwap(uint32_t value) {
    const uint8_t bytes[4] = {uint8_t(value >> 24), uint8_t(value >> 16), uint8_t(value >> 8),
                              uint8_t(value)};
    return Write(bytes, sizeof bytes) == sizeof bytes;
}

bool ULOStream::ReadSwap(uint16_t& value) {
    uint8_t bytes[2];
    if (Read(bytes, sizeof bytes) != sizeof bytes) {
        return false;
    }
    value = static_cast<uint16_t>(bytes[0] << 8 | bytes[1]);
    return true;
}

bool ULOStream::ReadSwap(uint32_t& value) {
    uint8_t bytes[4];
    if (Read(bytes, sizeof bytes) != sizeof bytes) {
        return false;
    }
    value = uint32_t(bytes[0]) << 24 | uint32_t(bytes[1]) << 16 | uint32_t(bytes[2]) << 8 | bytes[3];
    return true;
}

bool ULOStream::WriteSInt32(int32_t value) {
    const auto v = static_cast<uint32_t>(value);
    const uint8_t bytes[4] = {uint8_t(v), uint8_t(v >> 8), uint8_t(v >> 16), uint8_t(v >> 24)};
    return Write(bytes, sizeof bytes) == sizeof bytes;
}

bool ULOStream::ReadSInt32(int32_t& value) {
    uint8_t bytes[4];
    if (Read(bytes, sizeof bytes) != sizeof bytes) {
        return false;
    }
    value = static_cast<int32_t>(uint32_t(bytes[0]) | uint32_t(bytes[1]) << 8 | uint32_t(bytes[2]) << 16 |
                                 uint32_t(bytes[3]) << 24);
    return true;
}

bool ULOStream::WriteByte(uint8_t value) {
    return Write(&value, 1) == 1;
}

bool ULOStream::ReadByte(uint8_t& value) {
    uint8_t byte;
    if (Read(&byte, 1) != 1) {
        return false;
    }
    value = byte;
    return true;
}

bool ULOStream::WriteArray(const void* elements, int32_t count, size_t elementSize) {
    if (count < 0 || (count > 0 && elementSize > 0 && !elements) ||
        (elementSize != 0 &&
         static_cast<uint64_t>(count) > std::numeric_limits<size_t>::max() / elementSize)) {
        return false;
    }
    if (!WriteSInt32(count)) {
        return false;
    }
    const size_t bytes = static_cast<size_t>(count) * elementSize;
    return bytes == 0 || Write(elements, bytes) == bytes;
}

bool ULOStream::ReadArray(void* elements, int32_t capacity, size_t elementSize, int32_t* readCount) {
    if (readCount) {
        *readCount = 0;
    }
    int32_t stored = 0;
    if (!ReadSInt32(stored) || stored < 0) {
        return false;
    }
    const int32_t wanted = std::min(stored, std::max(capacity, 0));
    int32_t got = wanted;
    if (elementSize > 0 && wanted > 0) {
        if (!elements || static_cast<uint64_t>(wanted) > std::numeric_limits<size_t>::max() / elementSize) {
            return false;
        }
        // Only whole elements count as read.
        got = static_cast<int32_t>(Read(elements, static_cast<size_t>(wanted) * elementSize) / elementSize);
    }
    if (readCount) {
        *readCount = got;
    }
    if (got < wanted) {
        return false;  // the stream ended: nothing is left to skip
    }
    // Skip the stored elements that did not fit, but never past the chunk or the stream end.
    const uint64_t skipped = static_cast<uint64_t>(stored - wanted);
    if (skipped > 0 && elementSize > 0) {
        const uint64_t remaining = GetRemaining();
        const bool fits = skipped <= remaining / elementSize;
        const uint64_t skip = fits ? skipped * elementSize : remaining;
        if (!Seek(GetPosition() + skip) || !fits) {
            return false;
        }
    }
    return stored == capacity;
}

uint64_t ULOStream::GetRemaining() const {
    const uint64_t end = std::min(readLimit_, DoLength());
    const uint64_t position = DoTell();
    return end > position ? end - position : 0;
}

// ---- ULOMemoryStream -------------------------------------------------------------------------

ULOMemoryStream::ULOMemoryStream(const void* data, size_t size) {
    if (data && size > 0) {
        const auto* bytes = static_cast<const uint8_t*>(data);
        buffer_.assign(bytes, bytes + size);
    }
}

ULOMemoryStream::~ULOMemoryStream() = default;

size_t ULOMemoryStream::DoRead(void* data, size_t size) {
    const size_t count = std::min(size, buffer_.size() - position_);
    if (count == 0) {
        return 0;
    }
    std::memcpy(data, buffer_.data() + position_, count);
    position_ += count;
    return count;
}

size_t ULOMemoryStream::DoWrite(const void* data, size_t size) {
    if (size == 0 || size > buffer_.max_size() - position_) {
        return 0;
    }
    const size_t end = position_ + size;
    if (end > buffer_.size()) {
        try {
            buffer_.resize(end);
        } catch (const std::bad_alloc&) {
            return 0;
        }
    }
    std::memcpy(buffer_.data() + position_, data, size);
    position_ = end;
    return size;
}

bool ULOMemoryStream::DoSeek(uint64_t position) {
    if (position > buffer_.size()) {
        return false;
    }
    position_ = static_cast<size_t>(position);
    return true;
}

// ---- ULOFileStream ---------------------------------------------------------------------------

ULOFileStream::~ULOFileStream() {
    Close();
}

ulo::ErrorCode ULOFileStream::Open(const ULOPath& path, Mode mode) {
    static const char kFunction[] = "ulo::ErrorCode ULOFileStream::Open(const ULOPath&, Mode)";
    Close();
    FILE* file = ULOOpenFile(path, mode == Mode::kRead ? "rb" : "wb");
    if (!file) {
        return ulo::ErrorCode(ULO_AT(ulo::exception::SystemError::FromErrno(errno, "fopen"), kFunction,
                                     "ulolib/Stream", __LINE__));
    }
    // Linux opens a folder for reading; a folder is no stream, as elsewhere.
    struct stat info;
    if (fstat(fileno(file), &info) == 0 && S_ISDIR(info.st_mode)) {
        std::fclose(file);
        return ulo::ErrorCode(ULO_AT(ulo::exception::SystemError::FromErrno(EISDIR, "fopen"), kFunction,
                                     "ulolib/Stream", __LINE__));
    }
    file_ = file;
    return ulo::ErrorCode::noError();
}

void ULOFileStream::Close() {
    if (file_) {
        std::fclose(file_);
        file_ = nullptr;
    }
}

size_t ULOFileStream::DoRead(void* data, size_t size) {
    return file_ ? std::fread(data, 1, size, file_) : 0;
}

size_t ULOFileStream::DoWrite(const void* data, size_t size) {
    return file_ ? std::fwrite(data, 1, size, file_) : 0;
}

bool ULOFileStream::DoSeek(uint64_t position) {
    if (!file_ || position > DoLength()) {
        return false;
    }
    return fseeko(file_, static_cast<off_t>(position), SEEK_SET) == 0;
}

uint64_t ULOFileStream::DoTell() const {
    const off_t position = file_ ? ftello(file_) : -1;
    return position < 0 ? 0 : static_cast<uint64_t>(position);
}

uint64_t ULOFileStream::DoLength() const {
    if (!file_) {
        return 0;
    }
    struct stat info;
    if (fstat(fileno(file_), &info) != 0 || info.st_size < 0) {
        return 0;
    }
    // Bytes not yet flushed always end at the current position: any seek flushes them.
    return std::max(static_cast<uint64_t>(info.st_size), DoTell());
}

// ---- Chunks ----------------------------------------------------------------------------------

ULOWriteChunk::ULOWriteChunk(ULOStream* stream, uint16_t id) : stream_(stream) {
    if (!stream_) {
        return;
    }
    if (stream_->WriteSwap(id)) {
        lengthPosition_ = stream_->GetPosition();
        ok_ = stream_->WriteSwap(uint32_t(0));
    }
}

ULOWriteChunk::~ULOWriteChunk() {
    Close();
}

bool ULOWriteChunk::Close() {
    if (!ok_ || closed_) {
        return false;
    }
    closed_ = true;
    const uint64_t end = stream_->GetPosition();
    const uint64_t payloadStart = lengthPosition_ + 4;
    if (end < payloadStart || end - payloadStart > UINT32_MAX) {
        return false;
    }
    return stream_->Seek(lengthPosition_) && stream_->WriteSwap(static_cast<uint32_t>(end - payloadStart)) &&
           stream_->Seek(end);
}

ULOReadChunk::ULOReadChunk(ULOStream* stream) : stream_(stream) {
    if (!stream_) {
        return;
    }
    savedLimit_ = stream_->readLimit_;
    uint16_t id = 0;
    uint32_t length = 0;
    if (!stream_->ReadSwap(id) || !stream_->ReadSwap(length)) {
        return;
    }
    id_ = id;
    length_ = length;
    // A chunk that claims more than its container holds ends with its container.
    const uint64_t start = stream_->GetPosition();
    end_ = std::min<uint64_t>(start + length, savedLimit_);
    stream_->readLimit_ = end_;
    ok_ = true;
}

ULOReadChunk::~ULOReadChunk() {
    if (!ok_) {
        return;
    }
    stream_->readLimit_ = savedLimit_;
    const uint64_t target = std::min(end_, stream_->DoLength());
    if (stream_->GetPosition() != target) {
        stream_->Seek(target);
    }
}
