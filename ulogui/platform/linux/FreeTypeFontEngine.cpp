#include "platform/linux/FreeTypeFontEngine.h"

#include <ft2build.h>
#include FT_DRIVER_H
#include FT_FREETYPE_H
#include FT_MODULE_H
#include FT_OUTLINE_H
#include FT_SIZES_H
#include FT_TRUETYPE_TABLES_H
#include FT_TRUETYPE_TAGS_H

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/linux/FaceCatalogue.h"
#include "platform/linux/GlyphCache.h"
#include "platform/linux/GlyphRaster.h"
#include "platform/linux/NativeOutline.h"
#include "platform/linux/SfntFacts.h"
#include "toolslib/MultiProc.h"
#include "ulolib/Interruptor.h"

namespace ulogui {
namespace platform {
namespace ft {

// Set before any face is opened: the classic TrueType interpreter, whose hinted advances the Windows
// engine reports. If a FreeType build lacks it, the monochrome load target of the newer one comes
// closest (it differs on a handful of composite glyphs).
void UseClassicInterpreter(FT_Library ft) {
    FT_UInt classic = TT_INTERPRETER_VERSION_35;
    FT_Property_Set(ft, "truetype", "interpreter-version", &classic);
}

// Hinted for monochrome output, as the classic engine measures; never auto-hinted, which that
// engine cannot do.
constexpr FT_Int32 kAdvanceLoadFlags =
    FT_LOAD_TARGET_MONO | FT_LOAD_NO_AUTOHINT | FT_LOAD_IGNORE_GLOBAL_ADVANCE_WIDTH;

// Glyphs for outlines and metrics: the same hinting, as outlines.
constexpr FT_Int32 kGlyphLoadFlags = kAdvanceLoadFlags | FT_LOAD_NO_BITMAP;

// The hinted advance in whole pixels of a glyph at the face's active size; 0 when it cannot be
// loaded.
int32_t LoadHintedAdvance(FT_Face face, FT_UInt glyph) {
    if (FT_Load_Glyph(face, glyph, kAdvanceLoadFlags) != 0) {
        return 0;
    }
    return static_cast<int32_t>((face->glyph->metrics.horiAdvance + 63) >> 6);
}

// A second opening of a face file in a FreeType library of its own, so that another thread can
// hint glyphs while the engine's library stays locked by the thread that asked. Its results are
// those of the engine's face: same file, same interpreter, same size, same load flags.
class HelperFace {
public:
    HelperFace(const std::string& path, int index) {
        if (FT_Init_FreeType(&ft_) != 0) {
            ft_ = nullptr;
            return;
        }
        UseClassicInterpreter(ft_);
        if (FT_New_Face(ft_, path.c_str(), index, &face_) != 0) {
            face_ = nullptr;
        }
    }
    ~HelperFace() {
        if (ft_) {
            FT_Done_FreeType(ft_);  // closes the face too
        }
    }
    HelperFace(const HelperFace&) = delete;
    HelperFace& operator=(const HelperFace&) = delete;

