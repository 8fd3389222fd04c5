#pragma once
// Fonts: ULOFont, a wanted type face bound to four platform fonts (regular, italic, underlined,
// italic underlined) with cached advance widths for measuring text without the platform; and the
// process-wide font resource file that describes the application's fonts by numeric ID.
#include <boost/noncopyable.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "ulogui/Export.h"
#include "ulogui/Geometry.h"
#include "ulogui/PlatformTypes.h"
#include "ulolib/ErrorCode.h"
#include "ulolib/Path.h"
#include "ulolib/String.h"

namespace ulogui {
namespace resfile {
struct FontRecord;
}  // namespace resfile
}  // namespace ulogui

// The font resource file, memory-mapped once per process for the whole life of the process.
class ULODRAW_API FontResourceFile : boost::noncopyable {
public:
    virtual ~FontResourceFile();

    // Closes whatever was open, then opens path. An empty path, a missing file or a directory give
    // the error "URF_INIPTH"; platform failures give the failing call's name and its error code.
    ulo::ErrorCode Init(const ULOPath& path);

    bool IsOpen() const { return view_ != nullptr; }
    const uint8_t* GetView() const { return view_; }
    size_t GetViewSize() const { return viewSize_; }

    // The record of font ID id, with the fall-back to font ID 0 for an ID without a readable record;
    // false when no file is open or not even font ID 0 can be read.
    bool ReadRecord(uint32_t id, ulogui::resfile::FontRecord& out) const;

    // The process-wide file (created on first use; never closed before the process ends).
    static FontResourceFile& Instance();

protected:
    FontResourceFile() = default;
    // Called by the implementations when a view is mapped (or gone: null, 0).
    void SetView(const uint8_t* view, size_t size) {
        view_ = view;
        viewSize_ = size;
    }

private:
    virtual ulo::ErrorCode DoInit(const ULOPath& path) = 0;
    virtual void DoClose() = 0;

    const uint8_t* view_ = nullptr;
    size_t viewSize_ = 0;
};

class ULODRAW_API ULOFont {
public:
    static constexpr unsigned int kNoFontID = 0xFFFFFFFFu;
    static constexpr size_t kCjkFirst = 0x3000;
    static constexpr size_t kCjkCount = 0xA000 - 0x3000;  // 28,672
    static constexpr size_t kCompatFirst = 0xF900;
    static constexpr size_t kCompatCount = 0xFFF0 - 0xF900;  // 1,776

    // The font of fontID in the font resource file, made for a language and a display magnification.
    // Without an open file (or a readable record) the font is empty: IsValid() is false.
    ULOFont(unsigned int fontID, int language, float magnifier);
    // A font from face names, most wanted first (the list should not be empty). height is in device
    // pixels and is not multiplied by magnifier.
    ULOFont(const std::vector<ULOString>& faceNames, int height, int language, float magnifier, bool italic,
            bool underline, bool strikeOut);
    // Shallow: the copy shares the width tables and the platform font handles with its source, and
    // whichever is destroyed first deletes the handles (the other's then refer to nothing, which
    // the platform layer tolerates). Share fonts through boost::shared_ptr instead of copying them.
    ULOFont(const ULOFont& other);
    ULOFont& operator=(const ULOFont& other);
    ~ULOFont();

    // Creates the four platform fonts and fills the width caches.
    void CreatePlatformFont(int language);
    // Chooses the first available face of wanted (see docs/fonts.md) and creates the platform font.
    static HFONT CreateWindowsFont(HDC dc, int height, int width, int escapement, int orientation, int weight,
                                   unsigned long italic, unsigned long underline, unsigned long strikeOut,
                                   unsigned long charSet, unsigned long outPrecision,
                                   unsigned long clipPrecision, unsigned long quality,
                                   unsigned long pitchAndFamily, std::vector<ULOString>& wanted, bool& found,
                                   ULOString& chosen);
    // Selects the variant matching the flags into dc, keeping the font selected before.
    void SelectWindowsFont(HDC dc, bool italic, bool underline);
    void RestoreOldWindowsFont(HDC dc);

    unsigned int GetFontID() const { return fontID; }
    int GetFontHeight() const { return height; }
    float GetMagnifier() const { return magnifier; }
    bool IsValid() const { return fontRegular != nullptr; }
    bool IsNonANSIFontOK() const { return nonANSIFontOK; }
    ULOString GetFirstWantedFont() const;

    // Advance width of c in device pixels (magnified) or logical units.
    float GetCharWidthW(wchar_t c, bool magnified) const;
    ULOString GetDebugInfo() const;

