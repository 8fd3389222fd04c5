// ULOGetGlyphOutline: a glyph's native outline as contours of vertices.
#include "font/GlyphFonts.h"
#include "ulogui/Glyph.h"

namespace platform = ulogui::platform;

namespace {

double FromFixed(const FIXED& f) {
    return f.value + f.fract * (1.0 / 65536.0);
}

}  // namespace

ULOGlyphVertex& ULOGlyphVertex::operator=(const tagPOINTFX& point) {
    x = FromFixed(point.x);
    y = FromFixed(point.y);
    return *this;
}

int ULOGetGlyphOutline(ULOGlyphOutline* outline, wchar_t ch, const ULOString& face, int height,
                       int weightIndex, int italic, int underline) {
    if (!outline) {
        return 0;
    }
    outline->RemoveAll();
    const std::shared_ptr<platform::PlatformFont> font =
        ulogui::font::GlyphFont(face, height, weightIndex, italic, underline);
    // Reused call after call on each thread, so that its buffers are allocated once.
    thread_local platform::GlyphOutline native;
    if (!font || !font->GetGlyphOutline(ulogui::font::CodePointOf(ch), native)) {
        return 0;
    }
    outline->SetSize(native.polygons.size());
    for (size_t i = 0; i < native.polygons.size(); ++i) {
        const platform::GlyphOutline::Polygon& polygon = native.polygons[i];
        size_t count = 1;
        for (uint32_t c = 0; c < polygon.curveCount; ++c) {
            count += native.curves[polygon.firstCurve + c].pointCount;
        }
        ULOArray_NOSTL<ULOGlyphVertex>& contour = (*outline)[i];
        contour.SetSize(count);
        ULOGlyphVertex* vertex = contour.GetData();
        *vertex = polygon.start;
        (vertex++)->onCurve = true;
        for (uint32_t c = 0; c < polygon.curveCount; ++c) {
            const platform::GlyphOutline::Curve& curve = native.curves[polygon.firstCurve + c];
            for (uint32_t p = 0; p < curve.pointCount; ++p, ++vertex) {
                *vertex = native.points[curve.firstPoint + p];
                // A spline's points are controls but for the last, which ends it on the outline.
                vertex->onCurve = curve.kind == platform::CurveKind::kLine || p + 1 == curve.pointCount;
            }
        }
    }
    return 1;
}
