#pragma once
// Wrapping for MultiLineTextOut.
#include <cstddef>

#include "ulogui/Font.h"

namespace ulogui {
namespace surface {

// font.GetMaxWordOffset(maxWidth, text from pos, 0), reading only as much of the text as decides the
// answer: windows that double until the answer lies inside one or the window is the whole rest.
// Copying the whole rest for each line would make long texts quadratic.
int FirstLineLength(const ULOFont& font, int maxWidth, const ULOString& text, size_t pos);

}  // namespace surface
}  // namespace ulogui
