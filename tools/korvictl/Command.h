// A korvictl sub-command: its name, a one-line summary for the command list, its --help text and
// its entry point (arguments after the command name; returns the process exit status).
#pragma once

#include <string>
#include <vector>

namespace korvi::ctl {

struct Command {
    const char* name;
    const char* summary;
    const char* usage;
    int (*run)(const std::vector<std::string>& args);
};

// Every command, in the order the tool lists them.
const std::vector<Command>& allCommands();

// Prints "korvictl: <message>" to stderr and returns the exit status for a usage error.
int usageError(const std::string& message);

// True when args holds "--help" or "-h".
bool wantsHelp(const std::vector<std::string>& args);

int runParams(const std::vector<std::string>& args);
int runInspect(const std::vector<std::string>& args);
int runBlob(const std::vector<std::string>& args);
int runBoot(const std::vector<std::string>& args);
int runShell(const std::vector<std::string>& args);

}  // namespace korvi::ctl
