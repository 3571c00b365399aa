#pragma once

#include <libxml/xmlstring.h>
#include <optional>
#include <string>

// The UTF-8 text of a string as libxml2 takes it; valid as long as the string is.
inline const xmlChar* MSPCGetXMLString(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

// A libxml2 string as text: none for null, or the empty string for null.
std::optional<std::string> MSPCOptionalString(const xmlChar* text);
std::string MSPCPlainString(const xmlChar* text);

// A copy without blanks and tabs at either end.
std::string MSPCTrimWhitespace(const std::string& text);

// A copy without blanks, tabs and line ends at either end.
std::string MSPCTrimWhitespaceAndNewlines(const std::string& text);

// The text without the control characters U+0001 to U+0008, U+000B, U+000C, U+000E and U+000F, which
// XML 1.0 can't hold. U+0010 to U+001F are deliberately kept.
std::string filterInvalidXmlCharacters(const std::string& text);

// A new identifier for XML ids: eleven ASCII characters, the first always a letter. The generator is
// seeded from the clock on first use. It draws one 31-bit random value and spreads it over the
// characters, so the last five characters are always "a".
std::string KFXMLCreateID();
