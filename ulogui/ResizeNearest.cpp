// Nearest-neighbour resizing. The source offset of every destination column is computed once per call;
// a destination row whose source row is the same as the previous one is a copy of that row.
#include <cstdint>
#include <cstring>
#include <vector>

#include "ulogui/ResizeKernels.h"

namespace ulogui {
namespace detail {

namespace {

// One destination row of N-byte pixels, gathered from a source row.
template <int N>
struct GatherRow {
    static void Run(unsigned char* to, const unsigned char* from, const std::int32_t* offsets, int width) {
        for (int x = 0; x < width; ++x) {
            std::memcpy(to + static_cast<std::ptrdiff_t>(x) * N, from + offsets[x], N);
        }
    }
};

// 4-byte pixels four at a time: four independent loads, one wide store.
template <>
struct GatherRow<4> {
    static void Run(unsigned char* to, const unsigned char* from, const std::int32_t* offsets, int width) {
        int x = 0;
        for (; x + 4 <= width; x += 4) {
            std::uint32_t p[4];
            for (int k = 0; k < 4; ++k) {
                std::memcpy(&p[k], from + offsets[x + k], 4);
            }
            std::memcpy(to + static_cast<std::ptrdiff_t>(x) * 4, p, sizeof p);
        }
        for (; x < width; ++x) {
            std::memcpy(to + static_cast<std::ptrdiff_t>(x) * 4, from + offsets[x], 4);
        }
    }
};

void Prefetch(const unsigned char* p, std::ptrdiff_t bytes) {
    for (std::ptrdiff_t i = 0; i < bytes; i += 64) {
        __builtin_prefetch(p + i);
    }
}

template <int N>
void NearestRows(const BlockView& source, const NewBlock& target, const std::vector<std::int32_t>& offsets) {
    const std::size_t rowBytes = static_cast<std::size_t>(target.width) * N;
    const std::size_t padding = static_cast<std::size_t>(target.lineWidth) - rowBytes;
    const unsigned char* previousSource = nullptr;
    const unsigned char* previousRow = nullptr;
    // Destination picture rows from the bottom (the first row in memory) upwards.
    for (int y = target.height - 1; y >= 0; --y) {
        const std::int64_t sourceY = static_cast<std::int64_t>(source.height) * y / target.height;
        const unsigned char* from = source.bits + source.OffsetOf(0, sourceY);
        unsigned char* to = target.bits + static_cast<std::ptrdiff_t>(target.height - 1 - y) * target.lineWidth;
        if (from == previousSource) {
            std::memcpy(to, previousRow, rowBytes);
        } else {
            if (y > 0) {
                // The next source row starts on another page, where the processor's own prefetching
                // would start late; ask for it while this row is gathered.
                const std::int64_t nextY = static_cast<std::int64_t>(source.height) * (y - 1) / target.height;
                Prefetch(source.bits + source.OffsetOf(0, nextY), source.width * N);
            }
            GatherRow<N>::Run(to, from, offsets.data(), target.width);
        }
        // The block was not cleared: the row padding is.
        std::memset(to + rowBytes, 0, padding);
        previousSource = from;
        previousRow = to;
    }
}

}  // namespace

void ResizeNearest(const BlockView& source, const NewBlock& target) {
    // A picture without pixels leaves the (then cleared) block as it is.
    if (!source.CoversPicture() || target.bits == nullptr) {
        return;
    }
    // Byte offsets within a source row, which is shorter than 2 GB since its stride is an int.
    std::vector<std::int32_t> offsets(static_cast<std::size_t>(target.width));
    for (int x = 0; x < target.width; ++x) {
        offsets[x] = static_cast<std::int32_t>(static_cast<std::int64_t>(x) * source.width / target.width *
                                               source.bytesPerPixel);
    }
    switch (source.bytesPerPixel) {
        case 1:
            NearestRows<1>(source, target, offsets);
            break;
        case 3:
            NearestRows<3>(source, target, offsets);
            break;
        default:
            NearestRows<4>(source, target, offsets);
            break;
    }
}

}  // namespace detail
}  // namespace ulogui
