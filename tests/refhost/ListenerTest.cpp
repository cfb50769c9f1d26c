#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "fuzz/CallsFromBytes.h"
#include "refhost/check/TraceCheck.h"
#include "refhost/play/Playback.h"
#include "refhost/play/ResultWriter.h"

namespace refhost {
namespace {

using Bytes = std::vector<uint8_t>;

Bytes randomBytes(uint32_t seed) {
    std::mt19937 random(seed);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same calls every time
    Bytes bytes(4000);
    for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random());
    return bytes;
}

/// The first line in which two texts differ, as each has it; empty where they are equal.
std::string firstDifference(const std::string& one, const std::string& other) {
    const auto differ = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    if (differ.first == one.end() && differ.second == other.end()) return "";
    const auto lineOf = [](const std::string& text, size_t at) {
        const size_t from = at == 0 ? 0 : text.rfind('\n', at - 1) + 1;
        return text.substr(from, text.find('\n', at) - from);
    };
    const auto at = static_cast<size_t>(differ.first - one.begin());
    return lineOf(one, at) + "\nis with a listener\n" + lineOf(other, at);
}

struct Played {
    std::string results;  ///< all that came back, but the records
    size_t records = 0;
};

Played play(const Bytes& bytes, Player::Listening listening) {
    fuzz::CallsFromBytes calls(bytes.data(), bytes.size());
    Player player(calls.header(), ZQAFT_PLUGIN_UNDER_TEST, listening);
    TextBuffer text;
    Played played;
    playLines(calls, player, nullptr, [&](const TraceLine&, const CallResult& result) {
        CallResult withoutRecords = result;
        withoutRecords.records.clear();
        writeResult(text, withoutRecords);
        played.records += result.records.size();
    });
    played.results = fmt::to_string(text);
    return played;
}

// A phone whose decisions are recorded would filter otherwise than the same phone when nobody listens.
TEST(Listener, ChangesNothingThatComesBack) {
    size_t records = 0;
    for (uint32_t seed = 1; seed <= 60; ++seed) {
        const Bytes bytes = randomBytes(seed);
        const Played silent = play(bytes, Player::Listening::Off);
        const Played heard = play(bytes, Player::Listening::On);
        ASSERT_EQ(firstDifference(silent.results, heard.results), "") << "seed " << seed;
        EXPECT_EQ(silent.records, 0U);
        records += heard.records;
    }
    EXPECT_GT(records, 10'000U) << "of so few decisions that little is compared";
}

}  // namespace
}  // namespace refhost
