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

// The wrappers by the names the docs give them.
constexpr auto W0 = ulogui::transfer::Wrapper::kPlain;
constexpr auto W1 = ulogui::transfer::Wrapper::kSourceAlpha;
constexpr auto W2 = ulogui::transfer::Wrapper::kSourceAlphaOpacity;
constexpr auto W3 = ulogui::transfer::Wrapper::kOpacity;
constexpr auto W3All = ulogui::transfer::Wrapper::kOpacityAllBytes;
constexpr auto W4 = ulogui::transfer::Wrapper::kOntoAlpha;

// Leaves the effect tables zero and CLR_GRADATION_TOP_LEFT black after each test, as at load time.
class TransferTest : public ::testing::Test {
protected:
    void TearDown() override {
        std::fill(std::begin(DISABLED_CLR_COMPONENT), std::end(DISABLED_CLR_COMPONENT), 0);
        std::fill(std::begin(HIGHLIGHT_CLR_COMPONENT), std::end(HIGHLIGHT_CLR_COMPONENT), 0);
        CLR_GRADATION_TOP_LEFT = CLR(0, 0, 0);
    }
};

// The paths this machine runs, the scalar reference first unless `withScalar` is false.
inline std::vector<ulogui::transfer::Path> AvailablePaths(bool withScalar = true) {
    using ulogui::transfer::Path;
    std::vector<Path> paths;
    for (Path p : {Path::kScalar, Path::kVector128, Path::kVector256, Path::kVector512}) {
        if (ulogui::transfer::IsPathAvailable(p) && (withScalar || p != Path::kScalar)) {
            paths.push_back(p);
        }
    }
    return paths;
}

inline const char* PathName(ulogui::transfer::Path path) {
    static const char* const names[] = {"scalar", "vector128", "vector256", "vector512"};
    return names[static_cast<int>(path)];
}

}  // namespace transfer_test
