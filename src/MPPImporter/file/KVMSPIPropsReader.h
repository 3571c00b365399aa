#pragma once

#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// Reads the key/value streams of an MPP file: the OLE property sets "\005SummaryInformation" and
// "\005DocumentSummaryInformation", and the project's "Props9"/"Props12"/"Props14" streams. The first
// two bytes tell the kinds apart (FE FF begins a property set). All entries are indexed once at
// creation; typed reads then go back to the stream for each value, so the stream's position is that
// of the last value read. A broken stream leaves a partly filled index; values that can't be read
// are absent.
class KVMSPIPropsReader {
public:
    // Where an entry's value lies. For property-set strings the size recorded is the type word (30 or
    // 31), not the length: string reads go by the length in the stream. Other property-set values
    // record 0.
    struct Entry {
        int64_t location = 0;
        int32_t size = 0;
        int32_t type = 0;
    };

    // Indexes the stream at once. A property set with a bad section count, an unexpected second
    // section or a misplaced dictionary raises the internal-inconsistency exception.
    explicit KVMSPIPropsReader(std::unique_ptr<SSLStream> stream);

    const std::string& name() const { return _name; }

    // Logs the error in hand as "ERROR: ..." if there is one and clears it. Always true.
    bool processError();
    const std::optional<TVError>& error() const { return _error; }

    // Each is true if the entry exists and fills what is given.
    bool getPropertySize(int32_t* size, int32_t property) const;
    bool getCustomPropertySize(int32_t* size, int32_t* type, int32_t property) const;
    bool getCustomProperty(int32_t* property, const std::string& propertyName) const;

    // Typed reads by property number; `customProp` reads the document summary information's entries.
    // An entry wider than the type is refused; a narrower one is read at the type's width. An entry
    // that exists answers true even if the stream then can't give the value.
    bool readPropertyByte(int8_t& value, int32_t property, bool customProp);
    bool readPropertyUByte(uint8_t& value, int32_t property, bool customProp);
    bool readPropertyShort(int16_t& value, int32_t property, bool customProp);
    bool readPropertyUShort(uint16_t& value, int32_t property, bool customProp);
    bool readPropertyInt(int32_t& value, int32_t property, bool customProp);
    bool readPropertyUInt(uint32_t& value, int32_t property, bool customProp);
    bool readPropertyFloat(float& value, int32_t property, bool customProp);
    bool readPropertyDouble(double& value, int32_t property, bool customProp);
    bool readPropertyByteArray(void* bytes, uint32_t length, int32_t property, bool customProp);
    // A time word then a day word; true if the stream gave them, with no date for a null value.
    bool readPropertyTimestamp(std::optional<TVDate>& value, int32_t property, bool customProp);

    // Text reads append to `text` and are true only if text could be read.
    // The entry's bytes as NUL-terminated UTF-8.
    bool readPropertyUTF8(std::string& text, int32_t property, bool customProp);
    // A NUL-terminated UTF-16 string of at most size / 2 units at the entry.
    bool readPropertyUnicode(std::string& text, int32_t property, bool customProp);
    // The same behind a wide string's length word.
    bool readPropertyLPWSTR(std::string& text, int32_t property, bool customProp);
    // A narrow string in the Windows code page given, behind its length word, without the control
    // characters that XML can't hold.
    bool readPropertyLPSTR(std::string& text, int32_t property, bool customProp, int16_t codepage);

    // The indexed property numbers in ascending order, one indexed entry, and the names of the
    // user-defined properties.
    std::vector<int32_t> propertyNumbers(bool customProp) const;
    std::optional<Entry> entry(int32_t property, bool customProp) const;
    const std::map<std::string, int32_t>& customPropertyNames() const { return _propsNameMap; }

private:
    using EntryMap = std::map<int32_t, Entry>;

    // A section of a property set, read whole.
    struct Section {
        int64_t offset = 0;
        std::vector<uint8_t> bytes;
    };

    void initPropertyList();
    void initPropertySetStreamPacket();
    std::optional<Section> readSection(uint32_t offset, const char* domain);
    void indexSection(const Section& section, EntryMap* target, bool userDefined);
    void readDictionary(const Section& section, uint32_t offset);

    const Entry* findEntry(int32_t property, bool customProp);
    // The entry to read at its location, or none if it is missing or at least `refusedSize` wide.
    const Entry* seekToEntry(int32_t property, bool customProp, int32_t refusedSize, int64_t delta = 0);
    template <typename Value, typename Read>
    bool readValue(Value& value, int32_t property, bool customProp, int32_t refusedSize, Read read);
    bool readWideString(std::string& text, int32_t property, bool customProp, int64_t delta);
    // Reports the stream's failure in `domain`, if its last operation failed; true if it didn't.
    bool checkStream(const char* domain);

    std::unique_ptr<SSLStream> _stream;
    std::string _name;
    EntryMap _propsMap;
    EntryMap _customPropsMap;
    std::map<std::string, int32_t> _propsNameMap;
    std::optional<TVError> _error;
};
