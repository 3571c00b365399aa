#pragma once

#include "MPPExporter/writers/KVMPPWriter.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class KVMPPSummaryInfoData;

// Regenerates the summary information property set at the root from the project's summary: the
// code page, title, author, keywords, comments, creator, revision, application name and security.
class KVMPP15SummaryInformationWriter : public KVMPPWriter {
public:
    using KVMPPWriter::KVMPPWriter;

    bool writeDataForProject(const KVMPPProject* project) override;

    // The code page of a set whose texts are `texts`: 1251 while they are plain ASCII, UTF-8
    // otherwise.
    static uint16_t codePageForTexts(const std::vector<std::optional<std::string>>& texts);

protected:
    // One property of the set: its id and its value's bytes, type first.
    struct Property {
        uint32_t id;
        std::vector<uint8_t> value;
    };

    // The properties of this set, in order, optional ones only when set.
    virtual std::vector<Property> properties() const;
    // Opens the set of this writer's kind.
    virtual void openSet(KVMPPSummaryInfoData& data) const;

    // The code page property, and a text property (none when the text is absent) in the code page
    // that codePageForTexts chose for it.
    static Property codePageProperty(uint16_t codePage);
    static std::optional<Property> textProperty(uint32_t id, const std::optional<std::string>& text);
    static Property integerProperty(uint32_t id, uint32_t type, uint32_t value);
};
