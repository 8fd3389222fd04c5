#include "l10n/LanguageManagerXml.h"

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "ulolib/Xml.h"

namespace ulogui {
namespace l10n {

namespace {

// The texts of the file are UTF-8; a missing attribute or text is an empty string.
ULOString FromXmlText(const char* text) {
    return text ? ULOString::FromUtf8(text) : ULOString();
}

ulo::gui::LanguageManager::Language ReadLanguage(const TiXmlElement& element) {
    ulo::gui::LanguageManager::Language language;
    // A missing or malformed number leaves the field at 0: the query does not touch it then.
    element.QueryIntAttribute("id", &language.id);
    element.QueryIntAttribute("mill_id", &language.mill_id);
    language.name = FromXmlText(element.Attribute("name"));
    language.name_short = FromXmlText(element.Attribute("name_short"));
    language.folder = FromXmlText(element.Attribute("folder"));

    for (const TiXmlElement* child = element.FirstChildElement("app"); child;
         child = child->NextSiblingElement("app")) {
        language.apps.insert(FromXmlText(child->GetText()));
    }
    for (const TiXmlElement* child = element.FirstChildElement("win_id"); child;
         child = child->NextSiblingElement("win_id")) {
        language.win_ids.insert(ParseHexText(child->GetText()));
    }
    for (const TiXmlElement* child = element.FirstChildElement("mac_name"); child;
         child = child->NextSiblingElement("mac_name")) {
        language.mac_names.insert(FromXmlText(child->GetText()));
    }
    return language;
}

ulo::gui::LanguageManager::Language MakeLanguage(int id, int millID, const wchar_t* name,
                                                 const wchar_t* nameShort, const wchar_t* app,
                                                 const wchar_t* macName, int winID) {
    ulo::gui::LanguageManager::Language language;
    language.id = id;
    language.mill_id = millID;
    language.name = name;
    language.name_short = nameShort;
    language.folder = name;
    language.apps.insert(app);
    language.mac_names.insert(macName);
    language.win_ids.insert(winID);
    return language;
}

}  // namespace

int ParseHexText(const char* text) {
    if (!text) {
        return 0;
    }
    errno = 0;
    char* end = nullptr;
    const long long value = std::strtoll(text, &end, 16);
    if (end == text || errno == ERANGE || value < INT_MIN || value > INT_MAX) {
        return 0;
    }
    return static_cast<int>(value);
}

std::vector<ulo::gui::LanguageManager::Language> ReadLanguages(const TiXmlDocument& document) {
    std::vector<ulo::gui::LanguageManager::Language> languages;
    const TiXmlElement* root = document.FirstChildElement("languages");
    if (!root) {
        return languages;
    }
    for (const TiXmlElement* element = root->FirstChildElement("language"); element;
         element = element->NextSiblingElement("language")) {
        languages.push_back(ReadLanguage(*element));
    }
    return languages;
}

std::vector<ulo::gui::LanguageManager::Language> LoadLanguagesXml(const ULOPath& file) {
    if (!file.is_regular_file() || file.file_size() > static_cast<uint64_t>(kMaxLanguagesXmlBytes)) {
        return {};
    }
    TiXmlDocument document;
    if (!ULOOpenXml(document, file)) {
        // A document that failed half-way may hold a partial tree; a broken file counts as absent.
        return {};
    }
    return ReadLanguages(document);
}

std::vector<ulo::gui::LanguageManager::Language> ParseLanguagesXml(const char* bytes, size_t size) {
    if (size > static_cast<uint64_t>(kMaxLanguagesXmlBytes)) {
        return {};
    }
    TiXmlDocument document;
    if (!ULOParseXml(document, bytes, size)) {
        return {};
    }
    return ReadLanguages(document);
}

ulo::gui::LanguageManager LanguageManagerFromMemory::Make(const char* bytes, size_t size) {
    ulo::gui::LanguageManager manager;
    manager.InitFromRecords_(ParseLanguagesXml(bytes, size));
    return manager;
}

std::vector<ulo::gui::LanguageManager::Language> BuiltInLanguages() {
    // The Windows identifiers are LANG_ENGLISH, LANG_FRENCH, LANG_GERMAN, LANG_JAPANESE and
    // LANG_ITALIAN. Japanese has the short code "jp" but the macOS name "ja": both are what the
    // shipped resources and older settings files use.
    return {
        MakeLanguage(0, 1, L"English", L"en", L"all", L"en", 0x09),
        MakeLanguage(1, 2, L"French", L"fr", L"pim", L"fr", 0x0c),
        MakeLanguage(2, 4, L"German", L"de", L"pim", L"de", 0x07),
        MakeLanguage(3, 8, L"Japanese", L"jp", L"pim", L"ja", 0x11),
        MakeLanguage(4, 16, L"Italian", L"it", L"pim", L"it", 0x10),
    };
}

}  // namespace l10n
}  // namespace ulogui
