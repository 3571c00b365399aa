#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>

class KVMSPIPropsReader;

// One property stream as JSON: property number (as text) to value, read with the reader's typed
// reads. Property-set values are read by their type word, Props stream values by their size.
class PropertyStreamDump {
public:
    // `codepage` decodes narrow strings, as the file's summary information declares it.
    PropertyStreamDump(KVMSPIPropsReader& reader, int16_t codepage)
        : m_reader(reader), m_codepage(codepage) {}

    // The entries of a property set; `customProp` selects the document summary information's.
    nlohmann::ordered_json propertySetEntries(bool customProp);
    // The entries of a Props stream.
    nlohmann::ordered_json propsEntries();

private:
    nlohmann::ordered_json typedValue(int32_t property, int32_t type, bool customProp);
    nlohmann::ordered_json sizedValue(int32_t property, int32_t size);
    nlohmann::ordered_json bytesValue(int32_t property, int32_t size);

    KVMSPIPropsReader& m_reader;
    int16_t m_codepage;
};
