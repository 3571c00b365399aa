#include "MPPImporter/query/frame/KVMSPIXQResponder.h"

#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"

KVMSPIXQResponder::KVMSPIXQResponder() = default;

KVMSPIXQResponder::~KVMSPIXQResponder() = default;

std::unique_ptr<KVMSPIXQAdapter> KVMSPIXQResponder::newXQAdapter() {
    return nullptr;
}

KVMSPIXQAdapter* KVMSPIXQResponder::xqAdapter() {
    if (!_xqAdapterMade) {
        _xqAdapter = newXQAdapter();
        _xqAdapterMade = true;
    }
    return _xqAdapter.get();
}

std::shared_ptr<const void> KVMSPIXQResponder::answerOwner() const {
    if (std::shared_ptr<const KVMSPIXQResponder> self = weak_from_this().lock()) {
        return self;
    }
    return _answerOwner.lock();
}

KVMSPIXQuery::Objects KVMSPIXQResponder::objectsForXQuery(const std::string& xquery, TVError* error) {
    KVMSPIXQAdapter* adapter = xqAdapter();
    return adapter != nullptr ? adapter->objectsForXQuery(xquery, error) : Objects{};
}

KVMSPIXQuery::Objects KVMSPIXQResponder::objectsForXQuery(const std::string& xquery,
                                                          const KVMSPIXQueryConstants& constants,
                                                          TVError* error) {
    KVMSPIXQAdapter* adapter = xqAdapter();
    return adapter != nullptr ? adapter->objectsForXQuery(xquery, constants, error) : Objects{};
}

std::shared_ptr<KVMSPIXQuery> KVMSPIXQResponder::singleObjectForXQuery(const std::string& xquery,
                                                                       TVError* error) {
    KVMSPIXQAdapter* adapter = xqAdapter();
    return adapter != nullptr ? adapter->singleObjectForXQuery(xquery, error) : nullptr;
}

std::shared_ptr<KVMSPIXQuery> KVMSPIXQResponder::singleObjectForXQuery(const std::string& xquery,
                                                                       const KVMSPIXQueryConstants& constants,
                                                                       TVError* error) {
    KVMSPIXQAdapter* adapter = xqAdapter();
    return adapter != nullptr ? adapter->singleObjectForXQuery(xquery, constants, error) : nullptr;
}

std::optional<std::string> KVMSPIXQResponder::stringValueForXQuery(const std::string& xquery,
                                                                   TVError* error) {
    KVMSPIXQAdapter* adapter = xqAdapter();
    return adapter != nullptr ? adapter->stringValueForXQuery(xquery, error) : std::nullopt;
}

std::optional<std::string> KVMSPIXQResponder::stringValueForXQuery(const std::string& xquery,
                                                                   const KVMSPIXQueryConstants& constants,
                                                                   TVError* error) {
    KVMSPIXQAdapter* adapter = xqAdapter();
    return adapter != nullptr ? adapter->stringValueForXQuery(xquery, constants, error) : std::nullopt;
}

int64_t KVMSPIXQResponder::intValueForXQuery(const std::string& xquery, TVError* error) {
    KVMSPIXQAdapter* adapter = xqAdapter();
    return adapter != nullptr ? adapter->intValueForXQuery(xquery, error) : 0;
}

int64_t KVMSPIXQResponder::intValueForXQuery(const std::string& xquery,
                                             const KVMSPIXQueryConstants& constants, TVError* error) {
    KVMSPIXQAdapter* adapter = xqAdapter();
    return adapter != nullptr ? adapter->intValueForXQuery(xquery, constants, error) : 0;
}

double KVMSPIXQResponder::floatValueForXQuery(const std::string& xquery, TVError* error) {
    KVMSPIXQAdapter* adapter = xqAdapter();
    return adapter != nullptr ? adapter->floatValueForXQuery(xquery, error) : 0.0;
}

double KVMSPIXQResponder::floatValueForXQuery(const std::string& xquery,
                                              const KVMSPIXQueryConstants& constants, TVError* error) {
    KVMSPIXQAdapter* adapter = xqAdapter();
    return adapter != nullptr ? adapter->floatValueForXQuery(xquery, constants, error) : 0.0;
}

bool KVMSPIXQResponder::boolValueForXQuery(const std::string& xquery, TVError* error) {
    KVMSPIXQAdapter* adapter = xqAdapter();
    return adapter != nullptr && adapter->boolValueForXQuery(xquery, error);
}

bool KVMSPIXQResponder::boolValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                                           TVError* error) {
    KVMSPIXQAdapter* adapter = xqAdapter();
    return adapter != nullptr && adapter->boolValueForXQuery(xquery, constants, error);
}
