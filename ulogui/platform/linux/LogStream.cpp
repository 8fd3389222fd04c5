// Linux: a wide write. Text and binary streams are the same, and the C library converts by the
// locale (the stream becomes wide-oriented, as the host's other wide writes expect).
#include "platform/LogStream.h"

#include <cwchar>

namespace ulogui {
namespace platform {

bool WriteLogText(const wchar_t* text, std::FILE* stream) {
    return std::fputws(text, stream) >= 0;
}

}  // namespace platform
}  // namespace ulogui
