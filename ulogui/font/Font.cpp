#include "ulogui/Font.h"

#include <cmath>
#include <limits>

#include "platform/FontEngine.h"
#include "resfile/FontRecord.h"

namespace platform = ulogui::platform;

bool ULOFont::bUsesUnicodeExtras_ = false;

namespace {

constexpr int kLanguageJapanese = 3;
constexpr int kLanguageChinese = 7;
constexpr int kOutTrueTypePrecision = 4;  // OUT_TT_PRECIS
// Characters without a width of their own are measured as the question mark.
constexpr uint32_t kFallbackChar = '?';

// Truncation toward zero, limited to the int range (a wild magnifier must not overflow).
int TruncateToInt(float v) {
    if (std::isnan(v)) {
        return 0;
    }
    if (v >= static_cast<float>(std::numeric_limits<int>::max())) {
        return std::numeric_limits<int>::max();
    }
    if (v <= static_cast<float>(std::numeric_limits<int>::min())) {
        return std::numeric_limits<int>::min();
    }
    return static_cast<int>(v);
}

// Advances of first..first+count-1 of the font selected into dc, fetched as integers and kept as
// floats.
void FillWidths(HDC dc, uint32_t first, size_t count, float* out) {
    std::vector<int32_t> advances(count);
    platform::GetCharAdvances(dc, first, first + static_cast<uint32_t>(count) - 1, advances.data());
    for (size_t i = 0; i < count; ++i) {
        out[i] = static_cast<float>(advances[i]);
    }
}

}  // namespace

ULOFont::ULOFont(unsigned int id, int language, float m) : fontID(id), magnifier(m) {
    ulogui::resfile::FontRecord record;
    if (!FontResourceFile::Instance().ReadRecord(fontID, record)) {
        return;  // no file (or not even font 0 readable): an empty font
    }
    TakeRecord(record);
    CreatePlatformFont(language);
}

ULOFont::ULOFont(const std::vector<ULOString>& names, int h, int language, float m, bool it, bool ul, bool so)
    : height(h),
      weight(400),
      italic(it),
      underline(ul),
      strikeOut(so),
      magnifier(m),
      faceNames(names),
      family(0x20),
      pitch(2),
      name(names.empty() ? ULOString() : names.front()),
      nonANSIFontOK(true),
      ignoreHeightExt(false),
      heightExt(h) {
    CreatePlatformFont(language);
}

ULOFont::ULOFont(const ULOFont& other) = default;
ULOFont& ULOFont::operator=(const ULOFont& other) = default;

ULOFont::~ULOFont() {
    // The variants may be the regular font itself; deleting a handle again is a no-op.
    for (HFONT font : {fontRegular, fontItalic, fontUnderline, fontItalicUnderline}) {
        if (font) {
            platform::DeleteFontHandle(font);
        }
    }
}

void ULOFont::TakeRecord(const ulogui::resfile::FontRecord& record) {
    faceNames.push_back(record.primaryFace);
    height = TruncateToInt(static_cast<float>(record.height) * magnifier);
    weight = record.weight;
    italic = record.italic;
    underline = record.underline;
    strikeOut = record.strikeOut;
    family = record.family;
    pitch = record.pitch;
    faceNames.insert(faceNames.end(), record.alternativeFaces.begin(), record.alternativeFaces.end());
    name = record.name;
    ignoreHeightExt = record.ignoreHeightExt;
    heightExt = record.heightExt;  // deliberately not magnified
}