    // The face set to ppem, or null when it could not be opened or sized.
    FT_Face AtSize(uint32_t ppem) {
        if (!face_) {
            return nullptr;
        }
        if (ppem != ppem_) {
            if (FT_Set_Pixel_Sizes(face_, 0, ppem) != 0) {
                ppem_ = 0;
                return nullptr;
            }
            ppem_ = ppem;
        }
        return face_;
    }

private:
    FT_Library ft_ = nullptr;
    FT_Face face_ = nullptr;
    uint32_t ppem_ = 0;
};

// One FreeType library per engine. FreeType objects of one library are not thread-safe, so every
// use of the library, its faces and sizes holds the one lock.
struct Library {
    FT_Library ft = nullptr;
    std::recursive_mutex mutex;
    Library() {
        if (FT_Init_FreeType(&ft) != 0) {
            ft = nullptr;
            return;
        }
        UseClassicInterpreter(ft);
    }
    ~Library() {
        if (ft) {
            FT_Done_FreeType(ft);
        }
    }
};

// Serial numbers of open faces, the glyph cache's name for them: an address could be reused by the
// next face opened.
uint64_t NextFaceSerial() {
    static std::atomic<uint64_t> next{1};
    return next.fetch_add(1, std::memory_order_relaxed);
}

// The lines of the underline and strike-out styles in font units: the 'post' table's underline as
// the table has it and the OS/2 strike-out, else half the ascent and the underline's thickness.
// Each line's top is the baseline less its position less half its thickness, as GDI places them.
struct StyleLines {
    int64_t underlinePosition = 0;
    int64_t underlineThickness = 0;
    int64_t strikeOutPosition = 0;
    int64_t strikeOutThickness = 0;
};

// An open face file shared by every font made from it, with what is the same for all of them:
// design values, hinted advances per pixel size, and the face's kerning pairs.
class SharedFace {
public:
    SharedFace(std::shared_ptr<Library> library, FT_Face face, std::string path, int index)
        : library_(std::move(library)),
          face_(face),
          path_(std::move(path)),
          index_(index),
          serial_(NextFaceSerial()) {
        if (!face_->charmap) {
            // Symbol faces map their characters at U+F000..U+F0FF only.
            if (FT_Select_Charmap(face_, FT_ENCODING_MS_SYMBOL) == 0) {
                symbolMap_ = true;
            }
        }
        design_.unitsPerEm = face_->units_per_EM;
        const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face_, FT_SFNT_OS2));
        const auto* hhea = static_cast<const TT_HoriHeader*>(FT_Get_Sfnt_Table(face_, FT_SFNT_HHEA));
        const bool os2Valid = os2 && os2->version != 0xFFFF;
        if (os2Valid && (os2->usWinAscent != 0 || os2->usWinDescent != 0)) {
            design_.winAscent = os2->usWinAscent;
            design_.winDescent = os2->usWinDescent;
        } else {
            // The horizontal header's values (FreeType's own where the face has no such header).
            const FT_Short ascender = hhea ? hhea->Ascender : face_->ascender;
            const FT_Short descender = hhea ? hhea->Descender : face_->descender;
            design_.winAscent = static_cast<uint32_t>(std::max<int32_t>(ascender, 0));
            design_.winDescent = static_cast<uint32_t>(std::max<int32_t>(-descender, 0));
        }
        if (os2Valid) {
            averageWidth_ = os2->xAvgCharWidth;
        }
        vdmx_ = ReadVdmx();
        if (hhea) {
            const int64_t hheaCell = static_cast<int64_t>(hhea->Ascender) - hhea->Descender;
            const int64_t winCell = static_cast<int64_t>(design_.winAscent) + design_.winDescent;
            externalLeadingUnits_ = std::max<int64_t>(0, hhea->Line_Gap - (winCell - hheaCell));
        }
        maxWidthUnits_ = static_cast<int64_t>(face_->bbox.xMax) - face_->bbox.xMin;
        // Not FreeType's underline_position: that is the post value lowered by half the thickness
        // already (the line's centre), and GDI takes away half the thickness itself.
        const auto* post = static_cast<const TT_Postscript*>(FT_Get_Sfnt_Table(face_, FT_SFNT_POST));
        lines_.underlinePosition =
            post ? post->underlinePosition : face_->underline_position + face_->underline_thickness / 2;
        lines_.underlineThickness = post ? post->underlineThickness : face_->underline_thickness;
        if (os2Valid && os2->yStrikeoutSize > 0) {
            lines_.strikeOutPosition = os2->yStrikeoutPosition;
            lines_.strikeOutThickness = os2->yStrikeoutSize;
        } else {
            lines_.strikeOutPosition = design_.winAscent / 2;
            lines_.strikeOutThickness = face_->underline_thickness;
        }
    }
    ~SharedFace() {
        GlyphCache::Instance().ForgetFace(serial_);
        std::lock_guard<std::recursive_mutex> lock(library_->mutex);
        FT_Done_Face(face_);
    }
    SharedFace(const SharedFace&) = delete;
    SharedFace& operator=(const SharedFace&) = delete;

    FT_Face Face() const { return face_; }
    Library& Lib() const { return *library_; }
    const VerticalDesign& Design() const { return design_; }
    const VdmxGroup& Vdmx() const { return vdmx_; }
    int64_t AverageWidthUnits() const { return averageWidth_; }
    int64_t MaxWidthUnits() const { return maxWidthUnits_; }
    int64_t ExternalLeadingUnits() const { return externalLeadingUnits_; }
    const StyleLines& Lines() const { return lines_; }
    uint64_t Serial() const { return serial_; }

    FT_UInt GlyphOf(uint32_t codePoint) const {
        if (symbolMap_ && codePoint < 0x100) {
            codePoint |= 0xF000;
        }
        return FT_Get_Char_Index(face_, codePoint);
    }

