#pragma once
// Loads an XML file into a TinyXML document.
#include <tinyxml.h>

#include "ulolib/Export.h"
#include "ulolib/Path.h"

// True when the file was read and parsed; false (and an empty or partial document) otherwise.
ULOLIB_API bool ULOOpenXml(TiXmlDocument& document, const ULOPath& path);
