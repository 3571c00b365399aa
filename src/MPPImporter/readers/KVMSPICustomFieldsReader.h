#pragma once

#include "MPPImporter/format/MPPCustomFieldRecord.h"
#include "MPPImporter/format/MPPFieldCatalog.h"
#include "MPPImporter/readers/KVMSPIMPPAbsCustomFieldReader.h"

#include <cstdint>
#include <span>

class KVMSPIMPPDataDirectoryReader;

// Reads the custom fields of one task or resource by their catalogue rows, whose values the project
// reader decodes. Which fields exist and what they are called is told by the tables of the version's
// property list, which the subclasses pick with the fields of their kind.
class KVMSPICustomFieldsReader : public KVMSPIMPPAbsCustomFieldReader {
public:
    // Fields in the order cost, number, text, duration, date, start, finish; outline code fields are
    // read but never reach the result.
    bool customFields(std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>& value,
                      TVError* error = nullptr) override;

protected:
    using Table = std::span<const MPPCustomFieldRecord>;
    // The fields of one type: their records, and the catalogue field whose copy n is field n.
    struct TypeFields {
        Table records;
        MPPField field;
    };
    struct Tables {
        TypeFields cost, date, duration, finish, number;
        Table outlineCode;
        TypeFields start, text;
    };

    KVMSPICustomFieldsReader(int32_t uid, KVMSPIMPPDataDirectoryReader& reader, const Tables& tables);

private:
    KVMSPIMPPDataDirectoryReader& m_reader;
    int32_t m_uid;
    Tables m_tables;
};
