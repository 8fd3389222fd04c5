#pragma once
// ulogallery --window: the sheets in a window on an X display, shown through the library's X11 device.
#include <string>

#include "Resources.h"

namespace gallery {

// Opens a window on `display` (empty: the default display) and shows the sheets in the looks of
// `resources` until the window is closed or Escape is pressed; returns the exit code. Keys, shown in
// the window's title: S the next sheet, M the next magnification, L the next language. After every
// frame it prints one line on standard output: "shown buttons-fr-125: 12 of 90 tiles sent".
// Throws GalleryError when no display is found or the connection is lost.
int RunGalleryWindow(const GalleryResources& resources, const std::string& display);

}  // namespace gallery
