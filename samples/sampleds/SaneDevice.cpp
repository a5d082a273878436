#include "SaneDevice.h"

#include <sane/saneopts.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <utility>

namespace {
std::mutex g_libraryLock;
std::weak_ptr<SaneLibrary> g_library;

bool isNumberType(SANE_Value_Type type) {
    return type == SANE_TYPE_INT || type == SANE_TYPE_FIXED || type == SANE_TYPE_BOOL;
}

// A frame of the three-pass kind carries one channel: its offset in an RGB pixel.
int channelOf(SANE_Frame format) {
    switch (format) {
    case SANE_FRAME_RED:
        return 0;
    case SANE_FRAME_GREEN:
        return 1;
    case SANE_FRAME_BLUE:
        return 2;
    default:
        return -1;
    }
}
} // namespace

std::size_t SaneImage::samplesPerLine() const {
    return std::size_t(std::max(0, width)) * (format == SaneFormat::Rgb ? 3 : 1);
}

std::size_t SaneImage::packedLineBytes() const {
    return depth == 1 ? (std::size_t(std::max(0, width)) + 7) / 8 : samplesPerLine();
}

const std::uint8_t* SaneImage::line8(int y, std::vector<std::uint8_t>& scratch) const {
    const std::size_t lineBytes = depth == 16 ? 2 * samplesPerLine() : packedLineBytes();
    if (y < 0 || y >= height || bytesPerLine <= 0 || std::size_t(bytesPerLine) < lineBytes ||
        bytes.size() < std::size_t(y + 1) * std::size_t(bytesPerLine))
        return nullptr;
    const std::uint8_t* line = bytes.data() + std::size_t(y) * std::size_t(bytesPerLine);
    if (depth != 16)
        return line;
    // Samples come in the machine's own byte order.
    const std::size_t high = std::endian::native == std::endian::little ? 1 : 0;
    scratch.resize(samplesPerLine());
    for (std::size_t i = 0; i < scratch.size(); ++i)
        scratch[i] = line[2 * i + high];
    return scratch.data();
}

std::string SaneStatusText(SANE_Status status) {
    return sane_strstatus(status);
}

// ---- Library ------------------------------------------------------------------------------------

std::shared_ptr<SaneLibrary> SaneLibrary::acquire(const std::string& configDir, SaneBackends backends,
                                                  std::string* error) {
    std::lock_guard lock(g_libraryLock);
    if (auto library = g_library.lock())
        return library;
    if (backends == SaneBackends::WithTest && !configDir.empty()) {
        // SANE reads its configuration from these folders in turn; the trailing separator keeps the
        // system's folders after the sample's, whose dll.d adds the test backend.
        const char* current = std::getenv("SANE_CONFIG_DIR");
        const std::string path = configDir + ":" + (current ? current : "");
        setenv("SANE_CONFIG_DIR", path.c_str(), 1);
    } else if (backends == SaneBackends::TestOnly && !configDir.empty()) {
        // The test backend alone: looking the device up then probes no other backend, some of
        // which leave a thread cancelled inside the C library holding its locale lock, so that
        // the process hangs at exit.
        setenv("SANE_CONFIG_DIR", (configDir + "/test-only").c_str(), 1);
    }
    SANE_Int version = 0;
    const SANE_Status status = sane_init(&version, nullptr);
    if (status != SANE_STATUS_GOOD) {
        if (error)
            *error = "SANE does not start: " + SaneStatusText(status);
        return nullptr;
    }
    std::shared_ptr<SaneLibrary> library(new SaneLibrary);
    g_library = library;
    return library;
}

SaneLibrary::~SaneLibrary() {
    sane_exit();
}

std::vector<SaneDeviceEntry> SaneLibrary::devices(bool localOnly) const {
    const SANE_Device** list = nullptr;
    std::vector<SaneDeviceEntry> entries;
    if (sane_get_devices(&list, localOnly ? SANE_TRUE : SANE_FALSE) != SANE_STATUS_GOOD || !list)
        return entries;
    auto text = [](const char* s) {
        return std::string(s ? s : "");
    };
    for (; *list; ++list)
        entries.push_back(
            {text((*list)->name), text((*list)->vendor), text((*list)->model), text((*list)->type)});
    return entries;
}

// ---- Device -------------------------------------------------------------------------------------

