#include "MPPExporter/MPPObjects/MPPCustomFields.h"

void MPPCustomFields::resolve(const std::vector<std::string>& names) {
    std::vector<std::string> values;
    values.reserve(names.size());
    for (const std::string& name : names) {
        std::string value;
        for (const KVMPPExtendedAttribute& attribute : _attributes) {
            if (attribute.alias == name) {
                value = attribute.value.value_or("");
                break;
            }
        }
        values.push_back(std::move(value));
    }
    _attributes.clear();
    _values = std::move(values);
}

const std::vector<std::string>& MPPCustomFields::values() const {
    static const std::vector<std::string> kNone;
    return _values ? *_values : kNone;
}

bool MPPCustomFields::hasText(size_t position) const {
    return _values && position >= 1 && position <= _values->size() && !(*_values)[position - 1].empty();
}
