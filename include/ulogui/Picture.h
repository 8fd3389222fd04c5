#pragma once
// Interface pictures: pixel buffers that know their catalogue ID, the size version they show and
// whether they are shown magnified, loaded from the one bitmap resource file of the process.
//
// Pictures are identified by an integer ID. The bitmap resource file stores each in one or more size
// versions (version 1 the normal size, version 2 usually twice as large for dense screens), each
// holding one or more equally sized images, its parts. Catalogue records and decoded versions are
// cached for the life of the process, keyed by ID only: pointing the catalogue at another file later
// does not replace what was already read (except IDs looked up while no file could be opened, which
// are not cached).
//
// A picture made magnified holds device pixels: its buffer is the chosen version scaled by the calling
// thread's magnifier. Its size queries report logical units unless asked for device pixels, and its
// geometry operations take logical units, which they magnify before working on the pixels.
#include <boost/noncopyable.hpp>
#include <cstdio>

#include "ulogui/Export.h"
#include "ulogui/Geometry.h"
#include "ulogui/PictureBits.h"
#include "ulogui/PictureInfo.h"
#include "ulolib/CriticalSection.h"
#include "ulolib/ErrorCode.h"
#include "ulolib/Path.h"

// The process's bitmap resource file. Only its path is kept: every read opens the file anew.
class ULODRAW_API BitmapResourceFile : boost::noncopyable {
public:
    static BitmapResourceFile& GetInstance();

    // Init: the "URB_INIPTH" error for an empty path, a missing file or a directory (the stored path
    // stays as it was); the "fopen" error when the file cannot be opened for reading.
    ulo::ErrorCode SetResourceFilePath(const ULOPath& path);

    // A new read-only stream on the file, which the caller reads and closes; null when no path is set
    // or the file cannot be opened now.
    FILE* GetBitmapResource();
    bool IsInitialized() const;
    ULOPath GetResourceFilePath() const;

protected:
    BitmapResourceFile() = default;
    virtual ~BitmapResourceFile();

    ulo::ErrorCode Init(const ULOPath& path);
    // Stores the path after proving that the file can be opened.
    ulo::ErrorCode DoInit(const ULOPath& path);
    // No file stays open between calls, so there is nothing to close.
    void DoClose();

private:
    ULOPath path_;
};

class ULODRAW_API ULOPicture : public ULOPictureBits {
public:
    // An empty picture outside the catalogue.
    ULOPicture();
    // Picture `id` from the catalogue. `magnified`: scale it by the calling thread's magnifier (and
    // pick the larger version where that suits the magnifier; `preferLarge` always takes it when
    // magnifying, and smooths the scaling). `forceLarge` takes version 2 in any case. ID -2, and any
    // ID without a usable record, gives one white, fully transparent pixel.
    explicit ULOPicture(int id, unsigned int part = 0, bool magnified = true, bool preferLarge = false,
                        bool forceLarge = false);
    // Picture `id` scaled to exactly `size` (magnified first when `magnifyRequest`), smoothly when
    // `smooth`, else by repeating the middle column and row. Always counts as magnified.
    ULOPicture(int id, const ULOSize& size, unsigned int part = 0, bool magnifyRequest = true,
               bool smooth = true);
    // A picture outside the catalogue holding a copy of ComputeLineWidth(width, flags) * height bytes.
    ULOPicture(const unsigned char* bits, int width, int height, int flags, int parts = 1);
    // A picture outside the catalogue with a new block of the given size, cleared to zero bytes.
    explicit ULOPicture(ULOSize size, int flags = 0, int parts = 1);

    // Pictures own their pixels: a copy gets a copy of them, an assignment releases the block the
    // target owned. A move takes the block over and leaves the source empty.
    ULOPicture(const ULOPicture& other);
    ULOPicture(ULOPicture&& other) noexcept;
    ULOPicture& operator=(const ULOPicture& other);
    ULOPicture& operator=(ULOPicture&& other) noexcept;
    ~ULOPicture() override;

    void Swap(ULOPicture& other);

