#pragma once
// The command line of ulogallery.
#include <string>
#include <vector>

namespace gallery {

struct Options {
    std::vector<float> magnifications;   // empty: all
    std::vector<std::string> languages;  // empty: every language with a folder
    std::string output = "gallery";
    std::string resources;  // empty: the folder "resources" beside the program
    bool timing = false;
    bool window = false;  // show the sheets in a window instead of writing files
    std::string display;  // the X display of the window; empty: the default (DISPLAY)
    bool help = false;
};

extern const char kUsage[];

// Throws GalleryError naming the bad option or value.
Options ParseOptions(int argc, char** argv);

}  // namespace gallery
