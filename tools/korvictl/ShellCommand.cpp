// korvictl shell: one running service driven by client operations, one per line, from standard
// input or a script. Every operation goes through the service's public methods as the interface
// glue would call them; after each one the shell shows what the effect received (as a change
// against the previous look) and the notifications the client got.
#include <strings.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "Command.h"
#include "ServiceReport.h"
#include "ServiceSession.h"
#include "model/Port.h"
#include "service/KorviManagerService.h"

namespace korvi::ctl {

bool parseSessionOptions(const std::vector<std::string>& args, std::string* root, bool* log,
                         std::vector<std::string>* rest, std::string* error);

namespace {

// The client parameter ids and the names the shell knows them by (their tuning-file names where
// there is one).
struct ClientParam {
    int id;
    const char* name;
    int length;
};
constexpr ClientParam kClientParams[] = {
    {101, "virtualizer-headphone", 1},   {102, "virtualizer-speaker", 1},
    {103, "volume-leveler-enable", 1},   {104, "ieq-preset", 1},
    {105, "dialog-enhancer-enable", 1},  {106, "graphic-equalizer-enable", 1},
    {107, "ieq-amount", 1},              {108, "dialog-enhancer-amount", 1},
    {109, "dialog-enhancer-ducking", 1}, {110, "graphic-equalizer-gains", 20},
    {111, "bass-enhancer-enable", 1},    {112, "virtual-bass-process-enable", 1},
    {113, "steerer-source-distance", 1}, {114, "reverb-suppression-enable", 1},
    {115, "reverb-suppression-amount", 1}, {116, "volume-leveler-amount", 1},
};

constexpr const char* kHelp =
    "operations (one per line; '#' starts a comment):\n"
    "  profile ID|NAME                      select a profile (request event 10)\n"
    "  set [profile P] [port PORT] PARAM VALUE...   set a client parameter (event 1, or 2 with a port)\n"
    "  get [profile P] [port PORT] PARAM    read a client parameter (query 1, or 2 with a port)\n"
    "  tuning PORT DEVICE                   choose the tuning device of a port\n"
    "  on | off                             switch the effect (event 0, saved)\n"
    "  save                                 save everything (event 9)\n"
    "  reset ID                             reset a profile to its factory values (event 12)\n"
    "  reload                               re-read the OEM tuning file (integer id RLTF)\n"
    "  raw HEX...                           send request bytes as they are (setSfxParam)\n"
    "  query [-n BYTES] HEX...              send query bytes (getSfxParam), BYTES of answer (4)\n"
    "  int CODE                             an integer query by its four characters (DTFV, ...) or 0x number\n"
    "  state | effect                       the state a client sees | all the effect holds\n"
    "  params | help | quit\n"
    "PARAM is a client id 101..116 or its name ('params' lists them); PORT a port number 0..5 or\n"
    "name; P defaults to the selected profile. Words after the event are little-endian.\n";

class Shell {
public:
    explicit Shell(ServiceSession& session) : mSession(session), mLast(session.effectState()) {}

    // Runs one line; false when the session should end.
    bool run(const std::string& line);

private:
    bool dispatch(const std::string& op, std::vector<std::string>& words);
    void showChanges();
    void fail(const std::string& message) { printf("error: %s\n", message.c_str()); }

    bool number(const std::string& text, long* value, const char* what);
    bool profileId(const std::string& text, int* id);
    bool port(const std::string& text, int* port);
    const ClientParam* param(const std::string& text);
    bool target(std::vector<std::string>& words, int* profile, int* port);
    int selectedProfile();

    void request(uint32_t event, const std::vector<int32_t>& words);
    void setParam(std::vector<std::string>& words);
    void getParam(std::vector<std::string>& words);
    void rawQuery(std::vector<std::string>& words);
    static bool hex(const std::vector<std::string>& words, size_t from, std::vector<uint8_t>* out);

    android::KorviManagerService& service() { return mSession.service(); }

