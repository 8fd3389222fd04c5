#include "ulogui/LanguageManager.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "l10n/TempDir.h"

namespace {

using ulo::gui::LanguageManager;
using ulo_test::TempDir;

class LanguageManagerTest : public ::testing::Test {
protected:
    void SetUp() override { LanguageManager::ReleaseInstance(); }
    void TearDown() override { LanguageManager::ReleaseInstance(); }

    LanguageManager& Load(const std::string& xml) {
        dir_.Write("languages.xml", xml);
        LanguageManager::InitInstance(dir_.Path());
        return LanguageManager::Instance();
    }
    LanguageManager& LoadWithoutFile() {
        LanguageManager::InitInstance(dir_.Path());
        return LanguageManager::Instance();
    }
    static void ExpectBuiltIn(LanguageManager& lm) {
        ASSERT_EQ(lm.LanguageCount(), 5);
        EXPECT_EQ(lm.GetNameFromLangID(0, true, L"?"), L"English");
        EXPECT_EQ(lm.GetNameFromLangID(4, true, L"?"), L"Italian");
    }

    TempDir dir_;
};

TEST_F(LanguageManagerTest, BuiltInCatalogueWithoutFile) {
    LanguageManager& lm = LoadWithoutFile();
    ASSERT_EQ(lm.LanguageCount(), 5);
    const wchar_t* names[] = {L"English", L"French", L"German", L"Japanese", L"Italian"};
    const wchar_t* codes[] = {L"en", L"fr", L"de", L"jp", L"it"};
    const int winIDs[] = {9, 12, 7, 17, 16};
    for (int id = 0; id < 5; ++id) {
        const LanguageManager::Language& language = lm.GetLanguages()[id];
        EXPECT_EQ(language.id, id);
        EXPECT_EQ(language.mill_id, 1 << id);
        EXPECT_EQ(language.name, names[id]);
        EXPECT_EQ(language.folder, names[id]);
        EXPECT_EQ(language.name_short, codes[id]);
        EXPECT_EQ(language.win_ids, std::set<int>{winIDs[id]});
        EXPECT_EQ(language.apps, std::set<ULOString>{id == 0 ? L"all" : L"pim"});
        EXPECT_TRUE(lm.IsLanguageActive(id));
        EXPECT_EQ(lm.GetLangIDFromOS(winIDs[id], -1), id);
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
}

TEST_F(LanguageManagerTest, StringGettersMapMinusOneAndFallBack) {
    LanguageManager& lm = LoadWithoutFile();
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

TEST_F(LanguageManagerTest, ReadsRecordsInFileOrder) {
    LanguageManager& lm = Load(R"(<?xml version="1.0" encoding="UTF-8"?>
<languages>
  <language id="7" mill_id="4" name="German" name_short="de" folder="Deutsch">
    <app>pim</app><app>viewer</app><app>pim</app>
    <win_id>07</win_id><win_id>0x0c</win_id><win_id>7</win_id><win_id>1A</win_id>
    <mac_name>de_CH</mac_name><mac_name>de</mac_name>
  </language>
  <language id="0" mill_id="1" name="Espa&#241;ol" name_short="es" folder="Spanish"/>
</languages>)");
    ASSERT_EQ(lm.LanguageCount(), 2);
    const LanguageManager::Language& german = lm.GetLanguages()[0];
    EXPECT_EQ(german.id, 7);
    EXPECT_EQ(german.mill_id, 4);
    EXPECT_EQ(german.folder, L"Deutsch");
    EXPECT_EQ(german.apps, (std::set<ULOString>{L"pim", L"viewer"}));
    EXPECT_EQ(german.win_ids, (std::set<int>{7, 12, 26}));
    EXPECT_EQ(german.mac_names, (std::set<ULOString>{L"de", L"de_CH"}));
    EXPECT_TRUE(german.active);

    // The position is the language ID, whatever the "id" attribute says.
    EXPECT_EQ(lm.GetLangIDFromName(L"german", -1), 0);
    EXPECT_EQ(lm.GetLangIDFromMillID(1, -1), 1);
    EXPECT_EQ(lm.GetLangIDFromOS(12, -1), 0);
    EXPECT_EQ(lm.GetLangIDFromOS(0x1a, -1), 0);
    EXPECT_EQ(lm.GetLangIDFromOS("de_CH", -1), 0);
    EXPECT_EQ(lm.GetLangIDFromOS("de_ch", -1), -1);
    EXPECT_EQ(lm.GetNameFromLangID(1, true, L""), L"Espa\u00f1ol");
    EXPECT_EQ(lm.GetLangIDFromFolder(L"deutsch", -1), 0);
    EXPECT_EQ(lm.GetLangIDFromFolder(L"German", -1), -1);
    // Nothing of the built-in catalogue is left.
    EXPECT_EQ(lm.GetLangIDFromOS(9, -1), -1);
}

TEST_F(LanguageManagerTest, FirstMatchWinsOnDuplicates) {
    LanguageManager& lm = Load(R"(<languages>
  <language mill_id="2" name="A" name_short="x"><win_id>9</win_id><mac_name>m</mac_name></language>
  <language mill_id="2" name="a" name_short="X"><win_id>9</win_id><mac_name>m</mac_name></language>
</languages>)");
    ASSERT_EQ(lm.LanguageCount(), 2);
    EXPECT_EQ(lm.GetLangIDFromMillID(2, -1), 0);
    EXPECT_EQ(lm.GetLangIDFromName(L"a", -1), 0);
    EXPECT_EQ(lm.GetLangIDFromString(L"x", -1), 0);
    EXPECT_EQ(lm.GetLangIDFromOS(9, -1), 0);
    EXPECT_EQ(lm.GetLangIDFromOS("m", -1), 0);
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
    const LanguageManager::Language& first = lm.GetLanguages()[0];
    EXPECT_EQ(first.id, 0);
    EXPECT_EQ(first.mill_id, 0);
    EXPECT_EQ(first.name, L"");
    EXPECT_EQ(first.folder, L"");
    EXPECT_EQ(first.win_ids, std::set<int>{0});
    EXPECT_EQ(first.apps, std::set<ULOString>{L""});
    EXPECT_EQ(first.mac_names, std::set<ULOString>{L""});
    EXPECT_EQ(lm.GetLanguages()[1].id, -3);
    EXPECT_EQ(lm.GetLanguages()[1].mill_id, 0);  // decimal only: "0x10" reads as 0
    EXPECT_TRUE(lm.GetLanguages()[2].win_ids.empty());
    EXPECT_TRUE(lm.IsLanguageActive(2));
    // An empty folder never counts as the parent folder itself.
    EXPECT_FALSE(lm.IsLanguageAvailable(0));
}

TEST_F(LanguageManagerTest, FilesWithoutLanguagesGiveTheBuiltInCatalogue) {
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
    };
    for (const std::string& xml : bad) {
        SCOPED_TRACE(testing::PrintToString(xml));
        LanguageManager::ReleaseInstance();
        ExpectBuiltIn(Load(xml));
    }
}

TEST_F(LanguageManagerTest, ManyLanguages) {
    std::string xml = "<languages>";
    for (int i = 0; i < 2000; ++i) {
        xml += "<language mill_id=\"" + std::to_string(i) + "\"><win_id>" + std::to_string(i) +
               "</win_id></language>";
    }
    xml += "</languages>";
    LanguageManager& lm = Load(xml);
    EXPECT_EQ(lm.LanguageCount(), 2000);
    EXPECT_EQ(lm.GetLangIDFromMillID(1999, -1), 1999);
    EXPECT_EQ(lm.GetLangIDFromOS(0x10, -1), 10);  // "10" is hexadecimal: 16
}

TEST_F(LanguageManagerTest, OversizedFileIsIgnored) {
    std::string xml = "<languages><language name=\"Huge\"/><!--";
    xml.append(17 * 1024 * 1024, 'x');
    xml += "--></languages>";
    ExpectBuiltIn(Load(xml));
}

TEST_F(LanguageManagerTest, AFolderNamedLikeTheFileIsIgnored) {
    dir_.MakeDir("languages.xml");
    ExpectBuiltIn(LoadWithoutFile());
}

TEST_F(LanguageManagerTest, AppLanguageFirstCallWins) {
    LanguageManager& lm = LoadWithoutFile();
    EXPECT_FALSE(lm.GetAppLanguage());
    lm.SetAppLanguage(2);
    lm.SetAppLanguage(3);
    ASSERT_TRUE(lm.GetAppLanguage());
    EXPECT_EQ(*lm.GetAppLanguage(), 2);

    LanguageManager copy(lm);
    EXPECT_EQ(*copy.GetAppLanguage(), 2);
    EXPECT_EQ(copy.LanguageCount(), 5);

    // A new instance starts without one.
    LanguageManager::ReleaseInstance();
    LanguageManager::InitInstance(dir_.Path());
    EXPECT_FALSE(LanguageManager::Instance().GetAppLanguage());
}

TEST_F(LanguageManagerTest, AvailabilityNeedsARealFolder) {
    dir_.MakeDir("French");
    dir_.Write("German", "a plain file");
    dir_.MakeDir("italian");  // another case than the catalogue's "Italian"
    LanguageManager& lm = LoadWithoutFile();
    EXPECT_FALSE(lm.IsLanguageAvailable(0));
    EXPECT_TRUE(lm.IsLanguageAvailable(1));
    EXPECT_FALSE(lm.IsLanguageAvailable(2));
    EXPECT_FALSE(lm.IsLanguageAvailable(4));
    EXPECT_FALSE(lm.IsLanguageAvailable(-1));
    EXPECT_FALSE(lm.IsLanguageAvailable(5));
    EXPECT_EQ(lm.GetFirstAvailableLanguage(), 1);

    dir_.Remove("French");
    EXPECT_EQ(lm.GetFirstAvailableLanguage(), -1);
    dir_.MakeDir("Japanese");
    EXPECT_EQ(lm.GetFirstAvailableLanguage(), 3);
}

TEST_F(LanguageManagerTest, SecondInitKeepsPathAndCatalogue) {
    TempDir other;
    other.Write("languages.xml", "<languages><language name=\"Other\"/></languages>");
    LanguageManager& lm = LoadWithoutFile();
    LanguageManager::InitInstance(other.Path());
    EXPECT_EQ(&LanguageManager::Instance(), &lm);
    EXPECT_EQ(LanguageManager::GetParentFolderPath(), dir_.Path());
    EXPECT_EQ(lm.LanguageCount(), 5);

    // Released, the path stays until the next instance is made.
    LanguageManager::ReleaseInstance();
    EXPECT_EQ(LanguageManager::GetParentFolderPath(), dir_.Path());
    LanguageManager::InitInstance(other.Path());
    EXPECT_EQ(LanguageManager::GetParentFolderPath(), other.Path());
    EXPECT_EQ(LanguageManager::Instance().LanguageCount(), 1);
}

TEST_F(LanguageManagerTest, InstanceWithoutInitThrows) {
    EXPECT_THROW(LanguageManager::Instance(), std::logic_error);
    LanguageManager::ReleaseInstance();  // releasing twice is harmless
}

TEST_F(LanguageManagerTest, SampleFixture) {
    LanguageManager::InitInstance(ULOPath::FromNative(ULO_TEST_DATA_DIR "/l10n/resources"));
    LanguageManager& lm = LanguageManager::Instance();
    ASSERT_EQ(lm.LanguageCount(), 5);
    EXPECT_EQ(lm.GetLangIDFromString(L"ES", -1), 4);
    EXPECT_EQ(lm.GetLangIDFromOS(0x0a, -1), 4);
    EXPECT_EQ(lm.GetLangIDFromOS("fr_CA", -1), 1);
    EXPECT_EQ(lm.GetFolderFromLangID(4, true, L""), L"Spanish");
    EXPECT_TRUE(lm.IsLanguageAvailable(0));
    EXPECT_TRUE(lm.IsLanguageAvailable(3));
    EXPECT_FALSE(lm.IsLanguageAvailable(2));
    EXPECT_FALSE(lm.IsLanguageAvailable(4));
}

}  // namespace