    // Catalogue lookups. The record of an ID without one has another id (-1), and its size lookups give
    // the undefined size record.
    static const ULOPictureInfo& GetInfoByID(int id);
    static const ULOPictureSizeInfo& GetSInfoByID(int id, int version);
    static ulo::ErrorCode SetBitmapResourceFile(const ULOPath& path);

    // Part `part` of version `version` of picture `id`, through the process-wide cache of decoded
    // versions: `bits` (owned by the cache; hold ccResource while reading it) and the block's flags,
    // width, height and stride, with the record's size-version flags. `stamp` is recorded as the
    // entry's last use. `version` is a version bit (1, 2, 4 ...): the block is read from the version
    // slot of its lowest set bit.
    static void ReadPictureVersion(int id, unsigned int version, unsigned int part, unsigned char*& bits,
                                   int& flags, int& sizeVersionFlags, int& width, int& height, int& lineWidth,
                                   int& stamp);

    int GetCurrentVersion() const { return currentVersion; }
    bool CanBeRemade() const { return bCanBeRemade && info.GetID() >= 1; }
    // The picture built again from the same inputs (after the magnifier changed); the default picture
    // when it cannot be remade.
    ULOPicture Remake() const;
    void SetbIsMagnified(bool magnified) { bIsMagnified = magnified; }

    // Held while pictures consult the catalogue and read the resource file.
    static ulo::CriticalSection ccResource;

private:
    bool CanGetBits() const override;

public:
    CLR GetPixel(ULOPoint p) const override;
    CLR GetPixel(int x, int y) const override;
    // Logical sizes (the stored size divided by the magnifier) when the picture is magnified, the
    // magnifier is not 1.0 and `magnified` is false; the stored size otherwise.
    int GetWidth(bool magnified) const override;
    int GetHeight(bool magnified) const override;
    ULOSize GetSize(bool magnified) const override;
    // The stride a buffer of GetWidth(magnified) pixels would have.
    int GetLineWidth(bool magnified) const override;

    // The geometry operations take logical units; on a magnified picture every coordinate, size and
    // split is scaled to device pixels before the buffer's own operation runs on them.
    void HEnlarge(int newWidth, int splitX) override;
    void VEnlarge(int newHeight, int splitY) override;
    // Always HEnlarge to the target width, then VEnlarge to its height, even when that narrows.
    void Enlarge(const ULORect& target, const ULOPoint& split) override;
    void Crop(int newWidth, int newHeight, ECropPosition position) override;
    void Crop(ULORect rect) override;
    void ResizeToWidth(int newWidth, EResizeMethod method) override;
    void ResizeToHeight(int newHeight, EResizeMethod method) override;
    void Resize(int newWidth, int newHeight, const ULORect& source, EResizeMethod method) override;
    void Resize(int newWidth, int newHeight, EResizeMethod method) override;
    void ResizeLazy(int newWidth, int newHeight) override;
    void HResize(int newWidth) override;

    bool IsMagnified() const override { return bIsMagnified; }
    const ULOPictureInfo& GetInfo() override { return info; }

private:
    // Sets currentVersion to 1 when version bit 1 is stored, else 2 for bit 2, else 0.
    bool InitCurrentVersion_();
    // A record outside the catalogue: id -1, one version of the given size.
    void ResetInfo_(int parts, int flags, int width, int height);
    // Takes a decoded block into a block of this picture's own, scaled to `target` when the sizes
    // differ: smoothly, or by stretching the middle column and row (by nearest neighbour instead when
    // `shrinkByNearest` and the target is no larger).
    struct Decoded;
    void TakeDecoded_(const Decoded& decoded, ULOSize target, bool smooth, bool shrinkByNearest);
    void MakeTransparentPixel_();

    int currentVersion = 0;
    ULOPictureInfo info;
    bool bPreferLarge = false;
    bool bForceLarge = false;
    ULOSize requestedSize = ULOSize(-1, -1);
    unsigned int part = 0;
    bool bMagnifyRequest = false;
    bool bCanBeRemade = false;
    bool bIsMagnified = false;
};