    ServiceSession& mSession;
    EffectState mLast;
};

bool Shell::number(const std::string& text, long* value, const char* what) {
    errno = 0;
    char* end = nullptr;
    *value = strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || errno != 0 || *value < INT32_MIN || *value > INT32_MAX) {
        fail(std::string("bad ") + what + " '" + text + "' (a decimal number)");
        return false;
    }
    return true;
}

int Shell::selectedProfile() {
    const uint8_t in[4] = {0, 0, 0, 10};
    int32_t out = 0;
    service().getSfxParam(const_cast<uint8_t*>(in), sizeof(in), &out, sizeof(out));
    return out;
}

bool Shell::profileId(const std::string& text, int* id) {
    const uint8_t in[4] = {0, 0, 0, 3};
    int32_t count = 0;
    service().getSfxParam(const_cast<uint8_t*>(in), sizeof(in), &count, sizeof(count));
    for (int i = 0; i < count; ++i) {
        if (strcasecmp(service().getProfileName(i).c_str(), text.c_str()) == 0) {
            *id = i;
            return true;
        }
    }
    long value = 0;
    if (!number(text, &value, "profile")) return false;
    *id = static_cast<int>(value);
    return true;
}

bool Shell::port(const std::string& text, int* port) {
    for (int i = 0; i < kPortCount; ++i) {
        if (text == kPortNames[i] || text == std::to_string(i)) {
            *port = i;
            return true;
        }
    }
    fail("unknown port '" + text + "' (0..5 or internal_speaker, hdmi, miracast, headphone, "
         "bluetooth, usb)");
    return false;
}

const ClientParam* Shell::param(const std::string& text) {
    for (const ClientParam& p : kClientParams) {
        if (text == p.name || text == std::to_string(p.id)) return &p;
    }
    fail("unknown parameter '" + text + "' (ids 101..116 or their names: see 'params')");
    return nullptr;
}

// Takes the optional "profile P" and "port PORT" prefixes off words.
bool Shell::target(std::vector<std::string>& words, int* profile, int* portOut) {
    *profile = selectedProfile();
    *portOut = -1;
    while (words.size() >= 2 && (words[0] == "profile" || words[0] == "port")) {
        const bool ok = words[0] == "profile" ? profileId(words[1], profile) : port(words[1], portOut);
        if (!ok) return false;
        words.erase(words.begin(), words.begin() + 2);
    }
    return true;
}

void Shell::request(uint32_t event, const std::vector<int32_t>& words) {
    std::vector<uint8_t> bytes = {0, 0, 0, static_cast<uint8_t>(event)};
    for (int32_t w : words) {
        for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<uint8_t>(static_cast<uint32_t>(w) >> (8 * i)));
    }
    printf("request %s\n", hexBytes(bytes).c_str());
    service().setSfxParam(bytes.data(), static_cast<uint32_t>(bytes.size()));
}

void Shell::setParam(std::vector<std::string>& words) {
    int profile = 0;
    int portNumber = -1;
    if (!target(words, &profile, &portNumber)) return;
    if (words.size() < 2) return fail("set needs a parameter and at least one value");
    const ClientParam* p = param(words[0]);
    if (p == nullptr) return;
    std::vector<int32_t> request = portNumber < 0 ? std::vector<int32_t>{profile, p->id, 0}
                                                  : std::vector<int32_t>{profile, portNumber, p->id, 0};
    for (size_t i = 1; i < words.size(); ++i) {
        long value = 0;
        if (!number(words[i], &value, "value")) return;
        request.push_back(static_cast<int32_t>(value));
    }
    this->request(portNumber < 0 ? 1 : 2, request);
}

