#pragma once
// Bitmap resource files for the picture tests, made with the same writer as the resource builder.
//
// The catalogue and the decode cache live for the whole process and are keyed by picture ID, so
// every test uses IDs of its own.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "picture/PictureReader.h"
#include "resfile/BitmapResourceWriter.h"
#include "ulogui/Magnify.h"
#include "ulogui/Picture.h"
#include "ulolib/LittleEndian.h"
#include "ulolib/TempDir.h"

namespace picturetest {

using ulogui::resfile::PictureRecord;
using ulogui::resfile::VersionImage;

// The stored bytes of one part of one version: a pattern that differs between pictures, versions, parts and
// positions.
inline std::vector<unsigned char> PartBytes(int id, int slot, int part, int width, int height, int flags) {
    std::vector<unsigned char> bytes(static_cast<size_t>(ULOPictureUtil::ComputeLineWidth(width, flags)) *
                                     height);
    for (size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<unsigned char>(id * 31 + slot * 17 + part * 71 + i * 13 + (i >> 8));
    }
    return bytes;
}

// A picture whose version in slot k has sizes[k] (a size of 0 x 0 leaves the slot empty).
inline PictureRecord MakePicture(int id, int flags, int parts, const std::vector<ULOSize>& sizes) {
    PictureRecord p;
    p.id = id;
    p.flags = flags;
    p.partsCount = parts;
    for (size_t slot = 0; slot < sizes.size(); ++slot) {
        if (sizes[slot].cx == 0 && sizes[slot].cy == 0) {
            continue;
        }
        VersionImage image;
        image.width = sizes[slot].cx;
        image.height = sizes[slot].cy;
        for (int part = 0; part < parts; ++part) {
            const std::vector<unsigned char> bytes =
                PartBytes(id, static_cast<int>(slot), part, image.width, image.height, flags);
            image.pixels.insert(image.pixels.end(), bytes.begin(), bytes.end());
        }
        p.versions[static_cast<int>(slot)] = image;
    }
    return p;
}

inline void WriteBytes(const std::string& path, const std::vector<unsigned char>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(out.good()) << path;
}

// Offsets inside a file made by BuildBitmapResourceFile.
inline uint32_t RecordOffset(const std::vector<unsigned char>& file, int id) {
    return GetU32(file, 256 + 4 * static_cast<size_t>(id));
}
inline uint32_t VersionOffset(const std::vector<unsigned char>& file, int id, int slot) {
    return GetU32(file, RecordOffset(file, id) + 12 + 4 * static_cast<size_t>(slot));
}

// A stream over a copy of the bytes (a real temporary file, so that every length works).
inline ulogui::resfile::FilePtr StreamOf(const std::vector<unsigned char>& bytes) {
    FILE* f = std::tmpfile();
    if (f != nullptr && !bytes.empty()) {
        std::fwrite(bytes.data(), 1, bytes.size(), f);
    }
    if (f != nullptr) {
        std::rewind(f);
    }
    return ulogui::resfile::FilePtr(f);
}

// Puts a file of the given pictures in a folder of its own and makes it the process's resource file;
// sets the magnifier back to 1.0 afterwards.
class ResourceFileTest : public ::testing::Test {
protected:
    std::string FilePath() const { return dir_.Path().native() + "/Main.urb"; }

    void Use(const std::vector<PictureRecord>& pictures) {
        WriteBytes(FilePath(), ulogui::resfile::BuildBitmapResourceFile(pictures));
        const ulo::ErrorCode error = ULOPicture::SetBitmapResourceFile(ULOPath::FromNative(FilePath()));
        ASSERT_FALSE(error.IsError());
    }

    void SetMagnifier(float m) { magnify::GetMagnifier() = m; }
    void TearDown() override { magnify::GetMagnifier() = 1.0f; }

    TempDir dir_;
};

}  // namespace picturetest
