#include "MPPExporter/writers/KVMPPSummaryInfoData.h"

#include <array>

namespace {

constexpr uint16_t kByteOrder = 0xFFFE;
constexpr uint16_t kSystemLow = 0x0105;
constexpr uint16_t kSystemHigh = 0x0002;
constexpr uint32_t kSectionOffset = 48;
constexpr size_t kClassIDSize = 16;

// The format ids, in the byte order of the stream.
constexpr std::array<uint8_t, 16> kSummaryInformationID = {0xE0, 0x85, 0x9F, 0xF2, 0xF9, 0x4F, 0x68, 0x10,
                                                           0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9};
constexpr std::array<uint8_t, 16> kDocumentSummaryInformationID = {
    0x02, 0xD5, 0xCD, 0xD5, 0x9C, 0x2E, 0x1B, 0x10, 0x93, 0x97, 0x08, 0x00, 0x2B, 0x2C, 0xF9, 0xAE};

} // namespace

void KVMPPSummaryInfoData::open() {
    writeHeader(kSummaryInformationID);
}

void KVMPPSummaryInfoData::openDoc() {
    writeHeader(kDocumentSummaryInformationID);
}

void KVMPPSummaryInfoData::writeHeader(std::span<const uint8_t> formatID) {
    write2ByteInteger(kByteOrder);
    write2ByteInteger(0);
    write2ByteInteger(kSystemLow);
    write2ByteInteger(kSystemHigh);
    writeZeroesBlockOfSize(kClassIDSize);
    writeInteger(1);
    writeData(formatID.data(), formatID.size());
    writeInteger(kSectionOffset);
    // The section's size and property count, filled at close.
    writeInteger(0);
    writeInteger(0);
    m_closed = false;
}

void KVMPPSummaryInfoData::close(uint16_t propertyCount) {
    writeInteger(static_cast<uint32_t>(cumulativeDataSize() - kSectionOffset), kSectionOffset);
    write2ByteInteger(propertyCount, kSectionOffset + 4);
    m_closed = true;
}
