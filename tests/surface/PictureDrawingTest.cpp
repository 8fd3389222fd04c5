// The master DrawPicture: each blending wrapper by hand, the overloads' rectangles, the clipping against
// a straightforward loop over the same functors, magnified surfaces and sources, and bad input.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <random>

#include "PictureTestSupport.h"
#include "pixelops/PixelTransferWrappers.h"

namespace {

using namespace surfacetest;
using ulogui::pixelops::CallConstants;
using Type = ULOTrueColorDCBase::ECopyPictureType;

struct WrapperCase {
    int flags;  // of the 1 x 1 source
    bool surfaceAlpha;
    float opacity;
    int type;
    Pixel src, dst, expected;
};

TEST_F(PictureTest, EachRouteAndWrapperGivesItsHandComputedPixel) {
    CLR_LABEL_TEXT = CLR(200, 100, 50);
    for (int i = 0; i < 256; ++i) {
        HIGHLIGHT_CLR_COMPONENT[i] = static_cast<unsigned char>(255 - i);
    }
    const Pixel grey{100, 100, 100, 9};
    const Pixel dst{1, 2, 3, 4};
    const WrapperCase cases[] = {
        {0, false, 1.0f, 0, {10, 20, 30, 77}, dst, {10, 20, 30, 4}},                               // W0
        {PICTBITS_RGB24 | PICTBITS_ALPHA, false, 1.0f, 0, {10, 20, 30, 0}, dst, {10, 20, 30, 4}},  // 3 bytes
        {PICTBITS_ALPHA, false, 1.0f, 0, {200, 200, 200, 128}, grey, {149, 149, 149, 9}},          // W1
        {PICTBITS_ALPHA, false, 1.0f, 0, {255, 255, 255, 0}, dst, {254, 254, 254, 4}},
        {PICTBITS_ALPHA, false, 1.0f, 0, {255, 255, 255, 255}, dst, dst},
        {PICTBITS_ALPHA, false, 0.5f, 0, {200, 200, 200, 0}, grey, {148, 148, 148, 9}},                 // W2
        {0, false, 0.5f, 0, {200, 200, 200, 0}, grey, {149, 149, 149, 9}},                              // W3
        {PICTBITS_ALPHA, true, 1, 0, {200, 200, 200, 100}, {100, 100, 100, 100}, {171, 171, 171, 39}},  // W4
        {PICTBITS_ALPHA, true, 0.5f, 0, {200, 200, 200, 0}, {1, 2, 3, 255}, {200, 200, 200, 129}},
        {0x2 | PICTBITS_ALPHA, false, 1.0f, 9, {10, 20, 30, 77}, dst, {10, 20, 30, 77}},  // full copy
        {0x2, true, 0.5f, 0, {10, 20, 30, 77}, dst, {5, 10, 16, 40}},
        {PICTBITS_MASK8, false, 0.3f, 7, {0, 0, 0, 0}, dst, {49, 99, 199, 4}},  // mask in CLR_LABEL_TEXT
        {PICTBITS_MASK8, false, 1.0f, 0, {0, 0, 0, 128}, grey, {74, 99, 149, 9}},
        {0, false, 1.0f, 1, {10, 20, 30, 0}, dst, {245, 235, 225, 4}},  // highlight
        {0, false, 1.0f, 4, {10, 20, 30, 0}, dst, dst},                 // unknown copy types
        {0, false, 1.0f, -1, {10, 20, 30, 0}, dst, dst},
        {0, false, NAN, 0, {10, 20, 30, 0}, dst, dst},  // opacities held to 0..1
        {0, false, 2.0f, 0, {10, 20, 30, 0}, dst, {10, 20, 30, 4}},
    };
    for (const WrapperCase& c : cases) {
        SCOPED_TRACE(::testing::Message() << "case " << (&c - cases));
        const ULOPicture source = MakePicture(1, 1, c.flags, [&](int, int) { return c.src; });
        ULOTrueColorDCBase dc(ULORect(0, 0, 3, 3), c.surfaceAlpha, false);
        Paint(dc, [&](int, int) { return c.dst; });
        dc.DrawPicture(source, ULORect(1, 1, 2, 2), ULORect(0, 0, 1, 1), ULORect(0, 0, 3, 3),
                       static_cast<Type>(c.type), c.opacity);
        ExpectOnly(dc, ULORect(1, 1, 2, 2), c.expected, c.dst);
    }
}

// Each overload against the master with the rectangles it is meant to build.
TEST_F(PictureTest, OverloadsDrawWhatTheMasterDrawsWithTheirRectangles) {
    const ULOPicture s = MakePicture(4, 3, PICTBITS_ALPHA, [](int x, int y) { return Tagged(x, y, 60); });
    const Type n = ULOTrueColorDCBase::eCopyNormal;
    const ULORect a(1, 0, 3, 2), b(0, 0, 3, 8), c(1, 1, 4, 3), d(2, 1, 4, 3), e(2, 2, 5, 4), f(3, 3, 5, 4);
    ULOPoint skip(1, 1);
    const std::function<void(ULOTrueColorDCBase&)> calls[] = {
        [&](auto& dc) { dc.DrawPicture(s, ULOPoint(2, 1), a, b, n, 1); },
        [&](auto& dc) { dc.DrawPicture(s, ULOPoint(2, 1), a, n, 1); },
        [&](auto& dc) { dc.DrawPicture(s, ULOPoint(5, 4), n, 1); },
        [&](auto& dc) { dc.DrawPicture(s, ULORect(1, 1, 9, 7), ULORect(1, 1, 3, 3), n, 1); },
        [&](auto& dc) { dc.DrawPicture(s, c, ULOPoint(1, 1), b, n, 1); },
        [&](auto& dc) { dc.DrawPicture(s, c, ULOPoint(1, 1), n, 1); },
        [&](auto& dc) { dc.DrawPicture(s, ULORect(2, 2, 9, 9), n, 1); },
        [&](auto& dc) { dc.DrawPicture(s, n, 1); },
        [&](auto& dc) { dc.CopyPicture(&s, &e, n); },
        [&](auto& dc) { dc.CopyPictureAlpha(&s, &e, 0.5f, n, &skip); },
    };
    const struct {
        ULORect dst, src, clip;
        float opacity;
    } built[] = {{d, a, b, 1},
                 {d, a, d, 1},
                 {{5, 4, 9, 7}, {0, 0, 4, 3}, {5, 4, 9, 7}, 1},
                 {{1, 1, 9, 7}, {1, 1, 3, 3}, {1, 1, 9, 7}, 1},
                 {c, c, b, 1},
                 {c, c, c, 1},
                 {{2, 2, 9, 9}, {0, 0, 4, 3}, {2, 2, 9, 9}, 1},
                 {{0, 0, 4, 3}, {0, 0, 4, 3}, {0, 0, 4, 3}, 1},
                 {e, {0, 0, 3, 2}, e, 1},
                 {f, {1, 1, 3, 2}, f, 0.5f}};
    const ULOTrueColorDCBase blank(ULORect(0, 0, 10, 8), false, false);
    for (int i = 0; i < 10; ++i) {
        ULOTrueColorDCBase viaOverload(ULORect(0, 0, 10, 8), false, false);
        ULOTrueColorDCBase viaMaster(ULORect(0, 0, 10, 8), false, false);
        calls[i](viaOverload);
        viaMaster.DrawPicture(s, built[i].dst, built[i].src, built[i].clip, n, built[i].opacity);
        EXPECT_EQ(Pixels(viaOverload), Pixels(viaMaster)) << "case " << i;
        EXPECT_NE(Pixels(viaOverload), Pixels(blank)) << "case " << i;
    }
}

// The wrapper of the library's scalar path on one pixel, PixelCopy as the functor.
template <class Wrap>
Pixel Blend(const Pixel& dst, const Pixel& src) {
    Pixel out = dst;
    const Wrap wrap{CallConstants()};
    wrap(ULOPixelTransfer::PixelCopy(), dst.data(), src.data(), out.data());
    return out;
}

// Random rectangles, many reaching past every edge: source pixel (x, y) of src lands on
// (x + dst.left - src.left, y + dst.top - src.top) when that lies in dst, clip and the surface and
// (x, y) in src and the picture; nothing else changes.
TEST_F(PictureTest, ClippingMatchesAStraightforwardLoopOverTheSameFunctor) {
    CLR_LABEL_TEXT = CLR(7, 77, 177);
    struct Config {
        int flags;
        bool surfaceAlpha;
        Pixel (*expected)(const Pixel& dst, const Pixel& src);
    };
    const Config configs[] = {
        {PICTBITS_ALPHA, false, Blend<ulogui::pixelops::SourceAlphaWrap>},
        {PICTBITS_ALPHA, true, Blend<ulogui::pixelops::OntoAlphaWrap>},
        {PICTBITS_RGB24, false,
         [](const Pixel& d, const Pixel& s) {
             return Pixel{s[0], s[1], s[2], d[3]};
         }},
        {PICTBITS_MASK8, false,
         [](const Pixel& d, const Pixel& s) {
             return Blend<ulogui::pixelops::SourceAlphaWrap>(d, {177, 77, 7, s[3]});
         }},
    };
    std::mt19937 random(16);
    const auto byte = [&](int, int) {
        return Pixel{static_cast<unsigned char>(random()), static_cast<unsigned char>(random()),
                     static_cast<unsigned char>(random()), static_cast<unsigned char>(random())};
    };
    const auto coordinate = [&] {
        const int v = static_cast<int>(random() % 15) - 4;
        return random() % 16 == 0 ? (v < 0 ? INT_MIN : INT_MAX) : v;
    };
    const auto rect = [&] { return ULORect(coordinate(), coordinate(), coordinate(), coordinate()); };
    for (const Config& config : configs) {
        const ULOPicture source = MakePicture(5, 4, config.flags, byte);
        for (int i = 0; i < 300; ++i) {
            ULOTrueColorDCBase dc(ULORect(0, 0, 7, 6), config.surfaceAlpha, false);
            Paint(dc, byte);
            const std::vector<Pixel> before = Pixels(dc);
            const ULORect dst = rect(), src = rect(), clip = rect();
            dc.DrawPicture(source, dst, src, clip, ULOTrueColorDCBase::eCopyNormal, 1.0f);
            for (int y = 0; y < 6; ++y) {
                for (int x = 0; x < 7; ++x) {
                    const int64_t sx = int64_t{x} - dst.left + src.left;
                    const int64_t sy = int64_t{y} - dst.top + src.top;
                    const bool drawn = dst.Contains(ULOPoint(x, y)) && clip.Contains(ULOPoint(x, y)) &&
                                       sx >= std::max(src.left, 0) && sx < std::min(src.right, 5) &&
                                       sy >= std::max(src.top, 0) && sy < std::min(src.bottom, 4);
                    unsigned char alpha = 0;
                    const CLR colour = drawn ? source.GetPixelAndAlpha(int(sx), int(sy), alpha) : CLR();
                    const Pixel& old = before[y * 7 + x];
                    ASSERT_EQ(PixelAt(dc, x, y), drawn ? config.expected(old, Bgra(colour, alpha)) : old)
                        << "at " << x << "," << y << " case " << i;
                }
            }
        }
    }
}

TEST_F(PictureTest, SourcesAreScaledToTheSurfacesMagnificationBothWays) {
    const Pixel quarter[] = {{10, 0, 0, 0}, {20, 0, 0, 0}, {30, 0, 0, 0}, {40, 0, 0, 0}};
    const Type n = ULOTrueColorDCBase::eCopyNormal;
    struct Case {
        float m;
        ULORect block, clipped;  // device pixels of the logical (1, 1, 3, 3) and of it within (2, 0, 6, 6)
        int stored, half;        // a magnified source of stored x stored pixels, quarters of `half` logical
    };
    for (const Case& c :
         {Case{1.5f, {2, 2, 5, 5}, {3, 2, 5, 5}, 6, 2}, Case{2.0f, {2, 2, 6, 6}, {4, 2, 6, 6}, 4, 1}}) {
        SCOPED_TRACE(c.m);
        SetMagnifier(c.m);
        // A flat source on a magnified surface covers its device block, cut by the converted clip.
        const ULOPicture flat = MakePicture(2, 2, 0, [](int, int) { return Pixel{1, 2, 3, 0}; });
        ULOTrueColorDCBase magnified(ULORect(0, 0, 6, 6), false, true);
        magnified.DrawPicture(flat, ULOPoint(1, 1), ULORect(0, 0, 2, 2), ULORect(2, 0, 6, 6), n, 1);
        ExpectOnly(magnified, c.clipped, Pixel{1, 2, 3, 0});
        magnified.DrawPicture(flat, ULOPoint(1, 1), n, 1);
        EXPECT_FALSE(magnified.GetWorkingOnScreenSize());
        ExpectOnly(magnified, c.block, Pixel{1, 2, 3, 0});
        // Other pictures are scaled as EnlargeSmooth scales them.
        const ULOPicture tagged =
            MakePicture(3, 2, PICTBITS_ALPHA, [](int x, int y) { return Tagged(x, y, 0); });
        const ULOSize size(static_cast<int>(std::floor(3 * c.m + 0.5f)),
                           static_cast<int>(std::floor(2 * c.m + 0.5f)));
        ULOPicture scaled(size, PICTBITS_ALPHA);
        tagged.EnlargeSmooth(scaled, nullptr);
        ULOTrueColorDCBase fresh(ULORect(0, 0, 6, 6), false, true);
        fresh.DrawPicture(tagged, ULOPoint(0, 0), n, 1);
        ExpectPicture(fresh, ULORect(ULOPoint(), size), [&](int x, int y) {
            const unsigned char* p = scaled.GetBits(x, y);
            return Blend<ulogui::pixelops::SourceAlphaWrap>(kClear, Pixel{p[0], p[1], p[2], p[3]});
        });
        // A magnified source of quarters on a surface that is not: area averaging keeps them exact; on a
        // magnified surface the stored pixels are drawn as they are, from the converted point on.
        const int k = c.stored / 2;
        const ULOPicture quarters = MakePicture(
            c.stored, c.stored, 0, [&](int x, int y) { return quarter[(y / k) * 2 + x / k]; }, true);
        ULOTrueColorDCBase plain(ULORect(0, 0, 8, 8), false, false);
        plain.DrawPicture(quarters, ULOPoint(1, 1), n, 1);
        ExpectPicture(plain, ULORect(1, 1, 1 + 2 * c.half, 1 + 2 * c.half),
                      [&](int x, int y) { return quarter[(y / c.half) * 2 + x / c.half]; });
        ULOTrueColorDCBase both(ULORect(0, 0, 8, 8), false, true);
        both.DrawPicture(quarters, ULOPoint(1, 1), n, 1);
        ExpectPicture(both, ULORect(2, 2, 2 + c.stored, 2 + c.stored),
                      [&](int x, int y) { return quarter[(y / k) * 2 + x / k]; });
    }
}

TEST_F(PictureTest, ASurfaceDrawnOntoItselfReadsItsPixelsAsTheyWere) {
    ULOTrueColorDCBase dc(ULORect(0, 0, 6, 2), false, false);
    Paint(dc, [](int x, int y) { return Tagged(x, y, 0); });
    dc.DrawPicture(dc, ULORect(1, 0, 6, 2), ULORect(0, 0, 5, 2), ULOTrueColorDCBase::eCopyNormal, 1.0f);
    for (int x = 0; x < 6; ++x) {
        EXPECT_EQ(PixelAt(dc, x, 1), Tagged(x == 0 ? 0 : x - 1, 1, 0));
    }
}

TEST_F(PictureTest, BadInputDrawsNothing) {
    std::vector<unsigned char> memory(64, 0x33);
    const ULOPictureBits none;
    const ULOPictureBits shortRows(memory.data(), 4, 2, 8, 0);
    const ULOPicture good = MakePicture(2, 2, 0, [](int x, int y) { return Tagged(x, y, 0); });
    const ULORect r(0, 0, 2, 2);
    const Type n = ULOTrueColorDCBase::eCopyNormal;
    int points[] = {5, -9, INT_MAX};
    const std::function<void(ULOTrueColorDCBase&)> calls[] = {
        [&](auto& dc) { dc.DrawPicture(none, ULOPoint(0, 0), n, 1); },
        [&](auto& dc) { dc.DrawPicture(shortRows, ULOPoint(0, 0), n, 1); },
        [&](auto& dc) { dc.DrawPicture(good, ULORect(3, 3, 1, 1), ULORect(0, 0, 2, 2), n, 1); },
        [&](auto& dc) { dc.DrawPicture(good, r, ULORect(2, 0, 0, 2), n, 1); },
        [&](auto& dc) { dc.DrawPicture(good, r, r, ULORect(0, 0, 0, 4), n, 1); },
        [&](auto& dc) {
            dc.DrawPicture(good, ULORect(INT_MIN, INT_MIN, INT_MAX, INT_MAX),
                           ULORect(INT_MIN + 5, INT_MIN + 5, INT_MAX, INT_MAX), n, 1);
        },
        [&](auto& dc) { dc.DrawPicture(good, ULORect(INT_MAX - 1, 0, INT_MAX, 2), r, n, 1); },
        [&](auto& dc) { dc.DrawPicture(good, ULOPoint(INT_MAX, INT_MAX), n, 1); },
        [&](auto& dc) { dc.DrawPicture(good, static_cast<Type>(4), 1); },
        [&](auto& dc) { dc.DrawPicture(good, static_cast<Type>(INT_MIN), 1); },
        [&](auto& dc) { dc.CopyPicture(nullptr, &r, n); },
        [&](auto& dc) { dc.CopyPictureAlpha(&good, nullptr, 1, n); },
        [&](auto& dc) { dc.CopyAlphaOnlyColors(nullptr, &r, CLR(), nullptr, 1, false); },
        [&](auto& dc) { dc.ExtrudePictureVertically(&good, nullptr, n); },
        [&](auto& dc) { dc.ExtrudePictureHorizontallyAlpha(nullptr, &r, 1, n); },
        [&](auto& dc) { dc.BlitToTrueColor(nullptr, &r, &r, n); },
        [&](auto& dc) { dc.DrawHEnlargedPicture(good, ULORect(0, 0, 0, 2), points, 3, 1); },
        [&](auto& dc) { dc.DrawVEnlargedPicture(good, r, ULOPoint(0, 0), ULORect(), points, 3, 1); },
        [&](auto& dc) { dc.DrawHEnlargedPicture(none, ULORect(0, 0, 9, 2), nullptr, -4, 1); },
        [&](auto& dc) {
            // A magnifier that scales everything on a magnified surface to nothing.
            for (float m : {0.0f, -1.0f, NAN}) {
                if (!dc.IsMagnified()) {
                    break;
                }
                SetMagnifier(m);
                dc.DrawPicture(good, ULOPoint(0, 0), n, 1);
            }
            SetMagnifier(1.0f);
        },
    };
    for (bool magnified : {false, true}) {
        ULOTrueColorDCBase dc(ULORect(0, 0, 4, 4), true, magnified);
        Paint(dc, [](int x, int y) { return Tagged(x, y, 5); });
        const std::vector<Pixel> before = Pixels(dc);
        for (const auto& call : calls) {
            call(dc);
            ASSERT_EQ(Pixels(dc), before) << "call " << (&call - calls);
        }
    }
    EXPECT_EQ(points[0], 5);
}

}  // namespace
