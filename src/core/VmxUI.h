// The interface between a data source and the scanner settings module.
//
// The data source loads the module (dlopen on Linux, a .bundle on macOS), looks up the
// exported C functions below, creates the one facade object and drives it on its GUI thread:
//
//   auto create = (VmxUICreateFn)dlsym(handle, "VmxUICreateController");
//   VmxUIController* ui = create(VMXUI_INTERFACE_VERSION); // null for a module built apart
//                                                          // from another header or library
//   ui->initWithDSBundle("/path/to/DataSource.bundle");
//   ui->setModelDef(&myModelDefinition);
//   ui->setDataWithDictionary(capabilityValues, productID);
//   ui->setCallback(&myCallback);
//   ui->showUi(true, true, false);
//   ...
//   ui->hideUi(); ui->closeDS();
//   destroy(ui);
//
// Only this header and TwValue.h are needed; the interface uses no Qt types. It does pass C++
// standard-library types (std::string, and TwValue, which is built on std::shared_ptr, std::vector
// and std::string), so the data source must be built with the same C++ standard library, of a
// compatible version, as the module: see the version handshake at the end.
//
// Values cross the interface as copies. The dictionaries given to setDataWithDictionary and
// setDataWithKeyPathValue are copied in, so the store never shares a container with the data
// source (two sections that share a sub-dictionary in the caller's tree are two dictionaries in the
// store, and the caller may change or reuse its tree afterwards); values read back through
// dataForKeyPath, DialogData(), customPaperSize and customGamme are copies, so changing them
// changes nothing in the store. Inside the module the store keeps the reference semantics of the
// platform's mutable containers.
#pragma once

#include "TwValue.h"

#include <cstdint>
#include <string>

// ---- The callback ------------------------------------------------------------------------------

// The data source's callback: an event code and one untyped data pointer, a 16-bit result.
typedef std::uint16_t (*VmxUICallback)(std::uint16_t event, void* data);

enum VmxUIEvent : std::uint16_t {
    kVmxEventSetCapability = 1,          // data: TwCapabilityRecord*
    kVmxEventStart = 2,                  // data: the dialog controller
    kVmxEventPrescan = 3,                // data: TwPreviewRecord*, zero-filled; 0 = images delivered
    kVmxEventScanCancel = 4,             // data: the dialog controller
    kVmxEventPreviewRescan = 5,          // data: TwPreviewRecord*, zero-filled; 0 = images delivered
    kVmxEventClosed = 6,                 // data: the dialog controller
    kVmxEventContinueScanPoll = 0x1000,  // data: TwPreviewRecord*; 0xFC16 = keep waiting
    kVmxEventContinueScanOpen = 0x1001,  // data: TwPreviewRecord*, zero-filled
    kVmxEventContinueScanClose = 0x1002, // data: TwPreviewRecord*
};

// Result of a polling event that asks to keep waiting (the 16-bit form of -1002).
constexpr std::uint16_t kVmxResultContinue = 0xFC16;

// ---- Records -----------------------------------------------------------------------------------

#pragma pack(push, 1)

// Event 1: one capability pushed to the scanner. Little-endian, 8 bytes.
struct TwCapabilityRecord {
    std::uint16_t capability; // TWAIN capability number
    std::uint16_t itemType;   // 5: TWTY_UINT32, 7: TWTY_FIX32
    union {
        std::uint32_t uint32;
        struct {
            std::int16_t whole;
            std::uint16_t fraction;
        } fix32;
    } value;
};
static_assert(sizeof(TwCapabilityRecord) == 8, "capability record is 8 bytes");

// One side of a prescan image, 36 bytes. The data source fills it; pDIB points at a
// device-independent bitmap (40-byte header, palette, rows padded to 4 bytes).
struct TwPreviewSide {
    std::uint32_t imageLength;
    void* pDIB;
    double colorRatio;
    double blackRatio;
    double whiteRatio;
};
static_assert(sizeof(void*) != 8 || sizeof(TwPreviewSide) == 36, "preview side is 36 bytes");

// Events 3, 5 and 0x1000 to 0x1002: front then back, 72 bytes.
struct TwPreviewRecord {
    TwPreviewSide front;
    TwPreviewSide back;
};
static_assert(sizeof(void*) != 8 || sizeof(TwPreviewRecord) == 72, "preview record is 72 bytes");

#pragma pack(pop)

// ---- Message boxes -----------------------------------------------------------------------------

