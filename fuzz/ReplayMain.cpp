// Runs a fuzz target over every file of the folders (or files) named on the command line.
// Used where libFuzzer is not available, so CTest can replay the seed corpus.
#include <dirent.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

bool RunFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return false;
    }
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    return true;
}

int RunPath(const std::string& path) {
    struct stat st {};
    if (stat(path.c_str(), &st) != 0) {
        std::fprintf(stderr, "no such corpus: %s\n", path.c_str());
        return -1;
    }
    if (!S_ISDIR(st.st_mode)) {
        return RunFile(path) ? 1 : -1;
    }
    DIR* dir = opendir(path.c_str());
    if (!dir) {
        return -1;
    }
    int count = 0;
    while (dirent* entry = readdir(dir)) {
        std::string name = entry->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        int n = RunPath(path + "/" + name);
        if (n < 0) {
            count = -1;
            break;
        }
        count += n;
    }
    closedir(dir);
    return count;
}

}  // namespace

int main(int argc, char** argv) {
    // An empty input first: every target must cope with it.
    LLVMFuzzerTestOneInput(nullptr, 0);
    int total = 0;
    for (int i = 1; i < argc; ++i) {
        int n = RunPath(argv[i]);
        if (n < 0) {
            return 1;
        }
        total += n;
    }
    std::printf("replayed %d inputs\n", total);
    return 0;
}
