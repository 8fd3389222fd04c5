#pragma once
// The commands of the resource builder. Each returns the exit code and throws ToolError on failure.
#include <ostream>
#include <string>

namespace ulores {

// Builds a bitmap resource file from a manifest.
int PackBitmaps(const std::string& manifest, const std::string& output, std::ostream& out);
// Lists the index, each record's flags and parts, and its versions with their sizes; 1 when a record
// is damaged.
int Dump(const std::string& file, std::ostream& out);
// Decodes part `part` of version `version` (1-based, as Dump numbers them) of picture `id` through the
// library and writes it as a PNG file.
int Extract(const std::string& file, int id, int version, int part, const std::string& output,
            std::ostream& out);

}  // namespace ulores
