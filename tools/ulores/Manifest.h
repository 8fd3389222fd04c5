#pragma once
// The manifest of the resource builder: an XML file listing the pictures to pack (see
// docs/bitmap-resource-file.md).
//
//   <bitmaps>
//     <picture id="12" format="alpha32" parts="2">
//       <version file="button-16.png"/>            the parts side by side in one PNG
//       <version bit="2">                            or one PNG per part
//         <part file="button-32-normal.png"/>
//         <part file="button-32-hot.png"/>
//       </version>
//     </picture>
//   </bitmaps>
#include <string>
#include <vector>

#include "resfile/BitmapResourceWriter.h"

namespace ulores {

// Reads the manifest and every PNG it names (relative to the manifest's folder). Throws ToolError
// naming the manifest, the line and the picture (and the PNG file) at the first problem.
std::vector<ulogui::resfile::PictureRecord> ReadManifest(const std::string& path);

}  // namespace ulores
