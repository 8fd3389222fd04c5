#pragma once
// A scripted font engine: it enumerates a given list of faces in the given order and makes fonts
// whose advances are a function of the request, so that face choice and the width tables can be
// checked against exactly known answers. It records every request.
#include <functional>
#include <memory>
#include <vector>

#include "platform/FontEngine.h"

namespace testfonts {

namespace platform = ulogui::platform;
using AdvanceFunction = std::function<int32_t(const platform::FontRequest&, uint32_t)>;

// A font of the given advances and metrics, without outlines or kerning.
class FakeFont : public platform::PlatformFont {
public:
    FakeFont(const platform::FontRequest& request, AdvanceFunction advance)
        : request_(request), advance_(std::move(advance)) {}
    ULOString GetFaceName() const override { return request_.faceName; }
    const platform::FontRequest& GetRequest() const override { return request_; }
    platform::FontMetrics GetMetrics() const override { return metrics; }
    void GetCharAdvances(uint32_t first, uint32_t last, int32_t* widths) const override {
        for (uint32_t c = first; c <= last; ++c) {
            widths[c - first] = advance_(request_, c);
        }
    }
    std::vector<platform::KerningPair> GetKerningPairs() const override { return {}; }
    bool GetGlyphOutline(uint32_t, platform::GlyphOutline& out) const override {
        out.Clear();
        return false;
    }
    bool GetGlyphMetrics(uint32_t, platform::GlyphMetrics& out) const override {
        out = {};
        return false;
    }

    platform::FontMetrics metrics;

private:
    platform::FontRequest request_;
    AdvanceFunction advance_;
};

class FakeFontEngine : public platform::FontEngine {
public:
    explicit FakeFontEngine(std::vector<platform::FaceInfo> faces) : faces_(std::move(faces)) {}

    void EnumerateFaces(uint8_t charSet,
                        const std::function<bool(const platform::FaceInfo&)>& visit) override {
        ++enumerations;
        for (const platform::FaceInfo& face : faces_) {
            if ((charSet == platform::charset::kDefault || face.charSet == charSet) && !visit(face)) {
                return;
            }
        }
    }
    std::shared_ptr<platform::PlatformFont> CreateFontObject(const platform::FontRequest& request) override {
        requests.push_back(request);
        return refuse(request) ? nullptr : std::make_shared<FakeFont>(request, advance);
    }

    // The advance every font gives code point c: by default c % 7 + |height| (so sizes differ),
    // with |height| limited to 1000.
    AdvanceFunction advance = [](const platform::FontRequest& r, uint32_t c) {
        const int64_t h = r.height < 0 ? -static_cast<int64_t>(r.height) : r.height;
        return static_cast<int32_t>(c % 7) + static_cast<int32_t>(h < 1000 ? h : 1000);
    };
    // Requests for which no font is made (the platform failing).
    std::function<bool(const platform::FontRequest&)> refuse = [](const platform::FontRequest&) {
        return false;
    };

    std::vector<platform::FontRequest> requests;
    int enumerations = 0;

private:
    std::vector<platform::FaceInfo> faces_;
};

inline platform::FaceInfo Face(const wchar_t* name, uint8_t charSet, uint8_t pitchAndFamily) {
    return platform::FaceInfo{name, charSet, pitchAndFamily, true};
}

}  // namespace testfonts
