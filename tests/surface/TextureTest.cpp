// Texture fills: where tiles start, what the opacity does, 24-bit and scaled pictures, pictures by ID
// from a resource file, and pictures that draw nothing.
#include <gtest/gtest.h>

#include <vector>

#include "SurfaceTestSupport.h"
#include "picture/PictureTestFiles.h"
#include "ulogui/TrueColorDC.h"

namespace {

using namespace surfacetest;
using TextureTest = MagnifierTest;

// A picture whose pixel (x, y) has the colour bytes of `tile(x, y)` (byte 3 as given, 9 for 4-byte ones).
template <typename Tile>
ULOPicture Picture(int w, int h, int flags, Tile tile) {
    ULOPicture picture(ULOSize(w, h), flags);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const Pixel p = tile(x, y);
            std::copy(p.begin(), p.begin() + picture.GetBytesPerPixel(), picture.GetBits(x, y));
        }
    }
    return picture;
}

TEST_F(TextureTest, TilesRepeatFromTheOriginAndAreMixedByTheOpacity) {
    const auto tile = [](int x, int y) {
        return Pixel{static_cast<unsigned char>(10 * (2 * y + x + 1)), 100, 200, 9};
    };
    struct Case {
        ULORect rect;
        bool origin;  // given as (0, 1), else the rectangle's top-left
        float opacity;
        ULOPoint start;  // where a tile starts, for the expectation
        int k;           // the opacity weight
    };
    const Case cases[] = {
        {{1, 0, 5, 3}, false, 1.0f, {1, 0}, 255},
        {{-3, -3, 9, 9}, true, 1.0f, {0, 1}, 255},
        {{-3, -3, 9, 9}, true, 0.5f, {0, 1}, 127},
        {{1, 0, 5, 3}, true, 0.0f, {0, 1}, 0},
    };
    for (int flags : {0, PICTBITS_RGB24}) {
        const ULOPicture picture = Picture(2, 2, flags, tile);
        for (const Case& c : cases) {
            ULOTrueColorDCBase dc(ULORect(0, 0, 5, 3), false, false);
            c.origin ? dc.FillRectWithTexture(picture, c.rect, ULOPoint(0, 1), c.opacity)
                     : dc.FillRectWithTexture(picture, c.rect);
            for (int i = 0; i < 15; ++i) {
                const int x = i % 5, y = i / 5;
                const Pixel t = tile((x - c.start.x + 2) % 2, (y - c.start.y + 2) % 2);
                const auto mix = [&](int b) { return static_cast<unsigned char>(t[b] * c.k / 255); };
                const Pixel want =
                    c.rect.Contains(ULOPoint(x, y)) ? Pixel{mix(0), mix(1), mix(2), 0} : kClear;
                EXPECT_EQ(PixelAt(dc, x, y), want)
                    << "flags " << flags << " case " << (&c - cases) << " " << i;
            }
        }
    }
}

TEST_F(TextureTest, PictureOfTheOtherMagnificationIsScaledSmoothlyOnce) {
    SetMagnifier(2.0f);
    // Columns of 0 and 200 become 0, 50, 150, 200 at twice the size, repeating every 4 device pixels; a
    // magnified picture of 0, 0, 200, 200 is 0, 200 in logical pixels.
    const unsigned char logical[16] = {0, 0, 0, 0, 200, 0, 0, 0, 0, 0, 0, 0, 200, 0, 0, 0};
    const unsigned char device[16] = {0, 0, 0, 0, 0, 0, 0, 0, 200, 0, 0, 0, 200, 0, 0, 0};
    ULOPicture devicePixels(device, 4, 1, 0);
    devicePixels.SetbIsMagnified(true);
    ULOTrueColorDCBase magnified(ULORect(0, 0, 4, 1), false, true);
    ULOTrueColorDCBase plain(ULORect(0, 0, 4, 1), false, false);
    magnified.FillWithTexture(ULOPicture(logical, 2, 2, 0));
    plain.FillWithTexture(devicePixels);
    const int enlarged[8] = {0, 50, 150, 200, 0, 50, 150, 200};
    for (int x = 0; x < 8; ++x) {
        EXPECT_EQ(PixelAt(magnified, x, 1)[0], enlarged[x]) << x;
        EXPECT_EQ(PixelAt(plain, x / 2, 0)[0], x / 2 % 2 ? 200 : 0) << x;
    }
}

using TextureByIdTest = picturetest::ResourceFileTest;

TEST_F(TextureByIdTest, PicturesComeFromTheCatalogueAndMissingOrEmptyOnesDrawNothing) {
    Use({picturetest::MakePicture(7101, 0, 1, {ULOSize(3, 2)})});
    const ULORect rect(-1, 1, 7, 4);
    ULOTrueColorDCBase byId(ULORect(0, 0, 6, 5), true, false);
    ULOTrueColorDCBase byPicture(ULORect(0, 0, 6, 5), true, false);
    byId.FillRectWithTexture(7101, rect, ULOPoint(2, 2));
    byPicture.FillRectWithTexture(ULOPicture(7101, 0, false), rect, ULOPoint(2, 2), 1.0f);
    EXPECT_EQ(Bytes(byId), Bytes(byPicture));
    byId.FillWithTexture(7101);
    byPicture.FillWithTexture(ULOPicture(7101, 0, false));
    EXPECT_EQ(Bytes(byId), Bytes(byPicture));
    EXPECT_NE(Bytes(byId), Bytes(ULOTrueColorDCBase(ULORect(0, 0, 6, 5), true, false)));

    // The surface as its own texture tiles from its top-left pixel: nothing moves.
    const std::vector<unsigned char> before = Bytes(byId);
    byId.FillWithTexture(byId);
    for (int id : {7102, -1, -2}) {
        byId.FillRectWithTexture(id, rect);
        byId.FillWithTexture(id);
    }
    byId.FillWithTexture(ULOPicture());
    byId.FillWithTexture(ULOPicture(ULOSize(2, 2), PICTBITS_MASK8));
    byId.FillRectWithTexture(7101, ULORect(3, 3, 3, 9));
    EXPECT_EQ(Bytes(byId), before);
}

}  // namespace
