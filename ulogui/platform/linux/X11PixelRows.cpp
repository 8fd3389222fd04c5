// Band writes with streaming stores where the processor has them (SSE2 is part of every x86-64).
#include "platform/linux/X11PixelRows.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace ulogui {
namespace platform {
namespace x11 {

namespace {

void WritePixels(const unsigned char* from, unsigned char* to, size_t count, uint32_t opaqueBits) {
    for (size_t i = 0; i < count * 4; i += 4) {
        uint32_t pixel;
        std::memcpy(&pixel, from + i, 4);
        pixel |= opaqueBits;
        std::memcpy(to + i, &pixel, 4);
    }
}

#if defined(__SSE2__)
void StreamRow(const unsigned char* from, unsigned char* to, size_t count, uint32_t opaqueBits) {
    // Pixels up to the first 16-byte boundary of the target one by one, then four at a time.
    const size_t head = std::min(count, ((16 - reinterpret_cast<uintptr_t>(to) % 16) % 16) / 4);
    WritePixels(from, to, head, opaqueBits);
    const __m128i opaque = _mm_set1_epi32(static_cast<int>(opaqueBits));
    size_t i = head;
    for (; i + 4 <= count; i += 4) {
        const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i * 4));
        _mm_stream_si128(reinterpret_cast<__m128i*>(to + i * 4), _mm_or_si128(pixels, opaque));
    }
    WritePixels(from + i * 4, to + i * 4, count - i, opaqueBits);
}
#endif

}  // namespace

void WriteBand(const DeviceCopy& copy, int column, int row, int columns, int rows, uint32_t opaqueBits,
               bool streaming, unsigned char* target) {
    const size_t rowBytes = static_cast<size_t>(columns) * 4;
    for (int k = 0; k < rows; ++k) {
        const unsigned char* from = copy.Row(row + k) + static_cast<size_t>(column) * 4;
        unsigned char* to = target + rowBytes * static_cast<size_t>(k);
#if defined(__SSE2__)
        if (streaming) {
            StreamRow(from, to, static_cast<size_t>(columns), opaqueBits);
            continue;
        }
#endif
        if (opaqueBits == 0) {
            std::memcpy(to, from, rowBytes);
        } else {
            WritePixels(from, to, static_cast<size_t>(columns), opaqueBits);
        }
    }
#if defined(__SSE2__)
    // Streaming stores are not ordered with the request that tells the server to read them.
    if (streaming) {
        _mm_sfence();
    }
#else
    (void)streaming;
#endif
}

}  // namespace x11
}  // namespace platform
}  // namespace ulogui
