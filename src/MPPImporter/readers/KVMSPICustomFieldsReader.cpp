#include "MPPImporter/readers/KVMSPICustomFieldsReader.h"

#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"
#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"
#include "MPPImporter/readers/MPPObjectFieldReads.h"

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
    const MPPObjectFieldReads fields(m_reader);
    // Reads field n of a type by its row with `read(name, field, n)`, which answers the attribute or
    // none. A field that the user named in the file goes by that name, so that the name survives the
    // bundle; any other by the name of its kind and number ("TASK_TEXT1").
    const auto readType = [&](const TypeFields& type, auto read) {
        for (size_t index = 0; index < type.records.size(); ++index) {
            const MPPCustomFieldRecord& record = type.records[index];
            const std::string* alias = m_reader.fieldAlias(static_cast<int32_t>(record.propertyNumber));
            if (auto attribute =
                    read(alias ? *alias : record.fieldName, type.field, static_cast<int32_t>(index) + 1)) {
                value.push_back(std::move(attribute));
            }
        }
    };
    const auto doubles = [&](const std::string& name, MPPField field, int32_t number) {
        double read = 0;
        return fields.read(field, m_uid, read, nullptr, number)
                   ? KVMSPISingleExtendedAttribute::withDouble(read, name, m_reader)
                   : nullptr;
    };
    const auto texts = [&](const std::string& name, MPPField field, int32_t number) {
        std::string text;
        return fields.read(field, m_uid, text, nullptr, number)
                   ? KVMSPISingleExtendedAttribute::withString(text, name, m_reader)
                   : nullptr;
    };
    const auto durations = [&](const std::string& name, MPPField field, int32_t number) {
        TVTimeSpan span = 0;
        return fields.read(field, m_uid, span, nullptr, number)
                   ? KVMSPISingleExtendedAttribute::withDuration(span, name, m_reader)
                   : nullptr;
    };
    const auto dates = [&](const std::string& name, MPPField field, int32_t number) {
        TVDate date;
        return fields.read(field, m_uid, date, nullptr, number)
                   ? KVMSPISingleExtendedAttribute::withTimestamp(date, name, m_reader)
                   : nullptr;
    };
    readType(m_tables.cost, doubles);
    readType(m_tables.number, doubles);
    readType(m_tables.text, texts);
    readType(m_tables.duration, durations);
    readType(m_tables.date, dates);
    readType(m_tables.start, dates);
    readType(m_tables.finish, dates);
    // Outline code values are read like the others, and then left out of the result.
    for (const MPPCustomFieldRecord& record : m_tables.outlineCode) {
        std::string code;
        project->customFieldOutlineCodeValue(code, *var, m_uid, static_cast<int32_t>(record.propertyNumber),
                                             nullptr);
    }
    return true;
}
