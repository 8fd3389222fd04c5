#pragma once
// A memory device context with a font selected into it, for the duration of one question to GDI:
// each call makes its own, so fonts can be asked from any thread without a shared context.
#include <windows.h>

namespace ulogui {
namespace platform {
namespace gdi {

class FontContext {
public:
    explicit FontContext(HFONT font) : dc_(::CreateCompatibleDC(nullptr)) {
        if (dc_ != nullptr && font != nullptr) {
            previous_ = ::SelectObject(dc_, font);
        }
    }
    ~FontContext() {
        if (previous_ != nullptr) {
            ::SelectObject(dc_, previous_);
        }
        if (dc_ != nullptr) {
            ::DeleteDC(dc_);
        }
    }
    FontContext(const FontContext&) = delete;
    FontContext& operator=(const FontContext&) = delete;

    // Null when no context could be made or the font could not be selected.
    HDC Get() const { return previous_ != nullptr ? dc_ : nullptr; }

private:
    HDC dc_;
    HGDIOBJ previous_ = nullptr;
};

}  // namespace gdi
}  // namespace platform
}  // namespace ulogui
