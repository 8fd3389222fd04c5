#pragma once
// Reading the language catalogue from "languages.xml" (shared by the language manager and its
// fuzz target).
#include <tinyxml.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ulogui/LanguageManager.h"
#include "ulolib/Path.h"

namespace ulogui {
namespace l10n {

// A real catalogue is a few kilobytes; anything this large is not one and is not parsed.
constexpr int64_t kMaxLanguagesXmlBytes = 16 * 1024 * 1024;

// The "language" records under the "languages" root, in document order (none for another root).
std::vector<ulo::gui::LanguageManager::Language> ReadLanguages(const TiXmlDocument& document);
// Loads and reads the file; no records when it is absent, too large or not well-formed.
std::vector<ulo::gui::LanguageManager::Language> LoadLanguagesXml(const ULOPath& file);
// Reads the bytes of a file held in memory, with the same outcome as LoadLanguagesXml on that file.
std::vector<ulo::gui::LanguageManager::Language> ParseLanguagesXml(const char* bytes, size_t size);
// English, French, German, Japanese and Italian, used when the file yields no language.
std::vector<ulo::gui::LanguageManager::Language> BuiltInLanguages();
// A hexadecimal number as strtol reads it ("09", "0x0c", " 1A"); 0 when the text has no leading
// number or the number does not fit an int.
int ParseHexText(const char* text);

// A language manager whose catalogue comes from bytes in memory instead of the parent folder's file,
// built as InitInstance builds the instance; it is not the instance. For the fuzz target, which must
// not write a file per input.
class LanguageManagerFromMemory {
public:
    static ulo::gui::LanguageManager Make(const char* bytes, size_t size);
};

}  // namespace l10n
}  // namespace ulogui
