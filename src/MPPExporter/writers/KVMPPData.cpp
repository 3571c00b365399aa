#include "MPPExporter/writers/KVMPPData.h"

#include "MPPCommon/date/TVTimeZone.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/format/MPPValueCodecs.h"
#include "MPPImporter/text/UnicodeText.h"

#include <array>
#include <cstring>

namespace {

constexpr size_t kInitialCapacity = 512;
constexpr size_t kGUIDSize = 16;
constexpr double kSecondsPerTenthOfMinute = 6.0;

// 1984-01-12 08:00:00 as a UTC instant; the special dates count from its wall clock.
constexpr TVDate kSpecialDateBase = getMPPEpoch().addingSeconds(12 * kSecondsPerDay + 8 * 3600.0);
constexpr uint64_t kSpecialDateOffsets[] = {306, 322, 338};
constexpr double kSpecialDateShifts[] = {0.0, 4233600.0, 1039884.0};
constexpr int32_t kMinutesUnit = 3;

// Seconds in one of the duration units of the format; 0 for a code without a length.
double unitLength(int32_t units) {
    switch (units) {
    case 3:
    case 4:
        return 60.0;
    case 5:
    case 6:
        return 3600.0;
    case 7:
    case 21:
        return 86400.0;
    case 8:
        return 28800.0;
    case 9:
        return 604800.0;
    case 10:
        return 144000.0;
    case 11:
    case 12:
    case 19:
        return 2592000.0;
    default:
        return 0.0;
    }
}

// The bytes of a text in one of the block encodings; ASCII replaces what it can't hold by '?'.
std::vector<uint8_t> encodedText(const std::string& text, int32_t encoding) {
    const std::u16string units = utf16FromUTF8(text);
    std::vector<uint8_t> bytes;
    if (encoding == kMPPDataEncodingUTF16LE) {
        bytes.resize(units.size() * 2);
        for (size_t i = 0; i < units.size(); ++i) {
            encodeMPPNumber(static_cast<uint16_t>(units[i]), std::span(bytes).subspan(2 * i));
        }
        return bytes;
    }
    tvAssert(encoding == kMPPDataEncodingASCII, "Unsupported text encoding of an MPP data block.");
    for (size_t i = 0; i < units.size(); ++i) {
        const char16_t unit = units[i];
        if (unit >= 0xD800 && unit < 0xDC00 && i + 1 < units.size()) {
            ++i; // a surrogate pair is one character
        }
        bytes.push_back(unit < 0x80 ? static_cast<uint8_t>(unit) : static_cast<uint8_t>('?'));
    }
    return bytes;
}

// The body of an RTF document holding the plain text. A line break becomes a paragraph mark, except the
// last one of the text: the document's closing mark ends that paragraph, and writing both would give a
// note read back one empty paragraph more on every round trip. The RTF specials are escaped, and every
// character beyond ASCII is written as its UTF-16 units (`\uN` with `?` for readers without Unicode),
// since the ASCII document would otherwise lose the note's letters.
std::string rtfBody(const std::string& text) {
    std::u16string units = utf16FromUTF8(text);
    if (!units.empty() && units.back() == u'\n') {
        units.pop_back();
    }
    std::string body;
    for (const char16_t unit : units) {
        if (unit == u'\n') {
            body += "\\par\r\n";
        } else if (unit == u'\\' || unit == u'{' || unit == u'}') {
            body += {'\\', static_cast<char>(unit)};
        } else if (unit < 0x80) {
            body += static_cast<char>(unit);
        } else {
            body += "\\u" + std::to_string(static_cast<int16_t>(unit)) + "?";
        }
    }
    return body;
}

} // namespace

KVMPPData::KVMPPData() {
    resetData();
}

void KVMPPData::resetData() {
    m_data = {};
    m_data.reserve(kInitialCapacity);
}

void KVMPPData::getBytes(void* into, size_t length) const {
    getBytes(into, 0, length);
}

void KVMPPData::getBytes(void* into, size_t location, size_t length) const {
    if (location > m_data.size() || length > m_data.size() - location) {
        throw TVException(kMPPDataRangeException, "Range out of bounds");
    }
    if (length > 0) {
        std::memcpy(into, m_data.data() + location, length);
    }
}

void KVMPPData::clearBuffer() {
    m_bytesCleared += m_data.size();
    resetData();
}

void KVMPPData::append(std::span<const uint8_t> bytes) {
    m_data.insert(m_data.end(), bytes.begin(), bytes.end());
}

std::span<uint8_t> KVMPPData::fieldAt(uint64_t offset, size_t width) {
    if (offset > m_data.size() || width > m_data.size() - offset) {
        throw TVException(kMPPDataRangeException, "Attempt to write to data at wrong offset");
    }
    return std::span(m_data).subspan(offset, width);
}

