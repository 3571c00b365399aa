#pragma once

#include "MPPExporter/writers/KVMPPProps.h"
#include "MPPImporter/format/MPPCustomFieldRecord.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

// The property element of a kind's custom field names (kFieldAliasesProperty), laid out as
// encodeMPPFieldAliases lays it out, each name marked with the kind's variable meta ending.
// `typeForIndex` gives the property number of the field at a 1-based position.
void writeFieldAliasElement(KVMPPProps& props, const std::vector<std::string>& names,
                            const std::function<uint32_t(int64_t)>& typeForIndex, uint16_t varMetaEnding);

inline constexpr const char* kUnknownTextFieldException = "UnknownTextFieldException";

// The property number of the custom text field at a 1-based position of a kind's text fields; a
// position outside them raises kUnknownTextFieldException.
uint32_t textFieldPropertyNumber(std::span<const MPPCustomFieldRecord> textFields, int64_t position);
