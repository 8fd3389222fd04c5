// The resource builder: PNG files and a manifest in, a bitmap resource file out, listed and unpacked
// again through the program, and its errors; the font commands, manifests in and font resource
// files out, through the library of the commands.
#include <gtest/gtest.h>
#include <png.h>
#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/wait.h>
#endif

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "FontCommands.h"
#include "PngFile.h"
#include "ToolError.h"
#include "font/FontFiles.h"
#include "ulogui/Picture.h"

namespace {

using Rgba = ulores::RgbaImage;

Rgba Pattern(int width, int height, int seed) {
    Rgba image{width, height, std::vector<unsigned char>(static_cast<size_t>(width) * height * 4)};
    for (size_t i = 0; i < image.pixels.size(); ++i) {
        image.pixels[i] = static_cast<unsigned char>(seed * 37 + i * 11 + (i % 4) * 53);
    }
    return image;
}

// The inputs are written by libpng directly, the outputs read by the program's own reader (the
// pixels the library reads from the packed file anchor the channels and rows in between).
void WritePng(const std::string& path, const Rgba& image) {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width);
    png.height = static_cast<png_uint_32>(image.height);
    png.format = PNG_FORMAT_RGBA;
    ASSERT_TRUE(png_image_write_to_file(&png, path.c_str(), 0, image.pixels.data(), 0, nullptr)) << path;
}

// Columns [x0, x0 + width) of an image.
Rgba Columns(const Rgba& image, int x0, int width) {
    Rgba out{width, image.height, {}};
    for (int y = 0; y < image.height; ++y) {
        out.pixels.insert(out.pixels.end(), image.At(x0, y), image.At(x0, y) + 4 * width);
    }
    return out;
}

// What a format keeps: 24-bit pixels are opaque, a mask is black with its opacity.
Rgba Kept(Rgba image, const std::string& format) {
    for (size_t i = 0; i < image.pixels.size(); i += 4) {
        if (format == "rgb24") {
            image.pixels[i + 3] = 255;
        } else if (format == "mask8") {
            image.pixels[i] = image.pixels[i + 1] = image.pixels[i + 2] = 0;
        }
    }
    return image;
}

struct Result {
    int status = -1;
    std::string output;
};

std::string Error(const std::function<void()>& run) {
    try {
        run();
    } catch (const ulores::ToolError& e) {
        return e.what();
    }
    return "";
}

class UloresTest : public ::testing::Test {
protected:
    std::string Path(const std::string& name) const { return dir_.Path().native() + "/" + name; }

    Result Run(const std::string& arguments) const {
        Result result;
#if defined(_WIN32)
        // The program beside this one (the build puts all programs in one folder), by a path cmd.exe reads.
        char self[MAX_PATH] = {};
        const std::string own(self, ::GetModuleFileNameA(nullptr, self, MAX_PATH));
        const std::string command =
            "\"" + own.substr(0, own.find_last_of('\\') + 1) + "ulores.exe\" " + arguments + " 2>&1";
        FILE* pipe = _popen(command.c_str(), "r");
#else
        const std::string command = std::string(ULORES_PATH) + " " + arguments + " 2>&1";
        FILE* pipe = popen(command.c_str(), "r");
#endif
        if (pipe == nullptr) {
            ADD_FAILURE() << "cannot run " << command;
            return result;
        }
        char buffer[512];
        while (size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) {
            result.output.append(buffer, n);
        }
#if defined(_WIN32)
        result.status = _pclose(pipe);
#else
        const int status = pclose(pipe);
        result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
        return result;
    }

    // The number of files in the folder, to see that nothing temporary was left.
    size_t FileCount() const {
        const std::filesystem::directory_iterator files(dir_.Path().native());
        return static_cast<size_t>(std::distance(begin(files), end(files)));
    }

    // Packs `manifest` over an existing bad.urb and expects failure naming what is given, the old file
    // left as it was and no temporary file left behind.
    void ExpectPackError(const std::string& manifest, const std::vector<std::string>& mentions) {
        dir_.Write("bad.xml", manifest);
        dir_.Write("bad.urb", "previous");
        const size_t before = FileCount();
        const Result r = Run("pack-bitmaps " + Path("bad.xml") + " -o " + Path("bad.urb"));
        EXPECT_EQ(r.status, 1) << r.output;
        for (const std::string& m : mentions) {
            EXPECT_NE(r.output.find(m), std::string::npos) << "missing \"" << m << "\" in: " << r.output;
        }
        std::string kept;
        std::getline(std::ifstream(Path("bad.urb")), kept);
        EXPECT_EQ(kept, "previous");
        EXPECT_EQ(FileCount(), before);
    }

    TempDir dir_;
};

