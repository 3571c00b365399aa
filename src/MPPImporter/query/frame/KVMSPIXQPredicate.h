#pragma once

#include "MPPCommon/xml/KVMSPIXQuery.h"

#include <functional>

// A test on a reader object that a query's predicate text stands for. It only ever filters an array
// of readers in place. An empty function is no predicate: nothing is filtered.
using KVMSPIXQPredicate = std::function<bool(KVMSPIXQuery&)>;