// The message type: button set in the low byte, default-button swap in 0x0F00, icon in 0xF0000.
enum VmxMessageType : std::uint32_t {
    kVmxButtonsOK = 1,
    kVmxButtonsOKCancel = 2,
    kVmxButtonsYesNo = 3,
    kVmxButtonsRetryCancel = 4,
    kVmxButtonsContinueStop = 5,
    kVmxButtonSetMask = 0xFF,
    kVmxSwapMask = 0x0F00,
    kVmxIconMask = 0xF0000,
};

enum VmxMessageAnswer : int {
    kVmxAnswerOK = 10,
    kVmxAnswerCancel = 11,
    kVmxAnswerYes = 12,
    kVmxAnswerNo = 13,
    kVmxAnswerRetry = 14,
    kVmxAnswerContinue = 15,
    kVmxAnswerStop = 16,
};

// ---- Scan area ---------------------------------------------------------------------------------

// The front main scan area in millimetres, from the paper's top left corner.
struct TwPaperFrame {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

// ---- The model definition ----------------------------------------------------------------------

// Implemented by the data source: what the scanner model allows. Feeder limits are in inches.
class TwModelDefFile {
public:
    virtual ~TwModelDefFile() = default;

    // Enable rules: enable key path -> rule dictionary.
    virtual TwValue UIEnable() const = 0;
    // Choice lists: content-list name -> array of entry dictionaries.
    virtual TwValue UIOptions() const = 0;
    // Control definitions, reachable in the store as "ModelDef.UIControl.<dialog>.<control>".
    virtual TwValue UIControl() const = 0;
    // Feeder limits: dictionaries with "MinWidth", "MinHeight", "MaxWidth", "MaxHeight".
    virtual TwValue FeederADF() const = 0;
    virtual TwValue FeederFlatbed() const = 0;
    virtual double getPhysicalWidth() const = 0;
    virtual double getMinHeight() const = 0;

    // Key-value access used for the "ModelDef." key paths of the store.
    virtual TwValue valueForKey(std::string_view key) const {
        if (key == "UIEnable")
            return UIEnable();
        if (key == "UIOptions")
            return UIOptions();
        if (key == "UIControl")
            return UIControl();
        if (key == "FeederADF")
            return FeederADF();
        if (key == "FeederFlatbed")
            return FeederFlatbed();
        return {};
    }
};

// ---- The model as the data source sees it ------------------------------------------------------

class TwainDialogDataInterface {
public:
    virtual ~TwainDialogDataInterface() = default;
    virtual TwValue valueForKeyPath(std::string_view keyPath) = 0;
    // Pushes the setting at the key path to the scanner as event 1, when the key path is one of
    // the capability map ("Data.ImageType", "Data.Resolution").
    virtual void UpdateCapData(std::string_view keyPath, const TwValue& value) = 0;
};

// ---- The facade --------------------------------------------------------------------------------

class VmxUIController {
public:
    virtual ~VmxUIController() = default;

    virtual void initWithDSBundle(const std::string& bundlePath) = 0;
    virtual void setModelDef(TwModelDefFile* modelDef) = 0;
    virtual void setModelName(const std::string& name) = 0;
    virtual std::string modelName() const = 0;
    // Rebuilds the settings model from the capability values (section name or key path -> value).
    virtual void setDataWithDictionary(const TwValue& dictionary, std::uint32_t productID) = 0;
    virtual void setCallback(VmxUICallback callback) = 0;
    // Replaces the choice lists (content-list name -> array of entry dictionaries).
    virtual void setUIContents(const TwValue& contents) = 0;
    virtual void readLastData() = 0;
    virtual TwValue dataForKeyPath(const std::string& keyPath) = 0;
    // Key path -> value; each key is written as one change.
    virtual void setDataWithKeyPathValue(const TwValue& keyPathValues) = 0;
    // The model, for UpdateCapData; null before setDataWithDictionary or after closeDS.
    virtual TwainDialogDataInterface* DialogData() = 0;

    // The user's custom papers (array of dictionaries with "Name", "Width", "Length" in mm).
    virtual TwValue customPaperSize() = 0;
    // The custom gamma of that name for colour or gray images, or null.
    virtual TwValue customGamme(const std::string& name, bool isColor) = 0;
    // The front main scan area; setting it sets the back area's start too.
    virtual void setPaperFrame(const TwPaperFrame& frame) = 0;
    virtual void getPaperFrame(TwPaperFrame* frame) = 0;

    virtual void showUi(bool show, bool modal, bool onlyUI) = 0;
    virtual void startModal() = 0;
    virtual void stopModal() = 0;
    virtual void hideUi() = 0;
    virtual void closeDS() = 0;

    virtual bool showIndicators() const = 0;
    virtual void setShowIndicators(bool show) = 0;

