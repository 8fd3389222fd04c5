#pragma once
// Font engines over private fontconfig configurations that hold only the project's test fonts
// (Debian packages fonts-dejavu-core, fonts-liberation, fonts-ipaexfont-gothic,
// fonts-arphic-gbsn00lp), so that no other font of the machine changes a result.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/FontEngine.h"
#include "platform/linux/FreeTypeFontEngine.h"

namespace testfonts {

inline std::string DejaVu(const char* file) {  // e.g. DejaVu("DejaVuSans.ttf")
    return std::string("/usr/share/fonts/truetype/dejavu/") + file;
}
inline std::string Liberation(const char* file) {  // e.g. Liberation("LiberationSans-Regular.ttf")
    return std::string("/usr/share/fonts/truetype/liberation/") + file;
}
inline std::string IpaexGothic() {
    return "/usr/share/fonts/opentype/ipaexfont-gothic/ipaexg.ttf";
}
inline std::string ArphicGb() {
    return "/usr/share/fonts/truetype/arphic-gbsn00lp/gbsn00lp.ttf";
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
// Whether the Japanese and Chinese faces are installed.
bool HaveCjkFonts();

// An engine that sees exactly files.
std::shared_ptr<ulogui::platform::ft::FreeTypeFontEngine> MakeEngine(const std::vector<std::string>& files);
// Shared engines (made once per process): Latin faces only, and Latin plus the two CJK faces.
std::shared_ptr<ulogui::platform::ft::FreeTypeFontEngine> LatinEngine();
std::shared_ptr<ulogui::platform::ft::FreeTypeFontEngine> FullEngine();

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

// Advances as the classic TrueType interpreter (v35) computes them, read with a FreeType library
// of the test's own: the reference the engine's width tables are compared with.
std::vector<int> ClassicAdvances(const std::string& file, unsigned ppem, unsigned first, unsigned last);
// The same with the given FreeType load flags (the engine's own, for example).
std::vector<int> ClassicAdvances(const std::string& file, unsigned ppem, unsigned first, unsigned last,
                                 int32_t loadFlags);

}  // namespace testfonts
