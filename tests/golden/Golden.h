#pragma once
// Golden images: byte-exact pictures of small drawings kept as hex text in tests/data/golden, one file
// per family, one block per named row. ULO_UPDATE_GOLDEN=1 rewrites the files on purpose; a mismatch
// names the row and its first differing pixel and writes the whole actual file beside the golden
// (<file>.actual). Only integer drawing is kept this way, so the files hold on every platform.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace golden {

struct Image {
    std::string name;
    int width = 0, height = 0, bytesPerPixel = 4;
    std::vector<unsigned char> bytes;  // top row first, no padding
};

// "name WxHxB" then one hex line per row.
inline std::string Block(const Image& image) {
    std::ostringstream out;
    out << image.name << ' ' << image.width << 'x' << image.height << 'x' << image.bytesPerPixel << '\n';
    const size_t rowBytes = static_cast<size_t>(image.width) * image.bytesPerPixel;
    for (size_t i = 0; i < image.bytes.size(); ++i) {
        char hex[3];
        std::snprintf(hex, sizeof hex, "%02x", image.bytes[i]);
        out << hex << ((i + 1) % rowBytes == 0 ? "\n" : "");
    }
    return out.str();
}

inline void ExpectMatches(const std::string& family, const std::vector<Image>& images) {
    const std::string path = std::string(ULO_TEST_DATA_DIR) + "/golden/" + family + ".txt";
    std::string all;
    for (const Image& image : images) {
        all += Block(image);
    }
    const char* update = std::getenv("ULO_UPDATE_GOLDEN");
    if (update != nullptr && std::string(update) == "1") {
        std::ofstream(path, std::ios::binary) << all;
        return;
    }
    std::map<std::string, std::string> stored;  // name -> its block
    std::ifstream in(path, std::ios::binary);
    ASSERT_TRUE(in) << path << " missing; ULO_UPDATE_GOLDEN=1 writes it";
    std::string line, name;
    while (std::getline(in, line)) {
        if (!line.empty() && line.find(' ') != std::string::npos) {
            name = line.substr(0, line.rfind(' '));
        }
        stored[name] += line + '\n';
    }
    bool same = true;
    for (const Image& image : images) {
        const std::string want = stored[image.name], got = Block(image);
        if (want != got) {
            same = false;
            size_t at = 0;
            while (at < want.size() && at < got.size() && want[at] == got[at]) {
                ++at;
            }
            ADD_FAILURE() << family << ": row \"" << image.name
                          << "\" differs from its golden at text offset " << at << "\nwant:\n"
                          << want << "got:\n"
                          << got;
        }
    }
    EXPECT_EQ(stored.size(), images.size()) << family << ": rows added or removed";
    if (!same) {
        std::ofstream(path + ".actual", std::ios::binary) << all;
    }
}

}  // namespace golden
