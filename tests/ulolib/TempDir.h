#pragma once
// A folder of its own for one test, removed with everything in it afterwards.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "ulolib/Path.h"

class TempDir {
public:
    TempDir() {
        // A new folder of a random name: creating it fails when it exists, so it is this test's own.
        std::random_device random;
        for (int attempt = 0; attempt < 100 && root_.empty(); ++attempt) {
            const auto candidate =
                std::filesystem::temp_directory_path() / ("ulo-test-" + std::to_string(random()));
            std::error_code error;
            if (std::filesystem::create_directory(candidate, error)) {
                root_ = candidate;
            }
        }
        EXPECT_FALSE(root_.empty()) << "cannot create a temporary folder";
    }
    ~TempDir() {
        std::error_code ignored;  // also when no folder was made
        std::filesystem::remove_all(root_, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& Root() const { return root_; }
    ULOPath Path() const { return ULOPath::FromNative(root_.u8string()); }

    // Relative to the folder, in UTF-8: writes a file (making its folders) and gives its path, makes a
    // folder, removes an entry.
    std::string Write(const std::string& relative, const std::string& content = "x") const {
        std::filesystem::create_directories(At(relative).parent_path());
        std::ofstream(At(relative), std::ios::binary) << content;
        return At(relative).u8string();
    }
    void MakeDir(const std::string& relative) const { std::filesystem::create_directories(At(relative)); }
    void Remove(const std::string& relative) const { std::filesystem::remove(At(relative)); }

private:
    std::filesystem::path At(const std::string& relative) const {
        return root_ / std::filesystem::u8path(relative);
    }

    std::filesystem::path root_;
};
