#include "FakeFontEngine.h"

namespace testfonts {

namespace {

class FakeFont : public ulogui::platform::PlatformFont {
public:
    FakeFont(const ulogui::platform::FontRequest& request,
             std::function<int32_t(const ulogui::platform::FontRequest&, uint32_t)> advance)
        : request_(request), advance_(std::move(advance)) {}
    ULOString GetFaceName() const override { return request_.faceName; }
    const ulogui::platform::FontRequest& GetRequest() const override { return request_; }
    ulogui::platform::FontMetrics GetMetrics() const override { return {}; }
    void GetCharAdvances(uint32_t first, uint32_t last, int32_t* widths) const override {
        for (uint32_t c = first; c <= last; ++c) {
            widths[c - first] = advance_(request_, c);
        }
    }
    std::vector<ulogui::platform::KerningPair> GetKerningPairs() const override { return {}; }

private:
    ulogui::platform::FontRequest request_;
    std::function<int32_t(const ulogui::platform::FontRequest&, uint32_t)> advance_;
};

}  // namespace

void FakeFontEngine::EnumerateFaces(uint8_t charSet,
                                    const std::function<bool(const ulogui::platform::FaceInfo&)>& visit) {
    ++enumerations;
    for (const ulogui::platform::FaceInfo& face : faces_) {
        if ((charSet == ulogui::platform::charset::kDefault || face.charSet == charSet) && !visit(face)) {
            return;
        }
    }
}

std::shared_ptr<ulogui::platform::PlatformFont> FakeFontEngine::CreateFontObject(
    const ulogui::platform::FontRequest& request) {
    requests.push_back(request);
    if (refuse(request)) {
        return nullptr;
    }
    return std::make_shared<FakeFont>(request, advance);
}

ulogui::platform::FaceInfo Face(const wchar_t* name, uint8_t charSet, uint8_t pitchAndFamily) {
    ulogui::platform::FaceInfo info;
    info.faceName = name;
    info.charSet = charSet;
    info.pitchAndFamily = pitchAndFamily;
    info.trueType = true;
    return info;
}

}  // namespace testfonts
