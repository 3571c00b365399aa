#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"

#include <optional>
#include <string>

// Links a hammock task to the tasks that start and end it. The three arrive in file order; each new
// one replaces its slot, and whenever all three slots hold a value the hammock then in its slot gets
// two dependencies: on the starting task, and start-to-finish on the ending task.
class KVMSPIHammockTaskMapper {
public:
    void addPreHammockTaskWithName(const std::string& taskId);
    void addPostHammockTaskWithName(const std::string& taskId);
    void addHammockTask(const KVMSPCXMLElement::ElementPtr& hammockTask);

private:
    void processHammockLinks();

    std::optional<std::string> _preHammockTaskID;
    std::optional<std::string> _postHammockTaskID;
    KVMSPCXMLElement::ElementPtr _hammockTask;
};
