#include "MPPImporter/text/RTFTextCollector.h"

#include "MPPImporter/text/WindowsCodePage.h"

void RTFTextCollector::appendByte(uint8_t byte, int codePage) {
    if (!m_pendingBytes.empty() && codePage != m_pendingCodePage) {
        flushBytes();
    }
    m_pendingCodePage = codePage;
    m_pendingBytes.push_back(static_cast<char>(byte));
}

void RTFTextCollector::appendUnit(char16_t unit) {
    flushBytes();
    m_text.push_back(unit);
}

std::u16string RTFTextCollector::takeText() {
    flushBytes();
    std::u16string text;
    text.swap(m_text);
    return text;
}

void RTFTextCollector::flushBytes() {
    if (m_pendingBytes.empty()) {
        return;
    }
    // A code page that no converter knows is read as Western European, which keeps at least the
    // ASCII text.
    auto decoded = utf16FromCodePage(m_pendingBytes, m_pendingCodePage, InvalidBytes::replace);
    if (!decoded) {
        decoded = utf16FromCodePage(m_pendingBytes, kCodePageWindowsLatin1, InvalidBytes::replace);
    }
    if (decoded) {
        m_text += *decoded;
    }
    m_pendingBytes.clear();
}
