#pragma once

#include "MPPExporter/writers/KVMPPProps.h"
#include "MPPImporter/format/MPPFieldCatalog.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// The property element of a kind's custom field names (kFieldAliasesProperty), laid out as
// encodeMPPFieldAliases lays it out, each name marked with the kind's variable meta ending.
// `typeForIndex` gives the property number of the field at a 1-based position.
void writeFieldAliasElement(KVMPPProps& props, const std::vector<std::string>& names,
                            const std::function<uint32_t(int64_t)>& typeForIndex, uint16_t varMetaEnding);

inline constexpr const char* kUnknownTextFieldException = "UnknownTextFieldException";

// Raises kUnknownTextFieldException for a 1-based position of custom texts, copies of `textField`
// (taskCustomText or resourceCustomText), that a layout keeps no text field for.
void requireTextField(int32_t layoutVersion, MPPField textField, int64_t position);
// The property number of the custom text field at a position, which requireTextField checks.
uint32_t textFieldPropertyNumber(int32_t layoutVersion, MPPField textField, int64_t position);
