// The incremental measurement against the plain transcription in ReferenceMeasure.cpp, on random
// texts made of the characters the rules treat specially, for magnifiers whose divisions round
// (1.1, 0.7, 3.3) as well as exact ones. Floats must agree bit for bit.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "KnownWidthFont.h"
#include "ReferenceMeasure.h"

using namespace measuretest;

namespace {

uint32_t Bits(float v) {
    uint32_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    return bits;
}

const wchar_t kAlphabet[] = L"aaaaimW     --\t\t\r\n/.\u65E5\u3000\u3001\u300F\u3010\uFF01\u0100";

class Texts {
public:
    explicit Texts(uint32_t seed) : random_(seed) {}

    ULOString Text(size_t maxLength) {
        const size_t length = Uniform(0, static_cast<int>(maxLength));
        ULOString s;
        for (size_t i = 0; i < length; ++i) {
            s += kAlphabet[Uniform(0, static_cast<int>(std::size(kAlphabet)) - 2)];
        }
        return s;
    }

    // Components of letters and dots, now and then a tab or a line end, sometimes empty; "/" or "\\" (a
    // separator on Windows only) between them.
    ULOString Path(int maxComponents) {
        const int parts = Uniform(1, maxComponents);
        ULOString path;
        for (int k = 0; k < parts; ++k) {
            if (k > 0) {
                path += Uniform(0, 3) == 0 ? L'\\' : L'/';
            }
            const int length = Uniform(0, 8);
            for (int i = 0; i < length; ++i) {
                const int pick = Uniform(0, 40);
                path += pick == 0   ? L'\t'
                        : pick == 1 ? L'\n'
                        : pick < 5  ? L'.'
                                    : static_cast<wchar_t>(L'a' + pick % 13);
            }
        }
        return path;
    }

    ULOString Ellipsis() {
        static const wchar_t* const kChoices[] = {L"...", L"...", L"\u2026", L"", L".\t.", L"a\nbb"};
        return kChoices[Uniform(0, 5)];
    }

    float StartX() {
        static const float kChoices[] = {0.0f, 0.0f, 48.0f, 49.5f, 100.0f, -30.0f};
        const int pick = Uniform(0, 6);
        return pick < 6 ? kChoices[pick] : std::uniform_real_distribution<float>(-100.0f, 300.0f)(random_);
    }

    int Uniform(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

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
    void SetUp() override { font_ = KnownFont(GetParam().magnifier, GetParam().language, GetParam().space); }
    std::unique_ptr<ULOFont> font_;
};

}  // namespace

TEST_P(Agreement, WidthsAndHeights) {
    Texts texts(1);
    for (int n = 0; n < 3000; ++n) {
        const ULOString s = texts.Text(40);
        const float startX = texts.StartX();
        ASSERT_EQ(Bits(reference::SingleLine(*font_, s, startX)),
                  Bits(font_->GetStringRealWidthSingleLine(s, startX)));
        ASSERT_EQ(Bits(reference::MultiLine(*font_, s, startX)),
                  Bits(font_->GetStringRealWidthMultiLine(s, startX)));
        int width = texts.Uniform(-60, 200);
        width = width == 0 ? 1 : width;
        ASSERT_EQ(reference::TextLabelHeight(*font_, s, width), font_->ComputeTextLabelHeight(s, width));
    }
}

TEST_P(Agreement, WrapOffsets) {
    Texts texts(2);
    for (int n = 0; n < 3000; ++n) {
        const ULOString s = texts.Text(60);
        const float startX = texts.StartX();
        const int maxWidth = texts.Uniform(-20, 400);
        ASSERT_EQ(reference::MaxWordOffset(*font_, maxWidth, s, startX),
                  font_->GetMaxWordOffset(maxWidth, s, startX))
            << n;
    }
}

TEST_P(Agreement, TruncatedTextsAndPaths) {
    Texts texts(3);
    for (int n = 0; n < 6000; ++n) {
        const bool path = n % 2 == 1;
        const ULOString s = path ? texts.Path(n % 20 == 1 ? 60 : 10) : texts.Text(60);
        const ULOString ellipsis = texts.Ellipsis();
        const int maxWidth = texts.Uniform(-20, path ? 600 : 400);
        ULOString want, got;
        const bool wantShortened = path ? reference::TruncatePath(*font_, s, want, maxWidth, ellipsis)
                                        : reference::TruncateString(*font_, s, want, maxWidth, ellipsis);
        const bool shortened = path ? font_->TruncatePath(s, got, maxWidth, ellipsis)
                                    : font_->TruncateString(s, got, maxWidth, ellipsis);
        ASSERT_EQ(wantShortened, shortened) << n;
        ASSERT_EQ(want, got) << n;
    }
}

INSTANTIATE_TEST_SUITE_P(KnownWidths, Agreement,
                         ::testing::Values(FontCase{1.0f, kLatin, kSpace}, FontCase{2.0f, kLatin, kSpace},
                                           FontCase{1.5f, kJapanese, kSpace}, FontCase{1.25f, kLatin, 30},
                                           FontCase{1.1f, kJapanese, kSpace}, FontCase{0.7f, kLatin, kSpace},
                                           FontCase{3.3f, kLatin, 12}, FontCase{0.5f, kJapanese, 30}));

TEST(Agreement, OutputMayBeTheInput) {
    auto font = KnownFont(1.0f);
    ULOString s = L"hello";
    EXPECT_TRUE(font->TruncateString(s, s, 30, L"..."));
    EXPECT_EQ(L"h...", s);
    ULOString path = L"aa/bbbb/cccc/dd";
    EXPECT_TRUE(font->TruncatePath(path, path, 30, L"..."));
    EXPECT_EQ(L"a...", path);
}
