#include "ulogui/LanguageManager.h"

#include <gtest/gtest.h>

#include <boost/optional/optional_io.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "FileNameCase.h"
#include "l10n/LanguageManagerXml.h"
#include "ulolib/TempDir.h"

namespace {

using ulo::gui::LanguageManager;

// A record on one line: id, mill_id, name, short code, folder, apps, win_ids, mac names, active.
std::string Describe(const LanguageManager::Language& l) {
    std::string s = std::to_string(l.id) + " " + std::to_string(l.mill_id) + " " + l.name.ToUtf8() + " " +
                    l.name_short.ToUtf8() + " " + l.folder.ToUtf8() + " [";
    for (const ULOString& app : l.apps) {
        s += app.ToUtf8() + ";";
    }
    s += "] [";
    for (int id : l.win_ids) {
        s += std::to_string(id) + ";";
    }
    s += "] [";
    for (const ULOString& mac : l.mac_names) {
        s += mac.ToUtf8() + ";";
    }
    return s + "]" + (l.active ? " active" : "");
}

std::vector<std::string> DescribeAll(const LanguageManager& lm) {
    std::vector<std::string> all;
    for (const LanguageManager::Language& l : lm.GetLanguages()) {
        all.push_back(Describe(l));
    }
    return all;
}

class LanguageManagerTest : public ::testing::Test {
protected:
    void SetUp() override { LanguageManager::ReleaseInstance(); }
    void TearDown() override { LanguageManager::ReleaseInstance(); }

    LanguageManager& Load(const std::string& xml) {
        dir_.Write("languages.xml", xml);
        LanguageManager& lm = LoadWithoutFile();
        // The same bytes read from memory make the same catalogue.
        const LanguageManager fromMemory =
            ulogui::l10n::LanguageManagerFromMemory::Make(xml.data(), xml.size());
        EXPECT_EQ(DescribeAll(fromMemory), DescribeAll(lm));
        return lm;
    }
    LanguageManager& LoadWithoutFile() {
        LanguageManager::ReleaseInstance();
        LanguageManager::InitInstance(dir_.Path());
        return LanguageManager::Instance();
    }
    static void ExpectBuiltIn(LanguageManager& lm) {
        ASSERT_EQ(lm.LanguageCount(), 5);
        EXPECT_EQ(Describe(lm.GetLanguages()[4]), "4 16 Italian it Italian [pim;] [16;] [it;] active");
    }

