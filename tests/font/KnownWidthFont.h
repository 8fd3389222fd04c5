#pragma once
// A font whose advance widths the tests know, made by a scripted engine. In device pixels whatever the
// magnifier: ' ' 5 (or the width asked for), 'i' and 'l' 4, 'm' 15, '-' 6, '/' and '\' 5, '.' 3, '?' 7
// (the width of characters without a cached width), every other printable character 10; the
// ideographs U+3000..U+9FFF 16 and U+F900..U+FFEF 12. The cell is 16 pixels high.
#include <cstdint>
#include <memory>

#include "font/FakeFontEngine.h"
#include "font/TestFonts.h"
#include "ulogui/Font.h"

namespace measuretest {

// Language 0 has no ideograph tables; language 3 (with the face-name constructor) has them.
constexpr int kLatin = 0;
constexpr int kJapanese = 3;
constexpr int32_t kSpace = 5;

inline int32_t KnownAdvance(uint32_t c, int32_t spaceWidth) {
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

// A font of the known widths; spaceWidth replaces the width of ' '.
inline std::unique_ptr<ULOFont> KnownFont(float magnifier, int language = kLatin,
                                          int32_t spaceWidth = kSpace) {
    auto engine = std::make_shared<testfonts::FakeFontEngine>(std::vector<ulogui::platform::FaceInfo>{
        testfonts::Face(L"Known Widths", ulogui::platform::charset::kAnsi, 0x22),
        testfonts::Face(L"Known Widths", ulogui::platform::charset::kShiftJis, 0x22)});
    engine->advance = [spaceWidth](const ulogui::platform::FontRequest&, uint32_t c) {
        return KnownAdvance(c, spaceWidth);
    };
    // The engine serves the font's construction only: the font keeps its widths and handles.
    testfonts::ScopedEngine scoped(engine);
    return std::make_unique<ULOFont>(std::vector<ULOString>{L"Known Widths"}, 16, language, magnifier, false,
                                     false, false);
}

}  // namespace measuretest
