#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"

#include <string>

// Turns the plain text of a note into the `note` element of the bundle: one paragraph per line.
class KVMSPINoteMapper {
public:
    // Characters that XML can't hold are taken out. Each line becomes a `p` with one `run` and one
    // `lit`, its terminator left off; lines end at LF, CR, CR LF, U+0085, U+2028 and U+2029, and a
    // terminator at the very end opens no further line.
    KVMSPCXMLElement::ElementPtr newNoteFromMSPNotes(const std::string& notes) const;
};
