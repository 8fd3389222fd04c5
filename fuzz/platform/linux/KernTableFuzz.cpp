// Fuzz target for the reader of a face's 'kern' table.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/linux/SfntFacts.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<uint8_t> table(data, data + size);  // exactly the input's size, for the sanitizers
    const auto pairs =
        ulogui::platform::ft::ParseKernTable(table.empty() ? nullptr : table.data(), table.size());
    int64_t sum = 0;
    for (const auto& pair : pairs) {
        sum += ulogui::platform::ft::ScaleKerning(pair.value, 21, 2048);
    }
    return sum == 0x7FFFFFFFFFFFFFFF ? 1 : 0;
}
