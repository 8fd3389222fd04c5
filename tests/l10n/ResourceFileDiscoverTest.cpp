#include "ulogui/ResourceFileDiscover.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "l10n/TempDir.h"
#include "ulogui/LanguageManager.h"

namespace {

using ulo::gui::LanguageManager;
using ulo::gui::ResourceDirDiscover;
using ulo::gui::ResourceFile;
using ulo::gui::ResourceFileDiscover;
using ulo_test::TempDir;

const char* const kExtensions[] = {"ura", "urd", "urm", "urs", "urf", "urb"};
const wchar_t* const kMessage =
    L"Unable to find one or more resource files\nin the specified directory.\n\nPlease re-install the "
    L"application.";

class ResourceFileDiscoverTest : public ::testing::Test {
protected:
    // The built-in catalogue: English is 0, French 1, German 2.
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
        return ULOPath::FromNative((dir_.Root() / relative).string());
    }

    static std::vector<ULOString> Names(const std::vector<ResourceFile>& files) {
        std::vector<ULOString> names;
        for (const ResourceFile& file : files) {
            names.push_back(file.GetPath().filename());
        }
        return names;
    }

    TempDir dir_;
};

TEST_F(ResourceFileDiscoverTest, FolderCopyBeatsFlatCopy) {
    WriteAll("French/");
    dir_.Write("Main.urm", "stray");
    ResourceFileDiscover discover(dir_.Path(), L"Main");
    std::vector<ResourceFile> files;
    const ulo::ErrorCode error = discover.GetFiles(files, 1);
    EXPECT_TRUE(error.IsOk());
    ASSERT_EQ(files.size(), 6u);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(files[i].GetType(), static_cast<ResourceFile::resourceType_e>(i));
        EXPECT_EQ(files[i].GetLang(), 1);
        EXPECT_EQ(files[i].GetPath(), At(std::string("French/Main.") + kExtensions[i]));
    }
}

TEST_F(ResourceFileDiscoverTest, FolderAndFlatFilesCombine) {
    dir_.Write("German/Main.ura");
    dir_.Write("German/Main.urb");
    for (const char* extension : kExtensions) {
        dir_.Write(std::string("Main.") + extension);
    }
    ResourceFileDiscover discover(dir_.Path(), L"Main");
    std::vector<ResourceFile> files;
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
    ASSERT_TRUE(error.IsError());
    EXPECT_EQ(error.GetMessage(), kMessage);
    EXPECT_EQ(error.GetFile(), "ulogui/resourcefilediscover");
    EXPECT_EQ(error.GetLine(), 157);
    EXPECT_NE(error.GetFunction().find("ulo::gui::ResourceFileDiscover::GetFiles("), std::string::npos)
        << error.GetFunction();
    EXPECT_NE(error.GetFunction().find("int)"), std::string::npos) << error.GetFunction();
    EXPECT_EQ(Names(files),
              (std::vector<ULOString>{L"Main.ura", L"Main.urd", L"Main.urm", L"Main.urf", L"Main.urb"}));
}

TEST_F(ResourceFileDiscoverTest, ResultIsCachedUntilPathOrBodyChanges) {
    WriteAll("English/");
    dir_.Remove("English/Main.urf");
    ResourceFileDiscover discover(dir_.Path(), L"Main");
    std::vector<ResourceFile> files;
    EXPECT_TRUE(discover.GetFiles(files, 0).IsError());
    EXPECT_EQ(files.size(), 5u);

    // The disk changes, the cached answer does not.
    dir_.Write("English/Main.urf");
    dir_.Remove("English/Main.ura");
    std::vector<ResourceFile> again{ResourceFile(At("left.over"), 9)};
    EXPECT_TRUE(discover.GetFiles(again, 0).IsError());
    EXPECT_EQ(Names(again), Names(files));

    // Copies take the cache with them.
    ResourceFileDiscover copy(discover);
    std::vector<ResourceFile> fromCopy;
    EXPECT_TRUE(copy.GetFiles(fromCopy, 0).IsError());
    EXPECT_EQ(fromCopy.size(), 5u);

    dir_.Write("English/Main.ura");
    discover.SetPath(dir_.Path());
    EXPECT_TRUE(discover.GetFiles(files, 0).IsOk());
    EXPECT_EQ(files.size(), 6u);

    dir_.Remove("English/Main.urd");
    EXPECT_TRUE(discover.GetFiles(files, 0).IsOk());
    discover.SetResourceBody(L"Main");
    EXPECT_TRUE(discover.GetFiles(files, 0).IsError());
    EXPECT_EQ(files.size(), 5u);
}

