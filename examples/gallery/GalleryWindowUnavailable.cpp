// ulogallery --window where the system has no X11 device (Windows): a clear error, as without a display.
#include "GalleryError.h"
#include "GalleryWindow.h"

namespace gallery {

int RunGalleryWindow(const GalleryResources&, const std::string&) {
    throw GalleryError("--window needs an X display; this build has no X11 device");
}

}  // namespace gallery
