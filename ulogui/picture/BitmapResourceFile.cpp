// The bitmap resource file singleton: it keeps the file's path and opens the file for each read.
#include <cerrno>
#include <cstdio>

#include "ulogui/Picture.h"
#include "ulolib/Exception.h"

namespace {

// Where the errors say they come from.
constexpr const char* kSource = "ulogui/picture";
constexpr int kInitErrorLine = 185;
constexpr const char* kInitSignature =
    "class ulo::ErrorCode __cdecl BitmapResourceFile::Init(const class ULOPath &)";
constexpr const char* kDoInitSignature =
    "class ulo::ErrorCode __cdecl BitmapResourceFile::DoInit(const class ULOPath &)";

}  // namespace

BitmapResourceFile::~BitmapResourceFile() = default;

BitmapResourceFile& BitmapResourceFile::GetInstance() {
    static BitmapResourceFile instance;
    return instance;
}

ulo::ErrorCode BitmapResourceFile::SetResourceFilePath(const ULOPath& path) {
    return Init(path);
}

ulo::ErrorCode BitmapResourceFile::Init(const ULOPath& path) {
    // Why exists or is_directory failed does not matter: either way there is no file to use.
    if (path.empty() || !path.exists() || path.is_directory()) {
        return ulo::ErrorCode(
            ULO_AT(ulo::exception::InternalError("URB_INIPTH"), kInitSignature, kSource, kInitErrorLine));
    }
    return DoInit(path);
}

ulo::ErrorCode BitmapResourceFile::DoInit(const ULOPath& path) {
    FILE* file = ULOOpenFile(path, "rb");
    if (file == nullptr) {
        const int err = errno;
        return ulo::ErrorCode(ULO_AT(ulo::exception::SystemError::FromErrno(err, "fopen"), kDoInitSignature,
                                     kSource, __LINE__));
    }
    std::fclose(file);
    // The path is stored only once the file proved readable, so a failed call leaves the previous file
    // in use.
    ulo::SingleLock lock(ULOPicture::ccResource);
    path_ = path;
    return ulo::ErrorCode::noError();
}

void BitmapResourceFile::DoClose() {}

FILE* BitmapResourceFile::GetBitmapResource() {
    ulo::SingleLock lock(ULOPicture::ccResource);
    if (path_.empty()) {
        return nullptr;
    }
    return ULOOpenFile(path_, "rb");
}

bool BitmapResourceFile::IsInitialized() const {
    ulo::SingleLock lock(ULOPicture::ccResource);
    return !path_.empty();
}

ULOPath BitmapResourceFile::GetResourceFilePath() const {
    ulo::SingleLock lock(ULOPicture::ccResource);
    return path_;
}

ulo::ErrorCode ULOPicture::SetBitmapResourceFile(const ULOPath& path) {
    return BitmapResourceFile::GetInstance().SetResourceFilePath(path);
}
