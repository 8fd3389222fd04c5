#include "font/GlyphFonts.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <vector>

#include "ulogui/Glyph.h"

namespace ulogui {
namespace font {

namespace {

constexpr uint8_t kOutTrueTypeOnly = 7;  // OUT_TT_ONLY_PRECIS
// Enough for a host that alternates between a few faces and sizes; each kept font holds only a
// sized face (the face itself and its kerning are shared with every font of the face).
constexpr size_t kKeptFonts = 8;

struct KeptFonts {
    std::mutex mutex;
    std::weak_ptr<platform::FontEngine> engine;  // whose fonts these are
    std::vector<std::pair<platform::FontRequest, std::shared_ptr<platform::PlatformFont>>>
        fonts;  // oldest first
};

KeptFonts& Kept() {
    static KeptFonts kept;
    return kept;
}

bool SameRequest(const platform::FontRequest& a, const platform::FontRequest& b) {
    return a.height == b.height && a.weight == b.weight && a.italic == b.italic &&
           a.underline == b.underline && a.faceName == b.faceName;
}

}  // namespace

std::shared_ptr<platform::PlatformFont> GlyphFont(const ULOString& face, int height, int weightIndex,
                                                  int italic, int underline) {
    platform::FontRequest request;
    // A negative height asks for the character height; -INT_MIN is held at INT_MAX.
    request.height = static_cast<int32_t>(std::min<int64_t>(-static_cast<int64_t>(height), INT32_MAX));
    request.weight = ULOGlyphWeight(weightIndex);
    request.italic = italic != 0;
    request.underline = underline != 0;
    request.charSet = platform::charset::kDefault;
    request.outPrecision = kOutTrueTypeOnly;
    request.faceName = face;

    const std::shared_ptr<platform::FontEngine> engine = platform::GetFontEngine();
    KeptFonts& kept = Kept();
    std::lock_guard<std::mutex> lock(kept.mutex);
    if (kept.engine.lock() != engine) {
        kept.fonts.clear();  // another engine was installed: its fonts answer for other faces
        kept.engine = engine;
    }
    auto& fonts = kept.fonts;
    const auto found = std::find_if(fonts.begin(), fonts.end(),
                                    [&](const auto& f) { return SameRequest(f.first, request); });
    if (found != fonts.end()) {
        std::rotate(found, found + 1, fonts.end());  // now the most recent
        return fonts.back().second;
    }
    std::shared_ptr<platform::PlatformFont> font = engine->CreateFontObject(request);
    if (font) {
        if (fonts.size() == kKeptFonts) {
            fonts.erase(fonts.begin());
        }
        fonts.emplace_back(request, font);
    }
    return font;
}

}  // namespace font
}  // namespace ulogui

int ULOGlyphWeight(int weightIndex) {
    static constexpr int kWeights[] = {200, 400, 700, 900};
    return weightIndex >= 0 && weightIndex < 4 ? kWeights[weightIndex] : 200;
}
