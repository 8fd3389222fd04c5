#include "IndexPage.h"

#include <cstdio>
#include <fstream>

namespace gallery {

namespace {

std::string Escape(const std::string& s) {
    std::string out;
    for (const char c : s) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

std::string Times(float m) {
    char text[16];
    std::snprintf(text, sizeof text, "%g\xC3\x97", static_cast<double>(m));
    return text;
}

}  // namespace

bool WriteIndexPage(const std::string& path, const std::vector<IndexImage>& images,
                    const std::vector<float>& magnifications, std::string& error) {
    std::ofstream out(path, std::ios::binary);
    out << "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>UloDrawLib control gallery</title>\n"
           "<style>body{font-family:sans-serif;background:#2b2b2b;color:#eee;margin:16px}"
           "table{border-collapse:collapse}td,th{padding:6px;vertical-align:top;text-align:left}"
           "figure{margin:0}figcaption{font-size:12px;color:#bbb;margin-top:4px}</style></head><body>\n"
           "<h1>UloDrawLib control gallery</h1>\n"
           "<p>Every sheet in every language and at every magnification, shown at its logical size; "
           "click a picture to see its pixels.</p>\n";
    std::string language;
    std::string sheet;
    for (const IndexImage& image : images) {
        if (image.language != language) {
            out << (language.empty() ? "" : "</tr></table>\n") << "<h2>" << Escape(image.language)
                << "</h2>\n<table><tr><th></th>";
            for (const float m : magnifications) {
                out << "<th>" << Times(m) << "</th>";
            }
            language = image.language;
            sheet.clear();
        }
        if (image.sheet != sheet) {
            out << "</tr>\n<tr><th>" << Escape(image.sheet) << "</th>";
            sheet = image.sheet;
        }
        // Shown at the sheet's logical size, so that the grid's columns line up (on a display of the
        // same magnification that is pixel for pixel); the link opens the picture itself.
        const int width = static_cast<int>(image.width / image.magnification + 0.5f);
        const int height = static_cast<int>(image.height / image.magnification + 0.5f);
        out << "<td><figure><a href=\"" << Escape(image.file) << "\"><img src=\"" << Escape(image.file)
            << "\" width=\"" << width << "\" height=\"" << height << "\" loading=\"lazy\" alt=\""
            << Escape(image.title) << "\"></a><figcaption>" << Escape(image.title) << " \xE2\x80\x94 "
            << Escape(image.language) << ", " << Times(image.magnification) << "</figcaption></figure></td>";
    }
    out << (language.empty() ? "" : "</tr></table>\n") << "</body></html>\n";
    out.close();
    if (!out) {
        error = path + ": cannot write the file";
        return false;
    }
    return true;
}

}  // namespace gallery
