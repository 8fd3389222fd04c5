#include "Resources.h"

#include "GalleryError.h"
#include "ulogui/ColorSet.h"
#include "ulogui/LanguageManager.h"
#include "ulogui/Magnify.h"
#include "ulogui/ResourceFileDiscover.h"
#include "ulolib/Directory.h"
#include "ulolib/Xml.h"

namespace gallery {

namespace {

using ulo::gui::LanguageManager;
using ulo::gui::ResourceFile;

const wchar_t kBody[] = L"Main";
const wchar_t* const kExtensions[] = {L"ura", L"urd", L"urm", L"urs", L"urf", L"urb"};

std::string Narrow(const ULOPath& path) {
    return path.native();
}

// The resource directory: the one asked for, else "resources" beside the program.
class GalleryDirectory : public ulo::gui::ResourceDirDiscover {
public:
    explicit GalleryDirectory(const ULOPath& wanted) : ResourceDirDiscover(false, nullptr), wanted_(wanted) {}

    ULOPath FindResourceDir(const ULOString&) const override {
        return wanted_.empty() ? Directory::create()->GetApplicationDirectory() / L"resources" : wanted_;
    }

private:
    ULOPath wanted_;
};

// The language an argument names, by short code, display name, folder or locale name.
int FindLanguage(LanguageManager& languages, const std::string& name) {
    const ULOString wide = ULOString::FromUtf8(name);
    int id = languages.GetLangIDFromString(wide, -1);
    id = id >= 0 ? id : languages.GetLangIDFromName(wide, -1);
    id = id >= 0 ? id : languages.GetLangIDFromFolder(wide, -1);
    return id >= 0 ? id : languages.GetLangIDFromOS(name.c_str(), -1);
}

std::vector<int> ChooseLanguages(const ULOPath& directory, const std::vector<std::string>& wanted) {
    LanguageManager& languages = LanguageManager::Instance();
    std::vector<int> ids;
    if (wanted.empty()) {
        for (int id = 0; id < languages.LanguageCount(); ++id) {
            if (languages.IsLanguageAvailable(id)) {
                ids.push_back(id);
            }
        }
        if (ids.empty()) {
            throw GalleryError(Narrow(directory) +
                               ": none of the languages of languages.xml has its folder here");
        }
        return ids;
    }
    for (const std::string& name : wanted) {
        const int id = FindLanguage(languages, name);
        if (id < 0) {
            std::string known;
            for (int i = 0; i < languages.LanguageCount(); ++i) {
                known += (i ? ", " : "") + languages.GetStringFromLangID(i, false, L"").ToUtf8();
            }
            throw GalleryError("unknown language '" + name + "' (" + Narrow(directory / L"languages.xml") +
                               " has " + known + ")");
        }
        if (!languages.IsLanguageAvailable(id)) {
            throw GalleryError("language '" + name + "': its folder " +
                               Narrow(directory / languages.GetFolderFromLangID(id, false, L"")) +
                               " is missing");
        }
        ids.push_back(id);
    }
    return ids;
}

// The six files of a language, or an error naming the first that is missing.
void DiscoverFiles(const ULOPath& directory, LanguageResources& language) {
    ulo::gui::ResourceFileDiscover discover(directory, kBody);
    std::vector<ResourceFile> files;
    const ulo::ErrorCode error = discover.GetFiles(files, language.id);
    for (const ResourceFile& file : files) {
        switch (file.GetType()) {
            case ResourceFile::resourceURB:
                language.urb = file.GetPath();
                break;
            case ResourceFile::resourceURF:
                language.urf = file.GetPath();
                break;
            case ResourceFile::resourceURS:
                language.urs = file.GetPath();
                break;
            default:
                break;
        }
    }
    if (!error.IsError()) {
        return;
    }
    for (const wchar_t* extension : kExtensions) {
        const ULOString name = ULOString(kBody) + L"." + extension;
        bool found = false;
        for (const ResourceFile& file : files) {
            found = found || file.GetPath().filename() == name;
        }
        if (!found) {
            throw GalleryError(Narrow(language.folder / name) + ": missing (and not in " + Narrow(directory) +
                               " either)");
        }
    }
    throw GalleryError(Narrow(language.folder) + ": " + error.GetMessage().ToUtf8());
}

void CheckPictures(const ULOPath& urb) {
    const ulo::ErrorCode error = ULOPicture::SetBitmapResourceFile(urb);
    if (error.IsError()) {
        throw GalleryError(Narrow(urb) + ": cannot be used as the bitmap resource file (" +
                           error.GetMessage().ToUtf8() + ")");
    }
    // ID, parts, size versions.
    const int pictures[][3] = {{kToolbarIcons, kToolbarIconCount, 2},
                               {kCheckMarks, kMarkCount, 1},
                               {kArrows, kArrowCount, 1},
                               {kCloseIcon, 1, 1},
                               {kPanel, 1, 1},
                               {kStripes, 1, 1},
                               {kSliderThumb, 1, 1},
                               {kRadioLayers, kRadioLayerCount, 1}};
    for (const auto& picture : pictures) {
        const ULOPictureInfo& info = ULOPicture::GetInfoByID(picture[0]);
        if (info.GetID() != picture[0] || info.GetPartsCount() != picture[1] ||
            ULOPicture::GetSInfoByID(picture[0], picture[2]).GetSizeVersion() < 0) {
            throw GalleryError(Narrow(urb) + ": picture " + std::to_string(picture[0]) +
                               " is missing or damaged (it needs " + std::to_string(picture[1]) +
                               " parts in " + std::to_string(picture[2]) + " size version(s))");
        }
    }
}

// Fonts of double-byte languages take their height unmagnified from the record's heightExt, so their
// files hold a record per role and magnification.
unsigned FontId(FontRole role, int language, float m) {
    unsigned id = static_cast<unsigned>(role);
    for (unsigned k = 0; ULOFont::NeedsUnicodeExtras(language) && k < std::size(kMagnifications); ++k) {
        id += kMagnifications[k] == m ? kFontRoleCount * k : 0;
    }
    return id;
}

// Opens the language's font resource file, checks its fonts and makes them at every magnification.
void MakeFonts(LanguageResources& language, const std::vector<float>& magnifications) {
    const ulo::ErrorCode error = ULOFont::SetFontResourceFile(language.urf);
    if (error.IsError()) {
        throw GalleryError(Narrow(language.urf) + ": cannot be used as the font resource file (" +
                           error.GetMessage().ToUtf8() + ")");
    }
    for (const float m : magnifications) {
        FontSet fonts;
        for (int role = 0; role < kFontRoleCount; ++role) {
            const unsigned id = FontId(static_cast<FontRole>(role), language.id, m);
            fonts[role].reset(new ULOFont(id, language.id, m));
            const ULOFont& font = *fonts[role];
            if (!font.IsValid() || font.GetName() != kFontRoleNames[role]) {
                throw GalleryError(Narrow(language.urf) + ": font " + std::to_string(id) + " (" +
                                   ULOString(kFontRoleNames[role]).ToUtf8() + ") is missing or damaged");
            }
            if (!font.IsNonANSIFontOK()) {
                throw GalleryError(Narrow(language.urf) + ": font " + std::to_string(role) +
                                   ": no face it names (" + font.GetFirstWantedFont().ToUtf8() +
                                   " ...) is installed for this language");
            }
        }
        language.fonts.push_back(fonts);
    }
}

PictureSet MakePictures(float magnifier) {
    magnify::GetMagnifier() = magnifier;
    // The toolbar takes the icons as the catalogue chooses them: version 1, or the larger version 2
    // from 2.0 on. Buttons and bars want them at 16 x 16 whatever the magnifier. The masks and small
    // pictures are scaled smoothly (preferLarge); the panel keeps the default, which on a fractional
    // magnifier stretches its middle column and row, as a panel should be stretched.
    const auto parts = [](int id, int count, int size) {
        std::vector<ULOPicture> pictures;
        for (unsigned part = 0; part < static_cast<unsigned>(count); ++part) {
            if (size == 0) {
                pictures.emplace_back(id, part, true, id != kToolbarIcons);
            } else {
                pictures.emplace_back(id, ULOSize(size, size), part);
            }
        }
        return pictures;
    };
    PictureSet set;
    set.toolbar = parts(kToolbarIcons, kToolbarIconCount, 0);
    set.icons = parts(kToolbarIcons, kToolbarIconCount, 16);
    set.marks = parts(kCheckMarks, kMarkCount, 0);
    set.arrows = parts(kArrows, kArrowCount, 0);
    set.radio = parts(kRadioLayers, kRadioLayerCount, 0);
    set.close = ULOPicture(kCloseIcon, 0, true, true);
    set.panel = ULOPicture(kPanel);
    set.stripes = ULOPicture(kStripes, 0, true, true);
    set.thumb = ULOPicture(kSliderThumb, 0, true, true);
    return set;
}

}  // namespace

void UseGalleryColours() {
    ULOGUIColorSet::GetDefaultSet().ApplyToCurrent();
    for (int v = 0; v < 256; ++v) {
        // Highlight lifts every component a third of the way to white; disabled flattens them
        // toward a middle grey.
        HIGHLIGHT_CLR_COMPONENT[v] = static_cast<unsigned char>(v + (255 - v) / 3);
        DISABLED_CLR_COMPONENT[v] = static_cast<unsigned char>(96 + v * 3 / 10);
    }
}

GalleryResources LoadResources(const ULOPath& directory, const std::vector<std::string>& languages,
                               const std::vector<float>& magnifications) {
    UseGalleryColours();
    GalleryResources out;
    out.magnifications = magnifications;
    const GalleryDirectory finder(directory);
    const ULOPath found = finder.FindResourceDir(L"ulogallery");
    if (!found.is_directory()) {
        throw GalleryError(Narrow(found) + ": the resource directory is missing");
    }
    // The language manager quietly falls back to its built-in list; the gallery wants its own.
    TiXmlDocument xml;
    const ULOPath languagesXml = found / L"languages.xml";
    if (!languagesXml.exists()) {
        throw GalleryError(Narrow(languagesXml) + ": missing");
    }
    if (!ULOOpenXml(xml, languagesXml) || xml.RootElement() == nullptr ||
        std::string(xml.RootElement()->Value()) != "languages" ||
        xml.RootElement()->FirstChildElement("language") == nullptr) {
        throw GalleryError(Narrow(languagesXml) + ": not a list of languages");
    }
    out.directory = ulo::gui::ResourceFileDiscover::InitResourceDir(L"ulogallery", finder);
    LanguageManager& manager = LanguageManager::Instance();
    for (const int id : ChooseLanguages(out.directory, languages)) {
        LanguageResources language;
        language.id = id;
        language.code = manager.GetStringFromLangID(id, false, L"");
        language.folder = out.directory / manager.GetFolderFromLangID(id, false, L"");
        DiscoverFiles(out.directory, language);
        if (!out.languages.empty() && language.urb != out.languages.front().urb) {
            throw GalleryError(Narrow(language.urb) +
                               ": every language must share one bitmap resource file (" +
                               Narrow(out.languages.front().urb) + "), since pictures are cached by ID");
        }
        language.texts = TextTable::Load(Narrow(language.urs));
        MakeFonts(language, magnifications);
        out.languages.push_back(std::move(language));
    }
    CheckPictures(out.languages.front().urb);
    for (const float m : magnifications) {
        out.pictures.push_back(MakePictures(m));
    }
    return out;
}

}  // namespace gallery
