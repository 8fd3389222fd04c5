// ulogallery: renders every control the library paints, at every magnification and in every
// language of its resource directory, into PNG files and an index.html that shows them.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "GalleryError.h"
#include "GalleryWindow.h"
#include "IndexPage.h"
#include "Options.h"
#include "PngWrite.h"
#include "Resources.h"
#include "Sheets.h"

namespace {

using namespace gallery;

double Seconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + now.tv_nsec * 1e-9;
}

// CPU time of the whole process: threads the library starts (smooth scaling) count too.
double CpuSeconds() {
    return Seconds(CLOCK_PROCESS_CPUTIME_ID);
}

struct SheetTime {
    std::string what;
    double seconds;
};

int Run(const Options& options) {
    const double wallStart = Seconds(CLOCK_MONOTONIC);
    const double cpuStart = CpuSeconds();
    const GalleryResources resources =
        LoadResources(ULOPath::FromNative(options.resources), options.languages, options.magnifications);
    const double loadSeconds = CpuSeconds() - cpuStart;

    std::error_code fsError;
    const std::filesystem::path output = std::filesystem::absolute(options.output, fsError);
    std::filesystem::create_directories(output, fsError);
    if (fsError || !std::filesystem::is_directory(output)) {
        throw GalleryError(options.output + ": cannot create the output folder");
    }

    const std::vector<Sheet>& sheets = Sheets();
    const size_t total = resources.languages.size() * sheets.size() * resources.magnifications.size();
    const bool tty = isatty(STDERR_FILENO) != 0;
    std::vector<IndexImage> images;
    std::vector<SheetTime> times;
    double renderSeconds = 0.0, pngSeconds = 0.0;
    for (size_t l = 0; l < resources.languages.size(); ++l) {
        const LanguageResources& language = resources.languages[l];
        for (const Sheet& sheet : sheets) {
            for (size_t m = 0; m < resources.magnifications.size(); ++m) {
                const float magnification = resources.magnifications[m];
                const std::string file = SheetFileName(sheet, language, magnification);
                const std::string what = file.substr(0, file.size() - 4);
                if (tty) {
                    std::fprintf(stderr, "\r[%3zu/%zu] %-24s", images.size() + 1, total, what.c_str());
                }
                const double before = CpuSeconds();
                const auto surface = RenderSheet(sheet, LookOf(resources, l, m));
                const double took = CpuSeconds() - before;
                renderSeconds += took;
                times.push_back({what, took});

                std::string error;
                const double pngBefore = CpuSeconds();
                if (!WriteSurfacePng(*surface, (output / file).string(), false, error)) {
                    throw GalleryError(error);
                }
                pngSeconds += CpuSeconds() - pngBefore;
                images.push_back({file, sheet.name, language.texts.Get(sheet.titleKey).ToUtf8(),
                                  language.texts.Get("language.name").ToUtf8(), magnification,
                                  surface->GetWidth(true), surface->GetHeight(true)});
            }
        }
        if (!tty) {
            std::fprintf(stderr, "rendered %s: %zu of %zu images\n", language.code.ToUtf8().c_str(),
                         images.size(), total);
        }
    }
    if (tty) {
        std::fprintf(stderr, "\r%50s\r", "");
    }
    const std::string index = (output / "index.html").string();
    std::string error;
    if (!WriteIndexPage(index, images, resources.magnifications, error)) {
        throw GalleryError(error);
    }

    if (options.timing) {
        for (const SheetTime& t : times) {
            std::printf("%-28s %7.1f ms\n", t.what.c_str(), t.seconds * 1e3);
        }
    }
    const auto slowest =
        std::max_element(times.begin(), times.end(),
                         [](const SheetTime& a, const SheetTime& b) { return a.seconds < b.seconds; });
    std::printf("index: %s\n", index.c_str());
    std::printf(
        "%zu images in %.2f s: %.2f s of CPU without PNG encoding (resources %.2f s, sheets %.2f s, slowest "
        "%s %.1f ms), PNG encoding %.2f s\n",
        images.size(), Seconds(CLOCK_MONOTONIC) - wallStart, loadSeconds + renderSeconds, loadSeconds,
        renderSeconds, slowest->what.c_str(), slowest->seconds * 1e3, pngSeconds);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    try {
        options = ParseOptions(argc, argv);
    } catch (const GalleryError& e) {
        std::fprintf(stderr, "ulogallery: %s\n", e.what());
        return 2;
    }
    if (options.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    try {
        if (options.window) {
            return RunGalleryWindow(LoadResources(ULOPath::FromNative(options.resources), options.languages,
                                                  options.magnifications),
                                    options.display);
        }
        return Run(options);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "ulogallery: %s\n", e.what());
        return 1;
    }
}
