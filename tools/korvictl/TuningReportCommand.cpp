// korvictl inspect: what the service makes of one tuning file, and what a tuning author should
// fix in it.
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <android/log.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include "Command.h"
#include "TuningReport.h"
#include "TuningLint.h"
#include "tuning/TagIterator.h"
#include "tuning/TuningFileParser.h"

namespace korvi::ctl {

namespace {

// Exit statuses beyond 0 (success) and 2 (usage, Command.h).
constexpr int kExitBadFile = 1;
constexpr int kExitWarnings = 3;

struct InspectOptions {
    std::string path;
    bool json = false;
    bool strict = false;
    bool log = false;
    bool brief = false;
};

struct DocFree {
    void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
};
using XmlDocPtr = std::unique_ptr<xmlDoc, DocFree>;

struct ParserCtxtFree {
    void operator()(xmlParserCtxt* ctxt) const { xmlFreeParserCtxt(ctxt); }
};

// libxml2 reports to stderr by default; the tool reports a broken file in one line of its own.
void ignoreGenericError(void*, const char*, ...) {}

int fileError(const std::string& path, const std::string& what) {
    fprintf(stderr, "korvictl: inspect: %s: %s\n", path.c_str(), what.c_str());
    return kExitBadFile;
}

std::string trimmed(const char* text) {
    std::string s = text != nullptr ? text : "";
    while (!s.empty() && (s.back() == '\n' || s.back() == ' ')) s.pop_back();
    return s;
}

struct FirstError {
    bool found = false;
    int line = 0;
    std::string message;
};

// The document for the warnings, with line numbers past 65535 kept. On failure, the reason in
// one line is left in why.
XmlDocPtr readDocument(const std::string& path, std::string& why) {
    std::unique_ptr<xmlParserCtxt, ParserCtxtFree> ctxt(xmlNewParserCtxt());
    if (!ctxt) {
        why = "out of memory";
        return nullptr;
    }
    // The first error names the place to look at; later ones are often its echoes.
    FirstError first;
    xmlSetStructuredErrorFunc(&first, [](void* context, auto* error) {
        auto* seen = static_cast<FirstError*>(context);
        if (seen->found || error == nullptr || error->level < XML_ERR_ERROR) return;
        seen->found = true;
        seen->line = error->line;
        seen->message = trimmed(error->message);
    });
    XmlDocPtr doc(xmlCtxtReadFile(ctxt.get(), path.c_str(), nullptr,
                                  XML_PARSE_BIG_LINES | XML_PARSE_NONET));
    xmlSetStructuredErrorFunc(nullptr, [](void*, auto*) {});
    if (!doc) {
        why = first.found ? "line " + std::to_string(first.line) + ": not well-formed XML: " +
                                    first.message
                          : "not well-formed XML";
        return nullptr;
    }
    if (xmlDocGetRootElement(doc.get()) == nullptr) {
        why = "no root element";
        return nullptr;
    }
    return doc;
}

bool parseOptions(const std::vector<std::string>& args, InspectOptions& options,
                  std::string& error) {
    for (const std::string& a : args) {
        if (a == "--json") {
            options.json = true;
        } else if (a == "--strict") {
            options.strict = true;
        } else if (a == "--log") {
            options.log = true;
        } else if (a == "--brief") {
            options.brief = true;
        } else if (!a.empty() && a[0] == '-') {
            error = "inspect: unknown option '" + a + "'";
            return false;
        } else if (!options.path.empty()) {
            error = "inspect takes one FILE";
            return false;
        } else {
            options.path = a;
        }
    }
    if (options.path.empty()) {
        error = "inspect needs a FILE";
        return false;
    }
    return true;
}

bool declaresEntities(xmlDoc* doc) {
    const xmlDtd* dtd = doc->intSubset;
    return dtd != nullptr && (dtd->entities != nullptr || dtd->pentities != nullptr);
}

std::string checkReadable(const std::string& path) {
    struct stat st {};
    if (stat(path.c_str(), &st) != 0) return strerror(errno);
    if (S_ISDIR(st.st_mode)) return "is a directory";
    // The file is read more than once (the document for the warnings, the service's reader): a
    // pipe would be empty the second time. Save its output to a file first.
    if (!S_ISREG(st.st_mode)) return "not a regular file (save a pipe's output to a file first)";
    if (st.st_size > TagIterator::kMaxFileBytes) {
        return "larger than the " + std::to_string(TagIterator::kMaxFileBytes) +
               " bytes a tuning file may have";
    }
    FILE* f = fopen(path.c_str(), "rb");
    if (f == nullptr) return strerror(errno);
    fclose(f);
    return "";
}

}  // namespace

int runInspect(const std::vector<std::string>& args) {
    InspectOptions options;
    std::string error;
    if (!parseOptions(args, options, error)) return usageError(error);

    // The reader logs what it skips; its log lines go to stderr only when asked for, since the
    // warnings below already say it with line numbers.
    __android_log_set_minimum_priority(options.log ? ANDROID_LOG_DEBUG : ANDROID_LOG_SILENT);
    // Generic, because libxml2 versions differ in the constness of the error argument.
    xmlSetStructuredErrorFunc(nullptr, [](void*, auto*) {});
    xmlSetGenericErrorFunc(nullptr, ignoreGenericError);

    const std::string unreadable = checkReadable(options.path);
    if (!unreadable.empty()) return fileError(options.path, "cannot read: " + unreadable);

    TuningFileParser reader;
    XmlDocPtr doc = readDocument(options.path, error);
    if (!doc) return fileError(options.path, error);
    const int result = reader.setTuningFile(options.path);
    if (result != 0 || reader.getDeviceData() == nullptr) {
        const std::string why = declaresEntities(doc.get())
                                        ? ": it declares entities, which a tuning file never needs"
                                        : "";
        return fileError(options.path, "the service cannot read this file (result " +
                                               std::to_string(result) + ")" + why);
    }

    // The service settles disabled IEQs before it stores anything; show what it stores.
    reader.getDeviceData()->validateData();
    TuningLint lint(doc.get(), reader);
    std::vector<LintWarning> warnings = lint.run();
    const bool hasWarnings = !warnings.empty();
    TuningReport report(options.path, *reader.getDeviceData(), reader.getVirtualBassType(),
                         lint.tuningOrder(), std::move(warnings));
    const std::string out = options.json ? report.json() : report.text(!options.brief);
    fwrite(out.data(), 1, out.size(), stdout);
    return options.strict && hasWarnings ? kExitWarnings : 0;
}

}  // namespace korvi::ctl
