// The colour set: fields, the factory colours, and the stream record of 41 five-byte records (the tag 8,
// most significant byte first, then red, green, blue), five pairs of entries stored the other way round.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "ulogui/ColorSet.h"
#include "ulogui/Palette.h"
#include "ulolib/Stream.h"

namespace {

// A different colour in every field, different again for each salt.
ULOGUIColorSet DistinctSet(int salt) {
    ULOGUIColorSet set;
    for (int i = 0; i < ULOGUIColorSet::kFieldCount; ++i) {
        set.Field(i) = CLR(i + salt, 2 * i + 1, 250 - i - salt);
    }
    return set;
}

ULOGUIColorSet Current() {
    ULOGUIColorSet set;
    ULOGUIColorSet::GetCurrentSet(set);
    return set;
}

std::vector<uint8_t> Written(const ULOGUIColorSet& set) {
    ULOMemoryStream stream;
    EXPECT_TRUE(set.Write(&stream));
    return stream.GetBuffer();
}

// A memory stream that takes only the first `room` bytes written to it.
struct ShortStream : ULOMemoryStream {
    explicit ShortStream(size_t room) : room_(room) {}
    size_t DoWrite(const void* data, size_t size) override {
        return ULOMemoryStream::DoWrite(data, std::min(size, room_ - GetBuffer().size()));
    }
    size_t room_;
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

// Puts the palette back after each test.
class ColorSetTest : public ::testing::Test {
protected:
    void TearDown() override { saved_.ApplyToCurrent(); }
    const ULOGUIColorSet saved_ = Current();
};

TEST(ColorSet, NamedFieldsIndicesAndEquality) {
    ULOGUIColorSet set;
    EXPECT_EQ(&set.Field(0), &set.gradationTopLeft);
    EXPECT_EQ(&set.Field(9), &set.textRed);
    EXPECT_EQ(&set.Field(24), &set.editFocusBack);
    EXPECT_EQ(&set.Field(40), &set.menuSelected);
    EXPECT_THROW(set.Field(41), std::out_of_range);
    EXPECT_THROW(set.Field(-1), std::out_of_range);

    const ULOGUIColorSet a = DistinctSet(1);
    for (int i = 0; i < ULOGUIColorSet::kFieldCount; ++i) {
        EXPECT_EQ(set.Field(i), CLR(0, 0, 0)) << "a new set is black, field " << i;
        ULOGUIColorSet b = a;
        b.Field(i).blue ^= 1;
        EXPECT_TRUE(a != b && !(a == b)) << "field " << i;
    }
    EXPECT_TRUE(a == DistinctSet(1) && !(a != DistinctSet(1)));
}

TEST_F(ColorSetTest, ResetKeepsTextRedAndTextBlackAndTheDefaultSetTurnsTextRedBlack) {
    ULOGUIColorSet set = DistinctSet(5);
    set.Reset();
    EXPECT_EQ(set.textRed, DistinctSet(5).textRed);
    EXPECT_EQ(set.textBlack, DistinctSet(5).textBlack);
    // Entries defined as copies of earlier ones take the factory value just set for their source.
    for (const CLR* copy : {&set.editHighlightedText, &set.hoverButton, &set.menuSelected}) {
        EXPECT_EQ(*copy, CLR(48, 94, 177));
    }
    EXPECT_EQ(set.gradationTabRight, CLR(131, 131, 131));
    for (const CLR* defaultText : {&set.text, &set.labelText, &set.menuSelectedText}) {
        EXPECT_EQ(*defaultText, ULOGUI_Colors::GetDefaultTextClr());
    }

    const ULOGUIColorSet& defaults = ULOGUIColorSet::GetDefaultSet();
    EXPECT_EQ(&defaults, &ULOGUIColorSet::GetDefaultSet());
    set.textRed = set.textBlack = CLR(0, 0, 0);
    EXPECT_TRUE(defaults == set);
    CLR_TEXT_RED = CLR(128, 128, 128);
    defaults.ApplyToCurrent();
    EXPECT_EQ(CLR_TEXT_RED, CLR(0, 0, 0));
    EXPECT_TRUE(Current() == defaults);
}

TEST(ColorSetRecord, RecordsInTheStoredOrder) {
    const int kRecordOrder[41] = {0,  1,  3,  4,  2,  5,  6,  7,  8,  9,  10, 11, 12, 13,
                                  14, 15, 16, 17, 18, 19, 20, 21, 22, 24, 23, 25, 27, 26,
                                  28, 29, 30, 31, 33, 32, 34, 37, 38, 39, 40, 35, 36};
    const ULOGUIColorSet set = DistinctSet(10);
    const std::vector<uint8_t> bytes = Written(set);
    ASSERT_EQ(bytes.size(), 205u);
    for (int record = 0; record < 41; ++record) {
        const CLR& c = set.Field(kRecordOrder[record]);
        const std::vector<uint8_t> expected = {0x00, 0x08, c.red, c.green, c.blue};
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), &bytes[5 * record])) << "record " << record;
    }

    // The factory set, by hand: the two gradation colours, the two captions, then the frame.
    const std::vector<uint8_t> factory = Written(ULOGUIColorSet::GetDefaultSet());
    const std::vector<uint8_t> start = {0x00, 0x08, 0x83, 0x83, 0x83, 0x00, 0x08, 0x41, 0x41,
                                        0x41, 0x00, 0x08, 0x1A, 0x1A, 0x1A, 0x00, 0x08, 0x68,
                                        0x68, 0x68, 0x00, 0x08, 0x30, 0x5E, 0xB1};
    ASSERT_EQ(factory.size(), 205u);
    EXPECT_TRUE(std::equal(start.begin(), start.end(), factory.begin()));
}

