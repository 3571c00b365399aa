#include "tool/inspect/PropertyStreamDump.h"

#include "MPPCommon/support/Log.h"
#include "MPPImporter/file/KVMSPIPropsReader.h"

#include <algorithm>
#include <ctime>
#include <vector>

namespace {

constexpr int32_t kTypeI2 = 2;
constexpr int32_t kTypeI4 = 3;
constexpr int32_t kTypeR4 = 4;
constexpr int32_t kTypeR8 = 5;
constexpr int32_t kTypeBool = 11;
constexpr int32_t kTypeLPSTR = 30;
constexpr int32_t kTypeLPWSTR = 31;
constexpr int32_t kTypeFileTime = 64;
// Longer values are shown by their first bytes only.
constexpr int32_t kMaxShownBytes = 64;
// File times count 100-nanosecond ticks from 1601-01-01; this many seconds lie before 1970-01-01.
constexpr uint64_t kFileTimeTicksPerSecond = 10000000;
constexpr int64_t kFileTimeUnixEpochSeconds = 11644473600;

std::string hexText(const std::vector<uint8_t>& bytes) {
    std::string text;
    for (uint8_t byte : bytes) {
        text += stringWithFormat("%02x", byte);
    }
    return text;
}

std::string isoDate(int64_t unixSeconds) {
    std::time_t seconds = static_cast<std::time_t>(unixSeconds);
    std::tm utc{};
    if (gmtime_r(&seconds, &utc) == nullptr) {
        return "";
    }
    char buffer[32];
    std::strftime(buffer, sizeof buffer, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return buffer;
}

template <typename Value, typename Read>
nlohmann::ordered_json readOrNull(Read read) {
    Value value{};
    return read(value) ? nlohmann::ordered_json(value) : nlohmann::ordered_json();
}

} // namespace

nlohmann::ordered_json PropertyStreamDump::propertySetEntries(bool customProp) {
    nlohmann::ordered_json entries = nlohmann::ordered_json::object();
    for (int32_t property : m_reader.propertyNumbers(customProp)) {
        entries[std::to_string(property)] =
            typedValue(property, m_reader.entry(property, customProp)->type, customProp);
    }
    return entries;
}

nlohmann::ordered_json PropertyStreamDump::propsEntries() {
    nlohmann::ordered_json entries = nlohmann::ordered_json::object();
    for (int32_t property : m_reader.propertyNumbers(false)) {
        entries[std::to_string(property)] = sizedValue(property, m_reader.entry(property, false)->size);
    }
    return entries;
}

nlohmann::ordered_json PropertyStreamDump::typedValue(int32_t property, int32_t type, bool customProp) {
    auto& r = m_reader;
    switch (type) {
    case kTypeI2:
        return readOrNull<int16_t>([&](auto& v) { return r.readPropertyShort(v, property, customProp); });
    case kTypeI4:
        return readOrNull<int32_t>([&](auto& v) { return r.readPropertyInt(v, property, customProp); });
    case kTypeR4:
        return readOrNull<float>([&](auto& v) { return r.readPropertyFloat(v, property, customProp); });
    case kTypeR8:
        return readOrNull<double>([&](auto& v) { return r.readPropertyDouble(v, property, customProp); });
    case kTypeBool: {
        int16_t value = 0;
        return r.readPropertyShort(value, property, customProp) ? nlohmann::ordered_json(value != 0)
                                                                : nlohmann::ordered_json();
    }
    case kTypeLPSTR:
        return readOrNull<std::string>(
            [&](auto& v) { return r.readPropertyLPSTR(v, property, customProp, m_codepage); });
    case kTypeLPWSTR:
        return readOrNull<std::string>(
            [&](auto& v) { return r.readPropertyLPWSTR(v, property, customProp); });
    case kTypeFileTime: {
        uint64_t ticks = 0;
        if (!r.readPropertyByteArray(&ticks, sizeof ticks, property, customProp)) {
            return nullptr;
        }
        return isoDate(static_cast<int64_t>(ticks / kFileTimeTicksPerSecond) - kFileTimeUnixEpochSeconds);
    }
    default:
        return {{"type", type}};
    }
}

nlohmann::ordered_json PropertyStreamDump::sizedValue(int32_t property, int32_t size) {
    auto& r = m_reader;
    switch (size) {
    case 1:
        return readOrNull<uint8_t>([&](auto& v) { return r.readPropertyUByte(v, property, false); });
    case 2:
        return readOrNull<int16_t>([&](auto& v) { return r.readPropertyShort(v, property, false); });
    case 4:
        return readOrNull<int32_t>([&](auto& v) { return r.readPropertyInt(v, property, false); });
    case 8:
        return readOrNull<double>([&](auto& v) { return r.readPropertyDouble(v, property, false); });
    default:
        return bytesValue(property, size);
    }
}

nlohmann::ordered_json PropertyStreamDump::bytesValue(int32_t property, int32_t size) {
    std::vector<uint8_t> bytes(static_cast<size_t>(std::clamp(size, 0, kMaxShownBytes)));
    if (!m_reader.readPropertyByteArray(bytes.data(), static_cast<uint32_t>(bytes.size()), property, false)) {
        return nullptr;
    }
    // An even-sized value that ends in a NUL unit is most likely text.
    bool looksLikeText = size >= 2 && size % 2 == 0 && size <= kMaxShownBytes &&
                         bytes[bytes.size() - 1] == 0 && bytes[bytes.size() - 2] == 0;
    std::string text;
    if (looksLikeText && m_reader.readPropertyUnicode(text, property, false)) {
        return text;
    }
    return {{"size", size}, {"bytes", hexText(bytes)}};
}
