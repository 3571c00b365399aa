#include "MPPImporter/format/MPPPropertyKeyTables.h"

#include <array>
#include <span>

namespace {

constexpr int64_t kAbsent = -1;

// One key and its value in the versions 9, 12, 14, 15 and 16, in that order; kAbsent where a version
// has no such key.
struct KeyRow {
    int32_t key;
    std::array<int64_t, 5> values;
};

// Property numbers. From 0x2400002 up they belong to the project's Props data; the small ones are
// numbers of the variable data of an object kind.
constexpr KeyRow kPropertyIDRows[] = {
    {0, {9, 50, 50, 50, 50}},
    {2, {7, 49, 49, 49, 49}},
    {22, {3, 8, 8, 8, 8}},
    {23, {1, 1, 1, 1, 1}},
    {31, {1, 22, 22, 22, 22}},
    {32, {kAbsent, 8, 8, 8, 8}},
    {33, {kAbsent, 23, 23, 23, 23}},
    {34, {kAbsent, 22, 22, 22, 22}},
    {35, {0x24013BB, 0x24013BB, 0x24013BB, 0x24013BB, 0x24013BB}},
    {36, {0x2400012, 0x2400012, 0x2400012, 0x2400012, 0x2400012}},
    {37, {0x2400011, 0x2400011, 0x2400011, 0x2400011, 0x2400011}},
    {38, {0x2400010, 0x2400010, 0x2400010, 0x2400010, 0x2400010}},
    {39, {0x240138F, 0x240138F, 0x240138F, 0x240138F, 0x240138F}},
    {40, {0x2401388, 0x2401388, 0x2401388, 0x2401388, 0x2401388}},
    {41, {0x240000E, 0x240000E, 0x240000E, 0x240000E, 0x240000E}},
    {42, {0x2400015, 0x2400015, 0x2400015, 0x2400015, 0x2400015}},
    {43, {0x240001D, 0x240001D, 0x240001D, 0x240001D, 0x240001D}},
    {44, {0x240001E, 0x240001E, 0x240001E, 0x240001E, 0x240001E}},
    {45, {0x2400003, 0x2400003, 0x2400003, 0x2400003, 0x2400003}},
    {46, {0x2400002, 0x2400002, 0x2400002, 0x2400002, 0x2400002}},
    {47, {0x2400004, 0x2400004, 0x2400004, 0x2400004, 0x2400004}},
    {48, {0x2400025, 0x2400025, 0x2400025, 0x2400025, 0x2400025}},
    {49, {0x2400016, 0x2400016, 0x2400016, 0x2400016, 0x2400016}},
    {63, {kAbsent, kAbsent, 276, 276, 276}},
    {65, {145, 343, 343, 343, 343}},
    {66, {149, 353, 353, 353, 353}},
    {67, {153, 363, 363, 363, 363}},
    {68, {157, 373, 373, 373, 373}},
    {69, {161, 383, 383, 383, 383}},
    {70, {165, 393, 393, 393, 393}},
    {71, {169, 403, 403, 403, 403}},
    {72, {173, 413, 413, 413, 413}},
    {73, {177, 423, 423, 423, 423}},
    {74, {181, 433, 433, 433, 433}},
    {77, {144, 342, 342, 342, 342}},
    {78, {148, 352, 352, 352, 352}},
    {79, {152, 362, 362, 362, 362}},
    {80, {156, 372, 372, 372, 372}},
    {81, {160, 382, 382, 382, 382}},
    {82, {164, 392, 392, 392, 392}},
    {83, {168, 402, 402, 402, 402}},
    {84, {172, 412, 412, 412, 412}},
    {85, {176, 422, 422, 422, 422}},
    {86, {180, 432, 432, 432, 432}},
    {88, {kAbsent, 68, 68, 68, 68}},
    {90, {kAbsent, 350, 350, 350, 350}},
    {91, {kAbsent, 360, 360, 360, 360}},
    {92, {kAbsent, 370, 370, 370, 370}},
    {93, {kAbsent, 380, 380, 380, 380}},
    {94, {kAbsent, 390, 390, 390, 390}},
    {95, {kAbsent, 400, 400, 400, 400}},
    {96, {kAbsent, 410, 410, 410, 410}},
    {97, {kAbsent, 420, 420, 420, 420}},
    {98, {kAbsent, 430, 430, 430, 430}},
    {99, {kAbsent, 440, 440, 440, 440}},
    {101, {6, 35, 35, 35, 35}},
    {102, {1, 1, 1, 1, 1}},
    {103, {124, 20, 20, 20, 20}},
    {109, {kAbsent, kAbsent, 6, 6, 6}},
    {111, {kAbsent, kAbsent, 27, 27, 27}},
    {113, {kAbsent, kAbsent, 44, 44, 44}},
    {115, {kAbsent, kAbsent, 43, 43, 43}},
    {119, {kAbsent, 484, 484, 484, 484}},
    {120, {kAbsent, 495, 495, 495, 495}},
    {121, {kAbsent, 506, 506, 506, 506}},
    {122, {kAbsent, 517, 517, 517, 517}},
    {123, {kAbsent, 528, 528, 528, 528}},
    {124, {kAbsent, 546, 546, 546, 546}},
    {125, {kAbsent, 557, 557, 557, 557}},
    {126, {kAbsent, 568, 568, 568, 568}},
    {127, {kAbsent, 579, 579, 579, 579}},
    {128, {kAbsent, 590, 590, 590, 590}},
    {131, {kAbsent, 487, 487, 487, 487}},
    {132, {kAbsent, 498, 498, 498, 498}},
    {133, {kAbsent, 509, 509, 509, 509}},
    {134, {kAbsent, 520, 520, 520, 520}},
    {135, {kAbsent, 531, 531, 531, 531}},
    {136, {kAbsent, 549, 549, 549, 549}},
    {137, {kAbsent, 560, 560, 560, 560}},
    {138, {kAbsent, 571, 571, 571, 571}},
    {139, {kAbsent, 582, 582, 582, 582}},
    {140, {kAbsent, 593, 593, 593, 593}},
    {143, {kAbsent, 483, 483, 483, 483}},
    {144, {kAbsent, 494, 494, 494, 494}},
    {145, {kAbsent, 505, 505, 505, 505}},
    {146, {kAbsent, 516, 516, 516, 516}},
    {147, {kAbsent, 527, 527, 527, 527}},
    {148, {kAbsent, 545, 545, 545, 545}},
    {149, {kAbsent, 556, 556, 556, 556}},
    {150, {kAbsent, 567, 567, 567, 567}},
    {151, {kAbsent, 578, 578, 578, 578}},
    {152, {kAbsent, 589, 589, 589, 589}},
    {155, {kAbsent, 482, 482, 482, 482}},
    {156, {kAbsent, 493, 493, 493, 493}},
    {157, {kAbsent, 504, 504, 504, 504}},
    {158, {kAbsent, 515, 515, 515, 515}},
    {159, {kAbsent, 526, 526, 526, 526}},
    {160, {kAbsent, 544, 544, 544, 544}},
    {161, {kAbsent, 555, 555, 555, 555}},
    {162, {kAbsent, 566, 566, 566, 566}},
    {163, {kAbsent, 577, 577, 577, 577}},
    {164, {kAbsent, 588, 588, 588, 588}},
    {167, {kAbsent, 485, 485, 485, 485}},
    {168, {kAbsent, 496, 496, 496, 496}},
    {169, {kAbsent, 507, 507, 507, 507}},
    {170, {kAbsent, 518, 518, 518, 518}},
    {171, {kAbsent, 529, 529, 529, 529}},
    {172, {kAbsent, 547, 547, 547, 547}},
    {173, {kAbsent, 558, 558, 558, 558}},
    {174, {kAbsent, 569, 569, 569, 569}},
    {175, {kAbsent, 580, 580, 580, 580}},
    {176, {kAbsent, 591, 591, 591, 591}},
    {193, {kAbsent, kAbsent, 1287, 1287, 1287}},
    {212, {kAbsent, kAbsent, 1286, 1286, 1286}},
    {239, {11, 14, 14, 14, 14}},
    {240, {144, 15, 15, 15, 15}},
    {247, {kAbsent, kAbsent, kAbsent, 370, 370}},
    {248, {kAbsent, kAbsent, kAbsent, 369, 369}},
    {250, {kAbsent, kAbsent, 1285, 1285, 1285}},
    {254, {kAbsent, 22, 22, 22, 22}},
    {255, {1, 22, 22, 22, 22}},
    // The block of extended fields that holds a task's baselines 1 to 10 in format 9.
    {256, {0xA3, kAbsent, kAbsent, kAbsent, kAbsent}},
    // An assignment's Baseline in the variable data of applications 14 and later, their copies of formats
    // 9 and 12 too.
    {340, {1, 0x92, 0x92, 0x92, 0x92}},
    {341, {2, 0x93, 0x93, 0x93, 0x93}},
    {342, {3, 0x10, 0x10, 0x10, 0x10}},
    {343, {4, 0x20, 0x20, 0x20, 0x20}},
    // An assignment's baselines 1 to 10: start, finish, work and cost. Format 9 keeps each baseline's
    // four in a run of 8 numbers, the later formats in a run of 9.
    {351, {0x8C, 0x127, 0x127, 0x127, 0x127}},
    {352, {0x94, 0x130, 0x130, 0x130, 0x130}},
    {353, {0x9C, 0x139, 0x139, 0x139, 0x139}},
    {354, {0xA4, 0x142, 0x142, 0x142, 0x142}},
    {355, {0xAC, 0x14B, 0x14B, 0x14B, 0x14B}},
    {356, {0xB4, 0x154, 0x154, 0x154, 0x154}},
    {357, {0xBC, 0x15D, 0x15D, 0x15D, 0x15D}},
    {358, {0xC4, 0x166, 0x166, 0x166, 0x166}},
    {359, {0xCC, 0x16F, 0x16F, 0x16F, 0x16F}},
    {360, {0xD4, 0x178, 0x178, 0x178, 0x178}},
    {362, {0x8D, 0x128, 0x128, 0x128, 0x128}},
    {363, {0x95, 0x131, 0x131, 0x131, 0x131}},
    {364, {0x9D, 0x13A, 0x13A, 0x13A, 0x13A}},
    {365, {0xA5, 0x143, 0x143, 0x143, 0x143}},
    {366, {0xAD, 0x14C, 0x14C, 0x14C, 0x14C}},
    {367, {0xB5, 0x155, 0x155, 0x155, 0x155}},
    {368, {0xBD, 0x15E, 0x15E, 0x15E, 0x15E}},
    {369, {0xC5, 0x167, 0x167, 0x167, 0x167}},
    {370, {0xCD, 0x170, 0x170, 0x170, 0x170}},
    {371, {0xD5, 0x179, 0x179, 0x179, 0x179}},
    {373, {0x8E, 0x121, 0x121, 0x121, 0x121}},
    {374, {0x96, 0x12A, 0x12A, 0x12A, 0x12A}},
    {375, {0x9E, 0x133, 0x133, 0x133, 0x133}},
    {376, {0xA6, 0x13C, 0x13C, 0x13C, 0x13C}},
    {377, {0xAE, 0x145, 0x145, 0x145, 0x145}},
    {378, {0xB6, 0x14E, 0x14E, 0x14E, 0x14E}},
    {379, {0xBE, 0x157, 0x157, 0x157, 0x157}},
    {380, {0xC6, 0x160, 0x160, 0x160, 0x160}},
    {381, {0xCE, 0x169, 0x169, 0x169, 0x169}},
    {382, {0xD6, 0x172, 0x172, 0x172, 0x172}},
    {384, {0x8F, 0x122, 0x122, 0x122, 0x122}},
    {385, {0x97, 0x12B, 0x12B, 0x12B, 0x12B}},
    {386, {0x9F, 0x134, 0x134, 0x134, 0x134}},
    {387, {0xA7, 0x13D, 0x13D, 0x13D, 0x13D}},
    {388, {0xAF, 0x146, 0x146, 0x146, 0x146}},
    {389, {0xB7, 0x14F, 0x14F, 0x14F, 0x14F}},
    {390, {0xBF, 0x158, 0x158, 0x158, 0x158}},
    {391, {0xC7, 0x161, 0x161, 0x161, 0x161}},
    {392, {0xCF, 0x16A, 0x16A, 0x16A, 0x16A}},
    {393, {0xD7, 0x173, 0x173, 0x173, 0x173}},
    // A resource's Baseline work and cost in the variable data of applications 15 and 16.
    {394, {kAbsent, kAbsent, kAbsent, 15, 15}},
    {395, {kAbsent, kAbsent, kAbsent, 17, 17}},
    // A task's Baseline work in the variable data of applications 14 to 16.
    {396, {kAbsent, kAbsent, 1, 1, 1}},
};

// Byte offsets into a fixed data item, or into a Fixed2 or meta item where the reader says so.
constexpr KeyRow kPropertyOffsetRows[] = {
    {1, {16, 16, 16, 56, 56}},
    {3, {8, 8, 8, 8, 8}},
    {4, {12, 12, 12, 52, 52}},
    {5, {4, 4, 4, 4, 4}},
    {6, {0, 0, 0, 0, 0}},
    {7, {54, 54, 46, 12, 12}},
    {8, {62, 62, 70, 20, 20}},
    {9, {70, 70, 62, 28, 28}},
    {10, {86, 86, 78, 44, 44}},
    {11, {kAbsent, kAbsent, 86, 68, 68}},
    {12, {kAbsent, kAbsent, kAbsent, 94, 94}},
    {13, {4, 4, 4, 0, 0}},
    {14, {64, 92, 92, 92, 92}},
    {15, {kAbsent, 88, 88, 88, 88}},
    {16, {kAbsent, 4, 4, 4, 4}},
    {17, {6, 14, 14, 14, 14}},
    {18, {12, 20, 20, 20, 20}},
    {19, {24, 32, 32, 32, 32}},
    {21, {420, 420, 420, 420, 420}},
    {24, {8, 8, 8, 4, 4}},
    {25, {0, 0, 0, 8, 8}},
    {26, {4, 4, 4, 4, 4}},
    {27, {12, 12, 12, 12, 12}},
    {28, {8, 8, 8, 8, 8}},
    {29, {14, 14, 14, 18, 18}},
    {30, {16, 16, 16, 14, 14}},
    // Applications 15 and 16 keep a resource's Baseline in the variable data (keys 394 and 395); 40 and
    // 48 of their items hold its cost and work.
    {50, {148, 148, 148, kAbsent, kAbsent}},
    {51, {68, 68, 68, kAbsent, kAbsent}},
    {52, {140, 140, 140, 40, 40}},
    {53, {84, 84, 84, 72, 72}},
    {54, {4, 4, 4, 0, 0}},
    {55, {44, 44, 44, 8, 8}},
    {56, {28, 28, 28, 16, 16}},
    {57, {14, 14, 14, 170, 170}},
    {58, {kAbsent, 8, 8, 8, 8}},
    {59, {0, 0, 0, 4, 4}},
    {60, {52, 52, 52, 48, 48}},
    {61, {kAbsent, kAbsent, 20, 158, 158}},
    {62, {kAbsent, kAbsent, 24, 162, 162}},
    // Formats 9 to 14 keep a task's cost where key 191 points, its remaining work behind the actual
    // work, and its actual dates apart from the scheduled ones.
    {104, {200, 200, 150, 32, 32}},
    {105, {216, 216, 166, 40, 40}},
    {106, {kAbsent, kAbsent, kAbsent, 56, 56}},
    // Application 14 keeps a task's actual work at 134; 184 lies in the zero tail of its items.
    {107, {184, 184, 134, 16, 16}},
    {108, {192, 192, 142, 24, 24}},
    {110, {232, 232, kAbsent, kAbsent, kAbsent}},
    {112, {74, 74, kAbsent, kAbsent, kAbsent}},
    {114, {108, 108, kAbsent, kAbsent, kAbsent}},
    {116, {104, 104, kAbsent, kAbsent, kAbsent}},
    // A task's Baseline work; application 14 keeps it in the variable data instead.
    {117, {176, 176, kAbsent, kAbsent, kAbsent}},
    {178, {kAbsent, kAbsent, 76, 77, 77}},
    {179, {kAbsent, kAbsent, 77, 78, 78}},
    {180, {kAbsent, kAbsent, 78, 79, 79}},
    {181, {kAbsent, kAbsent, 79, 80, 80}},
    {182, {kAbsent, kAbsent, 79, 81, 81}},
    {183, {kAbsent, kAbsent, 80, 82, 82}},
    {184, {kAbsent, kAbsent, 81, 83, 83}},
    {185, {kAbsent, kAbsent, 82, 84, 84}},
    {186, {kAbsent, kAbsent, 83, 84, 84}},
    {187, {kAbsent, kAbsent, 84, 85, 85}},
    {188, {kAbsent, kAbsent, kAbsent, 86, 86}},
    {189, {112, 112, 80, 66, 66}},
    {190, {80, 80, 56, 64, 64}},
    {191, {200, 200, 150, kAbsent, kAbsent}},
    {192, {60, 60, 42, 84, 84}},
    // Application 14 keeps a task's start at 106 and its finish at 8, and the early dates with them, as
    // applications 15 and 16 do. 64 and 68 hold the dates that the scheduler would give a manually
    // scheduled task, and 114 is left unset on some tasks.
    {194, {8, 8, 8, 108, 108}},
    {195, {88, 88, 106, 104, 104}},
    {196, {88, 88, 106, 104, 104}},
    {197, {8, 8, 8, 108, 108}},
    {198, {12, 12, 12, 112, 112}},
    {199, {152, 152, 110, 116, 116}},
    {200, {kAbsent, kAbsent, kAbsent, 96, 96}},
    {201, {kAbsent, kAbsent, kAbsent, 100, 100}},
    {202, {96, 96, 72, 120, 120}},
    {203, {100, 100, 76, 124, 124}},
    {204, {kAbsent, kAbsent, kAbsent, 96, 96}},
    {205, {kAbsent, kAbsent, kAbsent, 100, 100}},
    {206, {11, 11, 11, 13, 13}},
    {207, {kAbsent, kAbsent, kAbsent, 8, 8}},
    {208, {kAbsent, kAbsent, kAbsent, 9, 9}},
    // Formats 9 and 12 keep the milestone mark in the same meta byte as application 14 does.
    {209, {8, 8, 8, 10, 10}},
    {210, {64, 64, 46, 164, 164}},
    {211, {12, 12, 12, kAbsent, kAbsent}},
    {213, {208, 208, 158, 48, 48}},
    {214, {128, 128, 96, 166, 166}},
    // Applications 15 and 16 keep flags 1 to 10 in meta bytes 24 and 25, flags 11 to 20 in 33 and 34.
    {216, {37, 37, 35, 24, 24}},
    {217, {37, 37, 35, 24, 24}},
    {218, {37, 37, 36, 24, 24}},
    {219, {38, 38, 36, 24, 24}},
    {220, {38, 38, 36, 24, 24}},
    {221, {38, 38, 36, 24, 24}},
    {222, {38, 38, 36, 24, 24}},
    {223, {38, 38, 36, 25, 25}},
    {224, {38, 38, 36, 25, 25}},
    {225, {38, 38, 36, 25, 25}},
    {226, {38, 38, 37, 33, 33}},
    {227, {39, 39, 37, 33, 33}},
    {228, {39, 39, 37, 33, 33}},
    {229, {39, 39, 37, 33, 33}},
    {230, {39, 39, 37, 33, 33}},
    {231, {39, 39, 37, 33, 33}},
    {232, {39, 39, 37, 33, 33}},
    {233, {39, 39, 37, 34, 34}},
    {234, {39, 39, 38, 34, 34}},
    {235, {40, 40, 38, 34, 34}},
    {237, {4, 4, 4, 0, 0}},
    {238, {kAbsent, kAbsent, 8, 8, 8}},
    {241, {kAbsent, kAbsent, kAbsent, 169, 169}},
    {242, {kAbsent, kAbsent, kAbsent, 170, 170}},
    {243, {40, 40, 40, 172, 172}},
    {244, {36, 36, 36, 142, 142}},
    {245, {122, 122, 90, 92, 92}},
    {246, {124, 124, 92, 94, 94}},
    {247, {140, 140, 140, kAbsent, kAbsent}},
    {248, {136, 136, 136, kAbsent, kAbsent}},
    {249, {120, 120, 88, 78, 78}},
    {251, {126, 126, 94, 140, 140}},
    {252, {0, 0, 0, 4, 4}},
    {253, {168, 168, 126, 8, 8}},
    // The bits of task flags 1 to 20 in the meta item, numbered from its start: bit n of byte b is 8b + n.
    {301, {301, 301, 286, 193, 193}},
    {302, {302, 302, 287, 194, 194}},
    {303, {303, 303, 288, 195, 195}},
    {304, {304, 304, 289, 196, 196}},
    {305, {305, 305, 290, 197, 197}},
    {306, {306, 306, 291, 198, 198}},
    {307, {307, 307, 292, 199, 199}},
    {308, {308, 308, 293, 200, 200}},
    {309, {309, 309, 294, 201, 201}},
    {310, {310, 310, 295, 202, 202}},
    {311, {311, 311, 296, 265, 265}},
    {312, {312, 312, 297, 266, 266}},
    {313, {313, 313, 298, 267, 267}},
    {314, {314, 314, 299, 268, 268}},
    {315, {315, 315, 300, 269, 269}},
    {316, {316, 316, 301, 270, 270}},
    {317, {317, 317, 302, 271, 271}},
    {318, {318, 318, 303, 272, 272}},
    {319, {319, 319, 304, 273, 273}},
    {320, {320, 320, 305, 274, 274}},
    // An assignment's Baseline in the fixed item of the files of applications 9 and 12.
    {344, {36, 36, kAbsent, kAbsent, kAbsent}},
    {345, {40, 40, kAbsent, kAbsent, kAbsent}},
    {346, {94, 94, kAbsent, kAbsent, kAbsent}},
    {347, {126, 126, kAbsent, kAbsent, kAbsent}},
};

MPPPropertyTable tableForColumn(std::span<const KeyRow> rows, int keyColumn) {
    MPPPropertyTable table;
    for (const KeyRow& row : rows) {
        const int64_t value = row.values.at(static_cast<size_t>(keyColumn));
        if (value != kAbsent) {
            table.emplace(row.key, static_cast<uint32_t>(value));
        }
    }
    return table;
}

std::optional<uint32_t> valueForColumn(std::span<const KeyRow> rows, int keyColumn, int32_t key) {
    for (const KeyRow& row : rows) {
        if (row.key == key) {
            const int64_t value = row.values.at(static_cast<size_t>(keyColumn));
            return value != kAbsent ? std::optional<uint32_t>(static_cast<uint32_t>(value)) : std::nullopt;
        }
    }
    return std::nullopt;
}

} // namespace

MPPPropertyTable mppPropertyIDTable(int keyColumn) {
    return tableForColumn(kPropertyIDRows, keyColumn);
}

MPPPropertyTable mppPropertyOffsetTable(int keyColumn) {
    return tableForColumn(kPropertyOffsetRows, keyColumn);
}

std::optional<uint32_t> mppPropertyID(int keyColumn, int32_t key) {
    return valueForColumn(kPropertyIDRows, keyColumn, key);
}

std::optional<uint32_t> mppPropertyOffset(int keyColumn, int32_t key) {
    return valueForColumn(kPropertyOffsetRows, keyColumn, key);
}
