// korvictl boot: brings the service up over a device root as a device would and shows what
// start-up did, the state a client sees, and what the effect received per device.
#include <cstdio>
#include <string>
#include <vector>

#include "Command.h"
#include "JsonWriter.h"
#include "ServiceReport.h"
#include "ServiceSession.h"

namespace korvi::ctl {

namespace {

void printText(ServiceSession& session) {
    printf("%s\n%s", startupText(session).c_str(), stateText(session.service()).c_str());
    const EffectState effect = session.effectState();
    printf("\neffect parameters, %zu devices\n%s", effect.size(), effectText(effect).c_str());
}

void printJson(ServiceSession& session) {
    const StartupReport& s = session.startup();
    JsonWriter json;
    json.beginObject();
    json.key("startup");
    json.beginObject();
    json.key("root");
    json.value(session.root());
    json.key("amplifier");
    json.value(amplifierName(s.amplifierType));
    json.key("factoryFile");
    json.value(s.factoryFile);
    json.key("database");
    json.value(s.database);
    json.key("signature");
    json.value(s.newSignature);
    json.key("previousSignature");
    json.value(s.oldSignature);
    json.key("formatVersion");
    json.value(s.formatVersion);
    json.key("oemMerge");
    json.value(s.oemNote.empty() ? "merged" : s.oemNote);
    json.key("oemAdded");
    json.beginArray();
    for (const std::string& line : s.oemAdded) json.value(line);
    json.endArray();
    json.key("oemDropped");
    json.beginArray();
    for (const std::string& line : s.oemDropped) json.value(line);
    json.endArray();
    json.endObject();
    json.key("state");
    stateJson(session.service(), &json);
    json.key("effect");
    effectJson(session.effectState(), &json);
    json.endObject();
    printf("%s", json.str().c_str());
}

}  // namespace

// Shared by boot and shell: [--root DIR] [--log], and what remains in *rest.
bool parseSessionOptions(const std::vector<std::string>& args, std::string* root, bool* log,
                         std::vector<std::string>* rest, std::string* error) {
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--root") {
            if (i + 1 == args.size()) {
                *error = "--root needs a directory";
                return false;
            }
            *root = args[++i];
        } else if (args[i] == "--log") {
            *log = true;
        } else {
            rest->push_back(args[i]);
        }
    }
    return true;
}

int runBoot(const std::vector<std::string>& args) {
    std::string root;
    std::string error;
    bool log = false;
    std::vector<std::string> rest;
    if (!parseSessionOptions(args, &root, &log, &rest, &error)) return usageError(error);
    bool json = false;
    for (const std::string& arg : rest) {
        if (arg != "--json") return usageError("boot: unknown argument '" + arg + "'");
        json = true;
    }
    std::unique_ptr<ServiceSession> session = ServiceSession::start(root, log, &error);
    if (!session) {
        fprintf(stderr, "korvictl: %s\n", error.c_str());
        return 1;
    }
    json ? printJson(*session) : printText(*session);
    return 0;
}

}  // namespace korvi::ctl
