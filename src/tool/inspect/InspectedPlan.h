#pragma once

#include <cstdint>
#include <memory>
#include <string>

class KVMSPIMPPProjectReader;
class KVMSPIMPPReader;
class SSLRoot;

// An MPP file opened as the import opens it, down to the project reader, with the baseline-following
// fields of the task, resource and assignment readers set to one baseline or the actual plan.
class InspectedPlan {
public:
    // `baselineNumber` is 0 to 10, or -1 for the actual plan. Raises TVException when an internal
    // check fails while the file is opened.
    InspectedPlan(const std::string& path, bool acceptDowngraded, int32_t baselineNumber);
    ~InspectedPlan();
    InspectedPlan(const InspectedPlan&) = delete;
    InspectedPlan& operator=(const InspectedPlan&) = delete;

    // Null when the import refuses the file; InfoCommand::infoOfFile tells why.
    KVMSPIMPPProjectReader* project() const { return m_project; }

private:
    std::unique_ptr<SSLRoot> m_root;
    std::unique_ptr<KVMSPIMPPReader> m_reader;
    KVMSPIMPPProjectReader* m_project = nullptr;
};
