#include "MPPImporter/Mapper/mapping/MSPIQueryAnswers.h"

#include "MPPImporter/Mapper/mapping/MSPIXmlCharacters.h"

namespace {

// The answer when the query reported no error.
template <typename Answer, typename Ask>
std::optional<Answer> answerWithoutError(Ask ask) {
    TVError error;
    Answer answer = ask(&error);
    return error.domain.empty() ? std::optional<Answer>(std::move(answer)) : std::nullopt;
}

} // namespace

std::optional<std::string> queryString(KVMSPIXQuery& object, const std::string& xquery) {
    TVError error;
    const std::optional<std::string> text = object.stringValueForXQuery(xquery, &error);
    return error.domain.empty() && text ? std::optional(xmlCharacterText(*text)) : std::nullopt;
}

std::optional<int64_t> queryInt(KVMSPIXQuery& object, const std::string& xquery) {
    return answerWithoutError<int64_t>(
        [&](TVError* error) { return object.intValueForXQuery(xquery, error); });
}

std::optional<double> queryFloat(KVMSPIXQuery& object, const std::string& xquery) {
    return answerWithoutError<double>(
        [&](TVError* error) { return object.floatValueForXQuery(xquery, error); });
}

std::optional<bool> queryBool(KVMSPIXQuery& object, const std::string& xquery) {
    return answerWithoutError<bool>([&](TVError* error) { return object.boolValueForXQuery(xquery, error); });
}

std::optional<KVMSPIXQuery::Objects> queryObjects(KVMSPIXQuery& object, const std::string& xquery) {
    return answerWithoutError<KVMSPIXQuery::Objects>(
        [&](TVError* error) { return object.objectsForXQuery(xquery, error); });
}

KVMSPIXQuery::Objects queryObjectsOrEmpty(KVMSPIXQuery& object, const std::string& xquery) {
    return queryObjects(object, xquery).value_or(KVMSPIXQuery::Objects());
}

void addTextChild(KVMSPCXMLElement& element, const char* name, const std::optional<std::string>& text) {
    if (text) {
        element.addChildElementWithName(name, *text);
    }
}
