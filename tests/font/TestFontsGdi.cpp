// The Windows test engines: GDI, whose enumeration is narrowed to the families of the test files
// (Windows, or Wine, has faces of its own besides), and GDI's own widths as the reference.
#include <windows.h>

#include <algorithm>

#include "TestFonts.h"

namespace testfonts {

namespace {

namespace platform = ulogui::platform;

class VisibleFamilies : public platform::FontEngine {
public:
    VisibleFamilies(std::shared_ptr<platform::FontEngine> inner, std::vector<std::wstring> families)
        : inner_(std::move(inner)), families_(std::move(families)) {}

    void EnumerateFaces(uint8_t charSet,
                        const std::function<bool(const platform::FaceInfo&)>& visit) override {
        inner_->EnumerateFaces(charSet, [&](const platform::FaceInfo& face) {
            const bool visible =
                std::find(families_.begin(), families_.end(), face.faceName) != families_.end();
            return !visible || visit(face);
        });
    }
    std::shared_ptr<platform::PlatformFont> CreateFontObject(const platform::FontRequest& request) override {
        return families_.empty() ? nullptr : inner_->CreateFontObject(request);
    }

private:
    std::shared_ptr<platform::FontEngine> inner_;
    std::vector<std::wstring> families_;
};

}  // namespace

std::string FontFile(const char*, const char* file) {
    wchar_t folder[MAX_PATH] = {};
    const UINT n = ::GetWindowsDirectoryW(folder, MAX_PATH);
    return ULOString(folder, n < MAX_PATH ? n : 0).ToUtf8() + "\\Fonts\\" + file;
}

std::shared_ptr<TestEngine> MakeEngine(const std::vector<std::string>& files) {
    std::vector<std::wstring> families;
    for (const std::string& file : files) {
        const std::wstring family = FamilyOf(file);
        if (!family.empty() && std::find(families.begin(), families.end(), family) == families.end()) {
            families.push_back(family);
        }
    }
    return std::make_shared<VisibleFamilies>(platform::CreateDefaultFontEngine(), std::move(families));
}

std::vector<int> ClassicAdvances(const std::string& file, unsigned ppem, unsigned first, unsigned last,
                                 int32_t) {
    std::vector<int> advances;
    const std::wstring family = FamilyOf(file);
    HFONT font = ::CreateFontW(-static_cast<int>(ppem), 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET,
                               OUT_TT_ONLY_PRECIS, 0, 0, 0, family.c_str());
    HDC dc = ::CreateCompatibleDC(nullptr);
    HGDIOBJ previous = ::SelectObject(dc, font);
    advances.resize(last - first + 1);
    for (unsigned c = first; c <= last; ++c) {
        INT width = 0;
        ::GetCharWidth32W(dc, c, c, &width);
        advances[c - first] = width;
    }
    ::SelectObject(dc, previous);
    ::DeleteDC(dc);
    ::DeleteObject(font);
    return advances;
}

}  // namespace testfonts
