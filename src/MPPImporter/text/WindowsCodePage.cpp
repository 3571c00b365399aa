#include "MPPImporter/text/WindowsCodePage.h"

#include "MPPCommon/support/Log.h"
#include "MPPImporter/text/UnicodeText.h"

#include <memory>
#include <unicode/ucnv.h>
#include <unordered_map>

namespace {

// Code pages whose ICU name isn't simply "windows-<n>" or "cp<n>", and the common ones, so that
// their names don't depend on alias look-ups.
const std::unordered_map<int, const char*>& namedCodePages() {
    static const std::unordered_map<int, const char*> names = {
        {437, "ibm-437"},       {850, "ibm-850"},       {852, "ibm-852"},       {866, "ibm-866"},
        {874, "windows-874"},   {932, "windows-31j"},   {936, "windows-936"},   {949, "windows-949"},
        {950, "windows-950"},   {1200, "UTF-16LE"},     {1201, "UTF-16BE"},     {1250, "windows-1250"},
        {1251, "windows-1251"}, {1252, "windows-1252"}, {1253, "windows-1253"}, {1254, "windows-1254"},
        {1255, "windows-1255"}, {1256, "windows-1256"}, {1257, "windows-1257"}, {1258, "windows-1258"},
        {10000, "macintosh"},   {20127, "US-ASCII"},    {20866, "KOI8-R"},      {21866, "KOI8-U"},
        {28591, "ISO-8859-1"},  {28592, "ISO-8859-2"},  {28595, "ISO-8859-5"},  {28597, "ISO-8859-7"},
        {28605, "ISO-8859-15"}, {50220, "ISO-2022-JP"}, {51932, "EUC-JP"},      {51949, "EUC-KR"},
        {54936, "GB18030"},     {65000, "UTF-7"},       {65001, "UTF-8"},
    };
    return names;
}

bool icuKnows(const std::string& name) {
    UErrorCode status = U_ZERO_ERROR;
    return ucnv_countAliases(name.c_str(), &status) > 0 && U_SUCCESS(status);
}

struct ConverterCloser {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

} // namespace

std::string converterNameForCodePage(int codePage) {
    if (auto found = namedCodePages().find(codePage); found != namedCodePages().end()) {
        return found->second;
    }
    if (codePage <= 0) {
        return "";
    }
    for (const char* pattern : {"windows-%d", "cp%d"}) {
        std::string name = stringWithFormat(pattern, codePage);
        if (icuKnows(name)) {
            return name;
        }
    }
    return "";
}

std::optional<std::u16string> utf16FromCodePage(std::string_view bytes, int codePage, InvalidBytes invalid) {
    std::string name = converterNameForCodePage(codePage);
    if (name.empty()) {
        return std::nullopt;
    }
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UConverter, ConverterCloser> converter(ucnv_open(name.c_str(), &status));
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    if (invalid == InvalidBytes::fail) {
        ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    }
    if (bytes.empty()) {
        return std::u16string();
    }
    // No supported code page yields more than two UTF-16 units per byte.
    std::u16string text(bytes.size() * 2, u'\0');
    const char* source = bytes.data();
    UChar* target = text.data();
    ucnv_toUnicode(converter.get(), &target, text.data() + text.size(), &source, bytes.data() + bytes.size(),
                   nullptr, true, &status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    text.resize(static_cast<size_t>(target - text.data()));
    return text;
}

std::optional<std::string> utf8FromCodePage(std::string_view bytes, int codePage, InvalidBytes invalid) {
    auto text = utf16FromCodePage(bytes, codePage, invalid);
    if (!text) {
        return std::nullopt;
    }
    return utf8FromUTF16(*text);
}
