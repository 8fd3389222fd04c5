#include "platform/linux/SectionText.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/linux/LevelBlend.h"
#include "platform/linux/TextLines.h"

namespace ulogui {
namespace platform {
namespace ft {

namespace {

// A rectangle in 64-bit coordinates, so that positions far outside the section cannot overflow
// before they are clipped.
struct Span64 {
    int64_t left, top, right, bottom;
};

// The part of r inside clip; empty (left >= right or top >= bottom) when none.
ULORect ClipTo(const Span64& r, const ULORect& clip) {
    ULORect out;
    out.left = static_cast<int32_t>(std::max<int64_t>(r.left, clip.left));
    out.top = static_cast<int32_t>(std::max<int64_t>(r.top, clip.top));
    out.right = static_cast<int32_t>(std::min<int64_t>(r.right, clip.right));
    out.bottom = static_cast<int32_t>(std::min<int64_t>(r.bottom, clip.bottom));
    return out;
}

// Pixels of the section that lines and boxes cover: the colour, and alpha 0.
class CoverageWrite {
public:
    explicit CoverageWrite(const CLR& c) : colour_{c.blue, c.green, c.red} {}

    void Solid(unsigned char* p) const {
        std::memcpy(p, colour_, 3);
        p[3] = 0;
    }

private:
    unsigned char colour_[3];
};

void FillSolid(const raster::RasterView& section, const ULORect& area, const CoverageWrite& write) {
    for (int y = area.top; y < area.bottom; ++y) {
        unsigned char* p = section.Pixel(area.left, y);
        for (int x = area.left; x < area.right; ++x, p += 4) {
            write.Solid(p);
        }
    }
}

// Blends the levels of a box whose top-left pixel lies at (boxLeft, boxTop), stride levels a row, over
// `area`, which lies inside both the box and the section.
void BlendLevels(const raster::RasterView& section, const ULORect& area, const uint8_t* levels,
                 int64_t stride, int64_t boxLeft, int64_t boxTop, const LevelBlend& blend) {
    for (int y = area.top; y < area.bottom; ++y) {
        blend.Row(section.Pixel(area.left, y), levels + (y - boxTop) * stride + (area.left - boxLeft),
                  area.right - area.left);
    }
}

class LinePainter {
public:
    LinePainter(const raster::RasterView& section, const PlatformFont& font, const TextPaint& paint,
                const ULORect& clip)
        : section_(section),
          font_(font),
          paint_(paint),
          clip_(clip),
          metrics_(font.GetMetrics()),
          text_(paint.text),
          background_(paint.background),
          blend_(paint.text) {}

    const FontMetrics& Metrics() const { return metrics_; }

