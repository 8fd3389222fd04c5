#pragma once
// Font engines that see only the project's test fonts (Debian packages fonts-dejavu-core,
// fonts-liberation, fonts-ipaexfont-gothic, fonts-arphic-gbsn00lp), so that no other font of the
// machine changes a result: on Linux the FreeType engine over a private fontconfig configuration,
// on Windows the GDI engine with its enumeration narrowed to the test faces (which the Wine prefix
// of the tests holds in its Fonts folder).
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/FontEngine.h"
#if !defined(_WIN32)
#include "platform/linux/FreeTypeFontEngine.h"
#endif

namespace testfonts {

#if defined(_WIN32)
using TestEngine = ulogui::platform::FontEngine;
#else
using TestEngine = ulogui::platform::ft::FreeTypeFontEngine;
#endif

// Where a test font file lies: the Debian package's folder, or Windows' font folder.
std::string FontFile(const char* debianFolder, const char* file);
inline std::string DejaVu(const char* file) {  // e.g. DejaVu("DejaVuSans.ttf")
    return FontFile("/usr/share/fonts/truetype/dejavu/", file);
}
inline std::string Liberation(const char* file) {  // e.g. Liberation("LiberationSans-Regular.ttf")
    return FontFile("/usr/share/fonts/truetype/liberation/", file);
}
inline std::string IpaexGothic() {
    return FontFile("/usr/share/fonts/opentype/ipaexfont-gothic/", "ipaexg.ttf");
}
inline std::string ArphicGb() {
    return FontFile("/usr/share/fonts/truetype/arphic-gbsn00lp/", "gbsn00lp.ttf");
}

// The Latin faces: DejaVu Sans (4 styles), Sans Mono, Serif; Liberation Sans (3 styles), Serif, Mono.
const std::vector<std::string>& LatinFiles();
// The first of LatinFiles() that is not installed, or an empty string.
std::string MissingLatinFile();
// Skips a test that needs the Latin faces when one is missing.
#define REQUIRE_LATIN_FONTS()                                                                           \
    if (const std::string missing = testfonts::MissingLatinFile(); !missing.empty()) {                  \
        GTEST_SKIP() << missing << " missing (fonts-dejavu-core, fonts-liberation: scripts/bootstrap)"; \
    }
// Whether the Japanese and Chinese faces are installed; skips a test that needs them when not.
bool HaveCjkFonts();
#define REQUIRE_CJK_FONTS()                                                                           \
    if (!testfonts::HaveCjkFonts()) {                                                                 \
        GTEST_SKIP() << "fonts-ipaexfont-gothic / fonts-arphic-gbsn00lp missing (scripts/bootstrap)"; \
    }
// The family name of a test font file ("DejaVu Sans" for DejaVuSans-Bold.ttf).
std::wstring FamilyOf(const std::string& file);

// An engine that sees exactly files.
std::shared_ptr<TestEngine> MakeEngine(const std::vector<std::string>& files);
// Shared engines (made once per process): Latin faces only, and Latin plus the two CJK faces.
std::shared_ptr<TestEngine> LatinEngine();
std::shared_ptr<TestEngine> FullEngine();

// A font of engine by face name and height (pitch and family 0x22), and its advances first..last.
std::shared_ptr<ulogui::platform::PlatformFont> MakeFont(ulogui::platform::FontEngine& engine,
                                                         const wchar_t* face, int32_t height,
                                                         uint8_t charSet = 0, int32_t weight = 400);
std::vector<int> Advances(const ulogui::platform::PlatformFont& font, uint32_t first, uint32_t last);

// Installs an engine as the process-wide one for the life of the object.
class ScopedEngine {
public:
    explicit ScopedEngine(std::shared_ptr<ulogui::platform::FontEngine> engine) {
        ulogui::platform::SetFontEngine(std::move(engine));
    }
    ~ScopedEngine() { ulogui::platform::SetFontEngine(nullptr); }
    ScopedEngine(const ScopedEngine&) = delete;
    ScopedEngine& operator=(const ScopedEngine&) = delete;
};

// Advances of the face in file at ppem pixels per em as the classic engine computes them, the
// reference the engines' width tables are compared with: FreeType's classic TrueType interpreter
// (v35) read with a FreeType library of the test's own on Linux, with the given load flags (0: the
// classic ones; the engine's own, for example); GDI's GetCharWidth32W for a font made by the test
// itself on Windows.
std::vector<int> ClassicAdvances(const std::string& file, unsigned ppem, unsigned first, unsigned last,
                                 int32_t loadFlags = 0);

}  // namespace testfonts
