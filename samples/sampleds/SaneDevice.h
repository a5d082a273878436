// A SANE scanner as the sample data source uses it: the library's session, one opened device, its
// options by name, and whole frames read from it. Nothing here knows the module; SaneCapabilities
// turns what a device offers into what the module is handed.
#pragma once

#include <sane/sane.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

struct SaneDeviceEntry {
    std::string name, vendor, model, type;
};

// Which backends a session loads. Debian ships the test backend disabled; the sample's configuration
// folder enables it, added to the system's (dll.d) or alone (test-only/dll.conf).
enum class SaneBackends {
    System,   // SANE's configuration as it stands
    WithTest, // the system's and the test backend, for listing devices
    TestOnly, // the test backend alone: opening a test device probes no other backend
};

// sane_init on the first acquire, sane_exit when the last holder lets go. SANE reads where its
// configuration lies once per process, so the first session's backends hold for the process.
class SaneLibrary {
public:
    // The session, or null with a reason in *error.
    static std::shared_ptr<SaneLibrary> acquire(const std::string& configDir, SaneBackends backends,
                                                std::string* error);
    ~SaneLibrary();
    SaneLibrary(const SaneLibrary&) = delete;
    SaneLibrary& operator=(const SaneLibrary&) = delete;

    // The devices SANE finds; localOnly leaves out those on the network.
    std::vector<SaneDeviceEntry> devices(bool localOnly = false) const;

private:
    SaneLibrary() = default;
};

// The values an option accepts: a list of numbers, a range, or a list of texts.
struct SaneConstraint {
    std::vector<double> numbers;
    std::optional<double> min, max, quant;
    std::vector<std::string> texts;
};

enum class SaneFormat { Gray, Rgb };

// One scanned side: packed rows as SANE delivers them (1-bit rows most significant bit first with
// a set bit black, 8- or 16-bit grey, or RGB), top-down.
struct SaneImage {
    SaneFormat format = SaneFormat::Gray;
    int depth = 8;
    int width = 0;
    int height = 0;
    int bytesPerLine = 0;
    std::vector<std::uint8_t> bytes;

    // Samples in a line (pixels times channels) and the bytes of a line once packed to 1 or 8 bits.
    std::size_t samplesPerLine() const;
    std::size_t packedLineBytes() const;
    // Line y with 1- or 8-bit samples: the line itself, or its 16-bit samples cut to their high
    // byte in scratch. Null when the bytes do not hold that line.
    const std::uint8_t* line8(int y, std::vector<std::uint8_t>& scratch) const;
};

struct SaneReadResult {
    SANE_Status status = SANE_STATUS_GOOD;
    SaneImage image;
    std::string message; // what went wrong, when status is not good
};

class SaneDevice {
public:
    // The opened device, or null with SANE's reason in *error.
    static std::unique_ptr<SaneDevice> open(std::shared_ptr<SaneLibrary> library, const std::string& name,
                                            std::string* error);
    ~SaneDevice();
    SaneDevice(const SaneDevice&) = delete;
    SaneDevice& operator=(const SaneDevice&) = delete;

    const std::string& name() const { return m_name; }

    // True when the device has an active option of that name.
    bool has(const std::string& option) const;
    bool settable(const std::string& option) const;
    // The option's current value as a number (integers, fixed-point numbers, booleans) or text.
    std::optional<double> number(const std::string& option) const;
    std::optional<std::string> text(const std::string& option) const;
    std::optional<SaneConstraint> constraint(const std::string& option) const;
    // The unit of a number option (SANE_UNIT_MM for geometry in millimetres).
    std::optional<SANE_Unit> unit(const std::string& option) const;
    // What the next frame would be as the options stand (sizes may be estimates).
    std::optional<SANE_Parameters> parameters() const;
    // Writes the option, rounding to an integer where the option is one; false, with the reason in
    // *error, when the device refuses it. A text given to a number or boolean option is parsed.
    bool set(const std::string& option, double value, std::string* error = nullptr);
    bool set(const std::string& option, const std::string& value, std::string* error = nullptr);

    // Starts a frame and reads it whole (every frame of a three-pass colour scan). progress gets the
    // bytes read and the frame's size (0 while unknown). The status is SANE's: good, no documents at
    // the start, cancelled, jammed, ... Only one read runs at a time.
    SaneReadResult read(const std::function<void(std::uint64_t, std::uint64_t)>& progress = {});
    // Starts the next frame ahead of read(), which then reads it: a way to learn whether paper has
    // come without reading. Good when it started; no documents while the feeder is empty.
    SANE_Status start();
    // Asks the running read to stop (sane_cancel); safe from another thread.
    void cancel();
    // Ends the batch after its last frame (sane_cancel); not while a read runs on another thread.
    void finish();

private:
    SaneDevice(std::shared_ptr<SaneLibrary> library, SANE_Handle handle, std::string name);
    // The index and descriptor of an active option, or -1.
    int find(const std::string& option, const SANE_Option_Descriptor** descriptor = nullptr) const;
    SANE_Status startFrame(SANE_Parameters& parameters);
    // sane_start, noting when the frame began.
    SANE_Status startNow();
    // sane_cancel, but not in a frame's first moments. A backend that reads in a thread of its own
    // stops that thread at sane_cancel, asynchronously: stopped while it still sets itself up (in
    // the C library's allocator), it leaves a lock held, and the process hangs in the next thread
    // that ends. A frame that fails at once (a jam, an I/O error) is therefore cancelled after it
    // has been running for kFrameSettleTime.
    void cancelFrame();

    std::shared_ptr<SaneLibrary> m_library;
    SANE_Handle m_handle;
    std::string m_name;
    bool m_started = false; // a frame started by start(), not yet read
    // Set by cancel(): some devices end a cancelled frame as if it were whole.
    std::atomic_bool m_cancelRequested{false};
    std::mutex m_readLock;
    std::atomic<std::chrono::steady_clock::time_point> m_frameStart{};
};

// SANE's own words for a status.
std::string SaneStatusText(SANE_Status status);
