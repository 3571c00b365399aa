#pragma once

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPImporter/file/KVMSPIMPPReader.h"
#include "MPPImporter/file/MPPFixtureFile.h"
#include "support/TestSupport.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

class KVMSPIMPPProjectReader;
class KVMSPIMPPPropertyList;
class KVMSPIMPPTaskReader;

// One task of a format 14 plan written for a test: its fixed item of 206 bytes, its meta item of 47
// bytes and its Fixed2 meta item of the layout's size, each given as bytes at offsets (its Fixed2 data
// item of 96 bytes is left zero); and its variable data blocks by property number. The fixture writes
// the UID and the ID where the version keeps them.
struct FixtureTask {
    int32_t uid = 0;
    int32_t id = 0;
    std::map<int32_t, std::vector<uint8_t>> data;
    std::map<int32_t, std::vector<uint8_t>> meta;
    std::map<int32_t, std::vector<uint8_t>> fixed2Meta;
    std::map<int32_t, std::vector<uint8_t>> var;
};

// Little-endian bytes of values.
std::vector<uint8_t> le16(uint16_t value);
std::vector<uint8_t> le32(uint32_t value);
std::vector<uint8_t> leDouble(double value);
// An MPP date: the time in tenths of a minute, then the day after the MPP epoch.
std::vector<uint8_t> mppTimestamp(uint16_t day, uint16_t tenthsOfMinute);

// A format 14 plan file with the tasks given and a Props stream, written by the application whose
// property list is given (14, 15 or 16), opened with the whole reader tree.
class TaskPlanFixture {
public:
    TaskPlanFixture(const std::vector<FixtureTask>& tasks, const MPPFixtureFile::Bytes& props,
                    const KVMSPIMPPPropertyList& list);
    TaskPlanFixture(const std::vector<FixtureTask>& tasks, const MPPFixtureFile::Bytes& props);

    KVMSPIMPPProjectReader& project() const;
    KVMSPIMPPTaskReader& tasks() const;

    // A Props stream holding the given entries by property number.
    static MPPFixtureFile::Bytes propsStream(const std::map<uint32_t, std::vector<uint8_t>>& entries);

private:
    testsupport::TempDir m_dir;
    std::unique_ptr<SSLRoot> m_root;
    std::unique_ptr<KVMSPIMPPReader> m_reader;
};