    // Message boxes, the continue-scan question and progress; callable from any thread.
    virtual int showMessageBox(const std::string& message, const std::string& titleKey,
                               std::uint32_t messageType) = 0;
    virtual int showMessageBox(const std::string& message, const std::string& titleKey,
                               std::uint32_t messageType, std::uint16_t callbackEvent,
                               std::uint32_t timeIntervalMs) = 0;
    virtual int showContinueScanDialog(std::uint16_t value) = 0;
    virtual void showProgressDialog() = 0;
    virtual void hideProgressDialog() = 0;
    // Progress record of 32-bit unsigned values: maximum at byte 4, value at byte 8.
    virtual void setProgress(const void* progressRecord) = 0;

    virtual std::string localizedString(const std::string& key) = 0;
    virtual std::string localizedString(const std::string& key, const std::string& defualt) = 0;
    virtual std::string localizedStringNoEmpty(const std::string& key) = 0;

    // For a host without a Qt event loop of its own: runs the module's GUI event loop for up to
    // maxTimeMs milliseconds, waiting for events meanwhile. Call it from the thread that showed
    // the dialog, again and again while the dialog is up (modal or not).
    virtual void processEvents(std::uint32_t maxTimeMs) = 0;

    // For scripts and demos. Runs a button action of the shown dialog as if its button had been
    // pressed ("onOK", "onCancel", "onStart", ...); false when no dialog is shown or the name is
    // not an action.
    virtual bool performDialogAction(const std::string& action) = 0;
    // Saves a PNG picture of the shown dialog, with the tab of that identifier ("Basic", "Area",
    // ...) in front when one is named; without a tab, an open prescan preview is in the picture
    // too, beside the dialog as on the screen. False when nothing is shown, the dialog has no such
    // tab or the file can't be written.
    virtual bool saveDialogPicture(const std::string& pngPath, const std::string& tabIdentifier) = 0;
};

// ---- The module's exported entry points and their version -------------------------------------
//
// A data source and a module are built apart, but this interface hands C++ objects across: virtual
// calls, std::string, and TwValue (std::shared_ptr, std::vector, std::variant). Both sides must
// therefore have been built from the same revision of this header and with the same C++ standard
// library. VMXUI_INTERFACE_VERSION says both: the header's revision in the high 16 bits, the
// standard library in the low 16 (1: libstdc++ with its C++11 string, 2: libstdc++ with the old
// string, 3: libc++, 0: another).
//
// The rule: any change to this header that changes what crosses the interface (a record's layout,
// an event, a virtual function added, removed, reordered or given another signature, a type the
// calls pass) raises VMXUI_INTERFACE_REVISION. Comments and new constants do not.
//
// The handshake: the module exports VmxUIInterfaceVersion() beside the factory. A data source may
// ask it before creating anything and compare it with its own VMXUI_INTERFACE_VERSION; in any
// case it passes its VMXUI_INTERFACE_VERSION to the factory, which returns null, with a line in
// the diagnostic log and on standard error, when the two differ:
//
//   auto version = (VmxUIInterfaceVersionFn)dlsym(handle, VMXUI_VERSION_SYMBOL);
//   if (!version || version() != VMXUI_INTERFACE_VERSION) { /* refuse to load this module */ }
//   VmxUIController* ui = create(VMXUI_INTERFACE_VERSION);

#define VMXUI_INTERFACE_REVISION 1

#if defined(_LIBCPP_VERSION)
#define VMXUI_STANDARD_LIBRARY 3
#elif defined(__GLIBCXX__) && defined(_GLIBCXX_USE_CXX11_ABI) && _GLIBCXX_USE_CXX11_ABI
#define VMXUI_STANDARD_LIBRARY 1
#elif defined(__GLIBCXX__)
#define VMXUI_STANDARD_LIBRARY 2
#else
#define VMXUI_STANDARD_LIBRARY 0
#endif

#define VMXUI_INTERFACE_VERSION ((std::uint32_t{VMXUI_INTERFACE_REVISION} << 16) | VMXUI_STANDARD_LIBRARY)

extern "C" {
typedef std::uint32_t (*VmxUIInterfaceVersionFn)();
// Null when interfaceVersion is not the module's VMXUI_INTERFACE_VERSION (or the facade cannot be
// made).
typedef VmxUIController* (*VmxUICreateFn)(std::uint32_t interfaceVersion);
typedef void (*VmxUIDestroyFn)(VmxUIController*);
}

#define VMXUI_VERSION_SYMBOL "VmxUIInterfaceVersion"
#define VMXUI_CREATE_SYMBOL "VmxUICreateController"
#define VMXUI_DESTROY_SYMBOL "VmxUIDestroyController"
