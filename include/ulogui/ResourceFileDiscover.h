#pragma once
// Discovery of the six localised resource files of a language. The files share one base name (the
// resource body) and differ by extension; they lie in the language's folder under the resource
// directory or directly in the resource directory.
#include <map>
#include <string>
#include <vector>

#include "ulogui/Export.h"
#include "ulogui/PlatformTypes.h"
#include "ulolib/ErrorCode.h"
#include "ulolib/Path.h"
#include "ulolib/String.h"

namespace ulo {
namespace gui {

// One found resource file with its language and kind.
class ULODRAW_API ResourceFile {
public:
    // The kind follows the extension, compared exactly (".ura" but not ".URA").
    enum resourceType_e {
        resourceURA = 0,
        resourceURD = 1,
        resourceURM = 2,
        resourceURS = 3,
        resourceURF = 4,
        resourceURB = 5,
        resourceUnknown = 6,
    };

    ResourceFile(const ULOPath& path, int lang);
    ResourceFile(const ResourceFile&) = default;
    ResourceFile(ResourceFile&&) = default;
    ResourceFile& operator=(const ResourceFile&) = default;
    ResourceFile& operator=(ResourceFile&&) = default;

    int GetLang() const { return lang_; }
    const ULOPath& GetPath() const { return path_; }
    resourceType_e GetType() const { return type_; }

    // The kind of a file name's extension (the text from its last dot).
    static resourceType_e TypeFromPath(const ULOPath& path);

private:
    int lang_;
    ULOPath path_;
    resourceType_e type_;
};

// Where the resource directory is. The default is the application directory; hosts derive from
// the class to look elsewhere and may use the flag and module handle for that.
class ULODRAW_API ResourceDirDiscover {
public:
    ResourceDirDiscover(bool flag, HINSTANCE instance);
    virtual ~ResourceDirDiscover();
    // name is not used by the default lookup.
    virtual ULOPath FindResourceDir(const ULOString& name) const;

    bool GetFlag() const { return flag_; }
    HINSTANCE GetInstanceHandle() const { return instance_; }

private:
    bool flag_;
    HINSTANCE instance_;
};

class ULODRAW_API ResourceFileDiscover {
public:
    ResourceFileDiscover(const ULOPath& dir, const ULOString& body);
    ResourceFileDiscover(const ResourceFileDiscover&) = default;
    ResourceFileDiscover& operator=(const ResourceFileDiscover&) = default;
    // Moves swap the cache with the other object's.
    ResourceFileDiscover(ResourceFileDiscover&& other) noexcept;
    ResourceFileDiscover& operator=(ResourceFileDiscover&& other) noexcept;
    ~ResourceFileDiscover() = default;

    const ULOPath& GetDiscoverDirectory() const { return directory_; }
    const ULOString& GetResourceBody() const { return body_; }
    // Both empty the cache of found files.
    void SetPath(const ULOPath& dir);
    void SetResourceBody(const ULOString& body);

    // The files of language lang: for each extension (".ura", ".urd", ".urm", ".urs", ".urf",
    // ".urb" in that order) the copy in the language's folder, else the one in the directory. out
    // receives what was found (previous contents are replaced). The result of the first call per
    // language is cached: later calls do not look at the disk until SetPath or SetResourceBody.
    // Not all six found: an error with the message the host shows before stopping.
    ulo::ErrorCode GetFiles(std::vector<ResourceFile>& out, int lang);
    // The languages of the language manager's catalogue whose six files are all found, ascending.
    std::vector<int> GetAvailableLangs();
    // Kept for hosts that call it; does nothing and returns 0.
    int LogFileCreationTimes(int lang, const std::wstring& logPath);

    // The resource directory: the language manager's parent folder if one was ever given to it,
    // else what d finds. Also initialises the language manager with it (if not yet done).
    static ULOPath InitResourceDir(const ULOString& name, const ResourceDirDiscover& d);

private:
    ULOPath directory_;
    ULOString body_;
    std::map<int, std::vector<ResourceFile>> cache_;
};

}  // namespace gui
}  // namespace ulo