void ULOFont::CreatePlatformFont(int language) {
    nonANSIFontOK = true;
    const bool special = NeedsUnicodeExtras(language) && !ignoreHeightExt;
    HDC screen = nullptr;  // the screen context
    if (special) {
        height = heightExt;
    }
    unsigned long charSet = platform::charset::kAnsi;
    if (language == kLanguageJapanese) {
        charSet = platform::charset::kShiftJis;
    } else if (language == kLanguageChinese) {
        charSet = platform::charset::kGb2312;
    }
    const unsigned long pitchAndFamily = family | pitch;

    bool found = false;
    fontRegular =
        CreateWindowsFont(screen, height, 0, 0, 0, weight, italic, underline, strikeOut, charSet,
                          kOutTrueTypePrecision, 0, 0, pitchAndFamily, faceNames, found, chosenFace);
    nonANSIFontOK = special ? found : true;

    fontPrevious = platform::SelectFont(screen, fontRegular);
    FillWidths(screen, 0, 256, charWidths);
    if (special) {
        cjkWidths.reset(new float[kCjkCount]);
        FillWidths(screen, kCjkFirst, kCjkCount, cjkWidths.get());
        compatWidths.reset(new float[kCompatCount]);
        FillWidths(screen, kCompatFirst, kCompatCount, compatWidths.get());
    }
    platform::SelectFont(screen, fontPrevious);
    for (int c = 0; c < 32; ++c) {
        charWidths[c] = 0.0f;  // control characters take no room
    }

    bool scratchFound = false;
    ULOString scratchChosen;
    fontItalicUnderline = (italic && underline)
                              ? fontRegular
                              : CreateWindowsFont(screen, height, 0, 0, 0, weight, 1, 1, strikeOut, charSet,
                                                  kOutTrueTypePrecision, 0, 0, pitchAndFamily, faceNames,
                                                  scratchFound, scratchChosen);
    fontItalic = italic ? fontRegular
                        : CreateWindowsFont(screen, height, 0, 0, 0, weight, 1, underline, strikeOut, charSet,
                                            kOutTrueTypePrecision, 0, 0, pitchAndFamily, faceNames,
                                            scratchFound, scratchChosen);
    fontUnderline = underline ? fontRegular
                              : CreateWindowsFont(screen, height, 0, 0, 0, weight, italic, 1, strikeOut,
                                                  charSet, kOutTrueTypePrecision, 0, 0, pitchAndFamily,
                                                  faceNames, scratchFound, scratchChosen);
}

void ULOFont::SelectWindowsFont(HDC dc, bool wantItalic, bool wantUnderline) {
    HFONT font = fontRegular;
    if (wantItalic && wantUnderline) {
        font = fontItalicUnderline ? fontItalicUnderline
               : fontItalic        ? fontItalic
               : fontUnderline     ? fontUnderline
                                   : fontRegular;
    } else if (wantItalic) {
        font = fontItalic ? fontItalic : fontRegular;
    } else if (wantUnderline) {
        font = fontUnderline ? fontUnderline : fontRegular;
    }
    fontPrevious = platform::SelectFont(dc, font);
}

void ULOFont::RestoreOldWindowsFont(HDC dc) {
    platform::SelectFont(dc, fontPrevious);
}

ULOString ULOFont::GetFirstWantedFont() const {
    return faceNames.empty() ? ULOString() : faceNames.front();
}

float ULOFont::GetCharWidthW(wchar_t c, bool magnified) const {
    // wchar_t is 32 bits wide here: code points past the BMP have no cached width either.
    const uint32_t code = static_cast<uint32_t>(c);
    float width;
    if (code < 0x100) {
        width = charWidths[code];
    } else if (!cjkWidths) {
        width = charWidths[kFallbackChar];
    } else if (code >= kCjkFirst && code < kCjkFirst + kCjkCount) {
        width = cjkWidths[code - kCjkFirst];
    } else if (code >= kCompatFirst && code < kCompatFirst + kCompatCount && compatWidths) {
        width = compatWidths[code - kCompatFirst];
    } else {
        width = charWidths[kFallbackChar];
    }
    if (!magnified && magnifier != 0.0f) {
        width /= magnifier;
    }
    return width;
}

ULOString ULOFont::GetDebugInfo() const {
    return ULOString::Format(L"FONT '%s' h=%d, hext=%d, w=%d, m=%f, %d, %d\n", chosenFace.c_str(), height,
                             heightExt, weight, static_cast<double>(magnifier), nonANSIFontOK ? 1 : 0,
                             ignoreHeightExt ? 1 : 0);
}
