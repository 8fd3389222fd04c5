#pragma once
// Pictures and surfaces of given pixels for the picture drawing tests, and the palette and effect
// tables they read, put back after each test.
#include <algorithm>
#include <functional>
#include <iterator>
#include <vector>

#include "SurfaceTestSupport.h"
#include "ulogui/Palette.h"
#include "ulogui/Picture.h"

namespace surfacetest {

using PixelOf = std::function<Pixel(int x, int y)>;

// A picture outside the catalogue whose pixel (x, y) reads as pixel(x, y) (GetPixelAndAlpha): 3-byte
// pixels keep bytes 0 to 2, masks byte 3.
inline ULOPicture MakePicture(int w, int h, int flags, const PixelOf& pixel, bool magnified = false) {
    ULOPicture picture(ULOSize(w, h), flags);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const Pixel p = pixel(x, y);
            picture.SetPixelAndAlpha(x, y, CLR(p[2], p[1], p[0]), p[3]);
        }
    }
    picture.SetbIsMagnified(magnified);
    return picture;
}

// Every device pixel of the surface set to pixel(x, y).
inline void Paint(ULOTrueColorDCBase& dc, const PixelOf& pixel) {
    for (int y = 0; y < dc.GetHeight(true); ++y) {
        for (int x = 0; x < dc.GetWidth(true); ++x) {
            const Pixel p = pixel(x, y);
            std::copy(p.begin(), p.end(), dc.GetBits(x, y));
        }
    }
}

// Expects device pixel (area.left + x, area.top + y) to be inside(x, y), and every pixel outside the area
// `outside`.
inline void ExpectPicture(const ULOTrueColorDCBase& dc, const ULORect& area, const PixelOf& inside,
                          const Pixel& outside = kClear) {
    for (int y = 0; y < dc.GetHeight(true); ++y) {
        for (int x = 0; x < dc.GetWidth(true); ++x) {
            ASSERT_EQ(PixelAt(dc, x, y),
                      area.Contains(ULOPoint(x, y)) ? inside(x - area.left, y - area.top) : outside)
                << "at (" << x << ", " << y << ")";
        }
    }
}

// A pixel that tells where it came from.
inline Pixel Tagged(int x, int y, unsigned char alpha) {
    return Pixel{static_cast<unsigned char>(10 + x), static_cast<unsigned char>(40 + y), 90, alpha};
}

// The magnifier at 1.0, the highlight table cleared and CLR_LABEL_TEXT as it was, after each test.
class PictureTest : public MagnifierTest {
protected:
    void TearDown() override {
        MagnifierTest::TearDown();
        std::fill(std::begin(HIGHLIGHT_CLR_COMPONENT), std::end(HIGHLIGHT_CLR_COMPONENT), 0);
        CLR_LABEL_TEXT = savedLabel_;
    }

private:
    CLR savedLabel_ = CLR_LABEL_TEXT;
};

}  // namespace surfacetest
