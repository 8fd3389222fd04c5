#include "ulogui/ResourceFileDiscover.h"

#include "l10n/ResourceExtensions.h"
#include "l10n/ResourceFilesMissing.h"
#include "ulogui/LanguageManager.h"

namespace ulo {
namespace gui {

namespace {

// Where hosts and support staff have always seen this failure reported from.
constexpr const char* kErrorFile = "ulogui/resourcefilediscover";
constexpr int kErrorLine = 157;

}  // namespace

ResourceFileDiscover::ResourceFileDiscover(const ULOPath& dir, const ULOString& body)
    : directory_(dir), body_(body) {}

ResourceFileDiscover::ResourceFileDiscover(ResourceFileDiscover&& other) noexcept
    : directory_(std::move(other.directory_)), body_(std::move(other.body_)) {
    cache_.swap(other.cache_);
}

ResourceFileDiscover& ResourceFileDiscover::operator=(ResourceFileDiscover&& other) noexcept {
    if (this != &other) {
        directory_ = std::move(other.directory_);
        body_ = std::move(other.body_);
        cache_.swap(other.cache_);
    }
    return *this;
}

void ResourceFileDiscover::SetPath(const ULOPath& dir) {
    directory_ = dir;
    cache_.clear();
}

void ResourceFileDiscover::SetResourceBody(const ULOString& body) {
    body_ = body;
    cache_.clear();
}

ulo::ErrorCode ResourceFileDiscover::GetFiles(std::vector<ResourceFile>& out, int lang) {
    const auto cached = cache_.find(lang);
    if (cached != cache_.end()) {
        out = cached->second;
    } else {
        const ULOString folder = LanguageManager::Instance().GetFolderFromLangID(lang, false, L"");
        std::vector<ResourceFile> found;
        for (const wchar_t* extension : ulogui::l10n::kResourceExtensions) {
            // "%s.%s" of body and extension.
            const ULOString name = body_ + L"." + extension;
            const ULOPath inFolder = directory_ / folder / name;
            const ULOPath flat = directory_ / name;
            if (inFolder.exists()) {
                found.emplace_back(inFolder, lang);
            } else if (flat.exists()) {
                found.emplace_back(flat, lang);
            }
        }
        cache_[lang] = found;
        out = std::move(found);
    }
    if (out.size() == static_cast<size_t>(ulogui::l10n::kResourceFileCount)) {
        return ulo::ErrorCode::noError();
    }
    return ulo::ErrorCode(
        ULO_AT(ulogui::l10n::ResourceFilesMissing(), __PRETTY_FUNCTION__, kErrorFile, kErrorLine));
}

std::vector<int> ResourceFileDiscover::GetAvailableLangs() {
    std::vector<int> available;
    const int count = LanguageManager::Instance().LanguageCount();
    for (int lang = 0; lang < count; ++lang) {
        std::vector<ResourceFile> scratch;
        if (GetFiles(scratch, lang).IsOk()) {
            available.push_back(lang);
        }
    }
    return available;
}

int ResourceFileDiscover::LogFileCreationTimes(int /*lang*/, const std::wstring& /*logPath*/) {
    return 0;
}

ULOPath ResourceFileDiscover::InitResourceDir(const ULOString& name, const ResourceDirDiscover& d) {
    ULOPath dir = d.FindResourceDir(name);
    // A folder already given to the language manager always wins.
    if (!LanguageManager::GetParentFolderPath().empty()) {
        dir = LanguageManager::GetParentFolderPath();
    }
    LanguageManager::InitInstance(dir);
    return dir;
}

}  // namespace gui
}  // namespace ulo
