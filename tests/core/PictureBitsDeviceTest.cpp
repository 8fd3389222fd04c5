// Showing buffers on a device (through the memory framebuffer) and the writable-memory check.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <vector>

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

ULOPictureBits MarkedPicture(int width, int height, int flags, unsigned char alpha = 0) {
    ULOPictureBits b(ULOSize(width, height), flags);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            b.SetPixelAndAlpha(x, y, Marker(x, y), alpha);
        }
    }
    return b;
}

// Which device pixels differ from the background, as a picture of '.' and 'x' rows.
std::vector<std::string> Changed(const MemoryDevice& device) {
    std::vector<std::string> rows;
    for (int y = 0; y < device.GetHeight(); ++y) {
        std::string row;
        for (int x = 0; x < device.GetWidth(); ++x) {
            row += device.GetPixel(x, y) == kBackground ? '.' : 'x';
        }
        rows.push_back(row);
    }
    return rows;
}

// Records the copy request instead of carrying it out.
class RecordingDevice : public ulogui::platform::Device {
public:
    CLR GetPixel(int, int) const override { return CLR(0, 0, 0); }
    int CopyBits(int dx, int dy, int w, int h, int sx, int sy, int start, int lines, const void* bits,
                 const BitmapInfoHeader& header, unsigned colorUse) override {
        ++calls;
        destX = dx, destY = dy, width = w, height = h, srcX = sx, srcY = sy, startScan = start,
        scanLines = lines;
        lastBits = bits;
        lastHeader = header;
        lastColorUse = colorUse;
        return h;
    }
    int calls = 0;
    int destX = 0, destY = 0, width = 0, height = 0, srcX = 0, srcY = 0, startScan = -1, scanLines = 0;
    const void* lastBits = nullptr;
    BitmapInfoHeader lastHeader;
    unsigned lastColorUse = 99;
};

TEST(MemoryDeviceTest, PixelsAndBounds) {
    MemoryDevice device(3, 2, kBackground);
    EXPECT_EQ(device.GetPixel(2, 1), kBackground);
    device.SetPixel(1, 0, CLR(1, 2, 3));
    EXPECT_EQ(device.GetPixel(1, 0), CLR(1, 2, 3));
    const unsigned char* top = device.GetData();
    EXPECT_EQ(std::vector<unsigned char>(top + 4, top + 8),
              (std::vector<unsigned char>{3, 2, 1, 0}));  // top-down
    device.SetPixel(3, 0, CLR(1, 2, 3));                  // ignored
    EXPECT_EQ(device.GetPixel(-1, 0), CLR(255, 255, 255));
    EXPECT_EQ(device.GetPixel(0, 2), CLR(255, 255, 255));
    EXPECT_EQ(MemoryDevice(-4, 5).GetWidth(), 0);
}

TEST(MemoryDeviceTest, CopyUsesOnlyTheScanLinesGiven) {
    // A 2 x 3 bottom-up image of which only rows 1 and 2 (from the bottom) are handed over.
    const unsigned char rows[2][8] = {{1, 1, 1, 0, 2, 2, 2, 0}, {3, 3, 3, 0, 4, 4, 4, 0}};
    BitmapInfoHeader header;
    header.width = 2;
    header.height = 3;
    MemoryDevice device(2, 3, kBackground);
    EXPECT_EQ(device.CopyBits(0, 0, 2, 3, 0, 0, 1, 2, rows, header, 0), 2);
    EXPECT_EQ(device.GetPixel(0, 0), CLR(3, 3, 3));  // image row 2 is the top
    EXPECT_EQ(device.GetPixel(1, 1), CLR(2, 2, 2));
    EXPECT_EQ(device.GetPixel(0, 2), kBackground);  // image row 0 was not given
    header.bitCount = 24;
    EXPECT_EQ(device.CopyBits(0, 0, 2, 3, 0, 0, 1, 2, rows, header, 0), 0);
}

TEST(SetToDeviceTest, WholePictureAtAnOrigin) {
    ULOPictureBits picture = MarkedPicture(3, 2, 0, 255);  // alpha ignored without the flag
    MemoryDevice device(6, 5, kBackground);
    const ULORect whole(0, 0, 3, 2);
    picture.SetToDevice(&device, &whole, 2, 3);
    EXPECT_EQ(Changed(device), (std::vector<std::string>{"......", "......", "......", "..xxx.", "..xxx."}));
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 3; ++x) {
            EXPECT_EQ(device.GetPixel(2 + x, 3 + y), Marker(x, y)) << x << "," << y;
        }
    }
    // No rectangle means the whole picture.
    MemoryDevice second(3, 2, kBackground);
    picture.SetToDevice(&second, nullptr, 0, 0);
    EXPECT_EQ(second.GetPixel(2, 1), Marker(2, 1));
    picture.SetToDevice(nullptr, &whole, 0, 0);  // no device: nothing happens
}

