#pragma once

#include "MPPCommon/support/TVError.h"

#include <string>

// Domains of the tool's own errors.
inline constexpr const char* kTVMSPGeneralErrorDomain = "TVMSPFilter.GeneralErrorDomain";
inline constexpr const char* kTVMSPXQueryErrorDomain = "TVMSPFilter.XQueryErrorDomain";

// Codes of the general domain that the import and the shared operations report. The codes with
// which a file's format is refused belong to the format layer.
inline constexpr int kTVMSPBoolValueError = 2;
inline constexpr int kTVMSPInvalidMPPFileError = 4;
inline constexpr int kTVMSPExceptionRaisedError = 5;
inline constexpr int kTVMSPPasswordProtectedError = 6;
inline constexpr int kTVMSPNotPortedXQueryError = 100;

// The error of a query that the vocabulary doesn't hold: code 100, described as
// "NOT PORTED XQUERY (<file name> [<line>]): <query>" with the last component of `sourceFile`.
TVError notPortedXQueryError(const std::string& sourceFile, int line, const std::string& xquery);
