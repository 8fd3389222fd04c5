#pragma once
// The Windows font engine: GDI itself. Faces come from EnumFontFamiliesExW, fonts from CreateFontW
// (GDI substitutes missing faces), metrics from GetTextMetricsW, advances from GetCharWidth32W,
// kerning from GetKerningPairsW, outlines and glyph metrics from GetGlyphOutlineW.
#include <memory>

#include "platform/FontEngine.h"

namespace ulogui {
namespace platform {
namespace gdi {

class GdiFontEngine : public FontEngine {
public:
    void EnumerateFaces(uint8_t charSet, const std::function<bool(const FaceInfo&)>& visit) override;
    std::shared_ptr<PlatformFont> CreateFontObject(const FontRequest& request) override;
};

}  // namespace gdi
}  // namespace platform
}  // namespace ulogui
