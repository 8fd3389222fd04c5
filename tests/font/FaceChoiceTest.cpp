// ULOFont::CreateWindowsFont's choice of face, on a scripted enumeration.
#include <gtest/gtest.h>

#include "FakeFontEngine.h"
#include "TestFonts.h"
#include "ulogui/Font.h"

using namespace ulogui::platform;
using testfonts::Face;

namespace {

class FaceChoice : public ::testing::Test {
protected:
    std::shared_ptr<testfonts::FakeFontEngine> engine_ =
        std::make_shared<testfonts::FakeFontEngine>(std::vector<FaceInfo>{
            Face(L"Arial", 0, 0x22), Face(L"Tahoma", 0, 0x22), Face(L"Courier New", 0, 0x31),
            Face(L"MS Gothic", 128, 0x31), Face(L"MS PGothic", 128, 0x22), Face(L"Verdana", 0, 0x22),
            Face(L"Tahoma", 0, 0x22),  // a face may be reported more than once
        });
    testfonts::ScopedEngine scoped_{engine_};
};

}  // namespace

TEST_F(FaceChoice, WantedFacesFirstInTheirOrderThenTheSamePitchFamilyAndCharSet) {
    struct Case {
        std::vector<ULOString> wanted;
        unsigned long charSet, pitchAndFamily;
        bool found;
        const wchar_t* chosen;
        int enumerations;
    };
    const Case cases[] = {
        // First pass: the wanted faces that exist, ordered by the wanted list, whatever their pitch.
        {{L"Tahoma", L"Arial"}, 0, 0x22, true, L"Tahoma", 1},
        {{L"Missing", L"Verdana", L"Arial"}, 0, 0x22, true, L"Verdana", 1},  // enumerated Arial first
        {{L"Missing", L"Tahoma"}, 0, 0x22, true, L"Tahoma", 1},              // reported twice
        {{L"Missing", L"Courier New"}, 0, 0x22, true, L"Courier New", 1},
        // Second pass: the first face of the same pitch and family and character set, in enumeration
        // order (no reordering by the wanted list); only the low bytes of both arguments count.
        {{L"Missing"}, 0, 0x31, true, L"Courier New", 2},
        {{L"Missing"}, 128, 0x22, true, L"MS PGothic", 2},
        {{L"Missing", L"Other"}, 0, 0x22, true, L"Arial", 2},
        {{L"Missing"}, 0x100 | 128, 0x100 | 0x31, true, L"MS Gothic", 2},
        {{}, 0, 0x31, true, L"Courier New", 2},
        // Nothing found: the first wanted name is left to the platform.
        {{L"Missing", L"Other"}, 0, 0x77, false, L"Missing", 2},
        {{L"MS Gothic"}, 0, 0x52, false, L"MS Gothic", 2},          // not in this character set
        {{L"arial", L"COURIER NEW"}, 0, 0x77, false, L"arial", 2},  // names compare exactly
        {{}, 0, 0x77, false, L"", 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "case " << &c - cases);
        engine_->enumerations = 0;
        std::vector<ULOString> wanted = c.wanted;
        bool found = !c.found;
        ULOString chosen = L"stale";
        HFONT font = ULOFont::CreateWindowsFont(nullptr, 16, 0, 0, 0, 400, 0, 0, 0, c.charSet, 4, 0, 0,
                                                c.pitchAndFamily, wanted, found, chosen);
        EXPECT_EQ(c.found, found);
        EXPECT_EQ(c.chosen, chosen);
        EXPECT_EQ(c.enumerations, engine_->enumerations);
        EXPECT_EQ(c.chosen, engine_->requests.back().faceName);
        EXPECT_EQ(c.wanted, wanted);  // the caller's list is left as it was
        DeleteFontHandle(font);
    }
}

TEST_F(FaceChoice, TheRequestCarriesEveryArgument) {
    std::vector<ULOString> wanted = {L"MS Gothic"};
    bool found = false;
    ULOString chosen;
    HFONT font = ULOFont::CreateWindowsFont(nullptr, -13, 5, 6, 7, 700, 2, 0, 1, 0x180, 4, 2, 3, 0x31, wanted,
                                            found, chosen);
    const FontRequest& r = engine_->requests.back();
    EXPECT_EQ(std::make_tuple(-13, 5, 6, 7, 700, true, false, true),
              std::make_tuple(r.height, r.width, r.escapement, r.orientation, r.weight, r.italic, r.underline,
                              r.strikeOut));
    EXPECT_EQ(std::make_tuple(128, 4, 2, 3, 0x31),
              std::make_tuple(+r.charSet, +r.outPrecision, +r.clipPrecision, +r.quality, +r.pitchAndFamily));
    EXPECT_EQ(L"MS Gothic", ResolveFont(font)->GetFaceName());
    DeleteFontHandle(font);
}
