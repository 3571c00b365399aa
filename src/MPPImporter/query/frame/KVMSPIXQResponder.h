#pragma once

#include "MPPCommon/xml/KVMSPIXQuery.h"

#include <memory>

class KVMSPIXQAdapter;

// Base of every reader: an object that stands where an XML element would stand. It passes every
// query unchanged to its adapter, made on first use by `newXQAdapter`. A responder without an
// adapter answers none, 0, 0.0 or false and leaves the error alone. Readers handed out in answers
// are shared-owned, so that an answer can keep its parent reader alive.
class KVMSPIXQResponder : public KVMSPIXQuery, public std::enable_shared_from_this<KVMSPIXQResponder> {
public:
    ~KVMSPIXQResponder() override;
    KVMSPIXQResponder(const KVMSPIXQResponder&) = delete;
    KVMSPIXQResponder& operator=(const KVMSPIXQResponder&) = delete;

    // The adapter, made on the first call; null for a reader class without one.
    KVMSPIXQAdapter* xqAdapter();

    // What keeps this reader alive: its own shared owner, else the owner recorded when it was handed
    // out as a part of another reader; empty for a reader that nobody shares (the project reader).
    std::shared_ptr<const void> answerOwner() const;
    void setAnswerOwner(const std::shared_ptr<const void>& owner) { _answerOwner = owner; }

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

protected:
    KVMSPIXQResponder();

    // A new adapter for this reader. Each reader class with an adapter overrides it with
    // `return KVMSPIXQAdapterFactory::installed().newAdapter(*this);`; the base has none.
    virtual std::unique_ptr<KVMSPIXQAdapter> newXQAdapter();

private:
    std::unique_ptr<KVMSPIXQAdapter> _xqAdapter;
    std::weak_ptr<const void> _answerOwner;
    bool _xqAdapterMade = false;
};