std::unique_ptr<SaneDevice> SaneDevice::open(std::shared_ptr<SaneLibrary> library, const std::string& name,
                                             std::string* error) {
    if (!library)
        return nullptr;
    SANE_Handle handle = nullptr;
    const SANE_Status status = sane_open(name.c_str(), &handle);
    if (status != SANE_STATUS_GOOD || !handle) {
        if (error)
            *error = "cannot open the SANE device \"" + name + "\": " + SaneStatusText(status);
        return nullptr;
    }
    return std::unique_ptr<SaneDevice>(new SaneDevice(std::move(library), handle, name));
}

SaneDevice::SaneDevice(std::shared_ptr<SaneLibrary> library, SANE_Handle handle, std::string name)
    : m_library(std::move(library)), m_handle(handle), m_name(std::move(name)) {}

SaneDevice::~SaneDevice() {
    sane_cancel(m_handle);
    sane_close(m_handle);
}

int SaneDevice::find(const std::string& option, const SANE_Option_Descriptor** descriptor) const {
    // Option 0 is the number of options; the list can change after a write, so it is read anew.
    SANE_Int count = 0;
    if (sane_control_option(m_handle, 0, SANE_ACTION_GET_VALUE, &count, nullptr) != SANE_STATUS_GOOD)
        return -1;
    for (SANE_Int i = 1; i < count; ++i) {
        const SANE_Option_Descriptor* d = sane_get_option_descriptor(m_handle, i);
        if (!d || !d->name || option != d->name || !SANE_OPTION_IS_ACTIVE(d->cap))
            continue;
        if (d->type == SANE_TYPE_GROUP || d->type == SANE_TYPE_BUTTON)
            continue;
        if (descriptor)
            *descriptor = d;
        return i;
    }
    return -1;
}

bool SaneDevice::has(const std::string& option) const {
    return find(option) >= 0;
}

bool SaneDevice::settable(const std::string& option) const {
    const SANE_Option_Descriptor* d = nullptr;
    return find(option, &d) >= 0 && SANE_OPTION_IS_SETTABLE(d->cap);
}

std::optional<double> SaneDevice::number(const std::string& option) const {
    const SANE_Option_Descriptor* d = nullptr;
    const int index = find(option, &d);
    if (index < 0 || !isNumberType(d->type) || d->size < SANE_Int(sizeof(SANE_Word)))
        return std::nullopt;
    // An array option answers with all its words; the first is the value.
    std::vector<SANE_Word> words(std::size_t(d->size) / sizeof(SANE_Word) + 1);
    if (sane_control_option(m_handle, index, SANE_ACTION_GET_VALUE, words.data(), nullptr) !=
        SANE_STATUS_GOOD)
        return std::nullopt;
    return d->type == SANE_TYPE_FIXED ? SANE_UNFIX(words[0]) : double(words[0]);
}

std::optional<std::string> SaneDevice::text(const std::string& option) const {
    const SANE_Option_Descriptor* d = nullptr;
    const int index = find(option, &d);
    if (index < 0 || d->type != SANE_TYPE_STRING || d->size <= 0)
        return std::nullopt;
    std::vector<char> value(std::size_t(d->size) + 1, '\0');
    if (sane_control_option(m_handle, index, SANE_ACTION_GET_VALUE, value.data(), nullptr) !=
        SANE_STATUS_GOOD)
        return std::nullopt;
    return std::string(value.data());
}

std::optional<SaneConstraint> SaneDevice::constraint(const std::string& option) const {
    const SANE_Option_Descriptor* d = nullptr;
    if (find(option, &d) < 0)
        return std::nullopt;
    SaneConstraint c;
    auto word = [d](SANE_Word w) {
        return d->type == SANE_TYPE_FIXED ? SANE_UNFIX(w) : double(w);
    };
    switch (d->constraint_type) {
    case SANE_CONSTRAINT_RANGE:
        if (!d->constraint.range)
            return std::nullopt;
        c.min = word(d->constraint.range->min);
        c.max = word(d->constraint.range->max);
        c.quant = word(d->constraint.range->quant);
        break;
    case SANE_CONSTRAINT_WORD_LIST:
        if (!d->constraint.word_list)
            return std::nullopt;
        for (SANE_Int i = 1; i <= d->constraint.word_list[0]; ++i)
            c.numbers.push_back(word(d->constraint.word_list[i]));
        break;
    case SANE_CONSTRAINT_STRING_LIST:
        if (!d->constraint.string_list)
            return std::nullopt;
        for (const SANE_String_Const* s = d->constraint.string_list; *s; ++s)
            c.texts.emplace_back(*s);
        break;
    default:
        if (d->type == SANE_TYPE_BOOL)
            c.numbers = {0, 1};
        break;
    }
    return c;
}

