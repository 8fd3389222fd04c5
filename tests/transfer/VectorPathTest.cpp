// The vector paths against the scalar reference, bit for bit: exhaustive sweeps of the blending inputs
// for the wrappers, random rows (every length up to past two vectors, so every tail) for every functor
// under every wrapper, and the two integer identities the kernels rest on.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "TransferTestSupport.h"
#include "ulogui/PixelTransferKernels.h"

namespace {

using namespace ulogui::transfer;
using transfer_test::AvailablePaths;
using transfer_test::PathName;

std::vector<Path> VectorPaths() {
    std::vector<Path> paths;
    for (Path p : AvailablePaths()) {
        if (p != Path::kScalar) {
            paths.push_back(p);
        }
    }
    return paths;
}

std::string Describe(const unsigned char* p) {
    std::ostringstream s;
    s << "(" << int(p[0]) << ", " << int(p[1]) << ", " << int(p[2]) << ", " << int(p[3]) << ")";
    return s.str();
}

// Runs the instance on the scalar path and on `path` over copies of the same rows; true when every
// byte agrees, otherwise the first difference is reported.
::testing::AssertionResult SameAsScalar(Path path, Functor functor, Wrapper wrapper, float opacity,
                                        float relativeOpacity, const std::vector<unsigned char>& dst,
                                        const std::vector<unsigned char>& src, int rowPixels) {
    std::vector<unsigned char> expected = dst;
    std::vector<unsigned char> actual = dst;
    const Loop reference(functor, wrapper, opacity, relativeOpacity, Path::kScalar);
    const Loop fast(functor, wrapper, opacity, relativeOpacity, path);
    const int pixels = static_cast<int>(dst.size() / 4);
    for (int start = 0; start < pixels; start += rowPixels) {
        const int n = std::min(rowPixels, pixels - start);
        reference.RunRow(&expected[4 * start], &src[4 * start], n);
        fast.RunRow(&actual[4 * start], &src[4 * start], n);
    }
    if (expected == actual) {
        return ::testing::AssertionSuccess();
    }
    for (int i = 0; i < pixels; ++i) {
        if (std::memcmp(&expected[4 * i], &actual[4 * i], 4) != 0) {
            return ::testing::AssertionFailure()
                   << PathName(path) << ", functor " << int(functor) << ", wrapper " << int(wrapper)
                   << ", opacity " << opacity << ": pixel " << i << " dst " << Describe(&dst[4 * i])
                   << " src " << Describe(&src[4 * i]) << " gives " << Describe(&actual[4 * i])
                   << ", expected " << Describe(&expected[4 * i]);
        }
    }
    return ::testing::AssertionFailure();
}

class VectorPathTest : public transfer_test::TransferTest, public ::testing::WithParamInterface<Path> {};

TEST(TransferIdentities, DivisionBy255OfEveryProductSum) {
    for (uint32_t x = 0; x <= 255u * 255u; ++x) {
        ASSERT_EQ((x + 1 + (x >> 8)) >> 8, x / 255) << x;
        ASSERT_EQ(((x * kDivide255Multiplier) >> 16) >> kDivide255Shift, x / 255) << x;
    }
}

TEST(TransferIdentities, CompositingQuotientThroughTheScaledFloatReciprocal) {
    for (int d = 1; d <= 255; ++d) {
        const float reciprocal = kReciprocalScale / static_cast<float>(d);
        for (int n = 0; n <= 255 * d; ++n) {
            const int q = static_cast<int>(static_cast<float>(n) * reciprocal);
            ASSERT_EQ(q, n / d) << n << " / " << d;
        }
    }
}

// Every source alpha against every destination byte and every functor byte.
TEST_P(VectorPathTest, SourceAlphaAndOpacityOverAllInputs) {
    std::vector<unsigned char> dst(256 * 256 * 4);
    std::vector<unsigned char> src(dst.size());
    for (int a = 0; a < 256; ++a) {
        for (int d = 0; d < 256; ++d) {
            for (int f = 0; f < 256; ++f) {
                unsigned char* p = &dst[4 * (256 * d + f)];
                unsigned char* s = &src[4 * (256 * d + f)];
                p[0] = static_cast<unsigned char>(d);
                p[1] = static_cast<unsigned char>(255 - d);
                p[2] = static_cast<unsigned char>(d ^ 0x5A);
                p[3] = static_cast<unsigned char>(f ^ d);
                s[0] = static_cast<unsigned char>(f);
                s[1] = static_cast<unsigned char>(255 - f);
                s[2] = static_cast<unsigned char>(f * 7);
                s[3] = static_cast<unsigned char>(a);
            }
        }
        ASSERT_TRUE(
            SameAsScalar(GetParam(), Functor::kCopy, Wrapper::kSourceAlpha, 1.0f, 1.0f, dst, src, 256));
        for (float opacity : {0.004f, 0.5f, 0.9f}) {
            ASSERT_TRUE(SameAsScalar(GetParam(), Functor::kCopy, Wrapper::kSourceAlphaOpacity, opacity, 1.0f,
                                     dst, src, 256));
        }
    }
}

// Every weight against every destination byte and every functor byte.
TEST_P(VectorPathTest, OpacityOverAllWeights) {
    std::vector<unsigned char> dst(256 * 256 * 4);
    std::vector<unsigned char> src(dst.size());
    for (int d = 0; d < 256; ++d) {
        for (int f = 0; f < 256; ++f) {
            unsigned char* p = &dst[4 * (256 * d + f)];
            unsigned char* s = &src[4 * (256 * d + f)];
            p[0] = p[3] = static_cast<unsigned char>(d);
            p[1] = static_cast<unsigned char>(f);
            p[2] = static_cast<unsigned char>(255 - d);
            s[0] = s[3] = static_cast<unsigned char>(f);
            s[1] = static_cast<unsigned char>(d);
            s[2] = static_cast<unsigned char>(255 - f);
        }
    }
    for (int k = 0; k <= 255; ++k) {
        const float opacity = (static_cast<float>(k) + 0.5f) / 255.0f;  // trunc(opacity * 255) == k
        ASSERT_EQ(OpacityWeight(opacity), k);
        ASSERT_TRUE(
            SameAsScalar(GetParam(), Functor::kCopy, Wrapper::kOpacity, opacity, 1.0f, dst, src, 256));
        ASSERT_TRUE(SameAsScalar(GetParam(), Functor::kFullCopy, Wrapper::kOpacityAllBytes, opacity, 1.0f,
                                 dst, src, 256));
    }
}

// Every source alpha against every destination alpha, with colour bytes of all values.
TEST_P(VectorPathTest, OntoAlphaOverAllAlphaPairs) {
    std::mt19937 random(7);
    std::vector<unsigned char> dst(256 * 256 * 4);
    std::vector<unsigned char> src(dst.size());
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            unsigned char* p = &dst[4 * (256 * a + b)];
            unsigned char* s = &src[4 * (256 * a + b)];
            for (int i = 0; i < 3; ++i) {
                p[i] = static_cast<unsigned char>(random());
                s[i] = static_cast<unsigned char>(random());
            }
            // Extremes, where the quotient is an exact integer, as often as anything else.
            if ((a + b) % 5 == 0) {
                p[0] = s[1] = 255;
                p[1] = s[0] = 0;
            }
            p[3] = static_cast<unsigned char>(b);
            s[3] = static_cast<unsigned char>(a);
        }
    }
    for (float opacity : {1.0f, 0.5f, 0.1f, 0.996f}) {
        for (int round = 0; round < 4; ++round) {
            ASSERT_TRUE(
                SameAsScalar(GetParam(), Functor::kCopy, Wrapper::kOntoAlpha, opacity, 1.0f, dst, src, 256));
            for (size_t i = 0; i < dst.size(); ++i) {
                if (i % 4 != 3) {
                    dst[i] = static_cast<unsigned char>(random());
                    src[i] = static_cast<unsigned char>(random());
                }
            }
        }
    }
}

