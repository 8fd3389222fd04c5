#include "TextTable.h"

#include <fstream>

#include "GalleryError.h"

namespace gallery {

namespace {

// Every key the sheets draw.
const char* const kRequiredKeys[] = {
    "language.name",   "sheet.buttons",  "sheet.text",     "sheet.lists",      "sheet.indicators",
    "sheet.pictures",  "button.heading", "button.label",   "state.normal",     "state.hot",
    "state.pressed",   "state.disabled", "state.default",  "check.heading",    "check.unchecked",
    "check.checked",   "check.mixed",    "radio.heading",  "radio.off",        "radio.on",
    "edit.heading",    "edit.text",      "edit.selection", "edit.path",        "label.heading",
    "label.wrap",      "label.overflow", "group.caption",  "group.first",      "group.second",
    "tooltip.heading", "tooltip.text",   "combo.heading",  "list.heading",     "tabs.heading",
    "tab.general",     "tab.view",       "tab.advanced",   "tab.body",         "month.1",
    "month.2",         "month.3",        "month.4",        "month.5",          "month.6",
    "month.7",         "month.8",        "month.9",        "month.10",         "month.11",
    "month.12",        "title.active",   "title.inactive", "progress.heading", "progress.label",
    "percent",         "slider.heading", "knob.heading",   "spinner.heading",  "chart.heading",
    "toolbar.heading", "copy.normal",    "copy.highlight", "copy.disabled",    "copy.darken",
    "opacity.full",    "opacity.half",   "panel.heading",  "panel.label"};

std::string Trim(const std::string& s) {
    const size_t first = s.find_first_not_of(" \t\r");
    if (first == std::string::npos) {
        return std::string();
    }
    return s.substr(first, s.find_last_not_of(" \t\r") - first + 1);
}

std::string Unescape(const std::string& s) {
    std::string out;
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\\' && i + 1 < s.size() && s[i + 1] == 'n') {
            out += '\n';
            ++i;
        } else {
            out += s[i];
        }
    }
    return out;
}

}  // namespace

TextTable TextTable::Load(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw GalleryError(path + ": cannot read the text table");
    }
    TextTable table;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (number == 1 && line.compare(0, 3, "\xEF\xBB\xBF") == 0) {
            line.erase(0, 3);
        }
        const std::string trimmed = Trim(line);
        if (trimmed.empty() || trimmed[0] == '#') {
            continue;
        }
        const size_t equals = trimmed.find('=');
        const std::string key = equals == std::string::npos ? std::string() : Trim(trimmed.substr(0, equals));
        if (key.empty()) {
            throw GalleryError(path + ":" + std::to_string(number) + ": expected 'key = text'");
        }
        if (!table.texts_.emplace(key, ULOString::FromUtf8(Unescape(Trim(trimmed.substr(equals + 1)))))
                 .second) {
            throw GalleryError(path + ":" + std::to_string(number) + ": the key '" + key + "' repeats");
        }
    }
    for (const char* key : kRequiredKeys) {
        if (table.texts_.count(key) == 0) {
            throw GalleryError(path + ": no text for the key '" + key + "'");
        }
    }
    return table;
}

ULOString TextTable::Get(const char* key) const {
    const auto found = texts_.find(key);
    return found != texts_.end() ? found->second : ULOString::FromUtf8(key);
}

}  // namespace gallery
