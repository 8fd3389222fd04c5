// Resize, Crop, the stretching operations, ClipRectToPictureSize, rotation, transformations, blending and
// EnlargeSmooth on golden blocks and images, every vector kernel against the scalar path; bad input
// either leaves the buffer as it was or empties it, and never touches memory outside its blocks.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "base/CpuFeatures.h"
#include "golden/Golden.h"
#include "resample/SmoothScaler.h"
#include "ulogui/PictureBits.h"

// An impossible allocation must come back as a failure here, not end the process.
#if defined(__SANITIZE_ADDRESS__)
extern "C" __attribute__((visibility("default"), used)) const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
#endif
#if defined(__SANITIZE_THREAD__)
extern "C" __attribute__((visibility("default"), used)) const char* __tsan_default_options() {
    return "allocator_may_return_null=1";
}
#endif

namespace {

// The three pixel formats; the 32-bit one with its alpha flag set.
constexpr int kFormats[] = {PICTBITS_MASK8, PICTBITS_RGB24, PICTBITS_ALPHA};

// Exposes what the tests check about ownership and strides.
class TestBits : public ULOPictureBits {
public:
    using ULOPictureBits::ULOPictureBits;
    bool OwnsBits() const { return ownsBits; }
};

using PixelFunction = std::function<std::uint8_t(int x, int y, int channel)>;

void Paint(ULOPictureBits& b, const PixelFunction& f) {
    for (int y = 0; y < b.GetHeight(false); ++y) {
        for (int x = 0; x < b.GetWidth(false); ++x) {
            for (int c = 0; c < b.GetBytesPerPixel(); ++c) {
                b.GetBits(x, y)[c] = f(x, y, c);
            }
        }
    }
}

// Every byte of the block, padding included.
void PaintRandom(ULOPictureBits& b, std::mt19937& random) {
    for (int i = 0; i < b.GetLineWidth(false) * b.GetHeight(false); ++i) {
        b.GetBits()[i] = static_cast<std::uint8_t>(random());
    }
}

// The pixels of the picture (no padding), row by row from the top.
std::vector<std::uint8_t> Pixels(const ULOPictureBits& b) {
    std::vector<std::uint8_t> all;
    for (int y = 0; y < b.GetHeight(false); ++y) {
        const std::uint8_t* p = b.GetBits(0, y);
        all.insert(all.end(), p, p + b.GetWidth(false) * b.GetBytesPerPixel());
    }
    return all;
}

std::vector<std::uint8_t> Block(const ULOPictureBits& b) {
    const std::uint8_t* p = b.GetBits();
    return std::vector<std::uint8_t>(p, p + b.GetLineWidth(false) * b.GetHeight(false));
}

// A byte that differs between neighbouring pixels and channels, so that a pixel taken from the wrong
// place shows.
std::uint8_t Distinct(int x, int y, int c) {
    return static_cast<std::uint8_t>(x * 37 + y * 101 + c * 53 + 7);
}

// The pixels as a golden image; a large one as its 64-bit FNV-1a digest (an 8-byte image).
golden::Image Picture(const std::string& name, const ULOPictureBits& b) {
    return {name, b.GetWidth(false), b.GetHeight(false), b.GetBytesPerPixel(), Pixels(b)};
}
golden::Image Digest(const std::string& name, const ULOPictureBits& b) {
    std::uint64_t h = 14695981039346656037ull;
    for (const std::uint8_t v : Pixels(b)) {
        h = (h ^ v) * 1099511628211ull;
    }
    golden::Image image{name + " digest", 8, 1, 1, {}};
    for (int i = 0; i < 8; ++i) {
        image.bytes.push_back(static_cast<std::uint8_t>(h >> (8 * i)));
    }
    return image;
}

// An operation on a fresh w x h buffer of Distinct pixels, kept as its pixels (or its whole block, padding
// included, when the padding is known) with the size it leaves in the row's name.
struct Operation {
    std::string name;
    int w, h, flags;
    std::function<void(TestBits&)> run;
    bool wholeBlock = false;
};

void ExpectOperations(const std::string& family, const std::vector<Operation>& operations) {
    std::vector<golden::Image> images;
    for (const Operation& o : operations) {
        TestBits b(ULOSize(o.w, o.h), o.flags);
        Paint(b, Distinct);
        o.run(b);
        const std::string size = std::to_string(b.GetWidth(false)) + "x" + std::to_string(b.GetHeight(false));
        const int rowBytes = o.wholeBlock ? b.GetLineWidth(false) : b.GetWidth(false) * b.GetBytesPerPixel();
        images.push_back({o.name + " flags " + std::to_string(o.flags) + " -> " + size, rowBytes,
                          b.GetHeight(false), 1, o.wholeBlock ? Block(b) : Pixels(b)});
    }
    golden::ExpectMatches(family, images);
}

using B = ULOPictureBits;

// The copy takes the rectangle and clears the rest (rows 2 and 3 of the rectangle land in the bottom two
// rows; the top row and column 2 stay cleared). The box averages blocks and truncates; its origin is in
// output units (4 -> 2 columns over the right half: one output column, origin 2 / 2 = 1, so it averages
// source columns 1 and 2, and the second column is not written). ResizeToWidth and ResizeToHeight keep
// the aspect: (5 + 0.9) * 4 / 10 = 2.36, (10 + 0.9) * 3 / 5 = 6.54. Enlarge stretches only a side that is
// smaller.
TEST(ResizeTest, OperationsBoxAndNearestMatchTheirGoldenBlocks) {
    std::vector<Operation> operations;
    for (const int flags : kFormats) {
        operations.push_back({"copy", 4, 4, flags, [](TestBits& b) {
                                  b.Resize(3, 3, {1, 2, 3, 4}, B::eResizeCopy);
                              }});
        operations.push_back(
            {"box halving", 4, 2, flags, [](TestBits& b) { b.Resize(2, 1, B::eResizeBox); }});
        operations.push_back({"box origin", 4, 1, flags, [](TestBits& b) {
                                  b.Resize(2, 1, {2, 0, 4, 1}, B::eResizeBox);
                              }});
    }
    operations.push_back(
        {"to width", 10, 5, PICTBITS_ALPHA, [](TestBits& b) { b.ResizeToWidth(4, B::eResizeNearest); }});
    operations.push_back(
        {"to height", 10, 5, PICTBITS_ALPHA, [](TestBits& b) { b.ResizeToHeight(3, B::eResizeBox); }});
    operations.push_back({"enlarge", 4, 4, PICTBITS_MASK8, [](TestBits& b) {
                              b.Enlarge(ULORect(10, 10, 16, 13), ULOPoint(-1, -1));  // 6 x 3: wider only
                              b.Enlarge(ULORect(0, 0, 2, 7), ULOPoint(0, 0));        // 2 x 7: taller only
                          }});
    ExpectOperations("resample/resize", operations);
    // Random sizes and rectangles inside the picture, kept as golden images: the box method's taken when it
    // matched a literal transcription of its per-pixel description in single precision bit for bit; the
    // nearest method's (whole blocks: the rows' padding is cleared) when row y took source row h * y / nh and
    // column x source column x * w / nw, the rectangle ignored (its first rounds turn every pixel into a 2 x
    // 2 block).
    for (const B::EResizeMethod method : {B::eResizeBox, B::eResizeNearest}) {
        const bool box = method == B::eResizeBox;
        std::mt19937 random(box ? 7 : 17);
        std::vector<golden::Image> images;
        for (int round = 0; round < 60; ++round) {
            const int flags = kFormats[round % 3];
            int w = 1 + static_cast<int>(random() % 23), h = 1 + static_cast<int>(random() % 23);
            int nw = 1 + static_cast<int>(random() % 31), nh = 1 + static_cast<int>(random() % 31);
            if (!box && round < 3) {
                w = h = 2, nw = nh = 4;
            }
            if (nw == w && nh == h) {
                continue;
            }
            TestBits b(ULOSize(w, h), flags);
            PaintRandom(b, random);
            ULORect s(0, 0, w, h);
            if (round % 2 == 1) {
                s.left = static_cast<int>(random() % w);
                s.top = static_cast<int>(random() % h);
                s.right = s.left + 1 + static_cast<int>(random() % (w - s.left));
                s.bottom = s.top + 1 + static_cast<int>(random() % (h - s.top));
            }
            b.Resize(nw, nh, s, method);
            const std::string name = std::to_string(round) + ": " + std::to_string(w) + "x" +
                                     std::to_string(h) + " flags " + std::to_string(flags);
            images.push_back(box ? Picture(name, b)
                                 : golden::Image{name, b.GetLineWidth(false), nh, 1, Block(b)});
        }
        golden::ExpectMatches(box ? "resample/box" : "resample/nearest", images);
    }
}

// Operations that keep the size keep the block and its bytes, whatever the method or source rectangle;
// ResizeLazy replaces the block only for a new size. A view gets a block of its own; the owner's block
// is neither freed (the sanitizer build would report the owner's second free) nor changed.
TEST(ResizeTest, OnlyANewSizeReplacesTheBlockAViewGetsItsOwnAndClipRectCaps) {
    TestBits b(ULOSize(3, 2), PICTBITS_RGB24);
    Paint(b, Distinct);
    const std::vector<std::uint8_t> before = Block(b);
    const unsigned char* block = b.GetBits();
    for (int method = 0; method < 4; ++method) {
        b.Resize(3, 2, ULORect(1, 0, 2, 1), static_cast<B::EResizeMethod>(method));
    }
    b.VEnlarge(2, 0);
    b.VEnlarge(1, 0);
    b.ResizeLazy(3, 2);
    EXPECT_EQ(b.GetBits(), block);
    EXPECT_EQ(Block(b), before);
    TestBits view(b.GetBits(), 3, 2, 12, PICTBITS_RGB24);
    view.Resize(4, 4, B::eResizeNearest);
    EXPECT_TRUE(view.OwnsBits());
    EXPECT_NE(view.GetBits(), b.GetBits());
    EXPECT_EQ(Block(b), before);
    b.ResizeLazy(5, 2);
    EXPECT_EQ(std::make_tuple(b.GetSize(false), b.GetLineWidth(false)), std::make_tuple(ULOSize(5, 2), 16));
    // ClipRectToPictureSize: flag 1 caps the width, 2 the height, keeping left and top.
    const TestBits capped(ULOSize(5, 4), PICTBITS_ALPHA);
    ULORect r(2, 3, 20, 30), small(1, 1, 3, 2);
    capped.ClipRectToPictureSize(&r, 1);
    EXPECT_EQ(r, ULORect(2, 3, 7, 30));
    capped.ClipRectToPictureSize(&r, 2);
    capped.ClipRectToPictureSize(&small, 3);
    capped.ClipRectToPictureSize(nullptr, 3);
    EXPECT_EQ(std::make_tuple(r, small), std::make_tuple(ULORect(2, 3, 7, 7), ULORect(1, 1, 3, 2)));
}

// Crop at its nine anchors and unknown ones (10 x 8 cut to 4 x 3; anchor 2 takes the width difference as
// its top edge, so its last row lies below the picture and stays cleared), by a rectangle, and past the
// picture (the block read as it lies, what is outside it cleared); HEnlarge repeating and dropping
// columns around the split; VEnlarge repeating a memory row and never shrinking; HResize centring rows
// between transparent padding (a mask's rows copied with their own padding, not realigned). Rectangles far
// outside read nothing (what they cover is cleared), and columns and rows repeated from past the block are
// not read.
TEST(CropStretchRotateTest, OperationsMatchTheirGoldenBlocks) {
    std::vector<Operation> operations;
    for (const int flags : kFormats) {
        for (const int anchor : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, -3}) {
            operations.push_back({"crop at " + std::to_string(anchor), 10, 8, flags, [anchor](TestBits& b) {
                                      b.Crop(4, 3, static_cast<ULOPictureBits::ECropPosition>(anchor));
                                  }});
        }
        operations.push_back(
            {"crop to a rectangle", 10, 8, flags, [](TestBits& b) { b.Crop(ULORect(3, 2, 7, 5)); }});
        operations.push_back({"HEnlarge 7 at 1", 4, 2, flags, [](TestBits& b) { b.HEnlarge(7, 1); }});
        operations.push_back({"HEnlarge 2 at -1", 4, 2, flags, [](TestBits& b) { b.HEnlarge(2, -1); }});
        operations.push_back({"VEnlarge", 2, 3, flags, [](TestBits& b) {
                                  b.VEnlarge(3, 0);
                                  b.VEnlarge(2, 0);
                                  b.VEnlarge(5, 1);
                              }});
        operations.push_back({"crop far outside", 4, 4, flags, [](TestBits& b) {
                                  b.Crop(ULORect(INT_MIN / 2, 1000000, INT_MIN / 2 + 3, 1000002));
                              }});
        operations.push_back({"resize from far rectangles", 4, 4, flags, [](TestBits& b) {
                                  b.Resize(3, 3, ULORect(-100, -7, 900, 60), B::eResizeBox);
                                  b.Resize(5, 2, ULORect(INT_MIN, INT_MIN, INT_MAX, INT_MAX), B::eResizeBox);
                                  b.Resize(2, 2, ULORect(3, 3, 100000, 100000), B::eResizeCopy);
                              }});
        operations.push_back({"repeats past the block", 4, 4, flags, [](TestBits& b) {
                                  b.HEnlarge(9, 1000);
                                  b.VEnlarge(9, 1000);
                                  b.HEnlarge(2, INT_MAX);
                              }});
    }
    operations.push_back({"HResize", 2, 2, PICTBITS_ALPHA, [](TestBits& b) {
                              b.HResize(5);
                              b.HResize(3);
                          }});
    operations.push_back({"crop past the picture", 10, 10, PICTBITS_ALPHA,
                          [](TestBits& b) { b.Crop(12, 12, ULOPictureBits::eCropCenter); }});
    operations.push_back({"HResize of a one-pixel mask", 1, 2, PICTBITS_MASK8,
                          [](TestBits& b) {
                              const std::uint8_t rows[8] = {
                                  2, 0x77, 0, 0, 1, 0x77, 0, 0};  // bottom row first, padding marked
                              std::memcpy(b.GetBits(), rows, sizeof rows);
                              b.HResize(3);
                          },
                          true});
    ExpectOperations("resample/crop-stretch", operations);
    // Exact quarter turns of square buffers (in memory coordinates, whose rows run bottom-up), in place;
    // angles that are not exact quarters leave them alone (89.5 is within 0.01 quarter of 90, so Rotate hands
    // it to Rotate90, which does not turn it); transformations rotate only for positive angles, then mirror;
    // a turn of a buffer that is not square takes the general path, which fills what falls outside with
    // white transparency and composes alpha pixels over the scratch's 255 alpha ((255 - As) * source /
    // (As + 255)); blending mixes every byte, padding included, with a weight out of 256 (0.9959 gives 254,
    // 0.996 256, a copy of the other picture).
    operations.clear();
    for (const int flags : kFormats) {
        operations.push_back({"Rotate 90", 3, 3, flags, [](TestBits& b) {
                                  const unsigned char* block = b.GetBits();
                                  b.Rotate(90.0f);
                                  EXPECT_EQ(b.GetBits(), block);
                              }});
        for (const float degrees : {180.0f, 270.0f, 0.0f, 89.5f, 45.0f, -90.0f, 360.0f}) {
            operations.push_back({"Rotate90 " + std::to_string(degrees), 3, 3, flags,
                                  [degrees](TestBits& b) { b.Rotate90(degrees); }});
        }
    }
    operations.push_back({"Rotate 89.5", 3, 3, PICTBITS_RGB24, [](TestBits& b) { b.Rotate(89.5f); }});
    for (const int flags : {PICTBITS_RGB24, PICTBITS_ALPHA}) {
        operations.push_back({"Rotate 90, general path", 4, 2, flags, [](TestBits& b) { b.Rotate(90); }});
    }
    const auto transform = [](float rotation, bool horizontally, bool vertically) {
        return [=](TestBits& b) {
            ULOPictureTransform t;
            t.rotation = rotation;
            t.mirrorHorizontally = horizontally;
            t.mirrorVertically = vertically;
            b.ApplyTransformation(t);
        };
    };
    operations.push_back({"no transformation", 2, 2, PICTBITS_ALPHA, transform(0, false, false)});
    operations.push_back({"-90 and mirrored", 2, 2, PICTBITS_ALPHA, transform(-90, true, false)});
    operations.push_back({"180 and upside down", 2, 2, PICTBITS_ALPHA, transform(180, false, true)});
    operations.push_back({"blends", 2, 1, PICTBITS_RGB24, [](TestBits& own) {
                              TestBits other(ULOSize(2, 1), PICTBITS_RGB24);
                              for (int i = 0; i < 8; ++i) {
                                  other.GetBits()[i] = static_cast<std::uint8_t>(200 + i);
                              }
                              for (const float w : {0.5f, 0.0f, -1.0f, std::nanf(""), 0.9959f}) {
                                  own.BlendWithPicture(&other, w);
                              }
                              own.BlendWithPicture(nullptr, 0.5f);
                          }});
    operations.push_back({"blend 0.996", 2, 1, PICTBITS_RGB24, [](TestBits& own) {
                              TestBits other(ULOSize(2, 1), PICTBITS_RGB24);
                              Paint(other, [](int x, int y, int c) { return Distinct(x + 5, y, c); });
                              own.BlendWithPicture(&other, 0.996f);
                          }});
    // EnlargeSmooth's rectangle gives the size only: output (x, y) goes to target (x, y); an output larger
    // than the target is cut at the target's edge.
    for (const ULORect rect : {ULORect(10, 10, 13, 13), ULORect(0, 0, 9, 9)}) {
        operations.push_back({"EnlargeSmooth into " + std::to_string(rect.Width()), 5, 5, PICTBITS_MASK8,
                              [rect](TestBits& target) {
                                  TestBits src(ULOSize(6, 6), PICTBITS_MASK8);
                                  Paint(src, [](int, int, int) { return 77; });
                                  src.EnlargeSmooth(target, &rect);
                              }});
    }
    ExpectOperations("resample/rotate-blend", operations);
}

