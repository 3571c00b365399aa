#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPImporter/readers/KVMSPISimpleObjectReaderBase.h"

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

// The value of one custom field of a task or resource, with the field's name. It answers no path
// queries; the mappers read it by its accessors, and an accessor of the wrong kind is an assertion
// failure.
class KVMSPISingleExtendedAttribute : public KVMSPISimpleObjectReaderBase {
public:
    enum class Type : int32_t { number = 1, duration = 2, outlineCode = 3, timestamp = 4, string = 5 };

    static std::unique_ptr<KVMSPISingleExtendedAttribute> withDouble(double value, std::string name,
                                                                     KVMSPIMPPDataDirectoryReader& reader);
    static std::unique_ptr<KVMSPISingleExtendedAttribute> withDuration(TVTimeSpan value, std::string name,
                                                                       KVMSPIMPPDataDirectoryReader& reader);
    static std::unique_ptr<KVMSPISingleExtendedAttribute> withOutlCode(std::string value, std::string name,
                                                                       KVMSPIMPPDataDirectoryReader& reader);
    static std::unique_ptr<KVMSPISingleExtendedAttribute> withTimestamp(TVDate value, std::string name,
                                                                        KVMSPIMPPDataDirectoryReader& reader);
    static std::unique_ptr<KVMSPISingleExtendedAttribute> withString(std::string value, std::string name,
                                                                     KVMSPIMPPDataDirectoryReader& reader);

    const std::string& name() const { return m_name; }
    Type type() const { return m_type; }

    double number() const;
    TVTimeSpan duration() const;
    const std::string& outlcode() const;
    TVDate timestamp() const;
    const std::string& string() const;
    // The value as text: a number as "%f", a duration as "h:mm:ss", a date as "yyyy-MM-ddTHH:mm:ss".
    std::string stringValue() const;

private:
    using Value = std::variant<double, TVTimeSpan, std::string, TVDate>;

    KVMSPISingleExtendedAttribute(Type type, Value value, std::string name,
                                  KVMSPIMPPDataDirectoryReader& reader);
    void requireType(Type type) const;

    std::string m_name;
    Type m_type;
    Value m_value;
};
