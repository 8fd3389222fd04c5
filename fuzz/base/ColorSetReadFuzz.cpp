// Feeds arbitrary bytes to ULOGUIColorSet::Read and checks what a reader may rely on: a failed read
// leaves the palette alone and never consumes more than 205 bytes; a good one applies exactly the set
// it read, and writing that set back gives the 205 bytes it came from.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "ulogui/ColorSet.h"
#include "ulolib/Stream.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ULOGUIColorSet before;
    ULOGUIColorSet::GetCurrentSet(before);

    ULOMemoryStream stream(data, size);
    ULOGUIColorSet set;
    const bool ok = set.Read(&stream, true);
    if (stream.GetPosition() > 205) {
        abort();
    }

    ULOGUIColorSet after;
    ULOGUIColorSet::GetCurrentSet(after);
    if (!ok) {
        if (after != before) {
            abort();
        }
        return 0;
    }
    if (size < 205 || after != set) {
        abort();
    }
    ULOMemoryStream written;
    if (!set.Write(&written) || written.GetBuffer().size() != 205 ||
        std::memcmp(written.GetBuffer().data(), data, 205) != 0) {
        abort();
    }
    before.ApplyToCurrent();  // each input starts from the same palette
    return 0;
}
