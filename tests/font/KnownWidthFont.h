#pragma once
// Fonts whose advance widths the tests know: a font engine that makes every font from one width
// table.
#include <cstdint>
#include <memory>

#include "ulogui/Font.h"

namespace measuretest {

// The widths of the known font, in device pixels whatever the magnifier: 10 for every printable
// character but those below, 16 for the ideographs U+3000..U+9FFF, 12 for U+F900..U+FFEF.
constexpr int32_t kLetter = 10;
constexpr int32_t kSpace = 5;     // ' '
constexpr int32_t kNarrow = 4;    // 'i', 'l'
constexpr int32_t kWide = 15;     // 'm'
constexpr int32_t kHyphen = 6;    // '-'
constexpr int32_t kSlash = 5;     // '/'
constexpr int32_t kDot = 3;       // '.'
constexpr int32_t kQuestion = 7;  // '?', the width of characters without a cached width
constexpr int32_t kIdeograph = 16;
constexpr int32_t kCompat = 12;
constexpr int kHeight = 16;

// Language 0 has no ideograph tables; language 3 (with the face-name constructor) has them.
constexpr int kLatin = 0;
constexpr int kJapanese = 3;

// A font of the known widths; spaceWidth replaces the width of ' '.
std::unique_ptr<ULOFont> KnownFont(float magnifier, int language = kLatin, int32_t spaceWidth = kSpace);

}  // namespace measuretest
