#include "MPPImporter/text/RTFPlainTextReader.h"

#include "MPPImporter/text/UnicodeText.h"

#include <limits>
#include <unordered_set>

namespace {

constexpr std::string_view kRTFSignature = "{\\rtf";
constexpr size_t kMaxStackedGroups = 512;
// Control words are at most 32 letters; longer runs are still consumed but can't match a word.
constexpr size_t kMaxControlWordLength = 32;

// Destinations whose content is no body text.
const std::unordered_set<std::string_view>& skippedDestinations() {
    static const std::unordered_set<std::string_view> words = {
        "author",
        "buptim",
        "colortbl",
        "comment",
        "creatim",
        "doccomm",
        "footer",
        "footerf",
        "footerl",
        "footerr",
        "footnote",
        "fldinst",
        "filetbl",
        "header",
        "headerf",
        "headerl",
        "headerr",
        "info",
        "keywords",
        "listtable",
        "listoverridetable",
        "object",
        "objdata",
        "operator",
        "pict",
        "pn",
        "pntxta",
        "pntxtb",
        "printim",
        "private",
        "revtbl",
        "revtim",
        "rsidtbl",
        "stylesheet",
        "subject",
        "title",
        "xe",
        "tc",
        "txe",
        "themedata",
        "colorschememapping",
        "latentstyles",
        "datastore",
        "generator",
        "xmlnstbl",
        "bkmkstart",
        "bkmkend",
    };
    return words;
}

// Control words that stand for one character of text.
const std::unordered_map<std::string_view, char16_t>& characterWords() {
    static const std::unordered_map<std::string_view, char16_t> words = {
        {"par", u'\n'},         {"line", u'\n'},        {"row", u'\n'},           {"nestrow", u'\n'},
        {"sect", u'\n'},        {"page", u'\n'},        {"tab", u'\t'},           {"cell", u'\t'},
        {"nestcell", u'\t'},    {"emdash", u'\u2014'},  {"endash", u'\u2013'},    {"bullet", u'\u2022'},
        {"lquote", u'\u2018'},  {"rquote", u'\u2019'},  {"ldblquote", u'\u201C'}, {"rdblquote", u'\u201D'},
        {"emspace", u'\u2003'}, {"enspace", u'\u2002'}, {"qmspace", u'\u2005'},   {"zwj", u'\u200D'},
        {"zwnj", u'\u200C'},
    };
    return words;
}

// The code page of a font's character set, or 0 where the document's code page applies.
int codePageForCharset(int32_t charset) {
    switch (charset) {
    case 0:
        return 1252;
    case 77:
        return 10000;
    case 128:
        return 932;
    case 129:
        return 949;
    case 134:
        return 936;
    case 136:
        return 950;
    case 161:
        return 1253;
    case 162:
        return 1254;
    case 163:
        return 1258;
    case 177:
        return 1255;
    case 178:
        return 1256;
    case 186:
        return 1257;
    case 204:
        return 1251;
    case 222:
        return 874;
    case 238:
        return 1250;
    case 254:
        return 437;
    case 255:
        return 850;
    default:
        return 0;
    }
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

int hexValue(char c) {
    if (isDigit(c)) {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

} // namespace

bool RTFPlainTextReader::isRTF(std::string_view bytes) {
    return bytes.starts_with(kRTFSignature);
}

std::optional<std::string> RTFPlainTextReader::plainText(std::string_view bytes) {
    if (!isRTF(bytes)) {
        return std::nullopt;
    }
    RTFPlainTextReader reader(bytes);
    return utf8FromUTF16(reader.read());
}

std::u16string RTFPlainTextReader::read() {
    while (!m_finished && m_position < m_rtf.size()) {
        char c = m_rtf[m_position++];
        switch (c) {
        case '{':
            openGroup();
            break;
        case '}':
            closeGroup();
            break;
        case '\\':
            readControl();
            break;
        case '\r':
        case '\n':
        case '\0':
            break;
        case '\t':
            if (!swallowedAfterUnicode()) {
                appendUnit(u'\t');
            }
            break;
        default:
            if (!swallowedAfterUnicode()) {
                appendByte(static_cast<uint8_t>(c));
            }
            break;
        }
    }
    return m_text.takeText();
}

void RTFPlainTextReader::openGroup() {
    m_pendingSkip = 0;
    if (m_groups.empty()) {
        m_groups.emplace_back();
    } else if (m_groups.size() < kMaxStackedGroups) {
        m_groups.push_back(group());
    } else {
        ++m_unstackedGroups;
    }
}

void RTFPlainTextReader::closeGroup() {
    m_pendingSkip = 0;
    if (m_unstackedGroups > 0) {
        --m_unstackedGroups;
        return;
    }
    m_groups.pop_back();
    // The brace that closes the document's group ends it; what follows isn't part of it.
    m_finished = m_groups.empty();
}

void RTFPlainTextReader::readControl() {
    if (m_position >= m_rtf.size()) {
        return;
    }
    if (!isLetter(m_rtf[m_position])) {
        char symbol = m_rtf[m_position++];
        if (symbol == '\'') {
            readHexEscape();
        } else if (!swallowedAfterUnicode()) {
            applyControlSymbol(symbol);
        }
        return;
    }
    size_t wordStart = m_position;
    while (m_position < m_rtf.size() && isLetter(m_rtf[m_position])) {
        ++m_position;
    }
    std::string_view word = m_rtf.substr(wordStart, m_position - wordStart);
    if (word.size() > kMaxControlWordLength) {
        word = {};
    }
    std::optional<int32_t> parameter;
    bool negative =
        m_position + 1 < m_rtf.size() && m_rtf[m_position] == '-' && isDigit(m_rtf[m_position + 1]);
    if (negative) {
        ++m_position;
    }
    if (m_position < m_rtf.size() && isDigit(m_rtf[m_position])) {
        int64_t value = 0;
        constexpr int64_t limit = std::numeric_limits<int32_t>::max();
        while (m_position < m_rtf.size() && isDigit(m_rtf[m_position])) {
            value = std::min(limit, value * 10 + (m_rtf[m_position++] - '0'));
        }
        parameter = static_cast<int32_t>(negative ? -value : value);
    }
    // One blank ends a control word and belongs to it.
    if (m_position < m_rtf.size() && m_rtf[m_position] == ' ') {
        ++m_position;
    }
    if (word == "bin") {
        // Binary data of the given length follows; it is never text.
        size_t length = static_cast<size_t>(std::max<int32_t>(0, parameter.value_or(0)));
        m_position += std::min(length, m_rtf.size() - m_position);
        return;
    }
    if (!swallowedAfterUnicode()) {
        applyControlWord(word, parameter);
    }
}

void RTFPlainTextReader::readHexEscape() {
    int high = m_position < m_rtf.size() ? hexValue(m_rtf[m_position]) : -1;
    int low = m_position + 1 < m_rtf.size() ? hexValue(m_rtf[m_position + 1]) : -1;
    if (high < 0 || low < 0) {
        return;
    }
    m_position += 2;
    if (!swallowedAfterUnicode()) {
        appendByte(static_cast<uint8_t>(high * 16 + low));
    }
}

void RTFPlainTextReader::applyControlWord(std::string_view word, std::optional<int32_t> parameter) {
    if (m_groups.empty()) {
        return;
    }
    GroupState& state = group();
    if (state.destination == GroupState::Destination::fontTable) {
        applyFontTableWord(word, parameter.value_or(0));
        return;
    }
    if (auto character = characterWords().find(word); character != characterWords().end()) {
        appendUnit(character->second);
    } else if (word == "u" && parameter) {
        // Negative values stand for the upper half of the 16-bit range.
        appendUnit(static_cast<char16_t>(static_cast<uint32_t>(*parameter) & 0xFFFF));
        m_pendingSkip = state.unicodeSkipCount;
    } else if (word == "uc") {
        state.unicodeSkipCount = std::max<int32_t>(0, parameter.value_or(1));
    } else if (word == "f") {
        state.font = parameter.value_or(0);
    } else if (word == "plain") {
        state.font = -1;
        state.hidden = false;
    } else if (word == "v") {
        state.hidden = parameter.value_or(1) != 0;
    } else if (word == "fonttbl") {
        state.destination = GroupState::Destination::fontTable;
    } else if (skippedDestinations().contains(word)) {
        state.destination = GroupState::Destination::skipped;
    } else if (word == "ansicpg" && parameter) {
        m_ansiCodePage = *parameter;
    } else if (word == "ansi") {
        m_ansiCodePage = 1252;
    } else if (word == "mac") {
        m_ansiCodePage = 10000;
    } else if (word == "pc") {
        m_ansiCodePage = 437;
    } else if (word == "pca") {
        m_ansiCodePage = 850;
    } else if (word == "deff") {
        m_defaultFont = parameter.value_or(0);
    }
}

void RTFPlainTextReader::applyFontTableWord(std::string_view word, int32_t parameter) {
    if (word == "f") {
        m_fontBeingDefined = parameter;
    } else if (word == "fcharset") {
        if (int charsetCodePage = codePageForCharset(parameter); charsetCodePage != 0) {
            m_fontCodePages[m_fontBeingDefined] = charsetCodePage;
        }
    } else if (word == "cpg") {
        m_fontCodePages[m_fontBeingDefined] = parameter;
    }
}

void RTFPlainTextReader::applyControlSymbol(char symbol) {
    switch (symbol) {
    case '\\':
    case '{':
    case '}':
        appendByte(static_cast<uint8_t>(symbol));
        break;
    case '~':
        appendUnit(u'\u00A0');
        break;
    case '_':
        appendUnit(u'\u2011');
        break;
    case '\r':
    case '\n':
        appendUnit(u'\n');
        break;
    case '*':
        if (!m_groups.empty()) {
            group().destination = GroupState::Destination::skipped;
        }
        break;
    default:
        // Optional hyphens, formula and index marks and unknown symbols show nothing.
        break;
    }
}

void RTFPlainTextReader::appendByte(uint8_t byte) {
    if (showsText()) {
        m_text.appendByte(byte, codePage());
    }
}

void RTFPlainTextReader::appendUnit(char16_t unit) {
    if (showsText() && unit != 0) {
        m_text.appendUnit(unit);
    }
}

bool RTFPlainTextReader::swallowedAfterUnicode() {
    if (m_pendingSkip == 0) {
        return false;
    }
    --m_pendingSkip;
    return true;
}

bool RTFPlainTextReader::showsText() const {
    return !m_groups.empty() && group().destination == GroupState::Destination::body && !group().hidden;
}

int RTFPlainTextReader::codePage() const {
    int32_t font = group().font >= 0 ? group().font : m_defaultFont;
    auto found = m_fontCodePages.find(font);
    return found != m_fontCodePages.end() ? found->second : m_ansiCodePage;
}
