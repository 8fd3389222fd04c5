#include "ulogui/OverflowingTextLog.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "ulolib/TempDir.h"

namespace {

using ulo::OverflowingTextDialogInfo;

const std::string kIndent(27, ' ');

class OverflowLogTest : public ::testing::Test {
protected:
    void SetUp() override {
        file_ = std::fopen(path_.c_str(), "w");
        ASSERT_NE(file_, nullptr);
        info_.logFile = file_;
    }
    void TearDown() override {
        if (file_) {
            std::fclose(file_);
        }
    }

    // What reached the file so far (read beside the stream, which fputws made wide-oriented).
    std::string Written() {
        std::fflush(file_);
        std::ifstream in(path_, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

    TempDir dir_;
    const std::string path_ = (dir_.Root() / "overflow.log").string();
    FILE* file_ = nullptr;
    OverflowingTextDialogInfo info_;
};

TEST_F(OverflowLogTest, EachDialogHeaderOnceBeforeItsIndentedTexts) {
    info_.LogOverflowingText(L"before any dialog");
    info_.StartEditDialog(L"Options");
    info_.LogOverflowingText(L"Show hidden files");
    info_.LogOverflowingText(L"Confirm");
    EXPECT_EQ(info_.count, 2);
    info_.StartEditDialog(info_.dialogName);  // the same dialog again: a new header, self-assignment kept
    EXPECT_EQ(info_.dialogName, L"Options");
    EXPECT_EQ(info_.count, 0);
    info_.LogOverflowingText(L"B");
    info_.StartEditDialog(L"Print");
    info_.LogOverflowingText(L"");
    EXPECT_EQ(Written(), "\n\t-> \r\n" + kIndent + "before any dialog\r\n" + "\n\t-> Options\r\n" + kIndent +
                             "Show hidden files\r\n" + kIndent + "Confirm\r\n" + "\n\t-> Options\r\n" +
                             kIndent + "B\r\n" + "\n\t-> Print\r\n" + kIndent + "\r\n");
}

// In the first of these locales that the C library has (Windows' msvcrt has no UTF-8 one).
TEST_F(OverflowLogTest, TextsAreEncodedByTheLocale) {
    const struct {
        const char* locale;
        const wchar_t* text;
        std::string bytes;
    } encodings[] = {{"C.UTF-8", L"Schlie\u00dfen \u65e5\u672c",
                      "Schlie\xc3\x9f"
                      "en \xe6\x97\xa5\xe6\x9c\xac"},
                     {".1252", L"Schlie\u00dfen \u65e5",
                      "Schlie\xdf"
                      "en ?"}};
    const std::string previous = std::setlocale(LC_CTYPE, nullptr);
    for (const auto& e : encodings) {
        if (std::setlocale(LC_CTYPE, e.locale) != nullptr) {
            info_.StartEditDialog(L"Einstellungen");
            info_.LogOverflowingText(e.text);
            std::setlocale(LC_CTYPE, previous.c_str());
            EXPECT_EQ(Written(), "\n\t-> Einstellungen\r\n" + kIndent + e.bytes + "\r\n");
            return;
        }
    }
    ADD_FAILURE() << "none of the locales exists";
}

TEST_F(OverflowLogTest, WithoutAStreamOnlyCounts) {
    OverflowingTextDialogInfo quiet;
    for (const OverflowingTextDialogInfo* empty : {&ulo::overflowDialogHelper_, &quiet}) {
        EXPECT_EQ(empty->logFile, nullptr);
        EXPECT_EQ(empty->count, 0);
        EXPECT_TRUE(empty->dialogName.empty());
    }
    quiet.StartEditDialog(L"Options");
    quiet.LogOverflowingText(L"A");
    quiet.LogOverflowingText(L"B");
    EXPECT_EQ(quiet.count, 2);
    // A stream set later starts with the lines only: the dialog's header went with the first text.
    quiet.logFile = file_;
    quiet.LogOverflowingText(L"C");
    EXPECT_EQ(Written(), kIndent + "C\r\n");
    quiet.count = INT_MAX;
    quiet.logFile = nullptr;
    quiet.LogOverflowingText(L"D");
    EXPECT_EQ(quiet.count, INT_MAX);
}

}  // namespace
