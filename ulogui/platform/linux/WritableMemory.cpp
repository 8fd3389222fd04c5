// Linux: the kernel lists the process's mappings with their protections in /proc/self/maps, one line
// per mapping in increasing address order ("start-end perms offset dev inode path", addresses in hex).
// A range is writable when consecutive mappings with the 'w' permission cover it without a gap.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/WritableMemory.h"

namespace ulogui {
namespace platform {

namespace {

bool ReadMaps(std::string& text) {
    const int fd = ::open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    char chunk[16384];
    bool ok = true;
    for (;;) {
        const ssize_t n = ::read(fd, chunk, sizeof chunk);
        if (n > 0) {
            text.append(chunk, static_cast<size_t>(n));
        } else if (n == 0) {
            break;
        } else if (errno != EINTR) {
            ok = false;
            break;
        }
    }
    ::close(fd);
    return ok;
}

struct Mapping {
    uintptr_t start = 0;
    uintptr_t end = 0;
    bool writable = false;
};

// Parses "start-end perms" at the beginning of a line; false for a line of another shape.
bool ParseMapping(const char* line, Mapping& mapping) {
    char* next = nullptr;
    mapping.start = static_cast<uintptr_t>(std::strtoull(line, &next, 16));
    if (*next != '-') {
        return false;
    }
    mapping.end = static_cast<uintptr_t>(std::strtoull(next + 1, &next, 16));
    if (*next != ' ' || next[1] == '\0' || next[2] == '\0') {
        return false;
    }
    mapping.writable = next[2] == 'w';
    return true;
}

}  // namespace

bool IsWritableRange(const void* p, size_t size) {
    if (size == 0) {
        return true;
    }
    const uintptr_t begin = reinterpret_cast<uintptr_t>(p);
    const uintptr_t end = begin + size;
    if (end < begin) {
        return false;
    }
    std::string maps;
    if (!ReadMaps(maps)) {
        return false;
    }
    uintptr_t covered = begin;  // everything below is known to be writable
    size_t lineStart = 0;
    while (lineStart < maps.size()) {
        size_t lineEnd = maps.find('\n', lineStart);
        if (lineEnd == std::string::npos) {
            lineEnd = maps.size();
        }
        Mapping mapping;
        const std::string line = maps.substr(lineStart, lineEnd - lineStart);
        lineStart = lineEnd + 1;
        if (!ParseMapping(line.c_str(), mapping) || mapping.end <= covered) {
            continue;
        }
        if (mapping.start > covered || !mapping.writable) {
            return false;  // a hole, or a mapping that may not be written
        }
        covered = mapping.end;
        if (covered >= end) {
            return true;
        }
    }
    return false;
}

}  // namespace platform
}  // namespace ulogui
