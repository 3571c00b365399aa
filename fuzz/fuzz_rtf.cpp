// Feeds arbitrary bytes to the RTF reader: it must end without a crash, a hang or an allocation out
// of proportion to the input, and say "no RTF" for bytes without the signature.
#include "MPPImporter/text/RTFPlainTextReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    auto text = RTFPlainTextReader::plainText(bytes);
    if (text.has_value() != RTFPlainTextReader::isRTF(bytes)) {
        std::abort();
    }
    // Every input byte yields at most one character of three UTF-8 bytes.
    if (text && text->size() > 3 * size) {
        std::abort();
    }
    return 0;
}
