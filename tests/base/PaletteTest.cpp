// The palette globals: their order (listed here by hand, independently of the library's own table),
// their load-time values, the whole-palette copies and the switches beside them. The colour set over
// them: fields, the factory colours, and the stream record of 41 five-byte records (the tag 8, most
// significant byte first, then red, green, blue), five pairs of entries stored the other way round.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "ulogui/ColorSet.h"
#include "ulogui/Palette.h"
#include "ulolib/Stream.h"

namespace {

// clang-format off
CLR* const kGlobals[] = {
    &CLR_GRADATION_TOP_LEFT, &CLR_GRADATION_BOTTOM_RIGHT, &CLR_ACTIVE_FRAME, &CLR_ACTIVE_CAPTION,
    &CLR_INACTIVE_CAPTION, &CLR_ACTIVE_CAPTION_TITLE, &CLR_INACTIVE_CAPTION_TITLE, &CLR_TEXT, &CLR_LIGHT_TEXT,
    &CLR_TEXT_RED, &CLR_TEXT_BLACK, &CLR_LABEL_TEXT, &COLOR_WARN, &COLOR_NOWARN, &CLR_GRADATION_TAB_LEFT,
    &CLR_GRADATION_TAB_RIGHT, &CLR_ACTIVE_TAB_TEXT, &CLR_INACTIVE_TAB_TEXT, &CLR_INACTIVE_TAB_BACK,
    &CLR_EDIT_TEXT, &CLR_EDIT_HOVER_TEXT, &CLR_EDIT_FOCUS_TEXT, &CLR_EDIT_HIGHLIGHTED_TEXT, &CLR_EDIT_BACK,
    &CLR_EDIT_FOCUS_BACK, &CLR_BUTTON_TEXT, &CLR_TOGGLE_BUTTON, &CLR_HOVER_BUTTON, &CLR_BUTTON_BACK,
    &CLR_LIST_TEXT, &CLR_LIST_HOVER_TEXT, &CLR_LIST_FOCUS_TEXT, &CLR_LIST_BACK, &CLR_LIST_FOCUS_BACK,
    &CLR_LIST_SELECTED_ITEM_BACK, &CLR_GRADATION_LIST_LEFT, &CLR_GRADATION_LIST_RIGHT, &CLR_MENU_TEXT,
    &CLR_MENU_SELECTED_TEXT, &CLR_MENU_BACK, &CLR_MENU_SELECTED
};
// clang-format on
constexpr int kCount = 41;
static_assert(sizeof(kGlobals) / sizeof(kGlobals[0]) == kCount, "41 palette entries");

std::vector<CLR> Snapshot() {
    std::vector<CLR> colours;
    for (const CLR* global : kGlobals) {
        colours.push_back(*global);
    }
    return colours;
}

// Taken while the test program starts, before any test can change the palette.
const std::vector<CLR> kAtLoad = Snapshot();
const CLR kDontFillAtLoad = dontFillBackground;
const bool kHighlightAtLoad = ulogui::HighlightOverflowingTexts();

// A different colour for every index, different again for each salt; a set of them.
CLR Distinct(int i, int salt = 0) {
    return CLR(i + 1 + salt, 100 + i, 200 - i);
}

ULOGUIColorSet DistinctSet(int salt) {
    ULOGUIColorSet set;
    for (int i = 0; i < ULOGUIColorSet::kFieldCount; ++i) {
        set.Field(i) = Distinct(i, salt);
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
class PaletteTest : public ::testing::Test {
protected:
    void TearDown() override {
        for (int i = 0; i < kCount; ++i) {
            *kGlobals[i] = saved_[i];
        }
        ulogui::SetHighlightOverflowingTexts(false);
    }
    const std::vector<CLR> saved_ = Snapshot();
};

TEST(PaletteAtLoad, EveryEntryIsBlackButTextRedWhichIsGreyAndOverflowsAreNotHighlighted) {
    for (int i = 0; i < kCount; ++i) {
        EXPECT_EQ(kAtLoad[i], i == 9 ? CLR(128, 128, 128) : CLR(0, 0, 0)) << "palette index " << i;
    }
    EXPECT_EQ(kDontFillAtLoad, CLR(0, 0, 0));
    EXPECT_FALSE(kHighlightAtLoad);
}

TEST_F(PaletteTest, ArraysAndColourSetsCarryTheEntriesInPaletteOrder) {
    for (int i = 0; i < kCount; ++i) {
        *kGlobals[i] = Distinct(i);
    }
    for (size_t startSize : {0u, 41u, 100u}) {
        ULOArray_NOSTL<CLR> colours(startSize, CLR(9, 9, 9));
        ULOGUI_Colors::GetULOGUIColors(colours);
        ASSERT_EQ(colours.GetSize(), 41u);
        for (int i = 0; i < kCount; ++i) {
            EXPECT_EQ(colours[i], Distinct(i)) << "index " << i << ", array of " << startSize;
        }
    }

    // Setting takes what the array has, at most 41 entries.
    for (int size : {50, 3, 0}) {
        ULOArray_NOSTL<CLR> in;
        for (int i = 0; i < size; ++i) {
            in.Add(Distinct(i, size));
        }
        ULOGUI_Colors::SetULOGUIColors(in);
    }
    for (int i = 0; i < kCount; ++i) {
        EXPECT_EQ(*kGlobals[i], Distinct(i, i < 3 ? 3 : 50)) << "index " << i;
    }
    ULOGUIColorSet set;
    for (int i = 0; i < kCount; ++i) {
        set.Field(i) = Distinct(i);
    }
    set.ApplyToCurrent();
    for (int i = 0; i < kCount; ++i) {
        EXPECT_EQ(*kGlobals[i], Distinct(i)) << "index " << i;
        *kGlobals[i] = Distinct(i, 7);
    }
    ULOGUIColorSet::GetCurrentSet(set);
    for (int i = 0; i < kCount; ++i) {
        EXPECT_EQ(set.Field(i), Distinct(i, 7)) << "index " << i;
    }
}

TEST_F(PaletteTest, DefaultTextColourSentinelAndOverflowSwitch) {
    const CLR& white = ULOGUI_Colors::GetDefaultTextClr();
    EXPECT_EQ(white, CLR(255, 255, 255));
    EXPECT_EQ(&white, &ULOGUI_Colors::GetDefaultTextClr());

    // The "don't fill" colour is recognised by its address, not by its value.
    const CLR sameValue = dontFillBackground;
    EXPECT_TRUE(ulogui::IsDontFillBackground(dontFillBackground));
    EXPECT_FALSE(ulogui::IsDontFillBackground(sameValue));

    ulogui::SetHighlightOverflowingTexts(true);
    EXPECT_TRUE(ulogui::HighlightOverflowingTexts());
}

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

TEST_F(PaletteTest, ResetKeepsTextRedAndTextBlackAndTheDefaultSetTurnsTextRedBlack) {
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

TEST(ColorSetRecord, RecordsInTheStoredOrderAndWriteFailsAtTheFirstThatDoesNotFit) {
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
    // A write fails at the first record that does not fit.
    for (size_t room : {0u, 1u, 4u, 5u, 204u, 205u}) {
        ShortStream stream(room);
        EXPECT_EQ(set.Write(&stream), room == 205) << "room for " << room;
    }
    EXPECT_FALSE(set.Write(nullptr));
}

// A bad tag stops the read keeping the earlier records and the reset values.
TEST_F(PaletteTest, ReadGivesAnEqualSetOrFailsApplyingNothing) {
    const ULOGUIColorSet written = DistinctSet(20);
    const std::vector<uint8_t> good = Written(written);
    ULOMemoryStream stream(good.data(), good.size());
    ULOGUIColorSet read;
    ASSERT_TRUE(read.Read(&stream, false));
    EXPECT_TRUE(read == written);  // textRed and textBlack included
    EXPECT_EQ(stream.GetPosition(), 205u);
    EXPECT_TRUE(Snapshot() == saved_);

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
    EXPECT_TRUE(Snapshot() == saved_);

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