void KVMPPData::writeInteger(uint32_t value) {
    std::array<uint8_t, 4> bytes{};
    encodeMPPNumber(value, bytes);
    append(bytes);
}

void KVMPPData::write2ByteInteger(uint16_t value) {
    std::array<uint8_t, 2> bytes{};
    encodeMPPNumber(value, bytes);
    append(bytes);
}

void KVMPPData::write1ByteInteger(uint8_t value) {
    m_data.push_back(value);
}

void KVMPPData::writeInteger(uint32_t value, uint64_t offset) {
    encodeMPPNumber(value, fieldAt(offset, 4));
}

void KVMPPData::write2ByteInteger(uint16_t value, uint64_t offset) {
    encodeMPPNumber(value, fieldAt(offset, 2));
}

void KVMPPData::write1ByteInteger(uint8_t value, uint64_t offset) {
    encodeMPPNumber(value, fieldAt(offset, 1));
}

void KVMPPData::writeDouble(double value) {
    std::array<uint8_t, 8> bytes{};
    encodeMPPNumber(value, bytes);
    append(bytes);
}

void KVMPPData::writeData(const void* bytes, size_t length) {
    append(std::span(static_cast<const uint8_t*>(bytes), length));
}

void KVMPPData::writeZeroesBlockOfSize(size_t count) {
    m_data.resize(m_data.size() + count, 0);
}

void KVMPPData::writeGUID(std::span<const uint8_t> guid) {
    if (guid.empty()) {
        writeZeroesBlockOfSize(kGUIDSize);
        return;
    }
    tvAssert(guid.size() == kGUIDSize, "A GUID has 16 bytes.");
    append(guid);
}

void KVMPPData::writeString(const std::string& text, int32_t encoding) {
    append(encodedText(text, encoding));
    write2ByteInteger(0);
}

void KVMPPData::writeRtfString(const std::string& text, int32_t encoding) {
    const std::string plain = rtfBody(text);
    const std::string document =
        "{\\rtf1\\ansi\\ansicpg1251\\deff0\\deflang1049{\\fonttbl{\\f0\\fswiss\\fprq2\\fcharset0 Arial;}"
        "{\\f1\\fswiss\\fprq2\\fcharset204{\\*\\fname Arial;}Arial CYR;}}\r"
        "\n{\\*\\generator Riched2012.0.6413.1000;}\\viewkind4\\uc1\r"
        "\n\\pard\\f0\\fs16\\lang1033 " +
        plain + "\\f1\\lang1049\\par\r\n}\r\n";
    append(encodedText(document, encoding));
    write1ByteInteger(0);
}

void KVMPPData::writeDuration(double seconds, int32_t /*units*/) {
    writeInteger(static_cast<uint32_t>(truncatedMPPInteger<int32_t>(seconds / kSecondsPerTenthOfMinute)));
}

void KVMPPData::writeDuration(double seconds, int32_t units, uint64_t offset) {
    const double length = unitLength(units);
    const int32_t value = length > 0.0 ? truncatedMPPInteger<int32_t>(seconds * 10.0 / length) : 0;
    writeInteger(static_cast<uint32_t>(value), offset);
}

TVDate KVMPPData::wallClock(TVDate date) {
    return date.addingSeconds(TVTimeZone::systemTimeZone().secondsFromGMT(date));
}

std::optional<TVDate> KVMPPData::wallClock(std::optional<TVDate> date) {
    return date ? std::optional(wallClock(*date)) : std::nullopt;
}

void KVMPPData::writeDate(std::optional<TVDate> date) {
    std::array<uint8_t, kMPPTimestampSize> bytes{};
    encodeMPPTimestamp(wallClock(date), bytes);
    append(bytes);
}

void KVMPPData::writeSpecialDate(std::optional<TVDate> date) {
    if (!date) {
        return;
    }
    const TVTimeZone zone = TVTimeZone::systemTimeZone();
    const TVDate base = kSpecialDateBase.addingSeconds(-zone.secondsFromGMT(kSpecialDateBase));
    const double difference = date->secondsSince(base);
    for (size_t i = 0; i < std::size(kSpecialDateOffsets); ++i) {
        writeDuration(difference + kSpecialDateShifts[i], kMinutesUnit, kSpecialDateOffsets[i]);
    }
}

void KVMPPData::writeDaysFromDate(std::optional<TVDate> date) {
    std::array<uint8_t, kMPPDateSize> bytes{};
    encodeMPPDate(wallClock(date), bytes);
    append(bytes);
}

void KVMPPData::writeDaysFromDate(std::optional<TVDate> date, uint64_t offset) {
    encodeMPPDate(wallClock(date), fieldAt(offset, kMPPDateSize));
}
