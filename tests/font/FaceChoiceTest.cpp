// ULOFont::CreateWindowsFont's choice of face, on a scripted enumeration.
#include <gtest/gtest.h>

#include "FakeFontEngine.h"
#include "TestFonts.h"
#include "ulogui/Font.h"

using namespace ulogui::platform;
using testfonts::Face;
using testfonts::FakeFontEngine;

namespace {

class FaceChoice : public ::testing::Test {
protected:
    FaceChoice()
        : engine_(std::make_shared<FakeFontEngine>(std::vector<FaceInfo>{
              Face(L"Arial", 0, 0x22), Face(L"Tahoma", 0, 0x22), Face(L"Courier New", 0, 0x31),
              Face(L"MS Gothic", 128, 0x31), Face(L"MS PGothic", 128, 0x22), Face(L"Verdana", 0, 0x22),
              Face(L"Tahoma", 0, 0x22),  // a face may be reported more than once
          })),
          scoped_(engine_) {}

    // Runs the choice with the usual arguments of a regular font.
    HFONT Choose(std::vector<ULOString> wanted, unsigned long charSet = 0,
                 unsigned long pitchAndFamily = 0x22) {
        wanted_ = std::move(wanted);
        HFONT font = ULOFont::CreateWindowsFont(nullptr, 16, 0, 0, 0, 400, 0, 0, 0, charSet, 4, 0, 0,
                                                pitchAndFamily, wanted_, found_, chosen_);
        handles_.push_back(font);
        return font;
    }

    ~FaceChoice() override {
        for (HFONT font : handles_) {
            DeleteFontHandle(font);
        }
    }

    std::shared_ptr<FakeFontEngine> engine_;
    testfonts::ScopedEngine scoped_;
    std::vector<ULOString> wanted_;
    std::vector<HFONT> handles_;
    bool found_ = false;
    ULOString chosen_;
};

}  // namespace

TEST_F(FaceChoice, TheFirstWantedFaceWinsAndEndsTheEnumeration) {
    ASSERT_NE(nullptr, Choose({L"Tahoma", L"Arial"}));
    EXPECT_TRUE(found_);
    EXPECT_EQ(L"Tahoma", chosen_);
    EXPECT_EQ(1, engine_->enumerations);
    EXPECT_EQ(L"Tahoma", engine_->requests.back().faceName);
}

TEST_F(FaceChoice, SeveralWantedFacesAreOrderedByTheWantedList) {
    Choose({L"Missing", L"Verdana", L"Arial"});  // enumerated Arial first, then Verdana
    EXPECT_TRUE(found_);
    EXPECT_EQ(L"Verdana", chosen_);
    Choose({L"Missing", L"Tahoma"});  // reported twice
    EXPECT_EQ(L"Tahoma", chosen_);
}

TEST_F(FaceChoice, OneWantedFaceFoundIsTakenAsItIs) {
    Choose({L"Missing", L"Courier New"});
    EXPECT_TRUE(found_);
    EXPECT_EQ(L"Courier New", chosen_);
    EXPECT_EQ(1, engine_->enumerations);
}

TEST_F(FaceChoice, WithoutWantedFacesTheFirstFaceOfTheSamePitchFamilyAndCharSetIsTaken) {
    Choose({L"Missing"}, 0, 0x31);
    EXPECT_TRUE(found_);
    EXPECT_EQ(L"Courier New", chosen_);
    EXPECT_EQ(2, engine_->enumerations);
    Choose({L"Missing"}, 128, 0x22);
    EXPECT_EQ(L"MS PGothic", chosen_);
    // The second pass keeps the enumeration order: no reordering by the wanted list.
    Choose({L"Missing", L"Other"}, 0, 0x22);
    EXPECT_EQ(L"Arial", chosen_);
    // Only the low byte of pitchAndFamily and charSet counts, as in a font description.
    Choose({L"Missing"}, 0x100 | 128, 0x100 | 0x31);
    EXPECT_EQ(L"MS Gothic", chosen_);
}

TEST_F(FaceChoice, NothingFoundLeavesTheFirstWantedNameToThePlatform) {
    Choose({L"Missing", L"Other"}, 0, 0x77);
    EXPECT_FALSE(found_);
    EXPECT_EQ(L"Missing", chosen_);
    EXPECT_EQ(L"Missing", engine_->requests.back().faceName);
    Choose({L"MS Gothic"}, 0, 0x52);  // exists, but not in this character set
    EXPECT_FALSE(found_);
    EXPECT_EQ(L"MS Gothic", chosen_);
}

TEST_F(FaceChoice, NamesCompareExactly) {
    Choose({L"arial", L"COURIER NEW"}, 0, 0x77);
    EXPECT_FALSE(found_);
    EXPECT_EQ(L"arial", chosen_);
}

TEST_F(FaceChoice, TheRequestCarriesEveryArgument) {
    std::vector<ULOString> wanted = {L"Verdana"};
    bool found = false;
    ULOString chosen;
    HFONT font = ULOFont::CreateWindowsFont(nullptr, -13, 5, 6, 7, 700, 1, 1, 1, 0, 4, 2, 3, 0x22, wanted,
                                            found, chosen);
    handles_.push_back(font);
    const FontRequest& r = engine_->requests.back();
    EXPECT_EQ(-13, r.height);
    EXPECT_EQ(5, r.width);
    EXPECT_EQ(6, r.escapement);
    EXPECT_EQ(7, r.orientation);
    EXPECT_EQ(700, r.weight);
    EXPECT_TRUE(r.italic && r.underline && r.strikeOut);
    EXPECT_EQ(0, r.charSet);
    EXPECT_EQ(4, r.outPrecision);
    EXPECT_EQ(2, r.clipPrecision);
    EXPECT_EQ(3, r.quality);
    EXPECT_EQ(0x22, r.pitchAndFamily);
    EXPECT_EQ(L"Verdana", r.faceName);
    ASSERT_EQ(1u, wanted.size());  // the caller's list is left as it was
    EXPECT_EQ(ResolveFont(font)->GetFaceName(), L"Verdana");
}

TEST_F(FaceChoice, AnEmptyWantedListIsHarmless) {
    Choose({}, 0, 0x77);
    EXPECT_FALSE(found_);
    EXPECT_TRUE(chosen_.empty());
    Choose({}, 0, 0x31);
    EXPECT_EQ(L"Courier New", chosen_);
}
