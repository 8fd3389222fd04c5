#pragma once
// ulo::gui::LanguageManager: the process-wide catalogue of the interface languages the host can
// show, read from "languages.xml" in the folder that holds one resource folder per language.
//
// A language is identified by its language ID: its zero-based position in the catalogue (not the
// "id" attribute of the file).
#include <boost/optional.hpp>
#include <set>
#include <vector>

#include "ulogui/Export.h"
#include "ulolib/Path.h"
#include "ulolib/String.h"

namespace ulogui {
namespace l10n {
class LanguageManagerFromMemory;
}  // namespace l10n
}  // namespace ulogui

namespace ulo {
namespace gui {

class ULODRAW_API LanguageManager {
public:
    // One catalogue entry, as read from a "language" element.
    struct Language {
        int id = 0;                     // stored only; the language ID is the position in the catalogue
        int mill_id = 0;                // identifier used by the localisation build tool
        ULOString name;                 // display name ("English")
        ULOString name_short;           // short code ("en")
        ULOString folder;               // resource folder under the parent folder
        std::set<ULOString> apps;       // applications shipping the language; "all" for every one
        std::set<int> win_ids;          // Windows primary language identifiers
        std::set<ULOString> mac_names;  // macOS locale names
        bool active = false;
    };

    // Creates the instance and loads the catalogue from parentFolder/"languages.xml" (or the
    // built-in five languages). Does nothing at all, not even change the path, if an instance exists.
    static void InitInstance(const ULOPath& parentFolder);
    // The instance. Throws std::logic_error when there is none (before InitInstance or after
    // ReleaseInstance).
    static LanguageManager& Instance();
    // Destroys the instance; the parent folder path is kept.
    static void ReleaseInstance();
    static const ULOPath& GetParentFolderPath();

    LanguageManager(const LanguageManager&) = default;
    LanguageManager& operator=(const LanguageManager&) = default;
    ~LanguageManager() = default;

    int LanguageCount() const;
    // id < LanguageCount(), with no lower bound test.
    bool HasLanguage(int id) const;
    bool IsLanguageActive(int id) const;
    // True when the language's folder exists under the parent folder and is a directory. A
    // language without a folder name is never available.
    bool IsLanguageAvailable(int id) const;
    // The smallest available language ID, or -1.
    int GetFirstAvailableLanguage() const;

    // Lookups: the first matching language in catalogue order, else defaultID.
    int GetLangIDFromMillID(int millID, int defaultID) const;
    int GetLangIDFromName(const ULOString& name, int defaultID) const;         // ignoring case
    int GetLangIDFromString(const ULOString& nameShort, int defaultID) const;  // ignoring case
    int GetLangIDFromFolder(const ULOString& folder, int defaultID) const;     // ignoring case
    // winLangID is compared as given: callers pass the primary language identifier.
    int GetLangIDFromOS(int winLangID, int defaultID) const;
    // Exact, case-sensitive comparison with each macOS name in UTF-8; a null macName matches nothing.
    int GetLangIDFromOS(const char* macName, int defaultID) const;

    // Reverse lookups. The ID -1 stands for language 0. The record's string is returned when the
    // ID is in the catalogue and, if onlyActive, the language is active; otherwise fallback.
    // IDs below -1 give fallback.
    ULOString GetNameFromLangID(int id, bool onlyActive, ULOString fallback);
    ULOString GetStringFromLangID(int id, bool onlyActive, ULOString fallback);
    ULOString GetFolderFromLangID(int id, bool onlyActive, ULOString fallback);

    // Only the first call has an effect for the life of the instance.
    void SetAppLanguage(int id);
    boost::optional<int> GetAppLanguage();

    // The whole catalogue, in language-ID order.
    const std::vector<Language>& GetLanguages() const { return languages_; }

private:
    friend class ulogui::l10n::LanguageManagerFromMemory;

    LanguageManager() = default;
    void InitFromFile();
    // The catalogue of these records, or the built-in one when there are none; all active.
    void InitFromRecords_(std::vector<Language> languages);
    const Language* Find_(int id, bool onlyActive) const;
    ULOString FolderOf_(int id) const;

    std::vector<Language> languages_;
    boost::optional<int> appLanguage_;

    static LanguageManager* pInstance_;
    static ULOPath parentFolderPath_;
};

}  // namespace gui
}  // namespace ulo
