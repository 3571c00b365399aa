#include "MPPCommon/shared/MSPCNotes.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"

namespace {

// The single child of that name (the last of several), as an element, or none.
std::shared_ptr<KVMSPCXMLElement> singleChild(KVMSPCXMLElement& element, const char* name) {
    return std::dynamic_pointer_cast<KVMSPCXMLElement>(element.singleObjectForXQuery(name, nullptr));
}

} // namespace

std::optional<std::string> newNotesFromTVNXNote(KVMSPCXMLElement& note) {
    std::shared_ptr<KVMSPCXMLElement> text = singleChild(note, tvnx::element::kText);
    if (text == nullptr) {
        return std::nullopt;
    }
    std::string notes;
    for (const auto& paragraph : text->elementsForName(tvnx::element::kParagraph)) {
        for (const auto& run : paragraph->elementsForName(tvnx::element::kRun)) {
            if (std::shared_ptr<KVMSPCXMLElement> literal = singleChild(*run, tvnx::element::kLiteral)) {
                notes += literal->stringValue().value_or(std::string());
            }
        }
        notes += '\n';
    }
    return notes;
}
