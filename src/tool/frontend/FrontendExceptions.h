#pragma once

// Names of the exceptions that the argument and path checks raise.
inline constexpr const char* kCommandLineArgumentException = "CommandLineArgumentException";
inline constexpr const char* kFileNotFoundException = "FileNotFoundException";
