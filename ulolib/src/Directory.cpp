#include "ulolib/Directory.h"

#include <unistd.h>

#include <string>
#include <vector>

#include "ulolib/CriticalSection.h"

struct Directory::State {
    ulo::CriticalSection lock;
    ULOPath applicationDirectory;
};

namespace {

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