TEST_F(ResourceFileDiscoverTest, EachLanguageHasItsOwnCacheEntry) {
    WriteAll("English/");
    ResourceFileDiscover discover(dir_.Path(), L"Main");
    std::vector<ResourceFile> files;
    EXPECT_TRUE(discover.GetFiles(files, 1).IsError());
    EXPECT_TRUE(files.empty());
    WriteAll("French/");
    EXPECT_TRUE(discover.GetFiles(files, 0).IsOk());
    EXPECT_TRUE(discover.GetFiles(files, 1).IsError());  // still the cached empty list
    EXPECT_TRUE(files.empty());
}

TEST_F(ResourceFileDiscoverTest, ExtensionsAndBodyAreCaseSensitive) {
    WriteAll("English/");
    dir_.Remove("English/Main.ura");
    dir_.Write("English/Main.URA");
    ResourceFileDiscover discover(dir_.Path(), L"Main");
    std::vector<ResourceFile> files;
    EXPECT_TRUE(discover.GetFiles(files, 0).IsError());
    EXPECT_EQ(files.size(), 5u);

    ResourceFileDiscover lower(dir_.Path(), L"main");
    EXPECT_TRUE(lower.GetFiles(files, 0).IsError());
    EXPECT_TRUE(files.empty());

    EXPECT_EQ(ResourceFile(At("English/Main.URA"), 0).GetType(), ResourceFile::resourceUnknown);
}

TEST_F(ResourceFileDiscoverTest, KindFollowsTheLastExtension) {
    EXPECT_EQ(ResourceFile(L"/r/Main.urb", 0).GetType(), ResourceFile::resourceURB);
    EXPECT_EQ(ResourceFile(L"/r/Main.urs", 0).GetType(), ResourceFile::resourceURS);
    EXPECT_EQ(ResourceFile(L"/r/Main.ura.bak", 0).GetType(), ResourceFile::resourceUnknown);
    EXPECT_EQ(ResourceFile(L"/r/Main.bak.ura", 0).GetType(), ResourceFile::resourceURA);
    EXPECT_EQ(ResourceFile(L"/r.ura/Main", 0).GetType(), ResourceFile::resourceUnknown);
    EXPECT_EQ(ResourceFile(L"/r/Main.", 0).GetType(), ResourceFile::resourceUnknown);
    EXPECT_EQ(ResourceFile(L"/r/Main.uraa", 0).GetType(), ResourceFile::resourceUnknown);
    EXPECT_EQ(ResourceFile(L"", 0).GetType(), ResourceFile::resourceUnknown);
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

TEST_F(ResourceFileDiscoverTest, MovesSwapTheCache) {
    WriteAll("English/");
    ResourceFileDiscover source(dir_.Path(), L"Main");
    std::vector<ResourceFile> files;
    EXPECT_TRUE(source.GetFiles(files, 0).IsOk());
    dir_.Remove("English/Main.ura");

    ResourceFileDiscover moved(std::move(source));
    EXPECT_EQ(moved.GetDiscoverDirectory(), dir_.Path());
    EXPECT_TRUE(moved.GetFiles(files, 0).IsOk());  // from the cache it took over

    ResourceFileDiscover target(dir_.Path(), L"Main");
    EXPECT_TRUE(target.GetFiles(files, 0).IsError());  // caches five files
    target = std::move(moved);
    EXPECT_TRUE(target.GetFiles(files, 0).IsOk());
    // The moved-from object holds the target's former cache.
    moved.SetResourceBody(L"Main");
    EXPECT_TRUE(moved.GetFiles(files, 0).IsError());
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
    EXPECT_TRUE(discover.GetFiles(files, 3).IsError());
    EXPECT_EQ(Names(files), (std::vector<ULOString>{L"Main.ura", L"Main.urb"}));
}

// Hosts derive to look for the resource directory elsewhere.
class FixedDirDiscover : public ResourceDirDiscover {
public:
    explicit FixedDirDiscover(ULOPath dir) : ResourceDirDiscover(true, this), dir_(std::move(dir)) {}
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
    EXPECT_TRUE(finder.GetFlag());
    EXPECT_EQ(finder.GetInstanceHandle(), static_cast<HINSTANCE>(&finder));
    EXPECT_EQ(ResourceFileDiscover::InitResourceDir(L"App", finder), ULOPath(L"X"));
    EXPECT_EQ(finder.lastName, L"App");
    EXPECT_EQ(LanguageManager::GetParentFolderPath(), ULOPath(L"X"));

    // Even without an instance, the folder once given is kept and a new instance gets it.
    LanguageManager::ReleaseInstance();
    EXPECT_EQ(ResourceFileDiscover::InitResourceDir(L"App", finder), ULOPath(L"X"));
    EXPECT_EQ(LanguageManager::Instance().LanguageCount(), 5);
}

}  // namespace
