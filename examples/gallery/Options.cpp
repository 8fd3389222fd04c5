#include "Options.h"

#include <cstdlib>
#include <cstring>

#include "GalleryError.h"
#include "Resources.h"

namespace gallery {

const char kUsage[] =
    "usage: ulogallery [options]\n"
    "Renders every control the library paints, one PNG per sheet, magnification and language, and an\n"
    "index.html that shows them all.\n"
    "\n"
    "  -m, --magnification M  only magnification M: 1.0, 1.25, 1.5 or 2.0 (repeat for more)\n"
    "  -l, --language L       only language L: its short code (en, fr, jp), name, folder or locale\n"
    "                         name (ja) from languages.xml (repeat for more)\n"
    "  -o, --output DIR       write into DIR (default: gallery)\n"
    "  -r, --resources DIR    take the resources from DIR (default: resources beside the program)\n"
    "      --timing           list the CPU time of every sheet\n"
    "      --window           show the sheets in a window instead (keys in its title: S sheet,\n"
    "                         M magnification, L language, Escape quits)\n"
    "      --display NAME     the X display of the window (default: $DISPLAY)\n"
    "  -h, --help             show this text\n";

namespace {

float ParseMagnification(const std::string& text) {
    char* end = nullptr;
    const float value = std::strtof(text.c_str(), &end);
    if (!text.empty() && end != nullptr && *end == '\0') {
        for (const float m : kMagnifications) {
            if (value == m) {
                return m;
            }
        }
    }
    throw GalleryError("unknown magnification '" + text + "' (choose 1.0, 1.25, 1.5 or 2.0)");
}

}  // namespace

Options ParseOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        std::string option = argv[i];
        std::string value;
        bool hasValue = false;
        const size_t equals = option.find('=');
        if (option.compare(0, 2, "--") == 0 && equals != std::string::npos) {
            value = option.substr(equals + 1);
            option.erase(equals);
            hasValue = true;
        }
        const auto take = [&]() {
            if (!hasValue) {
                if (i + 1 >= argc) {
                    throw GalleryError("the option " + option + " needs a value (see --help)");
                }
                value = argv[++i];
            }
            return value;
        };
        if (option == "-h" || option == "--help") {
            options.help = true;
        } else if (option == "--timing") {
            options.timing = true;
        } else if (option == "--window") {
            options.window = true;
        } else if (option == "--display") {
            options.display = take();
        } else if (option == "-m" || option == "--magnification") {
            options.magnifications.push_back(ParseMagnification(take()));
        } else if (option == "-l" || option == "--language") {
            options.languages.push_back(take());
        } else if (option == "-o" || option == "--output") {
            options.output = take();
        } else if (option == "-r" || option == "--resources") {
            options.resources = take();
        } else {
            throw GalleryError("unknown option '" + option + "' (see --help)");
        }
    }
    if (options.magnifications.empty()) {
        options.magnifications.assign(std::begin(kMagnifications), std::end(kMagnifications));
    }
    return options;
}

}  // namespace gallery
