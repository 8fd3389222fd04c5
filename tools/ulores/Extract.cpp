#include "Commands.h"
#include "OutputFile.h"
#include "PixelConversion.h"
#include "PngFile.h"
#include "ToolError.h"
#include "ulogui/Picture.h"

namespace ulores {

int Extract(const std::string& path, int id, int version, int part, const std::string& output,
            std::ostream& out) {
    const ulo::ErrorCode error = ULOPicture::SetBitmapResourceFile(ULOPath::FromNative(path));
    if (error.IsError()) {
        throw ToolError(path + ": cannot be used as the bitmap resource file (" +
                        error.GetMessage().ToUtf8() + ")");
    }
    const ULOPictureInfo& info = ULOPicture::GetInfoByID(id);
    if (info.GetID() != id) {
        throw ToolError(path + ": picture " + std::to_string(id) +
                        " has no record, or its record is damaged (see ulores dump)");
    }
    const int versions = static_cast<int>(info.GetSizes().size());
    if (version < 1 || version > versions) {
        throw ToolError(path + ": picture " + std::to_string(id) + " has " + std::to_string(versions) +
                        " version(s); there is no version " + std::to_string(version));
    }
    if (part < 0 || part >= info.GetPartsCount()) {
        throw ToolError(path + ": picture " + std::to_string(id) + " has " +
                        std::to_string(info.GetPartsCount()) +
                        " part(s), numbered from 0; there is no part " + std::to_string(part));
    }
    const ULOPictureSizeInfo& size = info.GetPicSizeInfo(version);

    RgbaImage image;
    {
        ulo::SingleLock lock(ULOPicture::ccResource);
        unsigned char* bits = nullptr;
        int flags = 0, sizeVersionFlags = 0, width = 0, height = 0, lineWidth = 0, stamp = 0;
        ULOPicture::ReadPictureVersion(id, static_cast<unsigned int>(size.GetSizeVersion()),
                                       static_cast<unsigned int>(part), bits, flags, sizeVersionFlags, width,
                                       height, lineWidth, stamp);
        if (width != size.GetWidth() || height != size.GetHeight()) {
            throw ToolError(path + ": picture " + std::to_string(id) + ", version " +
                            std::to_string(version) + " could not be decoded");
        }
        image = FromStored(bits, width, height, lineWidth, flags);
    }
    OutputFile file(output);
    WritePng(image, file.Stream(), output);
    file.Commit();
    out << output << ": picture " << id << ", version " << version << ", part " << part << ", " << image.width
        << " x " << image.height << "\n";
    return 0;
}

}  // namespace ulores