    TempDir dir_;
};

TEST_F(LanguageManagerTest, BuiltInCatalogueWithoutFileAndItsLookups) {
    LanguageManager& lm = LoadWithoutFile();
    const char* const expected[] = {
        "0 1 English en English [all;] [9;] [en;] active", "1 2 French fr French [pim;] [12;] [fr;] active",
        "2 4 German de German [pim;] [7;] [de;] active", "3 8 Japanese jp Japanese [pim;] [17;] [ja;] active",
        "4 16 Italian it Italian [pim;] [16;] [it;] active"};
    ASSERT_EQ(lm.LanguageCount(), 5);
    for (int id = 0; id < 5; ++id) {
        EXPECT_EQ(Describe(lm.GetLanguages()[id]), expected[id]);
        EXPECT_TRUE(lm.IsLanguageActive(id));
    }
    EXPECT_EQ(lm.GetLangIDFromOS(12, -1), 1);
    EXPECT_EQ(lm.GetLangIDFromOS(0x409, -1), -1);  // a full LANGID is not a primary identifier
    EXPECT_EQ(lm.GetLangIDFromOS("ja", -1), 3);
    EXPECT_EQ(lm.GetLangIDFromOS("jp", -1), -1);
    EXPECT_EQ(lm.GetLangIDFromOS("JA", -1), -1);
    EXPECT_EQ(lm.GetLangIDFromOS(static_cast<const char*>(nullptr), -7), -7);
    EXPECT_EQ(lm.GetLangIDFromString(L"JP", -1), 3);
    EXPECT_EQ(lm.GetLangIDFromString(L"ja", -1), -1);
    EXPECT_EQ(lm.GetLangIDFromMillID(16, -1), 4);
    EXPECT_EQ(lm.GetLangIDFromMillID(3, -2), -2);
    EXPECT_EQ(lm.GetLangIDFromName(L"gERMAN", -1), 2);
    EXPECT_EQ(lm.GetLangIDFromName(L"Germa", -1), -1);
    EXPECT_EQ(lm.GetLangIDFromFolder(L"italian", -1), 4);
    // The string getters map -1 to English and fall back beyond the catalogue.
    EXPECT_EQ(lm.GetFolderFromLangID(-1, false, L"x"), L"English");
    EXPECT_EQ(lm.GetFolderFromLangID(5, false, L"x"), L"x");
    EXPECT_EQ(lm.GetFolderFromLangID(-2, false, L"x"), L"x");
    EXPECT_EQ(lm.GetNameFromLangID(-1, true, L"x"), L"English");
    EXPECT_EQ(lm.GetStringFromLangID(3, true, L"x"), L"jp");
    EXPECT_EQ(lm.GetStringFromLangID(5, true, L"x"), L"x");
    EXPECT_TRUE(lm.HasLanguage(4));
    EXPECT_FALSE(lm.HasLanguage(5));
    EXPECT_TRUE(lm.HasLanguage(-3));  // no lower bound
    EXPECT_FALSE(lm.IsLanguageActive(-1));
    EXPECT_FALSE(lm.IsLanguageActive(5));
}

TEST_F(LanguageManagerTest, ReadsRecordsInFileOrderAndFirstMatchWins) {
    LanguageManager& lm = Load(R"(<?xml version="1.0" encoding="UTF-8"?>
<languages>
  <language id="7" mill_id="4" name="German" name_short="de" folder="Deutsch">
    <app>pim</app><app>viewer</app><app>pim</app>
    <win_id>07</win_id><win_id>0x0c</win_id><win_id>7</win_id><win_id>1A</win_id>
    <mac_name>de_CH</mac_name><mac_name>de</mac_name>
  </language>
  <language id="0" mill_id="1" name="Espa&#241;ol" name_short="es" folder="Spanish"/>
  <language mill_id="4" name="GERMAN" name_short="DE" folder="deutsch"><win_id>7</win_id><mac_name>de</mac_name>
  </language>
</languages>)");
    ASSERT_EQ(lm.LanguageCount(), 3);
    EXPECT_EQ(Describe(lm.GetLanguages()[0]),
              "7 4 German de Deutsch [pim;viewer;] [7;12;26;] [de;de_CH;] active");
    EXPECT_EQ(lm.GetNameFromLangID(1, true, L""), L"Espa\u00f1ol");
    // The position is the language ID, whatever the "id" attribute says; the first match wins.
    EXPECT_EQ(lm.GetLangIDFromName(L"german", -1), 0);
    EXPECT_EQ(lm.GetLangIDFromMillID(1, -1), 1);
    EXPECT_EQ(lm.GetLangIDFromMillID(4, -1), 0);
    EXPECT_EQ(lm.GetLangIDFromOS(7, -1), 0);
    EXPECT_EQ(lm.GetLangIDFromOS(0x1a, -1), 0);
    EXPECT_EQ(lm.GetLangIDFromOS("de_CH", -1), 0);
    EXPECT_EQ(lm.GetLangIDFromOS("de_ch", -1), -1);
    EXPECT_EQ(lm.GetLangIDFromOS("de", -1), 0);
    EXPECT_EQ(lm.GetLangIDFromString(L"De", -1), 0);
    EXPECT_EQ(lm.GetLangIDFromFolder(L"DEUTSCH", -1), 0);
    EXPECT_EQ(lm.GetLangIDFromFolder(L"German", -1), -1);
    EXPECT_EQ(lm.GetLangIDFromOS(9, -1), -1);
}

TEST_F(LanguageManagerTest, WrongTypesGiveZeroOrEmptyFields) {
    LanguageManager& lm = Load(R"(<languages>
  <language id="seven" mill_id="" name_short="q">
    <win_id>zz</win_id><win_id>123456789ABCDEF</win_id><win_id/><app/><mac_name><b/></mac_name>
  </language>
  <language id="-3" mill_id="0x10"/>
  <language><other>1</other></language>
</languages>)");
    ASSERT_EQ(lm.LanguageCount(), 3);
    EXPECT_EQ(Describe(lm.GetLanguages()[0]), "0 0  q  [;] [0;] [;] active");
    EXPECT_EQ(Describe(lm.GetLanguages()[1]), "-3 0    [] [] [] active");  // decimal only: "0x10" is 0
    EXPECT_EQ(Describe(lm.GetLanguages()[2]), "0 0    [] [] [] active");
    EXPECT_FALSE(lm.IsLanguageAvailable(0)) << "an empty folder never counts as the parent folder itself";
}

TEST_F(LanguageManagerTest, FilesWithoutLanguagesGiveTheBuiltInCatalogue) {
    std::string oversized = "<languages><language name=\"Huge\"/><!--";
    oversized.append(17 * 1024 * 1024, 'x');
    oversized += "--></languages>";
    const std::string bad[] = {
        "",
        "   \n",
        "<languages><language name=\"A\"></languages>",        // not well-formed
        "<languages><language name=\"A\"/>",                   // unterminated root
        "<langs><language name=\"A\" folder=\"A\"/></langs>",  // another root
        "<languages/>",
        "<languages><lang name=\"A\"/><Language name=\"B\"/></languages>",
        std::string("<languages><language name=\"A\"/>\0</languages>", 44),
        "\xff\xfe<\0l\0",
        oversized,
    };
    for (const std::string& xml : bad) {
        SCOPED_TRACE(testing::PrintToString(xml.substr(0, 60)));
        ExpectBuiltIn(Load(xml));
    }
    dir_.Remove("languages.xml");
    dir_.MakeDir("languages.xml");  // a folder named like the file
    ExpectBuiltIn(LoadWithoutFile());
}

TEST_F(LanguageManagerTest, AvailabilityNeedsARealFolder) {
    dir_.MakeDir("French");
    dir_.Write("German", "a plain file");
    dir_.MakeDir("italian");  // "Italian" in another case: found where the file system ignores case
    const bool italian = !NamesAreCaseSensitive(dir_);
    LanguageManager& lm = LoadWithoutFile();
    for (int id : {-1, 0, 1, 2, 4, 5}) {
        EXPECT_EQ(lm.IsLanguageAvailable(id), id == 1 || (id == 4 && italian)) << id;
    }
    EXPECT_EQ(lm.GetFirstAvailableLanguage(), 1);
    dir_.Remove("French");
    EXPECT_EQ(lm.GetFirstAvailableLanguage(), italian ? 4 : -1);
    dir_.MakeDir("Japanese");
    EXPECT_EQ(lm.GetFirstAvailableLanguage(), 3);
}

TEST_F(LanguageManagerTest, SecondInitKeepsPathAndCatalogueAndTheFirstAppLanguageWins) {
    EXPECT_THROW(LanguageManager::Instance(), std::logic_error) << "no instance before InitInstance";
    TempDir other;
    other.Write("languages.xml", "<languages><language name=\"Other\"/></languages>");
    LanguageManager& lm = LoadWithoutFile();
    LanguageManager::InitInstance(other.Path());
    EXPECT_EQ(&LanguageManager::Instance(), &lm);
    EXPECT_EQ(LanguageManager::GetParentFolderPath(), dir_.Path());
    EXPECT_EQ(lm.LanguageCount(), 5);
    // Released, the path stays until the next instance is made.
    LanguageManager::ReleaseInstance();
    LanguageManager::ReleaseInstance();  // releasing twice is harmless
    EXPECT_EQ(LanguageManager::GetParentFolderPath(), dir_.Path());
    LanguageManager::InitInstance(other.Path());
    EXPECT_EQ(LanguageManager::GetParentFolderPath(), other.Path());
    EXPECT_EQ(LanguageManager::Instance().LanguageCount(), 1);
    // The first application language set lasts for the life of the instance.
    LanguageManager& fresh = LoadWithoutFile();
    EXPECT_FALSE(fresh.GetAppLanguage());
    fresh.SetAppLanguage(2);
    fresh.SetAppLanguage(3);
    EXPECT_EQ(fresh.GetAppLanguage(), boost::optional<int>(2));
    EXPECT_FALSE(LoadWithoutFile().GetAppLanguage()) << "a new instance starts without one";
}

TEST_F(LanguageManagerTest, SampleFixture) {
    LanguageManager::InitInstance(ULOPath::FromNative(ULO_TEST_DATA_DIR "/l10n/resources"));
    LanguageManager& lm = LanguageManager::Instance();
    ASSERT_EQ(lm.LanguageCount(), 5);
    EXPECT_EQ(lm.GetLangIDFromString(L"ES", -1), 4);
    EXPECT_EQ(lm.GetLangIDFromOS(0x0a, -1), 4);
    EXPECT_EQ(lm.GetLangIDFromOS("fr_CA", -1), 1);
    EXPECT_EQ(lm.GetFolderFromLangID(4, true, L""), L"Spanish");
    for (int id = 0; id < 5; ++id) {
        EXPECT_EQ(lm.IsLanguageAvailable(id), id != 2 && id != 4) << id;
    }
}

}  // namespace
