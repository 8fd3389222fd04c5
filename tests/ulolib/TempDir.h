#pragma once
// A folder of its own for one test, removed with everything in it afterwards.
#include <ftw.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>

#include "ulolib/Path.h"

class TempDir {
public:
    TempDir() {
        const char* base = getenv("TMPDIR");
        std::string pattern = std::string(base && *base ? base : "/tmp") + "/ulolib-test-XXXXXX";
        if (mkdtemp(&pattern[0])) {
            path_ = pattern;
        }
        EXPECT_FALSE(path_.empty()) << "cannot create a temporary folder";
    }
    ~TempDir() {
        if (!path_.empty()) {
            nftw(
                path_.c_str(),
                [](const char* p, const struct stat*, int, struct FTW*) { return ::remove(p); }, 16,
                FTW_DEPTH | FTW_PHYS);
        }
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    ULOPath Path() const { return ULOPath::FromNative(path_); }

private:
    std::string path_;
};
