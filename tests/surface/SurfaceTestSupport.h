#pragma once
// Shared pieces of the drawing surface tests: the magnifier fixture, a surface that watches the frame
// from inside its virtual getters, and raw pixel reads.
#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <vector>

#include "ulogui/Magnify.h"
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

// The four bytes of device pixel (x, y), found bottom-up from the stored geometry.
inline Pixel PixelAt(const ULOTrueColorDCBase& dc, int x, int y) {
    const unsigned char* p = dc.GetBits(x, y);
    return Pixel{p[0], p[1], p[2], p[3]};
}

inline Pixel Bgra(const CLR& c, unsigned char alpha) {
    return Pixel{c.blue, c.green, c.red, alpha};
}

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

}  // namespace surfacetest
