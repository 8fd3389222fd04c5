#include "Manifest.h"

#include <tinyxml.h>

#include <climits>
#include <map>

#include "ManifestReader.h"
#include "PixelConversion.h"
#include "PngFile.h"
#include "ToolError.h"
#include "resfile/BitmapResourceFormat.h"

namespace ulores {

namespace {

using ulogui::resfile::PictureRecord;
using ulogui::resfile::VersionImage;

// Enough for any catalogue; it keeps the index (4 bytes per ID up to the largest) reasonable.
constexpr long kMaxID = 0xFFFFFF;
constexpr long kMaxParts = 4096;

class Context : public ManifestReader {
public:
    Context(std::string manifest, std::string folder)
        : ManifestReader(std::move(manifest)), folder_(std::move(folder)) {}

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
    std::string folder_;
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
    ctx.SetPrefix("");
    record.id = static_cast<int32_t>(ctx.Integer(picture, "id", 0, 0, kMaxID, true));
    ctx.SetPrefix("picture " + std::to_string(record.id) + ": ");
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
            const long bit = ctx.Integer(version, "bit", 0, 1, 0x800000, true);
            if ((bit & (bit - 1)) != 0) {
                ctx.Fail(version, "the attribute bit=\"" + std::string(version->Attribute("bit")) +
                                      "\" is not a power of two");
            }
            slot = 0;
            while ((1L << slot) != bit) {
                ++slot;
            }
        }
        if (slot >= ulogui::resfile::kVersionSlots) {
            ctx.Fail(version, "more than 24 versions");
        }
        if (record.versions.count(slot) != 0) {
            ctx.Fail(version, "version bit " + std::to_string(1L << slot) + " is given twice");
        }
        ctx.SetPrefix("picture " + std::to_string(record.id) + ", version bit " + std::to_string(1L << slot) +
                      ": ");
        record.versions[slot] = ReadVersion(ctx, version, record.flags, record.partsCount);
        ctx.SetPrefix("picture " + std::to_string(record.id) + ": ");
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
    const TiXmlElement* root = LoadManifest(document, path, "bitmaps", TIXML_DEFAULT_ENCODING);
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
