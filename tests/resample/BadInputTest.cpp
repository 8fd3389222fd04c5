// Sizes of 0 or less, rectangles outside the picture, allocations that cannot succeed and buffers that
// are not fit for pixel work: every operation either leaves the buffer as it was or empties it, and
// never touches memory outside its blocks (which the sanitizer build checks).
#include <new>

#include "ResampleTestUtil.h"

#if defined(__SANITIZE_ADDRESS__)
// An impossible allocation must come back as a failure here, not end the process.
extern "C" __attribute__((visibility("default"), used)) const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
#endif

namespace {

using namespace resample_test;

TEST(BadInputTest, NegativeSizesChangeNothing) {
    TestBits b(ULOSize(3, 3), PICTBITS_ALPHA);
    Paint(b, Distinct);
    const std::vector<std::uint8_t> before = Block(b);
    const unsigned char* block = b.GetBits();
    b.Resize(-1, 3, ULOPictureBits::eResizeBox);
    b.Resize(3, -5, ULOPictureBits::eResizeNearest);
    b.ResizeLazy(-2, -2);
    b.HEnlarge(-4, 1);
    b.Crop(-1, 2, ULOPictureBits::eCropCenter);
    b.ResizeToWidth(-10, ULOPictureBits::eResizeBox);
    b.Crop(ULORect(2, 2, 1, 1));
    EXPECT_EQ(std::make_tuple(b.GetBits(), Block(b)), std::make_tuple(block, before));
}

TEST(BadInputTest, ZeroSizesLeaveAnEmptyBuffer) {
    for (int flags : kFormats) {
        TestBits b(ULOSize(3, 3), flags);
        b.Resize(0, 4, ULOPictureBits::eResizeBox);
        EXPECT_EQ(std::make_tuple(b.GetBits(), b.GetSize(false), b.GetLineWidth(false)),
                  std::make_tuple(nullptr, ULOSize(0, 4), 0));
        // Everything on an empty buffer is harmless.
        b.Resize(5, 5, ULOPictureBits::eResizeNearest);
        EXPECT_EQ(Pixels(b), std::vector<std::uint8_t>(25 * b.GetBytesPerPixel(), 0));
        b.HEnlarge(0, 0);
        EXPECT_EQ(std::make_tuple(b.GetBits(), b.GetSize(false)), std::make_tuple(nullptr, ULOSize(0, 5)));
        b.VEnlarge(3, 7);
        b.VEnlarge(7, 7);
        b.Rotate(33);
        b.Rotate90(90);
        b.ResizeToHeight(4, ULOPictureBits::eResizeBox);
        b.Crop(2, 2, ULOPictureBits::eCropBottomRight);
        EXPECT_EQ(Pixels(b), std::vector<std::uint8_t>(4 * b.GetBytesPerPixel(), 0));
    }
}

TEST(BadInputTest, ImpossibleAllocationsThrowAndChangeNothing) {
    // Wide enough that every request below needs far more memory than an address space holds.
    TestBits b(ULOSize(1 << 16, 1), PICTBITS_ALPHA);
    Paint(b, Distinct);
    const std::vector<std::uint8_t> before = Block(b);
    // A stride beyond 32-bit arithmetic, and blocks beyond any memory.
    EXPECT_THROW(b.Resize(INT_MAX, 1, ULOPictureBits::eResizeNearest), std::bad_alloc);
    EXPECT_THROW(b.HResize(INT_MAX), std::bad_alloc);
    EXPECT_THROW(b.Resize(1 << 28, 1 << 20, ULOPictureBits::eResizeBox), std::bad_alloc);
    EXPECT_THROW(b.VEnlarge(INT_MAX, 0), std::bad_alloc);
    EXPECT_THROW(b.ResizeLazy(1 << 28, 1 << 28), std::bad_alloc);
    EXPECT_EQ(std::make_tuple(b.GetSize(false), Block(b)), std::make_tuple(ULOSize(1 << 16, 1), before));
}

TEST(BadInputTest, RectanglesFarOutsideReadNothing) {
    for (int flags : kFormats) {
        TestBits b(ULOSize(4, 4), flags);
        Paint(b, Distinct);
        b.Crop(ULORect(INT_MIN / 2, 1000000, INT_MIN / 2 + 3, 1000002));
        EXPECT_EQ(b.GetSize(false), ULOSize(3, 2));
        EXPECT_EQ(Pixels(b), std::vector<std::uint8_t>(6 * b.GetBytesPerPixel(), 0));

        TestBits c(ULOSize(4, 4), flags);
        Paint(c, Distinct);
        c.Resize(3, 3, ULORect(-100, -7, 900, 60), ULOPictureBits::eResizeBox);
        c.Resize(5, 2, ULORect(INT_MIN, INT_MIN, INT_MAX, INT_MAX), ULOPictureBits::eResizeBox);
        c.Resize(2, 2, ULORect(3, 3, 100000, 100000), ULOPictureBits::eResizeCopy);
        EXPECT_EQ(c.GetSize(false), ULOSize(2, 2));

        TestBits d(ULOSize(4, 4), flags);
        d.HEnlarge(9, 1000);  // the repeated column lies past the block
        d.VEnlarge(9, 1000);
        d.HEnlarge(2, INT_MAX);
        EXPECT_EQ(d.GetSize(false), ULOSize(2, 9));
    }
}

TEST(BadInputTest, BuffersUnfitForPixelWorkAreLeftAlone) {
    // A view with a stride too short for its rows, and one without memory.
    unsigned char memory[16] = {};
    TestBits shortRows(memory, 4, 4, 4, PICTBITS_ALPHA);
    shortRows.Resize(2, 2, ULOPictureBits::eResizeBox);
    shortRows.Rotate(45);
    shortRows.HEnlarge(8, 1);
    EXPECT_EQ(shortRows.GetBits(), memory);
    TestBits noMemory(nullptr, 4, 4, 16, PICTBITS_ALPHA);
    noMemory.Resize(2, 2, ULOPictureBits::eResizeNearest);
    noMemory.VEnlarge(8, 1);
    noMemory.Rotate90(180);
    EXPECT_EQ(noMemory.GetBits(), nullptr);

    TestBits target(ULOSize(4, 4), PICTBITS_ALPHA);
    shortRows.EnlargeSmooth(target, nullptr);
    noMemory.EnlargeSmooth(target, nullptr);
    target.EnlargeSmooth(noMemory, nullptr);
}

TEST(BadInputTest, EnlargeSmoothRefusesWhatItCannotScale) {
    TestBits src(ULOSize(8, 8), PICTBITS_ALPHA);
    Paint(src, Distinct);
    TestBits mask(ULOSize(4, 4), PICTBITS_MASK8);
    Paint(mask, [](int, int, int) { return 5; });
    src.EnlargeSmooth(mask, nullptr);  // formats differ
    EXPECT_EQ(Pixels(mask), std::vector<std::uint8_t>(16, 5));

    TestBits target(ULOSize(4, 4), PICTBITS_ALPHA);
    Paint(target, [](int, int, int) { return 5; });
    const ULORect empty(3, 3, 3, 9);
    const ULORect inverted(9, 9, 3, 3);
    src.EnlargeSmooth(target, &empty);
    src.EnlargeSmooth(target, &inverted);
    EXPECT_EQ(Pixels(target), std::vector<std::uint8_t>(64, 5));

    const std::vector<std::uint8_t> before = Block(src);
    src.EnlargeSmooth(src, nullptr);  // into itself
    TestBits view(src.GetBits() + 32, 4, 4, 32, PICTBITS_ALPHA);
    src.EnlargeSmooth(view, nullptr);  // into its own memory
    EXPECT_EQ(Block(src), before);

    const TestBits nothing;
    nothing.EnlargeSmooth(target, nullptr);
    EXPECT_EQ(Pixels(target), std::vector<std::uint8_t>(64, 5));
}

TEST(BadInputTest, BlendingBlocksOfDifferentSizesTouchesOnlyTheCommonBytes) {
    TestBits big(ULOSize(4, 4), PICTBITS_ALPHA);
    Paint(big, [](int, int, int) { return 100; });
    TestBits small(ULOSize(1, 1), PICTBITS_ALPHA);
    Paint(small, [](int, int, int) { return 200; });
    small.BlendWithPicture(&big, 0.5f);
    EXPECT_EQ(Pixel(small, 0, 0), std::vector<std::uint8_t>(4, 150));
    big.BlendWithPicture(&small, 0.999f);
    EXPECT_EQ(std::make_tuple(big.GetBits()[0], big.GetBits()[4]), std::make_tuple(150, 100));
}

}  // namespace
