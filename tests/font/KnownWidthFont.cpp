#include "KnownWidthFont.h"

#include "font/FakeFontEngine.h"
#include "font/TestFonts.h"

namespace platform = ulogui::platform;

namespace measuretest {

namespace {

const wchar_t* const kFaceName = L"Known Widths";

int32_t KnownAdvance(uint32_t c, int32_t spaceWidth) {
    const std::pair<wchar_t, int32_t> special[] = {
        {' ', spaceWidth}, {'i', 4}, {'l', 4}, {'m', 15}, {'-', 6}, {'/', 5}, {'\\', 5}, {'.', 3}, {'?', 7}};
    for (const auto& [character, width] : special) {
        if (c == static_cast<uint32_t>(character)) {
            return width;
        }
    }
    if (c >= 0x3000 && c < 0xA000) {
        return 16;
    }
    return c >= 0xF900 && c < 0xFFF0 ? 12 : c < 0x20 ? 99 : 10;  // the font clears control characters itself
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
    return std::make_unique<ULOFont>(std::vector<ULOString>{kFaceName}, 16, language, magnifier, false, false,
                                     false);
}

}  // namespace measuretest