// Every functor under every wrapper, rows of every length up to 70 pixels, alpha bytes biased toward
// the values where the wrappers branch.
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
        return r < 5 ? specialAlpha[r] : static_cast<unsigned char>(random());
    };
    for (int length = 0; length <= 70; ++length) {
        std::vector<unsigned char> dst(4 * length);
        std::vector<unsigned char> src(4 * length);
        for (int p = 0; p < length; ++p) {
            for (int i = 0; i < 3; ++i) {
                dst[4 * p + i] = static_cast<unsigned char>(random());
                src[4 * p + i] = static_cast<unsigned char>(random());
            }
            dst[4 * p + 3] = alpha();
            src[4 * p + 3] = alpha();
        }
        for (int f = 0; f < kFunctorCount; ++f) {
            for (int w = 0; w < kWrapperCount; ++w) {
                for (float opacity : {1.0f, 0.5f, 0.0f, 0.73f}) {
                    ASSERT_TRUE(SameAsScalar(GetParam(), static_cast<Functor>(f), static_cast<Wrapper>(w),
                                             opacity, 0.6f, dst, src, std::max(length, 1)))
                        << "row of " << length;
                }
            }
        }
    }
}

// Staging runs the functor in blocks; a long row crosses several of them.
TEST_P(VectorPathTest, LongRowsCrossStagingBlocks) {
    std::mt19937 random(13);
    for (int i = 0; i < 256; ++i) {
        HIGHLIGHT_CLR_COMPONENT[i] = static_cast<unsigned char>(random());
    }
    const int length = 1031;
    std::vector<unsigned char> dst(4 * length);
    std::vector<unsigned char> src(4 * length);
    for (size_t i = 0; i < dst.size(); ++i) {
        dst[i] = static_cast<unsigned char>(random());
        src[i] = static_cast<unsigned char>(random());
    }
    for (Wrapper w :
         {Wrapper::kSourceAlpha, Wrapper::kSourceAlphaOpacity, Wrapper::kOpacity, Wrapper::kOntoAlpha}) {
        ASSERT_TRUE(SameAsScalar(GetParam(), Functor::kHighlight, w, 0.8f, 1.0f, dst, src, length));
        ASSERT_TRUE(SameAsScalar(GetParam(), Functor::kRelativeOpacity, w, 0.8f, -0.7f, dst, src, length));
    }
}

