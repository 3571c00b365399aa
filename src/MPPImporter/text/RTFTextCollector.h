#pragma once

#include <cstdint>
#include <string>

// The text of an RTF document as it is read: Unicode units and code-page bytes in document order.
// Bytes are kept until something else comes, so that double-byte characters whose halves arrive
// as separate escapes decode as one.
class RTFTextCollector {
public:
    void appendByte(uint8_t byte, int codePage);
    void appendUnit(char16_t unit);
    // All text so far; the collector is empty afterwards.
    std::u16string takeText();

private:
    void flushBytes();

    std::u16string m_text;
    std::string m_pendingBytes;
    int m_pendingCodePage = 0;
};
