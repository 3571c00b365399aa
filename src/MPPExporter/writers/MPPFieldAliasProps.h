#pragma once

#include "MPPExporter/writers/KVMPPProps.h"
#include "MPPImporter/format/MPPCustomFieldRecord.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

// The property element of a kind's custom field names (type 0x4400001): its two sizes, the count,
// per field its property number, the kind's variable meta ending and the offset of its name, then the
// names in UTF-16, and the trailing words. `typeForIndex` gives the property number of the field at a
// 1-based position.
void writeFieldAliasElement(KVMPPProps& props, const std::vector<std::string>& names,
                            const std::function<uint32_t(int64_t)>& typeForIndex, uint16_t varMetaEnding);

inline constexpr const char* kUnknownTextFieldException = "UnknownTextFieldException";

// The property number of the custom text field at a 1-based position of a kind's text fields; a
// position outside them raises kUnknownTextFieldException.
uint32_t textFieldPropertyNumber(std::span<const MPPCustomFieldRecord> textFields, int64_t position);