    // The advances at the active size (ppem) of the glyphs of a run of code points, plus extra; each
    // glyph is hinted once per size, however many code points map to it. The caller holds the
    // library lock and has activated a size of that ppem.
    void HintedAdvances(uint32_t ppem, std::vector<FT_UInt> glyphs, int32_t extra, int32_t* widths) {
        std::vector<int32_t>& table = advances_[ppem];
        if (table.empty()) {
            table.assign(static_cast<size_t>(std::max<FT_Long>(face_->num_glyphs, 1)), kUnknown);
        }
        std::vector<FT_UInt> missing;
        for (FT_UInt& glyph : glyphs) {
            if (glyph >= table.size()) {
                glyph = 0;
            }
            if (table[glyph] == kUnknown) {
                table[glyph] = kPending;
                missing.push_back(glyph);
            }
        }
        HintMissing(ppem, table, missing);
        for (size_t i = 0; i < glyphs.size(); ++i) {
            widths[i] = table[glyphs[i]] + extra;
        }
    }

    // Kerning pairs in font units with their glyphs turned into the lowest BMP code point that maps
    // to each; pairs with an unmapped glyph are dropped. Read once. Caller holds the library lock.
    const std::vector<KerningPair>& UnscaledKerning() {
        if (kerningRead_) {
            return kerning_;
        }
        kerningRead_ = true;
        FT_ULong length = 0;
        if (FT_Load_Sfnt_Table(face_, TTAG_kern, 0, nullptr, &length) != 0 || length == 0) {
            return kerning_;
        }
        std::vector<uint8_t> table(length);
        if (FT_Load_Sfnt_Table(face_, TTAG_kern, 0, table.data(), &length) != 0) {
            return kerning_;
        }
        const std::vector<GlyphKerning> pairs = ParseKernTable(table.data(), table.size());
        if (pairs.empty()) {
            return kerning_;
        }
        constexpr uint32_t kUnmapped = 0xFFFFFFFFu;
        std::vector<uint32_t> codeOfGlyph(static_cast<size_t>(std::max<FT_Long>(face_->num_glyphs, 1)),
                                          kUnmapped);
        FT_UInt glyph = 0;
        for (FT_ULong code = FT_Get_First_Char(face_, &glyph); glyph != 0;
             code = FT_Get_Next_Char(face_, code, &glyph)) {
            if (code <= 0xFFFF && glyph < codeOfGlyph.size() && code < codeOfGlyph[glyph]) {
                codeOfGlyph[glyph] = static_cast<uint32_t>(code);
            }
        }
        for (const GlyphKerning& pair : pairs) {
            if (pair.left >= codeOfGlyph.size() || pair.right >= codeOfGlyph.size()) {
                continue;
            }
            const uint32_t first = codeOfGlyph[pair.left];
            const uint32_t second = codeOfGlyph[pair.right];
            if (first != kUnmapped && second != kUnmapped) {
                kerning_.push_back({static_cast<uint16_t>(first), static_cast<uint16_t>(second), pair.value});
            }
        }
        return kerning_;
    }

    // The unscaled amount of the first pair that kerns first before second (code points); false
    // when there is none. The index is built on first use. Caller holds the library lock.
    bool FindKerning(uint32_t first, uint32_t second, int32_t& amount) {
        if (!kerningIndexed_) {
            kerningIndexed_ = true;
            const std::vector<KerningPair>& pairs = UnscaledKerning();
            kerningIndex_.reserve(pairs.size());
            for (const KerningPair& pair : pairs) {
                kerningIndex_.emplace(KerningKey(pair.first, pair.second), pair.amount);  // the first stays
            }
        }
        if (first > 0xFFFF || second > 0xFFFF) {
            return false;
        }
        const auto found = kerningIndex_.find(KerningKey(first, second));
        if (found == kerningIndex_.end()) {
            return false;
        }
        amount = found->second;
        return true;
    }

private:
    static constexpr int32_t kUnknown = -1;
    static constexpr int32_t kPending = -2;
    // Below this many new glyphs a second face costs more than it saves (the first CJK font of a
    // size hints about 16,000).
    static constexpr size_t kParallelGlyphs = 2048;
    static constexpr size_t kGlyphsPerChunk = 256;

    // The face's VDMX group for square pixels (FreeType checks the table's length against the file).
    VdmxGroup ReadVdmx() const {
        FT_ULong length = 0;
        if (FT_Load_Sfnt_Table(face_, TTAG_VDMX, 0, nullptr, &length) != 0 || length == 0) {
            return {};
        }
        std::vector<uint8_t> table(length);
        if (FT_Load_Sfnt_Table(face_, TTAG_VDMX, 0, table.data(), &length) != 0) {
            return {};
        }
        return ParseVdmxTable(table.data(), table.size());
    }

