#pragma once

#include "MPPCommon/support/TVError.h"

#include <string>

// A flag written as text: "true" and "yes" give true, "false" and "no" give false, in any case and
// with white space around; an integer gives true unless it is zero. Anything else gives false and,
// when `error` is given, code 2 of the general domain naming the text as it came.
bool boolValueFromString(const std::string& text, TVError* error = nullptr);
