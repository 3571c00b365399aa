#include "MPPImporter/Mapper/mapping/KVMSPINoteMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/xml/MSPCXMLText.h"
#include "MPPImporter/Mapper/mapping/MSPIXmlCharacters.h"

#include <array>
#include <string_view>

namespace {

// The length of the line terminator at `position`, 0 when none stands there.
size_t terminatorLength(std::string_view text, size_t position) {
    static constexpr std::array<std::string_view, 6> kTerminators = {
        "\r\n", "\n", "\r", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};
    for (std::string_view terminator : kTerminators) {
        if (text.substr(position, terminator.size()) == terminator) {
            return terminator.size();
        }
    }
    return 0;
}

} // namespace

KVMSPCXMLElement::ElementPtr KVMSPINoteMapper::newNoteFromMSPNotes(const std::string& notes) const {
    using namespace tvnx::element;
    const KVMSPCXMLElement::ElementPtr note = KVMSPCXMLElement::initWithName(kNote);
    const KVMSPCXMLElement::ElementPtr text = note->addChildElementWithName(kText);
    // The characters from U+0010 on that the filter keeps can't stand in XML either.
    const std::string clean = xmlCharacterText(filterInvalidXmlCharacters(notes));
    size_t lineStart = 0;
    while (lineStart < clean.size()) {
        size_t position = lineStart;
        size_t length = 0;
        while (position < clean.size() && (length = terminatorLength(clean, position)) == 0) {
            ++position;
        }
        text->addChildElementWithName(kParagraph)
            ->addChildElementWithName(kRun)
            ->addChildElementWithName(kLiteral, clean.substr(lineStart, position - lineStart));
        lineStart = position + length;
    }
    return note;
}
