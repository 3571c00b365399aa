#pragma once

#include "MPPCommon/support/TVInfoDictionary.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"

#include <functional>
#include <memory>

class KVMSPIMPPReader;

// What the import asks of the mapper of one scenario: map once, then hand over the scenario document,
// or none when the plan has nothing for that scenario. A mapper brings the shared table of contents
// up to date as it maps.
class KVMSPIMapperInterface {
public:
    virtual ~KVMSPIMapperInterface() = default;

    virtual void map() = 0;
    virtual KVMSPCXMLDocument::DocumentPtr tvnxXmlDoc() const = 0;
};

// Makes the mapper of one scenario from the file's reader, the template scenario document, the table
// of contents and the info dictionary, which names the scenario. The mapper only refers to the
// dictionary, and the reader outlives it.
using KVMSPIMapperFactory = std::function<std::unique_ptr<KVMSPIMapperInterface>(
    KVMSPIMPPReader& mspdiXmlDoc, const KVMSPCXMLDocument::DocumentPtr& tvnxTemplateXmlDoc,
    const KVMSPCXMLDocument::DocumentPtr& tvnxTOCXmlDoc, const TVInfoDictionary& info)>;