void Shell::getParam(std::vector<std::string>& words) {
    int profile = 0;
    int portNumber = -1;
    if (!target(words, &profile, &portNumber)) return;
    if (words.size() != 1) return fail("get needs exactly one parameter");
    const ClientParam* p = param(words[0]);
    if (p == nullptr) return;
    std::vector<uint8_t> in = {0, 0, 0, static_cast<uint8_t>(portNumber < 0 ? 1 : 2)};
    auto word = [&in](uint32_t w) {
        for (int i = 0; i < 4; ++i) in.push_back(static_cast<uint8_t>(w >> (8 * i)));
    };
    word(static_cast<uint32_t>(p->id));
    if (portNumber < 0) {
        word(static_cast<uint32_t>(profile));
    } else {
        in.push_back(static_cast<uint8_t>((profile << 4) | portNumber));
    }
    std::vector<int32_t> out(static_cast<size_t>(p->length), 0);
    const int rc = service().getSfxParam(in.data(), static_cast<uint32_t>(in.size()), out.data(),
                                         static_cast<uint32_t>(out.size() * 4));
    if (rc != 0) return fail("getSfxParam answered " + std::to_string(rc));
    std::string values;
    for (int32_t v : out) values += " " + std::to_string(v);
    printf("%s =%s\n", p->name, values.c_str());
}

bool Shell::hex(const std::vector<std::string>& words, size_t from, std::vector<uint8_t>* out) {
    std::string digits;
    for (size_t i = from; i < words.size(); ++i) digits += words[i];
    if (digits.empty() || digits.size() % 2 != 0 ||
        digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
        return false;
    }
    for (size_t i = 0; i < digits.size(); i += 2) {
        out->push_back(static_cast<uint8_t>(strtoul(digits.substr(i, 2).c_str(), nullptr, 16)));
    }
    return true;
}

void Shell::rawQuery(std::vector<std::string>& words) {
    size_t from = 0;
    long outSize = 4;
    if (words.size() >= 2 && words[0] == "-n") {
        if (!number(words[1], &outSize, "answer size")) return;
        if (outSize < 0 || outSize > 4096) return fail("answer size must be 0..4096");
        from = 2;
    }
    std::vector<uint8_t> in;
    if (!hex(words, from, &in)) return fail("query needs bytes in hex, two digits each");
    // Bytes the service does not write keep this value, so an unanswered query shows as such.
    std::vector<uint8_t> out(static_cast<size_t>(outSize), 0xee);
    const int rc = service().getSfxParam(in.data(), static_cast<uint32_t>(in.size()), out.data(),
                                         static_cast<uint32_t>(out.size()));
    printf("answer %s (getSfxParam returned %d; ee: not written)\n", hexBytes(out).c_str(), rc);
}

// A four-character code read most significant byte first ("DTFV"), or a number in 0x-hex.
bool intCode(const std::string& text, uint32_t* code) {
    if (text.rfind("0x", 0) == 0) {
        char* end = nullptr;
        errno = 0;
        const unsigned long value = strtoul(text.c_str(), &end, 16);
        *code = static_cast<uint32_t>(value);
        return text.size() > 2 && *end == '\0' && errno == 0 && value <= UINT32_MAX;
    }
    if (text.size() != 4) return false;
    *code = 0;
    for (char c : text) *code = (*code << 8) | static_cast<uint8_t>(c);
    return true;
}