    // Hints each of the distinct glyphs missing and stores its advance in table. Large batches are
    // shared by two threads, each with a face of its own: FreeType faces must not be used by two
    // threads at once, and the engine's face is used only by whichever thread holds it.
    void HintMissing(uint32_t ppem, std::vector<int32_t>& table, const std::vector<FT_UInt>& missing) {
        namespace mp = tools::multiproc;
        FT_Face second = nullptr;
        if (missing.size() >= kParallelGlyphs && mp::GetOptimizedMaxJobThreadAllowed() > 1) {
            if (!helper_) {
                helper_ = std::make_unique<HelperFace>(path_, index_);
            }
            second = helper_->AtSize(ppem);
        }
        if (!second) {
            for (FT_UInt glyph : missing) {
                table[glyph] = LoadHintedAdvance(face_, glyph);
            }
            return;
        }
        std::mutex idleLock;
        std::vector<FT_Face> idle = {face_, second};  // never empty: at most two threads run
        const int chunks = static_cast<int>((missing.size() + kGlyphsPerChunk - 1) / kGlyphsPerChunk);
        const ULONullInterruptor never;
        mp::InterruptibleProgressingLoopIter loop(chunks, never, nullptr);
        mp::ParallelSection section(loop, [&](int chunk) {
            FT_Face face = nullptr;
            {
                std::lock_guard<std::mutex> lock(idleLock);
                face = idle.back();
                idle.pop_back();
            }
            const size_t begin = static_cast<size_t>(chunk) * kGlyphsPerChunk;
            const size_t end = std::min(missing.size(), begin + kGlyphsPerChunk);
            for (size_t i = begin; i < end; ++i) {
                table[missing[i]] = LoadHintedAdvance(face, missing[i]);
            }
            std::lock_guard<std::mutex> lock(idleLock);
            idle.push_back(face);
        });
        try {
            mp::RunParallelSection(section, 2);
        } catch (...) {
            for (FT_UInt glyph : missing) {
                if (table[glyph] == kPending) {
                    table[glyph] = kUnknown;  // asked again next time
                }
            }
            throw;
        }
    }

    std::shared_ptr<Library> library_;  // outlives the face
    FT_Face face_;
    std::string path_;
    int index_;
    uint64_t serial_;
    StyleLines lines_;
    std::unique_ptr<HelperFace> helper_;  // opened on the first large batch, then kept
    bool symbolMap_ = false;
    VerticalDesign design_;
    VdmxGroup vdmx_;
    int64_t averageWidth_ = 0;
    int64_t maxWidthUnits_ = 0;
    int64_t externalLeadingUnits_ = 0;
    std::map<uint32_t, std::vector<int32_t>> advances_;
    bool kerningRead_ = false;
    std::vector<KerningPair> kerning_;
    static uint32_t KerningKey(uint32_t first, uint32_t second) { return (first << 16) | second; }
    bool kerningIndexed_ = false;
    std::unordered_map<uint32_t, int32_t> kerningIndex_;
};

namespace {

class FreeTypeFont : public PlatformFont {
public:
    FreeTypeFont(std::shared_ptr<SharedFace> face, FT_Size size, uint32_t ppem, bool fakeBold,
                 bool fakeItalic, const FontRequest& request, ULOString faceName, const FontMetrics& metrics)
        : face_(std::move(face)),
          size_(size),
          ppem_(ppem),
          fakeBold_(fakeBold),
          fakeItalic_(fakeItalic),
          glyphStyle_((fakeBold ? glyphstyle::kBold : 0) | (fakeItalic ? glyphstyle::kItalic : 0) |
                      (GreyAtSize(face_->Face(), ppem) ? glyphstyle::kGrey : 0)),
          request_(request),
          faceName_(std::move(faceName)),
          metrics_(metrics) {}
    ~FreeTypeFont() override {
        std::lock_guard<std::recursive_mutex> lock(face_->Lib().mutex);
        FT_Done_Size(size_);
    }
    FreeTypeFont(const FreeTypeFont&) = delete;
    FreeTypeFont& operator=(const FreeTypeFont&) = delete;

    ULOString GetFaceName() const override { return faceName_; }
    const FontRequest& GetRequest() const override { return request_; }
    FontMetrics GetMetrics() const override { return metrics_; }

