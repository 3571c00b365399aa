#include "tool/inspect/CustomFieldDump.h"

#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"
#include "tool/inspect/DumpValue.h"

namespace {

using Type = KVMSPISingleExtendedAttribute::Type;

nlohmann::ordered_json valueOf(const KVMSPISingleExtendedAttribute& field) {
    switch (field.type()) {
    case Type::number:
        return field.number();
    case Type::duration:
        return field.duration();
    case Type::outlineCode:
        return field.outlcode();
    case Type::timestamp:
        return DumpValue::of(field.timestamp());
    case Type::string:
        return field.string();
    }
    return nullptr;
}

} // namespace

nlohmann::ordered_json CustomFieldDump::of(const std::function<bool(Fields&)>& read) {
    Fields fields;
    read(fields);
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const auto& field : fields) {
        list.push_back({{"name", field->name()},
                        {"type", static_cast<int32_t>(field->type())},
                        {"value", valueOf(*field)}});
    }
    return list;
}
