#include <tinyxml.h>

#include <climits>
#include <map>

#include "FontCommands.h"
#include "ManifestReader.h"
#include "ToolError.h"

namespace ulores {

namespace {

// Far more fonts than any application defines; it keeps the table (4 bytes per ID) small.
constexpr long kMaxFontID = 0xFFFF;

class FontContext : public ManifestReader {
public:
    using ManifestReader::ManifestReader;

    bool Flag(const TiXmlElement* e, const char* name, bool fallback) const {
        return Integer(e, name, fallback ? 1 : 0, 0, 1) != 0;
    }

    ULOString Text(const TiXmlElement* e, const char* name, bool required) const {
        const char* text = e->Attribute(name);
        if (text == nullptr || (required && *text == '\0')) {
            if (required) {
                Fail(e, std::string("<") + e->Value() + "> needs the attribute " + name);
            }
            return ULOString();
        }
        return ULOString::FromUtf8(text);
    }
};

ulogui::resfile::FontRecord ReadFont(const FontContext& ctx, const TiXmlElement* font) {
    ulogui::resfile::FontRecord r;
    r.primaryFace = ctx.Text(font, "face", true);
    r.height = static_cast<int32_t>(ctx.Integer(font, "height", 0, INT32_MIN, INT32_MAX, true));
    r.weight = static_cast<int32_t>(ctx.Integer(font, "weight", 400, 0, 1000));
    r.italic = ctx.Flag(font, "italic", false);
    r.underline = ctx.Flag(font, "underline", false);
    r.strikeOut = ctx.Flag(font, "strikeout", false);
    r.family = static_cast<uint8_t>(ctx.Integer(font, "family", 0x20, 0, 0xF0));
    r.pitch = static_cast<uint8_t>(ctx.Integer(font, "pitch", 2, 0, 0x0F));
    r.name = font->Attribute("name") ? ctx.Text(font, "name", false) : r.primaryFace;
    r.ignoreHeightExt = ctx.Flag(font, "ignoreHeightExt", true);
    r.heightExt = static_cast<int32_t>(ctx.Integer(font, "heightExt", r.height, INT32_MIN, INT32_MAX));
    for (const TiXmlElement* alt = font->FirstChildElement(); alt != nullptr;
         alt = alt->NextSiblingElement()) {
        if (std::string(alt->Value()) != "alternative") {
            ctx.Fail(alt, std::string("unexpected <") + alt->Value() + "> in <font>");
        }
        r.alternativeFaces.push_back(ctx.Text(alt, "face", true));
    }
    return r;
}

}  // namespace

std::vector<std::optional<ulogui::resfile::FontRecord>> ReadFontManifest(const std::string& path) {
    TiXmlDocument document;
    const TiXmlElement* root = LoadManifest(document, path, "fonts", TIXML_ENCODING_UTF8);
    FontContext ctx(path);
    std::vector<std::optional<ulogui::resfile::FontRecord>> records;
    std::map<long, int> lines;
    for (const TiXmlElement* font = root->FirstChildElement(); font != nullptr;
         font = font->NextSiblingElement()) {
        if (std::string(font->Value()) != "font") {
            ctx.Fail(font, std::string("unexpected <") + font->Value() + "> in <fonts>");
        }
        const long id = ctx.Integer(font, "id", 0, 0, kMaxFontID, true);
        const auto [known, inserted] = lines.emplace(id, font->Row());
        if (!inserted) {
            ctx.Fail(font, "the ID is already used on line " + std::to_string(known->second));
        }
        if (records.size() <= static_cast<size_t>(id)) {
            records.resize(static_cast<size_t>(id) + 1);
        }
        records[static_cast<size_t>(id)] = ReadFont(ctx, font);
    }
    if (records.empty()) {
        throw ToolError(path + ": no <font>");
    }
    if (!records[0]) {
        // Font 0 stands in for every ID without a record: a file without it is a trap for hosts.
        throw ToolError(path + ": there is no font 0, which every ID without a record falls back to");
    }
    return records;
}

}  // namespace ulores
