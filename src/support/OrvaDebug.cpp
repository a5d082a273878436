// The process-wide diagnostic log and the code-name tables of the support library.
#include "OrvaDebug.h"

#include "TwValue.h"

#include <atomic>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

const char* const kOrvaDefaultLogFile = "/var/tmp/orvatwain.log";
const char* const kOrvaDefaultConsoleFile = "/var/tmp/orvatwain.con";

namespace {

// Read before locking on every levelled call, written by OrvaSetLogLevel from any thread.
std::atomic<std::int32_t> g_OrvaLogMode{kOrvaLogDebug};
pthread_mutex_t s_OrvaMutexLog = PTHREAD_MUTEX_INITIALIZER;
pthread_mutex_t* const g_OrvaMutexLog = &s_OrvaMutexLog;
// Both paths are owned copies, replaced only under the lock.
char* g_OrvaFileLog = nullptr;
char* g_OrvaFileConsole = nullptr;

constexpr off_t kOrvaLogMaxSize = 5 * 1024 * 1024; // rotated when larger
constexpr int kOrvaLogGenerations = 5;
constexpr int kOrvaSyslogPriority = LOG_USER | LOG_NOTICE;
constexpr std::size_t kOrvaDumpLineSize = 133;

void OrvaSyslogSink(const char* line) {
    syslog(kOrvaSyslogPriority, "%s", line);
}

OrvaConsoleSink g_OrvaConsoleSink = OrvaSyslogSink;

class OrvaLogLock {
public:
    OrvaLogLock() { pthread_mutex_lock(g_OrvaMutexLog); }
    ~OrvaLogLock() { pthread_mutex_unlock(g_OrvaMutexLog); }
    OrvaLogLock(const OrvaLogLock&) = delete;
    OrvaLogLock& operator=(const OrvaLogLock&) = delete;
};

// Where one call writes: an open log stream, the console sink, or nowhere.
struct OrvaSink {
    FILE* file = nullptr;
    bool console = false;
    explicit operator bool() const { return file || console; }
};

struct OrvaLocalTime {
    int year, month, day, hour, minute;
    double seconds; // with milliseconds
};

OrvaLocalTime OrvaNow() {
    timespec ts{};
    clock_gettime(CLOCK_REALTIME, &ts);
    time_t t = ts.tv_sec;
    tm lt{};
    localtime_r(&t, &lt);
    // Truncated to whole milliseconds so that "%06.3f" never rounds up to 60.000.
    double seconds = lt.tm_sec + double(ts.tv_nsec / 1000000) / 1000.0;
    return {lt.tm_year + 1900, lt.tm_mon + 1, lt.tm_mday, lt.tm_hour, lt.tm_min, seconds};
}

char OrvaLevelLetter(int level) {
    switch (level) {
    case kOrvaLogError:
        return 'E';
    case kOrvaLogWarning:
        return 'W';
    case kOrvaLogNotice:
        return 'N';
    case kOrvaLogInfo:
        return 'I';
    case kOrvaLogTrace:
        return 'T';
    case kOrvaLogDebug:
        return 'D';
    case kOrvaLogSpecial:
        return 'P';
    default:
        return ' ';
    }
}

char* OrvaCopyString(const char* s) {
    return s ? strdup(s) : nullptr;
}

// Shifts P.3 to P.4, ..., P to P.0; the oldest generation is overwritten.
bool OrvaLogFileRotate(const char* path) {
    char* names[kOrvaLogGenerations] = {};
    const std::size_t size = std::strlen(path) + 5;
    bool ok = true;
    for (int i = 0; i < kOrvaLogGenerations && ok; ++i) {
        names[i] = static_cast<char*>(std::malloc(size));
        if (names[i])
            std::snprintf(names[i], size, "%s.%d", path, i);
        else
            ok = false;
    }
    for (int i = kOrvaLogGenerations - 1; i >= 0 && ok; --i) {
        const char* from = i == 0 ? path : names[i - 1];
        if (access(from, F_OK) == 0 && std::rename(from, names[i]) != 0)
            ok = false;
    }
    for (char* name : names)
        std::free(name);
    return ok;
}

// Opens an existing regular log file for appending. Symbolic links are never followed; the file
// is created only to replace the one a rotation has just moved away.
FILE* OrvaOpenExistingLog(const char* path) {
    struct stat st {};
    if (lstat(path, &st) != 0)
        return nullptr;
    bool rotated = false;
    if (S_ISREG(st.st_mode) && st.st_size > kOrvaLogMaxSize)
        rotated = OrvaLogFileRotate(path);

    const int flags = O_RDWR | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    int fd = -1;
    if (rotated) {
        // fchmod instead of clearing the umask: the umask is process-wide and other threads may
        // be creating files right now.
        fd = open(path, flags | O_CREAT | O_EXCL, 0666);
        if (fd >= 0)
            (void)fchmod(fd, 0666); // best effort: the umask's mode still leaves a usable file
        if (fd < 0 && errno != EEXIST)
            return nullptr;
    }
    if (fd < 0)
        fd = open(path, flags);
    if (fd < 0)
        return nullptr;
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        close(fd);
        return nullptr;
    }
    FILE* file = fdopen(fd, "a+");
    if (!file) {
        close(fd);
        return nullptr;
    }
    if (st.st_size == 0) {
        OrvaLocalTime now = OrvaNow();
        std::fprintf(file, "[Creat at %04d/%02d/%02d]\n", now.year, now.month, now.day);
    }
    return file;
}

