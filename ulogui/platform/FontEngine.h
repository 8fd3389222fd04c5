#pragma once
// The platform font engine as the portable font code sees it: a few semantic questions
// (which faces exist and for which character sets, make a font, how wide are its characters,
// which pairs does it kern) rather than an emulation of a windowing system's font calls. The
// portable code keeps the algorithms (face choice, width tables); a backend only answers.
//
// HFONT (ulogui/PlatformTypes.h) points to a PlatformFont. Handles are registered here so that
// deleting a handle twice, or using one after its deletion, is a harmless no-op, as it is with
// the handles of a windowing system, instead of touching freed memory.
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "ulogui/Geometry.h"
#include "ulogui/PlatformTypes.h"
#include "ulolib/String.h"

namespace ulogui {
namespace platform {

// Character sets as fonts declare them (the LOGFONT lfCharSet values).
namespace charset {
constexpr uint8_t kAnsi = 0;
constexpr uint8_t kDefault = 1;  // in an enumeration query: every character set
constexpr uint8_t kSymbol = 2;
constexpr uint8_t kShiftJis = 128;
constexpr uint8_t kHangul = 129;
constexpr uint8_t kJohab = 130;
constexpr uint8_t kGb2312 = 134;
constexpr uint8_t kChineseBig5 = 136;
constexpr uint8_t kGreek = 161;
constexpr uint8_t kTurkish = 162;
constexpr uint8_t kVietnamese = 163;
constexpr uint8_t kHebrew = 177;
constexpr uint8_t kArabic = 178;
constexpr uint8_t kBaltic = 186;
constexpr uint8_t kRussian = 204;
constexpr uint8_t kThai = 222;
constexpr uint8_t kEastEurope = 238;
}  // namespace charset

// The pitch-and-family byte: pitch in bits 0-1, family in bits 4-7.
namespace pitch {
constexpr uint8_t kDefault = 0;
constexpr uint8_t kFixed = 1;
constexpr uint8_t kVariable = 2;
}  // namespace pitch
namespace family {
constexpr uint8_t kDontCare = 0x00;
constexpr uint8_t kRoman = 0x10;
constexpr uint8_t kSwiss = 0x20;
constexpr uint8_t kModern = 0x30;
constexpr uint8_t kScript = 0x40;
constexpr uint8_t kDecorative = 0x50;
}  // namespace family

// One report of a face enumeration.
struct FaceInfo {
    ULOString faceName;          // the family name the face is created by
    uint8_t charSet = 0;         // the character set this report is for
    uint8_t pitchAndFamily = 0;  // pitch | family, as a font description states it (0x22 for a sans face)
    bool trueType = false;       // outline face (TrueType or OpenType), not a raster or vector face
};

// What a font is made from; the meaning of each field is that of a LOGFONT.
struct FontRequest {
    int32_t height = 0;  // > 0: cell height in pixels; < 0: character height (em size); 0: a default size
    int32_t width = 0;   // the remaining geometry fields are carried but not interpreted by this engine
    int32_t escapement = 0;
    int32_t orientation = 0;
    int32_t weight = 400;  // 0 means "don't care" (normal)
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    uint8_t charSet = charset::kAnsi;
    uint8_t outPrecision = 0;
    uint8_t clipPrecision = 0;
    uint8_t quality = 0;
    uint8_t pitchAndFamily = 0;
    ULOString faceName;  // a face that does not exist is replaced by the engine's best substitute
};

// Vertical and summary metrics of a created font, in pixels.
struct FontMetrics {
    int32_t height = 0;  // ascent + descent: the line step
    int32_t ascent = 0;
    int32_t descent = 0;
    int32_t internalLeading = 0;
    int32_t externalLeading = 0;
    int32_t averageCharWidth = 0;
    int32_t maxCharWidth = 0;
    int32_t weight = 0;
    uint32_t pixelsPerEm = 0;
    uint8_t pitchAndFamily = 0;
    uint8_t charSet = 0;
    bool italic = false;
    bool underlined = false;
    bool struckOut = false;
    // The lines text output draws for the underline and strike-out styles: the distance of the
    // line's centre above the baseline (negative below it) and the line's thickness, at least 1.
    int32_t underlinePosition = 0;
    int32_t underlineThickness = 1;
    int32_t strikeOutPosition = 0;
    int32_t strikeOutThickness = 1;
};

// A kerning pair: the amount in pixels is added to the advance of first when second follows it.
struct KerningPair {
    uint16_t first = 0;
    uint16_t second = 0;
    int32_t amount = 0;
};

// A glyph outline as the platform's native outline records: closed polygons, each a start point
// followed by curve records, in 16.16 fixed-point pixels with y pointing up, relative to the glyph's
// origin, hinted for the font's size. The vectors are kept flat so that one outline object can be
// refilled call after call without allocating.
enum class CurveKind : uint8_t {
    kLine = 1,       // every point on the outline (TT_PRIM_LINE)
    kQuadratic = 2,  // control points, then the on-curve point that ends the run (TT_PRIM_QSPLINE)
    kCubic = 3,      // two control points and the end point (TT_PRIM_CSPLINE)
};
struct GlyphOutline {
    struct Curve {
        CurveKind kind = CurveKind::kLine;
        uint32_t firstPoint = 0;  // into points
        uint32_t pointCount = 0;
    };
    struct Polygon {
        POINTFX start;
        uint32_t firstCurve = 0;  // into curves
        uint32_t curveCount = 0;
    };
    std::vector<Polygon> polygons;
    std::vector<Curve> curves;
    std::vector<POINTFX> points;

