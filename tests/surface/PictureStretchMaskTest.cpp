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
            const bool magnified = c.magnifier != 1.0f;
            const int stored = magnified ? 2 * c.width : c.width;
            const auto along = [&](int x, int y) { return horizontal ? x : y; };
            const ULOPicture picture = MakePicture(
                horizontal ? stored : 1, horizontal ? 1 : stored, 0,
                [&](int x, int y) {
                    return Pixel{static_cast<unsigned char>(along(x, y) / (magnified ? 2 : 1) + 1), 0, 0, 0};
                },
                magnified);
            const auto rect = [&](int lo, int hi) {
                return horizontal ? ULORect(lo, 0, hi, 1) : ULORect(0, lo, 1, hi);
            };
            ULOTrueColorDCBase dc(rect(0, 14), false, magnified);
            const ULORect dst = rect(0, c.length);
            std::vector<int> points = c.points;
            const int count = static_cast<int>(points.size());
            const ULORect clip = c.clip.IsEmpty() ? dst : rect(c.clip.left, c.clip.right);
            if (!c.clip.IsEmpty() || c.origin != ULOPoint()) {
                const ULOPoint origin = horizontal ? c.origin : ULOPoint(c.origin.y, c.origin.x);
                if (horizontal) {
                    dc.DrawHEnlargedPicture(picture, dst, origin, clip, points.data(), count, 1.0f);
                } else {
                    dc.DrawVEnlargedPicture(picture, dst, origin, clip, points[0], 1.0f);
                }
            } else if (count == 1 && points[0] != -1) {
                horizontal ? dc.DrawHEnlargedPicture(picture, dst, points[0], 1.0f)
                           : dc.DrawVEnlargedPicture(picture, dst, ULOPoint(), points[0], 1.0f);
            } else {
                horizontal ? dc.DrawHEnlargedPicture(picture, dst, points.data(), count, 1.0f)
                           : dc.DrawVEnlargedPicture(picture, dst, ULOPoint(), points.data(), count, 1.0f);
            }
            std::string drawn;
            for (size_t i = 0; i < c.expected.size(); ++i) {
                const int v = PixelAt(dc, horizontal ? i : 0, horizontal ? 0 : i)[0];
                drawn += v == 0 ? '.' : static_cast<char>('0' + v);
            }
            EXPECT_EQ(drawn, c.expected);
            if (c.points == std::vector<int>{-1}) {
                EXPECT_EQ(points[0], 2);
            }
        }
    }
}

TEST_F(PictureTest, ExtrusionRepeatsOneColumnOrRowAcrossTheRectangle) {
    const ULOPicture picture = MakePicture(3, 2, 0, [](int x, int y) { return Tagged(x, y, 0); });
    const ULORect rect(1, 1, 5, 4);
    ULOPoint skip(1, 0);
    ULOTrueColorDCBase dc(ULORect(0, 0, 6, 5), false, false);
    dc.ExtrudePictureHorizontally(&picture, &rect, kNormal, &skip);
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 6; ++x) {
            const bool in = x >= 1 && x < 5 && y >= 1 && y < 3;  // picture rows 0 and 1 only
            EXPECT_EQ(PixelAt(dc, x, y), in ? Tagged(1, y - 1, 0) : kClear) << x << "," << y;
        }
    }
    skip = ULOPoint(0, 1);
    ULOTrueColorDCBase rows(ULORect(0, 0, 6, 5), false, false);
    rows.ExtrudePictureVerticallyAlpha(&picture, &rect, 1.0f, kNormal, &skip);
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 6; ++x) {
            const bool in = x >= 1 && x < 4 && y >= 1 && y < 4;  // picture columns 0 to 2 only
            EXPECT_EQ(PixelAt(rows, x, y), in ? Tagged(x - 1, 1, 0) : kClear) << x << "," << y;
        }
    }
}

// A row of three pixels on grey, painted with (blue 50, green 100, red 200).
TEST_F(PictureTest, ColoursThroughAlphaMasksAndPlainCopies) {
    const CLR colour(200, 100, 50);
    const Pixel grey{100, 100, 100, 9}, full{49, 99, 199, 9}, half{74, 99, 149, 9};
    const ULOPicture mask = MakePicture(3, 1, PICTBITS_MASK8, [](int x, int) {
        return Pixel{0, 0, 0, std::array<unsigned char, 3>{0, 255, 128}[x]};
    });
    const ULOPicture alpha = MakePicture(3, 1, PICTBITS_ALPHA, [](int x, int) {
        return Pixel{9, 9, 9, std::array<unsigned char, 3>{0, 255, 128}[x]};
    });
    const ULOPicture opaque = MakePicture(3, 1, 0, [](int, int) { return Pixel{9, 9, 9, 255}; });
    const ULOPicture picture = MakePicture(3, 1, PICTBITS_ALPHA, [](int x, int) {
        return Pixel{10, 20, 30, static_cast<unsigned char>(x == 1 ? 255 : 0)};
    });
    const ULOPicture cut = MakePicture(3, 1, PICTBITS_MASK8, [](int x, int) {
        return Pixel{0, 0, 0, static_cast<unsigned char>(x == 2 ? 255 : 0)};
    });
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
