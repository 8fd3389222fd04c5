#pragma once
// Loads an XML file, or XML bytes held in memory, into a TinyXML document.
#include <tinyxml.h>

#include <cstddef>

#include "ulolib/Export.h"
#include "ulolib/Path.h"

// True when the file was read and parsed; false (and an empty or partial document) otherwise.
ULOLIB_API bool ULOOpenXml(TiXmlDocument& document, const ULOPath& path);
// Parses size bytes as ULOOpenXml parses the bytes of a file: true when they are well-formed.
ULOLIB_API bool ULOParseXml(TiXmlDocument& document, const char* bytes, size_t size);
