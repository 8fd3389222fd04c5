#include "platform/linux/FaceCatalogue.h"

#include FT_SFNT_NAMES_H
#include FT_TRUETYPE_IDS_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <utility>

#include "platform/linux/SfntFacts.h"

namespace ulogui {
namespace platform {
namespace ft {

namespace {

struct FontSetDeleter {
    void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
};
struct PatternDeleter {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using FontSetPtr = std::unique_ptr<FcFontSet, FontSetDeleter>;
using PatternPtr = std::unique_ptr<FcPattern, PatternDeleter>;

ULOString FromUtf16BigEndian(const FT_Byte* bytes, FT_UInt length) {
    std::u16string units;
    units.reserve(length / 2);
    for (FT_UInt i = 0; i + 1 < length; i += 2) {
        units.push_back(static_cast<char16_t>((bytes[i] << 8) | bytes[i + 1]));
    }
    return ULOString::FromUtf16(units);
}

bool IsOutlineFormat(const FcChar8* format) {
    if (!format) {
        return false;
    }
    const char* f = reinterpret_cast<const char*>(format);
    return std::strcmp(f, "TrueType") == 0 || std::strcmp(f, "CFF") == 0;
}

// Character sets from fontconfig's language coverage, for faces whose OS/2 table states no code
// pages (version 0 tables or none).
std::vector<uint8_t> CharSetsFromLanguages(FcPattern* pattern) {
    std::vector<uint8_t> sets;
    FcLangSet* langs = nullptr;
    if (FcPatternGetLangSet(pattern, FC_LANG, 0, &langs) != FcResultMatch || !langs) {
        return sets;
    }
    for (uint8_t set : CharSetsFromCodePages(0xFFFFFFFFu)) {
        const char* lang = LanguageOfCharSet(set);
        if (lang && FcLangSetHasLang(langs, reinterpret_cast<const FcChar8*>(lang)) == FcLangEqual) {
            sets.push_back(set);
        }
    }
    return sets;
}

// 0 regular, 1 bold, 2 italic, 3 bold italic: the order in which a face stands for its family.
int StyleRank(const FaceFile& face) {
    return (face.weightClass > 550 ? 1 : 0) + (face.italic ? 2 : 0);
}

bool LessNoCase(const ULOString& a, const ULOString& b) {
    const int c = a.CompareNoCase(b);
    return c != 0 ? c < 0 : a.Compare(b) < 0;
}

}  // namespace

bool FaceFamily::Supports(uint8_t charSet) const {
    return std::find(charSets.begin(), charSets.end(), charSet) != charSets.end();
}

ULOString WindowsFamilyName(FT_Face face) {
    ULOString anyLanguage;
    const FT_UInt count = FT_Get_Sfnt_Name_Count(face);
    for (FT_UInt i = 0; i < count; ++i) {
        FT_SfntName name;
        if (FT_Get_Sfnt_Name(face, i, &name) != 0 || name.name_id != TT_NAME_ID_FONT_FAMILY ||
            name.platform_id != TT_PLATFORM_MICROSOFT) {
            continue;
        }
        if (name.encoding_id != TT_MS_ID_UNICODE_CS && name.encoding_id != TT_MS_ID_SYMBOL_CS &&
            name.encoding_id != TT_MS_ID_UCS_4) {
            continue;
        }
        if (name.language_id == TT_MS_LANGID_ENGLISH_UNITED_STATES) {
            return FromUtf16BigEndian(name.string, name.string_len);
        }
        if (anyLanguage.empty()) {
            anyLanguage = FromUtf16BigEndian(name.string, name.string_len);
        }
    }
    if (!anyLanguage.empty()) {
        return anyLanguage;
    }
    return face->family_name ? ULOString::FromUtf8(face->family_name) : ULOString();
}

FaceCatalogue::FaceCatalogue(FcConfig* config, FT_Library library) {
    ReadFaces(config, library);
    GroupFamilies();
    OrderFamilies(config);
}

void FaceCatalogue::ReadFaces(FcConfig* config, FT_Library library) {
    PatternPtr query(FcPatternCreate());
    FcPatternAddBool(query.get(), FC_SCALABLE, FcTrue);
    FcObjectSet* objects = FcObjectSetBuild(FC_FILE, FC_INDEX, FC_FONTFORMAT, FC_LANG, nullptr);
    FontSetPtr list(FcFontList(config, query.get(), objects));
    FcObjectSetDestroy(objects);
    if (!list) {
        return;
    }
    std::vector<std::pair<std::string, int>> seen;
    for (int i = 0; i < list->nfont; ++i) {
        FcPattern* pattern = list->fonts[i];
        FcChar8* file = nullptr;
        FcChar8* format = nullptr;
        int index = 0;
        if (FcPatternGetString(pattern, FC_FILE, 0, &file) != FcResultMatch ||
            FcPatternGetString(pattern, FC_FONTFORMAT, 0, &format) != FcResultMatch ||
            !IsOutlineFormat(format)) {
            continue;
        }
        FcPatternGetInteger(pattern, FC_INDEX, 0, &index);
        if (index < 0 || (index >> 16) != 0) {
            continue;  // named instances of variable faces are not faces of their own here
        }
        const std::string path(reinterpret_cast<const char*>(file));
        if (std::find(seen.begin(), seen.end(), std::make_pair(path, index)) != seen.end()) {
            continue;
        }
        seen.emplace_back(path, index);

        FT_Face face = nullptr;
        if (FT_New_Face(library, path.c_str(), index, &face) != 0) {
            continue;
        }
        FaceFile entry;
        entry.path = path;
        entry.index = index;
        entry.family = WindowsFamilyName(face);
        entry.italic = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
        const bool fixed = FT_IS_FIXED_WIDTH(face) != 0;
        const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
        if (os2 && os2->version != 0xFFFF) {
            entry.weightClass = os2->usWeightClass;
            entry.italic = entry.italic || (os2->fsSelection & 0x1) != 0;
            entry.pitchAndFamily =
                PitchAndFamilyOfFace(fixed, os2->panose[0], os2->panose[1], os2->sFamilyClass);
            if (os2->version > 0 && (os2->ulCodePageRange1 != 0 || os2->ulCodePageRange2 != 0)) {
                entry.charSets = CharSetsFromCodePages(static_cast<uint32_t>(os2->ulCodePageRange1));
            } else {
                entry.charSets = CharSetsFromLanguages(pattern);
            }
        } else {
            entry.weightClass = (face->style_flags & FT_STYLE_FLAG_BOLD) ? 700 : 400;
            entry.pitchAndFamily = PitchAndFamilyOfFace(fixed, 0, 0, 0);
            entry.charSets = CharSetsFromLanguages(pattern);
        }
        FT_Done_Face(face);
        if (!entry.family.empty()) {
            files_.push_back(std::move(entry));
        }
    }
    // fontconfig's listing order depends on its caches; the catalogue's must not.
    std::sort(files_.begin(), files_.end(), [](const FaceFile& a, const FaceFile& b) {
        return a.path != b.path ? a.path < b.path : a.index < b.index;
    });
}

void FaceCatalogue::GroupFamilies() {
    std::map<ULOString, size_t> byFolded;
    for (size_t i = 0; i < files_.size(); ++i) {
        const ULOString folded = files_[i].family.MakeLower();
        auto it = byFolded.find(folded);
        if (it == byFolded.end()) {
            it = byFolded.emplace(folded, families_.size()).first;
            families_.emplace_back();
            families_.back().name = files_[i].family;
            families_.back().representative = i;
        }
        FaceFamily& fam = families_[it->second];
        fam.members.push_back(i);
        const FaceFile& current = files_[fam.representative];
        const FaceFile& candidate = files_[i];
        const int rankCurrent = StyleRank(current);
        const int rankCandidate = StyleRank(candidate);
        const int distCurrent = std::abs(static_cast<int>(current.weightClass) - 400);
        const int distCandidate = std::abs(static_cast<int>(candidate.weightClass) - 400);
        if (rankCandidate < rankCurrent || (rankCandidate == rankCurrent && distCandidate < distCurrent)) {
            fam.representative = i;
        }
    }
    for (FaceFamily& fam : families_) {
        const FaceFile& rep = files_[fam.representative];
        fam.name = rep.family;
        fam.charSets = rep.charSets;
        fam.pitchAndFamily = rep.pitchAndFamily;
    }
}

void FaceCatalogue::OrderFamilies(FcConfig* config) {
    std::sort(families_.begin(), families_.end(),
              [](const FaceFamily& a, const FaceFamily& b) { return LessNoCase(a.name, b.name); });
    size_t front = 0;
    for (const char* generic : {"sans-serif", "monospace", "serif"}) {
        PatternPtr pattern(FcNameParse(reinterpret_cast<const FcChar8*>(generic)));
        if (!pattern) {
            continue;
        }
        FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
        FcConfigSubstitute(config, pattern.get(), FcMatchPattern);
        FcDefaultSubstitute(pattern.get());
        FcResult result = FcResultNoMatch;
        PatternPtr match(FcFontMatch(config, pattern.get(), &result));
        FcChar8* file = nullptr;
        int index = 0;
        if (!match || FcPatternGetString(match.get(), FC_FILE, 0, &file) != FcResultMatch) {
            continue;
        }
        FcPatternGetInteger(match.get(), FC_INDEX, 0, &index);
        const FaceFamily* fam = FindFamilyOfFile(reinterpret_cast<const char*>(file), index);
        if (!fam) {
            continue;
        }
        const size_t at = static_cast<size_t>(fam - families_.data());
        if (at >= front) {
            std::rotate(families_.begin() + static_cast<std::ptrdiff_t>(front),
                        families_.begin() + static_cast<std::ptrdiff_t>(at),
                        families_.begin() + static_cast<std::ptrdiff_t>(at) + 1);
            ++front;
        }
    }
}

const FaceFamily* FaceCatalogue::FindFamily(const ULOString& name) const {
    for (const FaceFamily& fam : families_) {
        if (fam.name.EqualsNoCase(name)) {
            return &fam;
        }
    }
    return nullptr;
}

const FaceFamily* FaceCatalogue::FindFamilyOfFile(const std::string& path, int index) const {
    for (const FaceFamily& fam : families_) {
        for (size_t member : fam.members) {
            if (files_[member].path == path && files_[member].index == index) {
                return &fam;
            }
        }
    }
    return nullptr;
}

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
