#pragma once

#include "MPPCommon/date/TVDateComponents.h"
#include "MPPCommon/support/TVDate.h"

#include <optional>
#include <string>

// An instant as "yyyy-MM-ddTHH:mm:ss" in UTC. The MPP readers hold a file's wall clock as a UTC
// instant, so this is how a date read from a file becomes MSPDI text.
std::string initWithDateTime(TVDate date);

// The instant of a components record under a Gregorian calendar in the system zone.
std::optional<TVDate> initWithDateComponents(const TVDateComponents& components);

// The platform's text of an instant, for logs and plain text values: "yyyy-MM-dd HH:mm:ss +0000".
std::string dateDescription(TVDate date);
