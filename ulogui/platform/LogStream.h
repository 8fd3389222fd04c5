#pragma once
// Wide text written to a standard-I/O stream that the host opened, byte for byte the same file on
// every system.
#include <cstdio>

namespace ulogui {
namespace platform {

// Writes text to stream (the arguments in fputws's order) as fputws does on Linux: each character converted
// by the LC_CTYPE locale, every character as it stands (a "\r\n" in the text is CR LF in the file, a lone
// "\n" is LF), whatever mode the host opened the stream in. False when the stream reports an error.
bool WriteLogText(const wchar_t* text, std::FILE* stream);

}  // namespace platform
}  // namespace ulogui