std::optional<SANE_Unit> SaneDevice::unit(const std::string& option) const {
    const SANE_Option_Descriptor* d = nullptr;
    if (find(option, &d) < 0)
        return std::nullopt;
    return d->unit;
}

std::optional<SANE_Parameters> SaneDevice::parameters() const {
    SANE_Parameters p{};
    if (sane_get_parameters(m_handle, &p) != SANE_STATUS_GOOD)
        return std::nullopt;
    return p;
}

bool SaneDevice::set(const std::string& option, double value, std::string* error) {
    const SANE_Option_Descriptor* d = nullptr;
    const int index = find(option, &d);
    auto fail = [&](const std::string& why) {
        if (error)
            *error = "option " + option + ": " + why;
        return false;
    };
    if (index < 0)
        return fail("the device has no such option");
    if (!isNumberType(d->type))
        return fail("not a number option");
    if (!SANE_OPTION_IS_SETTABLE(d->cap))
        return fail("the device does not let it be set");
    if (!std::isfinite(value))
        return fail("not a number");
    std::vector<SANE_Word> words(std::max<std::size_t>(1, std::size_t(d->size) / sizeof(SANE_Word)));
    if (words.size() > 1)
        sane_control_option(m_handle, index, SANE_ACTION_GET_VALUE, words.data(), nullptr);
    words[0] = d->type == SANE_TYPE_FIXED ? SANE_FIX(value) : SANE_Word(std::lround(value));
    const SANE_Status status =
        sane_control_option(m_handle, index, SANE_ACTION_SET_VALUE, words.data(), nullptr);
    if (status != SANE_STATUS_GOOD)
        return fail(SaneStatusText(status));
    return true;
}

bool SaneDevice::set(const std::string& option, const std::string& value, std::string* error) {
    const SANE_Option_Descriptor* d = nullptr;
    const int index = find(option, &d);
    if (index >= 0 && isNumberType(d->type)) {
        if (d->type == SANE_TYPE_BOOL && (value == "yes" || value == "true"))
            return set(option, 1.0, error);
        if (d->type == SANE_TYPE_BOOL && (value == "no" || value == "false"))
            return set(option, 0.0, error);
        char* end = nullptr;
        const double number = std::strtod(value.c_str(), &end);
        if (value.empty() || !end || *end) {
            if (error)
                *error = "option " + option + ": \"" + value + "\" is not a number";
            return false;
        }
        return set(option, number, error);
    }
    auto fail = [&](const std::string& why) {
        if (error)
            *error = "option " + option + ": " + why;
        return false;
    };
    if (index < 0)
        return fail("the device has no such option");
    if (d->type != SANE_TYPE_STRING)
        return fail("takes no value");
    if (!SANE_OPTION_IS_SETTABLE(d->cap))
        return fail("the device does not let it be set");
    if (d->size <= 0 || value.size() >= std::size_t(d->size))
        return fail("\"" + value + "\" is too long");
    std::vector<char> buffer(std::size_t(d->size), '\0');
    std::memcpy(buffer.data(), value.data(), value.size());
    const SANE_Status status =
        sane_control_option(m_handle, index, SANE_ACTION_SET_VALUE, buffer.data(), nullptr);
    if (status != SANE_STATUS_GOOD)
        return fail("\"" + value + "\": " + SaneStatusText(status));
    return true;
}

SANE_Status SaneDevice::start() {
    std::lock_guard lock(m_readLock);
    if (m_started)
        return SANE_STATUS_GOOD;
    const SANE_Status status = startNow();
    m_started = status == SANE_STATUS_GOOD;
    return status;
}

SANE_Status SaneDevice::startNow() {
    m_frameStart = std::chrono::steady_clock::now();
    return sane_start(m_handle);
}

void SaneDevice::cancelFrame() {
    constexpr auto kFrameSettleTime = std::chrono::milliseconds(100);
    const auto settled = m_frameStart.load() + kFrameSettleTime;
    if (std::chrono::steady_clock::now() < settled)
        std::this_thread::sleep_until(settled);
    sane_cancel(m_handle);
}

SANE_Status SaneDevice::startFrame(SANE_Parameters& parameters) {
    SANE_Status status = std::exchange(m_started, false) ? SANE_STATUS_GOOD : startNow();
    if (status == SANE_STATUS_GOOD)
        status = sane_get_parameters(m_handle, &parameters);
    return status;
}