// Called with the lock held.
OrvaSink OrvaOpenLogFile() {
    if (g_OrvaFileLog) {
        if (FILE* file = OrvaOpenExistingLog(g_OrvaFileLog))
            return {file, false};
    }
    if (g_OrvaFileConsole) {
        struct stat st {};
        if (lstat(g_OrvaFileConsole, &st) == 0 && S_ISREG(st.st_mode))
            return {nullptr, true};
    }
    return {};
}

__attribute__((format(printf, 1, 0))) void OrvaConsoleWritev(const char* format, va_list args) {
    char line[512];
    va_list copy;
    va_copy(copy, args);
    int n = std::vsnprintf(line, sizeof line, format, copy);
    va_end(copy);
    if (n < 0)
        return;
    if (std::size_t(n) < sizeof line) {
        g_OrvaConsoleSink(line);
        return;
    }
    char* big = static_cast<char*>(std::malloc(std::size_t(n) + 1));
    if (!big) {
        g_OrvaConsoleSink(line);
        return;
    }
    std::vsnprintf(big, std::size_t(n) + 1, format, args);
    g_OrvaConsoleSink(big);
    std::free(big);
}

__attribute__((format(printf, 2, 3))) void OrvaSinkWrite(const OrvaSink& sink, const char* format, ...) {
    va_list args;
    va_start(args, format);
    if (sink.file)
        std::vfprintf(sink.file, format, args);
    else if (sink.console)
        OrvaConsoleWritev(format, args);
    va_end(args);
}

void OrvaWriteIndent(FILE* file, std::int32_t indent) {
    for (std::int32_t i = 0; i < indent; ++i)
        std::fputs("  ", file);
}

void OrvaLogCFTypeFile(FILE* file, const TwValue& object, std::int32_t indent, std::int16_t noLeadingIndent);

void OrvaLogCFStringFile(FILE* file, const std::string& s, std::int32_t indent,
                         std::int16_t noLeadingIndent) {
    if (!noLeadingIndent)
        OrvaWriteIndent(file, indent);
    std::fprintf(file, "[CFString] '%s'\n", s.c_str());
}

