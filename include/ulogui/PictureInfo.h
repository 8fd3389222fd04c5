#pragma once
// Catalogue records of the pictures kept in the bitmap resource file: one ULOPictureInfo per picture
// ID, with one ULOPictureSizeInfo per stored size version.
#include <utility>
#include <vector>

#include "ulogui/Export.h"
#include "ulogui/Geometry.h"

// One stored size version of a picture.
class ULODRAW_API ULOPictureSizeInfo {
public:
    ULOPictureSizeInfo(int sizeVersion, int width, int height, int lineWidth)
        : sizeVersion_(sizeVersion), width_(width), height_(height), lineWidth_(lineWidth) {}

    // The record that stands for "no such version": sizeVersion -1 and all sizes 0. One shared instance.
    static const ULOPictureSizeInfo& UndefPicSizeInfo();

    // The version's bit (1, 2, 4 ... 0x800000); -1 in the undefined record.
    int GetSizeVersion() const { return sizeVersion_; }
    int GetWidth() const { return width_; }
    int GetHeight() const { return height_; }
    // The row stride ULOPictureUtil::ComputeLineWidth gives for the width and the picture's flags.
    int GetLineWidth() const { return lineWidth_; }
    ULOSize GetSize() const { return ULOSize(width_, height_); }

    bool operator==(const ULOPictureSizeInfo& o) const {
        return sizeVersion_ == o.sizeVersion_ && width_ == o.width_ && height_ == o.height_ &&
               lineWidth_ == o.lineWidth_;
    }
    bool operator!=(const ULOPictureSizeInfo& o) const { return !(*this == o); }

private:
    int sizeVersion_;
    int width_;
    int height_;
    int lineWidth_;
};

// The catalogue record of one picture.
class ULODRAW_API ULOPictureInfo {
public:
    // The undefined record: id -1, one part, flags 0, size-version flags 1, no sizes.
    ULOPictureInfo() = default;
    ULOPictureInfo(int id, int partsCount, int flags, int sizeVersionFlags,
                   std::vector<ULOPictureSizeInfo> sizes)
        : id_(id),
          partsCount_(partsCount),
          flags_(flags),
          sizeVersionFlags_(sizeVersionFlags),
          sizes_(std::move(sizes)) {}

    // The one shared undefined record, which plain pixel buffers report as theirs.
    static const ULOPictureInfo& UndefPicInfo();

    int GetID() const { return id_; }
    int GetPartsCount() const { return partsCount_; }
    // Pixel-format flags (PICTBITS_*) with which every version is stored.
    int GetFlags() const { return flags_; }
    // Bit 2^k set when version 2^k is stored.
    int GetSizeVersionFlags() const { return sizeVersionFlags_; }
    // The n-th size record counting from 1, in increasing bit order; the undefined size record when
    // there is no such record (n beyond the list, or below 1).
    const ULOPictureSizeInfo& GetPicSizeInfo(int n) const;
    const std::vector<ULOPictureSizeInfo>& GetSizes() const { return sizes_; }

private:
    int id_ = -1;
    int partsCount_ = 1;
    int flags_ = 0;
    int sizeVersionFlags_ = 1;
    std::vector<ULOPictureSizeInfo> sizes_;
};
