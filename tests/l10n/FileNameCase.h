#pragma once
// Whether the file system tells names apart by case, found out rather than assumed from the system:
// Linux's usually do, Windows' (and Wine's view of any folder) do not, and the library finds files as
// the file system does.
#include <filesystem>

#include "ulolib/TempDir.h"

inline bool NamesAreCaseSensitive(const TempDir& dir) {
    dir.Write("case-probe");
    const bool sensitive = !std::filesystem::exists(dir.Root() / "CASE-PROBE");
    dir.Remove("case-probe");
    return sensitive;
}
