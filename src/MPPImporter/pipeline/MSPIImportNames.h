#pragma once

#include "MPPCommon/support/TVFileURL.h"

#include <cstdint>
#include <string>

// The product name of an MPP format version: "MS Project 2003" for 9, "MS Project 2007" for 12,
// "MS Project 2010" for 14, "MS Project ????" for any other.
std::string mspAppNameFromMspVersion(int32_t version);

// The folders of the URL's path without the root and without the last component, as a relative path:
// "/a/b/c.mpp" gives "a/b".
std::string directoryFromFilePath(const TVFileURL& url);
