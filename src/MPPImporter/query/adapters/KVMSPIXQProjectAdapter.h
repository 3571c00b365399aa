#pragma once

#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"

class KVMSPIMPPProjectReader;

// Answers the queries asked of the whole plan: the collections "Tasks/Task", "Resources/Resource",
// "Assignments/Assignment" and "Calendars/Calendar", each with an optional predicate on its second
// component, the units of a selection of assignments, and the project's own properties.
// The project reader isn't shared-owned: it must outlive every answer.
class KVMSPIXQProjectAdapter : public KVMSPIXQAdapter {
public:
    // Raises "MSPIXQProjectAdapter: Incorrect reader ..." unless `reader` is a project reader.
    explicit KVMSPIXQProjectAdapter(KVMSPIXQResponder& reader);

    using KVMSPIXQAdapter::boolValueForXQuery;
    using KVMSPIXQAdapter::intValueForXQuery;
    using KVMSPIXQAdapter::objectsForXQuery;
    using KVMSPIXQAdapter::stringValueForXQuery;

    Objects objectsForXQuery(const std::string& xquery, TVError* error) override;
    std::optional<std::string> stringValueForXQuery(const std::string& xquery, TVError* error) override;
    int64_t intValueForXQuery(const std::string& xquery, TVError* error) override;
    bool boolValueForXQuery(const std::string& xquery, TVError* error) override;

private:
    // The units of each assignment that answers them, as numbers.
    static Objects assignmentUnits(const Objects& assignments, TVError* error);
    std::optional<std::string> title() const;

    KVMSPIMPPProjectReader& m_projectReader;
};
