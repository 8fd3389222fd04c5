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
    bool help = false;
};

extern const char kUsage[];

// Throws GalleryError naming the bad option or value.
Options ParseOptions(int argc, char** argv);

}  // namespace gallery
