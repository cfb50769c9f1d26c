#include "refhost/profile/SensorTimeline.h"

#include <algorithm>
#include <cmath>

#include "refhost/trace/SensorNames.h"

namespace refhost {

namespace {

using aftplatform::sensors::Call;
using aftplatform::sensors::Fault;
using aftplatform::sensors::Sensor;

constexpr int32_t kSlideCover = 65557;
constexpr int32_t kFoldAngle = 3;
constexpr Named<int32_t> kSensorTypes[] = {{"slide_cover", kSlideCover}, {"fold_angle", kFoldAngle}};

void readSensorType(const YAML::Node& node, const YamlPlace& place, int32_t& type) {
    const auto* known = node.IsScalar() ? named(kSensorTypes, node.Scalar()) : nullptr;
    if (known != nullptr) {
        type = known->value;
        return;
    }
    int64_t number = 0;
    if (!node.IsScalar() || !YAML::convert<int64_t>::decode(node, number)) {
        place.fault(node, "no sensor type; expected a number, slide_cover or fold_angle");
    }
    readYaml(node, place, type);
}

/// A sensor as an entry names it: by its type, its handle or both.
struct Wanted {
    std::optional<int32_t> type;
    std::optional<int32_t> handle;

    bool is(const Sensor& sensor) const {
        return type.value_or(sensor.type) == sensor.type && handle.value_or(sensor.handle) == sensor.handle;
    }
    std::string words() const {
        const std::string ofType = type ? fmt::format(" of type {}", *type) : "";
        return handle ? fmt::format("{}{} handle {}", ofType, type ? " and" : " of", *handle) : ofType;
    }
};

/// What the samples of one entry are made of.
class Sampler {
  public:
    Sampler(const std::vector<Sensor>& sensors, int64_t atNs) : mSensors(sensors), mAtNs(atNs) {}

    std::vector<TimelineEntry> take() { return std::move(mSamples); }

    /// Any sample of any sensor: {type or handle, values}.
    void readAny(const YAML::Node& node, const YamlPlace& place) {
        YamlFields fields(node, place);
        Wanted wanted;
        fields.with("type", [&](const YAML::Node& value, const YamlPlace& at) {
            readSensorType(value, at, wanted.type.emplace());
        });
        fields.with("handle", [&](const YAML::Node& value, const YamlPlace& at) {
            readYaml(value, at, wanted.handle.emplace());
        });
        std::vector<float> values;
        fields.with("values", [&](const YAML::Node& list, const YamlPlace& at) {
            if (!list.IsSequence() || list.size() > SensorEvent::kMostValues) {
                at.fault(list, fmt::format("not a list of at most {}; expected that", SensorEvent::kMostValues));
            }
            for (size_t i = 0; i < list.size(); ++i) readYaml(list[i], at.at(i), values.emplace_back());
        });
        fields.done();
        if (!wanted.type && !wanted.handle) place.fault(node, "neither type nor handle; expected one of them");
        sample(offered(wanted, node, place), mAtNs, std::move(values));
    }

    /// A state of the slide cover: 0, 1 or 2.
    void readSlideCover(const YAML::Node& node, const YamlPlace& place) {
        int32_t state = 0;
        readYamlWithin(node, place, state, 0, 2);
        sample(offered({kSlideCover, {}}, node, place), mAtNs, {1, static_cast<float>(state)});
    }

    /// One angle, or {from, to, samples, every}: samples from one angle to the other at equal steps.
    void readFoldAngle(const YAML::Node& node, const YamlPlace& place) {
        const Sensor sensor = offered({kFoldAngle, {}}, node, place);
        float from = 0;
        if (node.IsScalar()) {
            readYaml(node, place, from);
            return sample(sensor, mAtNs, {0, 0, from});
        }
        YamlFields fields(node, place);
        fields.required("from", from);
        float to = from;
        fields.optional("to", to);
        int32_t samples = 0;
        const bool counted = fields.with("samples", [&](const YAML::Node& value, const YamlPlace& at) {
            readYamlWithin(value, at, samples, 1, kMostSamples);
        });
        if (!counted) place.below("samples").fault(node, "missing; expected this key");
        double every = kUsualPeriod;
        fields.optional("every", every);
        if (every <= 0 || every > kLongestPeriod) {
            place.below("every").fault(node["every"], "expected seconds, more than 0 and up to 3600");
        }
        fields.done();
        for (int32_t i = 0; i < samples; ++i) {
            const double angle = std::lerp(double{from}, double{to}, samples > 1 ? double(i) / (samples - 1) : 0.0);
            sample(sensor, mAtNs + std::llround(i * every * 1e9), {0, 0, static_cast<float>(angle)});
        }
    }

