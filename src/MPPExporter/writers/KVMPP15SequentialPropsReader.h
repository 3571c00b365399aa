#pragma once

#include "MPPExporter/writers/KVMPPFormatReader.h"

#include <array>
#include <cstdint>
#include <vector>

// Walks a template's property stream property by property: a 16-byte header (sizes, a magic number
// at 8, the property count at 12), then per property a 12-byte header (payload size, type, an
// ending) and the payload, padded to an even length.
class KVMPP15SequentialPropsReader {
public:
    // Reads the whole stream; an empty or unreadable one finds no properties.
    explicit KVMPP15SequentialPropsReader(KVMPPFormatReader& reader);

    // Moves to the next property; false at the end, or where a property would run past the stream.
    bool readNextProperty();

    const std::vector<uint8_t>& curPropertyData() const { return m_curPropertyData; }
    const std::array<uint8_t, 12>& curPropertyHeader() const { return m_curPropertyHeader; }
    uint32_t magicHeaderInt() const { return m_magicHeaderInt; }
    uint32_t curPropertyType() const { return m_curPropertyType; }

private:
    uint32_t wordAt(uint64_t offset) const;

    std::vector<uint8_t> m_allData;
    uint32_t m_propsCount = 0;
    uint32_t m_magicHeaderInt = 0;
    uint64_t m_nextPropertyStartOffset = 16;
    uint32_t m_nextPropertyIndex = 0;
    std::array<uint8_t, 12> m_curPropertyHeader{};
    std::vector<uint8_t> m_curPropertyData;
    uint32_t m_curPropertyType = 0;
};
