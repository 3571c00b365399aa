#pragma once

#include "MPPCommon/support/TVError.h"

#include <memory>
#include <vector>

class KVMSPISingleExtendedAttribute;

// The custom field values of one object.
class KVMSPIMPPAbsCustomFieldReader {
public:
    virtual ~KVMSPIMPPAbsCustomFieldReader() = default;

    // Appends one attribute for each custom field whose value can be read.
    virtual bool customFields(std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>& value,
                              TVError* error = nullptr) = 0;
};
