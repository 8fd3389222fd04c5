// Fuzz target for the font resource file reader: the input is a whole file image, looked up by a
// few font IDs (including one taken from the input) and parsed as a bare record.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "resfile/FontRecord.h"
#include "resfile/FontResourceWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // A copy of exactly the input's size, so that a sanitizer catches any read past its end.
    std::vector<uint8_t> image(data, data + size);
    const uint8_t* bytes = image.empty() ? nullptr : image.data();
    ulogui::resfile::FontRecord record;
    uint32_t fromInput = 0;
    if (size >= 4) {
        std::memcpy(&fromInput, bytes + size - 4, 4);
    }
    for (uint32_t id : {0u, 1u, 2u, 63u, fromInput, 0x3FFFFFC0u, 0xFFFFFFFFu}) {
        ulogui::resfile::ReadFontRecord(bytes, size, id, record);
    }
    ulogui::resfile::ParseFontRecord(bytes, size, record);
    ulogui::resfile::FontTableSizeFromHeader(bytes, size);
    return 0;
}