void OrvaLogCFTypeFile(FILE* file, const TwValue& object, std::int32_t indent, std::int16_t noLeadingIndent) {
    if (!file || object.isNull())
        return;
    if (object.isString()) {
        OrvaLogCFStringFile(file, *object.str(), indent, noLeadingIndent);
        return;
    }
    if (!noLeadingIndent)
        OrvaWriteIndent(file, indent);
    switch (object.type()) {
    case TwValue::Type::Integer: {
        std::int64_t v = object.longLongValue();
        if (v >= INT32_MIN && v <= INT32_MAX)
            std::fprintf(file, "[CFNumber] %d (SInt32)\n", int(v));
        else
            std::fprintf(file, "[CFNumber] %ld (SInt64)\n", long(v));
        break;
    }
    case TwValue::Type::Real:
        std::fprintf(file, "[CFNumber] %f (Float64)\n", object.doubleValue());
        break;
    case TwValue::Type::Boolean:
        std::fputs("[CFBoolean]\n", file);
        break;
    case TwValue::Type::Date:
        std::fputs("[CFDate]\n", file);
        break;
    case TwValue::Type::Data:
        std::fprintf(file, "[CFData] byties = %ld\n", long(object.data()->size()));
        break;
    case TwValue::Type::Dictionary: {
        const TwDictionary& dict = *object.dict();
        std::fprintf(file, "[CFDictionary] count = %ld\n", long(dict.size()));
        long i = 0;
        for (const auto& [key, value] : dict) {
            OrvaWriteIndent(file, indent);
            std::fprintf(file, "[ %3ld]: key = ", i++);
            OrvaLogCFStringFile(file, key, indent + 1, 1);
            OrvaWriteIndent(file, indent);
            std::fputs("      value = ", file);
            OrvaLogCFTypeFile(file, value, indent + 1, 1);
        }
        break;
    }
    case TwValue::Type::Array: {
        const TwArray& list = *object.list();
        std::fprintf(file, "[CFArray] count = %ld\n", long(list.size()));
        for (std::size_t i = 0; i < list.size(); ++i) {
            OrvaWriteIndent(file, indent);
            std::fprintf(file, "[ %3ld]: ", long(i));
            OrvaLogCFTypeFile(file, list[i], indent + 1, 1);
        }
        break;
    }
    case TwValue::Type::Null:
    case TwValue::Type::String:
        break;
    }
}

struct OrvaCodeName {
    std::int32_t code;
    const char* text;
};

constexpr std::int32_t OrvaIOKitCommon(std::uint32_t code) {
    return std::int32_t(0xE0000000u | code);
}
constexpr std::int32_t OrvaIOKitUSB(std::uint32_t code) {
    return std::int32_t(0xE0004000u | code);
}

