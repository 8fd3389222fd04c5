// Nearest-neighbour resizing. The column of every destination pixel is computed once per call; a
// destination row whose source row is the same as the previous one is a copy of that row.
#include <cstdint>
#include <cstring>
#include <vector>

#include "ulogui/ResizeKernels.h"

namespace ulogui {
namespace detail {

namespace {

// Moves one pixel of N bytes.
template <int N>
struct PixelMove {
    static void Run(unsigned char* to, const unsigned char* from) { std::memcpy(to, from, N); }
};

template <int N>
void NearestRows(const BlockView& source, const NewBlock& target,
                 const std::vector<std::ptrdiff_t>& offsets) {
    const std::size_t rowBytes = static_cast<std::size_t>(target.width) * N;
    const unsigned char* previousSource = nullptr;
    const unsigned char* previousRow = nullptr;
    // Destination picture rows from the bottom (the first row in memory) upwards.
    for (int y = target.height - 1; y >= 0; --y) {
        const std::int64_t sourceY = static_cast<std::int64_t>(source.height) * y / target.height;
        const unsigned char* from = source.bits + source.OffsetOf(0, sourceY);
        unsigned char* to =
            target.bits + static_cast<std::ptrdiff_t>(target.height - 1 - y) * target.lineWidth;
        if (from == previousSource) {
            std::memcpy(to, previousRow, rowBytes);
        } else {
            for (int x = 0; x < target.width; ++x) {
                PixelMove<N>::Run(to + static_cast<std::ptrdiff_t>(x) * N, from + offsets[x]);
            }
        }
        previousSource = from;
        previousRow = to;
    }
}

}  // namespace

void ResizeNearest(const BlockView& source, const NewBlock& target) {
    // A picture without pixels leaves the cleared block as it is.
    if (!source.CoversPicture() || target.bits == nullptr) {
        return;
    }
    std::vector<std::ptrdiff_t> offsets(static_cast<std::size_t>(target.width));
    for (int x = 0; x < target.width; ++x) {
        offsets[x] = static_cast<std::ptrdiff_t>(static_cast<std::int64_t>(x) * source.width / target.width) *
                     source.bytesPerPixel;
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