bool Shell::dispatch(const std::string& op, std::vector<std::string>& words) {
    if (op == "quit" || op == "exit") return false;
    if (op == "help") {
        printf("%s", kHelp);
    } else if (op == "params") {
        for (const ClientParam& p : kClientParams) printf("  %d %s (%d value%s)\n", p.id, p.name, p.length, p.length == 1 ? "" : "s");
    } else if (op == "state") {
        printf("%s", stateText(service()).c_str());
    } else if (op == "effect") {
        printf("%s", effectText(mSession.effectState()).c_str());
    } else if (op == "on" || op == "off") {
        request(0, {op == "on" ? 1 : 0});
    } else if (op == "save") {
        request(9, {});
    } else if (op == "profile" || op == "reset") {
        int id = 0;
        if (words.size() != 1) return fail(op + " needs one profile id or name"), true;
        if (profileId(words[0], &id)) request(op == "profile" ? 10 : 12, {id});
    } else if (op == "set") {
        setParam(words);
    } else if (op == "get") {
        getParam(words);
    } else if (op == "tuning") {
        int portNumber = 0;
        if (words.size() != 2) return fail("tuning needs a port and a device name"), true;
        if (port(words[0], &portNumber)) {
            service().setSelectedTuningDevice(portNumber, words[1].data(), static_cast<int>(words[1].size()));
        }
    } else if (op == "reload") {
        service().setIntParam(0x524C5446 /* "RLTF" */, 0);
    } else if (op == "raw") {
        std::vector<uint8_t> bytes;
        if (!hex(words, 0, &bytes)) return fail("raw needs bytes in hex, two digits each"), true;
        service().setSfxParam(bytes.data(), static_cast<uint32_t>(bytes.size()));
    } else if (op == "query") {
        rawQuery(words);
    } else if (op == "int") {
        uint32_t code = 0;
        if (words.size() != 1 || !intCode(words[0], &code)) {
            return fail("int needs a four-character code such as DTFV, or a 0x number"), true;
        }
        printf("%s = %ld\n", words[0].c_str(), service().getIntParam(code));
    } else {
        fail("unknown operation '" + op + "' (try 'help')");
    }
    return true;
}

void Shell::showChanges() {
    std::vector<std::vector<uint8_t>> notifications;
    if (!mSession.sync(&notifications)) {
        fail("the service's handler did not catch up within 10 s");
        return;
    }
    const EffectState now = mSession.effectState();
    const std::string diff = effectDiff(mLast, now);
    mLast = now;
    if (!diff.empty()) printf("effect:\n%s", diff.c_str());
    for (const std::vector<uint8_t>& n : notifications) {
        printf("notified: %s\n", n.empty() ? "(empty update)" : hexBytes(n).c_str());
    }
}

bool Shell::run(const std::string& line) {
    std::istringstream in(line.substr(0, line.find('#')));
    std::vector<std::string> words;
    for (std::string w; in >> w;) words.push_back(w);
    if (words.empty()) return true;
    const std::string op = words[0];
    words.erase(words.begin());
    if (!dispatch(op, words)) return false;
    showChanges();
    return true;
}

}  // namespace

int runShell(const std::vector<std::string>& args) {
    std::string root;
    std::string error;
    bool log = false;
    std::vector<std::string> rest;
    if (!parseSessionOptions(args, &root, &log, &rest, &error)) return usageError(error);
    if (rest.size() > 1 || (rest.size() == 1 && rest[0][0] == '-')) {
        return usageError("shell: unexpected argument '" + rest.back() + "'");
    }
    std::ifstream script;
    if (!rest.empty()) {
        script.open(rest[0]);
        if (!script) {
            fprintf(stderr, "korvictl: cannot read script %s\n", rest[0].c_str());
            return 1;
        }
    }
    std::unique_ptr<ServiceSession> session = ServiceSession::start(root, log, &error);
    if (!session) {
        fprintf(stderr, "korvictl: %s\n", error.c_str());
        return 1;
    }
    std::istream& input = rest.empty() ? std::cin : script;
    const bool interactive = rest.empty() && isatty(STDIN_FILENO);
    Shell shell(*session);
    printf("%s\n%s\n'help' lists the operations\n", startupText(*session).c_str(),
           stateText(session->service()).c_str());
    for (std::string line;;) {
        if (interactive) printf("korvi> "), fflush(stdout);
        if (!std::getline(input, line)) break;
        if (!interactive && line.find_first_not_of(" \t") != std::string::npos && line[line.find_first_not_of(" \t")] != '#') {
            printf("> %s\n", line.c_str());
        }
        if (!shell.run(line)) break;
        fflush(stdout);
    }
    return 0;
}

}  // namespace korvi::ctl