const OrvaCodeName kIOReturnNames[] = {
    {0, "kIOReturnSuccess OK"},
    {OrvaIOKitCommon(0x2bc), "kIOReturnError general error"},
    {OrvaIOKitCommon(0x2bd), "kIOReturnNoMemory can't allocate memory"},
    {OrvaIOKitCommon(0x2be), "kIOReturnNoResources resource shortage"},
    {OrvaIOKitCommon(0x2bf), "kIOReturnIPCError error during IPC"},
    {OrvaIOKitCommon(0x2c0), "kIOReturnNoDevice no such device"},
    {OrvaIOKitCommon(0x2c1), "kIOReturnNotPrivileged privilege violation"},
    {OrvaIOKitCommon(0x2c2), "kIOReturnBadArgument invalid argument"},
    {OrvaIOKitCommon(0x2c3), "kIOReturnLockedRead device read locked"},
    {OrvaIOKitCommon(0x2c4), "kIOReturnLockedWrite device write locked"},
    {OrvaIOKitCommon(0x2c5), "kIOReturnExclusiveAccess exclusive access and device already open"},
    {OrvaIOKitCommon(0x2c6), "kIOReturnBadMessageID sent/received messages had different msg_id"},
    {OrvaIOKitCommon(0x2c7), "kIOReturnUnsupported unsupported function"},
    {OrvaIOKitCommon(0x2c8), "kIOReturnVMError misc. VM failure"},
    {OrvaIOKitCommon(0x2c9), "kIOReturnInternalError internal error"},
    {OrvaIOKitCommon(0x2ca), "kIOReturnIOError General I/O error"},
    {OrvaIOKitCommon(0x2cc), "kIOReturnCannotLock can't acquire lock"},
    {OrvaIOKitCommon(0x2cd), "kIOReturnNotOpen device not open"},
    {OrvaIOKitCommon(0x2ce), "kIOReturnNotReadable read not supported"},
    {OrvaIOKitCommon(0x2cf), "kIOReturnNotWritable write not supported"},
    {OrvaIOKitCommon(0x2d0), "kIOReturnNotAligned alignment error"},
    {OrvaIOKitCommon(0x2d1), "kIOReturnBadMedia Media Error"},
    {OrvaIOKitCommon(0x2d2), "kIOReturnStillOpen device(s) still open"},
    {OrvaIOKitCommon(0x2d3), "kIOReturnRLDError rld failure"},
    {OrvaIOKitCommon(0x2d4), "kIOReturnDMAError DMA failure"},
    {OrvaIOKitCommon(0x2d5), "kIOReturnBusy Device Busy"},
    {OrvaIOKitCommon(0x2d6), "kIOReturnTimeout I/O Timeout"},
    {OrvaIOKitCommon(0x2d7), "kIOReturnOffline device offline"},
    {OrvaIOKitCommon(0x2d8), "kIOReturnNotReady not ready"},
    {OrvaIOKitCommon(0x2d9), "kIOReturnNotAttached device not attached"},
    {OrvaIOKitCommon(0x2da), "kIOReturnNoChannels no DMA channels left"},
    {OrvaIOKitCommon(0x2db), "kIOReturnNoSpace no space for data"},
    {OrvaIOKitCommon(0x2dd), "kIOReturnPortExists port already exists"},
    {OrvaIOKitCommon(0x2de), "kIOReturnCannotWire can't wire down physical memory"},
    {OrvaIOKitCommon(0x2df), "kIOReturnNoInterrupt no interrupt attached"},
    {OrvaIOKitCommon(0x2e0), "kIOReturnNoFrames no DMA frames enqueued"},
    {OrvaIOKitCommon(0x2e1), "kIOReturnMessageTooLarge oversized msg received on interrupt port"},
    {OrvaIOKitCommon(0x2e2), "kIOReturnNotPermitted not permitted"},
    {OrvaIOKitCommon(0x2e3), "kIOReturnNoPower no power to device"},
    {OrvaIOKitCommon(0x2e4), "kIOReturnNoMedia media not present"},
    {OrvaIOKitCommon(0x2e5), "kIOReturnUnformattedMedia media not formatted"},
    {OrvaIOKitCommon(0x2e6), "kIOReturnUnsupportedMode no such mode"},
    {OrvaIOKitCommon(0x2e7), "kIOReturnUnderrun data underrun"},
    {OrvaIOKitCommon(0x2e8), "kIOReturnOverrun data overrun"},
    {OrvaIOKitCommon(0x2e9), "kIOReturnDeviceError the device is not working properly!"},
    {OrvaIOKitCommon(0x2ea), "kIOReturnNoCompletion a completion routine is required"},
    {OrvaIOKitCommon(0x2eb), "kIOReturnAborted operation aborted"},
    {OrvaIOKitCommon(0x2ec), "kIOReturnNoBandwidth bus bandwidth would be exceeded"},
    {OrvaIOKitCommon(0x2ed), "kIOReturnNotResponding device not responding"},
    {OrvaIOKitCommon(0x2ee), "kIOReturnIsoTooOld isochronous I/O request for distant past!"},
    {OrvaIOKitCommon(0x2ef), "kIOReturnIsoTooNew isochronous I/O request for distant future"},
    {OrvaIOKitCommon(0x2f0), "kIOReturnNotFound data was not found"},
    {OrvaIOKitCommon(0x001), "kIOReturnInvalid should never be seen"},
    {OrvaIOKitUSB(0x01), "kIOUSBCRCErr Pipe stall, bad CRC"},
    {OrvaIOKitUSB(0x02), "kIOUSBBitstufErr Pipe stall, bitstuffing"},
    {OrvaIOKitUSB(0x03), "kIOUSBDataToggleErr Pipe stall, Bad data toggle"},
    {OrvaIOKitUSB(0x06), "kIOUSBPIDCheckErr Pipe stall, PID CRC error"},
    {OrvaIOKitUSB(0x07), "kIOUSBWrongPIDErr Pipe stall, Bad or wrong PID"},
    {OrvaIOKitUSB(0x0a), "kIOUSBReserved1Err Reserved"},
    {OrvaIOKitUSB(0x0b), "kIOUSBReserved2Err Reserved"},
    {OrvaIOKitUSB(0x0c),
     "kIOUSBBufferOverrunErr Buffer Overrun (Host hardware failure on data in, PCI busy?)"},
    {OrvaIOKitUSB(0x0d),
     "kIOUSBBufferUnderrunErr Buffer Underrun (Host hardware failure on data out, PCI busy?)"},
    {OrvaIOKitUSB(0x0e), "kIOUSBNotSent1Err Transaction not sent"},
    {OrvaIOKitUSB(0x0f), "kIOUSBNotSent2Err Transaction not sent"},
    {OrvaIOKitUSB(0x10), "kIOUSBLinkErr Link error"},
    {OrvaIOKitUSB(0x49), "kIOUSBDeviceNotHighSpeed Device is not high speed"},
    {OrvaIOKitUSB(0x4a),
     "kIOUSBSyncRequestOnWLThread A synchronous USB request was made on the workloop thread"},
    {OrvaIOKitUSB(0x4b),
     "kIOUSBHighSpeedSplitError Error to hub on high speed bus trying to do split transaction"},
    {OrvaIOKitUSB(0x4c), "kIOUSBLowLatencyFrameListNotPreviouslyAllocated Low latency isoc call without a "
                         "prepared frame list"},
    {OrvaIOKitUSB(0x4d), "kIOUSBLowLatencyBufferNotPreviouslyAllocated Low latency isoc call without a "
                         "prepared data buffer"},
    {OrvaIOKitUSB(0x4e), "kIOUSBInterfaceNotFound Interface ref not recognized"},
    {OrvaIOKitUSB(0x4f), "kIOUSBPipeStalled Pipe has stalled, error needs to be cleared"},
    {OrvaIOKitUSB(0x50), "kIOUSBTransactionReturned The transaction has been returned to the caller"},
    {OrvaIOKitUSB(0x51), "kIOUSBTransactionTimeout Transaction timed out"},
    {OrvaIOKitUSB(0x56), "kIOUSBConfigNotFound Configuration Not found"},
    {OrvaIOKitUSB(0x57), "kIOUSBEndpointNotFound Endpoint Not found"},
    {OrvaIOKitUSB(0x5d), "kIOUSBNotEnoughPowerErr Not enough power for selected configuration"},
    {OrvaIOKitUSB(0x5e), "kIOUSBNotEnoughPipesErr Not enough pipes in interface"},
    {OrvaIOKitUSB(0x5f), "kIOUSBNoAsyncPortErr no async port"},
    {OrvaIOKitUSB(0x60), "kIOUSBTooManyPipesErr Too many pipes"},
    {OrvaIOKitUSB(0x61), "kIOUSBUnknownPipeErr Pipe ref not recognized"},
};

