// ulores: builds, lists and unpacks bitmap resource files.
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "Commands.h"
#include "FontCommands.h"
#include "ToolError.h"

namespace {

const char kUsage[] =
    "usage:\n"
    "  ulores pack-bitmaps MANIFEST -o FILE\n"
    "      build a bitmap resource file from an XML manifest and its PNG files\n"
    "  ulores pack-fonts MANIFEST -o FILE\n"
    "      build a font resource file from an XML manifest\n"
    "  ulores dump FILE\n"
    "      list the pictures of a bitmap resource file with their versions and parts,\n"
    "      or the fonts of a font resource file\n"
    "  ulores extract FILE ID [--version N] [--part P] -o OUT.png\n"
    "      write one part (from 0) of one version (from 1) of a picture as a PNG file\n";

class UsageError : public std::runtime_error {
public:
    explicit UsageError(const std::string& what) : std::runtime_error(what) {}
};

int ParseNumber(const std::string& text, const std::string& what) {
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || errno != 0 || *end != '\0' || value < INT_MIN || value > INT_MAX) {
        throw UsageError(what + " \"" + text + "\" is not a number");
    }
    return static_cast<int>(value);
}

// Positional arguments and the values of the options that take one.
struct Arguments {
    std::vector<std::string> positional;
    std::string output;
    std::string version;
    std::string part;
};

Arguments Parse(const std::vector<std::string>& args, bool withSelectors) {
    Arguments parsed;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        std::string* target = arg == "-o"                           ? &parsed.output
                              : withSelectors && arg == "--version" ? &parsed.version
                              : withSelectors && arg == "--part"    ? &parsed.part
                                                                    : nullptr;
        if (target != nullptr) {
            if (i + 1 == args.size()) {
                throw UsageError(arg + " needs a value");
            }
            *target = args[++i];
        } else if (arg.size() > 1 && arg[0] == '-' && !std::isdigit(static_cast<unsigned char>(arg[1]))) {
            throw UsageError("unknown option " + arg);
        } else {
            parsed.positional.push_back(arg);
        }
    }
    return parsed;
}

int Run(const std::vector<std::string>& args) {
    if (args.empty()) {
        throw UsageError("no command given");
    }
    const std::string command = args[0];
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    if (command == "pack-bitmaps") {
        const Arguments a = Parse(rest, false);
        if (a.positional.size() != 1 || a.output.empty()) {
            throw UsageError("pack-bitmaps takes one MANIFEST and -o FILE");
        }
        return ulores::PackBitmaps(a.positional[0], a.output, std::cout);
    }
    if (command == "pack-fonts") {
        const Arguments a = Parse(rest, false);
        if (a.positional.size() != 1 || a.output.empty()) {
            throw UsageError("pack-fonts takes one MANIFEST and -o FILE");
        }
        return ulores::PackFonts(a.positional[0], a.output, std::cout);
    }
    if (command == "dump") {
        const Arguments a = Parse(rest, false);
        if (a.positional.size() != 1 || !a.output.empty()) {
            throw UsageError("dump takes one FILE");
        }
        if (ulores::IsFontResourceFile(a.positional[0])) {
            return ulores::DumpFonts(a.positional[0], std::cout);
        }
        return ulores::Dump(a.positional[0], std::cout);
    }
    if (command == "extract") {
        const Arguments a = Parse(rest, true);
        if (a.positional.size() != 2 || a.output.empty()) {
            throw UsageError("extract takes FILE, ID and -o OUT.png");
        }
        const int id = ParseNumber(a.positional[1], "the ID");
        const int version = a.version.empty() ? 1 : ParseNumber(a.version, "--version");
        const int part = a.part.empty() ? 0 : ParseNumber(a.part, "--part");
        return ulores::Extract(a.positional[0], id, version, part, a.output, std::cout);
    }
    if (command == "-h" || command == "--help" || command == "help") {
        std::cout << kUsage;
        return 0;
    }
    throw UsageError("unknown command \"" + command + "\"");
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const UsageError& e) {
        std::cerr << "ulores: " << e.what() << "\n" << kUsage;
        return 2;
    } catch (const ulores::ToolError& e) {
        std::cerr << "ulores: " << e.what() << "\n";
        return 1;
    } catch (const std::exception& e) {
        std::cerr << "ulores: " << e.what() << "\n";
        return 1;
    }
}