// Negative sizes change nothing; zero sizes leave an empty buffer, on which everything is harmless.
TEST(BadInputTest, EveryOperationAndEnlargeSmoothLeaveTheBufferAsItWasOrEmptyIt) {
    TestBits negative(ULOSize(3, 3), PICTBITS_ALPHA);
    Paint(negative, Distinct);
    const std::vector<std::uint8_t> before = Block(negative);
    const unsigned char* block = negative.GetBits();
    negative.Resize(-1, 3, B::eResizeBox);
    negative.Resize(3, -5, B::eResizeNearest);
    negative.ResizeLazy(-2, -2);
    negative.HEnlarge(-4, 1);
    negative.Crop(-1, 2, B::eCropCenter);
    negative.ResizeToWidth(-10, B::eResizeBox);
    negative.Crop(ULORect(2, 2, 1, 1));
    EXPECT_EQ(std::make_tuple(negative.GetBits(), Block(negative)), std::make_tuple(block, before));
    for (int flags : kFormats) {
        TestBits b(ULOSize(3, 3), flags);
        b.Resize(0, 4, B::eResizeBox);
        EXPECT_EQ(std::make_tuple(b.GetBits(), b.GetSize(false), b.GetLineWidth(false)),
                  std::make_tuple(nullptr, ULOSize(0, 4), 0));
        b.Resize(5, 5, B::eResizeNearest);
        EXPECT_EQ(Pixels(b), std::vector<std::uint8_t>(25 * b.GetBytesPerPixel(), 0));
        b.HEnlarge(0, 0);
        EXPECT_EQ(std::make_tuple(b.GetBits(), b.GetSize(false)), std::make_tuple(nullptr, ULOSize(0, 5)));
        b.VEnlarge(3, 7);
        b.VEnlarge(7, 7);
        b.Rotate(33);
        b.Rotate90(90);
        b.ResizeToHeight(4, B::eResizeBox);
        b.Crop(2, 2, B::eCropBottomRight);
        EXPECT_EQ(Pixels(b), std::vector<std::uint8_t>(4 * b.GetBytesPerPixel(), 0));
    }
    // Impossible allocations throw and change nothing.
    // Wide enough that every request below needs far more memory than an address space holds.
    TestBits wide(ULOSize(1 << 16, 1), PICTBITS_ALPHA);
    Paint(wide, Distinct);
    const std::vector<std::uint8_t> wideBefore = Block(wide);
    // A stride beyond 32-bit arithmetic, and blocks beyond any memory.
    EXPECT_THROW(wide.Resize(INT_MAX, 1, B::eResizeNearest), std::bad_alloc);
    EXPECT_THROW(wide.HResize(INT_MAX), std::bad_alloc);
    EXPECT_THROW(wide.Resize(1 << 28, 1 << 20, B::eResizeBox), std::bad_alloc);
    EXPECT_THROW(wide.VEnlarge(INT_MAX, 0), std::bad_alloc);
    EXPECT_THROW(wide.ResizeLazy(1 << 28, 1 << 28), std::bad_alloc);
    EXPECT_EQ(std::make_tuple(wide.GetSize(false), Block(wide)),
              std::make_tuple(ULOSize(1 << 16, 1), wideBefore));
    // Buffers unfit for pixel work are left alone.
    // A view with a stride too short for its rows, and one without memory.
    unsigned char memory[16] = {};
    TestBits shortRows(memory, 4, 4, 4, PICTBITS_ALPHA);
    shortRows.Resize(2, 2, B::eResizeBox);
    shortRows.Rotate(45);
    shortRows.HEnlarge(8, 1);
    EXPECT_EQ(shortRows.GetBits(), memory);
    TestBits noMemory(nullptr, 4, 4, 16, PICTBITS_ALPHA);
    noMemory.Resize(2, 2, B::eResizeNearest);
    noMemory.VEnlarge(8, 1);
    noMemory.Rotate90(180);
    EXPECT_EQ(noMemory.GetBits(), nullptr);

    TestBits unfitTarget(ULOSize(4, 4), PICTBITS_ALPHA);
    shortRows.EnlargeSmooth(unfitTarget, nullptr);
    noMemory.EnlargeSmooth(unfitTarget, nullptr);
    unfitTarget.EnlargeSmooth(noMemory, nullptr);

    // EnlargeSmooth refuses what it cannot scale.
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

    const std::vector<std::uint8_t> srcBefore = Block(src);
    src.EnlargeSmooth(src, nullptr);  // into itself
    TestBits view(src.GetBits() + 32, 4, 4, 32, PICTBITS_ALPHA);
    src.EnlargeSmooth(view, nullptr);  // into its own memory
    EXPECT_EQ(Block(src), srcBefore);

    const TestBits nothing;
    nothing.EnlargeSmooth(target, nullptr);
    EXPECT_EQ(Pixels(target), std::vector<std::uint8_t>(64, 5));

    // Blending blocks of different sizes touches only the common bytes.
    TestBits big(ULOSize(4, 4), PICTBITS_ALPHA);
    Paint(big, [](int, int, int) { return 100; });
    TestBits small(ULOSize(1, 1), PICTBITS_ALPHA);
    Paint(small, [](int, int, int) { return 200; });
    small.BlendWithPicture(&big, 0.5f);
    EXPECT_EQ(Pixels(small), std::vector<std::uint8_t>(4, 150));
    big.BlendWithPicture(&small, 0.999f);
    EXPECT_EQ(std::make_tuple(big.GetBits()[0], big.GetBits()[4]), std::make_tuple(150, 100));
}

