#pragma once

#include <array>
#include <cstdint>

// A GUID as the file keeps it: 16 raw bytes in file order.
using MPPGuid = std::array<uint8_t, 16>;

// A random GUID of version 4 (random), variant 1.
MPPGuid newRandomMPPGuid();
