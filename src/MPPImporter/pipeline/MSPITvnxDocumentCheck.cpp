#include "MPPImporter/pipeline/MSPITvnxDocumentCheck.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"

namespace {

using ElementPtr = KVMSPCXMLElement::ElementPtr;

ElementPtr firstChild(const KVMSPCXMLElement& element, const char* name) {
    KVMSPCXMLElement::Elements children = element.elementsForName(name);
    return children.empty() ? nullptr : children.front();
}

std::string attributeValue(const KVMSPCXMLElement& element, const char* name) {
    KVMSPCXMLNode::Ptr attribute = element.attributeForName(name);
    return attribute == nullptr ? std::string() : attribute->stringValue().value_or(std::string());
}

// A child `topName` that refers to `topId`, and a first child `itemName` with that id and of `type`.
bool hasTopItem(const KVMSPCXMLElement& root, const char* topName, const char* itemName, const char* topId,
                const char* type) {
    ElementPtr top = firstChild(root, topName);
    ElementPtr item = firstChild(root, itemName);
    if (top == nullptr || attributeValue(*top, tvnx::attribute::kIdref) != topId || item == nullptr ||
        attributeValue(*item, tvnx::attribute::kId) != topId) {
        return false;
    }
    ElementPtr itemType = firstChild(*item, tvnx::element::kType);
    return itemType != nullptr && itemType->stringValue() == type;
}

} // namespace

bool isWellFormedTvnxDoc(const KVMSPCXMLDocument& document) {
    ElementPtr root = document.rootElement();
    if (root == nullptr || root->name() != tvnx::element::kScenario) {
        return false;
    }
    KVMSPCXMLNode::Nodes namespaces = root->namespaces();
    // The namespace's value is compared with a whole declaration text, which no URI equals.
    if (namespaces.size() != 1 ||
        namespaces.front()->stringValue() == stringWithFormat("xmlns=\"%s\"", kTarvane2Namespace)) {
        return false;
    }
    return !attributeValue(*root, tvnx::attribute::kId).empty() &&
           hasTopItem(*root, tvnx::element::kTopResource, tvnx::element::kResource,
                      tvnx::value::kTopResourceId, tvnx::value::kResourceTypeGroup) &&
           hasTopItem(*root, tvnx::element::kTopTask, tvnx::element::kTask, tvnx::value::kTopTaskId,
                      tvnx::value::kTaskTypeGroup);
}