namespace smooth = ulogui::resample::smooth;
namespace base = ulogui::base;

// Restores the instruction-set level a test forced.
class EnlargeSmoothTest : public ::testing::Test {
protected:
    void TearDown() override { base::ForceIsa(base::BestIsa()); }
};

struct Scenario {
    int flags;
    int w, h, dw, dh;
};

// The output over a target of 0xEE bytes at the forced instruction-set level.
TestBits Enlarged(const ULOPictureBits& src, const Scenario& s, base::Isa level) {
    base::ForceIsa(level);
    TestBits target(ULOSize(s.dw, s.dh), s.flags);
    Paint(target, [](int, int, int) { return 0xEE; });
    src.EnlargeSmooth(target, nullptr);
    return target;
}

// Random scenarios of every format, both modes, empty windows and large scales, whose scalar output is
// kept as golden images (outputs above 600 pixels as digests; the largest are split over threads and have
// rows that are not 32-byte aligned);
// every vector kernel computes the scalar path's bytes.
TEST_F(EnlargeSmoothTest, ScalarOutputMatchesItsGoldenAndEveryKernelTheScalarOne) {
    // Tap weights round to the nearest unit of 1 / 16384 (the sweeps cannot tell: their references read
    // the same tables): a bilinear pair at p = 0.55 gives its first pixel 0.45 * 16384 = 7372.8, an area
    // window of 1.1 cells its first cell 16384 / 1.1 = 14894.5.
    EXPECT_EQ(smooth::BilinearTaps(3, 10, 0.3f, 0).weight[6], 7373);
    EXPECT_EQ(smooth::AreaTaps(11, 10, 1.1f, 0).weight[0], 14895);
    const int flags[] = {PICTBITS_MASK8, PICTBITS_RGB24, 0, PICTBITS_ALPHA};
    std::mt19937 random(11);
    std::vector<Scenario> scenarios;
    for (int i = 0; i < 60; ++i) {
        const auto size = [&] { return 1 + static_cast<int>(random() % 70); };
        scenarios.push_back({flags[i % 4], size(), size(), size(), size()});
    }
    scenarios.push_back({PICTBITS_ALPHA, 50, 41, 130, 97});
    scenarios.push_back({0, 333, 257, 130, 100});
    scenarios.push_back({PICTBITS_ALPHA, 300, 250, 1100, 1000});
    scenarios.push_back({0, 2203, 1900, 1101, 950});
    std::vector<golden::Image> images;
    for (const Scenario& s : scenarios) {
        const std::string name = std::to_string(images.size()) + ": " + std::to_string(s.w) + "x" +
                                 std::to_string(s.h) + " flags " + std::to_string(s.flags);
        TestBits src(ULOSize(s.w, s.h), s.flags);
        PaintRandom(src, random);
        const TestBits scalar = Enlarged(src, s, base::Isa(0));
        images.push_back(s.dw * s.dh > 600 ? Digest(name, scalar) : Picture(name, scalar));
        for (int level = 1; level < base::kIsaCount && base::IsIsaAvailable(base::Isa(level)); ++level) {
            ASSERT_EQ(Pixels(Enlarged(src, s, base::Isa(level))), Pixels(scalar))
                << base::IsaName(base::Isa(level)) << " " << name;
        }
    }
    golden::ExpectMatches("resample/enlarge-smooth", images);
}

}  // namespace
