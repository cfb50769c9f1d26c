#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "refhost/explain/Explainer.h"
#include "refhost/report/JsonList.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// The keys from key-down to key-up, with what became of them. One thread.
class KeyBars {
  public:
    /// @param decisions of this key
    void hear(const ProcessKey& call, const std::vector<Explained>& decisions);

    /// @param decisions of a frame: the key that waits for its finger may be among them
    void hear(const std::vector<Explained>& decisions);

    /// Appends `"keys":[[device,key,down,up,verdict,since,then],...]`, times in us. `up` is null where none came;
    /// `then` is what became of a key held back, `since` when: null for all others, and as long as it waits.
    void write(TextBuffer& out) const;

  private:
    struct Key {
        DeviceRef device;
        int32_t code = 0;
        int64_t down = 0;  ///< ns, as the others
        std::optional<int64_t> up;
        Outcome fate = Outcome::Dispatched;
        std::optional<std::pair<int64_t, Outcome>> end;  ///< of its wait
    };
    using Whose = std::pair<DeviceRef, int32_t>;

    std::vector<Key> mKeys;
    std::map<Whose, size_t> mDown;   ///< index in mKeys
    std::optional<size_t> mWaiting;  ///< likewise
};

}  // namespace refhost