    void Clear() {
        polygons.clear();
        curves.clear();
        points.clear();
    }
};

// The metrics of one glyph as the platform's outline call reports them, in pixels.
struct GlyphMetrics {
    uint32_t blackBoxX = 0;  // the hinted outline's box, rounded outward, at least 1 x 1
    uint32_t blackBoxY = 0;
    int32_t originX = 0;  // the box's upper-left corner from the glyph's origin, y up
    int32_t originY = 0;
    int32_t cellIncX = 0;  // the advance (as GetCharAdvances gives it)
    int32_t cellIncY = 0;
};

// A glyph as text output draws it: its advance and its grey coverage. Coverage comes in 17 levels,
// 0 (nothing) to kFullCoverage, one byte a pixel, rows top-down over the glyph's box. A glyph too
// large to keep whole (see GlyphImage::kMaxKeptPixels) has its box but no levels; the parts of it
// that are seen are rendered on demand with RenderGlyphWindow.
struct GlyphImage {
    static constexpr uint8_t kFullCoverage = 16;
    static constexpr int64_t kMaxKeptPixels = 128 * 1024;

    int32_t advance = 0;  // whole pixels, as GetCharAdvances gives them
    int32_t left = 0;     // the box's first column, from the pen position
    int32_t top = 0;      // the box's first row, in rows above the baseline
    int32_t width = 0;
    int32_t height = 0;
    bool kept = true;  // false: too large to keep, levels is empty
    std::vector<uint8_t> levels;

