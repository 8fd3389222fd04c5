#pragma once
// A font whose advance widths the tests know, made by a scripted engine. In device pixels whatever the
// magnifier: ' ' 5 (or the width asked for), 'i' and 'l' 4, 'm' 15, '-' 6, '/' and '\' 5, '.' 3, '?' 7
// (the width of characters without a cached width), every other printable character 10; the
// ideographs U+3000..U+9FFF 16 and U+F900..U+FFEF 12. The cell is 16 pixels high.
#include <cstdint>
#include <memory>

#include "ulogui/Font.h"

namespace measuretest {

// Language 0 has no ideograph tables; language 3 (with the face-name constructor) has them.
constexpr int kLatin = 0;
constexpr int kJapanese = 3;
constexpr int32_t kSpace = 5;

// A font of the known widths; spaceWidth replaces the width of ' '.
std::unique_ptr<ULOFont> KnownFont(float magnifier, int language = kLatin, int32_t spaceWidth = kSpace);

}  // namespace measuretest
