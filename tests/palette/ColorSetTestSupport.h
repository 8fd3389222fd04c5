#pragma once
// Helpers shared by the colour set tests: a palette guard and sets with a different colour per field.
#include <gtest/gtest.h>

#include "ulogui/ColorSet.h"
#include "ulogui/Palette.h"

namespace colorset_test {

// A different colour in every field, different again for each salt.
inline ULOGUIColorSet DistinctSet(int salt) {
    ULOGUIColorSet set;
    for (int i = 0; i < ULOGUIColorSet::kFieldCount; ++i) {
        set.Field(i) = CLR(i + salt, 2 * i + 1, 250 - i - salt);
    }
    return set;
}

// Saves the palette before each test and puts it back afterwards.
class PaletteGuardTest : public ::testing::Test {
protected:
    void SetUp() override { ULOGUIColorSet::GetCurrentSet(saved_); }
    void TearDown() override { saved_.ApplyToCurrent(); }
    ULOGUIColorSet saved_;
};

}  // namespace colorset_test
