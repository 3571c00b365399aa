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
    // Reads each field of `table` with `read(name, property)`, which answers the attribute or none. A
    // field that the user named in the file goes by that name, so that the name survives the bundle;
    // any other by the name of its kind and number ("TASK_TEXT1").
    const auto readTable = [&](Table table, auto read) {
        for (const MPPCustomFieldRecord& record : table) {
            const auto property = static_cast<int32_t>(record.propertyNumber);
            const std::string* alias = m_reader.fieldAlias(property);
            if (auto attribute = read(alias ? *alias : record.fieldName, property)) {
                value.push_back(std::move(attribute));
            }
        }
    };
    const auto doubles = [&](const std::string& name, int32_t property) {
        double number = 0;
        return project->customFieldDoubleValue(number, *var, m_uid, property, nullptr)
                   ? KVMSPISingleExtendedAttribute::withDouble(number, name, m_reader)
                   : nullptr;
    };
    const auto texts = [&](const std::string& name, int32_t property) {
        std::string text;
        return project->customFieldUnicodeValue(text, *var, m_uid, property, nullptr)
                   ? KVMSPISingleExtendedAttribute::withString(text, name, m_reader)
                   : nullptr;
    };
    const auto durations = [&](const std::string& name, int32_t property) {
        TVTimeSpan span = 0;
        return project->customFieldDurationValue(span, *var, m_uid, property, nullptr)
                   ? KVMSPISingleExtendedAttribute::withDuration(span, name, m_reader)
                   : nullptr;
    };
    const auto dates = [&](const std::string& name, int32_t property) {
        TVDate date;
        return project->customFieldTimestampValue(date, *var, m_uid, property, nullptr)
                   ? KVMSPISingleExtendedAttribute::withTimestamp(date, name, m_reader)
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
