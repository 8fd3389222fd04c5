#include "ulolib/Xml.h"

#include <cstdio>
#include <memory>
#include <string>

namespace {

struct FileCloser {
    void operator()(FILE* f) const { std::fclose(f); }
};

bool ReadWholeFile(const ULOPath& path, std::string& bytes) {
    std::unique_ptr<FILE, FileCloser> file(ULOOpenFile(path, "rb"));
    if (!file) {
        return false;
    }
    char block[16384];
    for (;;) {
        const size_t n = std::fread(block, 1, sizeof block, file.get());
        bytes.append(block, n);
        if (n < sizeof block) {
            return !std::ferror(file.get());
        }
    }
}

// The parse shared by both entries: bytes holds the whole document.
bool ParseBytes(TiXmlDocument& document, const std::string& bytes) {
    // TinyXML stops at the first zero byte; such a file is not XML anyway.
    document.Parse(bytes.c_str(), nullptr, TIXML_ENCODING_UNKNOWN);
    return !document.Error();
}

}  // namespace

bool ULOOpenXml(TiXmlDocument& document, const ULOPath& path) {
    document.Clear();
    document.ClearError();
    document.SetValue(path.native().c_str());
    std::string bytes;
    try {
        if (!ReadWholeFile(path, bytes)) {
            return false;
        }
    } catch (const std::bad_alloc&) {
        return false;
    }
    return ParseBytes(document, bytes);
}

bool ULOParseXml(TiXmlDocument& document, const char* bytes, size_t size) {
    document.Clear();
    document.ClearError();
    std::string text;
    try {
        if (size != 0) {
            text.assign(bytes, size);
        }
    } catch (const std::bad_alloc&) {
        return false;
    }
    return ParseBytes(document, text);
}
