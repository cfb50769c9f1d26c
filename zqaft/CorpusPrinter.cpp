#include "zqaft/CorpusPrinter.h"

#include <algorithm>

#include "refhost/InputError.h"
#include "zqaft/Colours.h"

namespace zqaft {

namespace {

using refhost::append;

constexpr std::string_view kTotal = "total 99999";
constexpr size_t kWidestName = 48;  ///< columns

std::string lasting(int64_t ns) {
    const double ms = static_cast<double>(ns) / 1e6;
    return ms < 1000 ? fmt::format("{:.1f} ms", ms) : fmt::format("{:.2f} s", ms / 1000);
}

bool beginsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xc0U) != 0x80U; }

/// In columns; every character of UTF-8 counts for one.
size_t widthOf(std::string_view text) {
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), beginsCharacter));
}

/// The end of a path that is too long, which says more than its beginning.
std::string shortened(const std::string& name, size_t width) {
    std::string shown = refhost::onOneLine(name);
    size_t tooWide = widthOf(shown) > width ? widthOf(shown) - width + 1 : 0;
    if (tooWide == 0) return shown;
    size_t from = 0;
    for (; tooWide > 0; --tooWide) {
        do ++from;
        while (!beginsCharacter(shown[from]));
    }
    return "…" + shown.substr(from);
}

std::string_view colourOf(const CorpusRow& row) {
    switch (row.standing) {
        case Standing::Ok: return kGreen;
        case Standing::New:
        case Standing::Updated: return kCyan;
        case Standing::Changed:
        case Standing::Faulty:
        case Standing::Crashed: return kRed;
    }
    return kPlain;
}

std::string wordsOn(const CorpusRow& row) {
    std::string changed = fmt::format("{} changed", row.changes.size());
    switch (row.standing) {
        case Standing::Ok: return "ok";
        case Standing::New: return "new";
        case Standing::Changed: return changed;
        case Standing::Updated: return row.changes.empty() ? "written" : changed + ", written";
        case Standing::Faulty: return "faulty";
        case Standing::Crashed: return "crashed";
    }
    return "";
}

std::string wordsOn(const refhost::Change& change) {
    if (!change.was) return fmt::format("is new: {}", *change.is);
    return change.is ? fmt::format("was {}; is {}", *change.was, *change.is)
                     : fmt::format("was {}; is gone", *change.was);
}

}  // namespace

CorpusPrinter::CorpusPrinter(Output& out, const std::vector<refhost::FoundTrace>& traces, bool colours)
    : mOut(out), mNameWidth(kTotal.size()), mColours(colours) {
    for (const refhost::FoundTrace& trace : traces) mNameWidth = std::max(mNameWidth, widthOf(trace.name));
    mNameWidth = std::min(mNameWidth, kWidestName);
}

void CorpusPrinter::print(const CorpusRow& row) {
    if (mTraces++ == 0) {
        append(mOut.text(),
               FMT_COMPILE(
                   "{:<{}}   frames  fingers  lost  late       latest  cancelled  breaches       time  verdicts\n"),
               "trace", mNameWidth);
    }
    const std::string name = shortened(row.trace.name, mNameWidth);
    const std::string pad(mNameWidth - widthOf(name), ' ');  // a name's bytes are more than its columns
    if (row.failed()) {
        append(mOut.text(), FMT_COMPILE("{}{}  {:>7}  {:>7}  {:>4}  {:>4}  {:>11}  {:>9}  {:>8}  {:>9}"), name, pad,
               "-", "-", "-", "-", "-", "-", "-", "-");
    } else {
        printCounts(name + pad, row.played.counts, row.played.breaches.size(), row.played.ns);
    }
    append(mOut.text(), FMT_COMPILE("  {}{}{}\n"), mColours ? colourOf(row) : "", wordsOn(row), mColours ? kPlain : "");
    mCounts += row.played.counts;
    mBreaches += row.played.breaches.size();
    if (row.standing == Standing::Changed) mChanged += row.changes.size();
    mNew += row.standing == Standing::New;
    mUpdated += row.standing == Standing::Updated;
    mFailed += row.failed();
    keepDetails(row);
}

void CorpusPrinter::printCounts(const std::string& name, const refhost::PlayedTrace::Counts& counts, size_t breaches,
                                int64_t ns) {
    const uint64_t late = counts.restored + counts.letThrough;
    append(mOut.text(), FMT_COMPILE("{}  {:>7}  {:>7}  {:>4}  {:>4}  {:>11}  {:>9}  {:>8}  {:>9}"), name, counts.frames,
           counts.fingers, counts.lost, late, late > 0 ? fmt::format("{} ms", counts.latestNs / 1'000'000) : "-",
           counts.cancelled, breaches, lasting(ns));
}

/// What has changed, trace by trace, and what is broken, a line each.
void CorpusPrinter::keepDetails(const CorpusRow& row) {
    const std::string path = refhost::onOneLine(row.trace.path);
    if (!row.changes.empty()) append(mChanges, FMT_COMPILE("\n{}\n"), path);
    for (const refhost::Change& change : row.changes) {
        append(mChanges, FMT_COMPILE("{:>11} s  {:<24}  {}\n"), change.at, change.subject, wordsOn(change));
    }
    for (const auto& [line, rule, text] : row.played.breaches) {
        append(mFaults, FMT_COMPILE("{}:{}: {}: {}\n"), path, line, rule, text);
    }
    if (row.failed()) append(mFaults, FMT_COMPILE("{}\n"), row.fault);
}

void CorpusPrinter::printTotals(int64_t ns) {
    std::string words;
    const auto tell = [&words](size_t count, std::string_view what) {
        if (count > 0) words += fmt::format("{}{} {}", words.empty() ? "" : ", ", count, what);
    };
    tell(mChanged, "changed");
    tell(mNew, "new");
    tell(mUpdated, "written");
    tell(mFailed, "failed");
    printCounts(fmt::format("{:<{}}", fmt::format("total {}", mTraces), mNameWidth), mCounts, mBreaches, ns);
    append(mOut.text(), FMT_COMPILE("  {}\n"), words.empty() ? "ok" : words);
    append(mOut.text(), {mChanges.data(), mChanges.size()});
    if (mFaults.size() > 0) append(mOut.text(), "\n");
    append(mOut.text(), {mFaults.data(), mFaults.size()});
}

}  // namespace zqaft
