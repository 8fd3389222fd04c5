#pragma once
// A fresh folder under the system's temporary directory, removed with everything in it.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "ulolib/Path.h"

namespace ulo_test {

class TempDir {
public:
    TempDir() {
        std::string pattern = (std::filesystem::temp_directory_path() / "ulo-l10n-XXXXXX").string();
        if (!mkdtemp(pattern.data())) {
            ADD_FAILURE() << "mkdtemp failed";
        }
        root_ = pattern;
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& Root() const { return root_; }
    ULOPath Path() const { return ULOPath::FromNative(root_.string()); }

    // Writes a file (creating its folders) relative to the root.
    void Write(const std::string& relative, const std::string& content = "x") const {
        const std::filesystem::path file = root_ / relative;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
    }
    void MakeDir(const std::string& relative) const { std::filesystem::create_directories(root_ / relative); }
    void Remove(const std::string& relative) const { std::filesystem::remove(root_ / relative); }

private:
    std::filesystem::path root_;
};

}  // namespace ulo_test
