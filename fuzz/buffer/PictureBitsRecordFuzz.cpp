// Reads arbitrary bytes as a pixel buffer record. A record that is accepted must describe a buffer that
// every whole-buffer operation can work on, and must write back to the same record.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "ulogui/PictureBits.h"
#include "ulolib/Stream.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ULOMemoryStream stream(data, size);
    ULOPictureBits buffer;
    if (!buffer.Read(&stream)) {
        return 0;
    }
    // The block came from Read, which leaves the default buffer non-owning: it is ours to free.
    unsigned char* block = buffer.GetBits();

    ULOMemoryStream written;
    if (!buffer.Write(&written)) {
        std::abort();
    }
    ULOMemoryStream again(written.GetBuffer().data(), written.GetBuffer().size());
    ULOPictureBits copy;
    if (!copy.Read(&again) || copy.GetWidth(false) != buffer.GetWidth(false) ||
        copy.GetHeight(false) != buffer.GetHeight(false) ||
        copy.GetLineWidth(false) != buffer.GetLineWidth(false) ||
        copy.GetBytesPerPixel() != buffer.GetBytesPerPixel() || copy.GetFlags() != buffer.GetFlags()) {
        std::abort();
    }
    const size_t bytes =
        static_cast<size_t>(buffer.GetLineWidth(false)) * static_cast<size_t>(buffer.GetHeight(false));
    if (bytes != 0 && std::memcmp(copy.GetBits(), block, bytes) != 0) {
        std::abort();
    }
    std::free(copy.GetBits());

    buffer.Mirror(true, true);
    buffer.InvertAlpha();
    buffer.Fill(CLR(1, 2, 3), 4);
    if (buffer.GetWidth(false) > 0 && buffer.GetHeight(false) > 0) {
        unsigned char alpha = 0;
        buffer.GetPixelAndAlpha(buffer.GetWidth(false) - 1, 0, alpha);
        buffer.SetPixelAndAlpha(0, buffer.GetHeight(false) - 1, CLR(5, 6, 7), 8);
    }
    std::free(block);
    return 0;
}