constexpr std::uint32_t OrvaFourCC(const char (&s)[5]) {
    return std::uint32_t(std::uint8_t(s[0])) << 24 | std::uint32_t(std::uint8_t(s[1])) << 16 |
           std::uint32_t(std::uint8_t(s[2])) << 8 | std::uint32_t(std::uint8_t(s[3]));
}

struct OrvaTypeName {
    std::uint32_t code;
    const char* name;
};

// Searched in order: 'scan' and 'file' appear twice and the first entry always wins.
const OrvaTypeName kObjectTypeNames[] = {
    {OrvaFourCC("icdv"), "kICADevice"},
    {OrvaFourCC("cmra"), "kICADeviceCamera"},
    {OrvaFourCC("scan"), "kICADeviceScanner"},
    {OrvaFourCC("mfp "), "kICADeviceMFP"},
    {OrvaFourCC("phon"), "kICADevicePhone"},
    {OrvaFourCC("pda "), "kICADevicePDA"},
    {OrvaFourCC("doth"), "kICADeviceOther"},
    {OrvaFourCC("objl"), "kICAList"},
    {OrvaFourCC("dire"), "kICADirectory"},
    {OrvaFourCC("file"), "kICAFile"},
    {OrvaFourCC("imag"), "kICAFileImage"},
    {OrvaFourCC("moov"), "kICAFileMovie"},
    {OrvaFourCC("audo"), "kICAFileAudio"},
    {OrvaFourCC("firm"), "kICAFileFirmware"},
    {OrvaFourCC("othe"), "kICAFileOther"},
    {OrvaFourCC("open"), "kICAMessageConnect"},
    {OrvaFourCC("clos"), "kICAMessageDisconnect"},
    {OrvaFourCC("rese"), "kICAMessageReset"},
    {OrvaFourCC("chkd"), "kICAMessageCheckDevice"},
    {OrvaFourCC("rclk"), "kICAMessageCameraReadClock"},
    {OrvaFourCC("btn?"), "kICAMessageGetLastButtonPressed"},
    {OrvaFourCC("yiel"), "kICAMessageDeviceYield"},
    {OrvaFourCC("area"), "'area'"},
    {OrvaFourCC("scan"), "kICAButtonScan"},
    {OrvaFourCC("copy"), "kICAButtonCopy"},
    {OrvaFourCC("mail"), "kICAButtonEMail"},
    {OrvaFourCC("web "), "kICAButtonWeb"},
    {OrvaFourCC("jpeg"), "kICAThumbnailFormatJPEG"},
    {OrvaFourCC("tiff"), "kICAThumbnailFormatTIFF"},
    {OrvaFourCC("file"), "kICS_FileData"},
    {OrvaFourCC("thum"), "kICS_ThumbnailData"},
    {OrvaFourCC("meta"), "kICS_MetaData"},
};

