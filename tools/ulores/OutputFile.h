#pragma once
// A file that appears under its name only once it is complete: it is written to a temporary file
// beside it and renamed on Commit; if Commit is never reached the temporary file is removed, so an
// error never leaves a half-written output behind.
#include <cstdio>
#include <string>

namespace ulores {

class OutputFile {
public:
    // Throws ToolError when the temporary file cannot be created.
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    FILE* Stream() const { return file_; }
    // Flushes, closes and renames; throws ToolError on failure (the temporary file is then removed).
    void Commit();

private:
    std::string path_;
    std::string temporary_;
    FILE* file_ = nullptr;
};

}  // namespace ulores
