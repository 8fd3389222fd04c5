#pragma once
// A scripted font engine: it enumerates a given list of faces in the given order and makes fonts
// whose advances are a function of the request, so that face choice and the width tables can be
// checked against exactly known answers. It records every request.
#include <functional>
#include <memory>
#include <vector>

#include "ulogui/platform/FontEngine.h"

namespace testfonts {

class FakeFontEngine : public ulogui::platform::FontEngine {
public:
    explicit FakeFontEngine(std::vector<ulogui::platform::FaceInfo> faces) : faces_(std::move(faces)) {}

    void EnumerateFaces(uint8_t charSet,
                        const std::function<bool(const ulogui::platform::FaceInfo&)>& visit) override;
    std::shared_ptr<ulogui::platform::PlatformFont> CreateFontObject(
        const ulogui::platform::FontRequest& request) override;

    // The advance every font gives code point c: by default c % 7 + |height| (so sizes differ),
    // with |height| limited to 1000.
    std::function<int32_t(const ulogui::platform::FontRequest&, uint32_t)> advance =
        [](const ulogui::platform::FontRequest& r, uint32_t c) {
            const int64_t h = r.height < 0 ? -static_cast<int64_t>(r.height) : r.height;
            return static_cast<int32_t>(c % 7) + static_cast<int32_t>(h < 1000 ? h : 1000);
        };
    // Requests for which no font is made (the platform failing).
    std::function<bool(const ulogui::platform::FontRequest&)> refuse =
        [](const ulogui::platform::FontRequest&) { return false; };

    std::vector<ulogui::platform::FontRequest> requests;
    int enumerations = 0;

private:
    std::vector<ulogui::platform::FaceInfo> faces_;
};

ulogui::platform::FaceInfo Face(const wchar_t* name, uint8_t charSet, uint8_t pitchAndFamily);

}  // namespace testfonts