  private:
    static constexpr int32_t kMostSamples = 10'000;
    static constexpr double kUsualPeriod = 0.01;  ///< seconds
    static constexpr double kLongestPeriod = 3600;

    const Sensor& offered(const Wanted& wanted, const YAML::Node& node, const YamlPlace& place) const {
        const auto found =
            std::find_if(mSensors.begin(), mSensors.end(), [&](const auto& one) { return wanted.is(one); });
        if (found == mSensors.end()) {
            place.fault(node, fmt::format("no sensor{}; expected one that the profile's sensors have", wanted.words()));
        }
        return *found;
    }

    void sample(const Sensor& sensor, int64_t atNs, std::vector<float> values) {
        mSamples.push_back({atNs, SensorEvent{sensor.type, sensor.handle, 0, std::move(values)}});
    }

    const std::vector<Sensor>& mSensors;
    int64_t mAtNs;
    std::vector<TimelineEntry> mSamples;
};

std::map<Call, Fault> readFaults(const YAML::Node& node, const YamlPlace& place) {
    YamlFields fields(node, place);
    std::map<Call, Fault> faults;
    for (const auto& [name, call] : kServiceCalls) {
        fields.with(std::string(name), [&faults, call = call](const YAML::Node& fault, const YamlPlace& at) {
            readYamlName(fault, at, faultsOf(call), faults[call]);
        });
    }
    fields.done();
    return faults;
}

}  // namespace

std::vector<Sensor> readSensors(const YAML::Node& list, const YamlPlace& place) {
    if (!list.IsSequence()) place.fault(list, "not a list; expected the phone's sensors");
    std::vector<Sensor> sensors;
    for (const YAML::Node& node : list) {
        const YamlPlace here = place.at(sensors.size());
        YamlFields fields(node, here);
        Sensor sensor;
        const auto type = [&](const YAML::Node& value, const YamlPlace& at) { readSensorType(value, at, sensor.type); };
        if (!fields.with("type", type)) here.below("type").fault(node, "missing; expected this key");
        fields.required("handle", sensor.handle);
        fields.done();
        const auto same = [&](const Sensor& other) { return other.handle == sensor.handle; };
        if (const auto other = std::find_if(sensors.begin(), sensors.end(), same); other != sensors.end()) {
            here.below("handle").fault(node["handle"], fmt::format("sensors[{}] has it; expected a handle of its own",
                                                                   other - sensors.begin()));
        }
        sensors.push_back(sensor);
    }
    return sensors;
}

std::optional<SensorService> readSensorService(YamlFields& fields) {
    std::optional<SensorService> happening;
    fields.with("sensor_service", [&](const YAML::Node& node, const YamlPlace& place) {
        SensorService& service = happening.emplace();
        const auto state = [&](const YAML::Node& value, const YamlPlace& at) {
            readYamlName(value, at, kServiceStates, service.state.emplace());
        };
        if (node.IsScalar()) return state(node, place);
        YamlFields both(node, place);
        both.with("fails", [&](const YAML::Node& map, const YamlPlace& at) { service.fails = readFaults(map, at); });
        both.with("state", state);
        both.done();
        if (!service.fails && !service.state)
            place.fault(node, "neither state nor fails; expected one of them, or both");
    });
    return happening;
}

std::vector<TimelineEntry> readSamples(YamlFields& fields, const std::vector<Sensor>& sensors, int64_t atNs) {
    Sampler sampler(sensors, atNs);
    const auto reader = [&](void (Sampler::*read)(const YAML::Node&, const YamlPlace&)) {
        return [&sampler, read](const YAML::Node& node, const YamlPlace& place) { (sampler.*read)(node, place); };
    };
    fields.with("sensor", reader(&Sampler::readAny));
    fields.with("slide_cover", reader(&Sampler::readSlideCover));
    fields.with("fold_angle", reader(&Sampler::readFoldAngle));
    return sampler.take();
}

}  // namespace refhost