TEST(SetToDeviceTest, PartOfThePictureGoesToItsOwnPlace) {
    ULOPictureBits picture = MarkedPicture(4, 3, 0);
    MemoryDevice device(8, 6, kBackground);
    const ULORect part(1, 1, 3, 3);  // columns 1-2 of the two lower rows
    picture.SetToDevice(&device, &part, 4, 2);
    EXPECT_EQ(Changed(device), (std::vector<std::string>{"........", "........", "........", ".....xx.",
                                                         ".....xx.", "........"}));
    EXPECT_EQ(device.GetPixel(5, 3), Marker(1, 1));
    EXPECT_EQ(device.GetPixel(6, 4), Marker(2, 2));

    RecordingDevice recorder;
    picture.SetToDevice(&recorder, &part, 4, 2);
    EXPECT_EQ(recorder.destX, 5);
    EXPECT_EQ(recorder.destY, 3);
    EXPECT_EQ(recorder.width, 2);
    EXPECT_EQ(recorder.height, 2);
    EXPECT_EQ(recorder.srcX, 1);
    EXPECT_EQ(recorder.srcY, 0);  // height - bottom, counted from the bottom row
    EXPECT_EQ(recorder.startScan, 0);
    EXPECT_EQ(recorder.scanLines, 3);
    EXPECT_EQ(recorder.lastBits, picture.GetBits());
    EXPECT_EQ(recorder.lastHeader.height, 3);  // positive: bottom-up
    EXPECT_EQ(recorder.lastHeader.xPelsPerMeter, 1000);
}

TEST(SetToDeviceTest, RectangleBeyondThePictureClampsOneShort) {
    ULOPictureBits picture = MarkedPicture(3, 2, 0);
    MemoryDevice device(5, 4, kBackground);
    const ULORect beyond(-5, -5, 10, 10);
    picture.SetToDevice(&device, &beyond, 0, 0);
    // right becomes width - 1 and bottom height - 1: two columns of the top row only.
    EXPECT_EQ(Changed(device), (std::vector<std::string>{"xx...", ".....", ".....", "....."}));
    EXPECT_EQ(device.GetPixel(1, 0), Marker(1, 0));

    MemoryDevice exact(5, 4, kBackground);
    const ULORect fits(0, 0, 3, 2);  // an edge on the picture's own edge is not clamped
    picture.SetToDevice(&exact, &fits, 0, 0);
    EXPECT_EQ(Changed(exact), (std::vector<std::string>{"xxx..", "xxx..", ".....", "....."}));
}

TEST(SetToDeviceTest, AlphaPixelsAreComposedOverTheDevice) {
    ULOPictureBits picture(ULOSize(3, 1), PICTBITS_ALPHA);
    picture.SetPixelAndAlpha(0, 0, CLR(200, 100, 50), 0);
    picture.SetPixelAndAlpha(1, 0, CLR(200, 100, 40), 128);
    picture.SetPixelAndAlpha(2, 0, CLR(200, 100, 40), 255);
    MemoryDevice device(6, 2, kBackground);
    device.SetPixel(3, 1, CLR(10, 20, 30));  // what lies under pixel 1 at origin (2, 1)
    device.SetPixel(4, 1, CLR(200, 100, 0));
    const ULORect whole(0, 0, 3, 1);
    picture.SetToDevice(&device, &whole, 2, 1);
    unsigned char alpha = 0;
    EXPECT_EQ(picture.GetPixelAndAlpha(0, 0, alpha), CLR(200, 100, 50));  // opaque: untouched
    EXPECT_EQ(alpha, 0);
    // (own * 127 + device * 128) >> 8: red 26680 >> 8, green 15260 >> 8, blue 8920 >> 8.
    EXPECT_EQ(picture.GetPixelAndAlpha(1, 0, alpha), CLR(104, 59, 34));
    EXPECT_EQ(alpha, 128);                               // byte 3 is kept
    EXPECT_EQ(picture.GetPixel(2, 0), CLR(199, 99, 0));  // device * 255 >> 8, not the device itself
    EXPECT_EQ(device.GetPixel(2, 1), CLR(200, 100, 50));
    EXPECT_EQ(device.GetPixel(3, 1), CLR(104, 59, 34));
    EXPECT_EQ(device.GetPixel(4, 1), CLR(199, 99, 0));
}

