// Showing buffers on a device (through the memory framebuffer) and the writable-memory check.
#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

#include <cstring>
#include <functional>

#include "golden/Golden.h"
#include "ulogui/Device.h"
#include "ulogui/PictureBits.h"

namespace {

using ulogui::platform::BitmapInfoHeader;
using ulogui::platform::MemoryDevice;

const CLR kBackground(9, 9, 9);

// Pixel (x, y) of a test picture: a colour that names its position.
CLR Marker(int x, int y) {
    return CLR(100 + x, 200 + y, 50);
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

// A device of distinct pixels and a picture of Marker pixels with transparencies across the range; both
// are kept after the call (showing an alpha picture composes it over the device in place).
struct DeviceScene {
    const char* name;
    int w, h, flags;  // of the picture
    std::function<void(ULOPictureBits&, MemoryDevice&)> show;
};

// Whole pictures and parts at their own place (no rectangle: the whole picture; no device: nothing), a
// rectangle past the picture clamped one short (an edge on the picture's own edge is not), alpha pixels
// composed over the device ((own * (255 - a) + device * a) >> 8, byte 3 kept; memory rows walked from
// bottom - top - 1 down to 0), and buffers with rows narrower than 32-bit ones, which are not shown
// unless a one-pixel 24-bit row is padded to four bytes.
TEST(SetToDeviceTest, PicturesAndDevicesMatchTheirGoldenImages) {
    const ULORect all(0, 0, 4, 3), lower(1, 1, 3, 3), big(-5, -5, 10, 10), fits(0, 0, 3, 2),
        topRow(0, 0, 4, 1);
    const auto at = [](const ULORect* rect, int x, int y) {
        return [=](ULOPictureBits& p, MemoryDevice& d) { p.SetToDevice(d.GetHDC(), rect, x, y); };
    };
    // clang-format off
    const DeviceScene scenes[] = {
        {"whole", 4, 3, 0, at(&all, 2, 2)},
        {"no rectangle", 4, 3, 0, at(nullptr, 0, 0)},
        {"lower part", 4, 3, 0, at(&lower, 4, 2)},
        {"no device", 4, 3, 0, [&](ULOPictureBits& p, MemoryDevice&) { p.SetToDevice(nullptr, &all, 0, 0); }},
        {"beyond", 3, 2, 0, at(&big, 0, 0)},
        {"fits", 3, 2, 0, at(&fits, 0, 0)},
        {"alpha", 4, 3, PICTBITS_ALPHA, at(nullptr, 2, 1)},
        {"alpha, top row", 4, 3, PICTBITS_ALPHA, at(&topRow, 0, 0)},
        {"alpha, lower part", 4, 3, PICTBITS_ALPHA, at(&lower, 1, 1)},
        {"mask", 8, 2, PICTBITS_MASK8, at(nullptr, 0, 0)},
        {"one 24-bit pixel", 1, 1, PICTBITS_RGB24, at(nullptr, 0, 0)},
    };
    // clang-format on
    std::vector<golden::Image> images;
    for (const DeviceScene& s : scenes) {
        ULOPictureBits picture(ULOSize(s.w, s.h), s.flags);
        const int size = picture.GetLineWidth(false) * s.h;
        std::memset(picture.GetBits(), 0, static_cast<size_t>(size));  // the row padding too
        for (int y = 0; y < s.h; ++y) {
            for (int x = 0; x < s.w; ++x) {
                picture.SetPixelAndAlpha(x, y, Marker(x, y), static_cast<unsigned char>(x * 85 + y * 40));
            }
        }
        MemoryDevice device(8, 6, kBackground);
        for (int i = 0; i < 48; ++i) {
            device.SetPixel(i % 8, i / 8, CLR(i * 5, 255 - i * 3, i * 11));
        }
        s.show(picture, device);
        images.push_back(
            {std::string(s.name) + " device", 8, 6, 4, {device.GetData(), device.GetData() + 192}});
        images.push_back({std::string(s.name) + " picture",
                          picture.GetLineWidth(false),
                          s.h,
                          1,
                          {picture.GetBits(), picture.GetBits() + size}});
    }
    golden::ExpectMatches("buffer/set-to-device", images);
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

// Writable blocks pass (the heap, nothing to write, different protections that split the block into
// separate mappings that are all writable); read-only pages, holes, null and negative sizes fail.
TEST_F(WritableMemoryTest, OnlyBlocksWritableThroughoutPass) {
    EXPECT_FALSE(IsBad(0, 4 * page_) || ULOPictureBits(ULOSize(16, 16), 0).IsBadBitsPtr() ||
                 ULOPictureBits().IsBadBitsPtr());
    ASSERT_TRUE(Protect(1, kWrite));
    EXPECT_FALSE(IsBad(page_ / 2, 2 * page_));
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
