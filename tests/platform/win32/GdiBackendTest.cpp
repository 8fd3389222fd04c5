// The Windows backend against what the Windows calls do: DrawTextW on the text canvas places the
// text where the font's advances and metrics say, and the critical section is recursive.
#include <gtest/gtest.h>

#include <thread>

#include "font/TestFonts.h"
#include "platform/TextCanvas.h"
#include "ulolib/CriticalSection.h"

namespace {

namespace platform = ulogui::platform;
namespace dt = ulogui::platform::drawtext;

// The columns [first, last + 1) the text touched (alpha set to 0 on a section of 0xEE), or {0, 0}.
std::pair<int, int> InkColumns(const ulogui::raster::RasterView& view) {
    int first = view.Width(), last = -1;
    for (int y = 0; y < view.Height(); ++y) {
        for (int x = 0; x < view.Width(); ++x) {
            const unsigned char* p = view.Pixel(x, y);
            if (p[3] == 0) {
                EXPECT_TRUE(p[0] == p[1] && p[1] == p[2]) << "grey coverage only, at " << x << "," << y;
                first = std::min(first, x);
                last = std::max(last, x);
            } else {
                EXPECT_EQ(p[0] + p[1] + p[2], 3 * 0xEE) << "untouched pixels keep their bytes";
            }
        }
    }
    return last < 0 ? std::make_pair(0, 0) : std::make_pair(first, last + 1);
}

TEST(GdiTextCanvas, DrawTextAlignsByTheFontsAdvances) {
    REQUIRE_LATIN_FONTS();
    testfonts::ScopedEngine scoped(testfonts::LatinEngine());
    platform::FontRequest request;
    request.height = -15;
    request.faceName = L"DejaVu Sans";
    HFONT font = platform::CreateFontHandle(request);
    const auto resolved = platform::ResolveFont(font);
    ASSERT_TRUE(resolved);
    EXPECT_EQ(resolved->GetFaceName(), L"DejaVu Sans");
    int32_t advances[4] = {};
    resolved->GetCharAdvances('H', 'K', advances);  // "HIJK"
    const int width = advances[0] + advances[1] + advances[2] + advances[3];
    const int lineHeight = resolved->GetMetrics().height;

    const struct {
        unsigned format;
        int shift;  // of the ink from where left alignment puts it
    } cases[] = {{dt::kLeft, 0}, {dt::kCenter, (80 - width) / 2}, {dt::kRight, 80 - width}};
    int leftInk = -1;
    for (const auto& c : cases) {
        platform::TextCanvas canvas(80, 2 * lineHeight);
        const auto view = canvas.Pixels();
        ASSERT_FALSE(view.IsEmpty());
        for (int y = 0; y < view.Height(); ++y) {
            std::fill(view.Row(y), view.Row(y) + 80 * 4, 0xEE);
        }
        platform::SelectFont(canvas.Context(), font);
        canvas.SetBackgroundMode(platform::BackgroundMode::kTransparent);
        canvas.SetTextColour(CLR(0, 0, 0));
        EXPECT_EQ(canvas.DrawText(L"HIJK\nHIJK", -1, ULORect(0, 0, 80, lineHeight), c.format),
                  2 * lineHeight);
        const auto ink = InkColumns(canvas.Pixels());
        leftInk = leftInk < 0 ? ink.first : leftInk;
        EXPECT_EQ(ink.first, leftInk + c.shift) << c.format;
        EXPECT_LE(ink.second - ink.first, width) << c.format;
    }
    platform::DeleteFontHandle(font);
}

TEST(CriticalSection, IsRecursiveAndExcludesOtherThreads) {
    ulo::CriticalSection cs;
    ulo::SingleLock outer(cs);
    ASSERT_TRUE(cs.TryLock());  // the owner enters again
    bool other = true;
    std::thread([&] { other = cs.TryLock(); }).join();
    EXPECT_FALSE(other);
    cs.Unlock();
}

}  // namespace
