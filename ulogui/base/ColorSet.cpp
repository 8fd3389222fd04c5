// Colour sets: snapshots of the palette, the factory set and the stream record.
#include "ulogui/ColorSet.h"

#include <cstdint>
#include <stdexcept>

#include "base/PaletteEntries.h"
#include "ulogui/Palette.h"
#include "ulolib/Stream.h"

namespace {

using Member = CLR ULOGUIColorSet::*;

// The fields in palette order.
constexpr Member kFields[ULOGUIColorSet::kFieldCount] = {
    &ULOGUIColorSet::gradationTopLeft,
    &ULOGUIColorSet::gradationBottomRight,
    &ULOGUIColorSet::activeFrame,
    &ULOGUIColorSet::activeCaption,
    &ULOGUIColorSet::inactiveCaption,
    &ULOGUIColorSet::activeCaptionTitle,
    &ULOGUIColorSet::inactiveCaptionTitle,
    &ULOGUIColorSet::text,
    &ULOGUIColorSet::lightText,
    &ULOGUIColorSet::textRed,
    &ULOGUIColorSet::textBlack,
    &ULOGUIColorSet::labelText,
    &ULOGUIColorSet::warn,
    &ULOGUIColorSet::noWarn,
    &ULOGUIColorSet::gradationTabLeft,
    &ULOGUIColorSet::gradationTabRight,
    &ULOGUIColorSet::activeTabText,
    &ULOGUIColorSet::inactiveTabText,
    &ULOGUIColorSet::inactiveTabBack,
    &ULOGUIColorSet::editText,
    &ULOGUIColorSet::editHoverText,
    &ULOGUIColorSet::editFocusText,
    &ULOGUIColorSet::editHighlightedText,
    &ULOGUIColorSet::editBack,
    &ULOGUIColorSet::editFocusBack,
    &ULOGUIColorSet::buttonText,
    &ULOGUIColorSet::toggleButton,
    &ULOGUIColorSet::hoverButton,
    &ULOGUIColorSet::buttonBack,
    &ULOGUIColorSet::listText,
    &ULOGUIColorSet::listHoverText,
    &ULOGUIColorSet::listFocusText,
    &ULOGUIColorSet::listBack,
    &ULOGUIColorSet::listFocusBack,
    &ULOGUIColorSet::listSelectedItemBack,
    &ULOGUIColorSet::gradationListLeft,
    &ULOGUIColorSet::gradationListRight,
    &ULOGUIColorSet::menuText,
    &ULOGUIColorSet::menuSelectedText,
    &ULOGUIColorSet::menuBack,
    &ULOGUIColorSet::menuSelected,
};
static_assert(ULOGUIColorSet::kFieldCount == ulogui::kPaletteSize, "one field per palette entry");

// Stored sets list five pairs of entries the other way round; the order stays for their sake.
constexpr int kRecordOrder[ULOGUIColorSet::kFieldCount] = {
    0,  1,  3,  4,  2,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20,
    21, 22, 24, 23, 25, 27, 26, 28, 29, 30, 31, 33, 32, 34, 37, 38, 39, 40, 35, 36,
};

constexpr uint16_t kRecordTag = 8;

bool WriteRecord(ULOStream& stream, const CLR& colour) {
    return stream.WriteSwap(kRecordTag) && stream.Write(&colour.red, 1) == 1 &&
           stream.Write(&colour.green, 1) == 1 && stream.Write(&colour.blue, 1) == 1;
}

// All three components are read even after a bad tag, so a failing record always consumes the same
// bytes; `colour` changes only when the whole record is good.
bool ReadRecord(ULOStream& stream, CLR& colour) {
    uint16_t tag = 0;
    bool ok = stream.ReadSwap(tag) && tag == kRecordTag;
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;
    ok = (stream.Read(&red, 1) == 1) && ok;
    ok = (stream.Read(&green, 1) == 1) && ok;
    ok = (stream.Read(&blue, 1) == 1) && ok;
    if (ok) {
        colour = CLR(red, green, blue);
    }
    return ok;
}

}  // namespace

ULOGUIColorSet::~ULOGUIColorSet() = default;

