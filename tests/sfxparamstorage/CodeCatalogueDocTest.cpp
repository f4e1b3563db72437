// docs/parameter-blob.md lists every effect parameter with its code, its id and where it comes
// from. These tests hold that table to the code: the codes and ids the library uses, the
// parameters its copying translators read, and the readable-blob renderer reading every id back.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <string>

#include "effect/BlobFormatter.h"
#include "effect/SfxParameter.h"
#include "effect/SimpleTranslator.h"
#include "effect/TranslatorCollection.h"
#include "model/Parameter.h"

namespace korvi {
namespace {

struct Row {
    int value;
    std::string code;
    uint32_t id;
    std::string source;
};

std::vector<Row> documentedRows() {
    std::ifstream doc(std::string(KORVI_SOURCE_DIR) + "/docs/parameter-blob.md");
    EXPECT_TRUE(doc.good());
    const std::regex row(R"re(^\| (\d+) \| "([A-Z]{1,4})" \| `0x([0-9a-f]{8})` \| (.*) \|$)re");
    std::vector<Row> rows;
    std::string line;
    std::smatch m;
    while (std::getline(doc, line)) {
        if (std::regex_match(line, m, row)) {
            rows.push_back({std::stoi(m[1]), m[2], static_cast<uint32_t>(std::stoul(m[3], nullptr, 16)), m[4]});
        }
    }
    return rows;
}

TEST(CodeCatalogueDoc, ListsEveryParameterWithTheCodeAndIdTheLibraryUses) {
    const std::vector<Row> rows = documentedRows();
    ASSERT_EQ(rows.size(), static_cast<size_t>(kSfxParameterCount));
    for (int i = 0; i < kSfxParameterCount; ++i) {
        SCOPED_TRACE(i);
        const auto p = static_cast<SfxParameter>(i);
        EXPECT_EQ(rows[i].value, i);
        EXPECT_EQ(rows[i].code, sfxParameterCode(p));
        EXPECT_EQ(rows[i].id, static_cast<uint32_t>(sfxParameterId(p)));
        // The renderer gives every id its code back.
        EXPECT_EQ(BlobFormatter::codeText(static_cast<int32_t>(rows[i].id)), rows[i].code);
    }
}

TEST(CodeCatalogueDoc, SourcesMatchTheCopyingTranslators) {
    std::map<int, std::string> copied;  // SfxParameter -> parameter name
    for (Translator* t : TranslatorCollection::kAllTranslators) {
        if (const auto* simple = dynamic_cast<const SimpleTranslator*>(t)) {
            EXPECT_TRUE(copied.emplace(simple->getSfxParameter(), kParameterNames[simple->getSrcParams().at(0)]).second);
        }
    }
    EXPECT_EQ(copied.size(), 57u);
    const std::regex computed(R"re(T `[A-Za-z]+Translator`)re");
    for (const Row& row : documentedRows()) {
        SCOPED_TRACE(row.code);
        auto it = copied.find(row.value);
        if (it != copied.end()) {
            EXPECT_EQ(row.source, "S `" + it->second + "`");
        } else {
            EXPECT_TRUE(row.source == "-" || std::regex_match(row.source, computed)) << row.source;
        }
    }
}

}  // namespace
}  // namespace korvi
