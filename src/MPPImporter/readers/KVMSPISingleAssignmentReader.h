#pragma once

#include "MPPImporter/readers/KVMSPIMPPAssignmentReader.h"
#include "MPPImporter/readers/KVMSPISingleObjectReaderBase.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

// One assignment of the assignment reader: its UID, its task and resource, and the phases of its
// timephased work, which it shares with the assignment reader's map.
class KVMSPISingleAssignmentReader : public KVMSPISingleObjectReaderBase {
public:
    using TimephasedDataReaders = std::vector<std::shared_ptr<KVMSPISingleTimephasedDataReader>>;

    // Reads the task and resource UIDs, and takes the phases of the assignment from the map.
    KVMSPISingleAssignmentReader(int32_t uid, KVMSPIMPPAssignmentReader& reader);
    // A reader to test a filter on: the task and resource UIDs, and no phases.
    static std::unique_ptr<KVMSPISingleAssignmentReader>
    initForFilterWithAssignmentUID(int32_t uid, KVMSPIMPPAssignmentReader& reader);

    const TimephasedDataReaders& timephasedDataReaders() const { return m_timephasedDataReaders; }

    // "ResourceUID=n" or "TaskUID=n", read from the first character: a test that the assignment's
    // resource or task is n. Any other text as the base reads it ("UID=n"); none for no text, or for
    // an "=" without digits.
    static KVMSPIXQPredicate predicateWithString(const std::optional<std::string>& text);
    // The owner and its UID that a "ResourceUID=n" or "TaskUID=n" text names; none for any other text.
    static std::optional<std::pair<KVMSPIMPPAssignmentReader::Owner, int32_t>>
    ownerWithString(const std::optional<std::string>& text);

    // -1 for a UID that couldn't be read. All three are always true.
    bool assignmentUID(int32_t& value, TVError* error = nullptr) const;
    bool assignmentResourceUID(int32_t& value, TVError* error = nullptr) const;
    bool assignmentTaskUID(int32_t& value, TVError* error = nullptr) const;

    bool assignmentUnits(double& value, TVError* error = nullptr) const {
        return m_assignmentReader.assignmentUnits(uid(), value, error);
    }
    bool assignmentWork(double& value, TVError* error = nullptr) const {
        return m_assignmentReader.assignmentWork(uid(), value, error);
    }
    bool assignmentActualWork(double& value, TVError* error = nullptr) const {
        return m_assignmentReader.assignmentActualWork(uid(), value, error);
    }
    bool assignmentRemainingWork(double& value, TVError* error = nullptr) const {
        return m_assignmentReader.assignmentRemainingWork(uid(), value, error);
    }
    // The work and remaining work as the application that saved the file shows them. An assignment
    // without a resource keeps its task's scheduled span in its work fields. Applications before 14
    // show it no work, as they show its task none; later ones show the span.
    bool shownWork(double& value, TVError* error = nullptr) const;
    bool shownRemainingWork(double& value, TVError* error = nullptr) const;
    bool assignmentCost(double& value, TVError* error = nullptr) const {
        return m_assignmentReader.assignmentCost(uid(), value, error);
    }

protected:
    std::unique_ptr<KVMSPIXQAdapter> newXQAdapter() override;

private:
    KVMSPISingleAssignmentReader(int32_t uid, KVMSPIMPPAssignmentReader& reader, bool withPhases);
    // Whether the saving application shows this assignment's work fields as no work.
    bool showsNoWork() const;
    // `read`, with the work field just read in `value` as the application shows it.
    bool shown(bool read, double& value) const;

    KVMSPIMPPAssignmentReader& m_assignmentReader;
    int32_t m_resourceUID = -1;
    int32_t m_taskUID = -1;
    TimephasedDataReaders m_timephasedDataReaders;
};
