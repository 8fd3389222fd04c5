// Showing buffers on a device (through the memory framebuffer) and the writable-memory check.
#include <gtest/gtest.h>
#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

#include <string>
#include <vector>

#include "ulogui/Device.h"
#include "ulogui/PictureBits.h"

namespace {

using ulogui::platform::BitmapInfoHeader;
using ulogui::platform::MemoryDevice;
using Rows = std::vector<std::string>;

const CLR kBackground(9, 9, 9);

// Pixel (x, y) of a test picture: a colour that names its position.
CLR Marker(int x, int y) {
    return CLR(100 + x, 200 + y, 50);
}

void Mark(ULOPictureBits& b, unsigned char alpha = 0) {
    for (int y = 0; y < b.GetHeight(false); ++y) {
        for (int x = 0; x < b.GetWidth(false); ++x) {
            b.SetPixelAndAlpha(x, y, Marker(x, y), alpha);
        }
    }
}

// Which device pixels differ from the background, as rows of '.' and 'x'.
Rows Changed(const MemoryDevice& device) {
    Rows rows(static_cast<size_t>(device.GetHeight()));
    for (int y = 0; y < device.GetHeight(); ++y) {
        for (int x = 0; x < device.GetWidth(); ++x) {
            rows[static_cast<size_t>(y)] += device.GetPixel(x, y) == kBackground ? '.' : 'x';
        }
    }
    return rows;
}

TEST(MemoryDeviceTest, PixelsBoundsAndScanLines) {
    MemoryDevice device(2, 3, kBackground);
    device.SetPixel(1, 0, CLR(1, 2, 3));
    device.SetPixel(2, 0, CLR(1, 2, 3));  // ignored
    EXPECT_EQ(std::vector<unsigned char>(device.GetData(), device.GetData() + 8),
              (std::vector<unsigned char>{9, 9, 9, 0, 3, 2, 1, 0}));  // top-down
    EXPECT_EQ(device.GetPixel(-1, 0), CLR(255, 255, 255));
    EXPECT_EQ(device.GetPixel(0, 3), CLR(255, 255, 255));
    EXPECT_EQ(MemoryDevice(-4, 5).GetWidth(), 0);

    // A 2 x 3 bottom-up image of which only rows 1 and 2 (from the bottom) are handed over.
    const unsigned char rows[2][8] = {{1, 1, 1, 0, 2, 2, 2, 0}, {3, 3, 3, 0, 4, 4, 4, 0}};
    BitmapInfoHeader header;
    header.width = 2;
    header.height = 3;
    EXPECT_EQ(device.CopyBits(0, 0, 2, 3, 0, 0, 1, 2, rows, header, 0), 2);
    EXPECT_EQ(device.GetPixel(0, 0), CLR(3, 3, 3));  // image row 2 is the top
    EXPECT_EQ(device.GetPixel(1, 1), CLR(2, 2, 2));
    EXPECT_EQ(device.GetPixel(0, 2), kBackground);  // image row 0 was not given
    header.bitCount = 24;
    EXPECT_EQ(device.CopyBits(0, 0, 2, 3, 0, 0, 1, 2, rows, header, 0), 0);
}

TEST(SetToDeviceTest, WholePictureOrAPartGoesToItsOwnPlace) {
    ULOPictureBits picture(ULOSize(4, 3), 0);
    Mark(picture, 255);  // alpha is ignored without the flag
    MemoryDevice whole(6, 5, kBackground), noRect(4, 3, kBackground), part(8, 6, kBackground);
    const ULORect all(0, 0, 4, 3), lower(1, 1, 3, 3);  // columns 1-2 of the two lower rows
    picture.SetToDevice(whole.GetHDC(), &all, 2, 2);
    picture.SetToDevice(noRect.GetHDC(), nullptr, 0, 0);  // no rectangle means the whole picture
    picture.SetToDevice(part.GetHDC(), &lower, 4, 2);
    picture.SetToDevice(nullptr, &all, 0, 0);  // no device: nothing happens
    EXPECT_EQ(Changed(whole), (Rows{"......", "......", "..xxxx", "..xxxx", "..xxxx"}));
    EXPECT_EQ(Changed(part), (Rows{"........", "........", "........", ".....xx.", ".....xx.", "........"}));
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 4; ++x) {
            EXPECT_EQ(whole.GetPixel(2 + x, 2 + y), Marker(x, y)) << x << "," << y;
            EXPECT_EQ(noRect.GetPixel(x, y), Marker(x, y)) << x << "," << y;
        }
    }
    EXPECT_EQ(part.GetPixel(5, 3), Marker(1, 1));
    EXPECT_EQ(part.GetPixel(6, 4), Marker(2, 2));
}

