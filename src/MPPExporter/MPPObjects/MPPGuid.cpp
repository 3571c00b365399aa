#include "MPPExporter/MPPObjects/MPPGuid.h"

#include <random>

MPPGuid newRandomMPPGuid() {
    // One generator for the process, seeded once: GUIDs only need to differ, not to be secret.
    static std::mt19937_64 generator{std::random_device{}()};
    MPPGuid guid;
    for (size_t i = 0; i < guid.size(); i += 8) {
        uint64_t bits = generator();
        for (size_t j = 0; j < 8; ++j) {
            guid[i + j] = static_cast<uint8_t>(bits >> (8 * j));
        }
    }
    // The version nibble sits in the high half of byte 7 and the variant in byte 8, in file order.
    guid[7] = static_cast<uint8_t>((guid[7] & 0x0F) | 0x40);
    guid[8] = static_cast<uint8_t>((guid[8] & 0x3F) | 0x80);
    return guid;
}
