#include "MPPExporter/writers/KVMPPProps.h"

namespace {
constexpr uint64_t kElementHeaderSize = 12;
constexpr uint64_t kElementSizeAgainOffset = 8;
constexpr uint64_t kElementCountOffset = 12;
} // namespace

KVMPPProps::KVMPPProps(uint32_t magicInt) : m_magicInt(magicInt) {}

void KVMPPProps::open() {
    writeInteger(0);
    writeInteger(0);
    writeInteger(m_magicInt);
    write2ByteInteger(0);
    write2ByteInteger(0);
    m_closed = false;
}

void KVMPPProps::close() {
    const auto size = static_cast<uint32_t>(cumulativeDataSize() - 4);
    writeInteger(size, 0);
    writeInteger(size, 4);
    write2ByteInteger(static_cast<uint16_t>(elementsCount()), kElementCountOffset);
    m_closed = true;
}

void KVMPPProps::clearBuffer() {
    if (m_closed) {
        KVMPPOffsetMarkedData::clearBuffer();
    }
}

void KVMPPProps::startNewElementForType(uint32_t type, uint32_t headerEnding) {
    startNewElement();
    writeInteger(0);
    writeInteger(type);
    writeInteger(headerEnding);
}

void KVMPPProps::closeCurrentElement() {
    if (writingElement()) {
        const auto size = static_cast<uint32_t>(dataSize() - kElementHeaderSize - curElementOffset());
        writeInteger(size, curElementOffset());
        if (m_writeSizeTwice) {
            writeInteger(size, curElementOffset() + kElementSizeAgainOffset);
        }
    }
    KVMPPOffsetMarkedData::closeCurrentElement();
}