SaneReadResult SaneDevice::read(const std::function<void(std::uint64_t, std::uint64_t)>& progress) {
    std::lock_guard lock(m_readLock);
    m_cancelRequested = false;
    SaneReadResult result;
    SaneImage& image = result.image;
    auto fail = [&](SANE_Status status, const std::string& what) {
        result.status = status;
        result.message = what + ": " + SaneStatusText(status);
        // A frame that ends badly is cancelled, so that the next start begins a new one.
        cancelFrame();
        return result;
    };

    std::vector<std::uint8_t> buffer(64 * 1024);
    bool threePass = false;
    for (int frame = 0;; ++frame) {
        SANE_Parameters p{};
        if (SANE_Status status = startFrame(p); status != SANE_STATUS_GOOD)
            return fail(status,
                        frame == 0 ? "the scan does not start" : "the next colour frame does not start");
        const int channel = channelOf(p.format);
        if (p.pixels_per_line <= 0 || p.bytes_per_line <= 0 ||
            (p.depth != 1 && p.depth != 8 && p.depth != 16) ||
            (p.format != SANE_FRAME_GRAY && p.format != SANE_FRAME_RGB && channel < 0) ||
            (channel >= 0 && p.depth == 1))
            return fail(SANE_STATUS_UNSUPPORTED, "the device delivers a frame this data source cannot read");
        if (frame == 0) {
            threePass = channel >= 0;
            image.format = p.format == SANE_FRAME_GRAY ? SaneFormat::Gray : SaneFormat::Rgb;
            image.depth = p.depth;
            image.width = p.pixels_per_line;
            image.bytesPerLine = threePass ? p.bytes_per_line * 3 : p.bytes_per_line;
        } else if (channel < 0 || p.pixels_per_line != image.width) {
            return fail(SANE_STATUS_UNSUPPORTED, "the colour frames do not match");
        }
        // Lines may be unknown (-1, a hand scanner): the frame then grows until the device ends it.
        const std::uint64_t frameSize =
            p.lines > 0 ? std::uint64_t(p.lines) * std::uint64_t(p.bytes_per_line) : 0;
        std::vector<std::uint8_t> bytes;
        if (frameSize)
            bytes.reserve(frameSize);
        for (;;) {
            SANE_Int got = 0;
            const SANE_Status status = sane_read(m_handle, buffer.data(), SANE_Int(buffer.size()), &got);
            if (status == SANE_STATUS_EOF && m_cancelRequested)
                return fail(SANE_STATUS_CANCELLED, "the page was cancelled");
            if (status == SANE_STATUS_EOF)
                break;
            if (status != SANE_STATUS_GOOD)
                return fail(status, "reading the page stopped");
            bytes.insert(bytes.end(), buffer.begin(), buffer.begin() + std::max<SANE_Int>(0, got));
            if (progress)
                progress(bytes.size(), frameSize);
        }
        const int lines = int(bytes.size() / std::size_t(p.bytes_per_line));
        if (lines <= 0)
            return fail(SANE_STATUS_IO_ERROR, "the device delivered an empty page");
        bytes.resize(std::size_t(lines) * std::size_t(p.bytes_per_line));
        if (!threePass) {
            image.height = lines;
            image.bytes = std::move(bytes);
        } else {
            // Each pass brings one channel; they are woven into RGB rows.
            if (frame == 0) {
                image.height = lines;
                image.bytes.assign(std::size_t(image.bytesPerLine) * std::size_t(lines), 0);
            }
            const int sampleBytes = p.depth / 8;
            const int rows = std::min(lines, image.height);
            for (int y = 0; y < rows; ++y)
                for (int x = 0; x < image.width; ++x)
                    std::memcpy(&image.bytes[std::size_t(y) * std::size_t(image.bytesPerLine) +
                                             std::size_t(x * 3 + channel) * std::size_t(sampleBytes)],
                                &bytes[std::size_t(y) * std::size_t(p.bytes_per_line) +
                                       std::size_t(x) * std::size_t(sampleBytes)],
                                std::size_t(sampleBytes));
        }
        if (p.last_frame)
            break;
        if (frame >= 2)
            return fail(SANE_STATUS_UNSUPPORTED, "the device sends more than three colour frames");
    }
    return result;
}

void SaneDevice::cancel() {
    m_cancelRequested = true;
    cancelFrame();
}

void SaneDevice::finish() {
    std::lock_guard lock(m_readLock);
    m_started = false;
    cancelFrame();
}
