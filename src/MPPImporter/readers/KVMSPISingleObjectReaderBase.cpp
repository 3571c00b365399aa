#include "MPPImporter/readers/KVMSPISingleObjectReaderBase.h"

#include "MPPCommon/support/PosixRegex.h"

KVMSPIXQPredicate KVMSPISingleObjectReaderBase::predicateWithString(const std::optional<std::string>& text,
                                                                    int32_t* uid) {
    if (!text) {
        return {};
    }
    static const PosixRegex expression("UID=([[:digit:]]+)", 2);
    const std::optional<std::vector<std::string>> groups = predicateGroups(expression, 1, *text);
    if (!groups) {
        return {};
    }
    const int32_t value = predicateIntValue(groups->front());
    if (uid != nullptr) {
        *uid = value;
    }
    return [value](KVMSPIXQuery& object) {
        return predicateObject<KVMSPISingleObjectReaderBase>(object).uid() == value;
    };
}
