// The engine's batched advances (glyphs hinted once each, large batches shared by two threads with a
// face each) against the plain path: one FreeType load per code point, in code-point order, with the
// engine's load flags, in a library of the test's own.
#include <gtest/gtest.h>

#include <algorithm>

#include <ft2build.h>
#include FT_DRIVER_H
#include FT_FREETYPE_H
#include FT_MODULE_H

#include "font/TestFonts.h"
#include "toolslib/MultiProc.h"

using namespace ulogui::platform;

namespace {

// One plain load per code point, in code order, with the engine's load flags.
std::vector<int> PlainAdvances(const std::string& file, unsigned ppem, uint32_t first, uint32_t last) {
    return testfonts::ClassicAdvances(
        file, ppem, first, last,
        FT_LOAD_TARGET_MONO | FT_LOAD_NO_AUTOHINT | FT_LOAD_IGNORE_GLOBAL_ADVANCE_WIDTH);
}

std::shared_ptr<PlatformFont> Ipaex(FontEngine& engine, int height, int weight = 400) {
    return testfonts::MakeFont(engine, L"IPAexGothic", height, charset::kShiftJis, weight);
}

// Restores the thread cap a test changed.
struct ThreadCap {
    explicit ThreadCap(int threads) { tools::multiproc::SetMaxJobThreadAllowed(threads); }
    ~ThreadCap() { tools::multiproc::SetMaxJobThreadAllowed(0); }
};

}  // namespace

// The ranges a Japanese font fills, at two sizes, with two threads and with one; a small run first
// leaves part of the glyphs known, so the large batch mixes cached and new glyphs.
TEST(FontEngineAdvanceBatches, EveryCjkWidthEqualsThePlainPerGlyphLoad) {
    REQUIRE_CJK_FONTS();
    const std::string file = testfonts::IpaexGothic();
    const std::pair<uint32_t, uint32_t> ranges[] = {
        {0x4E00, 0x4E7F}, {0x3000, 0x9FFF}, {0xF900, 0xFFEF}, {0, 255}};
    for (const int threads : {0, 1}) {
        ThreadCap cap(threads);
        for (const int height : {-16, -11}) {
            auto engine = testfonts::MakeEngine({file});
            auto font = Ipaex(*engine, height);
            ASSERT_TRUE(font);
            const unsigned ppem = font->GetMetrics().pixelsPerEm;
            SCOPED_TRACE(testing::Message() << "threads cap " << threads << ", ppem " << ppem);
            for (const auto& [first, last] : ranges) {
                EXPECT_EQ(PlainAdvances(file, ppem, first, last), testfonts::Advances(*font, first, last))
                    << std::hex << first;
            }
            // A second font of the size reads the cache; synthesised bold adds its pixel to each.
            std::vector<int> widened = PlainAdvances(file, ppem, 0x3000, 0x9FFF);
            EXPECT_EQ(widened, testfonts::Advances(*Ipaex(*engine, height), 0x3000, 0x9FFF));
            std::transform(widened.begin(), widened.end(), widened.begin(), [](int w) { return w + 1; });
            EXPECT_EQ(widened, testfonts::Advances(*Ipaex(*engine, height, 700), 0x3000, 0x9FFF));
        }
    }
}