CLR& ULOGUIColorSet::Field(int index) {
    if (index < 0 || index >= kFieldCount) {
        throw std::out_of_range("ULOGUIColorSet::Field: no such palette entry");
    }
    return this->*kFields[index];
}

const CLR& ULOGUIColorSet::Field(int index) const {
    return const_cast<ULOGUIColorSet*>(this)->Field(index);
}

void ULOGUIColorSet::ApplyToCurrent() const {
    for (int i = 0; i < kFieldCount; ++i) {
        *ulogui::base::kPaletteEntries[i] = this->*kFields[i];
    }
}

void ULOGUIColorSet::GetCurrentSet(ULOGUIColorSet& out) {
    for (int i = 0; i < kFieldCount; ++i) {
        out.*kFields[i] = *ulogui::base::kPaletteEntries[i];
    }
}

const ULOGUIColorSet& ULOGUIColorSet::GetDefaultSet() {
    // The one-time initialisation of a local static is thread-safe, and the reset belongs to it.
    static const ULOGUIColorSet defaultSet = [] {
        ULOGUIColorSet set;
        set.Reset();
        return set;
    }();
    return defaultSet;
}

void ULOGUIColorSet::Reset() {
    // In palette order, so that entries defined as copies take the value just set for their source.
    const CLR& defaultText = ULOGUI_Colors::GetDefaultTextClr();
    gradationTopLeft = CLR(131, 131, 131);
    gradationBottomRight = CLR(65, 65, 65);
    activeFrame = CLR(48, 94, 177);
    activeCaption = CLR(26, 26, 26);
    inactiveCaption = CLR(104, 104, 104);
    activeCaptionTitle = CLR(255, 255, 255);
    inactiveCaptionTitle = CLR(172, 172, 172);
    text = defaultText;
    lightText = CLR(255, 255, 255);
    // textRed and textBlack keep their values: a reset set leaves them as constructed.
    labelText = defaultText;
    warn = CLR(255, 0, 0);
    noWarn = CLR(0, 0, 0);
    gradationTabLeft = gradationTopLeft;
    gradationTabRight = gradationTabLeft;
    activeTabText = text;
    inactiveTabText = CLR(20, 20, 20);
    inactiveTabBack = CLR(170, 170, 170);
    editText = CLR(0, 0, 0);
    editHoverText = CLR(0, 0, 0);
    editFocusText = CLR(0, 0, 0);
    editHighlightedText = activeFrame;
    editBack = CLR(163, 163, 165);
    editFocusBack = CLR(190, 190, 190);
    buttonText = CLR(255, 255, 255);
    toggleButton = CLR(201, 120, 3);
    hoverButton = editHighlightedText;
    buttonBack = CLR(175, 175, 175);
    listText = editText;
    listHoverText = CLR(15, 15, 15);
    listFocusText = CLR(255, 255, 255);
    listBack = CLR(145, 145, 145);
    listFocusBack = CLR(168, 168, 168);
    listSelectedItemBack = editHighlightedText;
    gradationListLeft = CLR(112, 112, 112);
    gradationListRight = gradationListLeft;
    menuText = CLR(0, 0, 0);
    menuSelectedText = text;
    menuBack = CLR(131, 131, 131);
    menuSelected = listSelectedItemBack;
}

bool ULOGUIColorSet::operator==(const ULOGUIColorSet& other) const {
    for (Member field : kFields) {
        if (this->*field != other.*field) {
            return false;
        }
    }
    return true;
}

bool ULOGUIColorSet::Write(ULOStream* stream) const {
    if (stream == nullptr) {
        return false;
    }
    for (int index : kRecordOrder) {
        if (!WriteRecord(*stream, this->*kFields[index])) {
            return false;
        }
    }
    return true;
}

bool ULOGUIColorSet::Read(ULOStream* stream, bool apply) {
    Reset();
    if (stream == nullptr) {
        return false;
    }
    for (int index : kRecordOrder) {
        if (!ReadRecord(*stream, this->*kFields[index])) {
            return false;
        }
    }
    if (apply) {
        ApplyToCurrent();
    }
    return true;
}