// The composition walks memory rows from bottom - top - 1 down to 0, which are the rows sent only when
// the rectangle reaches the bottom edge; above it, the rows nearest the bottom are composed instead.
TEST(SetToDeviceTest, CompositionCountsMemoryRowsFromTheRectanglesHeight) {
    ULOPictureBits picture(ULOSize(1, 2), PICTBITS_ALPHA);
    picture.SetPixelAndAlpha(0, 0, CLR(0, 0, 0), 255);
    picture.SetPixelAndAlpha(0, 1, CLR(0, 0, 0), 255);
    MemoryDevice device(1, 2, CLR(100, 100, 100));
    const ULORect topRow(0, 0, 1, 1);
    picture.SetToDevice(&device, &topRow, 0, 0);
    EXPECT_EQ(picture.GetPixel(0, 0), CLR(0, 0, 0));     // the row that was sent is not composed
    EXPECT_EQ(picture.GetPixel(0, 1), CLR(99, 99, 99));  // memory row 0, the bottom row, is
    EXPECT_EQ(device.GetPixel(0, 0), CLR(0, 0, 0));
}

TEST(SetToDeviceTest, BuffersNarrowerThan32BitRowsAreNotShown) {
    // The device reads width * 4 bytes a row; a mask buffer's rows are shorter, so nothing is sent
    // (the sanitizer build would catch a read past the block).
    ULOPictureBits mask(ULOSize(8, 2), PICTBITS_MASK8);
    mask.Fill(CLR(0, 0, 0), 1);
    MemoryDevice device(8, 2, kBackground);
    mask.SetToDevice(&device, nullptr, 0, 0);
    EXPECT_EQ(Changed(device), (std::vector<std::string>{"........", "........"}));
    // A one-pixel-wide 24-bit row is padded to four bytes and goes as a 32-bit pixel.
    ULOPictureBits rgb(ULOSize(1, 1), PICTBITS_RGB24);
    rgb.Fill(CLR(1, 2, 3), 0);
    rgb.SetToDevice(&device, nullptr, 0, 0);
    EXPECT_EQ(device.GetPixel(0, 0), CLR(1, 2, 3));
}

class WritableMemoryTest : public ::testing::Test {
protected:
    void SetUp() override {
        page_ = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        void* block = mmap(nullptr, 4 * page_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        ASSERT_NE(block, MAP_FAILED);
        block_ = static_cast<unsigned char*>(block);
    }
    void TearDown() override { munmap(block_, 4 * page_); }

    // A buffer over `bytes` bytes from `offset` (one row).
    bool IsBad(size_t offset, size_t bytes) const {
        return ULOPictureBits(block_ + offset, static_cast<int>(bytes / 4), 1, static_cast<int>(bytes), 0)
            .IsBadBitsPtr();
    }

    size_t page_ = 0;
    unsigned char* block_ = nullptr;
};

TEST_F(WritableMemoryTest, WritableBlocksPass) {
    EXPECT_FALSE(IsBad(0, 4 * page_));
    EXPECT_FALSE(ULOPictureBits(ULOSize(16, 16), 0).IsBadBitsPtr());  // heap
    std::vector<unsigned char> vec(64);
    EXPECT_FALSE(ULOPictureBits(vec.data(), 4, 4, 16, 0).IsBadBitsPtr());
}

TEST_F(WritableMemoryTest, ReadOnlyPagesAndHolesFail) {
    ASSERT_EQ(mprotect(block_ + 2 * page_, page_, PROT_READ), 0);
    EXPECT_FALSE(IsBad(0, 2 * page_));
    EXPECT_TRUE(IsBad(0, 3 * page_));
    EXPECT_TRUE(IsBad(2 * page_ + 64, 64));
    EXPECT_TRUE(IsBad(2 * page_ - 4, 8));  // straddles into the read-only page
    ASSERT_EQ(mprotect(block_ + 2 * page_, page_, PROT_NONE), 0);
    EXPECT_TRUE(IsBad(2 * page_, 4));
    ASSERT_EQ(mprotect(block_ + 2 * page_, page_, PROT_READ | PROT_WRITE), 0);
    ASSERT_EQ(munmap(block_ + page_, page_), 0);  // a hole in the middle
    EXPECT_TRUE(IsBad(0, 2 * page_));
    EXPECT_FALSE(IsBad(2 * page_, 2 * page_));
}

TEST_F(WritableMemoryTest, AdjacentWritableMappingsJoin) {
    // Different protections split the block into separate mappings that are all writable.
    ASSERT_EQ(mprotect(block_ + page_, page_, PROT_WRITE), 0);
    EXPECT_FALSE(IsBad(page_ / 2, 2 * page_));
}

TEST(IsBadBitsPtrTest, NullAndEmptyBlocks) {
    EXPECT_FALSE(ULOPictureBits().IsBadBitsPtr());  // nothing to write
    EXPECT_TRUE(ULOPictureBits(nullptr, 4, 4, 16, 0).IsBadBitsPtr());
    std::vector<unsigned char> vec(16);
    EXPECT_TRUE(ULOPictureBits(vec.data(), 4, 1, -16, 0).IsBadBitsPtr());  // a negative size
}

}  // namespace