TEST_F(UloresTest, PackedPicturesExtractToTheSamePixelsAndErrorsNameTheLinePictureOrFile) {
    auto png = [this](const char* name, const Rgba& image) {
        WritePng(Path(name), image);
        return image;
    };
    const Rgba small0 = png("small0.png", Pattern(5, 4, 1)), small1 = png("small1.png", Pattern(5, 4, 2));
    const Rgba large0 = png("large0.png", Pattern(10, 8, 3)), large1 = png("large1.png", Pattern(10, 8, 4));
    const Rgba strip = png("strip.png", Pattern(9, 2, 5)), mask = png("mask.png", Pattern(7, 3, 6));
    const Rgba plain = png("plain.png", Pattern(3, 3, 7));
    dir_.Write("pictures.xml", R"(<?xml version="1.0"?>
<bitmaps>
  <picture id="3" format="alpha32" parts="2">
    <version><part file="small0.png"/><part file="small1.png"/></version>
    <version><part file="large0.png"/><part file="large1.png"/></version>
  </picture>
  <picture id="7" format="rgb24" parts="3">
    <version file="strip.png"/>
  </picture>
  <picture id="9" format="mask8"><version file="mask.png"/></picture>
  <picture id="12" format="rgb32" flags="0x2"><version bit="4" file="plain.png"/></picture>
</bitmaps>
)");
    const Result pack = Run("pack-bitmaps " + Path("pictures.xml") + " -o " + Path("out.urb"));
    ASSERT_EQ(pack.status, 0) << pack.output;

    const Result dump = Run("dump " + Path("out.urb"));
    EXPECT_EQ(dump.status, 0) << dump.output;
    for (const char* line :
         {"index of 13 entries", "flags 0x1 (32-bit with alpha), 2 part(s)", "version 2 (bit 0x2)",
          ": 10 x 8, stride 40", "flags 0x8 (24-bit), 3 part(s)", ": 3 x 2, stride 12",
          "flags 0x4 (8-bit mask)", "(32-bit, other bits 0x2)", "version 1 (bit 0x4)", "4 picture(s)"}) {
        EXPECT_NE(dump.output.find(line), std::string::npos) << line << " not in:\n" << dump.output;
    }

    struct Expected {
        std::string arguments;
        Rgba pixels;
    };
    const std::vector<Expected> expected = {
        {"3", small0},
        {"3 --part 1", small1},
        {"3 --version 2", large0},
        {"3 --version 2 --part 1", large1},
        {"7 --part 0", Kept(Columns(strip, 0, 3), "rgb24")},
        {"7 --part 2", Kept(Columns(strip, 6, 3), "rgb24")},
        {"9", Kept(mask, "mask8")},
        {"12", plain},
    };
    for (const Expected& e : expected) {
        SCOPED_TRACE(e.arguments);
        const Result r = Run("extract " + Path("out.urb") + " " + e.arguments + " -o " + Path("x.png"));
        ASSERT_EQ(r.status, 0) << r.output;
        const Rgba back = ulores::ReadPng(Path("x.png"));
        EXPECT_EQ(std::make_pair(back.width, back.height), std::make_pair(e.pixels.width, e.pixels.height));
        EXPECT_EQ(back.pixels, e.pixels.pixels);
    }

    // The file holds blue, green, red and transparency (255 - opacity), bottom row first.
    ASSERT_FALSE(ULOPicture::SetBitmapResourceFile(ULOPath::FromNative(Path("out.urb"))).IsError());
    const ULOPicture picture(3, 1, false);
    const unsigned char* source = small1.At(0, 3);
    EXPECT_EQ((std::vector<unsigned char>{source[2], source[1], source[0],
                                          static_cast<unsigned char>(255 - source[3])}),
              std::vector<unsigned char>(picture.GetBits(), picture.GetBits() + 4));

    // What is not there and bad arguments.
    const std::string file = Path("out.urb");
    const std::string out = " -o " + Path("y.png");
    for (const char* args : {" 4", " 7 --version 2", " 7 --part 3", " 7 --version 0", " -1"}) {
        SCOPED_TRACE(args);
        const Result r = Run("extract " + file + args + out);
        EXPECT_EQ(r.status, 1) << r.output;
        EXPECT_NE(r.output.find("out.urb"), std::string::npos) << r.output;
        EXPECT_FALSE(std::filesystem::exists(Path("y.png")));
    }
    EXPECT_EQ(Run("extract " + Path("missing.urb") + " 7" + out).status, 1);
    EXPECT_EQ(Run("extract " + file + " two" + out).status, 2);
    EXPECT_EQ(Run("extract " + file + " 7").status, 2);
    EXPECT_EQ(Run("frobnicate").status, 2);

    // A record whose parts run past the end of the file.
    std::ifstream in(file, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    dir_.Write("cut.urb", bytes.substr(0, bytes.size() - 10));
    const Result cut = Run("dump " + Path("cut.urb"));
    EXPECT_EQ(cut.status, 1);
    EXPECT_NE(cut.output.find("picture 12: DAMAGED"), std::string::npos) << cut.output;
    EXPECT_EQ(Run("extract " + Path("cut.urb") + " 12" + out).status, 1);
    EXPECT_EQ(Run("dump " + Path("missing.urb")).status, 1);
    dir_.Write("short.urb", "tiny");
    EXPECT_EQ(Run("dump " + Path("short.urb")).status, 1);
    WritePng(Path("a.png"), Pattern(4, 3, 1));
    WritePng(Path("b.png"), Pattern(5, 3, 2));
    dir_.Write("not-a-png.png", "hello");
    // Pictures between "<bitmaps>" and "</bitmaps>" on lines of their own.
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"<picture id=\"9\" format=\"alpha32\" parts=\"2\">\n<version>\n<part file=\"a.png\"/>\n"
         "<part file=\"b.png\"/>\n</version>\n</picture>",
         {"bad.xml:5:", "picture 9", "b.png", "5 x 3", "a.png", "4 x 3"}},
        {"<picture id=\"1\" format=\"alpha32\">\n<version file=\"a.png\">", {"bad.xml:", "not well-formed"}},
        {"<picture id=\"2\" format=\"rgb16\"><version file=\"a.png\"/></picture>",
         {"bad.xml:2:", "picture 2", "rgb16"}},
        {"<picture id=\"4\" format=\"rgb24\"><version file=\"missing.png\"/></picture>",
         {"bad.xml:2:", "picture 4", "missing.png"}},
        {"<picture id=\"5\" format=\"rgb24\" parts=\"3\"><version file=\"a.png\"/></picture>",
         {"bad.xml:2:", "picture 5", "a.png", "3 parts"}},
        {"<picture id=\"6\" format=\"mask8\"><version file=\"a.png\"/></picture>\n"
         "<picture id=\"6\" format=\"mask8\"><version file=\"a.png\"/></picture>",
         {"bad.xml:3:", "picture 6", "line 2"}},
        {"<picture id=\"-3\" format=\"mask8\"><version file=\"a.png\"/></picture>",
         {"bad.xml:2:", "id=\"-3\""}},
        {"<picture id=\"8\" format=\"mask8\"/>", {"picture 8", "no <version>"}},
        {"<picture id=\"1\" format=\"mask8\"><version file=\"not-a-png.png\"/></picture>",
         {"bad.xml:2:", "picture 1", "not-a-png.png"}},
    };
    for (const auto& [pictures, mentions] : cases) {
        ExpectPackError("<bitmaps>\n" + pictures + "\n</bitmaps>", mentions);
    }
    ExpectPackError("<fonts/>", {"bad.xml", "<bitmaps>"});
    EXPECT_EQ(Run("pack-bitmaps " + Path("nothing.xml") + " -o " + Path("x.urb")).status, 1);
}

