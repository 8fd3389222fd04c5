// Stretched and extruded pictures, colours painted through alpha, masked pictures, plain copies and
// blits, and the temporary buffer of a magnified draw when an exception passes.
#include <gtest/gtest.h>

#include <climits>
#include <stdexcept>
#include <string>

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

TEST_F(PictureTest, ExtrusionRepeatsOneColumnOrRowAcrossTheRectangle) {
    const ULOPicture picture = MakePicture(3, 2, 0, [](int x, int y) { return Tagged(x, y, 0); });
    const ULORect rect(1, 1, 5, 4);
    ULOPoint skip(1, 0);
    ULOTrueColorDCBase columns(ULORect(0, 0, 6, 5), false, false);
    columns.ExtrudePictureHorizontally(&picture, &rect, kNormal, &skip);
    // Column 1 across the rectangle, its rows 0 and 1 only.
    ExpectPicture(columns, ULORect(1, 1, 5, 3), [](int, int y) { return Tagged(1, y, 0); });
    skip = ULOPoint(0, 1);
    ULOTrueColorDCBase rows(ULORect(0, 0, 6, 5), false, false);
    rows.ExtrudePictureVerticallyAlpha(&picture, &rect, 1.0f, kNormal, &skip);
    // Row 1 down the rectangle, its columns 0 to 2 only.
    ExpectPicture(rows, ULORect(1, 1, 4, 4), [](int x, int) { return Tagged(x, 1, 0); });
}

// A row of three pixels on grey, painted with (blue 50, green 100, red 200).
TEST_F(PictureTest, ColoursThroughAlphaMasksAndPlainCopies) {
    const CLR colour(200, 100, 50);
    const Pixel grey{100, 100, 100, 9}, full{49, 99, 199, 9}, half{74, 99, 149, 9};
    const auto row3 = [](int flags, std::array<Pixel, 3> p) {
        return MakePicture(3, 1, flags, [=](int x, int) { return p[x]; });
    };
    const ULOPicture mask = row3(PICTBITS_MASK8, {{{0, 0, 0, 0}, {0, 0, 0, 255}, {0, 0, 0, 128}}});
    const ULOPicture alpha = row3(PICTBITS_ALPHA, {{{9, 9, 9, 0}, {9, 9, 9, 255}, {9, 9, 9, 128}}});
    const ULOPicture opaque = row3(0, {{{9, 9, 9, 255}, {9, 9, 9, 255}, {9, 9, 9, 255}}});
    const ULOPicture picture = row3(PICTBITS_ALPHA, {{{10, 20, 30, 0}, {10, 20, 30, 255}, {10, 20, 30, 0}}});
    const ULOPicture cut = row3(PICTBITS_MASK8, {{{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 255}}});
    const ULORect row(0, 0, 3, 1);
    ULOPoint skip(1, 0);
    struct Case {
        std::function<void(ULOTrueColorDCBase&)> draw;
        std::array<Pixel, 3> expected;
    };
    const Case cases[] = {
        {[&](auto& dc) { dc.CopyAlphaOnlyColors(&mask, &row, colour, nullptr, 1, false); },
         {full, grey, half}},
        {[&](auto& dc) { dc.CopyAlphaOnlyColors(&mask, &row, colour, nullptr, 1, true); },
         {grey, full, half}},
        {[&](auto& dc) { dc.CopyAlphaOnlyColors(&alpha, &row, colour, &skip, 1, false); },
         {grey, grey, half}},
        {[&](auto& dc) { dc.CopyAlphaOnlyColors(&opaque, &row, colour, nullptr, 1, false); },
         {full, full, full}},
        {[&](auto& dc) { dc.DrawMask(mask, colour, ULOPoint(), ULORect(1, 0, 3, 1), 1); },
         {grey, grey, half}},
        {[&](auto& dc) { dc.DrawMaskedPicture(picture, cut, colour, ULOPoint(), row); },
         {{{9, 19, 29, 9}, full, grey}}},
        {[&](auto& dc) { dc.CopyOnlyPicture(alpha, row, row, row); },
         {{{9, 9, 9, 0}, {9, 9, 9, 255}, {9, 9, 9, 128}}}},
        {[&](auto& dc) { dc.CopyOnlyPicture(opaque, row, row, ULORect(0, 0, 2, 1)); },
         {{{9, 9, 9, 0}, {9, 9, 9, 0}, grey}}},
        {[&](auto& dc) { dc.CopyOnlyPicture(mask, row, row, row); },
         {{{0, 0, 0, 0}, {0, 0, 0, 255}, {0, 0, 0, 128}}}},
        {[&](auto& dc) {
             ULOTrueColorDCBase other(row, false, false);
             Paint(other, [](int x, int) { return Pixel{1, 2, static_cast<unsigned char>(x), 0}; });
             const ULORect part(1, 0, 3, 1);
             other.BlitToTrueColor(&dc, &part, nullptr, kNormal);
             other.BlitToTrueColor(&dc, nullptr, &part, kNormal);
         },
         {{{1, 2, 1, 9}, {1, 2, 2, 9}, {1, 2, 1, 9}}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << "case " << (&c - cases));
        ULOTrueColorDCBase dc(row, false, false);
        Paint(dc, [&](int, int) { return grey; });
        c.draw(dc);
        for (int x = 0; x < 3; ++x) {
            EXPECT_EQ(PixelAt(dc, x, 0), c.expected[x]) << "pixel " << x;
        }
    }
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
