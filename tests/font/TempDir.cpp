#include "TempDir.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace testfonts {

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ulofont-XXXXXX").string();
    if (char* made = mkdtemp(pattern.data())) {
        path_ = made;
    }
}

TempDir::~TempDir() {
    std::error_code ignored;
    if (!path_.empty()) {
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
}

std::string TempDir::Write(const std::string& name, const std::vector<uint8_t>& bytes) const {
    const std::string file = path_ + "/" + name;
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return file;
}

}  // namespace testfonts
