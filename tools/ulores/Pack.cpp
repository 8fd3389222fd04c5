#include <stdexcept>

#include "Commands.h"
#include "Manifest.h"
#include "OutputFile.h"
#include "ToolError.h"
#include "resfile/BitmapResourceWriter.h"

namespace ulores {

int PackBitmaps(const std::string& manifest, const std::string& output, std::ostream& out) {
    const std::vector<ulogui::resfile::PictureRecord> pictures = ReadManifest(manifest);
    std::vector<unsigned char> bytes;
    try {
        bytes = ulogui::resfile::BuildBitmapResourceFile(pictures);
    } catch (const std::exception& e) {
        throw ToolError(manifest + ": " + e.what());
    }
    OutputFile file(output);
    if (std::fwrite(bytes.data(), 1, bytes.size(), file.Stream()) != bytes.size()) {
        throw ToolError(output + ": cannot write the output file");
    }
    file.Commit();
    out << output << ": " << pictures.size() << " picture(s), " << bytes.size() << " bytes\n";
    return 0;
}

}  // namespace ulores
