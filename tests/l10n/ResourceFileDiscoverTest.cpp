#include "ulogui/ResourceFileDiscover.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FileNameCase.h"
#include "ulogui/LanguageManager.h"
#include "ulolib/TempDir.h"

namespace {

using ulo::gui::LanguageManager;
using ulo::gui::ResourceDirDiscover;
using ulo::gui::ResourceFile;
using ulo::gui::ResourceFileDiscover;
using Names = std::vector<ULOString>;

const char* const kExtensions[] = {"ura", "urd", "urm", "urs", "urf", "urb"};

class ResourceFileDiscoverTest : public ::testing::Test {
protected:
    // The built-in catalogue: English is 0, French 1, German 2, Japanese 3, Italian 4.
    void SetUp() override {
        LanguageManager::ReleaseInstance();
        LanguageManager::InitInstance(dir_.Path());
    }
    void TearDown() override { LanguageManager::ReleaseInstance(); }

    void WriteAll(const std::string& folder, const std::string& body = "Main") const {
        for (const char* extension : kExtensions) {
            dir_.Write(folder + body + "." + extension, folder);
        }
    }
    ULOPath At(const std::string& relative) const {
        // In the system's separators, as the library joins paths.
        return ULOPath::FromNative(
            (dir_.Root() / std::filesystem::u8path(relative)).make_preferred().u8string());
    }

    // The names GetFiles finds for `lang`, and whether it reported all six.
    static std::pair<Names, bool> Found(ResourceFileDiscover& discover, int lang) {
        std::vector<ResourceFile> files{ResourceFile(L"left.over", 9)};  // replaced, not appended to
        const bool ok = discover.GetFiles(files, lang).IsOk();
        Names names;
        for (const ResourceFile& file : files) {
            names.push_back(file.GetPath().filename());
        }
        return {names, ok};
    }

    TempDir dir_;
    const Names all_{L"Main.ura", L"Main.urd", L"Main.urm", L"Main.urs", L"Main.urf", L"Main.urb"};
};

TEST_F(ResourceFileDiscoverTest, FolderCopyBeatsFlatCopyAndBothCombine) {
    WriteAll("French/");
    dir_.Write("German/Main.ura");
    dir_.Write("German/Main.urb");
    WriteAll("");
    ResourceFileDiscover discover(dir_.Path(), L"Main");
    std::vector<ResourceFile> files;
    EXPECT_TRUE(discover.GetFiles(files, 1).IsOk());
    ASSERT_EQ(files.size(), 6u);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(files[i].GetType(), static_cast<ResourceFile::resourceType_e>(i));
        EXPECT_EQ(files[i].GetLang(), 1);
        EXPECT_EQ(files[i].GetPath(), At(std::string("French/Main.") + kExtensions[i]));
    }
    EXPECT_TRUE(discover.GetFiles(files, 2).IsOk());
    ASSERT_EQ(files.size(), 6u);
    EXPECT_EQ(files[0].GetPath(), At("German/Main.ura"));
    EXPECT_EQ(files[1].GetPath(), At("Main.urd"));
    EXPECT_EQ(files[5].GetPath(), At("German/Main.urb"));
}

TEST_F(ResourceFileDiscoverTest, MissingFilesGiveTheErrorAndTheFoundOnes) {
    WriteAll("English/");
    dir_.Remove("English/Main.urs");
    ResourceFileDiscover discover(dir_.Path(), L"Main");
    std::vector<ResourceFile> files;
    const ulo::ErrorCode error = discover.GetFiles(files, 0);
    EXPECT_EQ(
        error.GetMessage(),
        L"Unable to find one or more resource files\nin the specified directory.\n\nPlease re-install the "
        L"application.");
    EXPECT_EQ(error.GetFile(), "ulogui/resourcefilediscover");
    EXPECT_EQ(error.GetLine(), 157);
    EXPECT_NE(error.GetFunction().find("ulo::gui::ResourceFileDiscover::GetFiles("), std::string::npos);
    EXPECT_NE(error.GetFunction().find("int)"), std::string::npos) << error.GetFunction();
    EXPECT_EQ(files.size(), 5u);
    EXPECT_EQ(files[3].GetPath(), At("English/Main.urf"));
}

TEST_F(ResourceFileDiscoverTest, ResultIsCachedPerLanguageUntilPathOrBodyChangesAndMovesSwapTheCache) {
    WriteAll("English/");
    dir_.Remove("English/Main.urf");
    ResourceFileDiscover discover(dir_.Path(), L"Main");
    Names five = all_;
    five.erase(five.begin() + 4);
    EXPECT_EQ(Found(discover, 0), std::make_pair(five, false));
    EXPECT_EQ(Found(discover, 1), std::make_pair(Names(), false));
    // The disk changes, the cached answers do not; copies take the cache with them.
    dir_.Write("English/Main.urf");
    WriteAll("French/");
    EXPECT_EQ(Found(discover, 0), std::make_pair(five, false));
    EXPECT_EQ(Found(discover, 1), std::make_pair(Names(), false));
    ResourceFileDiscover copy(discover);
    EXPECT_EQ(Found(copy, 0), std::make_pair(five, false));
    discover.SetPath(dir_.Path());
    EXPECT_EQ(Found(discover, 0), std::make_pair(all_, true));
    dir_.Remove("English/Main.urd");
    EXPECT_EQ(Found(discover, 0).second, true);
    discover.SetResourceBody(L"Main");
    EXPECT_EQ(Found(discover, 0).first.size(), 5u);
    WriteAll("English/");
    ResourceFileDiscover source(dir_.Path(), L"Main");
    EXPECT_TRUE(Found(source, 0).second);
    dir_.Remove("English/Main.ura");
    ResourceFileDiscover moved(std::move(source));
    EXPECT_EQ(moved.GetDiscoverDirectory(), dir_.Path());
    EXPECT_TRUE(Found(moved, 0).second);  // from the cache it took over
    EXPECT_TRUE(Found(source, 0).first.empty()) << "the source got the new object's empty cache";
    ResourceFileDiscover target(dir_.Path(), L"Main");
    EXPECT_FALSE(Found(target, 0).second);  // caches five files
    target = std::move(moved);
    EXPECT_TRUE(Found(target, 0).second);
    EXPECT_EQ(Found(moved, 0).first.size(), 5u) << "the moved-from object holds the target's former cache";
}

