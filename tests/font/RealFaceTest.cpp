// Measurement on DejaVu Sans: the expected numbers are built from the widths the font reports for
// each character, so the checks hold whatever size the face is rasterised at.
#include <gtest/gtest.h>

#include <cmath>

#include "KnownWidthFont.h"

using namespace measuretest;

namespace {

float Sum(const ULOFont& font, const ULOString& s) {
    float x = 0.0f;
    for (wchar_t c : s) {
        x += font.GetCharWidthW(c, true);
    }
    return x;
}

}  // namespace

TEST(RealFace, WidthsWrapAndTruncationFollowTheFontsOwnAdvances) {
    auto font = DejaVuSans(1.0f);
    auto magnified = DejaVuSans(2.0f);
    if (!font || !magnified) {
        GTEST_SKIP() << "fonts-dejavu-core missing (scripts/bootstrap)";
    }
    ASSERT_TRUE(font->IsValid());
    const float space = font->GetCharWidthW(L' ', true);
    ASSERT_GT(space, 0.0f);
    ASSERT_LT(space, 25.0f);  // a 16-pixel face
    EXPECT_EQ(Sum(*font, L"hello world"), font->GetStringRealWidthSingleLine(L"hello world", 0.0f));
    EXPECT_EQ(space - 1.0f + 50.0f,
              font->GetStringRealWidthSingleLine(L"\t", 50.0f - space + 1.0f));  // closer than a space
    EXPECT_EQ(space, font->GetStringRealWidthSingleLine(L"\t", 50.0f - space));  // exactly a space

    // "hello world" wrapped with room for "hello wo" breaks before the space.
    EXPECT_EQ(5, font->GetMaxWordOffset(static_cast<int>(Sum(*font, L"hello wo")), L"hello world", 0.0f));
    EXPECT_EQ(0, font->GetMaxWordOffset(static_cast<int>(std::ceil(Sum(*font, L"hello world"))),
                                        L"hello world", 0.0f));
    // Room for "hell" and the ellipsis keeps "hel".
    ULOString out;
    EXPECT_TRUE(font->TruncateString(L"hello world", out, static_cast<int>(Sum(*font, L"hell...")), L"..."));
    EXPECT_EQ(L"hel...", out);

    // Magnified fonts measure in logical units.
    EXPECT_EQ(Sum(*magnified, L"abc") / 2.0f, magnified->GetStringRealWidthSingleLine(L"abc", 0.0f));
    EXPECT_EQ(ULOSize(static_cast<int>(std::ceil(Sum(*magnified, L"abcd") / 2.0f)), 32),
              magnified->ComputeStringBoundingRect(L"ab\r\nabcd"));
}