const char* const kICAErrorNames[] = {
    "kICACommunicationErr",
    "kICADeviceNotFoundErr",
    "kICADeviceNotOpenErr",
    "kICAFileCorruptedErr",
    "kICAIOPendingErr",
    "kICAInvalidObjectErr",
    "kICAInvalidPropertyErr",
    "kICAIndexOutOfRangeErr",
    "kICAPropertyTypeNotFoundErr",
    "kICACannotYieldDevice",
    "kICADataTypeNotFoundErr",
    "kICADeviceMemoryAllocationErr",
    "kICADeviceInternalErr",
    "kICADeviceInvalidParamErr",
    "kICADeviceAlreadyOpenErr",
    "kICADeviceLocationIDNotFoundErr",
    "kICADeviceGUIDNotFoundErr",
    "kICADeviceIOServicePathNotFoundErr",
};
constexpr int kICAFirstError = -9900;

} // namespace

void OrvaSetLogLevel(std::int32_t level) {
    g_OrvaLogMode.store(level, std::memory_order_relaxed);
}

std::int32_t OrvaGetLogLevel() {
    return g_OrvaLogMode.load(std::memory_order_relaxed);
}

void OrvaSetLogPaths(const char* logFile, const char* consoleFile) {
    char* log = OrvaCopyString(logFile);
    char* console = OrvaCopyString(consoleFile);
    {
        OrvaLogLock lock;
        std::swap(g_OrvaFileLog, log);
        std::swap(g_OrvaFileConsole, console);
    }
    std::free(log);
    std::free(console);
}

void OrvaSetConsoleSink(OrvaConsoleSink sink) {
    OrvaLogLock lock;
    g_OrvaConsoleSink = sink ? sink : OrvaSyslogSink;
}

void OrvaLog(int level, const char* format, ...) {
    if (level > g_OrvaLogMode.load(std::memory_order_relaxed))
        return;
    va_list args;
    va_start(args, format);
    OrvaLogv(level, format, args);
    va_end(args);
}

void OrvaLogv(int level, const char* format, va_list args) {
    if (level > g_OrvaLogMode.load(std::memory_order_relaxed) || !format)
        return;
    OrvaLogLock lock;
    OrvaSink sink = OrvaOpenLogFile();
    if (sink.file) {
        OrvaLocalTime now = OrvaNow();
        std::fprintf(sink.file, "[%02d:%02d:%06.3f]%c\t", now.hour, now.minute, now.seconds,
                     OrvaLevelLetter(level));
        std::vfprintf(sink.file, format, args);
        std::fclose(sink.file);
    } else if (sink.console) {
        OrvaConsoleWritev(format, args);
    }
}

void OrvaLogFile(std::int32_t timeStamp, const char* format, ...) {
    va_list args;
    va_start(args, format);
    OrvaLogFilev(timeStamp, format, args);
    va_end(args);
}

void OrvaLogFilev(std::int32_t timeStamp, const char* format, va_list args) {
    if (!format)
        return;
    OrvaLogLock lock;
    OrvaSink sink = OrvaOpenLogFile();
    if (sink.file) {
        if (timeStamp) {
            OrvaLocalTime now = OrvaNow();
            std::fprintf(sink.file, "[%02d:%02d:%06.3f]\t", now.hour, now.minute, now.seconds);
        }
        std::vfprintf(sink.file, format, args);
        std::fclose(sink.file);
    } else if (sink.console) {
        OrvaConsoleWritev(format, args);
    }
}

