#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "aft/host/Rules.h"
#include "refhost/Files.h"
#include "refhost/check/CheckRules.h"

namespace refhost {
namespace {

/// The rows of a document's tables of rules, each as "name: meaning". Such a table's head begins with "rule", a row
/// with a name in backticks; its last cell is the meaning.
std::string rowsOf(const std::string& file) {
    std::istringstream document(readFile(ZQAFT_DOCS "/" + file));
    std::string rows;
    bool inTable = false;
    for (std::string line; std::getline(document, line);) {
        inTable = line.starts_with("| rule |") || (inTable && line.starts_with('|'));
        if (!inTable || !line.starts_with("| `")) continue;
        const std::string name = line.substr(3, line.find('`', 3) - 3);
        const size_t meaning = line.rfind(" | ") + 3;
        rows += name + ": " + line.substr(meaning, line.rfind(" |") - meaning) + "\n";
    }
    return rows;
}

template <typename Rules>
std::string textOf(const Rules& rules) {
    std::string text;
    for (const auto& rule : rules) text += std::string(rule.name) + ": " + std::string(rule.meaning) + "\n";
    return text;
}

// A reader of the documents would look in vain for a rule that the tool prints, or would read another meaning of it.
TEST(RuleTables, AreTheListsOfRules) {
    EXPECT_EQ(rowsOf("explain.md"), textOf(android::kRules));
    EXPECT_EQ(rowsOf("check.md"), textOf(kCheckRules));
}

}  // namespace
}  // namespace refhost
