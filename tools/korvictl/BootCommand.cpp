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

const char* amplifierName(int type) {
    switch (type) {
        case 1: return "aw882xx";
        case 2: return "fs19xx";
        default: return "none";
    }
}

std::string databaseText(const StartupReport& s) {
    if (s.database == "built") return "built (no database before), signature " + s.newSignature;
    if (s.database == "rebuilt") {
        return "rebuilt: new signature " + s.newSignature + " (was " + s.oldSignature + ")";
    }
    return "reused: signature " + s.newSignature + " unchanged";
}

void printText(ServiceSession& session) {
    const StartupReport& s = session.startup();
    printf("device root     %s\n", session.root().c_str());
    printf("amplifier       %s (type %d)\n", amplifierName(s.amplifierType), s.amplifierType);
    printf("factory file    %s\n", s.factoryFile.c_str());
    printf("database        %s\n", databaseText(s).c_str());
    printf("format version  %s\n", s.formatVersion.c_str());
    if (!s.oemNote.empty()) printf("OEM merge       %s\n", s.oemNote.c_str());
    for (const std::string& line : s.oemAdded) printf("OEM added       %s\n", line.c_str());
    for (const std::string& line : s.oemDropped) printf("OEM dropped     %s\n", line.c_str());
    printf("\n%s", stateText(session.service()).c_str());
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
