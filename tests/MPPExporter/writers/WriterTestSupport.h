#pragma once

#include "MPPCommon/storage/SSLRoot.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

// Monday 2023-11-20 00:00 UTC, in seconds since 1970, and an hour in seconds.
inline constexpr double kMonday = 1700438400;
inline constexpr double kSecondsPerHour = 3600;

class KVMSPIMPPReader;
class SSLStream;
class KVMSPIMPPProjectReader;
class KVMSPIMPPTaskReader;
class KVMSPIMPPConstraintReader;
class KVMSPIMPPResourceReader;
class KVMSPIMPPAssignmentReader;

namespace writertest {

// The template that ships with the tool.
std::filesystem::path shippedTemplate();

// What olefile reads of a compound file, one line per entry below the root ("S <TAB> size <TAB> crc
// <TAB> path" or "D <TAB> 0 <TAB> - <TAB> path", sorted by path), or one line "!! <error>".
std::vector<std::string> olefileListing(const std::filesystem::path& file);

// A written file opened by the import's readers; a reader the file does not give is null.
class WrittenPlan {
public:
    explicit WrittenPlan(const std::filesystem::path& file);
    ~WrittenPlan();
    WrittenPlan(const WrittenPlan&) = delete;
    WrittenPlan& operator=(const WrittenPlan&) = delete;

    KVMSPIMPPProjectReader* project() const { return m_project; }
    KVMSPIMPPTaskReader* tasks() const;
    KVMSPIMPPConstraintReader* links() const;
    KVMSPIMPPResourceReader* resources() const;
    KVMSPIMPPAssignmentReader* assignments() const;
    // A stream of a storage of the data directory, or null; and its bytes.
    std::unique_ptr<SSLStream> openStream(const std::string& storage, const std::string& name);
    std::vector<uint8_t> stream(const std::string& storage, const std::string& name);

private:
    SSLRoot m_root;
    std::unique_ptr<KVMSPIMPPReader> m_reader;
    KVMSPIMPPProjectReader* m_project = nullptr;
};

} // namespace writertest
