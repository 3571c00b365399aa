#include "tool/frontend/BatchListReader.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVPath.h"
#include "tool/frontend/FrontendExceptions.h"
#include "tool/frontend/PathStandardizer.h"

#include <fstream>
#include <optional>

namespace {

// A list names files one per line; a larger file is no list and is refused before it is read whole.
constexpr std::streamoff kMaximumListSize = 4 * 1024 * 1024;

constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";

std::optional<std::string> readWholeFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file) {
        return std::nullopt;
    }
    std::streamoff size = file.tellg();
    if (size < 0 || size > kMaximumListSize) {
        return std::nullopt;
    }
    std::string contents(static_cast<size_t>(size), '\0');
    file.seekg(0);
    if (!file.read(contents.data(), size)) {
        return std::nullopt;
    }
    return contents;
}

} // namespace

std::vector<std::string> BatchListReader::readInputList(const std::string& listPath) {
    tvLog("### Import files from the list:");
    std::string path = PathStandardizer::standardize(listPath);
    if (fileKindAtPath(path) != FileKind::File) {
        throw TVException(kFileNotFoundException,
                          stringWithFormat("Input list not found or it is a directory: %s", path.c_str()));
    }
    std::optional<std::string> text = readWholeFile(path);
    if (text && text->starts_with(kByteOrderMark)) {
        text->erase(0, 3);
    }
    if (!text || !isValidUTF8(*text)) {
        throw TVException(kFileNotFoundException,
                          stringWithFormat("Input list file could not be read or empty: %s", path.c_str()));
    }
    if (text->empty()) {
        throw TVException(kFileNotFoundException,
                          stringWithFormat("Input list could not be built or empty: %s", path.c_str()));
    }
    std::vector<std::string> inputs;
    forEachPiece(*text, [&inputs](std::string_view piece) {
        if (!isSkippedEntry(piece)) {
            inputs.emplace_back(piece);
            tvLog(stringWithFormat("    \"%s\"", inputs.back().c_str()));
        }
    });
    return inputs;
}

void BatchListReader::forEachPiece(std::string_view text,
                                   const std::function<void(std::string_view piece)>& visit) {
    size_t pieceStart = 0;
    size_t position = 0;
    while (position < text.size()) {
        size_t length = newlineLengthAt(text, position);
        if (length == 0) {
            ++position;
            continue;
        }
        visit(text.substr(pieceStart, position - pieceStart));
        position += length;
        pieceStart = position;
    }
    visit(text.substr(pieceStart));
}

bool BatchListReader::isSkippedEntry(std::string_view entry) {
    return entry.empty() || entry.starts_with("::");
}

size_t BatchListReader::newlineLengthAt(std::string_view text, size_t position) {
    unsigned char c = static_cast<unsigned char>(text[position]);
    if (c >= 0x0A && c <= 0x0D) {
        return 1;
    }
    std::string_view rest = text.substr(position);
    if (rest.starts_with("\xC2\x85")) {
        return 2;
    }
    if (rest.starts_with("\xE2\x80\xA8") || rest.starts_with("\xE2\x80\xA9")) {
        return 3;
    }
    return 0;
}

bool BatchListReader::isValidUTF8(const std::string& text) {
    static const uint32_t kSmallestCodePoint[] = {0, 0x80, 0x800, 0x10000};
    size_t i = 0;
    while (i < text.size()) {
        unsigned char lead = static_cast<unsigned char>(text[i]);
        if (lead < 0x80) {
            ++i;
            continue;
        }
        if (lead < 0xC2 || lead > 0xF4) {
            return false;
        }
        size_t extra = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
        if (text.size() - i - 1 < extra) {
            return false;
        }
        uint32_t codePoint = lead & (0x3Fu >> extra);
        for (size_t k = 1; k <= extra; ++k) {
            unsigned char next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0) != 0x80) {
                return false;
            }
            codePoint = (codePoint << 6) | (next & 0x3Fu);
        }
        if (codePoint < kSmallestCodePoint[extra] || codePoint > 0x10FFFF ||
            (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
            return false;
        }
        i += extra + 1;
    }
    return true;
}
