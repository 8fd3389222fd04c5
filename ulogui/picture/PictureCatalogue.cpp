// The process-wide catalogue: one record per picture ID, read from the resource file on first use
// and kept for the life of the process.
#include <map>

#include "picture/PictureReader.h"
#include "ulogui/Picture.h"

namespace ulogui {
namespace resfile {

FilePtr OpenBitmapResource() {
    return FilePtr(BitmapResourceFile::GetInstance().GetBitmapResource());
}

}  // namespace resfile
}  // namespace ulogui

namespace {

// Node-based, so the references handed out stay valid while records are added.
std::map<int, ULOPictureInfo>& Catalogue() {
    static std::map<int, ULOPictureInfo> records;
    return records;
}

}  // namespace

const ULOPictureInfo& ULOPicture::GetInfoByID(int id) {
    ulo::SingleLock lock(ccResource);
    std::map<int, ULOPictureInfo>& records = Catalogue();
    const auto found = records.find(id);
    if (found != records.end()) {
        return found->second;
    }
    const ulogui::resfile::FilePtr file = ulogui::resfile::OpenBitmapResource();
    if (!file) {
        // Not remembered: once the host points the catalogue at a file, the ID is looked up there.
        return ULOPictureInfo::UndefPicInfo();
    }
    return records.emplace(id, ulogui::resfile::ReadPictureInfo(file.get(), id)).first->second;
}

const ULOPictureSizeInfo& ULOPicture::GetSInfoByID(int id, int version) {
    ulo::SingleLock lock(ccResource);
    const ULOPictureInfo& record = GetInfoByID(id);
    if (record.GetID() != id) {
        return ULOPictureSizeInfo::UndefPicSizeInfo();
    }
    return record.GetPicSizeInfo(version);
}
