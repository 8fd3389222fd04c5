#include "ulogui/LanguageManager.h"

#include <stdexcept>
#include <utility>

#include "l10n/LanguageManagerXml.h"

namespace ulo {
namespace gui {

LanguageManager* LanguageManager::pInstance_ = nullptr;
ULOPath LanguageManager::parentFolderPath_;

namespace {

// Singletons are released at exit even when the host forgets ReleaseInstance.
struct ReleaseLanguageManagerAtExit {
    ~ReleaseLanguageManagerAtExit() { LanguageManager::ReleaseInstance(); }
} releaseLanguageManagerAtExit;

}  // namespace

void LanguageManager::InitInstance(const ULOPath& parentFolder) {
    if (pInstance_) {
        return;
    }
    parentFolderPath_ = parentFolder;
    LanguageManager* instance = new LanguageManager();
    try {
        instance->InitFromFile();
    } catch (...) {
        delete instance;
        throw;
    }
    pInstance_ = instance;
}

LanguageManager& LanguageManager::Instance() {
    if (!pInstance_) {
        throw std::logic_error("ulo::gui::LanguageManager::Instance() called without an instance");
    }
    return *pInstance_;
}

void LanguageManager::ReleaseInstance() {
    delete pInstance_;
    pInstance_ = nullptr;
}

const ULOPath& LanguageManager::GetParentFolderPath() {
    return parentFolderPath_;
}

void LanguageManager::InitFromFile() {
    InitFromRecords_(ulogui::l10n::LoadLanguagesXml(parentFolderPath_ / ULOString(L"languages.xml")));
}

void LanguageManager::InitFromRecords_(std::vector<Language> languages) {
    languages_ = std::move(languages);
    if (languages_.empty()) {
        languages_ = ulogui::l10n::BuiltInLanguages();
    }
    for (Language& language : languages_) {
        language.active = true;
    }
}

int LanguageManager::LanguageCount() const {
    return static_cast<int>(languages_.size());
}

bool LanguageManager::HasLanguage(int id) const {
    return id < LanguageCount();
}

bool LanguageManager::IsLanguageActive(int id) const {
    if (id < 0 || id >= LanguageCount()) {
        return false;
    }
    return languages_[id].active;
}

bool LanguageManager::IsLanguageAvailable(int id) const {
    if (id < 0 || id >= LanguageCount()) {
        return false;
    }
    const ULOString folder = FolderOf_(id);
    // Without a name the path would be the parent folder itself, which always exists.
    if (folder.empty()) {
        return false;
    }
    const ULOPath path = parentFolderPath_ / folder;
    return path.exists() && path.is_directory();
}

int LanguageManager::GetFirstAvailableLanguage() const {
    for (int id = 0; id < LanguageCount(); ++id) {
        if (IsLanguageAvailable(id)) {
            return id;
        }
    }
    return -1;
}

int LanguageManager::GetLangIDFromMillID(int millID, int defaultID) const {
    for (int id = 0; id < LanguageCount(); ++id) {
        if (languages_[id].mill_id == millID) {
            return id;
        }
    }
    return defaultID;
}

int LanguageManager::GetLangIDFromName(const ULOString& name, int defaultID) const {
    for (int id = 0; id < LanguageCount(); ++id) {
        if (languages_[id].name.EqualsNoCase(name)) {
            return id;
        }
    }
    return defaultID;
}

int LanguageManager::GetLangIDFromString(const ULOString& nameShort, int defaultID) const {
    for (int id = 0; id < LanguageCount(); ++id) {
        if (languages_[id].name_short.EqualsNoCase(nameShort)) {
            return id;
        }
    }
    return defaultID;
}

int LanguageManager::GetLangIDFromFolder(const ULOString& folder, int defaultID) const {
    for (int id = 0; id < LanguageCount(); ++id) {
        if (languages_[id].folder.EqualsNoCase(folder)) {
            return id;
        }
    }
    return defaultID;
}

int LanguageManager::GetLangIDFromOS(int winLangID, int defaultID) const {
    for (int id = 0; id < LanguageCount(); ++id) {
        if (languages_[id].win_ids.count(winLangID) != 0) {
            return id;
        }
    }
    return defaultID;
}

int LanguageManager::GetLangIDFromOS(const char* macName, int defaultID) const {
    if (!macName) {
        return defaultID;
    }
    const std::string wanted(macName);
    for (int id = 0; id < LanguageCount(); ++id) {
        for (const ULOString& name : languages_[id].mac_names) {
            if (name.ToUtf8() == wanted) {
                return id;
            }
        }
    }
    return defaultID;
}

const LanguageManager::Language* LanguageManager::Find_(int id, bool onlyActive) const {
    if (id == -1) {
        id = 0;
    }
    if (id < 0 || id >= LanguageCount()) {
        return nullptr;
    }
    const Language& language = languages_[id];
    return (!onlyActive || language.active) ? &language : nullptr;
}

ULOString LanguageManager::FolderOf_(int id) const {
    const Language* language = Find_(id, false);
    return language ? language->folder : ULOString();
}

ULOString LanguageManager::GetNameFromLangID(int id, bool onlyActive, ULOString fallback) {
    const Language* language = Find_(id, onlyActive);
    return language ? language->name : fallback;
}

ULOString LanguageManager::GetStringFromLangID(int id, bool onlyActive, ULOString fallback) {
    const Language* language = Find_(id, onlyActive);
    return language ? language->name_short : fallback;
}

ULOString LanguageManager::GetFolderFromLangID(int id, bool onlyActive, ULOString fallback) {
    const Language* language = Find_(id, onlyActive);
    return language ? language->folder : fallback;
}

void LanguageManager::SetAppLanguage(int id) {
    if (!appLanguage_) {
        appLanguage_ = id;
    }
}

boost::optional<int> LanguageManager::GetAppLanguage() {
    return appLanguage_;
}

}  // namespace gui
}  // namespace ulo
