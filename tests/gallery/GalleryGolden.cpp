// Renders the gallery's golden set and compares every sheet (or the one --sheet names) with its reference in
// the golden folder (exact but for text, see ImageCompare.h). A failure writes NAME.actual.png and
// NAME.diff.png beside the reference. With --update it writes the references instead
// (scripts/gallery-golden).
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "GalleryError.h"
#include "ImageCompare.h"
#include "PngWrite.h"
#include "Resources.h"
#include "Sheets.h"

namespace {

using namespace gallery;

// Every sheet in four looks that between them hold every language and every magnification (both
// scripts, both size versions of the icons, fractional and whole magnifiers); docs/gallery.md gives
// the reasons for this choice. The same set in every preset.
const std::pair<const char*, std::vector<float>> kGolden[] = {
    {"en", {1.0f, 2.0f}}, {"fr", {1.25f}}, {"jp", {1.5f}}};

int Check(const std::string& resources, const std::string& golden, bool update, const std::string& only) {
    int failures = 0, compared = 0;
    for (const auto& [language, magnifications] : kGolden) {
        const GalleryResources loaded =
            LoadResources(ULOPath::FromNative(resources), {language}, magnifications);
        for (const Sheet& sheet : Sheets()) {
            if (!only.empty() && only != sheet.name) {
                continue;
            }
            for (size_t m = 0; m < magnifications.size(); ++m) {
                std::vector<ULORect> text;
                const auto surface = RenderSheet(sheet, LookOf(loaded, 0, m), &text);
                const std::string name = SheetFileName(sheet, loaded.languages[0], magnifications[m]);
                const std::string reference = golden + "/" + name;
                const std::string stem = reference.substr(0, reference.size() - 4);
                std::string error;
                ++compared;
                if (update) {
                    if (!WriteSurfacePng(*surface, reference, true, error)) {
                        throw GalleryError(error);
                    }
                    continue;
                }
                std::remove((stem + ".actual.png").c_str());
                std::remove((stem + ".diff.png").c_str());
                RgbImage actual, expected;
                actual.rgb = RgbPixels(*surface, actual.width, actual.height);
                if (!ReadRgbPng(reference, expected, error)) {
                    std::printf("FAIL %s: no reference (%s); scripts/gallery-golden writes it\n",
                                name.c_str(), error.c_str());
                    ++failures;
                    continue;
                }
                const Comparison c = CompareWithReference(actual, expected, text);
                if (c.Passed()) {
                    continue;
                }
                ++failures;
                WritePng(actual.rgb, actual.width, actual.height, 3, stem + ".actual.png", false, error);
                WritePng(c.difference.rgb, c.difference.width, c.difference.height, 3, stem + ".diff.png",
                         false, error);
                std::printf(
                    "FAIL %s: %d x %d pixels (reference %d x %d), %ld pixels differ outside text, %ld text "
                    "pixels beyond the tolerance, too many in %d text regions; see %s.actual.png and "
                    "%s.diff.png\n",
                    name.c_str(), actual.width, actual.height, expected.width, expected.height,
                    c.exactDiffering, c.textBeyond, c.regionsFailed, stem.c_str(), stem.c_str());
            }
        }
    }
    std::printf("%s %d images: %d failed\n", update ? "wrote" : "compared", compared, failures);
    return failures == 0 && compared > 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    std::string resources, golden;
    std::string sheet;
    bool update = false;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--resources" && i + 1 < argc) {
            resources = argv[++i];
        } else if (arg == "--golden" && i + 1 < argc) {
            golden = argv[++i];
        } else if (arg == "--update") {
            update = true;
        } else if (arg == "--sheet" && i + 1 < argc) {
            sheet = argv[++i];
        } else {
            std::fprintf(stderr,
                         "usage: gallery_golden --resources DIR --golden DIR [--sheet NAME] [--update]\n");
            return 2;
        }
    }
    try {
        return Check(resources, golden, update, sheet);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "gallery_golden: %s\n", e.what());
        return 1;
    }
}
