#include "platform/win32/GdiFontEngine.h"

#include <windows.h>

#include <algorithm>
#include <climits>
#include <exception>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "platform/win32/FontContext.h"
#include "platform/win32/NativeOutline.h"

namespace ulogui {
namespace platform {
namespace gdi {

namespace {

// GetGlyphOutlineW wants a transformation; outlines and metrics are asked untransformed.
constexpr MAT2 kIdentity = {{0, 1}, {0, 0}, {0, 0}, {0, 1}};

// TEXTMETRIC's pitch bit is inverted (set for a variable pitch) and comes with the TrueType and
// vector bits; a font description (LOGFONT) states the pitch as 1 fixed, 2 variable.
uint8_t DescribedPitchAndFamily(BYTE textMetricPitchAndFamily) {
    const uint8_t pitchBits =
        (textMetricPitchAndFamily & TMPF_FIXED_PITCH) != 0 ? VARIABLE_PITCH : FIXED_PITCH;
    return static_cast<uint8_t>((textMetricPitchAndFamily & 0xF0) | pitchBits);
}

// The character GDI is asked about: code points beyond the 16-bit range stand for the missing glyph
// through a private-use character no face of this library's hosts maps.
UINT CharacterOf(uint32_t codePoint) {
    return codePoint <= 0xFFFF ? codePoint : 0xFFFF;
}

class GdiFont : public PlatformFont {
public:
    GdiFont(HFONT font, const FontRequest& request) : font_(font), request_(request) {
        FontContext context(font_);
        if (HDC dc = context.Get()) {
            wchar_t face[LF_FACESIZE] = {};
            const int length = ::GetTextFaceW(dc, LF_FACESIZE, face);
            faceName_ = ULOString(face, static_cast<size_t>(std::max(length - 1, 0)));
            TEXTMETRICW tm{};
            if (::GetTextMetricsW(dc, &tm)) {
                metrics_.height = tm.tmHeight;
                metrics_.ascent = tm.tmAscent;
                metrics_.descent = tm.tmDescent;
                metrics_.internalLeading = tm.tmInternalLeading;
                metrics_.externalLeading = tm.tmExternalLeading;
                metrics_.averageCharWidth = tm.tmAveCharWidth;
                metrics_.maxCharWidth = tm.tmMaxCharWidth;
                metrics_.weight = tm.tmWeight;
                // The em: asked for by a negative height, else the cell less its internal leading.
                metrics_.pixelsPerEm = static_cast<uint32_t>(
                    request.height < 0 ? -static_cast<int64_t>(request.height)
                                       : std::max<int64_t>(int64_t{tm.tmHeight} - tm.tmInternalLeading, 0));
                metrics_.pitchAndFamily = DescribedPitchAndFamily(tm.tmPitchAndFamily);
                metrics_.charSet = tm.tmCharSet;
                metrics_.italic = tm.tmItalic != 0;
                metrics_.underlined = tm.tmUnderlined != 0;
                metrics_.struckOut = tm.tmStruckOut != 0;
            }
        }
    }
    ~GdiFont() override { ::DeleteObject(font_); }
    GdiFont(const GdiFont&) = delete;
    GdiFont& operator=(const GdiFont&) = delete;

    HFONT Handle() const override { return font_; }
    ULOString GetFaceName() const override { return faceName_; }
    const FontRequest& GetRequest() const override { return request_; }
    FontMetrics GetMetrics() const override { return metrics_; }

    void GetCharAdvances(uint32_t first, uint32_t last, int32_t* widths) const override {
        if (last < first) {
            return;
        }
        const size_t count = static_cast<size_t>(last - first) + 1;
        std::fill(widths, widths + count, 0);
        FontContext context(font_);
        HDC dc = context.Get();
        if (dc == nullptr) {
            return;
        }
        // The 16-bit characters in one call; any beyond have the width of the missing glyph.
        const uint32_t lastShort = std::min<uint32_t>(last, 0xFFFF);
        if (first <= lastShort) {
            std::vector<INT> got(static_cast<size_t>(lastShort - first) + 1);
            if (::GetCharWidth32W(dc, first, lastShort, got.data())) {
                std::copy(got.begin(), got.end(), widths);
            }
        }
        if (last > 0xFFFF) {
            INT missing = 0;
            ::GetCharWidth32W(dc, CharacterOf(last), CharacterOf(last), &missing);
            const size_t from = first > 0xFFFF ? 0 : static_cast<size_t>(0x10000 - first);
            std::fill(widths + from, widths + count, missing);
        }
    }

    std::vector<KerningPair> GetKerningPairs() const override {
        std::vector<KerningPair> pairs;
        FontContext context(font_);
        HDC dc = context.Get();
        if (dc == nullptr) {
            return pairs;
        }
        const DWORD count = ::GetKerningPairsW(dc, 0, nullptr);
        if (count == 0) {
            return pairs;
        }
        std::vector<KERNINGPAIR> native(count);
        const DWORD got = ::GetKerningPairsW(dc, count, native.data());
        pairs.reserve(got);
        for (DWORD i = 0; i < got && i < count; ++i) {
            pairs.push_back(KerningPair{native[i].wFirst, native[i].wSecond, native[i].iKernAmount});
        }
        return pairs;
    }

