#pragma once
// Shared pieces of the drawing surface tests: the magnifier fixture, surfaces over memory they did not
// allocate, a surface that watches the frame from inside its virtual getters, pictures and surfaces of
// given pixels, raw pixel checks, and golden scenes.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "golden/Golden.h"
#include "ulogui/Magnify.h"
#include "ulogui/Picture.h"
#include "ulogui/TrueColorDC.h"

// The private queries of the surface (the class names this struct as a friend).
struct ULOTrueColorDCBaseTestAccess {
    static bool CanGetBits(const ULOTrueColorDCBase& dc) { return dc.CanGetBits(); }
    static bool ComputeAlpha(const ULOTrueColorDCBase& dc) { return dc.ComputeAlpha(); }
};

namespace surfacetest {

// Every test starts at magnifier 1.0 and leaves the thread there.
class MagnifierTest : public ::testing::Test {
protected:
    void SetUp() override { magnify::GetMagnifier() = 1.0f; }
    void TearDown() override { magnify::GetMagnifier() = 1.0f; }
    static void SetMagnifier(float m) { magnify::GetMagnifier() = m; }
};

using Pixel = std::array<unsigned char, 4>;
const Pixel kClear{0, 0, 0, 0};

// The four bytes of device pixel (x, y), found bottom-up from the stored geometry.
inline Pixel PixelAt(const ULOTrueColorDCBase& dc, int x, int y) {
    const unsigned char* p = dc.GetBits(x, y);
    return Pixel{p[0], p[1], p[2], p[3]};
}

inline Pixel Bgra(const CLR& c, unsigned char alpha) {
    return Pixel{c.blue, c.green, c.red, alpha};
}

// Every device pixel, top row first; every byte of the buffer.
inline std::vector<Pixel> Pixels(const ULOTrueColorDCBase& dc) {
    std::vector<Pixel> out;
    for (int i = 0; i < dc.GetWidth(true) * dc.GetHeight(true); ++i) {
        out.push_back(PixelAt(dc, i % dc.GetWidth(true), i / dc.GetWidth(true)));
    }
    return out;
}
inline std::vector<unsigned char> Bytes(const ULOTrueColorDCBase& dc) {
    return std::vector<unsigned char>(dc.GetBits(),
                                      dc.GetBits() + dc.GetLineWidth(true) * dc.GetHeight(true));
}

using PixelOf = std::function<Pixel(int x, int y)>;

// Every device pixel of the surface set to pixel(x, y).
inline void Paint(ULOTrueColorDCBase& dc, const PixelOf& pixel) {
    for (int y = 0; y < dc.GetHeight(true); ++y) {
        for (int x = 0; x < dc.GetWidth(true); ++x) {
            const Pixel p = pixel(x, y);
            std::copy(p.begin(), p.end(), dc.GetBits(x, y));
        }
    }
}

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

// A pixel that tells where it came from.
inline Pixel Tagged(int x, int y, unsigned char alpha) {
    return Pixel{static_cast<unsigned char>(10 + x), static_cast<unsigned char>(40 + y), 90, alpha};
}

// Every device pixel set to one colour.
inline void FillAll(ULOTrueColorDCBase& dc, const CLR& colour, unsigned char alpha) {
    const bool guard = dc.GetWorkingOnScreenSize();
    const ULORect all = dc.GetRect(true);
    dc.SetWorkingOnScreenSize(true);
    dc.FillRect(&all, colour, alpha);
    dc.SetWorkingOnScreenSize(guard);
}

// Expects exactly the device pixels inside `area` to be `inside`, all others `outside`.
inline void ExpectOnly(const ULOTrueColorDCBase& dc, const ULORect& area, const Pixel& inside,
                       const Pixel& outside = kClear) {
    for (int y = 0; y < dc.GetHeight(true); ++y) {
        for (int x = 0; x < dc.GetWidth(true); ++x) {
            ASSERT_EQ(PixelAt(dc, x, y), area.Contains(ULOPoint(x, y)) ? inside : outside)
                << "at (" << x << ", " << y << ")";
        }
    }
}

// A subclass that brings its own buffer through the protected constructor: memory it keeps (the surface
// must not free it), or a block it hands over (the surface must free it, or the sanitizer build reports
// a leak).
class BufferSurface : public ULOTrueColorDCBase {
public:
    BufferSurface(unsigned char* memory, int w, int h, int lineWidth, int flags = 0) {
        ULOPictureBits::operator=(ULOPictureBits(memory, w, h, lineWidth, flags));
    }
    BufferSurface(int w, int h) {
        Reset(static_cast<unsigned char*>(std::calloc(static_cast<size_t>(w) * h, 4)), w, h, w * 4, 0);
        ownBuffer = true;
    }
    bool OwnBuffer() const { return ownBuffer; }
};

// Records what the frame looks like from inside the drawing members (the guard flag and whether the
// bits may be read) each time the height is asked for, and can throw from there.
class ObservedSurface : public ULOTrueColorDCBase {
public:
    using ULOTrueColorDCBase::ULOTrueColorDCBase;

    int GetHeight(bool magnified) const override {
        guardSeen.push_back(GetWorkingOnScreenSize());
        canGetBitsSeen.push_back(ULOTrueColorDCBaseTestAccess::CanGetBits(*this));
        if (throwFromHeight) {
            throw std::runtime_error("height unavailable");
        }
        return ULOTrueColorDCBase::GetHeight(magnified);
    }

    mutable std::vector<bool> guardSeen;
    mutable std::vector<bool> canGetBitsSeen;
    bool throwFromHeight = false;
};

// Scenes: one drawing call (or a few) on a fresh small surface, compared byte for byte with its golden
// image. Every scene starts from the same backdrop, a distinct value in every byte of every device pixel
// (transparencies across the whole range), so that each blend leaves its trace.
inline Pixel Backdrop(int x, int y) {
    return Pixel{static_cast<unsigned char>(x * 23 + y * 7), static_cast<unsigned char>(x * 5 + y * 29 + 60),
                 static_cast<unsigned char>(x * y * 3 + 120), static_cast<unsigned char>(x * 41 + y * 67)};
}

struct Scene {
    std::string name;
    float m;  // the magnifier while the surface is built and drawn on
    bool alpha, magnified, guard;
    int w, h;  // logical
    std::function<void(ULOTrueColorDCBase&)> draw;
};

// Draws every scene (the guard must come back as it was set) and compares all with the family's file.
inline void ExpectScenes(const std::string& family, const std::vector<Scene>& scenes) {
    std::vector<golden::Image> images;
    for (const Scene& s : scenes) {
        magnify::GetMagnifier() = s.m;
        ULOTrueColorDCBase dc(ULORect(0, 0, s.w, s.h), s.alpha, s.magnified);
        Paint(dc, Backdrop);
        dc.SetWorkingOnScreenSize(s.guard);
        s.draw(dc);
        EXPECT_EQ(dc.GetWorkingOnScreenSize(), s.guard) << s.name;
        images.push_back({s.name, dc.GetWidth(true), dc.GetHeight(true), 4, {}});
        for (const Pixel& p : Pixels(dc)) {
            images.back().bytes.insert(images.back().bytes.end(), p.begin(), p.end());
        }
        magnify::GetMagnifier() = 1.0f;
    }
    golden::ExpectMatches(family, images);
}

}  // namespace surfacetest
