#include "CompoundFileBuilder.h"

#include <algorithm>

namespace {

constexpr uint32_t kSectorSize = 512;
constexpr uint32_t kPerSector = kSectorSize / 4;
constexpr uint32_t kMiniSize = 64;

} // namespace

void putLE16(std::vector<unsigned char>& bytes, size_t offset, uint16_t value) {
    bytes[offset] = static_cast<unsigned char>(value);
    bytes[offset + 1] = static_cast<unsigned char>(value >> 8);
}

void putLE32(std::vector<unsigned char>& bytes, size_t offset, uint32_t value) {
    putLE16(bytes, offset, static_cast<uint16_t>(value));
    putLE16(bytes, offset + 2, static_cast<uint16_t>(value >> 16));
}

uint16_t getLE16(const std::vector<unsigned char>& bytes, size_t offset) {
    return static_cast<uint16_t>(bytes[offset] | (bytes[offset + 1] << 8));
}

uint32_t getLE32(const std::vector<unsigned char>& bytes, size_t offset) {
    return getLE16(bytes, offset) | (static_cast<uint32_t>(getLE16(bytes, offset + 2)) << 16);
}

uint64_t getLE64(const std::vector<unsigned char>& bytes, size_t offset) {
    return getLE32(bytes, offset) | (static_cast<uint64_t>(getLE32(bytes, offset + 4)) << 32);
}

std::vector<unsigned char> patternBytes(size_t count, unsigned seed) {
    std::vector<unsigned char> bytes(count);
    for (size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<unsigned char>((i * 31 + seed * 17 + i / 251) & 0xFF);
    }
    return bytes;
}

CompoundFileBuilder::CompoundFileBuilder() {
    Entry root;
    root.name = u"Root Entry";
    root.type = 5;
    m_entries.push_back(root);
}

int32_t CompoundFileBuilder::addEntry(Entry entry) {
    m_entries.push_back(std::move(entry));
    return static_cast<int32_t>(m_entries.size() - 1);
}

uint32_t CompoundFileBuilder::appendChain(const std::vector<unsigned char>& bytes) {
    const uint32_t first = static_cast<uint32_t>(m_sectors.size());
    const size_t count = std::max<size_t>(1, (bytes.size() + kSectorSize - 1) / kSectorSize);
    for (size_t i = 0; i < count; ++i) {
        std::vector<unsigned char> sector(kSectorSize, 0);
        size_t start = i * kSectorSize;
        if (start < bytes.size()) {
            std::copy(bytes.begin() + start, bytes.begin() + std::min(bytes.size(), start + kSectorSize),
                      sector.begin());
        }
        const uint32_t number = static_cast<uint32_t>(m_sectors.size());
        m_sectors.push_back(std::move(sector));
        fat[number] = i + 1 < count ? number + 1 : kEnd;
    }
    return first;
}

uint32_t CompoundFileBuilder::addRegularData(const std::vector<unsigned char>& bytes) {
    return appendChain(bytes);
}

uint32_t CompoundFileBuilder::addMiniData(const std::vector<unsigned char>& bytes) {
    const uint32_t first = static_cast<uint32_t>(m_miniFat.size());
    const size_t count = std::max<size_t>(1, (bytes.size() + kMiniSize - 1) / kMiniSize);
    for (size_t i = 0; i < count; ++i) {
        m_miniFat.push_back(i + 1 < count ? static_cast<uint32_t>(m_miniFat.size() + 1) : kEnd);
    }
    std::vector<unsigned char> padded = bytes;
    padded.resize(count * kMiniSize, 0);
    m_miniStream.insert(m_miniStream.end(), padded.begin(), padded.end());
    return first;
}

int32_t CompoundFileBuilder::addTailStream(const std::u16string& name,
                                           const std::vector<unsigned char>& bytes) {
    Entry entry;
    entry.name = name;
    entry.size = bytes.size();
    m_tail = bytes;
    m_tailEntry = addEntry(entry);
    return m_tailEntry;
}

int32_t CompoundFileBuilder::addStream(const std::u16string& name, const std::vector<unsigned char>& bytes) {
    Entry entry;
    entry.name = name;
    entry.size = bytes.size();
    if (!bytes.empty()) {
        entry.firstSector = bytes.size() < 4096 ? addMiniData(bytes) : addRegularData(bytes);
    }
    return addEntry(entry);
}

size_t CompoundFileBuilder::entryOffset(int32_t index) const {
    return sectorOffset(m_firstDirectorySector + static_cast<uint32_t>(index) / 4) + (index % 4) * 128;
}

std::vector<unsigned char> CompoundFileBuilder::directoryBytes() const {
    std::vector<unsigned char> directory((m_entries.size() + 3) / 4 * 4 * 128, 0);
    for (size_t i = 0; i < directory.size() / 128; ++i) {
        size_t base = i * 128;
        putLE32(directory, base + 68, 0xFFFFFFFF);
        putLE32(directory, base + 72, 0xFFFFFFFF);
        putLE32(directory, base + 76, 0xFFFFFFFF);
        if (i >= m_entries.size()) {
            continue;
        }
        const Entry& entry = m_entries[i];
        for (size_t k = 0; k < entry.name.size() && k < 32; ++k) {
            putLE16(directory, base + 2 * k, entry.name[k]);
        }
        putLE16(directory, base + 64, static_cast<uint16_t>((entry.name.size() + 1) * 2));
        directory[base + 66] = entry.type;
        directory[base + 67] = 1;
        putLE32(directory, base + 68, static_cast<uint32_t>(entry.left));
        putLE32(directory, base + 72, static_cast<uint32_t>(entry.right));
        putLE32(directory, base + 76, static_cast<uint32_t>(entry.child));
        putLE32(directory, base + 116, entry.firstSector);
        putLE32(directory, base + 120, static_cast<uint32_t>(entry.size));
        putLE32(directory, base + 124, static_cast<uint32_t>(entry.size >> 32));
    }
    return directory;
}