// The kernels at a width no instruction set of this machine has (two pixels a vector) take the
// portable code of every helper: the same results again.
TEST(PortableKernels, TwoPixelVectorsMatchTheScalarReference) {
    constexpr KernelSet kernels = MakeKernelSet<8>();
    struct Case {
        Kernel kernel;
        Functor functor;
        Wrapper wrapper;
    };
    const Case cases[] = {
        {kernels.plainColour, Functor::kCopy, Wrapper::kPlain},
        {kernels.sourceAlpha, Functor::kCopy, Wrapper::kSourceAlpha},
        {kernels.sourceAlphaOpacity, Functor::kCopy, Wrapper::kSourceAlphaOpacity},
        {kernels.opacity, Functor::kCopy, Wrapper::kOpacity},
        {kernels.opacityAllBytes, Functor::kFullCopy, Wrapper::kOpacityAllBytes},
        {kernels.ontoAlpha, Functor::kCopy, Wrapper::kOntoAlpha},
    };
    std::mt19937 random(17);
    const int pixels = 4099;
    std::vector<unsigned char> dst(4 * pixels);
    std::vector<unsigned char> src(4 * pixels);
    for (size_t i = 0; i < dst.size(); ++i) {
        dst[i] = static_cast<unsigned char>(random());
        src[i] = static_cast<unsigned char>(random());
    }
    for (const Case& c : cases) {
        for (float opacity : {1.0f, 0.3f}) {
            const Loop reference(c.functor, c.wrapper, opacity, 1.0f, Path::kScalar);
            std::vector<unsigned char> expected = dst;
            reference.RunRow(expected.data(), src.data(), pixels);
            std::vector<unsigned char> actual = dst;
            const int done = c.kernel(actual.data(), src.data(), pixels, reference.GetConstants().k);
            EXPECT_EQ(done, pixels - 1);
            reference.RunRow(&actual[4 * done], &src[4 * done], pixels - done);
            EXPECT_TRUE(expected == actual) << "wrapper " << int(c.wrapper) << ", opacity " << opacity;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Paths, VectorPathTest, ::testing::ValuesIn(VectorPaths()),
                         [](const ::testing::TestParamInfo<Path>& p) { return PathName(p.param); });

}  // namespace