using FontTool = UloresTest;

TEST_F(FontTool, PacksAManifestIntoAFileTheLibraryReadsAndErrorsNameTheLineOrRecordAndTheProblem) {
    const std::string manifest = dir_.Write("fonts.xml", R"(<?xml version="1.0" encoding="UTF-8"?>
<fonts>
  <font id="0" face="Tahoma" height="11"/>
  <font id="3" face="MS UI Gothic" height="-12" weight="700" italic="1" underline="1" strikeout="1"
        family="0x30" pitch="1" name="Caption &#x3042;" ignoreHeightExt="0" heightExt="14">
    <alternative face="Meiryo UI"/>
    <alternative face="Tahoma"/>
  </font>
</fonts>)");
    const std::string output = dir_.Path().native() + "/fonts.urf";
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
    EXPECT_NE(std::string::npos, dump.str().find("4 table entries"));
    EXPECT_NE(std::string::npos,
              dump.str().find("\"MS UI Gothic\" height -12 weight 700 italic underline strikeout"));
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
        const std::string path = dir_.Write("bad.xml", xml);
        const std::string message = Error([&] { ulores::ReadFontManifest(path); });
        EXPECT_NE(std::string::npos, message.find(expected)) << xml << " gave: " << message;
    }
    EXPECT_NE(std::string::npos, Error([&] {
                                     ulores::ReadFontManifest(dir_.Path().native() + "/none.xml");
                                 }).find("cannot open"));
    std::vector<uint8_t> foreign(270, 0);  // a header that is not ours: the table ends at the first record
    PutU32(foreign, 256, 264);             // font 0 right after a two-entry table
    PutU32(foreign, 260, 0x7FFFFFF0);      // font 1 far past the end
    PutU32(foreign, 264, 1);
    foreign[268] = 'A';
    const std::string path = testfonts::WriteFile(dir_, "foreign.urf", foreign);
    EXPECT_FALSE(ulores::IsFontResourceFile(path));
    std::ostringstream listed;
    EXPECT_EQ(1, ulores::DumpFonts(path, listed));
    EXPECT_NE(std::string::npos, listed.str().find("2 table entries"));
    EXPECT_NE(std::string::npos, listed.str().find("font 0: at 0x00000108, damaged"));
    EXPECT_NE(std::string::npos, listed.str().find("font 1: at 0x7ffffff0, damaged"));
    EXPECT_NE(std::string::npos,
              Error([&] {
                  ulores::DumpFonts(testfonts::WriteFile(dir_, "short.urf", {1, 2, 3}), listed);
              }).find("too short"));
}

}  // namespace
