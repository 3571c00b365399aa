#include "MPPImporter/readers/MPPPropsFieldReads.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/file/KVMSPIPropsReader.h"

#include <optional>

template <typename Value>
bool MPPPropsFieldReads::read(MPPField field, Value& value, TVError* error) const {
    const auto place = m_list.fieldPlace(field, m_appVersion);
    if (m_props == nullptr) {
        return false;
    }
    if (place && place->row->block == MPPFieldBlock::props &&
        readAt(*place->row, static_cast<int32_t>(place->position), value)) {
        return true;
    }
    if (m_props->error()) {
        setError(error, *m_props->error());
    }
    return false;
}

template bool MPPPropsFieldReads::read(MPPField, bool&, TVError*) const;
template bool MPPPropsFieldReads::read(MPPField, int16_t&, TVError*) const;
template bool MPPPropsFieldReads::read(MPPField, int32_t&, TVError*) const;
template bool MPPPropsFieldReads::read(MPPField, TVDate&, TVError*) const;
template bool MPPPropsFieldReads::read(MPPField, std::string&, TVError*) const;

bool MPPPropsFieldReads::readAt(const MPPFieldRow& row, int32_t property, std::string& value) const {
    tvAssert(row.codec == MPPFieldCodec::text, std::string("The field ") + row.name + " is no text.");
    return m_props->readPropertyUnicode(value, property, false);
}

bool MPPPropsFieldReads::readAt(const MPPFieldRow& row, int32_t property, TVDate& value) const {
    tvAssert(row.codec == MPPFieldCodec::timestamp, std::string("The field ") + row.name + " is no date.");
    std::optional<TVDate> date;
    const bool read = m_props->readPropertyTimestamp(date, property, false) && date;
    value = date.value_or(value);
    return read;
}

bool MPPPropsFieldReads::readAt(const MPPFieldRow& row, int32_t property, bool& value) const {
    tvAssert(row.codec == MPPFieldCodec::flag && row.test.wide,
             std::string("The field ") + row.name + " is no flag of a word.");
    int16_t word = 0;
    if (!m_props->readPropertyShort(word, property, false)) {
        return false;
    }
    value = (static_cast<uint16_t>(word) & row.test.mask) != 0;
    return true;
}

template <typename Number>
bool MPPPropsFieldReads::readAt(const MPPFieldRow& row, int32_t property, Number& value) const {
    if constexpr (sizeof(Number) == 2) {
        tvAssert(row.codec == MPPFieldCodec::int16, std::string("The field ") + row.name + " is no word.");
        return m_props->readPropertyShort(value, property, false);
    } else {
        tvAssert(row.codec == MPPFieldCodec::int32, std::string("The field ") + row.name + " is no integer.");
        return m_props->readPropertyInt(value, property, false);
    }
}
