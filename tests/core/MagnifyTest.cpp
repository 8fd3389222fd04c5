#include <gtest/gtest.h>

#include <climits>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "ulogui/Magnify.h"

namespace {

// Sets the calling thread's factor for one test and puts 1.0 back afterwards.
class MagnifyTest : public ::testing::Test {
protected:
    void Use(float m) { magnify::GetMagnifier() = m; }
    void TearDown() override { magnify::GetMagnifier() = 1.0f; }
};

TEST_F(MagnifyTest, IntegersRoundHalvesUpward) {
    Use(1.5f);
    int a = 3, b = -3;
    magnify::DoMagnify(a, b, true);
    EXPECT_EQ(a, 5);   // 4.5 -> 5
    EXPECT_EQ(b, -4);  // floor(-4.5 + 0.5)
    Use(0.5f);
    int c = 5, d = -5, e = 4, f = -1;
    magnify::DoMagnify(c, d, e, f, true);
    EXPECT_EQ(c, 3);   // 2.5 -> 3
    EXPECT_EQ(d, -2);  // -2.5 -> -2
    EXPECT_EQ(e, 2);
    EXPECT_EQ(f, 0);  // -0.5 -> 0
}

TEST_F(MagnifyTest, UndoDividesRatherThanMultiplyingByTheReciprocal) {
    Use(1.5f);
    int a = 5, b = -5;
    magnify::UndoMagnify(a, b, true);
    EXPECT_EQ(a, 3);  // 3.33
    EXPECT_EQ(b, -3);
    // 18 / 2.4f is just below 7.5 while 18 * (1 / 2.4f) rounds to exactly 7.5.
    Use(2.4f);
    int c = 18, d = 0, e = 24, f = -18;
    magnify::UndoMagnify(c, d, e, f, true);
    EXPECT_EQ(c, 7);
    EXPECT_EQ(d, 0);
    EXPECT_EQ(e, 10);
    EXPECT_EQ(f, -7);
    Use(1.5f);
    float g = 5.0f;
    magnify::UndoMagnify(g, true);
    EXPECT_EQ(g, 5.0f / 1.5f);  // the correctly rounded quotient, one ulp from 5 * (1 / 1.5f)
}

TEST_F(MagnifyTest, PointsSizesAndFloats) {
    Use(1.5f);
    ULOPoint p(3, -3);
    magnify::DoMagnify(p, true);
    EXPECT_EQ(p, ULOPoint(5, -4));
    magnify::UndoMagnify(p, true);
    EXPECT_EQ(p, ULOPoint(3, -3));  // 3.33 and -2.67
    ULOSize s(2, 7);
    magnify::DoMagnify(s, true);
    EXPECT_EQ(s, ULOSize(3, 11));  // 3 and 10.5
    // Floats and doubles are scaled without rounding.
    float f1 = 1.0f, f2 = -2.0f, f3 = 0.5f, f4 = 3.0f;
    magnify::DoMagnify(f1, f2, f3, f4, true);
    EXPECT_EQ(f1 + f2 + f3 + f4, 1.5f * 2.5f);
    magnify::UndoMagnify(f3, f4, true);
    EXPECT_EQ(f3, 0.5f);
    double d = 0.1;
    magnify::DoMagnify(d, true);
    EXPECT_EQ(d, 0.1 * 1.5);
    magnify::ULOPointf pf(ULOPoint(2, -3));
    magnify::DoMagnify(pf, true);
    EXPECT_EQ(pf.x, 3.0f);
    EXPECT_EQ(pf.y, -4.5f);
}

TEST_F(MagnifyTest, RectangleScalesOriginAndSizeSeparately) {
    Use(1.5f);
    ULORect r(1, 1, 4, 4);
    magnify::DoMagnify(r, true);
    EXPECT_EQ(r, ULORect(2, 2, 7, 7));  // origin 1.5 -> 2, size 4.5 -> 5; edges directly would give 6
    ULORect other(0, 0, 3, 3);
    magnify::DoMagnify(other, true);
    EXPECT_EQ(other.Width(), r.Width());  // equal sizes stay equal wherever they lie
    ULORect negative(-3, -1, 0, 2);
    magnify::DoMagnify(negative, true);
    EXPECT_EQ(negative, ULORect(-4, -1, 1, 4));
    magnify::UndoMagnify(r, true);
    EXPECT_EQ(r, ULORect(1, 1, 4, 4));  // 1.33 and a size of 3.33
    Use(2.4f);
    ULORect u(18, 0, 36, 18);
    magnify::UndoMagnify(u, true);
    EXPECT_EQ(u, ULORect(7, 0, 14, 7));
}

TEST_F(MagnifyTest, ApplyFalseChangesNothing) {
    Use(2.0f);
    int a = 3, b = 4, c = 5, d = 6;
    ULORect r(1, 2, 3, 4);
    float f = 1.0f;
    magnify::DoMagnify(a, b, c, d, false);
    magnify::DoMagnify(r, false);
    magnify::UndoMagnify(f, f, false);
    EXPECT_EQ(a + b + c + d, 18);
    EXPECT_EQ(r, ULORect(1, 2, 3, 4));
    EXPECT_EQ(f, 1.0f);
}

TEST_F(MagnifyTest, ResultsBeyondIntSaturate) {
    Use(1e10f);
    int a = 1000000000, b = -1000000000;
    magnify::DoMagnify(a, b, true);
    EXPECT_EQ(a, INT_MAX);
    EXPECT_EQ(b, INT_MIN);
    Use(0.0f);
    int c = 5, d = 0, e = -5, f = 1;
    magnify::UndoMagnify(c, d, e, f, true);
    EXPECT_EQ(c, INT_MAX);  // +infinity
    EXPECT_EQ(d, 0);        // 0 / 0 has no value: 0
    EXPECT_EQ(e, INT_MIN);
    Use(2.0f);
    ULORect wide(INT_MIN, 0, INT_MAX, 1);
    magnify::DoMagnify(wide, true);
    EXPECT_EQ(wide.left, INT_MIN);
    EXPECT_EQ(wide.right, INT_MIN + INT_MAX);  // the saturated origin plus the saturated size
}

TEST(MagnifySettingsTest, Flags) {
    EXPECT_FALSE(magnify::MagnifyPhysicalDisplay());
    magnify::MagnifyPhysicalDisplay(true);
    EXPECT_TRUE(magnify::MagnifyPhysicalDisplay());
    magnify::MagnifyPhysicalDisplay(false);
    EXPECT_TRUE(magnify::MagnifyOpenGLDisplay());
    EXPECT_FALSE(magnify::bPerscreenMagnify);
    EXPECT_FALSE(magnify::MagnifyRenderOnRetinaScreens());
    magnify::bFineRenderOnRetinaScreens = true;
    EXPECT_TRUE(magnify::MagnifyRenderOnRetinaScreens());
    magnify::bFineRenderOnRetinaScreens = false;
}

// A thread that takes its factor when told to and reports it.
class FactorThread {
public:
    FactorThread() : thread_([this] { Run(); }) {}
    ~FactorThread() { Finish(); }