// Names are matched as the file system matches them; the kind compares the extension exactly.
TEST_F(ResourceFileDiscoverTest, NamesMatchAsTheFileSystemDoesAndTheKindFollowsTheLastExtension) {
    WriteAll("English/");
    dir_.Remove("English/Main.ura");
    dir_.Write("English/Main.URA");
    ResourceFileDiscover discover(dir_.Path(), L"Main"), lower(dir_.Path(), L"main");
    const bool sensitive = NamesAreCaseSensitive(dir_);
    EXPECT_EQ(Found(discover, 0),
              std::make_pair(sensitive ? Names(all_.begin() + 1, all_.end()) : all_, !sensitive));
    EXPECT_EQ(Found(lower, 0).first.size(), sensitive ? 0u : 6u);
    const std::pair<const wchar_t*, ResourceFile::resourceType_e> kinds[] = {
        {L"/r/Main.urb", ResourceFile::resourceURB},
        {L"/r/Main.urs", ResourceFile::resourceURS},
        {L"/r/Main.bak.ura", ResourceFile::resourceURA},
        {L"/r/Main.ura.bak", ResourceFile::resourceUnknown},
        {L"/r.ura/Main", ResourceFile::resourceUnknown},
        {L"/r/Main.", ResourceFile::resourceUnknown},
        {L"/r/Main.uraa", ResourceFile::resourceUnknown},
        {L"/r/Main.URA", ResourceFile::resourceUnknown},
        {L"", ResourceFile::resourceUnknown}};
    for (const auto& [path, kind] : kinds) {
        EXPECT_EQ(ResourceFile(path, 0).GetType(), kind) << path;
    }
}

TEST_F(ResourceFileDiscoverTest, AvailableLanguagesAreTheCompleteOnes) {
    WriteAll("German/");
    WriteAll("Italian/");
    dir_.Remove("Italian/Main.urd");
    dir_.Write("Main.urd");  // completes Italian from the flat directory
    WriteAll("Japanese/", "Other");
    ResourceFileDiscover discover(dir_.Path(), L"Main");
    EXPECT_EQ(discover.GetAvailableLangs(), (std::vector<int>{2, 4}));
    EXPECT_EQ(discover.LogFileCreationTimes(2, L"/nowhere/log.txt"), 0);
    discover.SetResourceBody(L"Other");
    EXPECT_EQ(discover.GetAvailableLangs(), (std::vector<int>{3}));
}

TEST_F(ResourceFileDiscoverTest, SampleFixture) {
    LanguageManager::ReleaseInstance();
    const ULOPath resources = ULOPath::FromNative(ULO_TEST_DATA_DIR "/l10n/resources");
    LanguageManager::InitInstance(resources);
    ResourceFileDiscover discover(resources, L"Main");
    EXPECT_EQ(discover.GetAvailableLangs(), (std::vector<int>{0, 1}));
    std::vector<ResourceFile> files;
    EXPECT_TRUE(discover.GetFiles(files, 1).IsOk());
    EXPECT_EQ(files[5].GetPath(), resources / ULOString(L"Main.urb"));
    const Names japanese = NamesAreCaseSensitive(dir_) ? Names{L"Main.ura", L"Main.urb"}
                                                       : Names{L"Main.ura", L"Main.urd", L"Main.urb"};
    EXPECT_EQ(Found(discover, 3), std::make_pair(japanese, false));  // its folder has Main.URD
}

// Hosts derive to look for the resource directory elsewhere.
class FixedDirDiscover : public ResourceDirDiscover {
public:
    explicit FixedDirDiscover(ULOPath dir) : ResourceDirDiscover(true, nullptr), dir_(std::move(dir)) {}
    ULOPath FindResourceDir(const ULOString& name) const override {
        lastName = name;
        return dir_;
    }
    mutable ULOString lastName;

private:
    ULOPath dir_;
};

TEST_F(ResourceFileDiscoverTest, ManagerFolderWinsOverTheDiscoveredOne) {
    LanguageManager::ReleaseInstance();
    LanguageManager::InitInstance(L"X");
    TempDir elsewhere;
    FixedDirDiscover finder(elsewhere.Path());
    EXPECT_EQ(ResourceFileDiscover::InitResourceDir(L"App", finder), ULOPath(L"X"));
    EXPECT_EQ(finder.lastName, L"App");
    // Even without an instance, the folder once given is kept and a new instance gets it.
    LanguageManager::ReleaseInstance();
    EXPECT_EQ(ResourceFileDiscover::InitResourceDir(L"App", finder), ULOPath(L"X"));
    EXPECT_EQ(LanguageManager::GetParentFolderPath(), ULOPath(L"X"));
    EXPECT_EQ(LanguageManager::Instance().LanguageCount(), 5);
}

}  // namespace
