#pragma once

#include <string>

// The text without what an XML 1.0 document can't hold: control characters other than tab, line feed
// and carriage return, U+FFFE and U+FFFF, and bytes that aren't UTF-8. A plan's texts can hold any of
// them (a damaged field reads as U+FFFF), and a single one would leave the whole bundle unreadable.
std::string xmlCharacterText(const std::string& text);
