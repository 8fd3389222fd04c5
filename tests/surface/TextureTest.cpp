// Texture fills: where tiles start, what the opacity does, 24-bit and scaled pictures, pictures by ID
// from a resource file, and pictures that draw nothing.
#include "GoldenScene.h"
#include "picture/PictureTestFiles.h"

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

// Tiles start at the rectangle's top-left or the given origin and are mixed by the opacity (trunc(o * 255),
// NaN 0), from 4- and 3-byte pictures; a picture of the other magnification is scaled smoothly once (a
// plain one on a magnified surface, a magnified one on a plain surface).
TEST_F(TextureTest, TexturesMatchTheirGoldenScenes) {
    using DC = ULOTrueColorDCBase;
    const auto tile = [](int x, int y) {
        return Pixel{static_cast<unsigned char>(10 * (2 * y + x + 1)), 100,
                     static_cast<unsigned char>(200 - x), 9};
    };
    const auto tiles = [tile](int flags, ULORect rect, bool origin, float opacity) {
        return [=](DC& dc) {
            const ULOPicture picture = Picture(2, 3, flags, tile);
            origin ? dc.FillRectWithTexture(picture, rect, ULOPoint(0, 1), opacity)
                   : dc.FillRectWithTexture(picture, rect);
        };
    };
    const auto columns = [](int x, int) {
        return Pixel{static_cast<unsigned char>(x % 2 ? 200 : 0), 0, 0, 0};
    };
    std::vector<Scene> scenes;
    for (const int flags : {0, PICTBITS_RGB24}) {
        const std::string f = flags ? " 24-bit" : "";
        scenes.push_back(
            {"from the top-left" + f, 1, false, false, false, 5, 4, tiles(flags, {1, 0, 5, 3}, false, 1)});
        scenes.push_back(
            {"from the origin" + f, 1, false, false, false, 5, 4, tiles(flags, {-3, -3, 9, 9}, true, 1)});
        scenes.push_back(
            {"half opacity" + f, 1, true, false, false, 5, 4, tiles(flags, {-3, -3, 9, 9}, true, 0.5f)});
        scenes.push_back(
            {"opacity 0" + f, 1, false, false, false, 5, 4, tiles(flags, {1, 0, 5, 3}, true, 0)});
        scenes.push_back(
            {"opacity NaN" + f, 1, false, false, false, 5, 4, tiles(flags, {1, 0, 5, 3}, true, NAN)});
    }
    scenes.push_back({"plain picture on a magnified surface", 2, false, true, false, 4, 2,
                      [columns](DC& dc) { dc.FillWithTexture(Picture(2, 2, 0, columns)); }});
    scenes.push_back({"magnified picture on a plain surface", 2, false, false, false, 4, 1, [](DC& dc) {
                          ULOPicture picture = Picture(4, 1, 0, [](int x, int) {
                              return Pixel{static_cast<unsigned char>(x / 2 ? 200 : 0), 0, 0, 0};
                          });
                          picture.SetbIsMagnified(true);
                          dc.FillWithTexture(picture);
                      }});
    ExpectScenes("surface/texture", scenes);
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