TEST(SetToDeviceTest, RectangleBeyondThePictureClampsOneShort) {
    ULOPictureBits picture(ULOSize(3, 2), 0);
    Mark(picture);
    MemoryDevice beyond(5, 4, kBackground), exact(5, 4, kBackground);
    const ULORect big(-5, -5, 10, 10), fits(0, 0, 3, 2);  // an edge on the picture's own edge is not clamped
    picture.SetToDevice(beyond.GetHDC(), &big, 0, 0);
    picture.SetToDevice(exact.GetHDC(), &fits, 0, 0);
    // right becomes width - 1 and bottom height - 1: two columns of the top row only.
    EXPECT_EQ(Changed(beyond), (Rows{"xx...", ".....", ".....", "....."}));
    EXPECT_EQ(beyond.GetPixel(1, 0), Marker(1, 0));
    EXPECT_EQ(Changed(exact), (Rows{"xxx..", "xxx..", ".....", "....."}));
}

TEST(SetToDeviceTest, AlphaPixelsAreComposedOverTheDevice) {
    ULOPictureBits picture(ULOSize(3, 1), PICTBITS_ALPHA);
    picture.SetPixelAndAlpha(0, 0, CLR(200, 100, 50), 0);
    picture.SetPixelAndAlpha(1, 0, CLR(200, 100, 40), 128);
    picture.SetPixelAndAlpha(2, 0, CLR(200, 100, 40), 255);
    MemoryDevice device(6, 2, kBackground);
    device.SetPixel(3, 1, CLR(10, 20, 30));  // what lies under pixel 1 at origin (2, 1)
    device.SetPixel(4, 1, CLR(200, 100, 0));
    picture.SetToDevice(device.GetHDC(), nullptr, 2, 1);
    unsigned char alpha = 0;
    EXPECT_EQ(picture.GetPixelAndAlpha(0, 0, alpha), CLR(200, 100, 50));  // opaque: untouched
    // (own * 127 + device * 128) >> 8: red 26680 >> 8, green 15260 >> 8, blue 8920 >> 8.
    EXPECT_EQ(picture.GetPixelAndAlpha(1, 0, alpha), CLR(104, 59, 34));
    EXPECT_EQ(alpha, 128);                               // byte 3 is kept
    EXPECT_EQ(picture.GetPixel(2, 0), CLR(199, 99, 0));  // device * 255 >> 8, not the device itself
    EXPECT_EQ(device.GetPixel(2, 1), CLR(200, 100, 50));
    EXPECT_EQ(device.GetPixel(3, 1), CLR(104, 59, 34));
    EXPECT_EQ(device.GetPixel(4, 1), CLR(199, 99, 0));

    // Memory rows are walked from bottom - top - 1 down to 0, which are the rows sent only when the
    // rectangle reaches the bottom edge; above it, the rows nearest the bottom are composed instead.
    ULOPictureBits tall(ULOSize(1, 2), PICTBITS_ALPHA);
    tall.Fill(CLR(0, 0, 0), 255);
    MemoryDevice grey(1, 2, CLR(100, 100, 100));
    const ULORect topRow(0, 0, 1, 1);
    tall.SetToDevice(grey.GetHDC(), &topRow, 0, 0);
    EXPECT_EQ(tall.GetPixel(0, 0), CLR(0, 0, 0));     // the row that was sent is not composed
    EXPECT_EQ(tall.GetPixel(0, 1), CLR(99, 99, 99));  // memory row 0, the bottom row, is
    EXPECT_EQ(grey.GetPixel(0, 0), CLR(0, 0, 0));
}

TEST(SetToDeviceTest, BuffersNarrowerThan32BitRowsAreNotShown) {
    // The device reads width * 4 bytes a row; a mask buffer's rows are shorter, so nothing is sent
    // (the sanitizer build would catch a read past the block).
    ULOPictureBits mask(ULOSize(8, 2), PICTBITS_MASK8), rgb(ULOSize(1, 1), PICTBITS_RGB24);
    mask.Fill(CLR(0, 0, 0), 1);
    MemoryDevice device(8, 2, kBackground);
    mask.SetToDevice(device.GetHDC(), nullptr, 0, 0);
    EXPECT_EQ(Changed(device), (Rows{"........", "........"}));
    // A one-pixel-wide 24-bit row is padded to four bytes and goes as a 32-bit pixel.
    rgb.Fill(CLR(1, 2, 3), 0);
    rgb.SetToDevice(device.GetHDC(), nullptr, 0, 0);
    EXPECT_EQ(device.GetPixel(0, 0), CLR(1, 2, 3));
}

