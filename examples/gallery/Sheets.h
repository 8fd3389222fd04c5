#pragma once
// The sheets of the gallery and the rendering of one sheet into a surface of its own, apart from any
// output, so that a window can show what a file would hold.
#include <memory>
#include <string>
#include <vector>

#include "Painter.h"

namespace gallery {

struct Sheet {
    const char* name;      // in file names: buttons, text, lists, indicators, pictures
    const char* titleKey;  // its title in the text table
    int width;             // logical size
    int height;
    void (*paint)(Painter& p, const ULORect& sheet);
};

const std::vector<Sheet>& Sheets();

// The PNG file name of a sheet in a language at a magnification: buttons-fr-125.png.
std::string SheetFileName(const Sheet& sheet, const LanguageResources& language, float magnification);

// The sheet painted with the look, on a magnified surface of the sheet's logical size (so its buffer
// holds the device pixels of the look's magnification, which this sets as the calling thread's).
// `textRegions`, when given, receives the device rectangles that hold text.
std::unique_ptr<ULOTrueColorDCBase> RenderSheet(const Sheet& sheet, const Look& look,
                                                std::vector<ULORect>* textRegions = nullptr);

// The painters of the sheets (one file each).
void PaintButtonsSheet(Painter& p, const ULORect& sheet);
void PaintTextSheet(Painter& p, const ULORect& sheet);
void PaintListsSheet(Painter& p, const ULORect& sheet);
void PaintIndicatorsSheet(Painter& p, const ULORect& sheet);
void PaintPicturesSheet(Painter& p, const ULORect& sheet);

}  // namespace gallery
