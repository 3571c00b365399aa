#include "MPPExporter/writers/MPPFieldAliasProps.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/writers/KVMPPOffsetMarkedData.h"
#include "MPPImporter/format/MPPFormatConstants.h"

namespace {

// Behind the names the planning application's files hold two empty blocks (each its two sizes 8 and
// a count 0) and an empty list of field definitions (its count and size), for tasks and resources
// alike.
constexpr uint32_t kTrailer[] = {8, 8, 0, 8, 8, 0, 0, 0};

// The names in UTF-16, each with its terminator and packed one behind the other, as the planning
// application's files hold them; its element offsets place them.
void writeAliases(KVMPPOffsetMarkedData& aliases, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        aliases.startNewElement();
        aliases.writeString(name, kMPPDataEncodingUTF16LE);
        aliases.closeCurrentElement();
    }
}

} // namespace

void writeFieldAliasElement(KVMPPProps& props, const std::vector<std::string>& names,
                            const std::function<uint32_t(int64_t)>& typeForIndex, uint16_t varMetaEnding) {
    props.startNewElementForType(kFieldAliasesProperty, 0);
    const uint64_t sizesAt = props.dataSize();
    props.writeInteger(0);
    props.writeInteger(0);
    const auto count = static_cast<uint32_t>(names.size());
    props.writeInteger(count);
    KVMPPOffsetMarkedData aliases;
    writeAliases(aliases, names);
    for (uint32_t p = 1; p <= count; ++p) {
        props.write2ByteInteger(static_cast<uint16_t>(typeForIndex(p)));
        props.write2ByteInteger(varMetaEnding);
        props.writeInteger(count * 8 + 8 + static_cast<uint32_t>(aliases.offsetOfElementAtIndex(p - 1)));
    }
    props.writeData(aliases.data().data(), aliases.dataSize());
    const auto size = static_cast<uint32_t>(props.dataSize() - sizesAt - 4);
    props.writeInteger(size, sizesAt);
    props.writeInteger(size, sizesAt + 4);
    for (uint32_t word : kTrailer) {
        props.writeInteger(word);
    }
    props.closeCurrentElement();
}

uint32_t textFieldPropertyNumber(std::span<const MPPCustomFieldRecord> textFields, int64_t position) {
    if (position < 1 || position > static_cast<int64_t>(textFields.size())) {
        throw TVException(
            kUnknownTextFieldException,
            stringWithFormat("Text field type is unknown for index %d", static_cast<int>(position)));
    }
    return static_cast<uint32_t>(textFields[static_cast<size_t>(position - 1)].propertyNumber);
}
