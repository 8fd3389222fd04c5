// ULOPicture: construction by ID and by size, the version choice, magnification and the cache.
#include <thread>

#include "picture/PictureTestFiles.h"

namespace {

using namespace picturetest;

std::vector<unsigned char> Bytes(const ULOPictureBits& b) {
    const unsigned char* p = b.GetBits();
    return std::vector<unsigned char>(p, p + static_cast<size_t>(b.GetLineWidth(true)) * b.GetHeight(true));
}

// A plain owning buffer holding the stored bytes of one part of one version.
ULOPictureBits Stored(int id, int slot, int part, int width, int height, int flags) {
    std::vector<unsigned char> bytes = PartBytes(id, slot, part, width, height, flags);
    ULOPictureBits view(bytes.data(), width, height, ULOPictureUtil::ComputeLineWidth(width, flags), flags);
    ULOPictureBits copy;
    copy.Clone(view);
    return copy;
}

// What the buffer operations give on a copy: the middle column and row repeated (never shrinking the
// height).
ULOPictureBits Stretched(const ULOPictureBits& source, int width, int height) {
    ULOPictureBits copy;
    copy.Clone(source);
    copy.HEnlarge(width, -1);
    copy.VEnlarge(height, -1);
    return copy;
}

// What smooth scaling of a stored version into a cleared block of the given size gives.
std::vector<unsigned char> Smoothed(const ULOPictureBits& source, int width, int height) {
    const int flags = source.GetFlags();
    std::vector<unsigned char> block(
        static_cast<size_t>(ULOPictureUtil::ComputeLineWidth(width, flags)) * height, 0);
    ULOPictureBitsHolder target(block.data(), width, height, ULOPictureUtil::ComputeLineWidth(width, flags),
                                flags);
    source.EnlargeSmooth(target, nullptr);
    return block;
}

// A picture's version, device and logical sizes and pixels, checked together.
testing::AssertionResult Holds(const ULOPicture& p, int version, ULOSize device, ULOSize logical,
                               const std::vector<unsigned char>& pixels) {
    const ULOSize d = p.GetSize(true), l = p.GetSize(false);
    if (p.GetCurrentVersion() == version && d == device && l == logical && Bytes(p) == pixels) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << "version " << p.GetCurrentVersion() << ", " << d.cx << " x " << d.cy << " device, " << l.cx
           << " x " << l.cy << " logical, pixels " << (Bytes(p) == pixels ? "as expected" : "differ");
}

bool IsTransparentWhitePixel(const ULOPicture& p) {
    static const unsigned char white[4] = {255, 255, 255, 255};
    return p.GetWidth(true) == 1 && p.GetHeight(true) == 1 && p.GetBits() != nullptr &&
           std::memcmp(p.GetBits(), white, 4) == 0;
}

class PictureTest : public ResourceFileTest {};

TEST_F(PictureTest, LoadsEveryVersionAndPartFollowingTheMagnifierOrTheSizeAsked) {
    const int fullCopy = 0x2;
    Use({MakePicture(200, PICTBITS_ALPHA, 3, {{6, 4}, {12, 8}}), MakePicture(205, 0, 1, {{4, 4}, {8, 8}}),
         MakePicture(206, 0, 1, {{4, 4}}), MakePicture(210, PICTBITS_ALPHA, 1, {{6, 4}, {12, 8}}),
         MakePicture(215, fullCopy, 1, {{5, 3}}), MakePicture(220, 0, 1, {{8, 6}, {16, 12}})});
    for (int part = 0; part < 3; ++part) {
        SCOPED_TRACE(part);
        ULOPicture normal(200, part, false), large(200, part, false, false, true);
        EXPECT_EQ(std::make_tuple(1, PICTBITS_ALPHA, false, 200, 3, true),
                  std::make_tuple(normal.GetCurrentVersion(), normal.GetFlags(), normal.IsMagnified(),
                                  normal.GetInfo().GetID(), normal.GetInfo().GetPartsCount(),
                                  normal.CanBeRemade()));
        EXPECT_TRUE(Holds(normal, 1, {6, 4}, {6, 4}, PartBytes(200, 0, part, 6, 4, PICTBITS_ALPHA)));
        EXPECT_TRUE(Holds(large, 2, {12, 8}, {12, 8}, PartBytes(200, 1, part, 12, 8, PICTBITS_ALPHA)));
    }
    // The version follows the magnifier.
    struct Case {
        float m;
        bool magnified, preferLarge, forceLarge;
        int id, version;
    };
    const Case cases[] = {
        {1.0f, true, false, false, 205, 1},  {1.0f, true, true, false, 205, 1},
        {1.5f, true, false, false, 205, 1},  {1.5f, true, true, false, 205, 2},
        {1.98f, true, false, false, 205, 1}, {2.0f, true, false, false, 205, 2},
        {2.0f, false, false, false, 205, 1}, {2.0f, true, false, false, 206, 1},
        {1.0f, false, false, true, 205, 2},  {0.5f, true, true, false, 205, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        SetMagnifier(c.m);
        EXPECT_EQ(ULOPicture(c.id, 0, c.magnified, c.preferLarge, c.forceLarge).GetCurrentVersion(),
                  c.version);
    }
    // Magnified and sized pictures hold device pixels.
    SetMagnifier(1.0f);
    const ULOPictureBits v1 = Stored(210, 0, 0, 6, 4, PICTBITS_ALPHA),
                         v2 = Stored(210, 1, 0, 12, 8, PICTBITS_ALPHA);
    const ULOPictureBits s1 = Stored(220, 0, 0, 8, 6, 0), s2 = Stored(220, 1, 0, 16, 12, 0);
    EXPECT_TRUE(Holds(ULOPicture(210), 1, {6, 4}, {6, 4}, Bytes(v1)));
    EXPECT_TRUE(ULOPicture(210).IsMagnified());
    SetMagnifier(2.0f);  // a whole magnifier: version 2, scaled smoothly; full-copy pictures stretched
    EXPECT_TRUE(Holds(ULOPicture(210), 2, {24, 16}, {12, 8}, Smoothed(v2, 24, 16)));
    EXPECT_TRUE(Holds(ULOPicture(215), 1, {10, 6}, {5, 3},
                      Bytes(Stretched(Stored(215, 0, 0, 5, 3, fullCopy), 10, 6))));
    SetMagnifier(1.5f);  // a fractional one: version 1, its middle column and row repeated
    EXPECT_TRUE(Holds(ULOPicture(210), 1, {9, 6}, {6, 4}, Bytes(Stretched(v1, 9, 6))));
    // preferLarge takes version 2 and scales it smoothly even at a fractional magnifier.
    EXPECT_TRUE(Holds(ULOPicture(210, 0, true, true), 2, {18, 12}, {12, 8}, Smoothed(v2, 18, 12)));
    // A requested size is magnified on request.
    EXPECT_TRUE(
        Holds(ULOPicture(220, ULOSize(10, 10), 0, true, true), 1, {15, 15}, {10, 10}, Smoothed(s1, 15, 15)));
    SetMagnifier(0.5f);  // shrinking at a fractional magnifier takes the nearest pixels
    ULOPictureBits nearest;
    nearest.Clone(v1);
    nearest.Resize(3, 2, ULOPictureBits::eResizeNearest);
    EXPECT_TRUE(Holds(ULOPicture(210), 1, {3, 2}, {6, 4}, Bytes(nearest)));

    // Pictures of a requested size: version 1 if it is no larger, else version 2 scaled down smoothly;
    // without smoothing the middle is stretched (VEnlarge never shrinks, so the height stays).
    SetMagnifier(1.0f);
    EXPECT_TRUE(Holds(ULOPicture(220, ULOSize(8, 6), 0, false, true), 1, {8, 6}, {8, 6}, Bytes(s1)));
    EXPECT_TRUE(Holds(ULOPicture(220, ULOSize(4, 4), 0, false, true), 2, {4, 4}, {4, 4}, Smoothed(s2, 4, 4)));
    EXPECT_TRUE(Holds(ULOPicture(220, ULOSize(4, 4), 0, false, false), 2, {4, 12}, {4, 12},
                      Bytes(Stretched(s2, 4, 4))));
    EXPECT_TRUE(Holds(ULOPicture(220, ULOSize(20, 9), 0, false, false), 1, {20, 9}, {20, 9},
                      Bytes(Stretched(s1, 20, 9))));
    const ULOPicture empty(220, ULOSize(0, 5), 0, false, true);
    EXPECT_EQ(empty.GetSize(true), ULOSize(0, 0));
    EXPECT_EQ(empty.GetBits(), nullptr);
    EXPECT_TRUE(IsTransparentWhitePixel(ULOPicture(-2, ULOSize(30, 30))));
}

TEST_F(PictureTest, RemakeFollowsTheNewMagnifierAndMissingIDsAreOneTransparentWhitePixel) {
    Use({MakePicture(240, 0, 2, {{6, 4}, {12, 8}}), MakePicture(0, 0, 1, {{2, 2}}),
         MakePicture(231, 0, 1, {{4, 4}})});
    const ULOPicture byID(240, 1), bySize(240, ULOSize(7, 7), 1, true, false);
    EXPECT_EQ(std::make_tuple(byID.GetSize(true), bySize.GetSize(true)),
              std::make_tuple(ULOSize(6, 4), ULOSize(7, 7)));

    SetMagnifier(2.0f);
    EXPECT_TRUE(Holds(byID.Remake(), 2, {24, 16}, {12, 8}, Bytes(ULOPicture(240, 1))));
    const ULOPicture bySizeAgain = bySize.Remake();
    EXPECT_EQ(std::make_tuple(bySizeAgain.GetSize(true), Bytes(bySizeAgain)),
              std::make_tuple(ULOSize(14, 14), Bytes(ULOPicture(240, ULOSize(7, 7), 1, true, false))));

    // Nothing to build again from: pictures outside the catalogue and ID 0.
    ULOPicture zero(0, 0, false);
    EXPECT_FALSE(ULOPicture().CanBeRemade() || ULOPicture(ULOSize(3, 3)).CanBeRemade() || zero.CanBeRemade());
    EXPECT_EQ(std::make_tuple(ULOPicture(ULOSize(3, 3)).Remake().GetSize(true), zero.GetInfo().GetID()),
              std::make_tuple(ULOSize(0, 0), 0));
    // -2 and missing IDs are one transparent white pixel that cannot be remade.
    for (float m : {1.0f, 2.0f}) {
        SetMagnifier(m);
        const ULOPicture special(-2);
        EXPECT_TRUE(IsTransparentWhitePixel(special) && special.GetCurrentVersion() == 1 &&
                    !special.CanBeRemade());
    }
    SetMagnifier(1.0f);
    for (int id : {230, 232, -1, 99999}) {
        ULOPicture missing(id);
        EXPECT_TRUE(IsTransparentWhitePixel(missing) && !missing.CanBeRemade()) << id;
        EXPECT_EQ(std::make_tuple(missing.GetInfo().GetID(), missing.Remake().GetBits()),
                  std::make_tuple(-1, nullptr))
            << id;
    }
}

// The same operation on a magnified picture (logical arguments) and on a plain copy (device ones).
template <class OnPicture, class OnBits>
void ExpectLikeBuffer(float m, OnPicture onPicture, OnBits onBits) {
    magnify::GetMagnifier() = m;
    std::vector<unsigned char> bytes = PartBytes(1, 2, 3, 20, 10, PICTBITS_ALPHA);
    ULOPicture picture(bytes.data(), 20, 10, PICTBITS_ALPHA, 1);
    picture.SetbIsMagnified(true);
    ULOPictureBits plain;
    plain.Clone(picture.GetRawPictureBits());
    onPicture(picture);
    onBits(plain);
    EXPECT_EQ(picture.GetSize(true), plain.GetSize(true));
    EXPECT_EQ(Bytes(picture), Bytes(plain));
}
#define EXPECT_LIKE_BUFFER(m, onPicture, onBits) \
    ExpectLikeBuffer(                            \
        m, [](ULOPicture& p) { p.onPicture; }, [](ULOPictureBits& b) { b.onBits; })

// A magnified picture reports logical sizes and reads pixels at magnified coordinates (at 0.5 the last
// logical column and row round one past the buffer; the last device ones are read); an unmagnified one
// reports and crops device pixels, and unlike the buffer's, its Enlarge narrows to a narrower target.
// Geometry operations take logical units.
TEST_F(PictureTest, MagnifiedGeometryIsLogicalAndPicturesOutsideTheCatalogueOwnTheirPixels) {
    ULOPicture picture(ULOSize(33, 20), 0, 1);
    picture.SetPixelAndAlpha(2, 2, CLR(10, 20, 30), 0);
    picture.SetPixelAndAlpha(32, 19, CLR(40, 50, 60), 0);
    SetMagnifier(2.0f);
    EXPECT_EQ(std::make_tuple(picture.IsMagnified(), picture.GetWidth(false), picture.GetPixel(1, 1)),
              std::make_tuple(false, 33, CLR(0, 0, 0)));
    picture.SetbIsMagnified(true);
    EXPECT_EQ(
        std::make_tuple(17, 33, 10, 20, 68, 132),
        std::make_tuple(picture.GetWidth(false), picture.GetWidth(true), picture.GetHeight(false),
                        picture.GetHeight(true), picture.GetLineWidth(false), picture.GetLineWidth(true)));
    EXPECT_EQ(std::make_tuple(picture.GetSize(false), picture.GetRect(false), picture.GetRect(true)),
              std::make_tuple(ULOSize(17, 10), ULORect(0, 0, 17, 10), ULORect(0, 0, 33, 20)));
    EXPECT_EQ(std::make_tuple(picture.GetPixel(1, 1), picture.GetPixel(ULOPoint(1, 1))),
              std::make_tuple(CLR(10, 20, 30), CLR(10, 20, 30)));
    SetMagnifier(0.5f);
    EXPECT_EQ(picture.GetPixel(65, 39), CLR(40, 50, 60));
    SetMagnifier(1.0f);
    EXPECT_EQ(picture.GetWidth(false), 33);

    SetMagnifier(2.0f);
    ULOPicture plain(ULOSize(10, 10), 0, 1);
    plain.Crop(4, 6, ULOPictureBits::eCropTopLeft);
    EXPECT_EQ(std::make_tuple(plain.GetSize(true), plain.GetSize(false)),
              std::make_tuple(ULOSize(4, 6), ULOSize(4, 6)));
    plain.Enlarge(ULORect(0, 0, 3, 8), ULOPoint(-1, -1));
    EXPECT_EQ(plain.GetSize(true), ULOSize(3, 8));

    using B = ULOPictureBits;
    EXPECT_LIKE_BUFFER(2.0f, HEnlarge(15, -1), HEnlarge(30, -2));
    EXPECT_LIKE_BUFFER(2.0f, HEnlarge(8, 3), HEnlarge(16, 6));
    EXPECT_LIKE_BUFFER(2.0f, VEnlarge(8, 2), VEnlarge(16, 4));
    EXPECT_LIKE_BUFFER(1.5f, Enlarge(ULORect(0, 0, 5, 9), ULOPoint(2, 1)), HEnlarge(8, 3); b.VEnlarge(14, 2));
    EXPECT_LIKE_BUFFER(2.0f, Crop(5, 4, B::eCropCenter), Crop(10, 8, B::eCropCenter));
    // The rectangle keeps its size wherever it lies: (1, 1, 4, 4) at 1.5 is (2, 2, 7, 7).
    EXPECT_LIKE_BUFFER(1.5f, Crop(ULORect(1, 1, 4, 4)), Crop(ULORect(2, 2, 7, 7)));
    EXPECT_LIKE_BUFFER(2.0f, Resize(4, 3, B::eResizeNearest), Resize(8, 6, B::eResizeNearest));
    EXPECT_LIKE_BUFFER(2.0f, Resize(6, 4, ULORect(1, 1, 7, 5), B::eResizeBox),
                       Resize(12, 8, ULORect(2, 2, 14, 10), B::eResizeBox));
    EXPECT_LIKE_BUFFER(2.0f, ResizeToWidth(5, B::eResizeNearest), ResizeToWidth(10, B::eResizeNearest));
    EXPECT_LIKE_BUFFER(2.0f, ResizeToHeight(4, B::eResizeBox), ResizeToHeight(8, B::eResizeBox));
    EXPECT_LIKE_BUFFER(2.0f, HResize(15), HResize(30));

    // ResizeLazy leaves the new pixels undefined: only the size can be compared.
    magnify::GetMagnifier() = 2.0f;
    ULOPicture lazy(ULOSize(4, 4));
    lazy.SetbIsMagnified(true);
    lazy.ResizeLazy(3, 5);
    EXPECT_EQ(lazy.GetSize(true), ULOSize(6, 10));
    // A picture outside the catalogue holds a copy of the bytes it is given; its copies own their pixels.
    std::vector<unsigned char> bytes = PartBytes(5, 0, 0, 5, 3, PICTBITS_RGB24);
    const std::vector<unsigned char> stored = bytes;
    ULOPicture original(bytes.data(), 5, 3, PICTBITS_RGB24, 4);
    bytes[0] ^= 0xFF;
    EXPECT_EQ(Bytes(original), stored);
    EXPECT_EQ(std::make_tuple(16, 1, false, false),
              std::make_tuple(original.GetLineWidth(true), original.GetCurrentVersion(),
                              original.IsMagnified(), original.CanBeRemade()));
    ULOPicture copy(original);
    EXPECT_NE(copy.GetBits(), original.GetBits());
    copy.SetPixelAndAlpha(0, 0, CLR(1, 2, 3), 4);
    EXPECT_EQ(Bytes(original), stored);
    const ULOPictureInfo& info = copy.GetInfo();
    EXPECT_EQ(std::make_tuple(-1, 4, PICTBITS_RGB24, 1, size_t{1}),
              std::make_tuple(info.GetID(), info.GetPartsCount(), info.GetFlags(), info.GetSizeVersionFlags(),
                              info.GetSizes().size()));
    EXPECT_EQ(info.GetPicSizeInfo(1), ULOPictureSizeInfo(1, 5, 3, 16));
    const ULOPicture cleared(ULOSize(3, 2), PICTBITS_MASK8, 2);
    EXPECT_EQ(std::make_tuple(Bytes(cleared), cleared.GetBytesPerPixel()),
              std::make_tuple(std::vector<unsigned char>(8, 0), 1));

    ULOPicture assigned(ULOSize(8, 8));
    assigned = original;  // the 8 x 8 block is released
    EXPECT_EQ(Bytes(assigned), stored);
    const ULOPicture& self = assigned;  // through a reference, as self-assignment happens in practice
    assigned = self;
    EXPECT_EQ(Bytes(assigned), stored);
    const unsigned char* block = original.GetBits();
    ULOPicture moved(std::move(original)), target(ULOSize(2, 2)), other(ULOSize(1, 1), PICTBITS_MASK8);
    EXPECT_EQ(std::make_tuple(moved.GetBits(), original.GetBits()), std::make_tuple(block, nullptr));
    target = std::move(moved);
    EXPECT_EQ(target.GetBits(), block);
    target.Swap(other);
    EXPECT_EQ(std::make_tuple(other.GetBits(), target.GetFlags(), target.GetBytesPerPixel()),
              std::make_tuple(block, PICTBITS_MASK8, 1));
}

TEST_F(PictureTest, ConcurrentConstructionAndCacheServeTheStoredPixels) {
    // Concurrent construction gives the stored pixels.
    Use({MakePicture(260, 0, 4, {{5, 5}}), MakePicture(261, PICTBITS_RGB24, 4, {{7, 3}})});
    std::vector<std::thread> threads;
    std::vector<int> failures(4, 0);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t, &failures] {
            for (int i = 0; i < 40; ++i) {
                const unsigned int part = static_cast<unsigned int>((i + t) % 4);
                const ULOPicture a(260, part, false);
                const ULOPicture b(261, part, false);
                if (Bytes(a) != PartBytes(260, 0, static_cast<int>(part), 5, 5, 0) ||
                    Bytes(b) != PartBytes(261, 0, static_cast<int>(part), 7, 3, PICTBITS_RGB24)) {
                    ++failures[static_cast<size_t>(t)];
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, std::vector<int>(4, 0));

    // The cache serves decoded versions without the file.
    Use({MakePicture(250, 0, 2, {{4, 3}, {8, 6}})});
    const ULOPicture first(250, 0, false);
    ulo::SingleLock lock(ULOPicture::ccResource);
    unsigned char* bits = nullptr;
    unsigned char* again = nullptr;
    int flags = 0, versions = 0, width = 0, height = 0, stride = 0, stamp = 1;
    ULOPicture::ReadPictureVersion(250, 1, 0, bits, flags, versions, width, height, stride, stamp);
    ULOPicture::ReadPictureVersion(250, 1, 0, again, flags, versions, width, height, stride, stamp);
    EXPECT_EQ(std::make_tuple(bits, versions, ULOSize(width, height), stride),
              std::make_tuple(again, 3, ULOSize(4, 3), 16));

    ASSERT_EQ(std::remove(FilePath().c_str()), 0);
    EXPECT_EQ(Bytes(ULOPicture(250, 0, false)), Bytes(first));
    // A part never decoded cannot be read now, and the stand-in is not remembered.
    EXPECT_TRUE(IsTransparentWhitePixel(ULOPicture(250, 1, false)));
    Use({MakePicture(250, 0, 2, {{4, 3}, {8, 6}})});
    EXPECT_EQ(Bytes(ULOPicture(250, 1, false)), PartBytes(250, 0, 1, 4, 3, 0));

    // Asking for another version replaces what the entry held.
    EXPECT_EQ(Bytes(ULOPicture(250, 0, false, false, true)), PartBytes(250, 1, 0, 8, 6, 0));
    ASSERT_EQ(std::remove(FilePath().c_str()), 0);
    EXPECT_EQ(Bytes(ULOPicture(250, 0, false, false, true)), PartBytes(250, 1, 0, 8, 6, 0));
    EXPECT_TRUE(IsTransparentWhitePixel(ULOPicture(250, 0, false)));
}

}  // namespace
