#pragma once

#include "MPPCommon/support/TVError.h"
#include "MPPCommon/support/TVException.h"
#include "tool/inspect/DumpValue.h"

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <tuple>

// Fills a JSON object with the answers of a reader's field operations, each keyed by the operation's
// name; a field whose operation answers false is left out. `Args` are the leading arguments that every
// operation takes (the UID for a collection reader, none for the project).
template <typename Reader, typename... Args>
class ReaderFieldDump {
public:
    ReaderFieldDump(Reader& reader, nlohmann::ordered_json& object, Args... args)
        : m_reader(reader), m_object(object), m_args(args...) {}

    template <typename T>
    ReaderFieldDump& field(const char* key, bool (Reader::*operation)(Args..., T&, TVError*)) {
        T value{};
        if (read(operation, value)) {
            m_object[key] = DumpValue::of(value);
        }
        return *this;
    }

    // An operation that answers work or a duration in seconds.
    ReaderFieldDump& secondsField(const char* key, bool (Reader::*operation)(Args..., double&, TVError*)) {
        double value = 0;
        if (read(operation, value)) {
            m_object[key] = DumpValue::ofSeconds(value);
        }
        return *this;
    }

private:
    template <typename T>
    bool read(bool (Reader::*operation)(Args..., T&, TVError*), T& value) {
        return std::apply([&](Args... args) { return (m_reader.*operation)(args..., value, nullptr); },
                          m_args);
    }

    Reader& m_reader;
    nlohmann::ordered_json& m_object;
    std::tuple<Args...> m_args;
};

// {"uid": uid} filled by `fill`. A read that fails an internal check ends the object's fields there and
// is kept as {"error": {"name", "text"}}, so that one damaged object doesn't hide the others.
inline nlohmann::ordered_json dumpObject(int32_t uid,
                                         const std::function<void(nlohmann::ordered_json&)>& fill) {
    nlohmann::ordered_json object = {{"uid", uid}};
    try {
        fill(object);
    } catch (const TVException& exception) {
        object["error"] = {{"name", exception.name()}, {"text", exception.reason()}};
    }
    return object;
}

// Number to flag of an operation that takes a number (a flag or a baseline) besides the UID, for the
// numbers from `first` to `last` whose read answers true.
inline nlohmann::ordered_json numberedFlags(int32_t first, int32_t last,
                                            const std::function<bool(int32_t number, bool& value)>& read) {
    nlohmann::ordered_json flags = nlohmann::ordered_json::object();
    for (int32_t number = first; number <= last; ++number) {
        bool value = false;
        if (read(number, value)) {
            flags[std::to_string(number)] = value;
        }
    }
    return flags;
}
