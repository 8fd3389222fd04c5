// Feeds arbitrary bytes to the language catalogue as "languages.xml": parsed from memory, then
// loaded from a real file by the language manager, whose lookups must all stay in bounds.
#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "l10n/LanguageManagerXml.h"
#include "ulogui/LanguageManager.h"

namespace {

using ulo::gui::LanguageManager;

// One folder for the whole run; the file in it is rewritten for every input.
class WorkFolder {
public:
    static const std::string& Path() {
        static WorkFolder folder;
        return folder.path_;
    }

private:
    WorkFolder() {
        const char* tmp = getenv("TMPDIR");
        path_ = std::string(tmp && *tmp ? tmp : "/tmp") + "/ulo-fuzz-languages-XXXXXX";
        if (!mkdtemp(path_.data())) {
            abort();
        }
    }
    ~WorkFolder() {
        unlink((path_ + "/languages.xml").c_str());
        rmdir(path_.c_str());
    }
    std::string path_;
};

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
    const std::string text(reinterpret_cast<const char*>(data), size);

    TiXmlDocument document;
    document.Parse(text.c_str());
    ulogui::l10n::ReadLanguages(document);

    const std::string file = WorkFolder::Path() + "/languages.xml";
    FILE* out = std::fopen(file.c_str(), "wb");
    if (!out) {
        abort();
    }
    if (size != 0 && std::fwrite(data, 1, size, out) != size) {
        abort();
    }
    std::fclose(out);

    LanguageManager::InitInstance(ULOPath::FromNative(WorkFolder::Path()));
    LanguageManager& lm = LanguageManager::Instance();
    if (lm.LanguageCount() == 0) {
        abort();  // the built-in catalogue stands in for a file without languages
    }
    ExerciseLookups(lm);
    LanguageManager::ReleaseInstance();
    return 0;
}
