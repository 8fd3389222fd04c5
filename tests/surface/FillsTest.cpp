// The fill members as golden scenes: solid, alpha-only and gradation fills, shadows, scrolls and textures
// (by picture and by ID); wild shadow inputs stay inside the buffer.
#include "SurfaceTestSupport.h"
#include "picture/PictureTestFiles.h"

namespace {

using namespace surfacetest;
using FillsTest = MagnifierTest;
using DC = ULOTrueColorDCBase;
const float kNaN = std::nanf("");

// A solid fill given (-1, -1, 3, 5), then no rectangle and an inverted one, which draw nothing.
std::function<void(DC&)> Solid(const std::function<void(DC&, const ULORect*)>& fill) {
    return [fill](DC& dc) {
        const ULORect rect(-1, -1, 3, 5), inverted(3, 0, 1, 1);
        fill(dc, &rect);
        fill(dc, nullptr);
        fill(dc, &inverted);
    };
}

using Gradation = void (DC::*)(const ULORect*, const ULORect*, const CLR&, const CLR&, float, float);

// Black to white over `gradient` inside an area past the surface, then at full weight with no area.
std::function<void(DC&)> Ramp(Gradation member, ULORect gradient, float alphaFrom, float alphaTo) {
    return [=](DC& dc) {
        const ULORect area(-5, -5, 50, 50);
        (dc.*member)(&gradient, &area, CLR(0, 0, 0), CLR(255, 255, 255), alphaFrom, alphaTo);
        (dc.*member)(&gradient, nullptr, CLR(0, 0, 0), CLR(255, 255, 255), 1, 1);
    };
}

TEST_F(FillsTest, FillsMatchTheirGoldenScenesAndLongRowsButNotGradationsReachTheEnd) {
    const CLR ink(200, 100, 0), offsets(250, 0x7F, 0x80);  // offsets: red -6, green +127, blue -128
    const Gradation horizontal = &DC::FillRectHorizontalGradation;
    const Gradation vertical = &DC::FillRectVerticalGradation;
    const Gradation diagonal = &DC::FillRectTopLeftToBottomRightGradation;
    // clang-format off
    ExpectScenes("surface/fills", {
        {"alpha fill half", 1, true, false, false, 4, 2, Solid([&](DC& dc, auto r) { dc.FillRectAlpha(r, ink, 0.5f); })},
        {"alpha fill above 1", 1, true, false, false, 4, 2, Solid([&](DC& dc, auto r) { dc.FillRectAlpha(r, ink, 7.0f); })},
        {"alpha fill NaN", 1, true, false, false, 4, 2, Solid([&](DC& dc, auto r) { dc.FillRectAlpha(r, ink, kNaN); })},
        {"alpha fill negative", 1, true, false, false, 4, 2, Solid([&](DC& dc, auto r) { dc.FillRectAlpha(r, ink, -0.5f); })},
        {"relative fill", 1, true, false, false, 4, 2, Solid([&](DC& dc, auto r) { dc.FillRectRelative(r, offsets); })},
        {"relative alpha half", 1, true, false, false, 4, 2, Solid([&](DC& dc, auto r) { dc.FillRectRelativeAlpha(r, offsets, 0.5f); })},
        {"relative alpha above 1", 1, true, false, false, 4, 2, Solid([&](DC& dc, auto r) { dc.FillRectRelativeAlpha(r, offsets, 3.0f); })},
        {"relative alpha NaN", 1, true, false, false, 4, 2, Solid([&](DC& dc, auto r) { dc.FillRectRelativeAlpha(r, offsets, kNaN); })},
        {"on transparent part 0", 1, true, false, false, 4, 2, Solid([](DC& dc, auto r) { dc.FillRectOnTransparentPart(r, CLR(3, 2, 1), 0); })},
        {"on transparent part 100", 1, true, false, false, 4, 2, Solid([](DC& dc, auto r) { dc.FillRectOnTransparentPart(r, CLR(3, 2, 1), 100); })},
        {"on transparent part 255", 1, true, false, false, 4, 2, Solid([](DC& dc, auto r) { dc.FillRectOnTransparentPart(r, CLR(3, 2, 1), 255); })},
        {"alpha only", 1, true, false, false, 4, 2, Solid([](DC& dc, auto r) { dc.FillAlphaRect(r, 77); })},
        {"alpha only converted at 2.0, then device pixels", 2, true, false, false, 5, 2, [](DC& dc) {
             const ULORect rect(1, 0, 2, 1), device(1, 1, 2, 2);
             dc.FillAlphaRect(&rect, 9); dc.SetWorkingOnScreenSize(true);
             dc.FillAlphaRect(&device, 9); dc.SetWorkingOnScreenSize(false); }},
        {"horizontal ramp converted at 2.0", 2, true, false, false, 10, 2, [](DC& dc) {
             const ULORect gradient(0, 0, 5, 1), area(0, 0, 5, 9);
             dc.FillRectHorizontalGradation(&gradient, &area, CLR(0, 0, 0), CLR(255, 255, 255), 0.0f, 1.0f); }},
        {"horizontal", 1, true, false, false, 3, 4, Ramp(horizontal, {0, 0, 4, 1}, 1, 1)},
        {"vertical", 1, true, false, false, 3, 4, Ramp(vertical, {0, 0, 1, 4}, 1, 1)},
        {"vertical, alpha 0", 1, true, false, false, 3, 4, Ramp(vertical, {0, 0, 1, 4}, 0, 0)},
        {"vertical, alpha NaN to 1", 1, true, false, false, 3, 4, Ramp(vertical, {0, 0, 1, 4}, kNaN, 1)},
        {"diagonal", 1, true, false, false, 3, 4, Ramp(diagonal, {0, 0, 2, 2}, 1, 1)},
        {"horizontal of no extent", 1, true, false, false, 3, 4, Ramp(horizontal, {2, 0, 2, 9}, 0.5f, 1)},
        {"vertical of no extent, alpha to infinity", 1, true, false, false, 3, 4, Ramp(vertical, {0, 3, 9, 3}, 0, INFINITY)},
        {"diagonal of no extent", 1, true, false, false, 3, 4, Ramp(diagonal, {1, 1, 1, 1}, 0.5f, 1)},
        {"horizontal, alphas NaN", 1, true, false, false, 3, 4, Ramp(horizontal, {0, 0, 4, 1}, kNaN, kNaN)},
        {"vertical on a surface without alpha", 1, false, false, false, 3, 4, Ramp(vertical, {0, 0, 1, 4}, 0.5f, 1)},
    });
    // clang-format on
    // Deliberately never 255: black to white over 10 pixels is trunc(255 * x / 10), the last 229.
    DC dc(ULORect(0, 0, 10, 1), false, false);
    const ULORect gradient(0, 0, 10, 1);
    dc.FillRectHorizontalGradation(&gradient, &gradient, CLR(0, 0, 0), CLR(255, 255, 255), 1.0f, 1.0f);
    EXPECT_EQ(PixelAt(dc, 9, 0)[0], 229);
    // Rows longer than the transfer loops' source run, and whole rows run as one.
    ULOTrueColorDCBase wide(ULORect(0, 0, 300, 2), false, false);
    const ULORect band(1, 0, 300, 2);
    const ULORect all(0, 0, 300, 2);
    wide.FillRectAlpha(&band, CLR(200, 100, 0), 0.5f);
    wide.FillRectRelative(&all, CLR(0, 0, 1));
    ExpectOnly(wide, band, Pixel{1, 49, 99, 0}, Pixel{1, 0, 0, 0});
}

TEST_F(FillsTest, ShadowsAndScrollsMatchTheirGoldenScenesAndWildShadowsStayInside) {
    const auto shadow = [](ULORect rect, const ULORect* clip, int size, float strength) {
        return [=](DC& dc) { dc.DrawShadow(&rect, clip, size, strength); };
    };
    const auto scroll = [](ULOSize offset, const ULORect* area) {
        return [=](DC& dc) { area == nullptr ? dc.ScrollArea(offset) : dc.ScrollArea(offset, *area); };
    };
    const ULORect rect(1, 1, 4, 5), cutAcross(0, 2, 5, 8), cutCorner(0, 4, 8, 8);
    const ULORect inner(1, 1, 4, 4), beyond(-2, 0, 9, 9), small(0, 0, 2, 2);
    // clang-format off
    ExpectScenes("surface/shadow-scroll", {
        {"shadow", 1, false, false, false, 8, 8, shadow(rect, nullptr, 2, 1.0f)},
        {"shadow, half strength", 1, false, false, false, 8, 8, shadow(rect, nullptr, 2, 0.5f)},
        {"shadow cut across", 1, false, false, false, 8, 8, shadow(rect, &cutAcross, 2, 1.0f)},
        {"shadow, corner cut", 1, false, false, false, 8, 8, shadow(rect, &cutCorner, 2, 1.0f)},
        {"shadow at the surface's edge", 1, false, false, false, 8, 8, shadow({5, 5, 7, 7}, nullptr, 3, 1.0f)},
        {"scroll right", 1, false, false, false, 4, 4, scroll({1, 0}, nullptr)},
        {"scroll left", 1, false, false, false, 4, 4, scroll({-1, 0}, nullptr)},
        {"scroll down", 1, false, false, false, 4, 4, scroll({0, 1}, nullptr)},
        {"scroll up, area beyond", 1, false, false, false, 4, 4, scroll({0, -3}, &beyond)},
        {"scroll inner area 2, -1", 1, false, false, false, 4, 4, scroll({2, -1}, &inner)},
        {"scroll inner area -1, 2", 1, false, false, false, 4, 4, scroll({-1, 2}, &inner)},
        {"scroll by the width", 1, false, false, false, 4, 4, scroll({4, 0}, nullptr)},
        {"scroll by int extremes", 1, false, false, false, 4, 4, scroll({INT_MIN, INT_MAX}, &beyond)},
        {"scroll at 2.0", 2, false, false, false, 4, 4, scroll({1, 0}, &small)},
        {"scroll at 0.5", 0.5f, false, false, false, 4, 4, scroll({0, 2}, nullptr)},
        {"scroll 1, -2", 1, false, false, false, 4, 4, scroll({1, -2}, nullptr)},
        {"scroll -3, 1, area beyond", 1, false, false, false, 4, 4, scroll({-3, 1}, &beyond)},
        {"scroll by 3", 1, false, false, false, 4, 4, scroll({3, 0}, nullptr)},
        {"scroll a padded-free wide surface", 1, false, false, false, 9, 3, scroll({-2, 1}, nullptr)},
    });
    // clang-format on
    // Wild sizes, strengths, rectangles and clips stay inside the buffer.
    const ULORect wide(INT_MIN, INT_MIN, INT_MAX, INT_MAX);
    const ULORect rects[] = {ULORect(1, 1, 4, 5), wide, ULORect(INT_MIN, -3, -1, 2),
                             ULORect(INT_MAX - 1, 0, INT_MAX, 1)};
    const ULORect inverted(6, 6, 1, 1);
    const ULORect* clips[] = {nullptr, &wide, &inverted};
    for (const ULORect& wild : rects) {
        for (const ULORect* clip : clips) {
            for (int size : {0, -3, 1, INT_MAX, INT_MIN}) {
                for (float strength : {std::nanf(""), -1.0f, 2.0f, INFINITY}) {
                    ULOTrueColorDCBase dc(ULORect(0, 0, 8, 8), false, false);
                    FillAll(dc, CLR(255, 255, 255), 7);
                    dc.DrawShadow(&wild, clip, size, strength);
                    if (size <= 0) {
                        ExpectOnly(dc, ULORect(), kClear, Pixel{255, 255, 255, 7});
                    }
                }
            }
        }
    }
}

// Tiles start at the rectangle's top-left or the given origin and are mixed by the opacity (trunc(o * 255),
// NaN 0), from 4- and 3-byte pictures; a picture of the other magnification is scaled smoothly once (a
// plain one on a magnified surface, a magnified one on a plain surface).
TEST_F(FillsTest, TexturesMatchTheirGoldenScenes) {
    const auto tile = [](int x, int y) {
        return Pixel{static_cast<unsigned char>(10 * (2 * y + x + 1)), 100,
                     static_cast<unsigned char>(200 - x), 9};
    };
    const auto tiles = [tile](int flags, ULORect rect, bool origin, float opacity) {
        return [=](DC& dc) {
            const ULOPicture picture = MakePicture(2, 3, flags, tile);
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
                      [columns](DC& dc) { dc.FillWithTexture(MakePicture(2, 2, 0, columns)); }});
    scenes.push_back({"magnified picture on a plain surface", 2, false, false, false, 4, 1, [](DC& dc) {
                          dc.FillWithTexture(MakePicture(
                              4, 1, 0,
                              [](int x, int) {
                                  return Pixel{static_cast<unsigned char>(x / 2 ? 200 : 0), 0, 0, 0};
                              },
                              true));
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
