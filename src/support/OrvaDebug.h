// The process-wide diagnostic log. Off unless the log file or the console-switch file exists;
// the controller's init points it at /var/tmp/orvatwain.log and /var/tmp/orvatwain.con.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>

class TwValue;

// Levels: 0 always, 1 E, 2 W, 3 N, 4 I, 5 T (ENTER/LEAVE), 6 D (details), 99 P.
enum OrvaLogLevel : int {
    kOrvaLogAlways = 0,
    kOrvaLogError = 1,
    kOrvaLogWarning = 2,
    kOrvaLogNotice = 3,
    kOrvaLogInfo = 4,
    kOrvaLogTrace = 5,
    kOrvaLogDebug = 6,
    kOrvaLogSpecial = 99,
};

extern const char* const kOrvaDefaultLogFile;     // "/var/tmp/orvatwain.log"
extern const char* const kOrvaDefaultConsoleFile; // "/var/tmp/orvatwain.con"

void OrvaSetLogLevel(std::int32_t level);
std::int32_t OrvaGetLogLevel();
// Either path may be null (no such sink). The strings are copied.
void OrvaSetLogPaths(const char* logFile, const char* consoleFile);

void OrvaLog(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));
void OrvaLogv(int level, const char* format, va_list args) __attribute__((format(printf, 2, 0)));
void OrvaLogFile(std::int32_t timeStamp, const char* format, ...) __attribute__((format(printf, 2, 3)));
void OrvaLogFilev(std::int32_t timeStamp, const char* format, va_list args)
    __attribute__((format(printf, 2, 0)));
void OrvaLogBinary(int level, const char* label, const void* bytes, std::int32_t length);
void OrvaLogBinaryFile(const char* label, const void* bytes, std::uint64_t length, std::uint64_t maxShown);
// Dump of a value tree (the property-list dump): never goes to the system log.
void OrvaLogCFType(int level, const TwValue& object, std::int32_t indent, std::int16_t noLeadingIndent);

const char* IOReturnString(std::int32_t code);
const char* ObjectType2Str(std::uint32_t code);
const char* ICAErr2Str(std::int16_t error);

// Where console-mode lines go; syslog(LOG_USER | LOG_NOTICE) unless a test replaces it.
using OrvaConsoleSink = void (*)(const char* line);
void OrvaSetConsoleSink(OrvaConsoleSink sink);
