// Runs in a process of its own: the language manager's folder, once given, lasts for the life of
// the process, and these cases need a process that never gave one.
#include <gtest/gtest.h>

#include "ulogui/LanguageManager.h"
#include "ulogui/ResourceFileDiscover.h"
#include "ulolib/Directory.h"
#include "ulolib/TempDir.h"

namespace {

using ulo::gui::LanguageManager;
using ulo::gui::ResourceDirDiscover;
using ulo::gui::ResourceFileDiscover;

TEST(InitResourceDir, DefaultIsTheApplicationDirectoryThenTheManagerFolderWins) {
    ASSERT_TRUE(LanguageManager::GetParentFolderPath().empty());
    TempDir app;
    app.Write("languages.xml", "<languages><language name=\"Only\" folder=\"Only\"/></languages>");
    Directory::create()->SetApplicationDirectory(app.Path());

    const ResourceDirDiscover finder(false, nullptr);
    EXPECT_EQ(finder.FindResourceDir(L"ignored"), app.Path());
    EXPECT_EQ(ResourceFileDiscover::InitResourceDir(L"App", finder), app.Path());
    EXPECT_EQ(LanguageManager::GetParentFolderPath(), app.Path());
    EXPECT_EQ(LanguageManager::Instance().LanguageCount(), 1);

    TempDir moved;
    Directory::create()->SetApplicationDirectory(moved.Path());
    EXPECT_EQ(ResourceFileDiscover::InitResourceDir(L"App", finder), app.Path());
    LanguageManager::ReleaseInstance();
}

}  // namespace