TEST(ColorSetRecord, WriteFailsAtTheFirstRecordThatDoesNotFit) {
    const ULOGUIColorSet set = DistinctSet(0);
    for (size_t room : {0u, 1u, 4u, 5u, 204u, 205u}) {
        ShortStream stream(room);
        EXPECT_EQ(set.Write(&stream), room == 205) << "room for " << room;
    }
    EXPECT_FALSE(set.Write(nullptr));
}

// A good stream gives an equal set, applied only when asked. A bad tag stops the read, keeping the
// earlier records and the reset values; truncated, byte-swapped, empty or missing streams fail too;
// nothing is applied on failure.
TEST_F(ColorSetTest, ReadGivesAnEqualSetOrFailsApplyingNothing) {
    const ULOGUIColorSet written = DistinctSet(20);
    const std::vector<uint8_t> good = Written(written);
    ULOMemoryStream stream(good.data(), good.size());
    ULOGUIColorSet read;
    ASSERT_TRUE(read.Read(&stream, false));
    EXPECT_TRUE(read == written);  // textRed and textBlack included
    EXPECT_EQ(stream.GetPosition(), 205u);
    EXPECT_TRUE(Current() == saved_);

    std::vector<uint8_t> badTag = good;
    badTag[5 * 2 + 1] = 7;  // the third record's tag
    ULOMemoryStream bad(badTag.data(), badTag.size());
    read = DistinctSet(90);  // textRed and textBlack survive the reset
    EXPECT_FALSE(read.Read(&bad, true));
    EXPECT_EQ(bad.GetPosition(), 15u);  // the failing record's three bytes were read too
    ULOGUIColorSet expected = DistinctSet(90);
    expected.Reset();
    expected.gradationTopLeft = written.gradationTopLeft;
    expected.gradationBottomRight = written.gradationBottomRight;
    EXPECT_TRUE(read == expected);
    EXPECT_EQ(read.activeCaption, CLR(26, 26, 26));  // the failing record's field keeps its reset value

    std::vector<uint8_t> truncated(good.begin(), good.end() - 1);  // the last blue is missing
    std::vector<uint8_t> littleEndianTag = good;
    std::swap(littleEndianTag[5 * 17], littleEndianTag[5 * 17 + 1]);
    for (const std::vector<uint8_t>& bytes : {truncated, littleEndianTag, std::vector<uint8_t>()}) {
        ULOMemoryStream s(bytes.data(), bytes.size());
        EXPECT_FALSE(ULOGUIColorSet().Read(&s, true)) << bytes.size() << " bytes";
    }
    EXPECT_FALSE(ULOGUIColorSet().Read(nullptr, true));
    EXPECT_TRUE(Current() == saved_);

    ULOMemoryStream again(good.data(), good.size());
    ASSERT_TRUE(ULOGUIColorSet().Read(&again, true));
    EXPECT_TRUE(Current() == written);

    // Read resets and applies through the virtual operations.
    CountingSet set;
    ULOMemoryStream whole(good.data(), good.size()), cut(good.data(), 100);
    EXPECT_TRUE(set.Read(&whole, true));
    EXPECT_FALSE(set.Read(&cut, true));
    EXPECT_EQ(std::make_pair(set.resets, set.applies), std::make_pair(2, 1));
}

}  // namespace
