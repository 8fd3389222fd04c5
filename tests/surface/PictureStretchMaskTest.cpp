// Stretched and extruded pictures, colours painted through alpha, masked pictures, plain copies and
// blits, and the temporary buffer of a magnified draw when an exception passes.
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "GoldenScene.h"
#include "PictureTestSupport.h"

namespace {

using namespace surfacetest;
const ULOTrueColorDCBase::ECopyPictureType kNormal = ULOTrueColorDCBase::eCopyNormal;

struct StretchCase {
    int width;  // of the picture, logical
    std::vector<int> points;
    int length;            // of the destination, logical
    std::string expected;  // device pixels along the axis: the source column (row) + 1, '.' untouched
    ULOPoint origin;
    ULORect clip;  // along the axis; empty: the destination
    float magnifier = 1.0f;
};

// Columns (or rows) of a picture numbered from 1, stretched along a 1-pixel-thick surface, both ways.
TEST_F(PictureTest, StretchPointsShareTheExtraLengthAndShrinkingDropsAroundTheFirst) {
    const StretchCase cases[] = {
        {4, {1}, 7, "1222234", {}, {}},
        {4, {-1}, 6, "123334", {}, {}},               // the middle, written back
        {6, {1, 3, 5}, 13, "1222344456666", {}, {}},  // extra 7 over three points: 2, 2, 3
        {4, {2}, 4, "1234", {}, {}},                  // same length: drawn once
        {6, {3}, 4, "1256", {}, {}},                  // narrower: two columns dropped around 3
        {6, {0}, 4, "3456", {}, {}},
        {6, {5}, 2, "12", {}, {}},
        {4, {3, 1}, 6, "123444", {}, {}},             // out of order
        {4, {-5, 9}, 6, "112344", {}, {}},            // negative, past the width
        {4, {}, 6, "1234..", {}, {}},                 // no points: unscaled
        {4, {1}, 7, "..222..", {}, {2, 0, 5, 1}},     // clipped
        {4, {1}, 7, "233334.", {1, 0}, {}},           // from column 1 of the picture
        {4, {1}, 7, "11222222223344", {}, {}, 2.0f},  // magnified picture on a magnified surface
    };
    for (bool horizontal : {true, false}) {
        for (const StretchCase& c : cases) {
            SCOPED_TRACE(::testing::Message()
                         << "case " << (&c - cases) << (horizontal ? " columns" : " rows"));
            SetMagnifier(c.magnifier);
            const int scale = c.magnifier != 1.0f ? 2 : 1;  // stored pixels per logical one
            const auto rect = [&](int lo, int hi) {
                return horizontal ? ULORect(lo, 0, hi, 1) : ULORect(0, lo, 1, hi);
            };
            const ULORect picturePixels = rect(0, scale * c.width);
            const ULOPicture picture = MakePicture(
                picturePixels.right, picturePixels.bottom, 0,
                [&](int x, int y) {
                    return Pixel{static_cast<unsigned char>((x + y) / scale + 1), 0, 0, 0};
                },
                scale != 1);
            ULOTrueColorDCBase dc(rect(0, 14), false, scale != 1);
            const ULORect dst = rect(0, c.length);
            std::vector<int> points = c.points;
            const int count = static_cast<int>(points.size());
            const ULOPoint origin = horizontal ? c.origin : ULOPoint(c.origin.y, c.origin.x);
            if (!c.clip.IsEmpty() || c.origin != ULOPoint()) {
                const ULORect clip = c.clip.IsEmpty() ? dst : rect(c.clip.left, c.clip.right);
                horizontal ? dc.DrawHEnlargedPicture(picture, dst, origin, clip, points.data(), count, 1.0f)
                           : dc.DrawVEnlargedPicture(picture, dst, origin, clip, points[0], 1.0f);
            } else if (count == 1 && points[0] != -1) {
                horizontal ? dc.DrawHEnlargedPicture(picture, dst, points[0], 1.0f)
                           : dc.DrawVEnlargedPicture(picture, dst, origin, points[0], 1.0f);
            } else {
                horizontal ? dc.DrawHEnlargedPicture(picture, dst, points.data(), count, 1.0f)
                           : dc.DrawVEnlargedPicture(picture, dst, origin, points.data(), count, 1.0f);
            }
            std::string drawn;
            for (int i = 0; i < static_cast<int>(c.expected.size()); ++i) {
                const int v = PixelAt(dc, horizontal ? i : 0, horizontal ? 0 : i)[0];
                drawn += v == 0 ? '.' : static_cast<char>('0' + v);
            }
            EXPECT_EQ(drawn, c.expected);
            EXPECT_EQ(points, c.points == std::vector<int>{-1} ? std::vector<int>{2} : c.points);
        }
    }
}

// Extrusions (one column or row repeated across the rectangle, from a skip point), colours painted
// through masks and alpha (inverted or not, opaque sources), masks and masked pictures, plain copies
// cut by their clip, and blits in both directions, on surfaces with and without alpha.
TEST_F(PictureTest, ExtrusionsMasksCopiesAndBlitsMatchTheirGoldenScenes) {
    using DC = ULOTrueColorDCBase;
    const CLR colour(200, 100, 50);
    const auto pixels = [](int flags, int alphaStep) {
        return MakePicture(4, 3, flags,
                           [alphaStep](int x, int y) { return Tagged(x, y, (x + 4 * y) * alphaStep); });
    };
    const ULOPicture mask = pixels(PICTBITS_MASK8, 23), alpha = pixels(PICTBITS_ALPHA, 21);
    const ULOPicture opaque = pixels(0, 0), cut = pixels(PICTBITS_MASK8, 64);
    const ULORect rect(1, 1, 5, 4), row(0, 0, 4, 3);
    const std::function<void(DC&)> draws[] = {
        [&](DC& dc) {
            ULOPoint skip(1, 0);
            dc.ExtrudePictureHorizontally(&alpha, &rect, kNormal, &skip);
        },
        [&](DC& dc) {
            ULOPoint skip(0, 1);
            dc.ExtrudePictureVerticallyAlpha(&opaque, &rect, 1.0f, kNormal, &skip);
        },
        [&](DC& dc) { dc.CopyAlphaOnlyColors(&mask, &row, colour, nullptr, 1, false); },
        [&](DC& dc) { dc.CopyAlphaOnlyColors(&mask, &row, colour, nullptr, 0.5f, true); },
        [&](DC& dc) {
            ULOPoint skip(1, 0);
            dc.CopyAlphaOnlyColors(&alpha, &row, colour, &skip, 1, false);
        },
        [&](DC& dc) { dc.CopyAlphaOnlyColors(&opaque, &row, colour, nullptr, 1, false); },
        [&](DC& dc) { dc.DrawMask(mask, colour, ULOPoint(1, 1), ULORect(1, 0, 3, 5), 1); },
        [&](DC& dc) { dc.DrawMaskedPicture(alpha, cut, colour, ULOPoint(1, 0), ULORect(0, 0, 6, 5)); },
        [&](DC& dc) { dc.CopyOnlyPicture(alpha, row, row, row); },
        [&](DC& dc) { dc.CopyOnlyPicture(opaque, row, row, ULORect(0, 0, 2, 2)); },
        [&](DC& dc) { dc.CopyOnlyPicture(mask, rect, row, rect); },
        [&](DC& dc) {
            DC other(row, false, false);
            Paint(other, [](int x, int y) { return Tagged(x, y, 7); });
            const ULORect part(1, 0, 3, 2);
            other.BlitToTrueColor(&dc, &part, nullptr, kNormal);
            other.BlitToTrueColor(&dc, nullptr, &part, kNormal);
        },
    };
    std::vector<Scene> scenes;
    for (const auto& draw : draws) {
        for (const bool withAlpha : {false, true}) {
            scenes.push_back({std::to_string(&draw - draws) + (withAlpha ? " alpha" : ""), 1, withAlpha,
                              false, false, 6, 5, draw});
        }
    }
    ExpectScenes("surface/picture-masks", scenes);
}

// A mask that throws once the picture drawn through it has been scaled into its temporary buffer: the
// buffer is freed (the sanitizer build reports a leak otherwise) and the guard comes down.
TEST_F(PictureTest, AnExceptionLeavesNoTemporaryBufferAndRestoresTheGuard) {
    struct Mask : ULOPicture {
        using ULOPicture::ULOPicture;
        bool IsMagnified() const override {
            if (armed) {
                throw std::runtime_error("mask");
            }
            return false;
        }
        mutable bool armed = false;
    };
    struct Arming : ULOPicture {
        Arming(const ULOPicture& p, const Mask& m) : ULOPicture(p), mask(m) {}
        bool IsMagnified() const override {
            mask.armed = true;
            return false;
        }
        const Mask& mask;
    };
    SetMagnifier(1.5f);
    const Mask mask(ULOSize(4, 4), PICTBITS_MASK8);
    const Arming picture(MakePicture(4, 4, 0, [](int x, int y) { return Tagged(x, y, 0); }), mask);
    ULOTrueColorDCBase dc(ULORect(0, 0, 8, 8), false, true);
    EXPECT_THROW(dc.DrawMaskedPicture(picture, mask, CLR(), ULOPoint(), ULORect(0, 0, 8, 8)),
                 std::runtime_error);
    EXPECT_TRUE(mask.armed);
    EXPECT_FALSE(dc.GetWorkingOnScreenSize());
}

}  // namespace
