#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

// Reads a batch list: a UTF-8 text file with one input path per line. Lines end at any of LF, CR,
// VT, FF, NEL, LINE SEPARATOR and PARAGRAPH SEPARATOR (so CR LF leaves an empty line between). Empty
// lines and lines starting with "::" are skipped; every other line is kept as it stands, blanks
// included.
class BatchListReader {
public:
    // The kept lines of the list at `listPath`, in file order, logged as they are taken. Raises
    // FileNotFoundException when the file is missing, a folder, unreadable, not UTF-8 or empty. A
    // leading byte order mark is dropped.
    static std::vector<std::string> readInputList(const std::string& listPath);

    // Calls `visit` with each piece of UTF-8 `text` between line ends, in order; a text without line
    // ends is one piece.
    static void forEachPiece(std::string_view text, const std::function<void(std::string_view piece)>& visit);

    // Whether an entry of a list is a blank or comment line.
    static bool isSkippedEntry(std::string_view entry);

private:
    // Byte length of the line end starting at `position`, or 0.
    static size_t newlineLengthAt(std::string_view text, size_t position);
    static bool isValidUTF8(const std::string& text);
};
