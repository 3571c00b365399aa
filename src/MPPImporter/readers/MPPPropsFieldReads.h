#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"
#include "MPPImporter/format/MPPFieldCatalog.h"

#include <cstdint>
#include <string>

class KVMSPIMPPPropertyList;
class KVMSPIPropsReader;

// Typed reads of the project's properties by their catalogue rows, from the Props stream under the
// property number that the row's key has in the plan's layout. A field that the layout doesn't hold, a
// missing stream or a failed read answers false and leaves `value` alone (text is appended); the error
// out-argument then takes the Props reader's error, if it has one. A null date counts as absent.
class MPPPropsFieldReads {
public:
    MPPPropsFieldReads(KVMSPIPropsReader* props, const KVMSPIMPPPropertyList& list, int32_t appVersion)
        : m_props(props), m_list(list), m_appVersion(appVersion) {}

    // `Value` is bool (flags), int16_t or int32_t (numbers), TVDate or std::string (text).
    template <typename Value>
    bool read(MPPField field, Value& value, TVError* error) const;

private:
    bool readAt(const MPPFieldRow& row, int32_t property, std::string& value) const;
    bool readAt(const MPPFieldRow& row, int32_t property, TVDate& value) const;
    bool readAt(const MPPFieldRow& row, int32_t property, bool& value) const;
    template <typename Number>
    bool readAt(const MPPFieldRow& row, int32_t property, Number& value) const;

    KVMSPIPropsReader* m_props;
    const KVMSPIMPPPropertyList& m_list;
    int32_t m_appVersion;
};
