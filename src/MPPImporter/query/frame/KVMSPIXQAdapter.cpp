#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"

#include "MPPImporter/query/frame/KVMSPIXQResponder.h"

#include <algorithm>
#include <cxxabi.h>
#include <typeinfo>

namespace {

constexpr const char* kMustImplement = "Must implement in subclass.";

void setNotPorted(TVError* error) {
    setError(error, notPortedXQueryError(__FILE__, __LINE__, kMustImplement));
}

} // namespace

void KVMSPIXQAdapter::parseXQuery(const std::string& xquery, MSPXQComponents& components) {
    MSPXQParser::sharedXQParser().parseXQuery(xquery, components);
}

std::string KVMSPIXQAdapter::stringFromXQComponents(const MSPXQComponents& components, MSPXQRange range) {
    const size_t end =
        range.length == 0 ? components.size() : std::min(components.size(), range.location + range.length);
    std::string path;
    for (size_t index = range.location; index < end; ++index) {
        if (index > range.location) {
            path += '/';
        }
        path += components[index].name;
    }
    return path;
}

KVMSPIXQuery::Objects KVMSPIXQAdapter::objectsForXQuery(const std::string&, TVError* error) {
    setNotPorted(error);
    return {};
}

KVMSPIXQuery::Objects KVMSPIXQAdapter::objectsForXQuery(const std::string&, const KVMSPIXQueryConstants&,
                                                        TVError* error) {
    setNotPorted(error);
    return {};
}

std::shared_ptr<KVMSPIXQuery> KVMSPIXQAdapter::singleObjectForXQuery(const std::string& xquery,
                                                                     TVError* error) {
    Objects objects = objectsForXQuery(xquery, error);
    return objects.empty() ? nullptr : objects.front();
}

std::shared_ptr<KVMSPIXQuery>
KVMSPIXQAdapter::singleObjectForXQuery(const std::string&, const KVMSPIXQueryConstants&, TVError* error) {
    setNotPorted(error);
    return nullptr;
}

std::optional<std::string> KVMSPIXQAdapter::stringValueForXQuery(const std::string&, TVError* error) {
    setNotPorted(error);
    return std::nullopt;
}

std::optional<std::string>
KVMSPIXQAdapter::stringValueForXQuery(const std::string&, const KVMSPIXQueryConstants&, TVError* error) {
    setNotPorted(error);
    return std::nullopt;
}

int64_t KVMSPIXQAdapter::intValueForXQuery(const std::string&, TVError* error) {
    setNotPorted(error);
    return 0;
}

int64_t KVMSPIXQAdapter::intValueForXQuery(const std::string&, const KVMSPIXQueryConstants&, TVError* error) {
    setNotPorted(error);
    return 0;
}

double KVMSPIXQAdapter::floatValueForXQuery(const std::string&, TVError* error) {
    setNotPorted(error);
    return 0.0;
}

double KVMSPIXQAdapter::floatValueForXQuery(const std::string&, const KVMSPIXQueryConstants&,
                                            TVError* error) {
    setNotPorted(error);
    return 0.0;
}

bool KVMSPIXQAdapter::boolValueForXQuery(const std::string&, TVError* error) {
    setNotPorted(error);
    return false;
}

bool KVMSPIXQAdapter::boolValueForXQuery(const std::string&, const KVMSPIXQueryConstants&, TVError* error) {
    setNotPorted(error);
    return false;
}

std::string KVMSPIXQAdapter::className(const KVMSPIXQResponder& reader) {
    const char* mangled = typeid(reader).name();
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> demangled(
        abi::__cxa_demangle(mangled, nullptr, nullptr, &status), &std::free);
    return status == 0 && demangled ? std::string(demangled.get()) : std::string(mangled);
}

void KVMSPIXQAdapter::assertNoPredicate(const MSPXQComponent& component) {
    if (component.predicate.has_value()) {
        throw TVException(kInternalInconsistencyException,
                          stringWithFormat("Unexpected predicate in component \"%s\": \"%s\".",
                                           component.name.c_str(), component.predicate->c_str()));
    }
}

void KVMSPIXQAdapter::assertSingleComponent(const MSPXQComponents& components, const std::string& xquery) {
    tvAssert(components.size() <= 1,
             stringWithFormat("Do not expect more then 1 component in xquery \"%s\".", xquery.c_str()));
}

void KVMSPIXQAdapter::filterObjects(Objects& objects, const KVMSPIXQPredicate& predicate) {
    if (predicate) {
        std::erase_if(objects,
                      [&](const std::shared_ptr<KVMSPIXQuery>& object) { return !predicate(*object); });
    }
}

KVMSPIXQuery::Objects KVMSPIXQAdapter::objectsFromEach(const Objects& objects, const std::string& xquery,
                                                       TVError* error) {
    Objects gathered;
    for (const std::shared_ptr<KVMSPIXQuery>& object : objects) {
        Objects answers = object->objectsForXQuery(xquery, error);
        gathered.insert(gathered.end(), answers.begin(), answers.end());
    }
    return gathered;
}

std::shared_ptr<KVMSPIXQuery> KVMSPIXQAdapter::answerOwnedBy(KVMSPIXQResponder& parent, KVMSPIXQuery& child) {
    const std::shared_ptr<const void> owner = parent.answerOwner();
    if (auto* childReader = dynamic_cast<KVMSPIXQResponder*>(&child)) {
        childReader->setAnswerOwner(owner);
    }
    // With an empty owner the aliasing constructor gives a pointer that owns nothing.
    return std::shared_ptr<KVMSPIXQuery>(owner, &child);
}
