#include "MPPImporter/file/MPPMemReadUnicode.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/format/MPPValueCodecs.h"
#include "MPPImporter/text/RTFPlainTextReader.h"
#include "MPPImporter/text/UnicodeText.h"

int32_t memReadUnicode(std::string& text, const uint8_t* bytes, int32_t start, int32_t end) {
    tvAssert(start < end, "Invalid offset in the buffer.");
    std::string_view range(reinterpret_cast<const char*>(bytes + start), static_cast<size_t>(end - start));
    if (auto plainText = RTFPlainTextReader::plainText(range)) {
        text += *plainText;
        return static_cast<int32_t>(utf16Length(*plainText));
    }
    const std::u16string units = decodeMPPText({bytes + start, static_cast<size_t>(end - start)});
    text += utf8FromUTF16(units);
    return static_cast<int32_t>(units.size());
}
