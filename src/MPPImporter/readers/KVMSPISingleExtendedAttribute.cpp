#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/date/StringExtensions.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

#include <utility>

KVMSPISingleExtendedAttribute::KVMSPISingleExtendedAttribute(Type type, Value value, std::string name,
                                                             KVMSPIMPPDataDirectoryReader& reader)
    : KVMSPISimpleObjectReaderBase(reader), m_name(std::move(name)), m_type(type), m_value(std::move(value)) {
}

std::unique_ptr<KVMSPISingleExtendedAttribute>
KVMSPISingleExtendedAttribute::withDouble(double value, std::string name,
                                          KVMSPIMPPDataDirectoryReader& reader) {
    return std::unique_ptr<KVMSPISingleExtendedAttribute>(
        new KVMSPISingleExtendedAttribute(Type::number, value, std::move(name), reader));
}

std::unique_ptr<KVMSPISingleExtendedAttribute>
KVMSPISingleExtendedAttribute::withDuration(TVTimeSpan value, std::string name,
                                            KVMSPIMPPDataDirectoryReader& reader) {
    return std::unique_ptr<KVMSPISingleExtendedAttribute>(
        new KVMSPISingleExtendedAttribute(Type::duration, value, std::move(name), reader));
}

std::unique_ptr<KVMSPISingleExtendedAttribute>
KVMSPISingleExtendedAttribute::withOutlCode(std::string value, std::string name,
                                            KVMSPIMPPDataDirectoryReader& reader) {
    return std::unique_ptr<KVMSPISingleExtendedAttribute>(
        new KVMSPISingleExtendedAttribute(Type::outlineCode, std::move(value), std::move(name), reader));
}

std::unique_ptr<KVMSPISingleExtendedAttribute>
KVMSPISingleExtendedAttribute::withTimestamp(TVDate value, std::string name,
                                             KVMSPIMPPDataDirectoryReader& reader) {
    return std::unique_ptr<KVMSPISingleExtendedAttribute>(
        new KVMSPISingleExtendedAttribute(Type::timestamp, value, std::move(name), reader));
}

std::unique_ptr<KVMSPISingleExtendedAttribute>
KVMSPISingleExtendedAttribute::withString(std::string value, std::string name,
                                          KVMSPIMPPDataDirectoryReader& reader) {
    return std::unique_ptr<KVMSPISingleExtendedAttribute>(
        new KVMSPISingleExtendedAttribute(Type::string, std::move(value), std::move(name), reader));
}

void KVMSPISingleExtendedAttribute::requireType(Type type) const {
    tvAssert(m_type == type,
             stringWithFormat("Extended attribute '%s' of type %d read as type %d.", m_name.c_str(),
                              static_cast<int>(m_type), static_cast<int>(type)));
}

double KVMSPISingleExtendedAttribute::number() const {
    requireType(Type::number);
    return std::get<double>(m_value);
}

TVTimeSpan KVMSPISingleExtendedAttribute::duration() const {
    requireType(Type::duration);
    return std::get<TVTimeSpan>(m_value);
}

const std::string& KVMSPISingleExtendedAttribute::outlcode() const {
    requireType(Type::outlineCode);
    return std::get<std::string>(m_value);
}

TVDate KVMSPISingleExtendedAttribute::timestamp() const {
    requireType(Type::timestamp);
    return std::get<TVDate>(m_value);
}

const std::string& KVMSPISingleExtendedAttribute::string() const {
    requireType(Type::string);
    return std::get<std::string>(m_value);
}

std::string KVMSPISingleExtendedAttribute::stringValue() const {
    switch (m_type) {
    case Type::number:
        return stringWithFormat("%f", number());
    case Type::duration:
        return initWithTimeSpan(duration());
    case Type::timestamp:
        return initWithDateTime(timestamp());
    case Type::outlineCode:
    case Type::string:
        return std::get<std::string>(m_value);
    }
    return stringWithFormat("<unknown: type=%d>", static_cast<int>(m_type));
}
