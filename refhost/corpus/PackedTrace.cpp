// How what came of a trace goes from the process that played it to the one that asked for it.

#include <concepts>
#include <cstring>
#include <type_traits>
#include <utility>

#include "refhost/corpus/PlayedTrace.h"

namespace refhost {

namespace {

// The parts of each, in the order in which they travel; const where they are packed.

template <typename Pack, typename Played>
requires std::same_as<std::remove_const_t<Played>, PlayedTrace>
void parts(Pack& pack, Played& played) {
    pack(played.counts, played.ns, played.breaches, played.verdicts, played.fault, played.noPlugin);
}

template <typename Pack, typename Breach>
requires std::same_as<std::remove_const_t<Breach>, PlayedTrace::ToldBreach>
void parts(Pack& pack, Breach& breach) { pack(breach.line, breach.rule, breach.text); }

template <typename Pack, typename Told>
requires std::same_as<std::remove_const_t<Told>, Verdict>
void parts(Pack& pack, Told& verdict) { pack(verdict.at, verdict.subject, verdict.fate); }

class Packer {
  public:
    template <typename... Values>
    void operator()(const Values&... values) {
        (add(values), ...);
    }
    std::string bytes;

  private:
    template <typename Value>
    void add(const Value& value) {
        if constexpr (std::is_trivially_copyable_v<Value>) {
            bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
        } else {
            parts(*this, value);
        }
    }
    void add(const std::string& text) {
        add(text.size());
        bytes += text;
    }
    template <typename Element>
    void add(const std::vector<Element>& list) {
        add(list.size());
        for (const Element& each : list) add(each);
    }
};

class Unpacker {
  public:
    explicit Unpacker(std::string_view bytes) : mBytes(bytes) {}
    template <typename... Values>
    void operator()(Values&... values) {
        (take(values), ...);
    }
    bool gotAll() const { return mWhole && mBytes.empty(); }

  private:
    /// The next bytes; none where there are not so many.
    std::string_view piece(size_t size) {
        mWhole = mWhole && size <= mBytes.size();
        const std::string_view next = mBytes.substr(0, mWhole ? size : 0);
        mBytes.remove_prefix(next.size());
        return next;
    }
    template <typename Value>
    void take(Value& value) {
        if constexpr (std::is_trivially_copyable_v<Value>) {
            const std::string_view bytes = piece(sizeof value);
            if (!bytes.empty()) std::memcpy(&value, bytes.data(), bytes.size());
        } else {
            parts(*this, value);
        }
    }
    void take(std::string& text) {
        size_t size = 0;
        take(size);
        text = piece(size);
    }
    template <typename Element>
    void take(std::vector<Element>& list) {
        size_t size = 0;
        take(size);
        for (; size > 0 && mWhole; --size) take(list.emplace_back());
    }

    std::string_view mBytes;
    bool mWhole = true;
};

}  // namespace

std::string packed(const PlayedTrace& played) {
    Packer packer;
    packer(played);
    return std::move(packer.bytes);
}

std::optional<PlayedTrace> unpacked(std::string_view bytes) {
    PlayedTrace played;
    Unpacker unpacker(bytes);
    unpacker(played);
    return unpacker.gotAll() ? std::optional(std::move(played)) : std::nullopt;
}

}  // namespace refhost
