#include "TestFonts.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include <sys/stat.h>
#include FT_FREETYPE_H
#include FT_DRIVER_H
#include FT_MODULE_H

namespace testfonts {

const std::vector<std::string>& LatinFiles() {
    static const std::vector<std::string> files = {
        DejaVu("DejaVuSans.ttf"),
        DejaVu("DejaVuSans-Bold.ttf"),
        DejaVu("DejaVuSans-Oblique.ttf"),
        DejaVu("DejaVuSans-BoldOblique.ttf"),
        DejaVu("DejaVuSansMono.ttf"),
        DejaVu("DejaVuSerif.ttf"),
        Liberation("LiberationSans-Regular.ttf"),
        Liberation("LiberationSans-Bold.ttf"),
        Liberation("LiberationSans-Italic.ttf"),
        Liberation("LiberationSerif-Regular.ttf"),
        Liberation("LiberationMono-Regular.ttf"),
    };
    return files;
}

namespace {

bool HaveFile(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0;
}

}  // namespace

std::string MissingLatinFile() {
    for (const std::string& file : LatinFiles()) {
        if (!HaveFile(file)) {
            return file;
        }
    }
    return {};
}

bool HaveCjkFonts() {
    return HaveFile(IpaexGothic()) && HaveFile(ArphicGb());
}

std::shared_ptr<ulogui::platform::ft::FreeTypeFontEngine> MakeEngine(const std::vector<std::string>& files) {
    FcConfig* config = FcConfigCreate();
    for (const std::string& file : files) {
        FcConfigAppFontAddFile(config, reinterpret_cast<const FcChar8*>(file.c_str()));
    }
    FcConfigBuildFonts(config);
    auto engine = std::make_shared<ulogui::platform::ft::FreeTypeFontEngine>(config);
    FcConfigDestroy(config);  // the engine holds its own reference
    return engine;
}

std::shared_ptr<ulogui::platform::ft::FreeTypeFontEngine> LatinEngine() {
    static auto engine = MakeEngine(LatinFiles());
    return engine;
}

std::shared_ptr<ulogui::platform::ft::FreeTypeFontEngine> FullEngine() {
    static auto engine = [] {
        std::vector<std::string> files = LatinFiles();
        files.push_back(IpaexGothic());
        files.push_back(ArphicGb());
        return MakeEngine(files);
    }();
    return engine;
}

std::vector<int> ClassicAdvances(const std::string& file, unsigned ppem, unsigned first, unsigned last) {
    return ClassicAdvances(file, ppem, first, last, FT_LOAD_DEFAULT | FT_LOAD_NO_AUTOHINT);
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
            if (FT_Load_Glyph(face, glyph, loadFlags) == 0) {
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
