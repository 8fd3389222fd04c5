#include <cstdio>
#include <memory>

#include "Commands.h"
#include "PixelConversion.h"
#include "ToolError.h"
#include "resfile/BitmapResourceFormat.h"

namespace ulores {

namespace {

using namespace ulogui::resfile;

struct Closer {
    void operator()(FILE* f) const { std::fclose(f); }
};

// Without the header's entry count the index is taken to end where the first record begins.
uint32_t CountEntries(const FileView& view) {
    if (view.HasEntryCount()) {
        return view.EntryCount();
    }
    int64_t end = view.Size();
    uint32_t entries = 0;
    for (int64_t at = kIndexOffset; at + 4 <= end; at += 4, ++entries) {
        uint32_t entry = 0;
        view.ReadUInt(at, entry);
        if (entry != kNoRecord && static_cast<int64_t>(entry) < end) {
            end = entry;
        }
    }
    return entries;
}

}  // namespace

int Dump(const std::string& path, std::ostream& out) {
    const std::unique_ptr<FILE, Closer> file(std::fopen(path.c_str(), "rb"));
    if (!file) {
        throw ToolError(path + ": cannot open the file");
    }
    const FileView view(file.get());
    if (view.Size() < kIndexOffset) {
        throw ToolError(path + ": " + std::to_string(view.Size()) +
                        " bytes is too short for a bitmap resource file (the index starts at 256)");
    }
    const uint32_t entries = CountEntries(view);
    out << path << ": " << view.Size() << " bytes, "
        << (view.HasEntryCount() ? "index of " : "no header text; index taken to hold ") << entries
        << " entries\n";
    if (view.HasEntryCount() && kIndexOffset + 4 * static_cast<int64_t>(entries) > view.Size()) {
        out << "  the index of " << entries << " entries does not fit in the file\n";
        return 1;
    }
    int pictures = 0;
    int damaged = 0;
    for (uint32_t id = 0; id < entries && id <= 0x7FFFFFFF; ++id) {
        StoredRecord record;
        std::string why;
        const LookupResult result = FindRecord(view, static_cast<int>(id), record, &why);
        if (result == LookupResult::kNoRecord) {
            continue;
        }
        ++pictures;
        if (result == LookupResult::kMalformed) {
            ++damaged;
            out << "picture " << id << ": DAMAGED: " << why << "\n";
            continue;
        }
        char flags[16];
        std::snprintf(flags, sizeof flags, "0x%X", static_cast<unsigned>(record.flags));
        out << "picture " << id << " at " << record.offset << ": flags " << flags << " ("
            << DescribeFlags(record.flags) << "), " << record.partsCount << " part(s)\n";
        int number = 0;
        for (int slot = 0; slot < kVersionSlots; ++slot) {
            StoredVersion version;
            if ((record.sizeVersionFlags & (1 << slot)) == 0 ||
                !ReadVersion(view, static_cast<int>(id), record, slot, version)) {
                continue;
            }
            out << "  version " << ++number << " (bit 0x" << std::hex << (1 << slot) << std::dec << ") at "
                << version.offset << ": " << version.width << " x " << version.height << ", stride "
                << version.lineWidth << ", " << version.imageSize << " bytes per part\n";
        }
    }
    out << pictures << " picture(s)";
    if (damaged != 0) {
        out << ", " << damaged << " damaged";
    }
    out << "\n";
    return damaged == 0 ? 0 : 1;
}

}  // namespace ulores