    void GetCharAdvances(uint32_t first, uint32_t last, int32_t* widths) const override {
        if (last < first) {
            return;
        }
        std::lock_guard<std::recursive_mutex> lock(face_->Lib().mutex);
        FT_Activate_Size(size_);
        std::vector<FT_UInt> glyphs(static_cast<size_t>(last - first) + 1);
        for (size_t i = 0; i < glyphs.size(); ++i) {
            glyphs[i] = face_->GlyphOf(static_cast<uint32_t>(first + i));
        }
        // A synthesised bold face is one pixel wider per glyph, as the classic engine makes it.
        face_->HintedAdvances(ppem_, std::move(glyphs), fakeBold_ ? 1 : 0, widths);
    }

    std::vector<KerningPair> GetKerningPairs() const override {
        std::lock_guard<std::recursive_mutex> lock(face_->Lib().mutex);
        std::vector<KerningPair> pairs = face_->UnscaledKerning();
        const uint32_t upem = face_->Design().unitsPerEm;
        for (KerningPair& pair : pairs) {
            pair.amount = ScaleKerning(pair.amount, ppem_, upem);
        }
        return pairs;
    }

    int32_t GetKerningAmount(uint32_t first, uint32_t second) const override {
        std::lock_guard<std::recursive_mutex> lock(face_->Lib().mutex);
        int32_t amount = 0;
        if (!face_->FindKerning(first, second, amount)) {
            return 0;
        }
        return ScaleKerning(amount, ppem_, face_->Design().unitsPerEm);
    }

    bool GetGlyphOutline(uint32_t codePoint, GlyphOutline& out) const override {
        std::lock_guard<std::recursive_mutex> lock(face_->Lib().mutex);
        out.Clear();
        const FT_GlyphSlot slot = LoadGlyph(codePoint);
        if (!slot) {
            return false;
        }
        NativeOutlineRecords(slot->outline, out);
        return !out.polygons.empty();
    }

    bool GetGlyphMetrics(uint32_t codePoint, GlyphMetrics& out) const override {
        std::lock_guard<std::recursive_mutex> lock(face_->Lib().mutex);
        out = GlyphMetrics();
        const FT_GlyphSlot slot = LoadGlyph(codePoint);
        if (!slot) {
            return false;
        }
        FT_BBox box;
        FT_Outline_Get_CBox(&slot->outline, &box);
        const int64_t left = FloorPixels(box.xMin);
        const int64_t bottom = FloorPixels(box.yMin);
        const int64_t right = CeilPixels(box.xMax);
        const int64_t top = CeilPixels(box.yMax);
        out.blackBoxX = static_cast<uint32_t>(std::clamp<int64_t>(right - left, 1, INT32_MAX));
        out.blackBoxY = static_cast<uint32_t>(std::clamp<int64_t>(top - bottom, 1, INT32_MAX));
        out.originX = static_cast<int32_t>(std::clamp<int64_t>(left, INT32_MIN, INT32_MAX));
        out.originY = static_cast<int32_t>(std::clamp<int64_t>(top, INT32_MIN, INT32_MAX));
        out.cellIncX = static_cast<int32_t>((slot->metrics.horiAdvance + 63) >> 6) + (fakeBold_ ? 1 : 0);
        return true;
    }

    void GetGlyphImages(const uint32_t* codePoints, size_t count, GlyphImagePtr* out) const override {
        GlyphCache& cache = GlyphCache::Instance();
        std::lock_guard<std::recursive_mutex> lock(face_->Lib().mutex);
        constexpr size_t kRun = 64;  // keys looked up under one lock of the cache
        GlyphKey keys[kRun];
        for (size_t first = 0; first < count; first += kRun) {
            const size_t n = std::min(kRun, count - first);
            for (size_t i = 0; i < n; ++i) {
                keys[i] =
                    GlyphKey{face_->Serial(), ppem_, face_->GlyphOf(codePoints[first + i]), glyphStyle_};
            }
            cache.Find(keys, n, out + first);
            for (size_t i = 0; i < n; ++i) {
                if (!out[first + i]) {
                    out[first + i] = cache.Keep(keys[i], MakeImage(keys[i].glyph));
                }
            }
        }
    }