std::vector<unsigned char> CompoundFileBuilder::build() {
    if (!m_miniStream.empty()) {
        m_entries[0].firstSector = appendChain(m_miniStream);
        m_entries[0].size = m_miniStream.size();
    }
    uint32_t firstMiniFat = kEnd;
    uint32_t miniFatSectors = 0;
    if (!m_miniFat.empty()) {
        std::vector<unsigned char> table(m_miniFat.size() * 4);
        for (size_t i = 0; i < m_miniFat.size(); ++i) {
            putLE32(table, 4 * i, m_miniFat[i]);
        }
        table.resize((table.size() + kSectorSize - 1) / kSectorSize * kSectorSize, 0xFF);
        firstMiniFat = appendChain(table);
        miniFatSectors = static_cast<uint32_t>(table.size() / kSectorSize);
    }
    const std::vector<unsigned char> placeholder((m_entries.size() + 3) / 4 * 4 * 128, 0);
    m_firstDirectorySector = appendChain(placeholder);

    // The FAT and DIFAT sectors follow everything else but the tail stream.
    const uint32_t tables = static_cast<uint32_t>(m_sectors.size());
    const uint32_t tailSectors = static_cast<uint32_t>((m_tail.size() + kSectorSize - 1) / kSectorSize);
    const uint32_t used = tables + tailSectors;
    uint32_t fatCount = minFatSectors;
    uint32_t difatCount = 0;
    for (;;) {
        uint32_t needed =
            std::max(minFatSectors, (used + fatCount + difatCount + kPerSector - 1) / kPerSector);
        uint32_t difatNeeded = needed <= 109 ? 0 : (needed - 109 + kPerSector - 2) / (kPerSector - 1);
        if (needed == fatCount && difatNeeded == difatCount) {
            break;
        }
        fatCount = needed;
        difatCount = difatNeeded;
    }
    m_fatSectors.clear();
    m_difatSectors.clear();
    for (uint32_t i = 0; i < fatCount; ++i) {
        m_fatSectors.push_back(tables + i);
        fat[tables + i] = 0xFFFFFFFD;
    }
    for (uint32_t i = 0; i < difatCount; ++i) {
        m_difatSectors.push_back(tables + fatCount + i);
        fat[tables + fatCount + i] = 0xFFFFFFFC;
    }
    m_sectors.resize(tables + fatCount + difatCount, std::vector<unsigned char>(kSectorSize, 0xFF));
    if (m_tailEntry >= 0) {
        m_entries[m_tailEntry].firstSector = appendChain(m_tail);
    }
    const std::vector<unsigned char> directory = directoryBytes();
    for (size_t i = 0; i < directory.size() / kSectorSize; ++i) {
        std::copy(directory.begin() + i * kSectorSize, directory.begin() + (i + 1) * kSectorSize,
                  m_sectors[m_firstDirectorySector + i].begin());
    }
    for (const auto& [sector, value] : fat) {
        if (sector / kPerSector < fatCount) {
            putLE32(m_sectors[m_fatSectors[sector / kPerSector]], 4 * (sector % kPerSector), value);
        }
    }
    for (uint32_t i = 0; i < difatCount; ++i) {
        std::vector<unsigned char>& sector = m_sectors[m_difatSectors[i]];
        for (uint32_t j = 0; j + 1 < kPerSector; ++j) {
            size_t index = 109 + static_cast<size_t>(i) * (kPerSector - 1) + j;
            putLE32(sector, 4 * j, index < fatCount ? m_fatSectors[index] : kFree);
        }
        putLE32(sector, 4 * (kPerSector - 1), i + 1 < difatCount ? m_difatSectors[i + 1] : kEnd);
    }

    std::vector<unsigned char> file(kSectorSize, 0xFF);
    const unsigned char signature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    std::copy(signature, signature + 8, file.begin());
    std::fill(file.begin() + 8, file.begin() + 76, 0);
    putLE16(file, 24, 0x3E);
    putLE16(file, 26, majorVersion);
    putLE16(file, 28, byteOrder);
    putLE16(file, 30, 9);
    putLE16(file, 32, 6);
    putLE32(file, 44, fatCount);
    putLE32(file, 48, m_firstDirectorySector);
    putLE32(file, 56, 4096);
    putLE32(file, 60, firstMiniFat);
    putLE32(file, 64, miniFatSectors);
    putLE32(file, 68, difatCount == 0 ? kEnd : m_difatSectors.front());
    putLE32(file, 72, difatCount);
    for (uint32_t i = 0; i < std::min<uint32_t>(fatCount, 109); ++i) {
        putLE32(file, 76 + 4 * i, m_fatSectors[i]);
    }
    for (const auto& sector : m_sectors) {
        file.insert(file.end(), sector.begin(), sector.end());
    }
    return file;
}
