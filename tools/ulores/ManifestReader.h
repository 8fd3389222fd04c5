#pragma once
// What the picture and font manifests share: loading the XML file, numeric attributes checked against
// their range, and failures that name the manifest and the line.
#include <tinyxml.h>

#include <string>
#include <utility>

namespace ulores {

class ManifestReader {
public:
    explicit ManifestReader(std::string manifest) : manifest_(std::move(manifest)) {}

    // Throws ToolError "<manifest>:<line>: <prefix><what>".
    [[noreturn]] void Fail(const TiXmlElement* at, const std::string& what) const;
    // Put before every later message, e.g. the record being read; empty for none.
    void SetPrefix(const std::string& prefix) { prefix_ = prefix; }

    // The attribute `name` as a number from `low` to `high` (decimal, 0x hex or 0 octal); `fallback`
    // when it is absent, unless it is `required`.
    long Integer(const TiXmlElement* e, const char* name, long fallback, long low, long high,
                 bool required = false) const;

private:
    std::string manifest_;
    std::string prefix_;
};

// Loads the manifest at `path` into `document` and returns its root element, which must be <rootName>.
// Throws ToolError when the file cannot be opened, is not well-formed or has another root.
const TiXmlElement* LoadManifest(TiXmlDocument& document, const std::string& path, const char* rootName,
                                 TiXmlEncoding encoding);

}  // namespace ulores
