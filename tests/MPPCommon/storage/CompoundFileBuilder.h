#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Builds compound files byte by byte with 512-byte sectors, so that tests can lay out exactly the
// structures they need and then damage them.
class CompoundFileBuilder {
public:
    static constexpr uint32_t kFree = 0xFFFFFFFF;
    static constexpr uint32_t kEnd = 0xFFFFFFFE;

    struct Entry {
        std::u16string name;
        uint8_t type = 2;
        int32_t left = -1;
        int32_t right = -1;
        int32_t child = -1;
        uint32_t firstSector = kEnd;
        uint64_t size = 0;
    };

    uint16_t majorVersion = 3;
    uint16_t byteOrder = 0xFFFE;
    // The FAT gets at least this many sectors, free entries filling the rest.
    uint32_t minFatSectors = 0;
    // The FAT; tests may change links of data sectors before build().
    std::map<uint32_t, uint32_t> fat;

    // Entry 0 is the root: it is added by the constructor.
    CompoundFileBuilder();
    int32_t addEntry(Entry entry);
    Entry& entry(int32_t index) { return m_entries[index]; }

    // Stores bytes in new chained sectors (of the regular or the mini stream); gives the first one.
    uint32_t addRegularData(const std::vector<unsigned char>& bytes);
    uint32_t addMiniData(const std::vector<unsigned char>& bytes);
    // A stream entry whose data lie where a reader expects them for its size.
    int32_t addStream(const std::u16string& name, const std::vector<unsigned char>& bytes);
    // A stream in regular sectors at the very end of the file, behind the directory and the tables.
    int32_t addTailStream(const std::u16string& name, const std::vector<unsigned char>& bytes);

    std::vector<unsigned char> build();

    // Positions in the last built file.
    size_t entryOffset(int32_t index) const;
    uint32_t firstDirectorySector() const { return m_firstDirectorySector; }
    const std::vector<uint32_t>& fatSectors() const { return m_fatSectors; }
    const std::vector<uint32_t>& difatSectors() const { return m_difatSectors; }
    static size_t sectorOffset(uint32_t sector) { return (static_cast<size_t>(sector) + 1) * 512; }

private:
    uint32_t appendChain(const std::vector<unsigned char>& bytes);
    std::vector<unsigned char> directoryBytes() const;

    std::vector<Entry> m_entries;
    std::vector<std::vector<unsigned char>> m_sectors;
    std::vector<unsigned char> m_miniStream;
    std::vector<uint32_t> m_miniFat;
    int32_t m_tailEntry = -1;
    std::vector<unsigned char> m_tail;
    uint32_t m_firstDirectorySector = kEnd;
    std::vector<uint32_t> m_fatSectors;
    std::vector<uint32_t> m_difatSectors;
};

// Little-endian helpers for building and patching fixtures.
void putLE16(std::vector<unsigned char>& bytes, size_t offset, uint16_t value);
void putLE32(std::vector<unsigned char>& bytes, size_t offset, uint32_t value);
uint16_t getLE16(const std::vector<unsigned char>& bytes, size_t offset);
uint32_t getLE32(const std::vector<unsigned char>& bytes, size_t offset);
uint64_t getLE64(const std::vector<unsigned char>& bytes, size_t offset);
// `count` bytes of a recognisable pattern that differs with `seed`.
std::vector<unsigned char> patternBytes(size_t count, unsigned seed);
