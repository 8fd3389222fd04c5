// Wrapping, truncation and the measured widths against a plain transcription of their rules, slow on
// purpose: every prefix, line and candidate is measured from its first character, tabs by the font's
// own tab stops (checked by hand below). Random texts of the characters the rules treat
// specially, for magnifiers whose divisions round (1.1, 0.7, 3.3) as well as exact ones; floats agree
// exactly. Then what the sweep does not compare: tab widths by themselves (letters 10, space 5,
// 'i' and 'l' 4), rounded widths, heights and wild magnifiers.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "KnownWidthFont.h"
#include "ulolib/Path.h"

using namespace measuretest;

namespace {

bool LineEnd(wchar_t c) {
    return c == L'\r' || c == L'\n';
}

float SingleLine(const ULOFont& f, const ULOString& s, float startX) {
    const float m = f.GetMagnifier();
    float x = startX * m;
    for (wchar_t c : s) {
        x += c == L'\t' ? f.GetTabWidth(x, true) : f.GetCharWidthW(c, true);
    }
    return s.empty() ? 0.0f : (x - m * startX) / m;
}

// The widest line, the first one setting the start value.
float MultiLine(const ULOFont& f, const ULOString& s, float startX) {
    float widest = 0.0f;
    size_t start = 0;
    for (size_t i = 0; i <= s.size() && !s.empty(); ++i) {
        if (i == s.size() || LineEnd(s[i])) {
            const float w = SingleLine(f, s.substr(start, i - start), startX);
            widest = start == 0 || w > widest ? w : widest;
            start = i + 1;
        }
    }
    return widest;
}

int Ceil(const ULOFont& f, const ULOString& s) {
    return static_cast<int>(std::ceil(MultiLine(f, s, 0.0f)));
}

int TextLabelHeight(const ULOFont& f, const ULOString& s, int width) {
    int lines = 0;
    for (const ULOString& piece : s.Split(L'\n')) {
        lines += Ceil(f, piece) / width + 1;
    }
    return f.GetFontHeight() * lines;
}

int MaxWordOffset(const ULOFont& f, int maxWidth, const ULOString& s, float startX) {
    const size_t n = s.size();
    auto endLength = [&](size_t i) { return s[i] == L'\r' && i + 1 < n && s[i + 1] == L'\n' ? 2 : 1; };
    if (n == 0 || LineEnd(s[0])) {
        return n == 0 ? 0 : endLength(0);
    }
    // A first guess from logical advances, then every longer prefix measured whole.
    size_t count = 0;
    float x = 0.0f;
    for (size_t i = 0; i < n && !LineEnd(s[i]); count = ++i) {
        x += s[i] == L'\t' ? f.GetTabWidth(x + startX, false) : f.GetCharWidthW(s[i], false);
        if (x > static_cast<float>(maxWidth)) {
            break;
        }
    }
    while (count < n && !LineEnd(s[count]) && SingleLine(f, s.substr(0, count + 1), startX) <= maxWidth) {
        ++count;
    }
    if (count == n || LineEnd(s[count])) {
        return count == n ? 0 : static_cast<int>(count) + endLength(count);
    }
    size_t j = count;
    for (; j > 0; --j) {
        const uint32_t c = static_cast<uint32_t>(s[j]);
        if (c < 33 || c == L'-' ||
            (f.HasUnicodeExtraWidths() && c >= 0x3000 && !(c >= 0x3001 && c <= 0x300F))) {
            break;
        }
    }
    size_t b = j == 0 ? count : j;
    while (b + 1 < n && s[b + 1] == L' ') {
        ++b;
    }
    return static_cast<int>(b);
}

// Whether the text was shortened, and the text shown.
using Cut = std::pair<bool, ULOString>;

Cut TruncateString(const ULOFont& f, const ULOString& s, int maxWidth, const ULOString& ellipsis) {
    const float limit = static_cast<float>(std::max(maxWidth, 0));
    float total = SingleLine(f, s, 0.0f);
    if (total <= limit) {
        return {false, s};
    }
    total += MultiLine(f, ellipsis, 0.0f);
    int i = static_cast<int>(s.size()) - 1;
    for (; total > limit && i >= 0; --i) {
        total -= s[i] == L'\t' ? f.GetTabWidth(MultiLine(f, s.Left(i), 0.0f), false)
                               : f.GetCharWidthW(s[i], false);
    }
    return {true, i < 1 ? ellipsis : ULOString(s.Left(i) + ellipsis)};
}

Cut TruncatePath(const ULOFont& f, const ULOString& path, int maxWidth, const ULOString& ellipsis) {
    const int limit = std::max(maxWidth, 0);
    if (Ceil(f, path) <= limit) {
        return {false, path};
    }
    // Split at the separators the system reads, each kept with the component after it.
    std::vector<ULOString> parts{L""}, seps{ULOString(1, ULOPath::wSeparator)};
    for (wchar_t c : path) {
        if (ULOPath::IsSeparator(c)) {
            parts.emplace_back();
            seps.emplace_back(1, c);
        } else {
            parts.back() += c;
        }
    }
    ULOString candidate = path;
    for (size_t k = 2; k < parts.size() && Ceil(f, candidate) > limit; ++k) {
        candidate = parts[0] + seps[1] + ellipsis;
        for (size_t j = k; j < parts.size(); ++j) {
            candidate += seps[j] + parts[j];
        }
    }
    candidate = Ceil(f, candidate) > limit ? ellipsis + seps.back() + parts.back() : candidate;
    return Ceil(f, candidate) <= limit ? Cut{true, candidate} : TruncateString(f, path, limit, ellipsis);
}

// Texts of the characters the rules treat specially; paths of letters and dots between slashes ("\\" is
// a separator on Windows only), now and then a tab or a line end, some components empty.
const wchar_t kText[] = L"aaaaimW     --\t\t\r\n/.\u65E5\u3000\u3001\u300F\u3010\uFF01\u0100";
const wchar_t kPath[] = L"abcdefghijklmbcdefghijklmcdefghijklm.../////////\\\\\\\t\n";

class Texts {
public:
    explicit Texts(uint32_t seed) : random_(seed) {}
    int Uniform(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
    template <size_t n>
    ULOString Text(int maxLength, const wchar_t (&alphabet)[n]) {
        ULOString s;
        for (int i = Uniform(0, maxLength); i > 0; --i) {
            s += alphabet[Uniform(0, static_cast<int>(n) - 2)];
        }
        return s;
    }
    ULOString Ellipsis() {
        return std::vector<const wchar_t*>{L"...", L"...", L"\u2026", L"", L".\t.", L"a\nbb"}[Uniform(0, 5)];
    }
    float StartX() {
        const float choices[] = {0.0f, 0.0f, 48.0f, 49.5f, 100.0f, -30.0f};
        const int pick = Uniform(0, 6);
        return pick < 6 ? choices[pick] : std::uniform_real_distribution<float>(-100.0f, 300.0f)(random_);
    }

private:
    std::mt19937 random_;
};

struct FontCase {
    float magnifier;
    int language;
    int32_t space;
};

class Agreement : public ::testing::TestWithParam<FontCase> {
protected:
    std::unique_ptr<ULOFont> font_ = KnownFont(GetParam().magnifier, GetParam().language, GetParam().space);
};

}  // namespace

TEST_P(Agreement, WidthsHeightsWrapOffsetsAndTruncatedTextsAndPaths) {
    Texts texts(1);
    for (int n = 0; n < 3000; ++n) {
        const ULOString s = texts.Text(60, kText);
        const float startX = texts.StartX();
        ASSERT_EQ(SingleLine(*font_, s, startX), font_->GetStringRealWidthSingleLine(s, startX));
        ASSERT_EQ(MultiLine(*font_, s, startX), font_->GetStringRealWidthMultiLine(s, startX));
        const int width = texts.Uniform(-60, 200), maxWidth = texts.Uniform(-20, 400);
        ASSERT_EQ(TextLabelHeight(*font_, s, width ? width : 1),
                  font_->ComputeTextLabelHeight(s, width ? width : 1));
        ASSERT_EQ(MaxWordOffset(*font_, maxWidth, s, startX), font_->GetMaxWordOffset(maxWidth, s, startX))
            << n;
    }
    Texts cuts(3);
    for (int n = 0; n < 6000; ++n) {
        const bool path = n % 2 == 1;
        const ULOString s = path ? cuts.Text(n % 20 == 1 ? 300 : 50, kPath) : cuts.Text(60, kText);
        const ULOString ellipsis = cuts.Ellipsis();
        const int maxWidth = cuts.Uniform(-20, path ? 600 : 400);
        Cut got;
        got.first = path ? font_->TruncatePath(s, got.second, maxWidth, ellipsis)
                         : font_->TruncateString(s, got.second, maxWidth, ellipsis);
        ASSERT_EQ(path ? TruncatePath(*font_, s, maxWidth, ellipsis)
                       : TruncateString(*font_, s, maxWidth, ellipsis),
                  got)
            << n;
    }
}

INSTANTIATE_TEST_SUITE_P(KnownWidths, Agreement,
                         ::testing::Values(FontCase{1.0f, kLatin, kSpace}, FontCase{2.0f, kLatin, kSpace},
                                           FontCase{1.5f, kJapanese, kSpace}, FontCase{1.25f, kLatin, 30},
                                           FontCase{1.1f, kJapanese, kSpace}, FontCase{0.7f, kLatin, kSpace},
                                           FontCase{3.3f, kLatin, 12}, FontCase{0.5f, kJapanese, 30}));

TEST(TabStops, TabWidthsRoundedWidthsHeightsWildMagnifiersAndOutputThatIsTheInput) {
    auto one = KnownFont(1.0f), two = KnownFont(2.0f);
    // At 45 exactly a space is left: this stop. Unmagnified: a 50-unit interval whose room is divided by
    // m once more (at 48, 2 < 2.5: 52 / 2; at 47, 3 / 2).
    const std::tuple<const ULOFont*, float, bool, float> tabs[] = {
        {one.get(), 48, true, 52},   {one.get(), 45, true, 5},  {one.get(), 44, false, 6},
        {one.get(), 100, false, 50}, {two.get(), 0, true, 100}, {two.get(), 96, true, 4},
        {two.get(), 98, true, 102},  {two.get(), 0, false, 25}, {two.get(), 48, false, 26},
        {two.get(), 47, false, 1.5f}};
    for (const auto& [font, x, device, width] : tabs) {
        EXPECT_EQ(width, font->GetTabWidth(x, device)) << x << " " << font->GetMagnifier();
    }
    EXPECT_EQ(one->GetStringRealWidthMultiLine(L"ab\ncde", 3.0f), one->GetStringRealWidth(L"ab\ncde", 3.0f));
    EXPECT_EQ(30.0f, one->ComputeMaxStringWidth(L"ab\ncde"));
    EXPECT_EQ(2, two->GetStringWidth(L"i", 0.0f));
    auto oneAndHalf = KnownFont(1.5f);
    EXPECT_EQ(7, oneAndHalf->GetStringWidth(L"a", 0.0f));       // 6.67
    EXPECT_EQ(14, oneAndHalf->GetStringWidth(L"aa\na", 0.0f));  // 13.33
    EXPECT_EQ(0, oneAndHalf->GetStringWidth(L"", 0.0f));
    EXPECT_EQ(2u, ULOFont::CountLineFeeds(L"\r\n\n\r"));
    EXPECT_EQ(16, two->ComputeMinStringHeight(L"abc"));
    EXPECT_EQ(32, two->ComputeMinStringHeight(L"a\r\nb"));
    EXPECT_EQ(16, two->ComputeMinStringHeight(L"a\rb"));
    // Logical width (device 30 at m = 2), device height.
    EXPECT_EQ(ULOSize(15, 32), two->ComputeStringBoundingRect(L"abc\nde"));
    EXPECT_EQ(ULOSize(5, 32), two->ComputeStringBoundingRect(L"a\r\nb"));
    EXPECT_EQ(ULOSize(0, 16), two->ComputeStringBoundingRect(L""));
    // The sweep never asks for a zero label width.
    EXPECT_EQ(32, one->ComputeTextLabelHeight(L"hello\nab", 0));
    auto zero = KnownFont(0.0f);  // every width divides by zero
    EXPECT_EQ(std::numeric_limits<int>::max(), zero->GetStringWidth(L"a", 0.0f));
    EXPECT_EQ(0, zero->GetStringWidth(L"\t", 0.0f));                  // NaN
    EXPECT_EQ(0.0f, zero->GetStringRealWidthMultiLine(L"\n", 0.0f));  // empty lines are 0, not 0 / 0
    EXPECT_EQ(std::numeric_limits<int>::min(), zero->ComputeTextLabelHeight(L"a", -1));
    ULOString out;
    EXPECT_TRUE(zero->TruncateString(L"abc", out, 10, L"..."));
    EXPECT_TRUE(zero->TruncatePath(L"a/b/c", out, 10, L"..."));
    EXPECT_EQ(0, zero->GetMaxWordOffset(10, L"abc def", 0.0f));
    // 2^31 lines of 16 pixels.
    EXPECT_EQ(std::numeric_limits<int>::max(), zero->ComputeTextLabelHeight(L"a", 1));
    ULOString s = L"hello", path = L"aa/bbbb/cccc/dd";
    EXPECT_TRUE(one->TruncateString(s, s, 30, L"...") && one->TruncatePath(path, path, 30, L"..."));
    EXPECT_EQ(std::make_pair(ULOString(L"h..."), ULOString(L"a...")), std::make_pair(s, path));
}
