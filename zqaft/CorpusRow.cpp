#include "zqaft/CorpusRow.h"

#include <fmt/format.h>
#include <sys/wait.h>

#include <cstring>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "refhost/Files.h"
#include "refhost/InputError.h"
#include "refhost/play/Plugin.h"
#include "zqaft/Output.h"

namespace zqaft {

namespace {

std::string wordsOnEnd(int status) {
    if (WIFSIGNALED(status)) {
        return fmt::format("the plug-in crashed: signal {}, {}", WTERMSIG(status), strsignal(WTERMSIG(status)));
    }
    return fmt::format("the plug-in ended the process that played it, with exit code {}", WEXITSTATUS(status));
}

/// Whether there is such a file; one that cannot be looked at counts, and reading it will tell why.
bool mayExist(const std::string& file) {
    std::error_code unknown;
    return std::filesystem::exists(file, unknown) || unknown;
}

void holdAgainstFile(CorpusRow& row, bool update) {
    const std::string file = refhost::verdictFileOf(row.trace.path);
    const std::string text = refhost::textOf(row.played.verdicts);
    row.standing = Standing::New;
    if (mayExist(file)) {
        const std::string before = refhost::readFile(file);
        row.changes = refhost::changesBetween(refhost::readVerdicts(before, file), row.played.verdicts);
        row.standing = row.changes.empty() ? Standing::Ok : Standing::Changed;
        if (before == text) return;
    }
    if (!update) return;
    replaceFile(file, text);
    row.standing = Standing::Updated;
}

void fail(CorpusRow& row, Standing standing, std::string fault) {
    row.standing = standing;
    row.fault = std::move(fault);
    row.played.counts = {};
    row.played.verdicts.clear();
}

}  // namespace

CorpusRow judge(const refhost::FoundTrace& trace, const refhost::ChildProcesses::Ended& ended, bool update) {
    CorpusRow row;
    row.trace = trace;
    std::optional<refhost::PlayedTrace> played = refhost::unpacked(ended.said);
    if (ended.status != 0 || !played) {
        fail(row, Standing::Crashed, fmt::format("{}: {}", refhost::onOneLine(trace.path), wordsOnEnd(ended.status)));
        return row;
    }
    if (!played->noPlugin.empty()) throw refhost::PluginError(played->noPlugin);
    row.played = std::move(*played);
    try {
        if (!row.played.fault.empty()) throw refhost::InputError(row.played.fault);
        holdAgainstFile(row, update);
    } catch (const refhost::InputError& fault) {
        fail(row, Standing::Faulty, fault.what());
    } catch (const refhost::FileError& fault) {
        fail(row, Standing::Faulty, fault.what());
    }
    return row;
}

}  // namespace zqaft
