// korvictl: the host tool of the settings service, for tuning authors and integrators.
#include <cstdio>
#include <string>
#include <vector>

#include "Command.h"

namespace korvi::ctl {

const std::vector<Command>& allCommands() {
    static const std::vector<Command> kCommands = {
        {"params", "print the parameter catalogue (number, column name, owning record)",
         "usage: korvictl params [--help]\n"
         "\n"
         "Prints one row per parameter of the service: its number, its database column name and\n"
         "the record that owns it (Tuning, Profile, ProfileEndpoint, IeqPreset, GeqPreset), or\n"
         "\"none\" for a parameter no stored record admits.\n",
         runParams},
        {"inspect", "show what the service makes of a tuning file, and what to fix in it",
         "usage: korvictl inspect [--brief | --json] [--strict] [--log] FILE\n"
         "\n"
         "Reads FILE the way the service reads a factory or OEM tuning file and prints what it\n"
         "yields: format and tool version, virtual-bass type, IEQ and GEQ presets, profiles with\n"
         "their endpoints, tunings with their devices, each with its values. Then the warnings a\n"
         "tuning author must see, each as FILE:LINE: warning: text [kind]:\n"
         "  unknown-element    an element no value setter knows (a typo?), ignored\n"
         "  ignored-element    a known element where the service does not read it\n"
         "  duplicate          a profile, preset, tuning or device id or name given twice\n"
         "  dropped-tuning     a tuning without a data block, which the service drops\n"
         "  dangling-device    a device id whose tuning the service does not have\n"
         "  missing-ieq-preset an include selecting an IEQ preset the file lacks\n"
         "  missing-endpoint   a profile without its speaker, headphone or other endpoint\n"
         "  unknown-endpoint   an endpoint name other than speaker, headphone or other\n"
         "  unknown-port       a device port that is none of the seven port names\n"
         "  not-indented       an element whose first child is an element: the reader skips it\n"
         "  misplaced-value    a value element in a section whose record does not keep it\n"
         "\n"
         "  --brief    the records without their values\n"
         "  --json     print the same as one JSON document\n"
         "  --strict   exit with status 3 when there is any warning\n"
         "  --log      let the service's own log lines through to stderr\n"
         "\n"
         "Exit status: 0 read (warnings or not), 1 unreadable or malformed file (one line on\n"
         "stderr), 2 usage error, 3 warnings under --strict.\n",
         runInspect},
        {"blob", "print a parameter blob one entry per line (device, code, values)",
         "usage: korvictl blob FILE\n"
         "       korvictl blob --words WORD...\n"
         "\n"
         "Decodes a parameter blob as the shared store would: from FILE (32-bit words in host byte\n"
         "order) or from words given in decimal or 0x-hex. Prints the target device and the entry\n"
         "count, then one line per entry: device name (or hex), four-character code, values.\n"
         "A blob the store would refuse prints 'invalid parameter blob: <reason>' and exits 1.\n",
         runBlob},
        {"boot", "bring the service up over a device root and show its state and the effect's",
         "usage: korvictl boot [--root DIR] [--json] [--log]\n"
         "\n"
         "Brings the whole service up over a device root as a device does (amplifier type, factory\n"
         "file choice, database built or reused, OEM merge, state, effect path), registers a\n"
         "client and prints what start-up did, the state a client sees (on/off, profiles with the\n"
         "selected one marked, per port the selected tuning device and those offered) and what\n"
         "the effect received, per device, decoded.\n"
         "\n"
         "  --root DIR  the device root (DIR/vendor/etc/korvi/, DIR/data/vendor/korvi/, ...); the\n"
         "              database stays there for the next run. Without it a scratch copy of the\n"
         "              bundled sample root is used and removed, so no file of yours changes.\n"
         "  --json      the same as one JSON document\n"
         "  --log       let the service's own log lines through to stderr\n"
         "\n"
         "Exit status: 0 up, 1 the service did not start (one line on stderr), 2 usage error.\n",
         runBoot},
        {"shell", "drive a running service as a client, one operation per line",
         "usage: korvictl shell [--root DIR] [--log] [SCRIPT]\n"
         "\n"
         "Brings the service up as 'boot' does and reads client operations, one per line, from\n"
         "SCRIPT or standard input: select a profile, set and get client parameters, choose tuning\n"
         "devices, switch on/off, save, reset, reload the OEM file, raw request and query bytes,\n"
         "integer queries. After each operation it prints the effect parameters that changed, per\n"
         "device, and the notifications the client received. 'help' inside lists the operations.\n"
         "An operation in error prints one 'error:' line and the shell goes on.\n",
         runShell},
    };
    return kCommands;
}

int usageError(const std::string& message) {
    fprintf(stderr, "korvictl: %s (try 'korvictl --help')\n", message.c_str());
    return 2;
}

bool wantsHelp(const std::vector<std::string>& args) {
    for (const std::string& a : args) {
        if (a == "--help" || a == "-h") return true;
    }
    return false;
}

}  // namespace korvi::ctl

namespace {

void printHelp() {
    printf("usage: korvictl COMMAND [ARGS...]\n\nThe host tool of the Korvi settings service.\n\n"
           "commands:\n");
    for (const korvi::ctl::Command& c : korvi::ctl::allCommands()) {
        printf("  %-10s %s\n", c.name, c.summary);
    }
    printf("\n'korvictl COMMAND --help' describes one command.\n");
}

}  // namespace

int main(int argc, char** argv) {
    using namespace korvi::ctl;
    if (argc < 2) {
        printHelp();
        return 2;
    }
    const std::string name = argv[1];
    if (name == "--help" || name == "-h" || name == "help") {
        printHelp();
        return 0;
    }
    std::vector<std::string> args(argv + 2, argv + argc);
    for (const Command& c : allCommands()) {
        if (name != c.name) continue;
        if (wantsHelp(args)) {
            printf("%s", c.usage);
            return 0;
        }
        return c.run(args);
    }
    return usageError("unknown command '" + name + "'");
}
