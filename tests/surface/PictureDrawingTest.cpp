// Picture drawing: the master DrawPicture's routes and wrappers, its overloads, clipping and magnification,
// stretched and extruded pictures, masks, copies and blits, and bad input.
#include "SurfaceTestSupport.h"
#include "pixelops/PixelTransferWrappers.h"
#include "ulogui/Palette.h"

namespace {

using namespace surfacetest;
using ulogui::pixelops::CallConstants;
using DC = ULOTrueColorDCBase;
using Type = DC::ECopyPictureType;
const Type kNormal = DC::eCopyNormal;

// The magnifier at 1.0, the highlight table cleared and CLR_LABEL_TEXT as it was, after each test.
class PictureTest : public MagnifierTest {
protected:
    void TearDown() override {
        MagnifierTest::TearDown();
        std::fill(std::begin(HIGHLIGHT_CLR_COMPONENT), std::end(HIGHLIGHT_CLR_COMPONENT), 0);
        CLR_LABEL_TEXT = savedLabel_;
    }

private:
    CLR savedLabel_ = CLR_LABEL_TEXT;
};

// A 4 x 3 source whose every pixel is distinct, with transparencies from 0 to 255.
ULOPicture Source(int flags) {
    static const unsigned char alphas[12] = {0, 255, 128, 1, 254, 100, 77, 9, 200, 50, 127, 30};
    return MakePicture(4, 3, flags, [](int x, int y) {
        return Pixel{static_cast<unsigned char>(200 - 31 * x), static_cast<unsigned char>(17 + 40 * y),
                     static_cast<unsigned char>(90 + 9 * x * y), alphas[y * 4 + x]};
    });
}

// Every route of the master (each blending wrapper, 3-byte pixels, masks in CLR_LABEL_TEXT, the
// highlight table, unknown copy types, opacities held to 0..1) on a surface with and without alpha.
TEST_F(PictureTest, EachRouteMatchesItsGoldenSceneAndEachOverloadTheMaster) {
    CLR_LABEL_TEXT = CLR(200, 100, 50);
    for (int i = 0; i < 256; ++i) {
        HIGHLIGHT_CLR_COMPONENT[i] = static_cast<unsigned char>(255 - i);
    }
    const struct {
        const char* name;
        int flags;
        float opacity;
        int type;
    } routes[] = {
        {"opaque", 0, 1.0f, 0},
        {"3 bytes", PICTBITS_RGB24 | PICTBITS_ALPHA, 1.0f, 0},
        {"source alpha", PICTBITS_ALPHA, 1.0f, 0},
        {"source alpha, half", PICTBITS_ALPHA, 0.5f, 0},
        {"opaque, half", 0, 0.5f, 0},
        {"full copy", 0x2 | PICTBITS_ALPHA, 1.0f, 9},
        {"flag 2, half", 0x2, 0.5f, 0},
        {"mask, 0.3, type 7", PICTBITS_MASK8, 0.3f, 7},
        {"mask", PICTBITS_MASK8, 1.0f, 0},
        {"highlight", 0, 1.0f, 1},
        {"disabled", PICTBITS_ALPHA, 1.0f, 2},
        {"darken", PICTBITS_ALPHA, 1.0f, 3},
        {"type 4", 0, 1.0f, 4},
        {"type -1", 0, 1.0f, -1},
        {"opacity NaN", 0, NAN, 0},
        {"opacity 2", 0, 2.0f, 0},
    };
    std::vector<Scene> scenes;
    for (const auto& r : routes) {
        for (const bool alpha : {false, true}) {
            scenes.push_back({std::string(r.name) + (alpha ? " onto alpha" : ""), 1, alpha, false, false, 6,
                              5, [r](DC& dc) {
                                  dc.DrawPicture(Source(r.flags), ULORect(1, 1, 5, 4), ULORect(0, 0, 4, 3),
                                                 ULORect(0, 0, 6, 5), static_cast<Type>(r.type), r.opacity);
                              }});
        }
    }
    ExpectScenes("surface/picture-routes", scenes);
    // Each overload against the master with the rectangles it is meant to build; a surface drawn onto itself.
    const ULOPicture s = MakePicture(4, 3, PICTBITS_ALPHA, [](int x, int y) { return Tagged(x, y, 60); });
    const ULORect a(1, 0, 3, 2), b(0, 0, 3, 8), c(1, 1, 4, 3), d(2, 1, 4, 3), e(2, 2, 5, 4), f(3, 3, 5, 4);
    const ULORect g(5, 4, 9, 7), h(1, 1, 9, 7), i(1, 1, 3, 3), j(2, 2, 9, 9), all(0, 0, 4, 3);
    ULOPoint skip(1, 1);
    const struct {
        std::function<void(DC&)> call;
        ULORect dst, src, clip;
        float opacity;
    } cases[] = {
        {[&](auto& dc) { dc.DrawPicture(s, ULOPoint(2, 1), a, b, kNormal, 1); }, d, a, b, 1},
        {[&](auto& dc) { dc.DrawPicture(s, ULOPoint(2, 1), a, kNormal, 1); }, d, a, d, 1},
        {[&](auto& dc) { dc.DrawPicture(s, ULOPoint(5, 4), kNormal, 1); }, g, all, g, 1},
        {[&](auto& dc) { dc.DrawPicture(s, h, i, kNormal, 1); }, h, i, h, 1},
        {[&](auto& dc) { dc.DrawPicture(s, c, ULOPoint(1, 1), b, kNormal, 1); }, c, c, b, 1},
        {[&](auto& dc) { dc.DrawPicture(s, c, ULOPoint(1, 1), kNormal, 1); }, c, c, c, 1},
        {[&](auto& dc) { dc.DrawPicture(s, j, kNormal, 1); }, j, all, j, 1},
        {[&](auto& dc) { dc.DrawPicture(s, kNormal, 1); }, all, all, all, 1},
        {[&](auto& dc) { dc.CopyPicture(&s, &e, kNormal); }, e, {0, 0, 3, 2}, e, 1},
        {[&](auto& dc) { dc.CopyPictureAlpha(&s, &e, 0.5f, kNormal, &skip); }, f, {1, 1, 3, 2}, f, 0.5f},
    };
    const DC blank(ULORect(0, 0, 10, 8), false, false);
    for (const auto& row : cases) {
        DC viaOverload(ULORect(0, 0, 10, 8), false, false);
        DC viaMaster(ULORect(0, 0, 10, 8), false, false);
        row.call(viaOverload);
        viaMaster.DrawPicture(s, row.dst, row.src, row.clip, kNormal, row.opacity);
        EXPECT_EQ(Pixels(viaOverload), Pixels(viaMaster)) << "case " << (&row - cases);
        EXPECT_NE(Pixels(viaOverload), Pixels(blank)) << "case " << (&row - cases);
    }
    // A surface drawn onto itself reads its pixels as they were.
    DC dc(ULORect(0, 0, 6, 2), false, false);
    Paint(dc, [](int x, int y) { return Tagged(x, y, 0); });
    dc.DrawPicture(dc, ULORect(1, 0, 6, 2), ULORect(0, 0, 5, 2), kNormal, 1.0f);
    for (int x = 0; x < 6; ++x) {
        EXPECT_EQ(PixelAt(dc, x, 1), Tagged(x == 0 ? 0 : x - 1, 1, 0));
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
TEST_F(PictureTest, ClippingMatchesAStraightforwardLoopAndBadInputOrExceptionsLeaveNoTrace) {
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
            DC dc(ULORect(0, 0, 7, 6), config.surfaceAlpha, false);
            Paint(dc, byte);
            const std::vector<Pixel> before = Pixels(dc);
            const ULORect dst = rect(), src = rect(), clip = rect();
            dc.DrawPicture(source, dst, src, clip, kNormal, 1.0f);
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
    // Bad input draws nothing.
    std::vector<unsigned char> memory(64, 0x33);
    const ULOPictureBits none;
    const ULOPictureBits shortRows(memory.data(), 4, 2, 8, 0);
    const ULOPicture good = MakePicture(2, 2, 0, [](int x, int y) { return Tagged(x, y, 0); });
    const ULORect r(0, 0, 2, 2);
    int points[] = {5, -9, INT_MAX};
    const std::function<void(DC&)> calls[] = {
        [&](auto& dc) { dc.DrawPicture(none, ULOPoint(0, 0), kNormal, 1); },
        [&](auto& dc) { dc.DrawPicture(shortRows, ULOPoint(0, 0), kNormal, 1); },
        [&](auto& dc) { dc.DrawPicture(good, ULORect(3, 3, 1, 1), ULORect(0, 0, 2, 2), kNormal, 1); },
        [&](auto& dc) { dc.DrawPicture(good, r, ULORect(2, 0, 0, 2), kNormal, 1); },
        [&](auto& dc) { dc.DrawPicture(good, r, r, ULORect(0, 0, 0, 4), kNormal, 1); },
        [&](auto& dc) {
            dc.DrawPicture(good, ULORect(INT_MIN, INT_MIN, INT_MAX, INT_MAX),
                           ULORect(INT_MIN + 5, INT_MIN + 5, INT_MAX, INT_MAX), kNormal, 1);
        },
        [&](auto& dc) { dc.DrawPicture(good, ULORect(INT_MAX - 1, 0, INT_MAX, 2), r, kNormal, 1); },
        [&](auto& dc) { dc.DrawPicture(good, ULOPoint(INT_MAX, INT_MAX), kNormal, 1); },
        [&](auto& dc) { dc.DrawPicture(good, static_cast<Type>(4), 1); },
        [&](auto& dc) { dc.DrawPicture(good, static_cast<Type>(INT_MIN), 1); },
        [&](auto& dc) { dc.CopyPicture(nullptr, &r, kNormal); },
        [&](auto& dc) { dc.CopyPictureAlpha(&good, nullptr, 1, kNormal); },
        [&](auto& dc) { dc.CopyAlphaOnlyColors(nullptr, &r, CLR(), nullptr, 1, false); },
        [&](auto& dc) { dc.ExtrudePictureVertically(&good, nullptr, kNormal); },
        [&](auto& dc) { dc.ExtrudePictureHorizontallyAlpha(nullptr, &r, 1, kNormal); },
        [&](auto& dc) { dc.BlitToTrueColor(nullptr, &r, &r, kNormal); },
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
                dc.DrawPicture(good, ULOPoint(0, 0), kNormal, 1);
            }
            SetMagnifier(1.0f);
        },
    };
    for (bool magnified : {false, true}) {
        DC dc(ULORect(0, 0, 4, 4), true, magnified);
        Paint(dc, [](int x, int y) { return Tagged(x, y, 5); });
        const std::vector<Pixel> before = Pixels(dc);
        for (const auto& call : calls) {
            call(dc);
            ASSERT_EQ(Pixels(dc), before) << "call " << (&call - calls);
        }
    }
    EXPECT_EQ(points[0], 5);
    // A mask that throws once the picture drawn through it has been scaled into its temporary buffer: the
    // buffer is freed (the sanitizer build reports a leak otherwise) and the guard comes down.
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
    DC dc(ULORect(0, 0, 8, 8), false, true);
    EXPECT_THROW(dc.DrawMaskedPicture(picture, mask, CLR(), ULOPoint(), ULORect(0, 0, 8, 8)),
                 std::runtime_error);
    EXPECT_TRUE(mask.armed);
    EXPECT_FALSE(dc.GetWorkingOnScreenSize());
}

// Flat sources cover their device block, cut by the converted clip; other pictures are scaled as
// EnlargeSmooth scales them; a magnified source of quarters on a plain surface is area-averaged, on a
// magnified one drawn as stored from the converted point on.
TEST_F(PictureTest, SourcesAreScaledToTheSurfacesMagnificationBothWays) {
    const ULOPicture flatPicture = MakePicture(2, 2, 0, [](int, int) { return Pixel{1, 2, 3, 0}; });
    const auto flat = [&](DC& dc) {
        dc.DrawPicture(flatPicture, ULOPoint(1, 1), ULORect(0, 0, 2, 2), ULORect(2, 0, 6, 6), kNormal, 1);
    };
    const auto flatWhole = [&](DC& dc) { dc.DrawPicture(flatPicture, ULOPoint(1, 1), kNormal, 1); };
    const auto tagged = [](DC& dc) {
        dc.DrawPicture(MakePicture(3, 2, PICTBITS_ALPHA, [](int x, int y) { return Tagged(x, y, 20 * x); }),
                       ULOPoint(0, 0), kNormal, 1);
    };
    const auto quarters = [](int stored) {
        return [stored](DC& dc) {
            const int k = stored / 2;
            const ULOPicture picture = MakePicture(
                stored, stored, 0,
                [k](int x, int y) {
                    return Pixel{static_cast<unsigned char>(10 * ((y / k) * 2 + x / k + 1)), 0, 0, 0};
                },
                true);
            dc.DrawPicture(picture, ULOPoint(1, 1), kNormal, 1);
        };
    };
    // clang-format off
    ExpectScenes("surface/picture-scaled", {
        {"flat, clipped, 1.5", 1.5f, false, true, false, 6, 6, flat},
        {"flat, 1.5", 1.5f, false, true, false, 6, 6, flatWhole},
        {"flat, clipped, 2.0", 2, false, true, false, 6, 6, flat},
        {"flat, 2.0", 2, false, true, false, 6, 6, flatWhole},
        {"tagged, 1.5", 1.5f, false, true, false, 6, 6, tagged},
        {"tagged, 2.0", 2, false, true, false, 6, 6, tagged},
        {"quarters on plain, 1.5", 1.5f, false, false, false, 8, 8, quarters(6)},
        {"quarters on magnified, 1.5", 1.5f, false, true, false, 8, 8, quarters(6)},
        {"quarters on plain, 2.0", 2, false, false, false, 8, 8, quarters(4)},
        {"quarters on magnified, 2.0", 2, false, true, false, 8, 8, quarters(4)},
    });
    // clang-format on
}

// Columns (or rows) of a picture stretched along a surface, both ways: the points share the extra length
// (out of order, negative, past the width), shrinking drops around the first, no points draws unscaled;
// clipped, from an origin, and magnified on a magnified surface. Deliberately, a middle asked for by -1
// is written back to the caller's array.
TEST_F(PictureTest, StretchesExtrusionsMasksCopiesAndBlitsMatchTheirGoldenScenes) {
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
    // Extrusions (one column or row repeated across the rectangle, from a skip point), colours painted
    // through masks and alpha (inverted or not, opaque sources), masks and masked pictures, plain copies
    // cut by their clip, and blits in both directions, on surfaces with and without alpha.
    const CLR colour(200, 100, 50);
    const auto pixels = [](int flags, int alphaStep) {
        return MakePicture(4, 3, flags,
                           [alphaStep](int x, int y) { return Tagged(x, y, (x + 4 * y) * alphaStep); });
    };
    const ULOPicture mask = pixels(PICTBITS_MASK8, 23), alpha = pixels(PICTBITS_ALPHA, 21);
    const ULOPicture opaque = pixels(0, 0), cut = pixels(PICTBITS_MASK8, 64);
    const ULORect rect(1, 1, 5, 4), row(0, 0, 4, 3);
    ULOPoint skipX(1, 0), skipY(0, 1);
    const std::function<void(DC&)> draws[] = {
        [&](DC& dc) { dc.ExtrudePictureHorizontally(&alpha, &rect, kNormal, &skipX); },
        [&](DC& dc) { dc.ExtrudePictureVerticallyAlpha(&opaque, &rect, 1.0f, kNormal, &skipY); },
        [&](DC& dc) { dc.CopyAlphaOnlyColors(&mask, &row, colour, nullptr, 1, false); },
        [&](DC& dc) { dc.CopyAlphaOnlyColors(&mask, &row, colour, nullptr, 0.5f, true); },
        [&](DC& dc) { dc.CopyAlphaOnlyColors(&alpha, &row, colour, &skipX, 1, false); },
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
    scenes.clear();
    for (const auto& draw : draws) {
        for (const bool withAlpha : {false, true}) {
            scenes.push_back({std::to_string(&draw - draws) + (withAlpha ? " alpha" : ""), 1, withAlpha,
                              false, false, 6, 5, draw});
        }
    }
    ExpectScenes("surface/picture-masks", scenes);
}

}  // namespace
