#include "MPPImporter/readers/KVMSPICustomFieldsReader.h"

#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"
#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"

KVMSPICustomFieldsReader::KVMSPICustomFieldsReader(int32_t uid, KVMSPIMPPDataDirectoryReader& reader,
                                                   const Tables& tables)
    : m_reader(reader), m_uid(uid), m_tables(tables) {}

bool KVMSPICustomFieldsReader::customFields(
    std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>& value, TVError* /*error*/) {
    auto* project = dynamic_cast<KVMSPIMPPAbsProjectReader*>(m_reader.parentReader());
    KVMPPVarDataReader* var = m_reader.varDataReader();
    if (project == nullptr || var == nullptr) {
        return true;
    }
    // Reads each field of `table` with `read(record, property)`, which answers the attribute or none.
    const auto readTable = [&](Table table, auto read) {
        for (const MPPCustomFieldRecord& record : table) {
            if (auto attribute = read(record, static_cast<int32_t>(record.propertyNumber))) {
                value.push_back(std::move(attribute));
            }
        }
    };
    const auto doubles = [&](const MPPCustomFieldRecord& record, int32_t property) {
        double number = 0;
        return project->customFieldDoubleValue(number, *var, m_uid, property, nullptr)
                   ? KVMSPISingleExtendedAttribute::withDouble(number, record.fieldName, m_reader)
                   : nullptr;
    };
    const auto texts = [&](const MPPCustomFieldRecord& record, int32_t property) {
        std::string text;
        return project->customFieldUnicodeValue(text, *var, m_uid, property, nullptr)
                   ? KVMSPISingleExtendedAttribute::withString(text, record.fieldName, m_reader)
                   : nullptr;
    };
    const auto durations = [&](const MPPCustomFieldRecord& record, int32_t property) {
        TVTimeSpan span = 0;
        return project->customFieldDurationValue(span, *var, m_uid, property, nullptr)
                   ? KVMSPISingleExtendedAttribute::withDuration(span, record.fieldName, m_reader)
                   : nullptr;
    };
    const auto dates = [&](const MPPCustomFieldRecord& record, int32_t property) {
        TVDate date;
        return project->customFieldTimestampValue(date, *var, m_uid, property, nullptr)
                   ? KVMSPISingleExtendedAttribute::withTimestamp(date, record.fieldName, m_reader)
                   : nullptr;
    };
    readTable(m_tables.cost, doubles);
    readTable(m_tables.number, doubles);
    readTable(m_tables.text, texts);
    readTable(m_tables.duration, durations);
    readTable(m_tables.date, dates);
    readTable(m_tables.start, dates);
    readTable(m_tables.finish, dates);
    // Outline code values are read like the others, and then left out of the result.
    for (const MPPCustomFieldRecord& record : m_tables.outlineCode) {
        std::string code;
        project->customFieldOutlineCodeValue(code, *var, m_uid, static_cast<int32_t>(record.propertyNumber),
                                             nullptr);
    }
    return true;
}
