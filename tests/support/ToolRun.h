// Runs the built host tool as a user runs it and collects its exit status, standard output and
// standard error. Test programs get the tool's path as KORVICTL_PATH.
//
//   ToolRun run = runKorvictl({"inspect", "--strict", path});
//   EXPECT_EQ(run.status, 0) << run.err;
#pragma once

#include <string>
#include <vector>

namespace korvi::test {

struct ToolRun {
    int status;       // the exit status, or -1 when the tool did not exit normally
    std::string out;  // standard output
    std::string err;  // standard error
    std::string all() const { return out + err; }
};

// Runs program with args (no shell is involved, so arguments need no quoting).
ToolRun runProgram(const std::string& program, const std::vector<std::string>& args);

// Splits a command line at blanks ("blob --words 2 1" -> {"blob", "--words", "2", "1"}).
std::vector<std::string> splitWords(const std::string& commandLine);

#ifdef KORVICTL_PATH
inline ToolRun runKorvictl(const std::vector<std::string>& args) {
    return runProgram(KORVICTL_PATH, args);
}

// Runs korvictl with a command line split at blanks; standard error is appended to out, as a
// terminal would show both.
inline ToolRun runKorvictlMerged(const std::string& commandLine) {
    ToolRun run = runKorvictl(splitWords(commandLine));
    run.out += run.err;
    return run;
}
#endif

}  // namespace korvi::test