    // The box in pixels from the pen position with y pointing down (the baseline is row 0).
    ULORect Box() const {
        return ULORect(left, -top, static_cast<int32_t>(static_cast<int64_t>(left) + width),
                       static_cast<int32_t>(static_cast<int64_t>(-top) + height));
    }
};
using GlyphImagePtr = std::shared_ptr<const GlyphImage>;

// A font made by the engine. Member calls of one font may come from any thread but not at once
// with calls that change it; the engine serialises its own shared state.
class PlatformFont {
public:
    virtual ~PlatformFont();
    // The family name actually used (after substitution).
    virtual ULOString GetFaceName() const = 0;
    virtual const FontRequest& GetRequest() const = 0;
    virtual FontMetrics GetMetrics() const = 0;
    // Integer advance widths of the code points first..last (inclusive) into widths[0..last-first].
    // A code point the face lacks gets the width of the face's missing-character glyph.
    virtual void GetCharAdvances(uint32_t first, uint32_t last, int32_t* widths) const = 0;
    // The face's kerning pairs scaled to this font's size, in the order the face stores them.
    virtual std::vector<KerningPair> GetKerningPairs() const = 0;
    // The amount of the first of GetKerningPairs() that kerns first before second, else 0. This
    // default searches the pairs; engines answer from an index of their own.
    virtual int32_t GetKerningAmount(uint32_t first, uint32_t second) const;

    // Glyphs, by code point; a code point the face lacks stands for the face's missing-character
    // glyph. They are the glyphs text output draws: the same size, hinting and synthesised styles.
    // The outline of a glyph, replacing out's content; false (and out empty) when the glyph has no
    // outline data, as a space has none.
    virtual bool GetGlyphOutline(uint32_t codePoint, GlyphOutline& out) const = 0;
    // False (and out zeroed) when the glyph cannot be loaded at all.
    virtual bool GetGlyphMetrics(uint32_t codePoint, GlyphMetrics& out) const = 0;

    // Text output: the images of count code points into out[0..count-1], never null. Images are
    // immutable and may be shared (a backend caches them). This default gives the advances of
    // GetCharAdvances and no coverage, so that such a font lays text out without drawing glyphs.
    virtual void GetGlyphImages(const uint32_t* codePoints, size_t count, GlyphImagePtr* out) const;
    // The coverage of `window` (pixels from the pen position, y down from the baseline) of a glyph
    // that was not kept, into levels (window width x height, rows top-down). False, with levels
    // empty, when there is none to give; the default has none.
    virtual bool RenderGlyphWindow(uint32_t codePoint, const ULORect& window,
                                   std::vector<uint8_t>& levels) const;
};

class FontEngine {
public:
    virtual ~FontEngine();
    // Reports the installed faces that support charSet (every supported character set of each
    // face once when charSet is charset::kDefault), in the engine's documented order, until visit
    // returns false.
    virtual void EnumerateFaces(uint8_t charSet, const std::function<bool(const FaceInfo&)>& visit) = 0;
    // Makes a font; null only when the platform has no usable face at all.
    virtual std::shared_ptr<PlatformFont> CreateFontObject(const FontRequest& request) = 0;
};

// The process-wide engine: the one installed with SetFontEngine, else the backend's default,
// made on first use. Callers hold the pointer for as long as they use the engine, so that another
// thread installing an engine meanwhile does not pull it away.
std::shared_ptr<FontEngine> GetFontEngine();
// Installs an engine (null restores the default on next use). Fonts made earlier keep theirs.
void SetFontEngine(std::shared_ptr<FontEngine> engine);
// Implemented by the backend.
std::shared_ptr<FontEngine> CreateDefaultFontEngine();

// Handles.
HFONT CreateFontHandle(const FontRequest& request);
// Releases the font behind a handle; false for null or for a handle already deleted.
bool DeleteFontHandle(HFONT font);
// The font behind a live handle, or null.
std::shared_ptr<PlatformFont> ResolveFont(HFONT font);

// Font selection into a device context, kept beside the devices (keyed by the handle) so that a
// device needs no notion of fonts. A null HDC stands for the screen context. Selecting a null font
// clears the context's selection, so select/restore pairs leave nothing behind.
HFONT SelectFont(HDC dc, HFONT font);  // returns the font selected before (null when none)
HFONT GetSelectedFont(HDC dc);
// Advances of the font selected into dc; false (and zeros) when none is selected or it is gone.
bool GetCharAdvances(HDC dc, uint32_t first, uint32_t last, int32_t* widths);

}  // namespace platform
}  // namespace ulogui
