#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "ColorSetTestSupport.h"
#include "ulogui/ColorSet.h"
#include "ulogui/Palette.h"
#include "ulolib/Stream.h"

namespace {

using colorset_test::DistinctSet;
using colorset_test::PaletteGuardTest;

// The order of the records: palette indices, five pairs swapped for stored sets' sake.
const int kRecordOrder[41] = {0,  1,  3,  4,  2,  5,  6,  7,  8,  9,  10, 11, 12, 13,
                              14, 15, 16, 17, 18, 19, 20, 21, 22, 24, 23, 25, 27, 26,
                              28, 29, 30, 31, 33, 32, 34, 37, 38, 39, 40, 35, 36};

std::vector<uint8_t> Written(const ULOGUIColorSet& set) {
    ULOMemoryStream stream;
    EXPECT_TRUE(set.Write(&stream));
    return stream.GetBuffer();
}

// A stream that takes only the first `capacity` bytes written to it.
class ShortStream : public ULOStream {
public:
    explicit ShortStream(size_t capacity) : capacity_(capacity) {}

protected:
    size_t DoRead(void*, size_t) override { return 0; }
    size_t DoWrite(const void*, size_t size) override {
        const size_t taken = size <= capacity_ - written_ ? size : capacity_ - written_;
        written_ += taken;
        return taken;
    }
    bool DoSeek(uint64_t) override { return false; }
    uint64_t DoTell() const override { return written_; }
    uint64_t DoLength() const override { return written_; }

private:
    size_t capacity_;
    size_t written_ = 0;
};

// Counts what Read does through the virtual slots.
struct CountingSet : ULOGUIColorSet {
    void Reset() override {
        ++resets;
        ULOGUIColorSet::Reset();
    }
    void ApplyToCurrent() const override { ++applies; }
    int resets = 0;
    mutable int applies = 0;
};

TEST(ColorSetRecord, FortyOneFiveByteRecordsTagThenRedGreenBlueInTheSwappedOrder) {
    const ULOGUIColorSet set = DistinctSet(10);
    const std::vector<uint8_t> bytes = Written(set);
    ASSERT_EQ(bytes.size(), 205u);
    for (int record = 0; record < 41; ++record) {
        const CLR& c = set.Field(kRecordOrder[record]);
        const uint8_t* r = &bytes[5 * record];
        EXPECT_EQ(r[0], 0x00) << "record " << record;  // the tag 8, most significant byte first
        EXPECT_EQ(r[1], 0x08) << "record " << record;
        EXPECT_EQ(r[2], c.red) << "record " << record;
        EXPECT_EQ(r[3], c.green) << "record " << record;
        EXPECT_EQ(r[4], c.blue) << "record " << record;
    }
    // The swaps, byte by byte: the third record is the active caption (field 3), the fifth the frame.
    EXPECT_EQ(bytes[5 * 2 + 2], set.activeCaption.red);
    EXPECT_EQ(bytes[5 * 4 + 2], set.activeFrame.red);
    EXPECT_EQ(bytes[5 * 40 + 2], set.gradationListRight.red);
}

TEST(ColorSetRecord, TheFactorySetBeginsWithTheGradationCaptionsAndFrame) {
    const std::vector<uint8_t> bytes = Written(ULOGUIColorSet::GetDefaultSet());
    const std::vector<uint8_t> start = {0x00, 0x08, 0x83, 0x83, 0x83, 0x00, 0x08, 0x41, 0x41,
                                        0x41, 0x00, 0x08, 0x1A, 0x1A, 0x1A, 0x00, 0x08, 0x68,
                                        0x68, 0x68, 0x00, 0x08, 0x30, 0x5E, 0xB1};
    ASSERT_EQ(bytes.size(), 205u);
    EXPECT_TRUE(std::equal(start.begin(), start.end(), bytes.begin()));
}

TEST(ColorSetRecord, WriteThenReadGivesAnEqualSetIncludingTextRedAndTextBlack) {
    const ULOGUIColorSet written = DistinctSet(20);
    const std::vector<uint8_t> bytes = Written(written);
    ULOMemoryStream stream(bytes.data(), bytes.size());
    ULOGUIColorSet read;
    ASSERT_TRUE(read.Read(&stream, false));
    EXPECT_TRUE(read == written);
    EXPECT_EQ(stream.GetPosition(), 205u);
}

TEST(ColorSetRecord, WriteFailsAtTheFirstRecordThatDoesNotFit) {
    const ULOGUIColorSet set = DistinctSet(0);
    for (size_t capacity : {0u, 1u, 4u, 5u, 204u}) {
        ShortStream stream(capacity);
        EXPECT_FALSE(set.Write(&stream)) << "capacity " << capacity;
    }
    ShortStream roomy(205);
    EXPECT_TRUE(set.Write(&roomy));
    EXPECT_FALSE(set.Write(nullptr));
}

TEST_F(PaletteGuardTest, ReadAppliesOnlyAfterACompleteReadWhenAsked) {
    const ULOGUIColorSet written = DistinctSet(30);
    const std::vector<uint8_t> bytes = Written(written);
    {
        ULOMemoryStream stream(bytes.data(), bytes.size());
        ULOGUIColorSet read;
        ASSERT_TRUE(read.Read(&stream, false));
        ULOGUIColorSet current;
        ULOGUIColorSet::GetCurrentSet(current);
        EXPECT_TRUE(current == saved_);
    }
    ULOMemoryStream stream(bytes.data(), bytes.size());
    ULOGUIColorSet read;
    ASSERT_TRUE(read.Read(&stream, true));
    ULOGUIColorSet current;
    ULOGUIColorSet::GetCurrentSet(current);
    EXPECT_TRUE(current == written);
}

TEST_F(PaletteGuardTest, ABadTagStopsTheReadKeepingEarlierRecordsAndResetValuesAndAppliesNothing) {
    const ULOGUIColorSet written = DistinctSet(40);
    std::vector<uint8_t> bytes = Written(written);
    bytes[5 * 2 + 1] = 7;  // the third record's tag

    ULOMemoryStream stream(bytes.data(), bytes.size());
    ULOGUIColorSet read = DistinctSet(90);  // textRed and textBlack survive the reset
    EXPECT_FALSE(read.Read(&stream, true));
    EXPECT_EQ(stream.GetPosition(), 15u);  // the failing record's three bytes were read too

    ULOGUIColorSet expected = DistinctSet(90);
    expected.Reset();
    expected.gradationTopLeft = written.gradationTopLeft;
    expected.gradationBottomRight = written.gradationBottomRight;
    EXPECT_TRUE(read == expected);
    EXPECT_EQ(read.activeCaption, CLR(26, 26, 26));  // the failing record's field keeps its reset value

    ULOGUIColorSet current;
    ULOGUIColorSet::GetCurrentSet(current);
    EXPECT_TRUE(current == saved_);
}

TEST_F(PaletteGuardTest, TruncatedOrByteSwappedStreamsFail) {
    const std::vector<uint8_t> good = Written(DistinctSet(50));
    std::vector<uint8_t> truncated(good.begin(), good.end() - 1);  // the last blue is missing
    std::vector<uint8_t> littleEndianTag = good;
    littleEndianTag[5 * 17] = 0x08;
    littleEndianTag[5 * 17 + 1] = 0x00;

    for (const std::vector<uint8_t>* bytes : {&truncated, &littleEndianTag}) {
        ULOMemoryStream stream(bytes->data(), bytes->size());
        ULOGUIColorSet read;
        EXPECT_FALSE(read.Read(&stream, true));
        ULOGUIColorSet current;
        ULOGUIColorSet::GetCurrentSet(current);
        EXPECT_TRUE(current == saved_);
    }
    ULOMemoryStream empty;
    ULOGUIColorSet read;
    EXPECT_FALSE(read.Read(&empty, true));
    EXPECT_FALSE(read.Read(nullptr, true));
}

TEST(ColorSetRecord, ReadResetsAndAppliesThroughTheVirtualOperations) {
    const std::vector<uint8_t> good = Written(DistinctSet(60));
    CountingSet set;
    ULOMemoryStream stream(good.data(), good.size());
    EXPECT_TRUE(set.Read(&stream, true));
    EXPECT_EQ(set.resets, 1);
    EXPECT_EQ(set.applies, 1);

    ULOMemoryStream again(good.data(), good.size());
    EXPECT_TRUE(set.Read(&again, false));
    EXPECT_EQ(set.resets, 2);
    EXPECT_EQ(set.applies, 1);

    ULOMemoryStream cut(good.data(), 100);
    EXPECT_FALSE(set.Read(&cut, true));
    EXPECT_EQ(set.resets, 3);
    EXPECT_EQ(set.applies, 1);
}

}  // namespace
