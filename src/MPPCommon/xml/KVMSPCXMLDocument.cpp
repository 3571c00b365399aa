#include "MPPCommon/xml/KVMSPCXMLDocument.h"

#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/MSPCXMLErrors.h"
#include "MPPCommon/xml/MSPCXMLText.h"
#include "MPPCommon/xml/MSPCXMLTree.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <fstream>
#include <iterator>
#include <libxml/parser.h>

using namespace mspcxml;

namespace {

// Never the network, never external entities or DTDs, blank text dropped, and strings owned by their
// nodes (no dictionary), so that a node can outlive the document it was parsed into.
constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_NOBLANKS | XML_PARSE_NODICT;

bool readFile(const std::filesystem::path& url, std::string& contents, TVError* error) {
    std::ifstream file(url, std::ios::binary);
    if (file) {
        contents.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    if (!file && !file.eof()) {
        const int code = errno != 0 ? errno : EIO;
        setError(error, TVError::make("NSPOSIXErrorDomain", code, std::strerror(code)));
        return false;
    }
    return true;
}

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// A default namespace declaration, xmlns = "value", found at `start` of `piece`.
struct DefaultNamespaceDeclaration {
    size_t start = 0;
    size_t length = 0;
    std::string value;
};

std::optional<DefaultNamespaceDeclaration> declarationAt(std::string_view piece, size_t start) {
    size_t position = start + 5;
    while (position < piece.size() && isSpace(piece[position])) {
        ++position;
    }
    if (position >= piece.size() || piece[position] != '=') {
        return std::nullopt;
    }
    ++position;
    while (position < piece.size() && isSpace(piece[position])) {
        ++position;
    }
    if (position >= piece.size() || piece[position] != '"') {
        return std::nullopt;
    }
    size_t closing = piece.find('"', position + 1);
    if (closing == std::string_view::npos) {
        return std::nullopt;
    }
    return DefaultNamespaceDeclaration{start, closing + 1 - start,
                                       std::string(piece.substr(position + 1, closing - position - 1))};
}

// The last default namespace declaration in the text up to the second ">", which ends the root start
// tag after the XML declaration. A text with fewer than two ">" has none.
std::optional<DefaultNamespaceDeclaration> findDefaultNamespaceDeclaration(const std::string& text) {
    size_t first = text.find('>');
    size_t second = first == std::string::npos ? first : text.find('>', first + 1);
    if (second == std::string::npos) {
        return std::nullopt;
    }
    std::string_view piece(text.data(), second + 1);
    for (size_t start = piece.rfind("xmlns"); start != std::string_view::npos;
         start = start == 0 ? std::string_view::npos : piece.rfind("xmlns", start - 1)) {
        if (auto declaration = declarationAt(piece, start)) {
            return declaration;
        }
    }
    return std::nullopt;
}

} // namespace

KVMSPCXMLDocument::DocumentPtr KVMSPCXMLDocument::nodeWithPrimitive(void* primitive) {
    if (!isXmlDocPtr(primitive)) {
        return nullptr;
    }
    return std::static_pointer_cast<KVMSPCXMLDocument>(KVMSPCXMLNode::nodeWithPrimitive(primitive));
}

KVMSPCXMLDocument::DocumentPtr KVMSPCXMLDocument::initWithData(const Data& data, unsigned, TVError* error) {
    if (data.empty()) {
        setError(error, TVError::make(kMSPCXMLErrorDomain, kMSPCXMLNoDataError, "No XML data"));
        return nullptr;
    }
    mspcxmlInitialize();
    clearLastError();
    xmlDocPtr doc = nullptr;
    if (data.size() <= static_cast<size_t>(INT_MAX)) {
        doc = xmlReadMemory(reinterpret_cast<const char*>(data.data()), static_cast<int>(data.size()),
                            nullptr, nullptr, kParseOptions);
    }
    if (doc == nullptr) {
        std::optional<TVError> cause = lastError();
        setError(error, TVError::make(kMSPCXMLErrorDomain, kMSPCXMLParseError,
                                      cause.has_value() ? cause->localizedDescription()
                                                        : "Failed to parse XML data"));
        return nullptr;
    }
    return nodeWithPrimitive(doc);
}

KVMSPCXMLDocument::DocumentPtr KVMSPCXMLDocument::initWithXMLString(const std::string& xmlString,
                                                                    unsigned options, TVError* error) {
    return initWithData(Data(xmlString.begin(), xmlString.end()), options, error);
}

KVMSPCXMLDocument::DocumentPtr KVMSPCXMLDocument::initWithContentsOfURL(const std::filesystem::path& url,
                                                                        unsigned options, TVError* error) {
    std::string contents;
    if (!readFile(url, contents, error)) {
        return nullptr;
    }
    return initWithXMLString(contents, options, error);
}

KVMSPCXMLDocument::DocumentPtr KVMSPCXMLDocument::initWithContentsOfURL(const std::filesystem::path& url,
                                                                        unsigned options,
                                                                        std::optional<std::string>* xmlns,
                                                                        TVError* error) {
    std::string contents;
    if (!readFile(url, contents, error)) {
        return nullptr;
    }
    std::optional<DefaultNamespaceDeclaration> declaration = findDefaultNamespaceDeclaration(contents);
    if (xmlns != nullptr) {
        *xmlns = declaration.has_value() ? std::optional<std::string>(declaration->value) : std::nullopt;
    }
    if (declaration.has_value()) {
        contents.erase(declaration->start, declaration->length);
    }
    return initWithXMLString(contents, options, error);
}

KVMSPCXMLDocument::DocumentPtr KVMSPCXMLDocument::initWithRootElement(const ElementPtr& rootElement) {
    mspcxmlInitialize();
    DocumentPtr document = nodeWithPrimitive(xmlNewDoc(BAD_CAST "1.0"));
    tvAssert(document != nullptr, "Out of memory for a document");
    if (rootElement != nullptr) {
        document->setRootElement(rootElement);
    }
    return document;
}

void KVMSPCXMLDocument::setVersion(const std::optional<std::string>& version) {
    xmlFree(const_cast<xmlChar*>(xmlDoc()->version));
    xmlDoc()->version = version.has_value() ? xmlStrdup(MSPCGetXMLString(*version)) : nullptr;
}

void KVMSPCXMLDocument::setCharacterEncoding(const std::optional<std::string>& encoding) {
    xmlFree(const_cast<xmlChar*>(xmlDoc()->encoding));
    xmlDoc()->encoding = encoding.has_value() ? xmlStrdup(MSPCGetXMLString(*encoding)) : nullptr;
}

void KVMSPCXMLDocument::setStandalone(bool standalone) {
    xmlDoc()->standalone = standalone ? 1 : 0;
}

void KVMSPCXMLDocument::setRootElement(const ElementPtr& rootElement) {
    tvAssert(rootElement != nullptr && rootElement->kind() == XML_ELEMENT_NODE, "Not an element");
    rootElement->detach();
    auto* doc = reinterpret_cast<xmlNodePtr>(xmlDoc());
    xmlNodePtr oldRoot = xmlDocGetRootElement(xmlDoc());
    linkChild(doc, static_cast<xmlNodePtr>(rootElement->genericPtr()), oldRoot);
    if (oldRoot != nullptr) {
        mspcxml::removeChild(oldRoot, doc);
    }
}

KVMSPCXMLElement::ElementPtr KVMSPCXMLDocument::rootElement() const {
    return KVMSPCXMLElement::nodeWithPrimitive(xmlDocGetRootElement(xmlDoc()));
}

KVMSPCXMLDocument::Data KVMSPCXMLDocument::XMLDataWithOptions(unsigned options) const {
    std::string text = XMLStringWithOptions(options);
    return Data(text.begin(), text.end());
}
