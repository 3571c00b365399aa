#pragma once

#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/query/adapters/KVMSPIXQLeafAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQValue.h"

#include <cmath>
#include <limits>
#include <memory>
#include <string>

// Base of the adapters of a calendar's week day and of its exception, which answer the same two
// paths: "WorkingTimes/WorkingTime" (the working ranges) and "TimePeriod/FromDate" or
// "TimePeriod/ToDate" (one date text of the day's period, in the interchange form; none when the
// reader has no period). "TimePeriod" alone is not ported unless a subclass has a period object.
template <typename Reader>
class KVMSPIXQCalendarDayAdapter : public KVMSPIXQLeafAdapter<Reader> {
    using Base = KVMSPIXQLeafAdapter<Reader>;

public:
    using DateOperation = typename Base::template Operation<TVDate>;
    using KVMSPIXQLeafAdapter<Reader>::objectsForXQuery;

    KVMSPIXQuery::Objects objectsForXQuery(const std::string& xquery, TVError* error) override {
        MSPXQComponents components;
        this->parseXQuery(xquery, components);
        if (components.empty()) {
            return KVMSPIXQAdapter::objectsForXQuery(xquery, error);
        }
        const MSPXQComponent& first = components.front();
        const std::string second = components.size() > 1 ? components[1].name : std::string();
        if (first.name == "WorkingTimes") {
            this->assertNoPredicate(first);
            if (second == "WorkingTime") {
                return this->answersOwnedBy(this->reader(), dayReader().workingTimeReaders());
            }
        } else if (first.name == "TimePeriod") {
            this->assertNoPredicate(first);
            if (components.size() == 1) {
                return timePeriodObjects(xquery, error);
            }
            if (second == "FromDate" || second == "ToDate") {
                return periodDate(second == "FromDate" ? m_fromDate : m_toDate, error);
            }
        }
        return KVMSPIXQAdapter::objectsForXQuery(xquery, error);
    }

protected:
    // `fromDate` and `toDate` read the first and last date of the reader's period.
    KVMSPIXQCalendarDayAdapter(KVMSPIXQResponder& reader, const char* incorrectReaderFormat,
                               const typename Base::Leaves& leaves, DateOperation fromDate,
                               DateOperation toDate)
        : Base(reader, incorrectReaderFormat, leaves), m_fromDate(fromDate), m_toDate(toDate) {}

    // The answer to "TimePeriod" alone.
    virtual KVMSPIXQuery::Objects timePeriodObjects(const std::string& xquery, TVError* error) {
        return KVMSPIXQAdapter::objectsForXQuery(xquery, error);
    }

    // The reader, whose class the base checked when the adapter was made.
    Reader& dayReader() const { return static_cast<Reader&>(this->reader()); }

private:
    // One date text; none when the reader fails. A reader that succeeds must give a date.
    KVMSPIXQuery::Objects periodDate(DateOperation operation, TVError* error) const {
        TVDate date{std::numeric_limits<double>::quiet_NaN()};
        if (!(dayReader().*operation)(date, error)) {
            return {};
        }
        tvAssert(!std::isnan(date.seconds), "No GDateTime object returned.");
        return {std::make_shared<KVMSPIXQValue>(initWithDateTime(date))};
    }

    DateOperation m_fromDate;
    DateOperation m_toDate;
};
