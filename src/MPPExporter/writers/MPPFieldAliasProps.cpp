#include "MPPExporter/writers/MPPFieldAliasProps.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/writers/MPPFieldWrites.h"
#include "MPPImporter/format/MPPFieldAliasLayout.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/text/UnicodeText.h"

void writeFieldAliasElement(KVMPPProps& props, const std::vector<std::string>& names,
                            const std::function<uint32_t(int64_t)>& typeForIndex, uint16_t varMetaEnding) {
    std::vector<MPPFieldAlias> aliases;
    for (const std::string& name : names) {
        const auto position = static_cast<int64_t>(aliases.size()) + 1;
        aliases.push_back(
            {static_cast<uint16_t>(typeForIndex(position)), varMetaEnding, utf16FromUTF8(name)});
    }
    const std::vector<uint8_t> payload = encodeMPPFieldAliases(aliases);
    props.startNewElementForType(kFieldAliasesProperty, 0);
    props.writeData(payload.data(), payload.size());
    props.closeCurrentElement();
}

void requireTextField(int32_t layoutVersion, MPPField textField, int64_t position) {
    if (!findMPPFieldPropertyNumber(layoutVersion, textField, position)) {
        throw TVException(
            kUnknownTextFieldException,
            stringWithFormat("Text field type is unknown for index %lld", static_cast<long long>(position)));
    }
}

uint32_t textFieldPropertyNumber(int32_t layoutVersion, MPPField textField, int64_t position) {
    requireTextField(layoutVersion, textField, position);
    return mppFieldPropertyNumber(layoutVersion, textField, position);
}
