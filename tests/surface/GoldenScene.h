#pragma once
// Scenes: one drawing call (or a few) on a fresh small surface, compared byte for byte with its golden
// image. Every scene starts from the same backdrop, a distinct value in every byte of every device pixel
// (transparencies across the whole range), so that each blend leaves its trace.
#include <functional>
#include <string>
#include <vector>

#include "SurfaceTestSupport.h"
#include "golden/Golden.h"

namespace surfacetest {

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
