#pragma once
// The process-wide application directory: by default the folder of the running executable.
#include <boost/shared_ptr.hpp>

#include "ulolib/Export.h"
#include "ulolib/Path.h"

class ULOLIB_API Directory {
public:
    // The single instance, created on first use.
    static boost::shared_ptr<Directory> create();

    ULOPath GetApplicationDirectory() const;
    // Hosts (and tests) may point the application directory elsewhere.
    void SetApplicationDirectory(const ULOPath& path);

private:
    Directory();
    struct State;
    boost::shared_ptr<State> state_;
};
