#include "platform/win32/NativeOutline.h"

#include <windows.h>

#include <cstring>

namespace ulogui {
namespace platform {
namespace gdi {

namespace {

template <typename T>
T ReadAt(const uint8_t* p) {
    T value;
    std::memcpy(&value, p, sizeof value);  // records are not necessarily aligned for T
    return value;
}

CurveKind KindOf(WORD type) {
    switch (type) {
        case TT_PRIM_QSPLINE:
            return CurveKind::kQuadratic;
        case TT_PRIM_CSPLINE:
            return CurveKind::kCubic;
        default:
            return CurveKind::kLine;
    }
}

}  // namespace

void ReadNativeOutline(const uint8_t* buffer, size_t size, GlyphOutline& out) {
    out.Clear();
    constexpr size_t kPolygonHeader = sizeof(TTPOLYGONHEADER);
    constexpr size_t kCurveHeader = offsetof(TTPOLYCURVE, apfx);
    size_t at = 0;
    while (buffer != nullptr && size - at >= kPolygonHeader) {
        const uint8_t* polygonStart = buffer + at;
        const DWORD bytes = ReadAt<DWORD>(polygonStart + offsetof(TTPOLYGONHEADER, cb));
        if (bytes < kPolygonHeader || bytes > size - at) {
            return;
        }
        GlyphOutline::Polygon polygon;
        polygon.start = ReadAt<POINTFX>(polygonStart + offsetof(TTPOLYGONHEADER, pfxStart));
        polygon.firstCurve = static_cast<uint32_t>(out.curves.size());
        size_t inside = kPolygonHeader;
        while (bytes - inside >= kCurveHeader) {
            const uint8_t* curveStart = polygonStart + inside;
            const WORD type = ReadAt<WORD>(curveStart + offsetof(TTPOLYCURVE, wType));
            const WORD count = ReadAt<WORD>(curveStart + offsetof(TTPOLYCURVE, cpfx));
            const size_t curveBytes = kCurveHeader + size_t{count} * sizeof(POINTFX);
            if (curveBytes > bytes - inside) {
                break;
            }
            GlyphOutline::Curve curve;
            curve.kind = KindOf(type);
            curve.firstPoint = static_cast<uint32_t>(out.points.size());
            curve.pointCount = count;
            for (WORD i = 0; i < count; ++i) {
                out.points.push_back(ReadAt<POINTFX>(curveStart + kCurveHeader + i * sizeof(POINTFX)));
            }
            out.curves.push_back(curve);
            inside += curveBytes;
        }
        polygon.curveCount = static_cast<uint32_t>(out.curves.size()) - polygon.firstCurve;
        out.polygons.push_back(polygon);
        at += bytes;
    }
}

}  // namespace gdi
}  // namespace platform
}  // namespace ulogui
