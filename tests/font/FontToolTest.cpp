// The resource builder's font commands: manifests in, font resource files out, and the listing.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>

#include "TempDir.h"
#include "tools/ulores/FontCommands.h"
#include "tools/ulores/ToolError.h"
#include "ulogui/font/FontRecord.h"

using testfonts::TempDir;

namespace {

std::vector<uint8_t> Bytes(const std::string& text) {
    return std::vector<uint8_t>(text.begin(), text.end());
}

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
    const std::string manifest = dir.Write("fonts.xml", Bytes(R"(<?xml version="1.0" encoding="UTF-8"?>
<fonts>
  <font id="0" face="Tahoma" height="11"/>
  <font id="3" face="MS UI Gothic" height="-12" weight="700" italic="1" underline="1" strikeout="1"
        family="0x30" pitch="1" name="Caption &#x3042;" ignoreHeightExt="0" heightExt="14">
    <alternative face="Meiryo UI"/>
    <alternative face="Tahoma"/>
  </font>
</fonts>)"));
    const std::string output = dir.Path() + "/fonts.urf";
    std::ostringstream log;
    ASSERT_EQ(0, ulores::PackFonts(manifest, output, log));
    EXPECT_NE(std::string::npos, log.str().find("2 fonts, IDs 0 to 3"));
    ASSERT_TRUE(ulores::IsFontResourceFile(output));

    std::ifstream in(output, std::ios::binary);
    const std::vector<uint8_t> file((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    details::FontRecord r;
    ASSERT_TRUE(details::ReadFontRecord(file.data(), file.size(), 0, r));
    EXPECT_EQ(L"Tahoma", r.primaryFace);
    EXPECT_EQ(11, r.height);
    EXPECT_EQ(400, r.weight);
    EXPECT_EQ(0x20, r.family);
    EXPECT_EQ(2, r.pitch);
    EXPECT_EQ(L"Tahoma", r.name);
    EXPECT_TRUE(r.ignoreHeightExt);
    EXPECT_EQ(11, r.heightExt);
    ASSERT_TRUE(details::ReadFontRecord(file.data(), file.size(), 3, r));
    EXPECT_EQ(-12, r.height);
    EXPECT_TRUE(r.italic && r.underline && r.strikeOut);
    EXPECT_EQ(0x30, r.family);
    EXPECT_EQ(1, r.pitch);
    EXPECT_EQ((std::vector<ULOString>{L"Meiryo UI", L"Tahoma"}), r.alternativeFaces);
    EXPECT_EQ(L"Caption \x3042", r.name);
    EXPECT_FALSE(r.ignoreHeightExt);
    EXPECT_EQ(14, r.heightExt);

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
        const std::string path = dir.Write("bad.xml", Bytes(xml));
        const std::string message = Error([&] { ulores::ReadFontManifest(path); });
        EXPECT_NE(std::string::npos, message.find(expected)) << xml << " gave: " << message;
    }
    EXPECT_NE(std::string::npos,
              Error([&] { ulores::ReadFontManifest(dir.Path() + "/none.xml"); }).find("cannot open"));
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
    const std::string path = dir.Write("foreign.urf", file);
    EXPECT_FALSE(ulores::IsFontResourceFile(path));
    std::ostringstream dump;
    EXPECT_EQ(1, ulores::DumpFonts(path, dump));
    EXPECT_NE(std::string::npos, dump.str().find("2 table entries"));
    EXPECT_NE(std::string::npos, dump.str().find("font 0: at 0x00000108, damaged"));
    EXPECT_NE(std::string::npos, dump.str().find("font 1: at 0x7ffffff0, damaged"));
    EXPECT_NE(std::string::npos, Error([&] {
                                     ulores::DumpFonts(dir.Write("short.urf", {1, 2, 3}), dump);
                                 }).find("too short"));
}
