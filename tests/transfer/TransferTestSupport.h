#pragma once
// Helpers of the transfer tests: pixels written blue, green, red, alpha; the effect tables and the
// palette colour the functors read, restored after each test; and the paths to run on.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "ulogui/Palette.h"
#include "ulogui/PixelTransfer.h"
#include "ulogui/PixelTransferLoops.h"

namespace transfer_test {

using Pixel = std::array<unsigned char, 4>;  // blue, green, red, alpha

inline Pixel Px(int b, int g, int r, int a) {
    return Pixel{{static_cast<unsigned char>(b), static_cast<unsigned char>(g), static_cast<unsigned char>(r),
                  static_cast<unsigned char>(a)}};
}

// Leaves the effect tables zero and CLR_GRADATION_TOP_LEFT black after each test, as at load time.
class TransferTest : public ::testing::Test {
protected:
    void TearDown() override {
        std::fill(std::begin(DISABLED_CLR_COMPONENT), std::end(DISABLED_CLR_COMPONENT), 0);
        std::fill(std::begin(HIGHLIGHT_CLR_COMPONENT), std::end(HIGHLIGHT_CLR_COMPONENT), 0);
        CLR_GRADATION_TOP_LEFT = CLR(0, 0, 0);
    }
};

inline std::vector<ulogui::transfer::Path> AvailablePaths() {
    using ulogui::transfer::Path;
    std::vector<Path> paths;
    for (Path p : {Path::kScalar, Path::kVector128, Path::kVector256, Path::kVector512}) {
        if (ulogui::transfer::IsPathAvailable(p)) {
            paths.push_back(p);
        }
    }
    return paths;
}

inline const char* PathName(ulogui::transfer::Path path) {
    switch (path) {
        case ulogui::transfer::Path::kScalar:
            return "scalar";
        case ulogui::transfer::Path::kVector128:
            return "vector128";
        case ulogui::transfer::Path::kVector256:
            return "vector256";
        case ulogui::transfer::Path::kVector512:
            return "vector512";
    }
    return "?";
}

}  // namespace transfer_test
