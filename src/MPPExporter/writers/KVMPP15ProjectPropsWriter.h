#pragma once

#include "MPPExporter/writers/KVMPPWriter.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

class KVMPP15SequentialPropsReader;
class KVMPPProps;

// Rewrites a project property stream ("Props14" at the root, "Props" in "   114") from the template's
// stream: the properties that hold the project's settings get the project's values, every other one
// stays byte for byte, so that settings the export does not know keep the template's values.
class KVMPP15ProjectPropsWriter : public KVMPPWriter {
public:
    using KVMPPWriter::KVMPPWriter;

    bool writeDataForProject(const KVMPPProject* project) override;

    // The project's value of a property type that the catalogue does not name, or none where the
    // template's value stays.
    static std::optional<std::vector<uint8_t>>
    constructValueForPropertyType(const KVMPPProject& project, uint32_t type,
                                  const std::vector<uint8_t>& original);

private:
    // The encoded values of the settings that the catalogue names, by their property numbers.
    std::map<uint32_t, std::vector<uint8_t>> cataloguedValues(const KVMPPProject& project) const;
    void writeValueForCurrentlySelectedProperty(const KVMPP15SequentialPropsReader& propsReader,
                                                const std::map<uint32_t, std::vector<uint8_t>>& catalogued,
                                                KVMPPProps& data) const;
};
