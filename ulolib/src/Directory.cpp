#include "ulolib/Directory.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <unistd.h>
#endif

#include <string>
#include <vector>

#include "ulolib/CriticalSection.h"

struct Directory::State {
    ulo::CriticalSection lock;
    ULOPath applicationDirectory;
};

namespace {

#if defined(_WIN32)
// The folder of the running executable; the working folder when Windows does not say.
ULOPath FindApplicationDirectory() {
    std::vector<wchar_t> buffer(MAX_PATH);
    for (;;) {
        const DWORD n = ::GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
        if (n == 0) {
            break;
        }
        if (n < buffer.size()) {
            return ULOPath(ULOString(buffer.data(), n)).parent_path();
        }
        if (buffer.size() >= (size_t(1) << 16)) {
            break;  // longer than any Windows path
        }
        buffer.resize(buffer.size() * 2);  // the name was cut short
    }
    std::vector<wchar_t> cwd(32768);
    const DWORD n = ::GetCurrentDirectoryW(static_cast<DWORD>(cwd.size()), cwd.data());
    if (n > 0 && n < cwd.size()) {
        return ULOPath(ULOString(cwd.data(), n));
    }
    return ULOPath(L".");
}
#else
// The folder of the running executable; the working folder when the kernel does not say.
ULOPath FindApplicationDirectory() {
    std::vector<char> buffer(256);
    for (;;) {
        const ssize_t n = readlink("/proc/self/exe", buffer.data(), buffer.size());
        if (n < 0) {
            break;
        }
        if (static_cast<size_t>(n) < buffer.size()) {
            return ULOPath::FromNative(std::string(buffer.data(), static_cast<size_t>(n))).parent_path();
        }
        if (buffer.size() >= (size_t(1) << 20)) {
            break;
        }
        buffer.resize(buffer.size() * 2);  // the name may have been cut short
    }
    std::vector<char> cwd(4096);
    if (getcwd(cwd.data(), cwd.size())) {
        return ULOPath::FromNative(cwd.data());
    }
    return ULOPath(L".");
}
#endif

}  // namespace

Directory::Directory() : state_(new State) {
    state_->applicationDirectory = FindApplicationDirectory();
}

boost::shared_ptr<Directory> Directory::create() {
    static const boost::shared_ptr<Directory> instance(new Directory());
    return instance;
}

ULOPath Directory::GetApplicationDirectory() const {
    ulo::SingleLock lock(state_->lock);
    return state_->applicationDirectory;
}

void Directory::SetApplicationDirectory(const ULOPath& path) {
    ulo::SingleLock lock(state_->lock);
    state_->applicationDirectory = path;
}
