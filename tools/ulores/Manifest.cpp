#include "Manifest.h"

#include <tinyxml.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <map>

#include "PixelConversion.h"
#include "PngFile.h"
#include "ToolError.h"
#include "ulogui/picture/BitmapResourceFormat.h"

namespace ulores {

namespace {

using ulogui::bitmapres::PictureRecord;
using ulogui::bitmapres::VersionImage;

// Enough for any catalogue; it keeps the index (4 bytes per ID up to the largest) reasonable.
constexpr long kMaxID = 0xFFFFFF;
constexpr long kMaxParts = 4096;

class Context {
public:
    Context(std::string manifest, std::string folder)
        : manifest_(std::move(manifest)), folder_(std::move(folder)) {}

    [[noreturn]] void Fail(const TiXmlElement* at, const std::string& what) const {
        throw ToolError(manifest_ + ":" + std::to_string(at->Row()) + ": " + prefix_ + what);
    }
    void SetPicture(const std::string& prefix) { prefix_ = prefix; }

    long Integer(const TiXmlElement* e, const char* name, long fallback, long low, long high) const {
        const char* text = e->Attribute(name);
        if (text == nullptr) {
            if (fallback < low) {
                Fail(e, std::string("<") + e->Value() + "> needs the attribute " + name);
            }
            return fallback;
        }
        char* end = nullptr;
        errno = 0;
        const long value = std::strtol(text, &end, 0);
        if (errno != 0 || end == text || *end != '\0' || value < low || value > high) {
            Fail(e, std::string("the attribute ") + name + "=\"" + text + "\" is not a number from " +
                        std::to_string(low) + " to " + std::to_string(high));
        }
        return value;
    }

    std::string FilePath(const TiXmlElement* e) const {
        const char* file = e->Attribute("file");
        if (file == nullptr || *file == '\0') {
            Fail(e, std::string("<") + e->Value() + "> needs the attribute file");
        }
        return file[0] == '/' ? std::string(file) : folder_ + file;
    }

