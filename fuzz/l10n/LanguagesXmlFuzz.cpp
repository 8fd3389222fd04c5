// Feeds arbitrary bytes to the language catalogue as "languages.xml", read from memory as the
// language manager reads the file; every lookup of the resulting catalogue must stay in bounds.
#include <cstdint>
#include <cstdlib>

#include "l10n/LanguageManagerXml.h"
#include "ulogui/LanguageManager.h"

namespace {

using ulo::gui::LanguageManager;

void ExerciseLookups(LanguageManager& lm) {
    const int count = lm.LanguageCount();
    for (int id = -2; id <= count; ++id) {
        lm.IsLanguageActive(id);
        lm.IsLanguageAvailable(id);
        const ULOString name = lm.GetNameFromLangID(id, true, L"?");
        const ULOString code = lm.GetStringFromLangID(id, false, L"?");
        const ULOString folder = lm.GetFolderFromLangID(id, false, L"?");
        lm.GetLangIDFromName(name, -1);
        lm.GetLangIDFromString(code, -1);
        lm.GetLangIDFromFolder(folder, -1);
    }
    for (const LanguageManager::Language& language : lm.GetLanguages()) {
        lm.GetLangIDFromMillID(language.mill_id, -1);
        for (int winID : language.win_ids) {
            lm.GetLangIDFromOS(winID, -1);
        }
        for (const ULOString& macName : language.mac_names) {
            lm.GetLangIDFromOS(macName.ToUtf8().c_str(), -1);
        }
    }
    lm.GetFirstAvailableLanguage();
    lm.SetAppLanguage(count - 1);
    lm.GetAppLanguage();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    LanguageManager lm =
        ulogui::l10n::LanguageManagerFromMemory::Make(reinterpret_cast<const char*>(data), size);
    if (lm.LanguageCount() == 0) {
        abort();  // the built-in catalogue stands in for a file without languages
    }
    ExerciseLookups(lm);
    return 0;
}
