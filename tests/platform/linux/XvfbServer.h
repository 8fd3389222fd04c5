#pragma once
// A private X server for a test or a benchmark: Xvfb on a display number it picks itself (so that
// runs in parallel never collide), stopped when the object dies.
#include <sys/types.h>

#include <string>
#include <vector>

namespace ulotest {

class XvfbServer {
public:
    // Starts `Xvfb` with a 24-bit screen of the given size and the extra arguments; Display() is empty
    // and Problem() says why when it does not come up within ten seconds.
    XvfbServer(int width, int height, const std::vector<std::string>& extraArguments = {});
    ~XvfbServer();
    XvfbServer(const XvfbServer&) = delete;
    XvfbServer& operator=(const XvfbServer&) = delete;

    const std::string& Display() const { return display_; }  // ":N"
    const std::string& Problem() const { return problem_; }

private:
    pid_t pid_ = -1;
    std::string display_;
    std::string problem_;
};

// A display number on which no server is listening (its socket file is absent).
std::string UnusedDisplay();

}  // namespace ulotest