    bool RenderGlyphWindow(uint32_t codePoint, const ULORect& window,
                           std::vector<uint8_t>& levels) const override {
        std::lock_guard<std::recursive_mutex> lock(face_->Lib().mutex);
        levels.clear();
        const FT_GlyphSlot slot = LoadGlyphIndex(face_->GlyphOf(codePoint));
        return slot && RenderOutlineWindow(face_->Lib().ft, slot->outline, window,
                                           (glyphStyle_ & glyphstyle::kGrey) != 0, levels);
    }

private:
    // The image of a glyph: its advance and, unless it is too large to keep, its coverage. A glyph
    // that cannot be loaded as an outline draws nothing and advances as GetCharAdvances says.
    // Caller holds the lock.
    GlyphImagePtr MakeImage(FT_UInt glyph) const {
        auto image = std::make_shared<GlyphImage>();
        const FT_GlyphSlot slot = LoadGlyphIndex(glyph);
        if (!slot) {
            face_->HintedAdvances(ppem_, {glyph}, fakeBold_ ? 1 : 0, &image->advance);
            return image;
        }
        image->advance = static_cast<int32_t>((slot->metrics.horiAdvance + 63) >> 6) + (fakeBold_ ? 1 : 0);
        const ULORect box = OutlinePixelBox(slot->outline);
        if (box.IsEmpty()) {
            return image;
        }
        image->left = box.left;
        image->top = -box.top;
        image->width = box.right - box.left;
        image->height = box.bottom - box.top;
        if (static_cast<int64_t>(image->width) * image->height > GlyphImage::kMaxKeptPixels) {
            image->kept = false;
            return image;
        }
        if (!RenderOutlineWindow(face_->Lib().ft, slot->outline, box, (glyphStyle_ & glyphstyle::kGrey) != 0,
                                 image->levels)) {
            image->width = 0;
            image->height = 0;
        }
        return image;
    }

    static int64_t FloorPixels(FT_Pos v) { return v >= 0 ? v / 64 : -((-static_cast<int64_t>(v) + 63) / 64); }
    static int64_t CeilPixels(FT_Pos v) { return -FloorPixels(-v); }

    // The glyph of codePoint loaded into the face's slot at this font's size, hinted, with the
    // synthesised styles applied to its outline: a sheared italic (x + y / 4) and an outline
    // widened by ppem / 24 pixels for bold. Null when it cannot be loaded. Caller holds the lock.
    FT_GlyphSlot LoadGlyph(uint32_t codePoint) const { return LoadGlyphIndex(face_->GlyphOf(codePoint)); }
    FT_GlyphSlot LoadGlyphIndex(FT_UInt glyph) const {
        FT_Activate_Size(size_);
        const FT_Face face = face_->Face();
        if (FT_Load_Glyph(face, glyph, kGlyphLoadFlags) != 0 ||
            face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) {
            return nullptr;
        }
        FT_Outline& outline = face->glyph->outline;
        if (fakeItalic_) {
            FT_Matrix shear = {0x10000, 0x4000, 0, 0x10000};
            FT_Outline_Transform(&outline, &shear);
        }
        if (fakeBold_) {
            FT_Outline_Embolden(&outline, static_cast<FT_Pos>(ppem_) * 64 / 24);
        }
        return face->glyph;
    }

