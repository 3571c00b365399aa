#pragma once

#include "MPPImporter/format/MPPCustomFieldRecord.h"
#include "MPPImporter/readers/KVMSPIMPPAbsCustomFieldReader.h"

#include <cstdint>
#include <span>

class KVMSPIMPPDataDirectoryReader;

// Reads the custom fields of one task or resource from the variable data of its store, through the
// custom field decoding of the project reader. Which fields exist is told by the tables of the
// version's property list, which the subclasses pick.
class KVMSPICustomFieldsReader : public KVMSPIMPPAbsCustomFieldReader {
public:
    // Fields in the order cost, number, text, duration, date, start, finish; outline code fields are
    // read but never reach the result.
    bool customFields(std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>& value,
                      TVError* error = nullptr) override;

protected:
    using Table = std::span<const MPPCustomFieldRecord>;
    struct Tables {
        Table cost, date, duration, finish, number, outlineCode, start, text;
    };

    KVMSPICustomFieldsReader(int32_t uid, KVMSPIMPPDataDirectoryReader& reader, const Tables& tables);

private:
    KVMSPIMPPDataDirectoryReader& m_reader;
    int32_t m_uid;
    Tables m_tables;
};
