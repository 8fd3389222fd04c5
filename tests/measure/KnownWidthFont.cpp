#include "KnownWidthFont.h"

#include <fontconfig/fontconfig.h>
#include <sys/stat.h>

#include "ulogui/platform/FontEngine.h"
#include "ulogui/platform/linux/FreeTypeFontEngine.h"

namespace platform = ulogui::platform;

namespace measuretest {

namespace {

const wchar_t* const kFaceName = L"Known Widths";

int32_t KnownAdvance(uint32_t c, int32_t spaceWidth) {
    switch (c) {
        case ' ':
            return spaceWidth;
        case 'i':
        case 'l':
            return kNarrow;
        case 'm':
            return kWide;
        case '-':
            return kHyphen;
        case '/':
            return kSlash;
        case '.':
            return kDot;
        case '?':
            return kQuestion;
        default:
            break;
    }
    if (c >= 0x3000 && c < 0xA000) {
        return kIdeograph;
    }
    if (c >= 0xF900 && c < 0xFFF0) {
        return kCompat;
    }
    return c < 0x20 ? 99 : kLetter;  // the font clears the control characters itself
}

class TableFont : public platform::PlatformFont {
public:
    TableFont(const platform::FontRequest& request, int32_t spaceWidth)
        : request_(request), spaceWidth_(spaceWidth) {}
    ULOString GetFaceName() const override { return request_.faceName; }
    const platform::FontRequest& GetRequest() const override { return request_; }
    platform::FontMetrics GetMetrics() const override { return {}; }
    void GetCharAdvances(uint32_t first, uint32_t last, int32_t* widths) const override {
        for (uint32_t c = first; c <= last; ++c) {
            widths[c - first] = KnownAdvance(c, spaceWidth_);
        }
    }
    std::vector<platform::KerningPair> GetKerningPairs() const override { return {}; }

private:
    platform::FontRequest request_;
    int32_t spaceWidth_;
};

class TableEngine : public platform::FontEngine {
public:
    explicit TableEngine(int32_t spaceWidth) : spaceWidth_(spaceWidth) {}
    void EnumerateFaces(uint8_t charSet,
                        const std::function<bool(const platform::FaceInfo&)>& visit) override {
        for (uint8_t set : {platform::charset::kAnsi, platform::charset::kShiftJis}) {
            if (charSet == platform::charset::kDefault || charSet == set) {
                platform::FaceInfo face;
                face.faceName = kFaceName;
                face.charSet = set;
                face.pitchAndFamily = 0x22;
                face.trueType = true;
                if (!visit(face)) {
                    return;
                }
            }
        }
    }
    std::shared_ptr<platform::PlatformFont> CreateFontObject(const platform::FontRequest& request) override {
        return std::make_shared<TableFont>(request, spaceWidth_);
    }

private:
    int32_t spaceWidth_;
};

// The engine serves the font's construction only: the font keeps its widths and handles.
std::unique_ptr<ULOFont> MakeWith(std::shared_ptr<platform::FontEngine> engine, const wchar_t* face,
                                  float magnifier, int language) {
    platform::SetFontEngine(std::move(engine));
    auto font = std::make_unique<ULOFont>(std::vector<ULOString>{face}, kHeight, language, magnifier, false,
                                          false, false);
    platform::SetFontEngine(nullptr);
    return font;
}

}  // namespace

std::unique_ptr<ULOFont> KnownFont(float magnifier, int language, int32_t spaceWidth) {
    return MakeWith(std::make_shared<TableEngine>(spaceWidth), kFaceName, magnifier, language);
}

std::unique_ptr<ULOFont> DejaVuSans(float magnifier) {
    const std::string file = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
    struct stat st {};
    if (stat(file.c_str(), &st) != 0) {
        return nullptr;
    }
    FcConfig* config = FcConfigCreate();
    FcConfigAppFontAddFile(config, reinterpret_cast<const FcChar8*>(file.c_str()));
    FcConfigBuildFonts(config);
    auto engine = std::make_shared<platform::ft::FreeTypeFontEngine>(config);
    FcConfigDestroy(config);  // the engine keeps its own reference
    return MakeWith(engine, L"DejaVu Sans", magnifier, kLatin);
}

}  // namespace measuretest