    std::shared_ptr<SharedFace> face_;
    FT_Size size_;
    uint32_t ppem_;
    bool fakeBold_;
    bool fakeItalic_;
    uint32_t glyphStyle_;  // the glyph cache's style of this font's glyphs
    FontRequest request_;
    ULOString faceName_;
    FontMetrics metrics_;
};

const char* GenericFamilyOf(uint8_t pitchAndFamily) {
    switch (pitchAndFamily & 0xF0) {
        case family::kRoman:
            return "serif";
        case family::kSwiss:
            return "sans-serif";
        case family::kModern:
            return "monospace";
        case family::kScript:
            return "cursive";
        case family::kDecorative:
            return "fantasy";
        default:
            return (pitchAndFamily & 0x3) == pitch::kFixed ? "monospace" : "sans-serif";
    }
}

}  // namespace

FreeTypeFontEngine::FreeTypeFontEngine(FcConfig* config)
    : config_(config ? FcConfigReference(config) : nullptr), library_(std::make_shared<Library>()) {}

FreeTypeFontEngine::~FreeTypeFontEngine() {
    {
        std::lock_guard<std::recursive_mutex> lock(library_->mutex);
        faces_.clear();
        substitutes_.clear();
        catalogue_.reset();
    }
    if (config_) {
        FcConfigDestroy(config_);
    }
}

const FaceCatalogue& FreeTypeFontEngine::Catalogue() {
    if (!catalogue_) {
        catalogue_ = std::make_unique<FaceCatalogue>(config_, library_->ft);
    }
    return *catalogue_;
}

void FreeTypeFontEngine::EnumerateFaces(uint8_t charSet, const std::function<bool(const FaceInfo&)>& visit) {
    std::lock_guard<std::recursive_mutex> lock(library_->mutex);
    if (!library_->ft) {
        return;
    }
    for (const FaceFamily& fam : Catalogue().Families()) {
        for (uint8_t set : fam.charSets) {
            if (charSet != charset::kDefault && set != charSet) {
                continue;
            }
            FaceInfo info;
            info.faceName = fam.name;
            info.charSet = set;
            info.pitchAndFamily = fam.pitchAndFamily;
            info.trueType = true;
            if (!visit(info)) {
                return;
            }
        }
    }
}

const FaceFamily* FreeTypeFontEngine::SubstituteFamily(const FontRequest& request) {
    // Sorting every font for each missing face is slow on a full system: a font and its three
    // variants ask the same question.
    const auto key =
        std::make_tuple(std::wstring(request.faceName.MakeLower()), request.charSet, request.pitchAndFamily);
    const auto known = substitutes_.find(key);
    if (known != substitutes_.end()) {
        return known->second;
    }
    const FaceFamily* found = SortForSubstitute(request);
    substitutes_.emplace(key, found);
    return found;
}

const FaceFamily* FreeTypeFontEngine::SortForSubstitute(const FontRequest& request) {
    const FaceCatalogue& catalogue = Catalogue();
    const bool anySet = request.charSet == charset::kDefault;
    auto fits = [&](const FaceFamily* fam) { return fam && (anySet || fam->Supports(request.charSet)); };

    FcPattern* pattern = FcPatternCreate();
    if (!request.faceName.empty()) {
        const std::string name = request.faceName.ToUtf8();
        FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(name.c_str()));
    }
    FcPatternAddString(pattern, FC_FAMILY,
                       reinterpret_cast<const FcChar8*>(GenericFamilyOf(request.pitchAndFamily)));
    if (const char* lang = anySet ? nullptr : LanguageOfCharSet(request.charSet)) {
        FcPatternAddString(pattern, FC_LANG, reinterpret_cast<const FcChar8*>(lang));
    }
    FcPatternAddBool(pattern, FC_SCALABLE, FcTrue);
    FcConfigSubstitute(config_, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcFontSet* sorted = FcFontSort(config_, pattern, FcFalse, nullptr, &result);
    FcPatternDestroy(pattern);
    const FaceFamily* chosen = nullptr;
    if (sorted) {
        for (int i = 0; i < sorted->nfont && !chosen; ++i) {
            FcChar8* file = nullptr;
            int index = 0;
            if (FcPatternGetString(sorted->fonts[i], FC_FILE, 0, &file) != FcResultMatch) {
                continue;
            }
            FcPatternGetInteger(sorted->fonts[i], FC_INDEX, 0, &index);
            const FaceFamily* fam = catalogue.FindFamilyOfFile(reinterpret_cast<const char*>(file), index);
            if (fits(fam)) {
                chosen = fam;
            }
        }
        FcFontSetDestroy(sorted);
    }
    if (chosen) {
        return chosen;
    }
    // fontconfig offered nothing usable: any face of the set, the same pitch and family first.
    for (const FaceFamily& fam : catalogue.Families()) {
        if (fits(&fam) && fam.pitchAndFamily == request.pitchAndFamily) {
            return &fam;
        }
    }
    for (const FaceFamily& fam : catalogue.Families()) {
        if (fits(&fam)) {
            return &fam;
        }
    }
    return nullptr;
}

const FaceFamily* FreeTypeFontEngine::ChooseFamily(const FontRequest& request) {
    const FaceCatalogue& catalogue = Catalogue();
    const bool anySet = request.charSet == charset::kDefault;
    const FaceFamily* named = request.faceName.empty() ? nullptr : catalogue.FindFamily(request.faceName);
    // The character set outweighs the name: a face that cannot show the script is replaced.
    if (named && (anySet || named->Supports(request.charSet))) {
        return named;
    }
    if (const FaceFamily* substitute = SubstituteFamily(request)) {
        return substitute;
    }
    if (named) {
        return named;
    }
    return catalogue.Families().empty() ? nullptr : &catalogue.Families().front();
}

const FaceFile& FreeTypeFontEngine::ChooseMember(const FaceFamily& fam, int32_t weight, bool italic) const {
    const std::vector<FaceFile>& files = catalogue_->Files();
    const FaceFile* best = nullptr;
    int64_t bestScore = 0;
    for (size_t member : fam.members) {
        const FaceFile& file = files[member];
        const int64_t score =
            (file.italic != italic ? 10000 : 0) + std::abs(static_cast<int64_t>(file.weightClass) - weight);
        if (!best || score < bestScore) {
            best = &file;
            bestScore = score;
        }
    }
    return *best;
}

std::shared_ptr<SharedFace> FreeTypeFontEngine::OpenFace(const FaceFile& file) {
    auto key = std::make_pair(file.path, file.index);
    auto it = faces_.find(key);
    if (it != faces_.end()) {
        return it->second;
    }
    FT_Face face = nullptr;
    if (FT_New_Face(library_->ft, file.path.c_str(), file.index, &face) != 0) {
        return nullptr;
    }
    auto shared = std::make_shared<SharedFace>(library_, face, file.path, file.index);
    faces_[key] = shared;
    return shared;
}

const FaceFile* FreeTypeFontEngine::ResolveFace(const FontRequest& request) {
    std::lock_guard<std::recursive_mutex> lock(library_->mutex);
    if (!library_->ft) {
        return nullptr;
    }
    const FaceFamily* fam = ChooseFamily(request);
    if (!fam) {
        return nullptr;
    }
    return &ChooseMember(*fam, request.weight == 0 ? 400 : request.weight, request.italic);
}

std::shared_ptr<PlatformFont> FreeTypeFontEngine::CreateFontObject(const FontRequest& request) {
    std::lock_guard<std::recursive_mutex> lock(library_->mutex);
    const FaceFile* file = library_->ft ? ResolveFace(request) : nullptr;
    if (!file) {
        return nullptr;
    }
    std::shared_ptr<SharedFace> shared = OpenFace(*file);
    if (!shared) {
        return nullptr;
    }
    FT_Face face = shared->Face();
    FT_Size size = nullptr;
    if (FT_New_Size(face, &size) != 0) {
        return nullptr;
    }
    FT_Activate_Size(size);
    const VerticalDesign& design = shared->Design();
    const FontSize fontSize = SizeForHeight(request.height, design, shared->Vdmx());
    const uint32_t ppem = fontSize.pixelsPerEm;
    if (FT_Set_Pixel_Sizes(face, 0, ppem) != 0) {
        FT_Done_Size(size);
        return nullptr;
    }
    const int32_t weight = request.weight == 0 ? 400 : request.weight;
    const bool fakeBold = weight > 550 && file->weightClass <= 550;
    const bool fakeItalic = request.italic && !file->italic;

    const FaceFamily* fam = Catalogue().FindFamilyOfFile(file->path, file->index);
    FontMetrics metrics;
    const uint32_t upem = design.unitsPerEm;
    metrics.pixelsPerEm = ppem;
    metrics.ascent = fontSize.ascent;
    metrics.descent = fontSize.descent;
    metrics.height = metrics.ascent + metrics.descent;
    metrics.internalLeading = fontSize.internalLeading;
    metrics.externalLeading = ScaleRounded(shared->ExternalLeadingUnits(), ppem, upem);
    // A synthesised bold face is a pixel wider on average as well as at most.
    const int32_t emboldening = fakeBold ? 1 : 0;
    metrics.averageCharWidth = ScaleRounded(shared->AverageWidthUnits(), ppem, upem) + emboldening;
    metrics.maxCharWidth = ScaleRounded(shared->MaxWidthUnits(), ppem, upem) + emboldening;
    metrics.weight = fakeBold ? 700 : file->weightClass;
    metrics.pitchAndFamily = file->pitchAndFamily;
    metrics.charSet = request.charSet;
    if (request.charSet == charset::kDefault || (fam && !fam->Supports(request.charSet))) {
        metrics.charSet = file->charSets.empty() ? charset::kAnsi : file->charSets.front();
    }
    metrics.italic = request.italic || file->italic;
    metrics.underlined = request.underline;
    metrics.struckOut = request.strikeOut;
    const StyleLines& lines = shared->Lines();
    metrics.underlinePosition = ScaleRounded(lines.underlinePosition, ppem, upem);
    metrics.underlineThickness = std::max(1, ScaleRounded(lines.underlineThickness, ppem, upem));
    metrics.strikeOutPosition = ScaleRounded(lines.strikeOutPosition, ppem, upem);
    metrics.strikeOutThickness = std::max(1, ScaleRounded(lines.strikeOutThickness, ppem, upem));
    return std::make_shared<FreeTypeFont>(shared, size, ppem, fakeBold, fakeItalic, request,
                                          fam ? fam->name : file->family, metrics);
}

}  // namespace ft

std::shared_ptr<FontEngine> CreateDefaultFontEngine() {
    return std::make_shared<ft::FreeTypeFontEngine>();
}

}  // namespace platform
}  // namespace ulogui
