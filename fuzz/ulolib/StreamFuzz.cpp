// Feeds arbitrary bytes to the chunked stream reader and the text decoders: nested chunks with
// lying lengths, arrays with wild counts, malformed UTF-8 and UTF-16.
#include <cstdint>
#include <cstring>
#include <vector>

#include "ulolib/Stream.h"
#include "ulolib/String.h"

namespace {

// Walks the stream as a tree of chunks whose payloads hold a few typed fields and an array.
void WalkChunks(ULOStream& stream, int depth) {
    while (stream.GetRemaining() > 0) {
        ULOReadChunk chunk(&stream);
        if (!chunk.IsOk()) {
            return;
        }
        int32_t value = 0;
        uint8_t byte = 0;
        uint16_t swapped = 0;
        stream.ReadSInt32(value);
        stream.ReadByte(byte);
        stream.ReadSwap(swapped);
        std::vector<uint8_t> elements(static_cast<size_t>(byte) * 4);
        int32_t got = 0;
        stream.ReadArray(elements.data(), static_cast<int32_t>(byte), 4, &got);
        if (got < 0 || got > byte) {
            __builtin_trap();
        }
        if (depth < 8 && (chunk.GetID() & 1)) {
            WalkChunks(stream, depth + 1);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ULOMemoryStream stream(data, size);
    WalkChunks(stream, 0);
    if (stream.GetPosition() > size) {
        __builtin_trap();
    }

    std::string utf8(reinterpret_cast<const char*>(data), size);
    ULOString fromUtf8 = ULOString::FromUtf8(utf8);
    if (ULOString::FromUtf8(fromUtf8.ToUtf8()) != fromUtf8) {
        __builtin_trap();  // whatever was decoded must survive a round trip
    }
    std::vector<uint16_t> units(size / 2);
    if (!units.empty()) {
        std::memcpy(units.data(), data, units.size() * 2);
    }
    ULOString fromUtf16 = ULOString::FromUtf16(units.data(), units.size());
    if (ULOString::FromUtf16(fromUtf16.ToUtf16()) != fromUtf16) {
        __builtin_trap();
    }
    return 0;
}
