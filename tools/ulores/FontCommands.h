#pragma once
// The font commands of the resource builder (see docs/fonts.md). Each returns the exit code and
// throws ToolError on failure.
//
//   <fonts>
//     <font id="0" face="Tahoma" height="11"/>                      the other fields take defaults
//     <font id="2" face="MS UI Gothic" height="12" weight="700" italic="1" underline="0"
//           strikeout="0" family="0x20" pitch="2" name="Caption" ignoreHeightExt="0" heightExt="14">
//       <alternative face="Meiryo UI"/>                             in order of preference
//       <alternative face="Tahoma"/>
//     </font>
//   </fonts>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "resfile/FontRecord.h"

namespace ulores {

// The records of a font manifest, indexed by font ID (IDs without a <font> are empty). Throws
// ToolError naming the manifest, the line and the problem.
std::vector<std::optional<ulogui::resfile::FontRecord>> ReadFontManifest(const std::string& path);

// Builds a font resource file from a manifest.
int PackFonts(const std::string& manifest, const std::string& output, std::ostream& out);

// Whether a file starts like a font resource file written by PackFonts.
bool IsFontResourceFile(const std::string& path);

// Lists the table and every record of a font resource file; 1 when a record is damaged.
int DumpFonts(const std::string& path, std::ostream& out);

}  // namespace ulores
