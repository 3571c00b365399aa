#pragma once

#include "MPPCommon/xml/KVMSPIXQuery.h"

#include <memory>
#include <string>

// A text or a number in an array answer ("//FromDate" gives dates, the units of a resource's
// assignments give numbers). It answers the leaf "." as string, integer, double or boolean read from
// its text, as an XML element answers it from its content; every other query is not ported.
class KVMSPIXQValue : public KVMSPIXQuery {
public:
    explicit KVMSPIXQValue(std::string text);
    // A number, held as the shortest "%.17g" text that reads back to the same double.
    explicit KVMSPIXQValue(double number);

    const std::string& text() const { return m_text; }

    Objects objectsForXQuery(const std::string& xquery, TVError* error) override;
    Objects objectsForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                             TVError* error) override;
    std::shared_ptr<KVMSPIXQuery> singleObjectForXQuery(const std::string& xquery, TVError* error) override;
    std::shared_ptr<KVMSPIXQuery> singleObjectForXQuery(const std::string& xquery,
                                                        const KVMSPIXQueryConstants& constants,
                                                        TVError* error) override;
    std::optional<std::string> stringValueForXQuery(const std::string& xquery, TVError* error) override;
    std::optional<std::string> stringValueForXQuery(const std::string& xquery,
                                                    const KVMSPIXQueryConstants& constants,
                                                    TVError* error) override;
    int64_t intValueForXQuery(const std::string& xquery, TVError* error) override;
    int64_t intValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                              TVError* error) override;
    double floatValueForXQuery(const std::string& xquery, TVError* error) override;
    double floatValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                               TVError* error) override;
    bool boolValueForXQuery(const std::string& xquery, TVError* error) override;
    bool boolValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                            TVError* error) override;

private:
    // Whether the query is the leaf "."; otherwise sets the not-ported error.
    bool asksSelf(const std::string& xquery, TVError* error) const;

    std::string m_text;
};
