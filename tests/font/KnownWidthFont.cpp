#include "KnownWidthFont.h"

#include "font/FakeFontEngine.h"
#include "font/TestFonts.h"

namespace platform = ulogui::platform;

namespace measuretest {

namespace {

const wchar_t* const kFaceName = L"Known Widths";

int32_t KnownAdvance(uint32_t c, int32_t spaceWidth) {
    const std::pair<wchar_t, int32_t> special[] = {{' ', spaceWidth}, {'i', kNarrow}, {'l', kNarrow},
                                                   {'m', kWide},      {'-', kHyphen}, {'/', kSlash},
                                                   {'\\', kSlash},    {'.', kDot},    {'?', kQuestion}};
    for (const auto& [character, width] : special) {
        if (c == static_cast<uint32_t>(character)) {
            return width;
        }
    }
    if (c >= 0x3000 && c < 0xA000) {
        return kIdeograph;
    }
    if (c >= 0xF900 && c < 0xFFF0) {
        return kCompat;
    }
    return c < 0x20 ? 99 : kLetter;  // the font clears the control characters itself
}

}  // namespace

std::unique_ptr<ULOFont> KnownFont(float magnifier, int language, int32_t spaceWidth) {
    auto engine = std::make_shared<testfonts::FakeFontEngine>(
        std::vector<platform::FaceInfo>{testfonts::Face(kFaceName, platform::charset::kAnsi, 0x22),
                                        testfonts::Face(kFaceName, platform::charset::kShiftJis, 0x22)});
    engine->advance = [spaceWidth](const platform::FontRequest&, uint32_t c) {
        return KnownAdvance(c, spaceWidth);
    };
    // The engine serves the font's construction only: the font keeps its widths and handles.
    testfonts::ScopedEngine scoped(engine);
    return std::make_unique<ULOFont>(std::vector<ULOString>{kFaceName}, kHeight, language, magnifier, false,
                                     false, false);
}

}  // namespace measuretest
