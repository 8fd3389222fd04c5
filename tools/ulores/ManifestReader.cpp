#include "ManifestReader.h"

#include <cerrno>
#include <cstdlib>

#include "ToolError.h"

namespace ulores {

void ManifestReader::Fail(const TiXmlElement* at, const std::string& what) const {
    throw ToolError(manifest_ + ":" + std::to_string(at->Row()) + ": " + prefix_ + what);
}

long ManifestReader::Integer(const TiXmlElement* e, const char* name, long fallback, long low, long high,
                             bool required) const {
    const char* text = e->Attribute(name);
    if (text == nullptr) {
        if (required) {
            Fail(e, std::string("<") + e->Value() + "> needs the attribute " + name);
        }
        return fallback;
    }
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text, &end, 0);
    if (errno != 0 || end == text || *end != '\0' || value < low || value > high) {
        Fail(e, std::string("the attribute ") + name + "=\"" + text + "\" is not a number from " +
                    std::to_string(low) + " to " + std::to_string(high));
    }
    return value;
}

const TiXmlElement* LoadManifest(TiXmlDocument& document, const std::string& path, const char* rootName,
                                 TiXmlEncoding encoding) {
    if (!document.LoadFile(path.c_str(), encoding)) {
        if (document.ErrorId() == TiXmlBase::TIXML_ERROR_OPENING_FILE) {
            throw ToolError(path + ": cannot open the manifest");
        }
        throw ToolError(path + ":" + std::to_string(document.ErrorRow()) +
                        ": not well-formed XML: " + document.ErrorDesc());
    }
    const TiXmlElement* root = document.RootElement();
    if (root == nullptr || std::string(root->Value()) != rootName) {
        throw ToolError(path + ": the root element must be <" + rootName + ">");
    }
    return root;
}

}  // namespace ulores
