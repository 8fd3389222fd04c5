#include "resfile/BitmapResourceWriter.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <stdexcept>
#include <string>

#include "resfile/BitmapResourceFormat.h"
#include "ulogui/PictureBits.h"

namespace ulogui {
namespace resfile {

namespace {

void PutUInt(std::vector<unsigned char>& out, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) {
        out[at + i] = static_cast<unsigned char>(v >> (8 * i));
    }
}

void AppendUInt(std::vector<unsigned char>& out, uint32_t v) {
    out.resize(out.size() + 4);
    PutUInt(out, out.size() - 4, v);
}

[[noreturn]] void Reject(const PictureRecord& p, const std::string& what) {
    throw std::invalid_argument("picture " + std::to_string(p.id) + ": " + what);
}

void CheckPicture(const PictureRecord& p) {
    if (p.id < 0) {
        Reject(p, "the ID is negative");
    }
    if (p.partsCount < 1) {
        Reject(p, "the parts count " + std::to_string(p.partsCount) + " is below 1");
    }
    for (const auto& [slot, image] : p.versions) {
        const std::string name = "version " + std::to_string(slot + 1);
        if (slot < 0 || slot >= kVersionSlots) {
            Reject(p, "slot " + std::to_string(slot) + " is outside 0..23");
        }
        if (image.width < 1 || image.height < 1) {
            Reject(p, name + " has the size " + std::to_string(image.width) + " x " +
                          std::to_string(image.height));
        }
        const uint64_t lineWidth =
            static_cast<uint64_t>(ULOPictureUtil::ComputeLineWidth(image.width, p.flags));
        const uint64_t expected =
            lineWidth * static_cast<uint64_t>(image.height) * static_cast<uint64_t>(p.partsCount);
        if (image.pixels.size() != expected) {
            Reject(p, name + " holds " + std::to_string(image.pixels.size()) + " pixel bytes, " +
                          std::to_string(expected) + " expected");
        }
    }
}

}  // namespace

std::vector<unsigned char> BuildBitmapResourceFile(const std::vector<PictureRecord>& pictures) {
    std::vector<const PictureRecord*> sorted;
    std::set<int32_t> ids;
    for (const PictureRecord& p : pictures) {
        CheckPicture(p);
        if (!ids.insert(p.id).second) {
            Reject(p, "the ID is used twice");
        }
        sorted.push_back(&p);
    }
    std::sort(sorted.begin(), sorted.end(),
              [](const PictureRecord* a, const PictureRecord* b) { return a->id < b->id; });
    const uint32_t entries = sorted.empty() ? 0 : static_cast<uint32_t>(sorted.back()->id) + 1;

    if (kIndexOffset + 4 * static_cast<int64_t>(entries) >= static_cast<int64_t>(kNoRecord)) {
        throw std::length_error("an index up to ID " + std::to_string(entries - 1) + " would exceed 4 GiB");
    }
    std::vector<unsigned char> out(static_cast<size_t>(kIndexOffset) + 4 * static_cast<size_t>(entries), 0);
    std::memcpy(out.data(), kMagic, sizeof kMagic);
    PutUInt(out, kEntryCountOffset, entries);
    for (uint32_t id = 0; id < entries; ++id) {
        PutUInt(out, kIndexOffset + 4 * id, kNoRecord);
    }
    for (const PictureRecord* p : sorted) {
        const size_t record = out.size();
        PutUInt(out, kIndexOffset + 4 * static_cast<size_t>(p->id), static_cast<uint32_t>(record));
        int32_t sizeVersionFlags = 0;
        for (const auto& entry : p->versions) {
            sizeVersionFlags |= 1 << entry.first;
        }
        AppendUInt(out, static_cast<uint32_t>(p->partsCount));
        AppendUInt(out, static_cast<uint32_t>(p->flags));
        AppendUInt(out, static_cast<uint32_t>(sizeVersionFlags));
        out.resize(out.size() + 4 * kVersionSlots, 0);
        for (const auto& [slot, image] : p->versions) {
            if (out.size() + kVersionHeaderSize + image.pixels.size() >= kNoRecord) {
                throw std::length_error("the bitmap resource file would exceed 4 GiB");
            }
            PutUInt(out, record + 12 + 4 * static_cast<size_t>(slot), static_cast<uint32_t>(out.size()));
            AppendUInt(out, static_cast<uint32_t>(image.width));
            AppendUInt(out, static_cast<uint32_t>(image.height));
            out.insert(out.end(), image.pixels.begin(), image.pixels.end());
        }
    }
    return out;
}

}  // namespace resfile
}  // namespace ulogui