    int32_t GetKerningAmount(uint32_t first, uint32_t second) const override {
        if (first > 0xFFFF || second > 0xFFFF) {
            return 0;
        }
        std::lock_guard<std::mutex> lock(kerningMutex_);
        if (!kerningIndexed_) {
            // The first pair of the list wins, as in a search of the list.
            for (const KerningPair& pair : GetKerningPairs()) {
                kerning_.emplace(Key(pair.first, pair.second), pair.amount);
            }
            kerningIndexed_ = true;
        }
        const auto it = kerning_.find(Key(first, second));
        return it == kerning_.end() ? 0 : it->second;
    }

    bool GetGlyphOutline(uint32_t codePoint, GlyphOutline& out) const override {
        out.Clear();
        FontContext context(font_);
        HDC dc = context.Get();
        if (dc == nullptr) {
            return false;
        }
        GLYPHMETRICS metrics{};
        const UINT character = CharacterOf(codePoint);
        const DWORD size = ::GetGlyphOutlineW(dc, character, GGO_NATIVE, &metrics, 0, nullptr, &kIdentity);
        if (size == GDI_ERROR || size == 0) {
            return false;  // no outline data: a space, or a glyph GDI cannot give
        }
        std::vector<uint8_t> buffer(size);
        if (::GetGlyphOutlineW(dc, character, GGO_NATIVE, &metrics, size, buffer.data(), &kIdentity) ==
            GDI_ERROR) {
            return false;
        }
        ReadNativeOutline(buffer.data(), buffer.size(), out);
        return !out.polygons.empty();
    }

    bool GetGlyphMetrics(uint32_t codePoint, GlyphMetrics& out) const override {
        out = GlyphMetrics();
        FontContext context(font_);
        HDC dc = context.Get();
        if (dc == nullptr) {
            return false;
        }
        GLYPHMETRICS metrics{};
        if (::GetGlyphOutlineW(dc, CharacterOf(codePoint), GGO_METRICS, &metrics, 0, nullptr, &kIdentity) ==
            GDI_ERROR) {
            return false;
        }
        out.blackBoxX = metrics.gmBlackBoxX;
        out.blackBoxY = metrics.gmBlackBoxY;
        out.originX = metrics.gmptGlyphOrigin.x;
        out.originY = metrics.gmptGlyphOrigin.y;
        out.cellIncX = metrics.gmCellIncX;
        out.cellIncY = metrics.gmCellIncY;
        return true;
    }

private:
    static uint32_t Key(uint32_t first, uint32_t second) { return (first << 16) | second; }

    HFONT font_;
    FontRequest request_;
    ULOString faceName_;
    FontMetrics metrics_;
    mutable std::mutex kerningMutex_;
    mutable bool kerningIndexed_ = false;
    mutable std::unordered_map<uint32_t, int32_t> kerning_;
};

// What one enumeration carries through GDI's callback.
struct Enumeration {
    const std::function<bool(const FaceInfo&)>* visit;
    std::exception_ptr failure;  // thrown by visit: not let through GDI's frames, thrown again after
};

int CALLBACK OnFace(const LOGFONTW* font, const TEXTMETRICW*, DWORD fontType, LPARAM data) {
    Enumeration& enumeration = *reinterpret_cast<Enumeration*>(data);
    try {
        FaceInfo info;
        info.faceName = ULOString(font->lfFaceName, ::wcsnlen(font->lfFaceName, LF_FACESIZE));
        info.charSet = font->lfCharSet;
        info.pitchAndFamily = font->lfPitchAndFamily;
        info.trueType = (fontType & TRUETYPE_FONTTYPE) != 0;
        return (*enumeration.visit)(info) ? 1 : 0;
    } catch (...) {
        enumeration.failure = std::current_exception();
        return 0;
    }
}

// GDI keeps at most LF_FACESIZE - 1 characters of a face name.
void CopyFaceName(const ULOString& name, wchar_t (&out)[LF_FACESIZE]) {
    const size_t n = std::min<size_t>(name.size(), LF_FACESIZE - 1);
    std::copy(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(n), out);
    out[n] = L'\0';
}

}  // namespace

void GdiFontEngine::EnumerateFaces(uint8_t charSet, const std::function<bool(const FaceInfo&)>& visit) {
    // On the screen context; the query is all zero but the character set, so every face is reported.
    HDC screen = ::GetDC(nullptr);
    if (screen == nullptr) {
        return;
    }
    LOGFONTW query{};
    query.lfCharSet = charSet;
    Enumeration enumeration{&visit, nullptr};
    ::EnumFontFamiliesExW(screen, &query, OnFace, reinterpret_cast<LPARAM>(&enumeration), 0);
    ::ReleaseDC(nullptr, screen);
    if (enumeration.failure) {
        std::rethrow_exception(enumeration.failure);
    }
}

std::shared_ptr<PlatformFont> GdiFontEngine::CreateFontObject(const FontRequest& request) {
    wchar_t face[LF_FACESIZE];
    CopyFaceName(request.faceName, face);
    const HFONT font = ::CreateFontW(request.height, request.width, request.escapement, request.orientation,
                                     request.weight, request.italic, request.underline, request.strikeOut,
                                     request.charSet, request.outPrecision, request.clipPrecision,
                                     request.quality, request.pitchAndFamily, face);
    if (font == nullptr) {
        return nullptr;
    }
    return std::make_shared<GdiFont>(font, request);
}

}  // namespace gdi

std::shared_ptr<FontEngine> CreateDefaultFontEngine() {
    return std::make_shared<gdi::GdiFontEngine>();
}

}  // namespace platform
}  // namespace ulogui
