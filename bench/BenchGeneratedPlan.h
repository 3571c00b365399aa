#pragma once

// The generated plan that the benchmarks measure beside the corpus: groups of ten tasks under a root,
// each task linked to the one before it in its group and worked on by one of twenty staff.
#include "MPPExporter/MPPObjects/KVMPPProject.h"

#include <memory>
#include <string>

inline constexpr double kDay = 86400;
inline constexpr uint64_t kGeneratedStaff = 20;

inline std::unique_ptr<KVMPPProject> generatedPlan(int64_t taskCount) {
    auto project = std::make_unique<KVMPPProject>();
    auto root = std::make_shared<KVMPPTask>();
    root->title = "Generated";
    project->tasks.push_back(root);
    for (uint64_t i = 1; i <= kGeneratedStaff; ++i) {
        auto resource = std::make_shared<KVMPPResource>();
        resource->ID = i;
        resource->name = "Staff " + std::to_string(i);
        resource->standartRate = 50;
        project->resources.push_back(resource);
    }
    std::shared_ptr<KVMPPTask> group;
    std::shared_ptr<KVMPPTask> previous;
    for (int64_t i = 1; i <= taskCount; ++i) {
        auto task = std::make_shared<KVMPPTask>();
        task->ID = static_cast<uint64_t>(i);
        task->title = "Task " + std::to_string(i);
        task->startDate = TVDate::fromUnixSeconds(1700467200 + static_cast<double>(i) * kDay);
        task->endDate = task->startDate->addingSeconds(9 * 3600);
        task->duration = 8 * 3600;
        task->notes = i % 100 == 0 ? std::optional<std::string>("A note\nof two lines") : std::nullopt;
        if (i % 10 == 1) {
            task->parent = root.get();
            group = task;
        } else {
            task->parent = group.get();
            auto assignment = std::make_shared<KVMPPAssignment>();
            assignment->ID = static_cast<uint64_t>(i);
            assignment->task.setObject(task);
            assignment->resource.setObject(project->resources[static_cast<size_t>(i) % kGeneratedStaff]);
            assignment->work = assignment->remainingWork = 8 * 3600;
            assignment->startDate = task->startDate;
            assignment->finishDate = task->endDate;
            project->assignments.push_back(assignment);
            if (previous && previous->parent == task->parent) {
                auto link = std::make_shared<KVMPPConstraint>();
                link->task1.setObject(task);
                link->task2.setObject(previous);
                link->constraintType = 1;
                project->constraints.push_back(link);
            }
        }
        previous = task;
        project->tasks.push_back(task);
    }
    return project;
}
