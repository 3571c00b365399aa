#pragma once

#include <optional>
#include <string>

class KVMSPCXMLElement;

// The plain text of a bundle note: the literal of every run, one line per paragraph (the last line
// ends with a newline too); formatting is dropped. None when the note has no text element, the
// empty string when the text has no paragraph.
std::optional<std::string> newNotesFromTVNXNote(KVMSPCXMLElement& note);
