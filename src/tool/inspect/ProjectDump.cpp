#include "tool/inspect/ProjectDump.h"

#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"
#include "tool/inspect/ReaderFieldDump.h"

nlohmann::ordered_json ProjectDump::of(KVMSPIMPPAbsProjectReader& reader) {
    using R = KVMSPIMPPAbsProjectReader;
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    ReaderFieldDump<R>(reader, object)
        .field("propCurrencyCode", &R::propCurrencyCode)
        .field("propCurrencyDigits", &R::propCurrencyDigits)
        .field("propCurrencySymbolPosition", &R::propCurrencySymbolPosition)
        .field("propCurrencySymbol", &R::propCurrencySymbol)
        .field("propDaysPerMonth", &R::propDaysPerMonth)
        .field("propDefaultCalendarName", &R::propDefaultCalendarName)
        .field("propDurationUnits", &R::propDurationUnits)
        .field("propMinutesPerDay", &R::propMinutesPerDay)
        .field("propMinutesPerWeek", &R::propMinutesPerWeek)
        .field("propFinishDate", &R::propFinishDate)
        .field("propStartDate", &R::propStartDate)
        .field("propScheduleFromStart", &R::propScheduleFromStart)
        .field("propWeekStartDay", &R::propWeekStartDay)
        .field("propWorkUnits", &R::propWorkUnits);
    return object;
}
