#pragma once
// A private temporary folder for files a test writes, removed with everything in it.
#include <cstdint>
#include <string>
#include <vector>

namespace testfonts {

class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& Path() const { return path_; }
    // Writes bytes to a file of the folder and returns its full path.
    std::string Write(const std::string& name, const std::vector<uint8_t>& bytes) const;

private:
    std::string path_;
};

}  // namespace testfonts
