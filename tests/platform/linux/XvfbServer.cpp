// Starting and stopping Xvfb.
#include "platform/linux/XvfbServer.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

extern char** environ;

namespace ulotest {

XvfbServer::XvfbServer(int width, int height, const std::vector<std::string>& extraArguments) {
    int fds[2];
    if (pipe(fds) != 0) {
        problem_ = "no pipe";
        return;
    }
    fcntl(fds[0], F_SETFD, FD_CLOEXEC);
    // -noreset: the server would otherwise start over, refusing connections for a moment, each time
    // its last client leaves.
    std::vector<std::string> arguments = {"Xvfb",      "-displayfd", std::to_string(fds[1]),
                                          "-nolisten", "tcp",        "-noreset"};
    arguments.insert(arguments.end(),
                     {"-screen", "0", std::to_string(width) + "x" + std::to_string(height) + "x24"});
    arguments.insert(arguments.end(), extraArguments.begin(), extraArguments.end());
    std::vector<char*> argv;
    for (std::string& a : arguments) {
        argv.push_back(a.data());
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    if (posix_spawnp(&pid_, "Xvfb", &actions, nullptr, argv.data(), environ) != 0) {
        pid_ = -1;
        problem_ = "Xvfb could not be started (is the package xvfb installed? scripts/bootstrap installs it)";
    }
    posix_spawn_file_actions_destroy(&actions);
    close(fds[1]);
    // The display number, one line, within ten seconds.
    std::string number;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    for (char c = 0; pid_ > 0 && std::chrono::steady_clock::now() < deadline;) {
        pollfd p{fds[0], POLLIN, 0};
        if (poll(&p, 1, 100) <= 0) {
            continue;
        }
        if (read(fds[0], &c, 1) != 1 || c == '\n') {
            break;
        }
        number += c;
    }
    close(fds[0]);
    display_ = number.empty() ? "" : ":" + number;
    problem_ = pid_ > 0 && number.empty() ? "Xvfb did not report a display within ten seconds" : problem_;
}

XvfbServer::~XvfbServer() {
    if (pid_ <= 0) {
        return;
    }
    kill(pid_, SIGTERM);
    for (int i = 0; i < 100; ++i) {
        if (waitpid(pid_, nullptr, WNOHANG) == pid_) {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
}

std::string UnusedDisplay() {
    for (int n = 900;; ++n) {
        struct stat s;
        const std::string socket = "/tmp/.X11-unix/X" + std::to_string(n);
        const std::string lock = "/tmp/.X" + std::to_string(n) + "-lock";
        if (stat(socket.c_str(), &s) != 0 && stat(lock.c_str(), &s) != 0) {
            return ":" + std::to_string(n);
        }
    }
}

}  // namespace ulotest