void OrvaLogBinary(int level, const char* label, const void* bytes, std::int32_t length) {
    if (level > g_OrvaLogMode.load(std::memory_order_relaxed) || !bytes || length <= 0)
        return;
    const auto* data = static_cast<const unsigned char*>(bytes);
    char line[kOrvaDumpLineSize];
    const std::int32_t rows = (length + 15) / 16;
    for (std::int32_t row = 0; row < rows; ++row) {
        const std::int32_t offset = row * 16;
        std::memset(line, ' ', 80);
        int count = 0;
        for (; count < 16 && offset + count < length; ++count) {
            const std::size_t column = std::size_t(5 * count + (count >= 8 ? 1 : 0));
            std::snprintf(line + column, sizeof line - column, " 0x%02x ", data[offset + count]);
        }
        if (count < 16)
            std::memset(line + 5 * count, ' ', std::size_t(81 - 5 * count));
        line[81] = ' ';
        line[82] = ':';
        for (int k = 0; k < count; ++k) {
            const unsigned char c = data[offset + k];
            std::snprintf(line + 83 + 2 * k, sizeof line - std::size_t(83 + 2 * k), " %c",
                          std::isprint(c) ? c : '.');
        }
        OrvaLog(level, "%s[0x%04x]: %s\n", label ? label : "", unsigned(offset), line + 1);
    }
}

void OrvaLogBinaryFile(const char* label, const void* bytes, std::uint64_t length, std::uint64_t maxShown) {
    OrvaLogLock lock;
    OrvaSink sink = OrvaOpenLogFile();
    if (!sink)
        return;
    OrvaSinkWrite(sink, "%s(%zu bytes):\n", label ? label : "", std::size_t(length));
    const auto* data = static_cast<const unsigned char*>(bytes);
    if (data) {
        char line[kOrvaDumpLineSize];
        std::uint64_t offset = 0;
        for (; offset < maxShown && offset < length; offset += 16) {
            std::memset(line, ' ', 48);
            int count = 0;
            for (; count < 16 && offset + std::uint64_t(count) < length; ++count) {
                const std::size_t column = std::size_t(3 * count + (count >= 8 ? 1 : 0));
                std::snprintf(line + column, sizeof line - column, " %02x ",
                              data[offset + std::uint64_t(count)]);
            }
            // Blank from the last byte's trailing blank on, over its terminating zero.
            const std::size_t end = std::size_t(3 * count + (count > 8 ? 1 : 0));
            std::memset(line + end, ' ', 52 - end);
            line[50] = ':';
            for (int k = 0; k < count; ++k) {
                const unsigned char c = data[offset + std::uint64_t(k)];
                line[52 + k] = std::isprint(c) ? char(c) : '.';
            }
            line[52 + count] = '\0';
            OrvaSinkWrite(sink, "\t\t[0x%04lx]: %s\n", static_cast<unsigned long>(offset), line + 1);
        }
        if (offset < length)
            OrvaSinkWrite(sink, "\t\t[0x%04lx]: ...\n", static_cast<unsigned long>(offset));
    }
    if (sink.file)
        std::fclose(sink.file);
}

void OrvaLogCFType(int level, const TwValue& object, std::int32_t indent, std::int16_t noLeadingIndent) {
    if (level > g_OrvaLogMode.load(std::memory_order_relaxed))
        return;
    OrvaLogLock lock;
    OrvaSink sink = OrvaOpenLogFile();
    // Dumps never go to the console.
    if (sink.file) {
        OrvaLogCFTypeFile(sink.file, object, indent, noLeadingIndent);
        std::fclose(sink.file);
    }
}

const char* IOReturnString(std::int32_t code) {
    for (const auto& entry : kIOReturnNames)
        if (entry.code == code)
            return entry.text;
    return "UNKNOW";
}

const char* ObjectType2Str(std::uint32_t code) {
    for (const auto& entry : kObjectTypeNames)
        if (entry.code == code)
            return entry.name;
    // Shared by all callers, as the name says: each call overwrites it.
    static char s_quoted[7];
    s_quoted[0] = '\'';
    for (int i = 0; i < 4; ++i) {
        const char c = char((code >> (24 - 8 * i)) & 0xFF);
        s_quoted[1 + i] = c ? c : ' ';
    }
    s_quoted[5] = '\'';
    s_quoted[6] = '\0';
    return s_quoted;
}

const char* ICAErr2Str(std::int16_t error) {
    if (error == 0)
        return "noErr";
    const int index = kICAFirstError - error;
    if (index >= 0 && index < int(sizeof kICAErrorNames / sizeof kICAErrorNames[0]))
        return kICAErrorNames[index];
    return std::strerror(error);
}
