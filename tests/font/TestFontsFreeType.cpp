// The Linux test engines: FreeType over private fontconfig configurations, and FreeType's classic
// interpreter as the reference for advances.
#include <fontconfig/fontconfig.h>
#include <ft2build.h>

#include "TestFonts.h"
#include FT_FREETYPE_H
#include FT_DRIVER_H
#include FT_MODULE_H

namespace testfonts {

std::string FontFile(const char* debianFolder, const char* file) {
    return std::string(debianFolder) + file;
}

std::shared_ptr<TestEngine> MakeEngine(const std::vector<std::string>& files) {
    FcConfig* config = FcConfigCreate();
    for (const std::string& file : files) {
        FcConfigAppFontAddFile(config, reinterpret_cast<const FcChar8*>(file.c_str()));
    }
    FcConfigBuildFonts(config);
    auto engine = std::make_shared<ulogui::platform::ft::FreeTypeFontEngine>(config);
    FcConfigDestroy(config);  // the engine holds its own reference
    return engine;
}

std::vector<int> ClassicAdvances(const std::string& file, unsigned ppem, unsigned first, unsigned last,
                                 int32_t loadFlags) {
    std::vector<int> advances;
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) {
        return advances;
    }
    FT_UInt version = TT_INTERPRETER_VERSION_35;
    FT_Property_Set(library, "truetype", "interpreter-version", &version);
    FT_Face face = nullptr;
    if (FT_New_Face(library, file.c_str(), 0, &face) == 0) {
        FT_Set_Pixel_Sizes(face, 0, ppem);
        for (unsigned c = first; c <= last; ++c) {
            const FT_UInt glyph = FT_Get_Char_Index(face, c);
            int advance = 0;
            if (FT_Load_Glyph(face, glyph,
                              loadFlags != 0 ? loadFlags : FT_LOAD_DEFAULT | FT_LOAD_NO_AUTOHINT) == 0) {
                advance = static_cast<int>((face->glyph->metrics.horiAdvance + 63) >> 6);
            }
            advances.push_back(advance);
        }
        FT_Done_Face(face);
    }
    FT_Done_FreeType(library);
    return advances;
}

}  // namespace testfonts
