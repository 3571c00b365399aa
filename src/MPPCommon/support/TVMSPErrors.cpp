#include "MPPCommon/support/TVMSPErrors.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVPath.h"

TVError notPortedXQueryError(const std::string& sourceFile, int line, const std::string& xquery) {
    return TVError::make(kTVMSPGeneralErrorDomain, kTVMSPNotPortedXQueryError,
                         stringWithFormat("NOT PORTED XQUERY (%s [%d]): %s",
                                          lastPathComponent(sourceFile).c_str(), line, xquery.c_str()));
}
