#pragma once
// A plain transcription of the measuring rules, slow on purpose: every prefix, line and candidate is
// built as a string and measured from its first character. The library's incremental forms must
// agree with it bit for bit.
#include "ulogui/Font.h"

namespace measuretest {
namespace reference {

float SingleLine(const ULOFont& font, const ULOString& s, float startX);
float MultiLine(const ULOFont& font, const ULOString& s, float startX);
int TextLabelHeight(const ULOFont& font, const ULOString& s, int width);
int MaxWordOffset(const ULOFont& font, int maxWidth, const ULOString& s, float startX);
bool TruncateString(const ULOFont& font, const ULOString& s, ULOString& out, int maxWidth,
                    const ULOString& ellipsis);
bool TruncatePath(const ULOFont& font, const ULOString& path, ULOString& out, int maxWidth,
                  const ULOString& ellipsis);

}  // namespace reference
}  // namespace measuretest
