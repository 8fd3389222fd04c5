#pragma once
// Helpers of the transfer tests: pixels written blue, green, red, alpha; the effect tables and the
// palette colour the functors read, restored after each test; and the levels to run at.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <utility>
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

// The instruction-set levels this machine runs, the scalar reference first unless `withScalar` is false.
inline std::vector<ulogui::base::Isa> AvailableIsas(bool withScalar = true) {
    std::vector<ulogui::base::Isa> levels;
    for (int i = withScalar ? 0 : 1; i < ulogui::base::kIsaCount; ++i) {
        if (ulogui::base::IsIsaAvailable(static_cast<ulogui::base::Isa>(i))) {
            levels.push_back(static_cast<ulogui::base::Isa>(i));
        }
    }
    return levels;
}

}  // namespace transfer_test