class WritableMemoryTest : public ::testing::Test {
protected:
    // Four pages of the system's own, whose protection the tests change page by page.
    enum Access { kWrite, kRead, kNone, kReadWrite };
#if defined(_WIN32)
    void SetUp() override {
        block_ = static_cast<unsigned char*>(::VirtualAlloc(nullptr, 4 * page_, MEM_COMMIT, PAGE_READWRITE));
        ASSERT_NE(block_, nullptr);
    }
    void TearDown() override {
        ::VirtualFree(block_, 0, MEM_RELEASE);
    }
    // Windows has no write-only pages: kWrite is another writable protection, executable read-write.
    bool Protect(size_t page, Access access) {
        const DWORD kinds[] = {PAGE_EXECUTE_READWRITE, PAGE_READONLY, PAGE_NOACCESS, PAGE_READWRITE};
        DWORD old = 0;
        return ::VirtualProtect(block_ + page * page_, page_, kinds[access], &old) != 0;
    }
    bool Unmap(size_t page) {
        return ::VirtualFree(block_ + page * page_, page_, MEM_DECOMMIT) != 0;
    }
    static size_t PageSize() {
        SYSTEM_INFO info{};
        ::GetSystemInfo(&info);
        return info.dwPageSize;
    }
#else
    void SetUp() override {
        void* block = mmap(nullptr, 4 * page_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        ASSERT_NE(block, MAP_FAILED);
        block_ = static_cast<unsigned char*>(block);
    }
    void TearDown() override {
        munmap(block_, 4 * page_);
    }
    bool Protect(size_t page, Access access) {
        const int kinds[] = {PROT_WRITE, PROT_READ, PROT_NONE, PROT_READ | PROT_WRITE};
        return mprotect(block_ + page * page_, page_, kinds[access]) == 0;
    }
    bool Unmap(size_t page) {
        return munmap(block_ + page * page_, page_) == 0;
    }
    static size_t PageSize() {
        return static_cast<size_t>(sysconf(_SC_PAGESIZE));
    }
#endif

    // A buffer over `bytes` bytes from `offset` (one row).
    bool IsBad(size_t offset, size_t bytes) const {
        return ULOPictureBits(block_ + offset, static_cast<int>(bytes / 4), 1, static_cast<int>(bytes), 0)
            .IsBadBitsPtr();
    }

    const size_t page_ = PageSize();
    unsigned char* block_ = nullptr;
};

TEST_F(WritableMemoryTest, WritableBlocksPass) {
    EXPECT_FALSE(IsBad(0, 4 * page_));
    EXPECT_FALSE(ULOPictureBits(ULOSize(16, 16), 0).IsBadBitsPtr());  // heap
    EXPECT_FALSE(ULOPictureBits().IsBadBitsPtr());                    // nothing to write
    // Different protections split the block into separate mappings that are all writable.
    ASSERT_TRUE(Protect(1, kWrite));
    EXPECT_FALSE(IsBad(page_ / 2, 2 * page_));
}

TEST_F(WritableMemoryTest, ReadOnlyPagesHolesNullAndNegativeSizesFail) {
    ASSERT_TRUE(Protect(2, kRead));
    EXPECT_FALSE(IsBad(0, 2 * page_));
    EXPECT_TRUE(IsBad(0, 3 * page_));
    EXPECT_TRUE(IsBad(2 * page_ - 4, 8));  // straddles into the read-only page
    ASSERT_TRUE(Protect(2, kNone));
    EXPECT_TRUE(IsBad(2 * page_, 4));
    ASSERT_TRUE(Protect(2, kReadWrite));
    ASSERT_TRUE(Unmap(1));  // a hole in the middle
    EXPECT_TRUE(IsBad(0, 2 * page_));
    EXPECT_FALSE(IsBad(2 * page_, 2 * page_));
    EXPECT_TRUE(ULOPictureBits(nullptr, 4, 4, 16, 0).IsBadBitsPtr());
    EXPECT_TRUE(ULOPictureBits(block_, 4, 1, -16, 0).IsBadBitsPtr());
}

}  // namespace
