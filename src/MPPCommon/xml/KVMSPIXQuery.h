#pragma once

#include "MPPCommon/support/TVError.h"
#include "MPPCommon/support/TVMSPErrors.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// Codes of kTVMSPXQueryErrorDomain, the errors of the single-answer queries.
inline constexpr int kTVMSPXQueryNoMatchError = 1;
inline constexpr int kTVMSPXQueryMultipleMatchesError = 2;

// Named values that a caller may pass along with a query. They are never substituted into the query;
// they only appear in diagnostics.
using KVMSPIXQueryConstants = std::map<std::string, std::string>;

// The path-query interface: an XML node and an MPP reader answer the same twelve questions, so that a
// mapper cannot tell one from the other. Objects found by a query answer queries in turn.
class KVMSPIXQuery {
public:
    using Objects = std::vector<std::shared_ptr<KVMSPIXQuery>>;

    virtual ~KVMSPIXQuery() = default;

    virtual Objects objectsForXQuery(const std::string& xquery, TVError* error) = 0;
    virtual Objects objectsForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                                     TVError* error) = 0;
    virtual std::shared_ptr<KVMSPIXQuery> singleObjectForXQuery(const std::string& xquery,
                                                                TVError* error) = 0;
    virtual std::shared_ptr<KVMSPIXQuery> singleObjectForXQuery(const std::string& xquery,
                                                                const KVMSPIXQueryConstants& constants,
                                                                TVError* error) = 0;
    virtual std::optional<std::string> stringValueForXQuery(const std::string& xquery, TVError* error) = 0;
    virtual std::optional<std::string> stringValueForXQuery(const std::string& xquery,
                                                            const KVMSPIXQueryConstants& constants,
                                                            TVError* error) = 0;
    virtual int64_t intValueForXQuery(const std::string& xquery, TVError* error) = 0;
    virtual int64_t intValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                                      TVError* error) = 0;
    virtual double floatValueForXQuery(const std::string& xquery, TVError* error) = 0;
    virtual double floatValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                                       TVError* error) = 0;
    virtual bool boolValueForXQuery(const std::string& xquery, TVError* error) = 0;
    virtual bool boolValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                                    TVError* error) = 0;
};
