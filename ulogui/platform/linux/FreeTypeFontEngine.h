#pragma once
// The Linux font engine: faces come from fontconfig (which also substitutes missing faces),
// metrics and advances from FreeType, computed the way the classic Windows engine computes them.
#include <fontconfig/fontconfig.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>
#include <utility>

#include "platform/FontEngine.h"

namespace ulogui {
namespace platform {
namespace ft {

class FaceCatalogue;
struct FaceFamily;
struct FaceFile;
class SharedFace;
struct Library;

class FreeTypeFontEngine : public FontEngine {
public:
    // Uses config (referenced for the engine's life), or fontconfig's current configuration when
    // config is null. A private configuration (FcConfigCreate + FcConfigAppFontAddFile) gives an
    // engine that sees exactly the fonts added to it.
    explicit FreeTypeFontEngine(FcConfig* config = nullptr);
    ~FreeTypeFontEngine() override;
    FreeTypeFontEngine(const FreeTypeFontEngine&) = delete;
    FreeTypeFontEngine& operator=(const FreeTypeFontEngine&) = delete;

    void EnumerateFaces(uint8_t charSet, const std::function<bool(const FaceInfo&)>& visit) override;
    std::shared_ptr<PlatformFont> CreateFontObject(const FontRequest& request) override;

    // The face file a request resolves to (for tests and diagnostics): its family and style.
    const FaceFile* ResolveFace(const FontRequest& request);

private:
    const FaceCatalogue& Catalogue();
    const FaceFamily* ChooseFamily(const FontRequest& request);
    const FaceFamily* SubstituteFamily(const FontRequest& request);
    const FaceFamily* SortForSubstitute(const FontRequest& request);
    const FaceFile& ChooseMember(const FaceFamily& family, int32_t weight, bool italic) const;
    std::shared_ptr<SharedFace> OpenFace(const FaceFile& file);

    FcConfig* config_;
    std::shared_ptr<Library> library_;
    std::unique_ptr<FaceCatalogue> catalogue_;
    // Substitutes found before, by lower-cased name, character set and pitch-and-family byte.
    std::map<std::tuple<std::wstring, uint8_t, uint8_t>, const FaceFamily*> substitutes_;
    // Open faces stay open for the engine's life so that their advance caches serve later fonts.
    std::map<std::pair<std::string, int>, std::shared_ptr<SharedFace>> faces_;
};

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
