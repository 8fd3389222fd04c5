// The resource builder's font commands: manifests in, font resource files out, and the listing.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>

#include "FontCommands.h"
#include "ToolError.h"
#include "font/FontFiles.h"

namespace {

std::string Error(const std::function<void()>& run) {
    try {
        run();
    } catch (const ulores::ToolError& e) {
        return e.what();
    }
    return "";
}

}  // namespace

TEST(FontTool, PacksAManifestIntoAFileTheLibraryReads) {
    TempDir dir;
    const std::string manifest = dir.Write("fonts.xml", R"(<?xml version="1.0" encoding="UTF-8"?>
<fonts>
  <font id="0" face="Tahoma" height="11"/>
  <font id="3" face="MS UI Gothic" height="-12" weight="700" italic="1" underline="1" strikeout="1"
        family="0x30" pitch="1" name="Caption &#x3042;" ignoreHeightExt="0" heightExt="14">
    <alternative face="Meiryo UI"/>
    <alternative face="Tahoma"/>
  </font>
</fonts>)");
    const std::string output = dir.Path().native() + "/fonts.urf";
    std::ostringstream log;
    ASSERT_EQ(0, ulores::PackFonts(manifest, output, log));
    EXPECT_NE(std::string::npos, log.str().find("2 fonts, IDs 0 to 3"));
    ASSERT_TRUE(ulores::IsFontResourceFile(output));

    std::ifstream in(output, std::ios::binary);
    const std::vector<uint8_t> file((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    ulogui::resfile::FontRecord r;
    ASSERT_TRUE(ulogui::resfile::ReadFontRecord(file.data(), file.size(), 0, r));
    EXPECT_EQ(L"Tahoma 11 400 --- 32 2 [] 'Tahoma' 1 11", testfonts::Describe(r));  // the defaults
    ASSERT_TRUE(ulogui::resfile::ReadFontRecord(file.data(), file.size(), 3, r));
    EXPECT_EQ(L"MS UI Gothic -12 700 ius 48 1 [Meiryo UI,Tahoma] 'Caption \x3042' 0 14",
              testfonts::Describe(r));

    std::ostringstream dump;
    EXPECT_EQ(0, ulores::DumpFonts(output, dump));
    const std::string listing = dump.str();
    EXPECT_NE(std::string::npos, listing.find("4 table entries"));
    EXPECT_NE(std::string::npos, listing.find("font 1: no record"));
    EXPECT_NE(std::string::npos,
              listing.find("\"MS UI Gothic\" height -12 weight 700 italic underline strikeout"));
    EXPECT_NE(std::string::npos, listing.find("    alternative \"Meiryo UI\""));
}

TEST(FontTool, ManifestErrorsNameTheLineAndTheProblem) {
    TempDir dir;
    const std::pair<const char*, const char*> cases[] = {
        {"<fonts><font id=\"0\" height=\"11\"/></fonts>", "needs the attribute face"},
        {"<fonts><font id=\"0\" face=\"A\"/></fonts>", "needs the attribute height"},
        {"<fonts><font id=\"0\" face=\"A\" height=\"x\"/></fonts>", "is not a number"},
        {"<fonts><font id=\"0\" face=\"A\" height=\"1\" italic=\"2\"/></fonts>", "italic=\"2\""},
        {"<fonts><font id=\"70000\" face=\"A\" height=\"1\"/></fonts>", "id=\"70000\""},
        {"<fonts>\n<font id=\"0\" face=\"A\" height=\"1\"/>\n<font id=\"0\" face=\"B\" "
         "height=\"1\"/></fonts>",
         ":3: the ID is already used on line 2"},
        {"<fonts><font id=\"1\" face=\"A\" height=\"1\"/></fonts>", "no font 0"},
        {"<fonts/>", "no <font>"},
        {"<bitmaps/>", "root element must be <fonts>"},
        {"<fonts><font id=\"0\" face=\"A\" height=\"1\"><picture/></font></fonts>", "unexpected <picture>"},
        {"<fonts", "not well-formed XML"},
    };
    for (const auto& [xml, expected] : cases) {
        const std::string path = dir.Write("bad.xml", xml);
        const std::string message = Error([&] { ulores::ReadFontManifest(path); });
        EXPECT_NE(std::string::npos, message.find(expected)) << xml << " gave: " << message;
    }
    EXPECT_NE(std::string::npos, Error([&] {
                                     ulores::ReadFontManifest(dir.Path().native() + "/none.xml");
                                 }).find("cannot open"));
}

TEST(FontTool, DumpReportsDamagedRecordsAndForeignHeaders) {
    TempDir dir;
    std::vector<uint8_t> file(256, 0);  // a header that is not ours: the table ends at the first record
    auto put = [&](uint32_t v) {
        for (int i = 0; i < 4; ++i) {
            file.push_back(static_cast<uint8_t>(v >> (8 * i)));
        }
    };
    put(264);         // font 0 right after a two-entry table
    put(0x7FFFFFF0);  // font 1 far past the end
    put(1);
    file.push_back('A');
    file.push_back(0);
    const std::string path = testfonts::WriteFile(dir, "foreign.urf", file);
    EXPECT_FALSE(ulores::IsFontResourceFile(path));
    std::ostringstream dump;
    EXPECT_EQ(1, ulores::DumpFonts(path, dump));
    EXPECT_NE(std::string::npos, dump.str().find("2 table entries"));
    EXPECT_NE(std::string::npos, dump.str().find("font 0: at 0x00000108, damaged"));
    EXPECT_NE(std::string::npos, dump.str().find("font 1: at 0x7ffffff0, damaged"));
    EXPECT_NE(std::string::npos,
              Error([&] {
                  ulores::DumpFonts(testfonts::WriteFile(dir, "short.urf", {1, 2, 3}), dump);
              }).find("too short"));
}
