#include "Sheets.h"

#include "Controls.h"
#include "ulogui/Magnify.h"

namespace gallery {

const std::vector<Sheet>& Sheets() {
    static const std::vector<Sheet> sheets = {
        {"buttons", "sheet.buttons", 544, 250, PaintButtonsSheet},
        {"text", "sheet.text", 520, 262, PaintTextSheet},
        {"lists", "sheet.lists", 520, 300, PaintListsSheet},
        {"indicators", "sheet.indicators", 520, 330, PaintIndicatorsSheet},
        {"pictures", "sheet.pictures", 640, 372, PaintPicturesSheet},
    };
    return sheets;
}

std::string SheetFileName(const Sheet& sheet, const LanguageResources& language, float magnification) {
    return std::string(sheet.name) + "-" + language.code.ToUtf8() + "-" +
           std::to_string(static_cast<int>(magnification * 100.0f + 0.5f)) + ".png";
}

std::unique_ptr<ULOTrueColorDCBase> RenderSheet(const Sheet& sheet, const Look& look,
                                                std::vector<ULORect>* textRegions) {
    magnify::GetMagnifier() = look.magnifier;
    const ULORect rect(0, 0, sheet.width, sheet.height);
    std::unique_ptr<ULOTrueColorDCBase> surface(new ULOTrueColorDCBase(rect, false, true));
    Painter painter(*surface, look, textRegions);
    PaintSheetGround(painter, rect, look.language->texts.Get(sheet.titleKey));
    sheet.paint(painter, rect);
    return surface;
}

}  // namespace gallery
