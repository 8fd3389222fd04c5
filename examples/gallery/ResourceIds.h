#pragma once
// What the gallery takes from its resource files: the pictures of Main.urb (built from
// pictures/pictures.xml) and the fonts of Main.urf (resources/fonts*.xml), by ID.
namespace gallery {

// Picture IDs, with the number of parts each must have. Only the toolbar icons have a second
// (larger) size version.
enum PictureId {
    kToolbarIcons = 10,  // 9 parts: the icons below
    kCheckMarks = 11,    // 2 parts (mask): check, dash
    kArrows = 12,        // 4 parts (mask): down, up, left, right
    kCloseIcon = 13,
    kPanel = 14,
    kStripes = 15,
    kSliderThumb = 16,
    kRadioLayers = 17,  // 3 parts (mask): disc, ring, dot
};

enum ToolbarIcon {
    kIconNew,
    kIconOpen,
    kIconSave,
    kIconCopy,
    kIconPaste,
    kIconUndo,
    kIconFind,
    kIconSettings,
    kIconInfo,
    kToolbarIconCount
};
enum Mark { kMarkCheck, kMarkDash, kMarkCount };
enum Arrow { kArrowDown, kArrowUp, kArrowLeft, kArrowRight, kArrowCount };
enum RadioLayer { kRadioDisc, kRadioRing, kRadioDot, kRadioLayerCount };

// Fonts by role; the font ID is the role's number (for double-byte languages, plus 4 times the
// position of the magnification in kMagnifications), and the record's own name must be the role's
// name, which tells a damaged record (read as font 0 instead) from a good one.
enum class FontRole { Label, Small, Bold, Title };
constexpr int kFontRoleCount = 4;
constexpr const wchar_t* kFontRoleNames[kFontRoleCount] = {L"Label", L"Small", L"Bold", L"Title"};

}  // namespace gallery
