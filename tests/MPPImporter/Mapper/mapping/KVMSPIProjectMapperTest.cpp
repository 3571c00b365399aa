#include "MPPImporter/Mapper/mapping/KVMSPIProjectMapper.h"

#include "MPPCommon/support/TVException.h"

#include <gtest/gtest.h>

namespace {

using ElementPtr = KVMSPCXMLElement::ElementPtr;

// A group of the given children under a `scenario` (or another parent), with a reference added.
std::string groupWithReference(const std::string& children, const char* parent = "scenario") {
    const ElementPtr root = KVMSPCXMLElement::initWithXMLString(
        std::string("<") + parent + "><task id=\"t1\">" + children + "</task></" + parent + ">", nullptr);
    const ElementPtr group = root->elementsForName("task").front();
    const ElementPtr reference = KVMSPCXMLElement::initWithName("child-task");
    reference->setAttributeWithName("idref", "t9");
    KVMSPIProjectMapper::addChildTaskRef(reference, group);
    std::string names;
    for (const auto& child : group->children()) {
        names += (names.empty() ? "" : " ") + child->name().value_or("?");
    }
    return names;
}

TEST(KVMSPIProjectMapperTest, ChildTasksStandBehindTheHeadOfTheGroupAndAheadOfItsNote) {
    EXPECT_EQ(groupWithReference("<title/><type/><effort/>"), "title type child-task effort");
    EXPECT_EQ(groupWithReference("<type/><recalculate/><static-cost/><note/><user-data/>"),
              "type recalculate static-cost child-task note user-data");
    EXPECT_EQ(groupWithReference("<type/><child-task/><prerequisite-task/>"),
              "type child-task child-task prerequisite-task");
    EXPECT_EQ(groupWithReference("<type/><recalculate/><prerequisite-task/>"),
              "type recalculate child-task prerequisite-task");
    // A group without any head keeps the reference at its end.
    EXPECT_EQ(groupWithReference("<title/>"), "title child-task");
    EXPECT_THROW(groupWithReference("<title/><type/>", "plan"), TVException);
    KVMSPIProjectMapper::addChildTaskRef(KVMSPCXMLElement::initWithName("child-task"), nullptr);
}

} // namespace
