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

// Columns (or rows) of a picture stretched along a surface, both ways: the points share the extra length
// (out of order, negative, past the width), shrinking drops around the first, no points draws unscaled;
// clipped, from an origin, and magnified on a magnified surface. Deliberately, a middle asked for by -1
// is written back to the caller's array.
TEST_F(PictureTest, StretchesMatchTheirGoldenScenes) {
    using DC = ULOTrueColorDCBase;
    const struct {
        int width;  // of the picture, logical
        std::vector<int> points;
        int length;  // of the destination, logical
        ULOPoint origin;
        int clipFrom, clipTo;  // along the axis; empty: the destination
    } cases[] = {{4, {1}, 7, {}, 0, 0}, {4, {-1}, 6, {}, 0, 0},   {6, {1, 3, 5}, 13, {}, 0, 0},
                 {4, {2}, 4, {}, 0, 0}, {6, {3}, 4, {}, 0, 0},    {6, {0}, 4, {}, 0, 0},
                 {6, {5}, 2, {}, 0, 0}, {4, {3, 1}, 6, {}, 0, 0}, {4, {-5, 9}, 6, {}, 0, 0},
                 {4, {}, 6, {}, 0, 0},  {4, {1}, 7, {}, 2, 5},    {4, {1}, 7, {1, 0}, 0, 0}};
    std::vector<Scene> scenes;
    for (const bool horizontal : {true, false}) {
        const auto rect = [horizontal](int lo, int hi) {
            return horizontal ? ULORect(lo, 0, hi, 2) : ULORect(0, lo, 2, hi);
        };
        for (const auto& c : cases) {
            for (const float m : {1.0f, 2.0f}) {
                if (m != 1.0f && (c.points.size() != 1 || c.clipTo != 0 || c.origin != ULOPoint())) {
                    continue;
                }
                const std::string name = std::to_string(&c - cases) + (horizontal ? " columns" : " rows") +
                                         (m != 1.0f ? " magnified" : "");
                const ULOPoint origin = horizontal ? c.origin : ULOPoint(c.origin.y, c.origin.x);
                scenes.push_back(
                    {name, m, false, m != 1.0f, false, horizontal ? 14 : 2, horizontal ? 2 : 14, [=](DC& dc) {
                         const int scale = m != 1.0f ? 2 : 1;  // stored pixels per logical one
                         const ULORect stored = rect(0, scale * c.width);
                         const ULOPicture picture = MakePicture(
                             stored.right, stored.bottom, 0, [&](int x, int y) { return Tagged(x, y, 0); },
                             scale != 1);
                         const ULORect dst = rect(0, c.length);
                         std::vector<int> points = c.points;
                         const int count = static_cast<int>(points.size());
                         if (c.clipTo != 0 || origin != ULOPoint()) {
                             const ULORect clip = c.clipTo == 0 ? dst : rect(c.clipFrom, c.clipTo);
                             horizontal
                                 ? dc.DrawHEnlargedPicture(picture, dst, origin, clip, points.data(), count,
                                                           1.0f)
                                 : dc.DrawVEnlargedPicture(picture, dst, origin, clip, points[0], 1.0f);
                         } else if (count == 1 && points[0] != -1) {
                             horizontal ? dc.DrawHEnlargedPicture(picture, dst, points[0], 1.0f)
                                        : dc.DrawVEnlargedPicture(picture, dst, origin, points[0], 1.0f);
                         } else {
                             horizontal
                                 ? dc.DrawHEnlargedPicture(picture, dst, points.data(), count, 1.0f)
                                 : dc.DrawVEnlargedPicture(picture, dst, origin, points.data(), count, 1.0f);
                         }
                         EXPECT_EQ(points, c.points == std::vector<int>{-1} ? std::vector<int>{2} : c.points);
                     }});
            }
        }
    }
    ExpectScenes("surface/picture-stretch", scenes);
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