    // Draws one prepared line whose cell starts at row top, aligned within [left, right).
    void Draw(const DrawnLine& line, int64_t top, int64_t left, int64_t right, unsigned format) {
        images_.resize(line.codes.size());
        font_.GetGlyphImages(line.codes.data(), line.codes.size(), images_.data());
        int64_t width = 0;
        for (const GlyphImagePtr& image : images_) {
            width += image->advance;
        }
        // Centring divides as C does, truncating toward zero.
        const int64_t x = (format & drawtext::kRight) != 0    ? right - width
                          : (format & drawtext::kCenter) != 0 ? (left + right - width) / 2
                                                              : left;
        if (paint_.mode == BackgroundMode::kOpaque) {
            FillSolid(section_, ClipTo({x, top, x + width, top + metrics_.height}, clip_), background_);
        }
        const int64_t baseline = top + metrics_.ascent;
        int64_t pen = x;
        int64_t markedPen = 0;
        for (size_t i = 0; i < images_.size(); ++i) {
            if (static_cast<std::ptrdiff_t>(i) == line.marked) {
                markedPen = pen;
            }
            DrawGlyph(line.codes[i], *images_[i], pen, baseline);
            pen += images_[i]->advance;
        }
        if (metrics_.underlined) {
            DrawStroke(x, width, baseline, metrics_.underlinePosition, metrics_.underlineThickness);
        }
        if (metrics_.struckOut) {
            DrawStroke(x, width, baseline, metrics_.strikeOutPosition, metrics_.strikeOutThickness);
        }
        if (line.marked >= 0) {
            // One row under the baseline, one pixel shorter than the marked character's advance.
            const int64_t row = baseline + 1;
            const int64_t end = markedPen + images_[static_cast<size_t>(line.marked)]->advance - 1;
            FillSolid(section_, ClipTo({markedPen, row, end, row + 1}, clip_), text_);
        }
    }

private:
    void DrawGlyph(uint32_t code, const GlyphImage& image, int64_t pen, int64_t baseline) {
        if (image.width <= 0 || image.height <= 0) {
            return;
        }
        const int64_t boxLeft = pen + image.left;
        const int64_t boxTop = baseline - image.top;
        const ULORect area = ClipTo({boxLeft, boxTop, boxLeft + image.width, boxTop + image.height}, clip_);
        if (area.IsEmpty()) {
            return;
        }
        if (image.kept) {
            if (image.levels.size() == static_cast<size_t>(image.width) * static_cast<size_t>(image.height)) {
                BlendLevels(section_, area, image.levels.data(), image.width, boxLeft, boxTop, blend_);
            }
            return;
        }
        // Only the part that shows of a glyph too large to keep, in the glyph's own coordinates.
        const ULORect window(static_cast<int32_t>(area.left - pen), static_cast<int32_t>(area.top - baseline),
                             static_cast<int32_t>(area.right - pen),
                             static_cast<int32_t>(area.bottom - baseline));
        if (font_.RenderGlyphWindow(code, window, window_) &&
            window_.size() == static_cast<size_t>(window.Width()) * static_cast<size_t>(window.Height())) {
            BlendLevels(section_, area, window_.data(), window.Width(), area.left, area.top, blend_);
        }
    }

    // A line of the font's styles: its top row is the baseline less the position and half the
    // thickness.
    void DrawStroke(int64_t x, int64_t width, int64_t baseline, int32_t position, int32_t thickness) {
        const int64_t top = baseline - position - thickness / 2;
        FillSolid(section_, ClipTo({x, top, x + width, top + thickness}, clip_), text_);
    }

    const raster::RasterView& section_;
    const PlatformFont& font_;
    const TextPaint& paint_;
    ULORect clip_;
    FontMetrics metrics_;
    CoverageWrite text_;
    CoverageWrite background_;
    LevelBlend blend_;
    std::vector<GlyphImagePtr> images_;
    std::vector<uint8_t> window_;
};

}  // namespace

int DrawTextOnSection(const raster::RasterView& section, const PlatformFont& font, const TextPaint& paint,
                      const wchar_t* text, size_t length, const ULORect& rect, unsigned format) {
    if (text == nullptr || length == 0 || section.IsEmpty() || section.BytesPerPixel() != 4) {
        return 0;
    }
    ULORect clip = rect;
    if (!section.Clip(clip)) {
        clip = ULORect();  // laid out, nothing drawn
    }
    LinePainter painter(section, font, paint, clip);
    const int64_t lineHeight = painter.Metrics().height;
    const bool prefixes = (format & drawtext::kNoPrefix) == 0;
    DrawnLine line;
    int64_t top = rect.top;
    size_t pos = 0;
    int64_t lines = 0;
    while (pos < length) {
        const LineSpan span = NextLine(text, length, pos);
        PrepareLine(text + span.begin, text + span.end, prefixes, line);
        painter.Draw(line, top, rect.left, rect.right, format);
        ++lines;
        top += lineHeight;
        pos = span.next;
        // Drawing stops after the first line that reaches past the bottom.
        if (top > rect.bottom) {
            break;
        }
    }
    return static_cast<int>(std::min<int64_t>(lines * lineHeight, INT32_MAX));
}

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
