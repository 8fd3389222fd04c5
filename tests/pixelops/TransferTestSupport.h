#pragma once
// Helpers of the transfer tests: pixels written blue, green, red, alpha; the effect tables and the
// palette colour the functors read, restored after each test; and the paths to run on.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "pixelops/PixelTransferLoops.h"
#include "ulogui/Palette.h"
#include "ulogui/PixelTransfer.h"

namespace transfer_test {

using Pixel = std::array<unsigned char, 4>;  // blue, green, red, alpha

// The wrappers by the names the docs give them.
constexpr auto W0 = ulogui::pixelops::Wrapper::kPlain;
constexpr auto W1 = ulogui::pixelops::Wrapper::kSourceAlpha;
constexpr auto W2 = ulogui::pixelops::Wrapper::kSourceAlphaOpacity;
constexpr auto W3 = ulogui::pixelops::Wrapper::kOpacity;
constexpr auto W3All = ulogui::pixelops::Wrapper::kOpacityAllBytes;
constexpr auto W4 = ulogui::pixelops::Wrapper::kOntoAlpha;

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
inline std::vector<ulogui::pixelops::Path> AvailablePaths(bool withScalar = true) {
    using ulogui::pixelops::Path;
    std::vector<Path> paths;
    for (Path p : {Path::kScalar, Path::kVector128, Path::kVector256, Path::kVector512}) {
        if (ulogui::pixelops::IsPathAvailable(p) && (withScalar || p != Path::kScalar)) {
            paths.push_back(p);
        }
    }
    return paths;
}

inline const char* PathName(ulogui::pixelops::Path path) {
    static const char* const names[] = {"scalar", "vector128", "vector256", "vector512"};
    return names[static_cast<int>(path)];
}

}  // namespace transfer_test
