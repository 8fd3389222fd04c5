#pragma once
// The gallery's resources, loaded the way a host loads its own: the resource directory holds
// languages.xml and a folder per language; each language needs the six resource files of the body
// "Main", found by resource discovery (in its folder, else in the directory). The gallery reads three
// of them: Main.urb (pictures, shared by every language), Main.urf (fonts) and Main.urs (texts); the
// other three are required by discovery but hold nothing the gallery uses.
//
// Loading checks everything drawing relies on, so that rendering never meets a missing picture,
// font or text; every failure is a GalleryError naming the file or value.
#include <array>
#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "ResourceIds.h"
#include "TextTable.h"
#include "ulogui/Font.h"
#include "ulogui/Picture.h"
#include "ulolib/Path.h"

namespace gallery {

// The magnifications the gallery shows.
constexpr float kMagnifications[] = {1.0f, 1.25f, 1.5f, 2.0f};

using FontSet = std::array<boost::shared_ptr<ULOFont>, kFontRoleCount>;

// The pictures, made under one magnification.
struct PictureSet {
    std::vector<ULOPicture> toolbar;  // one per ToolbarIcon, in the size version the catalogue chooses
    std::vector<ULOPicture> icons;    // the same, always 16 x 16 logical (in buttons and bars)
    std::vector<ULOPicture> marks;    // one per Mark
    std::vector<ULOPicture> arrows;   // one per Arrow
    std::vector<ULOPicture> radio;    // one per RadioLayer
    ULOPicture close;
    ULOPicture panel;
    ULOPicture stripes;
    ULOPicture thumb;
};

struct LanguageResources {
    int id = 0;      // position in the language catalogue: the language code fonts are made for
    ULOString code;  // short code ("en")
    ULOPath folder;  // the language's folder
    ULOPath urb, urf, urs;
    TextTable texts;
    std::vector<FontSet> fonts;  // one per magnification of GalleryResources
};

struct GalleryResources {
    ULOPath directory;
    std::vector<float> magnifications;
    std::vector<LanguageResources> languages;
    std::vector<PictureSet> pictures;  // one per magnification
};

// The host's colours: the default colour set made current, and the curves of the highlight and
// disabled copy types, which the library leaves to its host.
void UseGalleryColours();

// Loads the resources from `directory` (when empty: the folder "resources" beside the program) for
// the languages named (short code, name, folder or locale name; every language with a folder when
// empty) and the magnifications given (each one of kMagnifications), and uses the gallery's colours.
// Sets the calling thread's magnifier. Throws GalleryError.
GalleryResources LoadResources(const ULOPath& directory, const std::vector<std::string>& languages,
                               const std::vector<float>& magnifications);

}  // namespace gallery
