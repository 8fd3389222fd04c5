#pragma once
// index.html: every image of a run in a grid, a section per language, a row per sheet and a column
// per magnification, each with its caption.
#include <string>
#include <vector>

namespace gallery {

struct IndexImage {
    std::string file;      // relative to the page
    std::string sheet;     // sheet name
    std::string title;     // the sheet's title in its language (UTF-8)
    std::string language;  // the language's own name (UTF-8)
    float magnification = 1.0f;
    int width = 0;  // device pixels
    int height = 0;
};

// Images are listed in the order rendered: language by language, sheet by sheet. Returns false and
// sets error when the file cannot be written.
bool WriteIndexPage(const std::string& path, const std::vector<IndexImage>& images,
                    const std::vector<float>& magnifications, std::string& error);

}  // namespace gallery
