// The vector paths against the scalar reference, bit for bit: an exhaustive sweep of the blending inputs
// of every wrapper, random rows (every length up to past two vectors, so every tail, and one long row
// across several staging blocks) for every functor under every wrapper, and the two integer identities
// the kernels rest on.
#include <random>

#include "TransferTestSupport.h"
#include "pixelops/PixelTransferKernels.h"

namespace {

using namespace ulogui::pixelops;
using ulogui::base::IsaName;
using namespace transfer_test;  // W0 .. W4
using Bytes = std::vector<unsigned char>;

void Set(unsigned char* p, unsigned b, unsigned g, unsigned r, unsigned a) {
    p[0] = static_cast<unsigned char>(b);
    p[1] = static_cast<unsigned char>(g);
    p[2] = static_cast<unsigned char>(r);
    p[3] = static_cast<unsigned char>(a);
}

// 256 x 256 pixel pairs; `fill(i, j, dst, src)` writes pair 256 * i + j.
template <class Fill>
void Grid(Bytes& dst, Bytes& src, Fill fill) {
    dst.resize(256 * 256 * 4);
    src.resize(dst.size());
    for (int i = 0; i < 256; ++i) {
        for (int j = 0; j < 256; ++j) {
            fill(i, j, &dst[4 * (256 * i + j)], &src[4 * (256 * i + j)]);
        }
    }
}

// Runs the instance on the scalar path and at level `isa` over copies of the same rows of `rowPixels`; true
// when every byte agrees, otherwise the first difference is reported.
::testing::AssertionResult SameAsScalar(Isa isa, Functor functor, Wrapper wrapper, float opacity,
                                        float relativeOpacity, const Bytes& dst, const Bytes& src,
                                        int rowPixels = 256) {
    Bytes expected = dst, actual = dst;
    const Loop reference(functor, wrapper, opacity, relativeOpacity, Isa::kScalar);
    const Loop fast(functor, wrapper, opacity, relativeOpacity, isa);
    const int pixels = static_cast<int>(dst.size() / 4);
    for (int start = 0; start < pixels; start += rowPixels) {
        const int n = std::min(rowPixels, pixels - start);
        reference.RunRow(&expected[4 * start], &src[4 * start], n);
        fast.RunRow(&actual[4 * start], &src[4 * start], n);
    }
    const size_t i = std::mismatch(expected.begin(), expected.end(), actual.begin()).first - expected.begin();
    if (i == expected.size()) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << IsaName(isa) << ", functor " << int(functor) << ", wrapper " << int(wrapper) << ", opacity "
           << opacity << ": byte " << i << " of " << int(dst[i]) << " under " << int(src[i]) << " gives "
           << int(actual[i]) << ", not " << int(expected[i]);
}

TEST(TransferIdentities, DivisionBy255AndTheScaledFloatReciprocal) {
    for (uint32_t x = 0; x <= 255u * 255u; ++x) {
        ASSERT_EQ((x + 1 + (x >> 8)) >> 8, x / 255) << x;
        ASSERT_EQ(((x * kDivide255Multiplier) >> 16) >> kDivide255Shift, x / 255) << x;
    }
    for (int d = 1; d <= 255; ++d) {
        const float reciprocal = kReciprocalScale / static_cast<float>(d);
        for (int n = 0; n <= 255 * d; ++n) {
            ASSERT_EQ(static_cast<int>(static_cast<float>(n) * reciprocal), n / d) << n << " / " << d;
        }
    }
}

class VectorPathTest : public transfer_test::TransferTest, public ::testing::WithParamInterface<Isa> {};

// Every source alpha against every destination byte and every functor byte under W1 and W2, every weight
// k = a under W3. The destination's alpha f ^ d takes every value for each source alpha, so W4 sees
// every pair of alphas, each with 256 pairs of colours.
TEST_P(VectorPathTest, EveryWrapperOverAllInputs) {
    const float ontoAlphaOpacities[] = {1.0f, 0.5f, 0.1f, 0.996f};
    Bytes dst, src;
    for (int a = 0; a < 256; ++a) {
        Grid(dst, src, [a](int d, int f, unsigned char* p, unsigned char* s) {
            Set(p, d, 255 - d, d ^ 0x5A, f ^ d);
            Set(s, f, 255 - f, f * 7, a);
        });
        const float weightA = (static_cast<float>(a) + 0.5f) / 255.0f;  // trunc(weightA * 255) == a
        ASSERT_EQ(OpacityWeight(weightA), a);
        const std::pair<Wrapper, float> runs[] = {{W1, 1.0f},
                                                  {W2, 0.004f},
                                                  {W2, 0.5f},
                                                  {W2, 0.9f},
                                                  {W3, weightA},
                                                  {W3All, weightA},
                                                  {W4, ontoAlphaOpacities[a % 4]}};
        for (const auto& run : runs) {
            const Functor functor = run.first == W3All ? Functor::kFullCopy : Functor::kCopy;
            ASSERT_TRUE(SameAsScalar(GetParam(), functor, run.first, run.second, 1.0f, dst, src));
        }
    }
}

// Every functor under every wrapper, rows of every length up to 70 pixels and one of 1031 (the functor
// runs in staging blocks of 256), alpha bytes biased toward the values where the wrappers branch.
TEST_P(VectorPathTest, EveryInstanceOnRandomRowsOfEveryLength) {
    std::mt19937 random(11);
    for (int i = 0; i < 256; ++i) {
        DISABLED_CLR_COMPONENT[i] = static_cast<unsigned char>(random());
        HIGHLIGHT_CLR_COMPONENT[i] = static_cast<unsigned char>(random());
    }
    CLR_GRADATION_TOP_LEFT = CLR(131, 20, 250);
    const unsigned char specialAlpha[] = {0, 1, 254, 255, 128};
    auto alpha = [&]() {
        const unsigned r = random() % 10;
        return r < 5 ? specialAlpha[r] : random();
    };
    for (int length = 0; length <= 71; ++length) {
        const int pixels = length <= 70 ? length : 1031;
        Bytes dst(4 * pixels), src(4 * pixels);
        for (int p = 0; p < pixels; ++p) {
            Set(&dst[4 * p], random(), random(), random(), alpha());
            Set(&src[4 * p], random(), random(), random(), alpha());
        }
        for (int f = 0; f < kFunctorCount; ++f) {
            for (int w = 0; w < kWrapperCount; ++w) {
                for (float opacity : {1.0f, 0.5f, 0.0f, 0.73f}) {
                    ASSERT_TRUE(SameAsScalar(GetParam(), static_cast<Functor>(f), static_cast<Wrapper>(w),
                                             opacity, length % 2 ? -0.7f : 0.6f, dst, src,
                                             std::max(pixels, 1)))
                        << "row of " << pixels;
                }
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Levels, VectorPathTest, ::testing::ValuesIn(transfer_test::AvailableIsas(false)),
                         [](const ::testing::TestParamInfo<Isa>& p) { return IsaName(p.param); });

// The kernels at a width no instruction set of this machine has (two pixels a vector) take the
// portable code of every helper: the same results again.
TEST(PortableKernels, TwoPixelVectorsMatchTheScalarReference) {
    constexpr KernelSet kernels = MakeKernelSet<8>();
    const std::pair<Kernel, Wrapper> cases[] = {{kernels.plainColour, W0},        {kernels.sourceAlpha, W1},
                                                {kernels.sourceAlphaOpacity, W2}, {kernels.opacity, W3},
                                                {kernels.opacityAllBytes, W3All}, {kernels.ontoAlpha, W4}};
    std::mt19937 random(17);
    const int pixels = 4099;
    Bytes dst(4 * pixels), src(4 * pixels);
    for (size_t i = 0; i < dst.size(); ++i) {
        dst[i] = static_cast<unsigned char>(random());
        src[i] = static_cast<unsigned char>(random());
    }
    for (const auto& c : cases) {
        for (float opacity : {1.0f, 0.3f}) {
            const Functor functor = c.second == W3All ? Functor::kFullCopy : Functor::kCopy;
            const Loop reference(functor, c.second, opacity, 1.0f, Isa::kScalar);
            Bytes expected = dst, actual = dst;
            reference.RunRow(expected.data(), src.data(), pixels);
            const int done = c.first(actual.data(), src.data(), pixels, reference.GetConstants().k);
            EXPECT_EQ(done, pixels - 1);
            reference.RunRow(&actual[4 * done], &src[4 * done], pixels - done);
            EXPECT_TRUE(expected == actual) << "wrapper " << int(c.second) << ", opacity " << opacity;
        }
    }
}

}  // namespace
