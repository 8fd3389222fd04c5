// Windows: the C runtime's fputws depends on the stream's mode. On a text stream (fopen "w") it writes
// each LF as CR LF, so a "\r\n" in the text becomes CR CR LF; on a binary one it writes UTF-16 units.
// Either file differs from the Linux one. So the text is converted by the locale here, as the text
// mode would convert it, and written as bytes with the stream switched to binary for the write and
// back to its own mode afterwards. A character the locale cannot convert is written as "?".
#include <fcntl.h>
#include <io.h>

#include <cwchar>
#include <string>

#include "platform/LogStream.h"

namespace ulogui {
namespace platform {

bool WriteLogText(const wchar_t* text, std::FILE* stream) {
    std::string bytes;
    std::mbstate_t state{};
    char converted[MB_LEN_MAX];
    for (const wchar_t* c = text; *c != L'\0'; ++c) {
        const size_t n = std::wcrtomb(converted, *c, &state);
        if (n == static_cast<size_t>(-1)) {
            bytes += '?';
            state = std::mbstate_t{};
        } else {
            bytes.append(converted, n);
        }
    }
    // The mode may change only between flushed writes.
    if (std::fflush(stream) != 0) {
        return false;
    }
    const int descriptor = _fileno(stream);
    const int previous = descriptor >= 0 ? _setmode(descriptor, _O_BINARY) : -1;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
    const bool flushed = std::fflush(stream) == 0;
    if (previous != -1) {
        _setmode(descriptor, previous);
    }
    return written && flushed;
}

}  // namespace platform
}  // namespace ulogui
