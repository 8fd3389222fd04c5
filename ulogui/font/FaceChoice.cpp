// ULOFont::CreateWindowsFont: which of the wanted faces a font is made from.
#include <algorithm>
#include <memory>

#include "platform/FontEngine.h"
#include "ulogui/Font.h"

namespace platform = ulogui::platform;

namespace {

// The query of the enumeration: everything but the character set (and, in the second pass, the
// pitch-and-family byte) left open, so every face is reported.
struct FaceQuery {
    uint8_t charSet = 0;
    uint8_t pitchAndFamily = 0;
};

// Scratch state of the face choice, shared by all calls: face choice runs on one thread at a time.
FaceQuery g_query;
std::vector<ULOString> g_wanted;
std::vector<ULOString> g_found;

}  // namespace

HFONT ULOFont::CreateWindowsFont(HDC, int height, int width, int escapement, int orientation, int weight,
                                 unsigned long italic, unsigned long underline, unsigned long strikeOut,
                                 unsigned long charSet, unsigned long outPrecision,
                                 unsigned long clipPrecision, unsigned long quality,
                                 unsigned long pitchAndFamily, std::vector<ULOString>& wanted, bool& found,
                                 ULOString& chosen) {
    const std::shared_ptr<platform::FontEngine> engine = platform::GetFontEngine();
    g_query = FaceQuery();
    g_query.charSet = static_cast<uint8_t>(charSet);
    g_wanted = wanted;
    g_found.clear();

    // First pass: the wanted faces that exist; the most wanted one ends the search at once.
    engine->EnumerateFaces(g_query.charSet, [](const platform::FaceInfo& face) {
        const auto it = std::find(g_wanted.begin(), g_wanted.end(), face.faceName);
        if (it == g_wanted.end()) {
            return true;
        }
        if (it == g_wanted.begin()) {
            g_found.clear();
            g_found.push_back(face.faceName);
            return false;
        }
        g_found.push_back(face.faceName);
        return true;
    });

    if (g_found.empty()) {
        // Second pass: any face of the same pitch and family in the same character set.
        g_query.pitchAndFamily = static_cast<uint8_t>(pitchAndFamily);
        engine->EnumerateFaces(g_query.charSet, [](const platform::FaceInfo& face) {
            if (face.pitchAndFamily == g_query.pitchAndFamily && face.charSet == g_query.charSet) {
                g_found.push_back(face.faceName);
            }
            return true;
        });
    } else if (g_found.size() >= 2) {
        // Several wanted faces exist: the order of the wanted list decides, not the enumeration's.
        std::vector<ULOString> preferred;
        for (const ULOString& face : g_wanted) {
            if (std::find(g_found.begin(), g_found.end(), face) != g_found.end()) {
                preferred.push_back(face);
            }
        }
        g_found.swap(preferred);
    }

    found = !g_found.empty();
    // An empty wanted list (which callers should not pass) leaves the face to the platform.
    chosen = found ? g_found.front() : (wanted.empty() ? ULOString() : wanted.front());

    platform::FontRequest request;
    request.height = height;
    request.width = width;
    request.escapement = escapement;
    request.orientation = orientation;
    request.weight = weight;
    request.italic = italic != 0;
    request.underline = underline != 0;
    request.strikeOut = strikeOut != 0;
    request.charSet = static_cast<uint8_t>(charSet);
    request.outPrecision = static_cast<uint8_t>(outPrecision);
    request.clipPrecision = static_cast<uint8_t>(clipPrecision);
    request.quality = static_cast<uint8_t>(quality);
    request.pitchAndFamily = static_cast<uint8_t>(pitchAndFamily);
    request.faceName = chosen;
    return platform::CreateFontHandle(request);
}
