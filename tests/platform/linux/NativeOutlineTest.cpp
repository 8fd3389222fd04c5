// Native outline records from a hand-made FreeType outline: each kind of run, contour end and
// degenerate contour, and the fixed-point coordinates.
#include <gtest/gtest.h>

#include <sstream>

#include "platform/linux/NativeOutline.h"

using namespace ulogui::platform;

TEST(NativeOutline, RunsBecomeLineAndSplineRecordsAndOpenEndsCloseOnTheStart) {
    constexpr char on = FT_CURVE_TAG_ON, q = FT_CURVE_TAG_CONIC, c = FT_CURVE_TAG_CUBIC;
    // In 26.6: a single point (dropped); lines, then quadratic controls up to the contour's end; a
    // spline, then a line; two cubic segments, the second closing on the start.
    FT_Vector points[] = {{64, 64},  {0, 0},     {640, 0},   {640, 32},   {640, 640}, {-32, 640},
                          {0, 0},    {320, 320}, {640, 0},   {640, -320}, {0, 0},     {64, 64},
                          {128, 64}, {192, 0},   {256, -64}, {320, -64}};
    char tags[] = {on, on, on, on, q, q, on, q, on, on, on, c, c, on, c, c};
    short ends[] = {0, 5, 9, 15};
    const FT_Outline outline = {4, 16, points, tags, ends, 0};
    GlyphOutline records;
    ft::NativeOutlineRecords(outline, records);
    std::ostringstream text;
    auto put = [&](const POINTFX& p) {
        text << "(" << p.x.value + p.x.fract / 65536.0 << "," << p.y.value + p.y.fract / 65536.0 << ")";
    };
    for (const GlyphOutline::Polygon& polygon : records.polygons) {
        put(polygon.start);
        for (uint32_t i = 0; i < polygon.curveCount; ++i) {
            const GlyphOutline::Curve& curve = records.curves[polygon.firstCurve + i];
            text << " LQC"[static_cast<int>(curve.kind)];
            for (uint32_t p = 0; p < curve.pointCount; ++p) {
                put(records.points[curve.firstPoint + p]);
            }
        }
        text << "|";
    }
    EXPECT_EQ(
        "(0,0)L(10,0)(10,0.5)Q(10,10)(-0.5,10)(0,0)|(0,0)Q(5,5)(10,0)L(10,-5)|"
        "(0,0)C(1,1)(2,1)(3,0)C(4,-1)(5,-1)(0,0)|",
        text.str());
    // A fraction counts up from the integer below; the FIXED range saturates.
    const FIXED quarter = ft::FixedFrom26Dot6(-16), high = ft::FixedFrom26Dot6(FT_Pos{1} << 40),
                low = ft::FixedFrom26Dot6(-(FT_Pos{1} << 40));
    EXPECT_EQ(std::make_tuple(-1, 0xC000, 32767, 0xFFFF, -32768, 0),
              std::make_tuple(quarter.value, quarter.fract, high.value, high.fract, low.value, low.fract));
}