    // Further read access, for text output and hosts.
    const std::vector<ULOString>& GetFaceNames() const { return faceNames; }
    const ULOString& GetName() const { return name; }
    const ULOString& GetChosenFace() const { return chosenFace; }
    int GetWeight() const { return weight; }
    bool IsItalic() const { return italic; }
    bool IsUnderline() const { return underline; }
    bool IsStrikeOut() const { return strikeOut; }
    unsigned char GetFamily() const { return family; }
    unsigned char GetPitch() const { return pitch; }
    bool IgnoresHeightExt() const { return ignoreHeightExt; }
    int GetHeightExt() const { return heightExt; }
    bool HasUnicodeExtraWidths() const { return cjkWidths != nullptr; }
    HFONT GetRegularFont() const { return fontRegular; }
    HFONT GetItalicFont() const { return fontItalic; }
    HFONT GetUnderlineFont() const { return fontUnderline; }
    HFONT GetItalicUnderlineFont() const { return fontItalicUnderline; }
    HFONT GetPreviousFont() const { return fontPrevious; }

    static ulo::ErrorCode SetFontResourceFile(const ULOPath& path);
    static bool NeedsUnicodeExtras(int language) { return language == 3 || language == 7; }
    static void SetUsesUnicodeExtras(bool uses) { bUsesUnicodeExtras_ = uses; }
    static bool UsesUnicodeExtras() { return bUsesUnicodeExtras_; }

    // ---- Text measurement (ulogui/font/FontMeasure.cpp, FontWrap.cpp, FontTruncate.cpp) ----
    // Everything here works on the cached width tables only: no platform call, no lock. Widths are
    // logical (device widths divided by the magnifier) and heights are in the font's pixel height.
    // Tabs advance to the next multiple of 50 from the tab origin, one interval further when the
    // stop is closer than a space; see docs/fonts.md for the exact unit of each member.

    // Width of s as one line, tab stops counted from startX.
    float GetStringRealWidthSingleLine(const ULOString& s, float startX) const;
    // Widest of the lines of s, split at every CR and every LF.
    float GetStringRealWidthMultiLine(const ULOString& s, float startX) const;
    float GetStringRealWidth(const ULOString& s, float startX) const;
    // The multi-line width rounded up.
    int GetStringWidth(const ULOString& s, float startX) const;
    // Advance of a tab at x, in device pixels (magnified) or logical units.
    float GetTabWidth(float x, bool magnified) const;
    float ComputeMaxStringWidth(const ULOString& s) const;
    // (line feeds + 1) × height.
    int ComputeMinStringHeight(const ULOString& s) const;
    // Logical width (rounded up) with device height.
    ULOSize ComputeStringBoundingRect(const ULOString& s) const;
    // Height of s wrapped into width: a line per started width of each LF-separated piece.
    int ComputeTextLabelHeight(const ULOString& s, int width) const;
    static size_t CountLineFeeds(const ULOString& s);
    // Length of the first line of s wrapped into maxWidth (the break character begins the next
    // line); 0 when the first line of s fits as a whole.
    int GetMaxWordOffset(int maxWidth, const ULOString& s, float startX) const;
    // Shortens s from the end and appends ellipsis so that it fits maxWidth; true when shortened.
    bool TruncateString(const ULOString& s, ULOString& out, int maxWidth, ULOString ellipsis) const;
    // Replaces middle components of path by ellipsis so that it fits maxWidth; true when shortened.
    bool TruncatePath(const ULOString& path, ULOString& out, int maxWidth, ULOString ellipsis) const;
    // ---- end of text measurement ----

protected:
    static bool bUsesUnicodeExtras_;

private:
    void TakeRecord(const ulogui::resfile::FontRecord& record);

    unsigned int fontID = kNoFontID;
    float charWidths[256] = {};
    // Shared by copies and kept alive by the last of them (the widths never change once filled).
    std::shared_ptr<float[]> cjkWidths;
    std::shared_ptr<float[]> compatWidths;
    int height = 0;
    int weight = 0;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    float magnifier = 0.0f;
    std::vector<ULOString> faceNames;
    unsigned char family = 0;
    unsigned char pitch = 0;
    ULOString name;
    ULOString chosenFace;
    bool nonANSIFontOK = true;
    bool ignoreHeightExt = true;
    int heightExt = 0;
    HFONT fontRegular = nullptr;
    HFONT fontItalic = nullptr;
    HFONT fontUnderline = nullptr;
    HFONT fontItalicUnderline = nullptr;
    HFONT fontPrevious = nullptr;
};
