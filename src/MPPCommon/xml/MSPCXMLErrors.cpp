#include "MPPCommon/xml/MSPCXMLErrors.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/xml/MSPCXMLText.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

namespace {

// The per-thread copy of the last xmlError that the hook received.
class StoredXMLError {
public:
    StoredXMLError() = default;
    StoredXMLError(const StoredXMLError&) = delete;
    StoredXMLError& operator=(const StoredXMLError&) = delete;
    ~StoredXMLError() { clear(); }

    void store(xmlErrorPtr error) {
        clear();
        if (error != nullptr && xmlCopyError(error, &m_error) == 0) {
            m_isSet = true;
        }
    }
    void clear() {
        if (m_isSet) {
            xmlResetError(&m_error);
            m_isSet = false;
        }
    }
    const xmlError* error() const { return m_isSet ? &m_error : nullptr; }

private:
    xmlError m_error{};
    bool m_isSet = false;
};

thread_local StoredXMLError tStoredError;

void storeStructuredError(void*, xmlErrorPtr error) {
    tStoredError.store(error);
}

void ignoreGenericError(void*, const char*, ...) {}

xmlParserInputPtr refuseExternalEntity(const char*, const char*, xmlParserCtxtPtr) {
    return nullptr;
}

} // namespace

void mspcxmlInitialize() {
    thread_local bool initialized = false;
    if (initialized) {
        return;
    }
    initialized = true;
    xmlInitParser();
    xmlSetGenericErrorFunc(nullptr, ignoreGenericError);
    xmlSetStructuredErrorFunc(nullptr, storeStructuredError);
    xmlKeepBlanksDefault(0);
    xmlSetExternalEntityLoader(refuseExternalEntity);
}

std::optional<TVError> lastError() {
    const xmlError* error = tStoredError.error();
    if (error == nullptr) {
        return std::nullopt;
    }
    std::string message = stringWithFormat("%s", error->message != nullptr ? error->message : "");
    return TVError::make(kMSPCXMLErrorDomain, error->code, MSPCTrimWhitespaceAndNewlines(message));
}

void clearLastError() {
    tStoredError.clear();
}
