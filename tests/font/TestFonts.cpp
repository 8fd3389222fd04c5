#include "TestFonts.h"

#include <sys/stat.h>

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

std::wstring FamilyOf(const std::string& file) {
    const std::string name = file.substr(file.find_last_of("/\\") + 1);
    const std::pair<const char*, const wchar_t*> families[] = {
        {"DejaVuSansMono", L"DejaVu Sans Mono"},
        {"DejaVuSans", L"DejaVu Sans"},
        {"DejaVuSerif", L"DejaVu Serif"},
        {"LiberationSans", L"Liberation Sans"},
        {"LiberationSerif", L"Liberation Serif"},
        {"LiberationMono", L"Liberation Mono"},
        {"ipaexg", L"IPAexGothic"},
        {"gbsn00lp", L"AR PL SungtiL GB"},
    };
    for (const auto& [prefix, family] : families) {
        if (name.compare(0, std::char_traits<char>::length(prefix), prefix) == 0) {
            return family;
        }
    }
    return {};
}

std::shared_ptr<ulogui::platform::PlatformFont> MakeFont(ulogui::platform::FontEngine& engine,
                                                         const wchar_t* face, int32_t height, uint8_t charSet,
                                                         int32_t weight) {
    ulogui::platform::FontRequest r;
    r.faceName = face;
    r.height = height;
    r.charSet = charSet;
    r.weight = weight;
    r.pitchAndFamily = 0x22;
    return engine.CreateFontObject(r);
}

std::vector<int> Advances(const ulogui::platform::PlatformFont& font, uint32_t first, uint32_t last) {
    std::vector<int32_t> w(last - first + 1, -7);  // -7: not written
    font.GetCharAdvances(first, last, w.data());
    return std::vector<int>(w.begin(), w.end());
}

std::shared_ptr<TestEngine> LatinEngine() {
    static auto engine = MakeEngine(LatinFiles());
    return engine;
}

std::shared_ptr<TestEngine> FullEngine() {
    static auto engine = [] {
        std::vector<std::string> files = LatinFiles();
        files.insert(files.end(), {IpaexGothic(), ArphicGb()});
        return MakeEngine(files);
    }();
    return engine;
}

}  // namespace testfonts