    RgbaImage Png(const TiXmlElement* e, const std::string& path) const {
        try {
            return ReadPng(path);
        } catch (const ToolError& error) {
            Fail(e, error.what());
        }
    }

private:
    std::string manifest_;
    std::string folder_;
    std::string prefix_;
};

std::string Size(int width, int height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

VersionImage ReadVersion(const Context& ctx, const TiXmlElement* version, int flags, int parts) {
    VersionImage image;
    if (version->Attribute("file") != nullptr) {
        if (version->FirstChildElement() != nullptr) {
            ctx.Fail(version, "a <version> with a file attribute cannot hold <part> elements");
        }
        const std::string path = ctx.FilePath(version);
        const RgbaImage png = ctx.Png(version, path);
        if (png.width % parts != 0) {
            ctx.Fail(version, "'" + path + "' is " + Size(png.width, png.height) +
                                  ", which does not split into " + std::to_string(parts) +
                                  " parts of equal width");
        }
        image.width = png.width / parts;
        image.height = png.height;
        for (int part = 0; part < parts; ++part) {
            const std::vector<uint8_t> bytes = ToStored(png, part * image.width, image.width, flags);
            image.pixels.insert(image.pixels.end(), bytes.begin(), bytes.end());
        }
        return image;
    }
    std::string firstPath;
    int count = 0;
    for (const TiXmlElement* part = version->FirstChildElement(); part != nullptr;
         part = part->NextSiblingElement()) {
        if (std::string(part->Value()) != "part") {
            ctx.Fail(part, std::string("unexpected <") + part->Value() + "> in <version>");
        }
        if (++count > parts) {
            ctx.Fail(part, "more <part> elements than the picture's " + std::to_string(parts) + " part(s)");
        }
        const std::string path = ctx.FilePath(part);
        const RgbaImage png = ctx.Png(part, path);
        if (count == 1) {
            image.width = png.width;
            image.height = png.height;
            firstPath = path;
        } else if (png.width != image.width || png.height != image.height) {
            ctx.Fail(part, "part " + std::to_string(count) + " '" + path + "' is " +
                               Size(png.width, png.height) + ", but part 1 '" + firstPath + "' is " +
                               Size(image.width, image.height) +
                               "; all parts of a version must have the same size");
        }
        const std::vector<uint8_t> bytes = ToStored(png, 0, png.width, flags);
        image.pixels.insert(image.pixels.end(), bytes.begin(), bytes.end());
    }
    if (count != parts) {
        ctx.Fail(version, "the version has " + std::to_string(count) +
                              " <part> element(s), but the picture has " + std::to_string(parts) +
                              " part(s) (or give the parts side by side in file=)");
    }
    return image;
}

PictureRecord ReadPicture(Context& ctx, const TiXmlElement* picture) {
    PictureRecord record;
    ctx.SetPicture("");
    record.id = static_cast<int32_t>(ctx.Integer(picture, "id", -1, 0, kMaxID));
    ctx.SetPicture("picture " + std::to_string(record.id) + ": ");
    const char* format = picture->Attribute("format");
    if (format == nullptr) {
        ctx.Fail(picture, "<picture> needs the attribute format (alpha32, rgb32, rgb24 or mask8)");
    }
    int flags = 0;
    if (!FlagsFromFormatName(format, flags)) {
        ctx.Fail(picture, std::string("unknown format \"") + format + "\" (alpha32, rgb32, rgb24 or mask8)");
    }
    record.flags = flags | static_cast<int32_t>(ctx.Integer(picture, "flags", 0, 0, INT_MAX));
    record.partsCount = static_cast<int32_t>(ctx.Integer(picture, "parts", 1, 1, kMaxParts));

    int nextSlot = 0;
    for (const TiXmlElement* version = picture->FirstChildElement(); version != nullptr;
         version = version->NextSiblingElement()) {
        if (std::string(version->Value()) != "version") {
            ctx.Fail(version, std::string("unexpected <") + version->Value() + "> in <picture>");
        }
        int slot = nextSlot;
        if (version->Attribute("bit") != nullptr) {
            const long bit = ctx.Integer(version, "bit", 0, 1, 0x800000);
            if ((bit & (bit - 1)) != 0) {
                ctx.Fail(version, "the attribute bit=\"" + std::string(version->Attribute("bit")) +
                                      "\" is not a power of two");
            }
            slot = 0;
            while ((1L << slot) != bit) {
                ++slot;
            }
        }
        if (slot >= ulogui::bitmapres::kVersionSlots) {
            ctx.Fail(version, "more than 24 versions");
        }
        if (record.versions.count(slot) != 0) {
            ctx.Fail(version, "version bit " + std::to_string(1L << slot) + " is given twice");
        }
        ctx.SetPicture("picture " + std::to_string(record.id) + ", version bit " +
                       std::to_string(1L << slot) + ": ");
        record.versions[slot] = ReadVersion(ctx, version, record.flags, record.partsCount);
        ctx.SetPicture("picture " + std::to_string(record.id) + ": ");
        nextSlot = slot + 1;
    }
    if (record.versions.empty()) {
        ctx.Fail(picture, "no <version>");
    }
    return record;
}

}  // namespace

std::vector<PictureRecord> ReadManifest(const std::string& path) {
    TiXmlDocument document;
    if (!document.LoadFile(path.c_str())) {
        if (document.ErrorId() == TiXmlBase::TIXML_ERROR_OPENING_FILE) {
            throw ToolError(path + ": cannot open the manifest");
        }
        throw ToolError(path + ":" + std::to_string(document.ErrorRow()) +
                        ": not well-formed XML: " + document.ErrorDesc());
    }
    const TiXmlElement* root = document.RootElement();
    if (root == nullptr || std::string(root->Value()) != "bitmaps") {
        throw ToolError(path + ": the root element must be <bitmaps>");
    }
    const size_t slash = path.rfind('/');
    Context ctx(path, slash == std::string::npos ? std::string() : path.substr(0, slash + 1));

    std::vector<PictureRecord> pictures;
    std::map<int32_t, int> lines;
    for (const TiXmlElement* picture = root->FirstChildElement(); picture != nullptr;
         picture = picture->NextSiblingElement()) {
        if (std::string(picture->Value()) != "picture") {
            ctx.Fail(picture, std::string("unexpected <") + picture->Value() + "> in <bitmaps>");
        }
        PictureRecord record = ReadPicture(ctx, picture);
        const auto [known, inserted] = lines.emplace(record.id, picture->Row());
        if (!inserted) {
            ctx.Fail(picture, "the ID is already used on line " + std::to_string(known->second));
        }
        pictures.push_back(std::move(record));
    }
    return pictures;
}

}  // namespace ulores
