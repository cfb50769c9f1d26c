#include "platform/control/Properties.h"

#include <cstring>
#include <functional>
#include <map>
#include <mutex>

#include "cutils/properties.h"

namespace aftplatform::properties {
namespace {

static_assert(kMaxValueLength == PROPERTY_VALUE_MAX - 1);

struct Store {
    std::mutex lock;
    std::map<std::string, std::string, std::less<>> values;
};

// Never destroyed: other libraries may read properties while the process ends.
Store& store() {
    static Store& instance = *new Store;
    return instance;
}

}  // namespace

void set(std::string_view key, std::string_view value) {
    if (key.empty()) throw std::invalid_argument("a property without a name: expected a key of 1 byte or more");
    if (value.size() > kMaxValueLength) {
        throw std::invalid_argument("property " + std::string(key) + ": the value has " + std::to_string(value.size()) +
                                    " bytes, expected " + std::to_string(kMaxValueLength) + " at most");
    }
    Store& s = store();
    std::lock_guard lock(s.lock);
    s.values.insert_or_assign(std::string(key), std::string(value));
}

void clear(std::string_view key) {
    Store& s = store();
    std::lock_guard lock(s.lock);
    if (auto found = s.values.find(key); found != s.values.end()) s.values.erase(found);
}

void clearAll() {
    Store& s = store();
    std::lock_guard lock(s.lock);
    s.values.clear();
}

std::optional<std::string> get(std::string_view key) {
    Store& s = store();
    std::lock_guard lock(s.lock);
    auto found = s.values.find(key);
    if (found == s.values.end()) return std::nullopt;
    return found->second;
}

}  // namespace aftplatform::properties

int property_get(const char* key, char* value, const char* default_value) {
    auto& s = aftplatform::properties::store();
    std::lock_guard lock(s.lock);
    const auto found = s.values.find(std::string_view(key));
    std::string_view text(default_value ? default_value : "");
    if (found != s.values.end() && !found->second.empty()) text = found->second;
    text = text.substr(0, PROPERTY_VALUE_MAX - 1);
    std::memcpy(value, text.data(), text.size());
    value[text.size()] = '\0';
    return static_cast<int>(text.size());
}
