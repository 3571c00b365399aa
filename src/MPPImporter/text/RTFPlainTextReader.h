#pragma once

#include "MPPImporter/text/RTFTextCollector.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// Reads the text of an RTF document as a plain viewer shows it: paragraphs and line breaks as
// newlines, tabs and table cells as tabs, Unicode and code-page escapes decoded, and everything that
// isn't body text (font and colour tables, style sheets, document info, pictures, headers, footers,
// field instructions, ignorable destinations) left out. Works on untrusted bytes in one pass, with
// bounded group nesting and no recursion.
class RTFPlainTextReader {
public:
    // Whether the bytes begin like an RTF document.
    static bool isRTF(std::string_view bytes);

    // The document's text as UTF-8, or none when the bytes are no RTF document. A document cut off
    // before its last brace gives the text up to the cut.
    static std::optional<std::string> plainText(std::string_view bytes);

private:
    // Formatting state that a group inherits from its parent and drops at its end.
    struct GroupState {
        enum class Destination { body, fontTable, skipped };
        Destination destination = Destination::body;
        int32_t unicodeSkipCount = 1;
        int32_t font = -1; // -1: the document's default font
        bool hidden = false;
    };

    explicit RTFPlainTextReader(std::string_view rtf) : m_rtf(rtf) {}

    std::u16string read();
    void openGroup();
    void closeGroup();
    void readControl();
    void readHexEscape();
    void applyControlWord(std::string_view word, std::optional<int32_t> parameter);
    void applyFontTableWord(std::string_view word, int32_t parameter);
    void applyControlSymbol(char symbol);
    void appendByte(uint8_t byte);
    void appendUnit(char16_t unit);
    bool swallowedAfterUnicode();
    bool showsText() const;
    int codePage() const;
    GroupState& group() { return m_groups.back(); }
    const GroupState& group() const { return m_groups.back(); }

    std::string_view m_rtf;
    size_t m_position = 0;
    std::vector<GroupState> m_groups;
    // Groups opened beyond the nesting limit; they share the innermost state.
    size_t m_unstackedGroups = 0;
    bool m_finished = false;
    // Fallback characters still to drop after a \u escape.
    int32_t m_pendingSkip = 0;
    int m_ansiCodePage = 1252;
    int32_t m_defaultFont = 0;
    int32_t m_fontBeingDefined = 0;
    std::unordered_map<int32_t, int> m_fontCodePages;
    RTFTextCollector m_text;
};
