#include "support/ToolRun.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <sstream>
#include <tuple>

extern char** environ;

namespace korvi::test {

namespace {

// Reads everything from two pipes until both are closed, without letting either fill up.
void drain(int outFd, int errFd, std::string& out, std::string& err) {
    char buf[4096];
    bool outOpen = true, errOpen = true;
    while (outOpen || errOpen) {
        fd_set set;
        FD_ZERO(&set);
        if (outOpen) FD_SET(outFd, &set);
        if (errOpen) FD_SET(errFd, &set);
        if (select((outFd > errFd ? outFd : errFd) + 1, &set, nullptr, nullptr, nullptr) < 0) return;
        for (auto [fd, open, text] : {std::tuple<int, bool*, std::string*>{outFd, &outOpen, &out},
                                      std::tuple<int, bool*, std::string*>{errFd, &errOpen, &err}}) {
            if (!*open || !FD_ISSET(fd, &set)) continue;
            const ssize_t n = read(fd, buf, sizeof buf);
            if (n <= 0) {
                *open = false;
            } else {
                text->append(buf, static_cast<size_t>(n));
            }
        }
    }
}

}  // namespace

std::vector<std::string> splitWords(const std::string& commandLine) {
    std::vector<std::string> words;
    std::istringstream in(commandLine);
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

ToolRun runProgram(const std::string& program, const std::vector<std::string>& args) {
    ToolRun run{-1, "", ""};
    int outPipe[2], errPipe[2];
    if (pipe2(outPipe, O_CLOEXEC) != 0) return run;
    if (pipe2(errPipe, O_CLOEXEC) != 0) {
        close(outPipe[0]);
        close(outPipe[1]);
        return run;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], STDERR_FILENO);

    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(program.c_str()));
    for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);

    pid_t pid = -1;
    const int spawned = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(outPipe[1]);
    close(errPipe[1]);
    if (spawned == 0) drain(outPipe[0], errPipe[0], run.out, run.err);
    close(outPipe[0]);
    close(errPipe[0]);
    if (spawned != 0) return run;

    int raw = 0;
    if (waitpid(pid, &raw, 0) == pid && WIFEXITED(raw)) run.status = WEXITSTATUS(raw);
    return run;
}

}  // namespace korvi::test