    // Has the thread fetch its factor (after setting it to 3 when asked to) and returns it.
    float Ask(bool writeThree = false) {
        std::unique_lock<std::mutex> lock(mutex_);
        writeThree_ = writeThree;
        asked_ = true;
        changed_.notify_all();
        changed_.wait(lock, [this] { return !asked_; });
        return answer_;
    }

    void Finish() {
        if (thread_.joinable()) {
            {
                std::lock_guard<std::mutex> lock(mutex_);
                done_ = true;
            }
            changed_.notify_all();
            thread_.join();
        }
    }

private:
    void Run() {
        std::unique_lock<std::mutex> lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] { return asked_ || done_; });
            if (done_) {
                return;
            }
            if (writeThree_) {
                magnify::GetMagnifier() = 3.0f;
            }
            answer_ = magnify::GetMagnifier();
            asked_ = false;
            changed_.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    bool asked_ = false;
    bool done_ = false;
    bool writeThree_ = false;
    float answer_ = 0.0f;
    std::thread thread_;
};

TEST(MagnifierThreadsTest, EachThreadKeepsTheFactorItStartedWith) {
    ASSERT_EQ(magnify::globalMagnifierValue, -2.0f);
    FactorThread early;
    EXPECT_EQ(early.Ask(), 1.0f);  // nothing set yet

    magnify::globalMagnifierValue = 2.0f;
    EXPECT_EQ(early.Ask(), 1.0f);  // a thread that has a factor keeps it
    FactorThread late;
    EXPECT_EQ(late.Ask(), 2.0f);
    EXPECT_EQ(late.Ask(true), 3.0f);  // writing through the reference ...
    EXPECT_EQ(early.Ask(), 1.0f);     // ... changes that thread only
    float mainFactor = magnify::GetMagnifier();
    EXPECT_NE(mainFactor, 3.0f);

    // A thread's factor is made on its first call, even by a conversion that applies nothing.
    std::thread quiet([] {
        int a = 1, b = 1;
        magnify::DoMagnify(a, b, false);
        magnify::globalMagnifierValue = 4.0f;
        EXPECT_EQ(magnify::GetMagnifier(), 2.0f);
        EXPECT_EQ(a, 1);
    });
    quiet.join();
    magnify::globalMagnifierValue = -2.0f;
    // Factors of finished threads are freed with them (the sanitizer build reports a leak otherwise).
    early.Finish();
    late.Finish();
}

}  // namespace
