#include "FontCommands.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <sstream>

#include "OutputFile.h"
#include "ToolError.h"
#include "resfile/FontResourceWriter.h"

namespace ulores {

namespace {

std::vector<uint8_t> ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw ToolError(path + ": cannot open the file");
    }
    return std::vector<uint8_t>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

uint32_t U32At(const std::vector<uint8_t>& bytes, size_t at) {
    return static_cast<uint32_t>(bytes[at]) | static_cast<uint32_t>(bytes[at + 1]) << 8 |
           static_cast<uint32_t>(bytes[at + 2]) << 16 | static_cast<uint32_t>(bytes[at + 3]) << 24;
}

// The number of table entries: from our header, else up to the first record (or the end).
size_t TableSize(const std::vector<uint8_t>& bytes) {
    if (auto stated = ulogui::resfile::FontTableSizeFromHeader(bytes.data(), bytes.size())) {
        return *stated;
    }
    size_t limit = bytes.size();
    size_t count = 0;
    while (ulogui::resfile::kFontFileHeaderSize + 4 * (count + 1) <= limit) {
        const uint32_t offset = U32At(bytes, ulogui::resfile::kFontFileHeaderSize + 4 * count);
        if (offset != ulogui::resfile::kNoFontRecord &&
            offset >= ulogui::resfile::kFontFileHeaderSize + 4 * (count + 1)) {
            limit = std::min<size_t>(limit, offset);
        }
        ++count;
    }
    return count;
}

std::string Quoted(const ULOString& s) {
    return "\"" + s.ToUtf8() + "\"";
}

std::string Hex(uint32_t v) {
    std::ostringstream text;
    text << "0x" << std::hex << std::setw(8) << std::setfill('0') << v;
    return text.str();
}

}  // namespace

int PackFonts(const std::string& manifest, const std::string& output, std::ostream& out) {
    const std::vector<std::optional<ulogui::resfile::FontRecord>> records = ReadFontManifest(manifest);
    const std::vector<uint8_t> bytes = ulogui::resfile::BuildFontResourceFile(records);
    OutputFile file(output);
    if (std::fwrite(bytes.data(), 1, bytes.size(), file.Stream()) != bytes.size()) {
        throw ToolError(output + ": cannot write the file");
    }
    file.Commit();
    const size_t defined = static_cast<size_t>(
        std::count_if(records.begin(), records.end(), [](const auto& r) { return r.has_value(); }));
    out << output << ": " << defined << " fonts, IDs 0 to " << records.size() - 1 << ", " << bytes.size()
        << " bytes\n";
    return 0;
}

bool IsFontResourceFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    char head[16] = {};
    in.read(head, sizeof head);
    return in.gcount() == sizeof head && std::string(head, sizeof head) == std::string("UloFontResource", 16);
}

int DumpFonts(const std::string& path, std::ostream& out) {
    const std::vector<uint8_t> bytes = ReadAll(path);
    if (bytes.size() < ulogui::resfile::kFontFileHeaderSize) {
        throw ToolError(path + ": too short for a font resource file (" + std::to_string(bytes.size()) +
                        " bytes)");
    }
    const size_t entries = TableSize(bytes);
    out << path << ": font resource file, " << bytes.size() << " bytes, " << entries << " table entries\n";
    int result = 0;
    for (size_t id = 0; id < entries; ++id) {
        const uint32_t offset = U32At(bytes, ulogui::resfile::kFontFileHeaderSize + 4 * id);
        out << "font " << id << ": ";
        if (offset == ulogui::resfile::kNoFontRecord) {
            out << "no record (font 0 stands in)\n";
            continue;
        }
        ulogui::resfile::FontRecord r;
        if (offset >= bytes.size() ||
            !ulogui::resfile::ParseFontRecord(bytes.data() + offset, bytes.size() - offset, r)) {
            out << "at " << Hex(offset) << ", damaged: the record does not fit in the file\n";
            result = 1;
            continue;
        }
        out << "at " << Hex(offset) << " " << Quoted(r.primaryFace) << " height " << r.height << " weight "
            << r.weight << (r.italic ? " italic" : "") << (r.underline ? " underline" : "")
            << (r.strikeOut ? " strikeout" : "") << " family 0x" << std::hex << int(r.family) << " pitch "
            << int(r.pitch) << std::dec << " name " << Quoted(r.name) << " heightExt " << r.heightExt
            << (r.ignoreHeightExt ? " (ignored)" : "") << "\n";
        for (const ULOString& face : r.alternativeFaces) {
            out << "    alternative " << Quoted(face) << "\n";
        }
    }
    return result;
}

}  // namespace ulores
