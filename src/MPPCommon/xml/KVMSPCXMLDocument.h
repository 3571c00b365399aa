#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"

#include <filesystem>

// A document wrapper. Parsing never reads external entities or DTDs and never uses the network;
// entity expansion stays within libxml2's default limits.
class KVMSPCXMLDocument : public KVMSPCXMLElement {
public:
    using DocumentPtr = std::shared_ptr<KVMSPCXMLDocument>;
    using Data = std::vector<unsigned char>;

    // Null for a null object or anything that isn't a document.
    static DocumentPtr nodeWithPrimitive(void* primitive);

    // Error code 0 for empty data, 1 for text that doesn't parse. The options are not used.
    static DocumentPtr initWithData(const Data& data, unsigned options, TVError* error);
    static DocumentPtr initWithXMLString(const std::string& xmlString, unsigned options, TVError* error);
    static DocumentPtr initWithContentsOfURL(const std::filesystem::path& url, unsigned options,
                                             TVError* error);
    // Loads a file with the default namespace declaration of its root start tag cut out of the text,
    // so that paths without prefix match; the declared URI goes to `xmlns` (none without one).
    static DocumentPtr initWithContentsOfURL(const std::filesystem::path& url, unsigned options,
                                             std::optional<std::string>* xmlns, TVError* error);
    // A new document of XML version 1.0, with the root element when one is given.
    static DocumentPtr initWithRootElement(const ElementPtr& rootElement);

    void setVersion(const std::optional<std::string>& version);
    void setCharacterEncoding(const std::optional<std::string>& encoding);
    void setStandalone(bool standalone);
    void setRootElement(const ElementPtr& rootElement);
    ElementPtr rootElement() const;
    xmlDocPtr xmlDoc() const { return static_cast<xmlDocPtr>(genericPtr()); }

    Data XMLData() const { return XMLDataWithOptions(0); }
    Data XMLDataWithOptions(unsigned options) const;

protected:
    friend class KVMSPCXMLNode;
    explicit KVMSPCXMLDocument(void* primitive) : KVMSPCXMLElement(primitive) {}
};
