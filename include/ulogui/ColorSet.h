#pragma once
// ULOGUIColorSet: a snapshot of the whole GUI palette, one field per palette entry, in palette order.
// Hosts keep themes as colour sets, store them in their documents and make one current with
// ApplyToCurrent. The stream record is described in docs/colour-sets.md.
#include "ulogui/Color.h"
#include "ulogui/Export.h"

class ULOStream;

struct ULODRAW_API ULOGUIColorSet {
    // Every field black.
    ULOGUIColorSet() = default;
    ULOGUIColorSet(const ULOGUIColorSet&) = default;
    ULOGUIColorSet& operator=(const ULOGUIColorSet&) = default;
    virtual ~ULOGUIColorSet();

    // Copies every field into its palette global.
    virtual void ApplyToCurrent() const;
    // Resets the set, then reads the 41 records. On the first record that fails it returns false, keeping
    // the fields read before it and the reset values for the rest, and applies nothing. After a complete
    // read it applies the set when `apply` is true. A null stream fails after the reset.
    virtual bool Read(ULOStream* stream, bool apply);
    // Writes the 41 records; false at the first that cannot be written whole.
    virtual bool Write(ULOStream* stream) const;
    // The factory colours. Deliberately leaves textRed and textBlack as they are.
    virtual void Reset();

    // The palette as it is now.
    static void GetCurrentSet(ULOGUIColorSet& out);
    // The factory set: made and reset once for the process, on first use.
    static const ULOGUIColorSet& GetDefaultSet();

    bool operator==(const ULOGUIColorSet& other) const;
    bool operator!=(const ULOGUIColorSet& other) const { return !(*this == other); }

    // Field i is palette entry i (see ulogui/Palette.h).
    CLR gradationTopLeft{0, 0, 0};
    CLR gradationBottomRight{0, 0, 0};
    CLR activeFrame{0, 0, 0};
    CLR activeCaption{0, 0, 0};
    CLR inactiveCaption{0, 0, 0};
    CLR activeCaptionTitle{0, 0, 0};
    CLR inactiveCaptionTitle{0, 0, 0};
    CLR text{0, 0, 0};
    CLR lightText{0, 0, 0};
    CLR textRed{0, 0, 0};
    CLR textBlack{0, 0, 0};
    CLR labelText{0, 0, 0};
    CLR warn{0, 0, 0};
    CLR noWarn{0, 0, 0};
    CLR gradationTabLeft{0, 0, 0};
    CLR gradationTabRight{0, 0, 0};
    CLR activeTabText{0, 0, 0};
    CLR inactiveTabText{0, 0, 0};
    CLR inactiveTabBack{0, 0, 0};
    CLR editText{0, 0, 0};
    CLR editHoverText{0, 0, 0};
    CLR editFocusText{0, 0, 0};
    CLR editHighlightedText{0, 0, 0};
    CLR editBack{0, 0, 0};
    CLR editFocusBack{0, 0, 0};
    CLR buttonText{0, 0, 0};
    CLR toggleButton{0, 0, 0};
    CLR hoverButton{0, 0, 0};
    CLR buttonBack{0, 0, 0};
    CLR listText{0, 0, 0};
    CLR listHoverText{0, 0, 0};
    CLR listFocusText{0, 0, 0};
    CLR listBack{0, 0, 0};
    CLR listFocusBack{0, 0, 0};
    CLR listSelectedItemBack{0, 0, 0};
    CLR gradationListLeft{0, 0, 0};
    CLR gradationListRight{0, 0, 0};
    CLR menuText{0, 0, 0};
    CLR menuSelectedText{0, 0, 0};
    CLR menuBack{0, 0, 0};
    CLR menuSelected{0, 0, 0};

    // Number of fields, and the field that holds palette entry `index` (0..40).
    static constexpr int kFieldCount = 41;
    CLR& Field(int index);
    const CLR& Field(int index) const;
};
