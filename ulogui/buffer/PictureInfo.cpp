// The catalogue records and their shared undefined instances. They live beside the pixel buffer
// because every buffer can be asked for its record.
#include "ulogui/PictureInfo.h"

#include "ulogui/PictureBits.h"

const ULOPictureSizeInfo& ULOPictureSizeInfo::UndefPicSizeInfo() {
    static const ULOPictureSizeInfo undefined(-1, 0, 0, 0);
    return undefined;
}

const ULOPictureInfo& ULOPictureInfo::UndefPicInfo() {
    static const ULOPictureInfo undefined;
    return undefined;
}

const ULOPictureSizeInfo& ULOPictureInfo::GetPicSizeInfo(int n) const {
    if (n < 1 || static_cast<size_t>(n) > sizes_.size()) {
        return ULOPictureSizeInfo::UndefPicSizeInfo();
    }
    return sizes_[static_cast<size_t>(n) - 1];
}

const ULOPictureInfo& ULOPictureBits::GetInfo() {
    return ULOPictureInfo::UndefPicInfo();
}
