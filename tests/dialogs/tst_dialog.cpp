// The settings dialog driven through the facade with the sample scanner: the tabs the model
// definition leaves, settings-only mode, the button actions and what they send and save, the
// modal-run flags, binding without leftovers, progress, help, and calls from other threads.
#include "DialogTestSupport.h"
#include "OrvaDebug.h"
#include "SampleModelDef.h"
#include "TwApplication.h"
#include "TwDlgMain.h"
#include "TwDlgScanning.h"
#include "TwEditCommit.h"
#include "TwMessageBox.h"
#include "TwPlist.h"
#include "TwPreferences.h"
#include "TwResponderBinding.h"
#include "TwainDialogController.h"
#include "TwainDialogData.h"
#include "TwainView.h"
#include "VmxUIControllerImpl.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QInputDialog>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace {

const std::string kBundle = SAMPLE_BUNDLE_DIR;
const char* const kDomain = "com.orvanic.vmx.sampleds";

struct Event {
    std::uint16_t code;
    void* data;
};
std::vector<Event> g_events;
std::uint16_t g_prescanResult = 0;
TwPreviewRecord g_prescanImages{};
std::vector<std::uint16_t> g_pollAnswers;

std::uint16_t recordEvent(std::uint16_t event, void* data) {
    g_events.push_back({event, data});
    if ((event == kVmxEventPrescan || event == kVmxEventPreviewRescan) && data) {
        std::memcpy(data, &g_prescanImages, sizeof g_prescanImages);
        return g_prescanResult;
    }
    if (event == 0x4242) {
        if (g_pollAnswers.empty())
            return kVmxResultContinue;
        std::uint16_t r = g_pollAnswers.front();
        g_pollAnswers.erase(g_pollAnswers.begin());
        return r;
    }
    return 0;
}

std::vector<std::uint16_t> codes() {
    std::vector<std::uint16_t> out;
    for (auto& e : g_events)
        out.push_back(e.code);
    return out;
}

// The sample's definition with the main-dialog entries the test wants.
class ShapedModelDef : public TwModelDefFile {
public:
    SampleModelDef base{TwValue()};
    TwValue mainDialog = TwValue::dictionary();

    TwValue UIEnable() const override { return base.UIEnable(); }
    TwValue UIOptions() const override { return base.UIOptions(); }
    TwValue UIControl() const override {
        TwValue control = base.UIControl().deepCopy();
        control.dict()->set("MainDialog", mainDialog);
        return control;
    }
    TwValue FeederADF() const override { return base.FeederADF(); }
    TwValue FeederFlatbed() const override { return base.FeederFlatbed(); }
    double getPhysicalWidth() const override { return base.getPhysicalWidth(); }
    double getMinHeight() const override { return base.getMinHeight(); }

    void setTab(const char* id, const TwValue& entry) { mainDialog.dict()->set(id, entry); }
};

// A 2 x 2 bitmap with the given bit count and resolution, made with malloc as a data source does.
void* makeBitmap(std::uint16_t bitCount, std::int32_t pelsPerMetre, std::uint32_t* length) {
    *length = 40 + 64;
    auto* p = static_cast<unsigned char*>(std::calloc(1, *length));
    std::uint32_t size = 40;
    std::int32_t width = 2, height = 2;
    std::memcpy(p, &size, 4);
    std::memcpy(p + 4, &width, 4);
    std::memcpy(p + 8, &height, 4);
    std::memcpy(p + 14, &bitCount, 2);
    std::memcpy(p + 24, &pelsPerMetre, 4);
    std::memcpy(p + 28, &pelsPerMetre, 4);
    return p;
}

std::uint32_t pixelOffset(const QByteArray& file) {
    std::uint32_t offset = 0;
    std::memcpy(&offset, file.constData() + 10, 4);
    return offset;
}

} // namespace

// A panel whose OK action accepts, for the modal protocol.
class AcceptingPanel : public TwPanel {
public:
    int binds = 0;
    void bindControlAll() override {
        ++binds;
        TwPanel::bindControlAll();
    }
    void onOK() {
        setReturnCode(1);
        close();
    }
};

class TestDialog : public QObject {
    Q_OBJECT
    ShapedModelDef def;
    TwValue capabilities;
    std::vector<TwMessageBoxSpec> boxes;
    int boxAnswer = kVmxAnswerOK;

    std::unique_ptr<VmxUIControllerImpl> loaded() {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        OrvaSetLogPaths(nullptr, nullptr);
        ui->initWithDSBundle(kBundle);
        ui->setModelDef(&def);
        ui->setModelName("Sample VMX-S");
        ui->setDataWithDictionary(capabilities.deepCopy(), 0);
        ui->setCallback(&recordEvent);
        return ui;
    }
    static TwDlgMain* window(VmxUIControllerImpl& ui) {
        return ui.controllerIfMade() ? ui.controllerIfMade()->windowIfLoaded() : nullptr;
    }
    static TwValue stored(const char* key) { return TwPreferences(kDomain).copyValue(key); }
    void useRecordedBoxes() {
        TwSetMessageBoxRunner([this](const TwMessageBoxSpec& s) {
            boxes.push_back(s);
            return boxAnswer;
        });
    }

private slots:
    void initTestCase() {
        OrvaSetLogPaths(nullptr, nullptr);
        std::string error;
        def.base = SampleModelDef::fromFile(kBundle + "/Contents/Resources/ModelDef.plist", &error);
        QVERIFY2(error.empty(), error.c_str());
        def.mainDialog = def.base.UIControl().dict()->value("MainDialog").deepCopy();
        QVERIFY(def.mainDialog.isDictionary());
        capabilities = TwPlistReadFile(kBundle + "/Contents/Resources/Capabilities.plist", &error);
        QVERIFY2(capabilities.isDictionary(), error.c_str());
    }

    void init() {
        // Every case starts with no saved settings.
        QDir(QString::fromLocal8Bit(qgetenv("XDG_CONFIG_HOME"))).removeRecursively();
        def.mainDialog = def.base.UIControl().dict()->value("MainDialog").deepCopy();
        g_events.clear();
        g_prescanResult = 0;
        g_prescanImages = {};
        boxes.clear();
        boxAnswer = kVmxAnswerOK;
        TwSetMessageBoxRunner({});
        TwainDialogController::setUrlOpener({});
    }

    // ---- Tabs ----

    void aHiddenTabIsGoneAndTheOthersRemain() {
        def.setTab("Layout", TwValue::dictionary({{"hidden", true}}));
        def.setTab("Feed", TwValue::dictionary({{"hidden", 1}, {"localizedText", "Never shown"}}));
        def.setTab("Area", TwValue::dictionary({{"hidden", "yes"}})); // not a number: shown
        def.setTab("Basic", TwValue::dictionary({{"hidden", false}, {"localizedText", "Main"}}));
        auto ui = loaded();
        ui->showUi(true, false, false);
        TwDlgMain* w = window(*ui);
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->tabIdentifiers(), (QStringList{"Basic", "Common", "BinaryImage", "GrayImage",
                                                   "ColorImage", "Area", "ControlSheet"}));
        QCOMPARE(w->tableMain()->tabText(0), QStringLiteral("Main"));
        QCOMPARE(w->tableMain()->tabText(1), QStringLiteral("Image Processing")); // from the sample
        QCOMPARE(w->tableMain()->currentIndex(), 0);
        QCOMPARE(w->view("Layout")->responderBinding(), nullptr);
        QVERIFY(w->view("Area")->responderBinding() != nullptr);

        // The next showing starts again from the full set with the form's labels.
        ui->hideUi();
        def.mainDialog = def.base.UIControl().dict()->value("MainDialog").deepCopy();
        def.setTab("ControlSheet", TwValue::dictionary({{"hidden", true}}));
        ui->setDataWithDictionary(capabilities.deepCopy(), 0);
        ui->showUi(true, false, false);
        QCOMPARE(w->tabIdentifiers(), (QStringList{"Basic", "Common", "Layout", "BinaryImage", "GrayImage",
                                                   "ColorImage", "Feed", "Area"}));
        QCOMPARE(w->tableMain()->tabText(0), w->view("Basic")->windowTitle());
        ui->hideUi();
    }

    void everyTabIsBoundWhileShownAndNothingIsLeftAfter() {
        auto ui = loaded();
        auto* model = ui->model().get();
        const std::size_t own = model->observationCount();
        ui->showUi(true, false, false);
        TwDlgMain* w = window(*ui);
        const std::size_t shown = model->observationCount();
        QVERIFY(shown > own + 20);
        for (const QString& id : w->tabIdentifiers())
            QVERIFY2(w->view(id)->responderBinding() && !w->view(id)->responderBinding()->bindings().empty(),
                     qPrintable(id));
        QCOMPARE(w->cmbSettingNames()->currentText(), QStringLiteral("Untitled"));

        ui->hideUi();
        QVERIFY(!w->isVisible());
        QCOMPARE(model->observationCount(), own);

        // Bound again: as many observations as the first time, and none after.
        ui->showUi(true, false, false);
        QCOMPARE(model->observationCount(), shown);
        w->bindControlAll(); // binding twice in a row replaces, never doubles
        QCOMPARE(model->observationCount(), shown);
        ui->hideUi();
        QCOMPARE(model->observationCount(), own);
    }

    // ---- Modes and flags ----

    void settingsOnlyEnablesOKAndDisablesScan() {
        auto ui = loaded();
        ui->showUi(true, false, true);
        TwDlgMain* w = window(*ui);
        QVERIFY(w->btnOK()->isEnabled());
        QVERIFY(!w->btnStart()->isEnabled());
        ui->hideUi();
        ui->showUi(true, false, false);
        QVERIFY(!w->btnOK()->isEnabled());
        QVERIFY(w->btnStart()->isEnabled());
        QCOMPARE(w->windowTitle(), QStringLiteral("Sample VMX-S"));
        ui->hideUi();
    }

    void showUiWithShowFalseSetsTheFlagsOnly() {
        auto ui = loaded();
        ui->showUi(false, true, true);
        auto* c = ui->controllerIfMade();
        QVERIFY(c);
        QVERIFY(c->isModal());
        QVERIFY(c->uiOnly());
        QVERIFY(!ui->isShow());
        QVERIFY(ui->isShowModal());
        QCOMPARE(c->windowIfLoaded(), nullptr);
        QCOMPARE(TwApplication::modalWindow(), nullptr);
        QVERIFY(g_events.empty());
    }

    void startModalTwiceStartsOneRun() {
        auto ui = loaded();
        const int before = TwApplication::modalRunsStarted();
        ui->showUi(true, true, false);
        TwDlgMain* w = window(*ui);
        QCOMPARE(TwApplication::modalRunsStarted(), before + 1);
        QVERIFY(ui->isShowModal());
        QCOMPARE(TwApplication::modalWindow(), w);
        QCOMPARE(w->windowModality(), Qt::ApplicationModal);
        ui->startModal();
        QCOMPARE(TwApplication::modalRunsStarted(), before + 1);

        ui->stopModal();
        QVERIFY(!ui->isShowModal());
        QCOMPARE(TwApplication::modalWindow(), nullptr);
        QCOMPARE(ui->wakeUpsPosted(), 1);
        // The window is no longer modal once the loop has turned.
        QTRY_COMPARE(w->windowModality(), Qt::NonModal);
        QVERIFY(w->isVisible());
        ui->hideUi();
    }

    void stopModalOnAModelessDialogDoesNothingMore() {
        auto ui = loaded();
        const int before = TwApplication::modalRunsStarted();
        ui->showUi(true, false, false);
        QCOMPARE(TwApplication::modalRunsStarted(), before);
        ui->stopModal();
        QCOMPARE(ui->wakeUpsPosted(), 0);
        QCOMPARE(window(*ui)->windowModality(), Qt::NonModal);
        ui->hideUi();
        QCOMPARE(ui->wakeUpsPosted(), 0);
    }

    // ---- OK, Cancel, Scan ----

    void okSavesTheUntitledProfileAndSendsEvent6() {
        auto ui = loaded();
        ui->showUi(true, true, true);
        TwDlgMain* w = window(*ui);
        ui->setDataWithKeyPathValue(TwValue::dictionary({{"Data.Resolution", 400}}));
        QVERIFY(stored("untitle profile").isNull());
        QTest::mouseClick(w->btnOK(), Qt::LeftButton);
        QCOMPARE(codes(), std::vector<std::uint16_t>{kVmxEventClosed});
        QCOMPARE(g_events[0].data, static_cast<void*>(ui->controllerIfMade()));
        TwValue saved = stored("untitle profile");
        QVERIFY(saved.isDictionary());
        QCOMPARE(saved.dict()->value("Resolution"), TwValue(400));
        // The modal run ended with OK; the window stays until the data source hides it.
        QVERIFY(!ui->controllerIfMade()->isModal());
        QCOMPARE(TwApplication::modalWindow(), nullptr);
        QVERIFY(w->isVisible());
        ui->hideUi();
        QVERIFY(!w->isVisible());
    }

    void cancelSendsEvent6WithoutSaving() {
        auto ui = loaded();
        ui->showUi(true, true, true);
        TwDlgMain* w = window(*ui);
        ui->setDataWithKeyPathValue(TwValue::dictionary({{"Data.Resolution", 400}}));
        QTest::mouseClick(w->btnCancel(), Qt::LeftButton);
        QCOMPARE(codes(), std::vector<std::uint16_t>{kVmxEventClosed});
        QVERIFY(stored("untitle profile").isNull());
        QVERIFY(!ui->controllerIfMade()->isModal());
        ui->hideUi();
    }

    void aRejectedEntryStopsOKScanAndSave() {
        QStringList alerts;
        TwSetFormatterAlert([&](QWidget*, const QString& message) { alerts << message; });
        auto ui = loaded();
        ui->showUi(true, false, true);
        TwDlgMain* w = window(*ui);
        w->tableMain()->setCurrentIndex(w->tabIdentifiers().indexOf(QStringLiteral("Area")));
        auto* width = w->view(QStringLiteral("Area"))->findChild<QLineEdit*>(QStringLiteral("txtWidth"));
        QVERIFY(width && width->isVisible());
        width->setFocus();
        width->selectAll();
        QTest::keyClicks(width, QStringLiteral("9999")); // wider than any paper
        bool prompted = false;
        ui->controllerIfMade()->setNamePrompt([&](const QStringList&) -> std::optional<QString> {
            prompted = true;
            return QStringLiteral("Never");
        });
        QTest::mouseClick(w->btnOK(), Qt::LeftButton);
        ui->controllerIfMade()->onStart();
        ui->controllerIfMade()->onSaveSetting();
        QVERIFY(g_events.empty());
        QVERIFY(!prompted);
        QVERIFY(stored("untitle profile").isNull());
        QCOMPARE(alerts.size(), 3);
        QCOMPARE(w->focusWidget(), width);

        // A valid entry lets OK through.
        width->selectAll();
        QTest::keyClicks(width, QStringLiteral("100"));
        QTest::mouseClick(w->btnOK(), Qt::LeftButton);
        QCOMPARE(codes(), std::vector<std::uint16_t>{kVmxEventClosed});
        TwSetFormatterAlert({});
        ui->hideUi();
    }

    void theCloseBoxAndEscapeAreCancelAndKeepTheWindow() {
        auto ui = loaded();
        ui->showUi(true, false, false);
        TwDlgMain* w = window(*ui);
        w->performClose();
        QTest::keyClick(w, Qt::Key_Escape);
        QCOMPARE(codes(), (std::vector<std::uint16_t>{kVmxEventClosed, kVmxEventClosed}));
        QVERIFY(w->isVisible());
        ui->hideUi();
    }

    void scanSavesAndSendsEvent2() {
        auto ui = loaded();
        ui->showUi(true, false, false);
        TwDlgMain* w = window(*ui);
        ui->setDataWithKeyPathValue(TwValue::dictionary({{"Data.Resolution", 200}}));
        QTest::mouseClick(w->btnStart(), Qt::LeftButton);
        QCOMPARE(codes(), std::vector<std::uint16_t>{kVmxEventStart});
        QCOMPARE(stored("untitle profile").dict()->value("Resolution"), TwValue(200));
        QVERIFY(!ui->controllerIfMade()->isNoStopScan());
        ui->hideUi();
    }

    void withoutCallbackTheActionsDoTheirLocalSteps() {
        auto ui = loaded();
        ui->setCallback(nullptr);
        ui->showUi(true, false, true);
        TwDlgMain* w = window(*ui);
        QTest::mouseClick(w->btnOK(), Qt::LeftButton);
        QTest::mouseClick(w->btnPrescan(), Qt::LeftButton);
        QVERIFY(g_events.empty());
        QVERIFY(stored("untitle profile").isDictionary());
        QVERIFY(ui->controllerIfMade()->isNoStopScan());
        ui->hideUi();
    }

    void tabButtonsRunTheirActionsAndGammaTagsOutOfRangeDoNothing() {
        QTemporaryDir dir;
        const QString logFile = dir.filePath(QStringLiteral("trace.log"));
        QFile(logFile).open(QIODevice::WriteOnly);
        auto ui = loaded();
        OrvaSetLogPaths(logFile.toLocal8Bit().constData(), nullptr);
        OrvaSetLogLevel(kOrvaLogDebug);
        ui->showUi(true, false, false);
        ui->hideUi();
        ui->showUi(true, false, false); // bound twice, connected once
        TwDlgMain* w = window(*ui);
        auto* custom = w->view(QStringLiteral("Basic"))->findChild<QPushButton*>(QStringLiteral("btnCustom"));
        QVERIFY(custom && custom->isEnabled());
        custom->click();
        QPushButton gamma;
        for (int tag : {3, -1, 2}) {
            gamma.setProperty("tag", tag);
            ui->controllerIfMade()->onCustomGamma(&gamma);
        }
        ui->controllerIfMade()->onCustomGamma(nullptr);
        ui->hideUi();
        OrvaSetLogPaths(nullptr, nullptr);
        QFile file(logFile);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString trace = QString::fromUtf8(file.readAll());
        QCOMPARE(trace.count(QStringLiteral("onCustomPaperSize: the custom paper-size dialog")), 1);
        QCOMPARE(trace.count(QStringLiteral("custom gamma dialog for")), 1);
        QVERIFY(trace.contains(QStringLiteral("custom gamma dialog for temp.ColorImage.Gamma")));
    }

    // ---- Settings ----

    void savingASettingAddsAndSelectsIt() {
        auto ui = loaded();
        ui->showUi(true, false, false);
        auto* c = ui->controllerIfMade();
        QStringList offered;
        c->setNamePrompt([&](const QStringList& names) -> std::optional<QString> {
            offered = names;
            return QStringLiteral("  Letters 300  ");
        });
        const int before = ui->model()->ProfileCount();
        QTest::mouseClick(window(*ui)->btnSave(), Qt::LeftButton);
        QCOMPARE(ui->model()->ProfileCount(), before + 1);
        QVERIFY(ui->model()->IsProfileExist("Letters 300"));
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Letters 300"));
        QCOMPARE(offered.size(), before);
        QVERIFY(stored("profiles").list());
        ui->hideUi();
    }

    void theNamePromptIsAnInputDialogUntilTheNameDialogExists() {
        auto ui = loaded();
        ui->showUi(true, false, false);
        auto timer = whenModal<QInputDialog>([](QInputDialog* d) {
            d->setTextValue(QStringLiteral("From the prompt"));
            d->accept();
        });
        ui->controllerIfMade()->onSaveSetting();
        QVERIFY(ui->model()->IsProfileExist("From the prompt"));
        auto cancel = whenModal<QInputDialog>([](QInputDialog* d) {
            d->setTextValue(QStringLiteral("Never"));
            d->reject();
        });
        ui->controllerIfMade()->onSaveSetting();
        QVERIFY(!ui->model()->IsProfileExist("Never"));
        ui->hideUi();
    }

    void aBlankNameIsRefused() {
        useRecordedBoxes();
        auto ui = loaded();
        ui->showUi(true, false, false);
        ui->controllerIfMade()->setNamePrompt([](const QStringList&) { return QStringLiteral("   "); });
        const int before = ui->model()->ProfileCount();
        ui->controllerIfMade()->onSaveSetting();
        QCOMPARE(ui->model()->ProfileCount(), before);
        QCOMPARE(boxes.size(), std::size_t(1));
        QCOMPARE(boxes[0].message, QStringLiteral("Please enter a name."));
        QCOMPARE(boxes[0].messageType, 0x20001u);
        QCOMPARE(boxes[0].icon, QMessageBox::Warning);
        ui->hideUi();
    }

    void aFiftyFirstSettingIsRefusedButAnExistingNameIsSaved() {
        useRecordedBoxes();
        auto ui = loaded();
        auto* model = ui->model().get();
        for (int i = model->ProfileCount(); i < 50; ++i)
            model->AddCustomProfile("Setting " + std::to_string(i));
        QCOMPARE(model->ProfileCount(), 50);
        ui->showUi(true, false, false);
        auto* c = ui->controllerIfMade();
        c->setNamePrompt([](const QStringList&) { return QStringLiteral("One too many"); });
        c->onSaveSetting();
        QCOMPARE(model->ProfileCount(), 50);
        QVERIFY(!model->IsProfileExist("One too many"));
        QCOMPARE(boxes.size(), std::size_t(1));
        QVERIFY(boxes[0].message.startsWith(QStringLiteral("No more items can be saved")));

        c->setNamePrompt([](const QStringList&) { return QStringLiteral("setting 7"); }); // another case
        c->onSaveSetting();
        QCOMPARE(boxes.size(), std::size_t(1));
        QCOMPARE(model->ProfileCount(), 50);
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("setting 7"));
        ui->hideUi();
    }

    void theUntitledSettingCannotBeDeleted() {
        useRecordedBoxes();
        auto ui = loaded();
        ui->showUi(true, false, false);
        const int before = ui->model()->ProfileCount();
        QCOMPARE(ui->dataForKeyPath("profiles.name"), ui->dataForKeyPath("profiles.temporary"));
        QTest::mouseClick(window(*ui)->btnDelete(), Qt::LeftButton);
        QCOMPARE(boxes.size(), std::size_t(1));
        QCOMPARE(boxes[0].message, QStringLiteral("The untitled setting cannot be deleted."));
        QCOMPARE(ui->model()->ProfileCount(), before);
        ui->hideUi();
    }

    void deletingAsksFirstAndCancelKeepsTheSetting() {
        useRecordedBoxes();
        auto ui = loaded();
        ui->model()->AddCustomProfile("Receipts");
        ui->showUi(true, false, false);
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Receipts"));
        boxAnswer = kVmxAnswerCancel;
        ui->controllerIfMade()->onDeleteSetting();
        QVERIFY(ui->model()->IsProfileExist("Receipts"));
        QCOMPARE(boxes.size(), std::size_t(1));
        QCOMPARE(boxes[0].message,
                 QStringLiteral("Are you sure you want to delete the setting \"Receipts\"?"));
        QCOMPARE(boxes[0].messageType, 0x40002u);
        QCOMPARE(boxes[0].buttons.size(), std::size_t(2));

        boxAnswer = kVmxAnswerOK;
        ui->controllerIfMade()->onDeleteSetting();
        QVERIFY(!ui->model()->IsProfileExist("Receipts"));
        ui->hideUi();
    }

    void defaultRestoresTheFactorySetting() {
        auto ui = loaded();
        ui->showUi(true, false, false);
        TwValue factory = ui->dataForKeyPath("Default.Resolution");
        ui->setDataWithKeyPathValue(
            TwValue::dictionary({{"Data.Resolution", factory.intValue() == 400 ? 200 : 400}}));
        ui->setDataWithKeyPathValue(TwValue::dictionary({{"Customize.BorderRemoval.left", 99}}));
        QTest::mouseClick(window(*ui)->btnDefault(), Qt::LeftButton);
        QCOMPARE(ui->dataForKeyPath("Data.Resolution"), factory);
        QCOMPARE(ui->dataForKeyPath("Customize.BorderRemoval.left").intValue(), 30);
        ui->hideUi();
    }

    // ---- Prescan images ----

    void bitmapFilesGetThePixelOffsetOfTheirDepth() {
        for (auto [bits, offset] : {std::pair{8, 1078u}, std::pair{1, 62u}, std::pair{24, 54u}}) {
            std::uint32_t length = 0;
            void* dib = makeBitmap(std::uint16_t(bits), 11811, &length);
            QByteArray file = TwainDialogController::CreateImage(dib, length);
            QCOMPARE(file.size(), qsizetype(length + 14));
            QCOMPARE(file.left(2), QByteArray("BM"));
            QCOMPARE(pixelOffset(file), offset);
            QCOMPARE(std::memcmp(file.constData() + 14, dib, length), 0);
            std::free(dib);
        }
    }

    void brokenBitmapsAreRefused() {
        QVERIFY(TwainDialogController::CreateImage(nullptr, 100).isEmpty());
        std::uint32_t length = 0;
        void* dib = makeBitmap(8, 0, &length);
        QVERIFY(TwainDialogController::CreateImage(dib, 20).isEmpty()); // shorter than a header
        std::uint32_t hugeHeader = 4000;
        std::memcpy(dib, &hugeHeader, 4);
        QVERIFY(TwainDialogController::CreateImage(dib, length).isEmpty());  // header beyond the data
        QVERIFY(!TwainDialogController::bitmapSizeMillimetres(dib, length)); // no resolution
        std::free(dib);
        dib = makeBitmap(24, 11811, &length); // 300 dpi
        auto size = TwainDialogController::bitmapSizeMillimetres(dib, length);
        QVERIFY(size);
        QCOMPARE(size->first, 0.2); // 2 px at 300 dpi = 0.17 mm, in tenths: 2
        std::free(dib);
    }

    void prescanSendsEvent3AndTakesOverTheImages() {
        auto ui = loaded();
        ui->showUi(true, false, false);
        std::uint32_t frontLength = 0, backLength = 0;
        g_prescanImages.front.pDIB = makeBitmap(24, 3937, &frontLength);
        g_prescanImages.front.imageLength = frontLength;
        g_prescanImages.back.pDIB = makeBitmap(8, 0, &backLength); // no resolution: still freed
        g_prescanImages.back.imageLength = backLength;
        QTest::mouseClick(window(*ui)->btnPrescan(), Qt::LeftButton);
        QCOMPARE(codes(), std::vector<std::uint16_t>{kVmxEventPrescan});
        QVERIFY(ui->controllerIfMade()->isNoStopScan());
        QVERIFY(stored("untitle profile").isDictionary());
        // The images were freed by the module (the sanitizer build would report a leak otherwise).
        TwPreviewRecord record{};
        record.front.pDIB = std::malloc(8); // too short to be a bitmap: refused, still freed
        record.front.imageLength = 8;
        ui->controllerIfMade()->setPreviewImages(&record);
        QCOMPARE(record.front.pDIB, nullptr);
        ui->hideUi();
    }

    void aRescanSendsEvent5AndTakesOverTheImages() {
        auto ui = loaded();
        ui->showUi(true, false, false);
        std::uint32_t length = 0;
        g_prescanImages.front.pDIB = makeBitmap(24, 3937, &length);
        g_prescanImages.front.imageLength = length;
        // The module frees the delivered image (the sanitizer build would report a leak).
        ui->controllerIfMade()->previewRescan();
        QCOMPARE(codes(), std::vector<std::uint16_t>{kVmxEventPreviewRescan});
        g_prescanImages = {};
        ui->setCallback(nullptr);
        ui->controllerIfMade()->previewRescan();
        QCOMPARE(g_events.size(), std::size_t(1));
        ui->hideUi();
    }

    void helpIsRegisteredFromTheFirstBundleThatHasABook() {
        TwainDialogController c;
        QVERIFY(
            !c.registerHelp({QStringLiteral("/nonexistent"), QString::fromStdString(kBundle) + "/Contents"}));
        QVERIFY(c.registerHelp({QStringLiteral("/nonexistent"), QString::fromStdString(kBundle)}));
        QCOMPARE(c.helpBookName(), QStringLiteral("Orvanic VMX-S Scanner Help"));
    }

    // ---- Progress ----

    void theProgressPanelFollowsTheScan() {
        auto ui = loaded();
        ui->showUi(true, false, false);
        auto* c = ui->controllerIfMade();
        c->onPrescan(); // prescans hide the stop button
        ui->showProgressDialog();
        TwDlgScanning* panel = c->scanningPanel();
        QVERIFY(panel && panel->isVisible());
        QVERIFY(panel->btnStop()->isHidden());
        QVERIFY(panel->isAnimating());
        QCOMPARE(panel->windowModality(), Qt::WindowModal);

        std::uint32_t record[3] = {0, 120, 30};
        ui->setProgress(record);
        QCOMPARE(panel->progressIndicator()->maximum(), 120);
        QCOMPARE(panel->progressIndicator()->value(), 30);
        ui->setProgress(nullptr);
        QCOMPARE(panel->progressValue(), 0u);
        QCOMPARE(panel->progressMax(), 100u);
        std::uint32_t empty[3] = {0, 0, 0};
        ui->setProgress(empty);
        QVERIFY(panel->progressIndicator()->maximum() > 0); // determinate, not busy
        QCOMPARE(panel->progressIndicator()->value(), 0);

        ui->hideProgressDialog();
        QVERIFY(!panel->isVisible());
        QVERIFY(!panel->isAnimating());

        g_events.clear();
        c->onStart();
        ui->showProgressDialog();
        QVERIFY(!panel->btnStop()->isHidden());
        QTest::mouseClick(panel->btnStop(), Qt::LeftButton);
        QCOMPARE(codes(), (std::vector<std::uint16_t>{kVmxEventStart, kVmxEventScanCancel}));
        ui->hideUi(); // hides the progress too
        QVERIFY(!panel->isVisible());
    }

    void withoutIndicatorsProgressDoesNothing() {
        auto ui = loaded();
        ui->setShowIndicators(false);
        ui->showProgressDialog();
        QCOMPARE(ui->controllerIfMade(), nullptr);
        std::uint32_t record[3] = {0, 10, 5};
        ui->setProgress(record);
        ui->hideProgressDialog();
        QCOMPARE(ui->controllerIfMade(), nullptr);
    }

    void withoutTheDialogTheStopButtonIsHidden() {
        auto ui = loaded();
        ui->showProgressDialog();
        auto* panel = ui->controllerIfMade()->scanningPanel();
        QVERIFY(panel && panel->isVisible());
        QVERIFY(panel->btnStop()->isHidden());
        QCOMPARE(panel->windowModality(), Qt::NonModal);
        ui->hideProgressDialog();
        QVERIFY(!panel->isVisible());
    }

    // ---- Help ----

    void helpOpensTheDataSourcesBook() {
        QUrl opened;
        TwainDialogController::setUrlOpener([&](const QUrl& url) {
            opened = url;
            return true;
        });
        TwainDialogController::setHelpRoot(QStringLiteral("/nonexistent-help-root"));
        auto ui = loaded();
        ui->showUi(true, false, false);
        QTest::mouseClick(window(*ui)->btnHelp(), Qt::LeftButton);
        QVERIFY(opened.isLocalFile());
        QVERIFY2(opened.toLocalFile().endsWith(QStringLiteral("Resources/help/HelpBook/index.html")),
                 qPrintable(opened.toLocalFile()));
        ui->hideUi();
    }

    void missingHelpSaysSo() {
        useRecordedBoxes();
        bool opened = false;
        TwainDialogController::setUrlOpener([&](const QUrl&) { return opened = true; });
        QTemporaryDir empty;
        QDir(empty.path()).mkpath(QStringLiteral("Contents/Resources"));
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->initWithDSBundle(empty.path().toStdString());
        ui->setModelDef(&def);
        ui->setDataWithDictionary(capabilities.deepCopy(), 0);
        ui->showUi(true, false, false);
        ui->controllerIfMade()->onHelp();
        QVERIFY(!opened);
        QCOMPARE(boxes.size(), std::size_t(1));
        QCOMPARE(boxes[0].message, QStringLiteral("IDS_ERR_HELPFILE_LOAD")); // no string table here
        ui->hideUi();
    }

    // ---- Panels ----

    void aPanelsRunAnswersItsReturnCode() {
        AcceptingPanel panel;
        QTimer::singleShot(20, &panel, [&] { panel.onOK(); });
        QCOMPARE(panel.runModal(), 1);
        QVERIFY(!panel.isRunModul());
        QCOMPARE(panel.responderBinding()->bindings().size(), std::size_t(0));

        QTimer::singleShot(20, &panel, [&] { QTest::keyClick(&panel, Qt::Key_Escape); });
        QCOMPARE(panel.runModal(), 0);
        QCOMPARE(panel.binds, 2);
    }

    void showingAVisiblePanelDoesNotBindAgain() {
        AcceptingPanel panel;
        panel.showWindow();
        TwResponderBinding* first = panel.responderBinding();
        panel.showWindow();
        QCOMPARE(panel.binds, 1);
        QCOMPARE(panel.responderBinding(), first);
        panel.close();
    }

    // ---- Threads and the facade's boxes ----

    void hideUiFromAnotherThreadRunsOnTheGuiThread() {
        auto ui = loaded();
        ui->showUi(true, false, false);
        TwDlgMain* w = window(*ui);
        std::atomic_bool done{false};
        std::thread worker([&] {
            ui->hideUi();
            done = true;
        });
        QTRY_VERIFY(done.load());
        worker.join();
        QVERIFY(!w->isVisible());
    }

    void aMessageBoxAnswersTheSameFromAnyThread() {
        auto ui = loaded();
        auto press = [] {
            return whenModal<QMessageBox>([](QMessageBox* box) { buttonTitled(box, "Cancel")->click(); });
        };
        auto t1 = press();
        const int onMain = ui->showMessageBox("Replace the paper?", "IDS_CAPTION_SAVESETTING", 0x40002);
        QCOMPARE(onMain, int(kVmxAnswerCancel));

        auto t2 = press();
        std::atomic_int fromWorker{-1};
        std::thread worker([&] { fromWorker = ui->showMessageBox("Replace the paper?", "", 0x40002); });
        QTRY_VERIFY(fromWorker.load() != -1);
        worker.join();
        QCOMPARE(fromWorker.load(), onMain);
    }

    void aPolledBoxFromTheFacadeEndsAsTheCallbackSays() {
        auto ui = loaded();
        g_pollAnswers = {kVmxResultContinue, kVmxResultContinue, 0};
        QCOMPARE(ui->showMessageBox("Waiting for the scanner", "", 0x2, 0x4242, 10), int(kVmxAnswerCancel));
        QVERIFY(g_pollAnswers.empty());
        QCOMPARE(
            std::count_if(g_events.begin(), g_events.end(), [](const Event& e) { return e.code == 0x4242; }),
            3);
        g_pollAnswers = {0xFFFF}; // -1: the third button
        QCOMPARE(ui->showMessageBox("x", "", 0x5, 0x4242, 10), 0);
        g_pollAnswers = {1};
        QCOMPARE(ui->showMessageBox("x", "", 0x105, 0x4242, 10), int(kVmxAnswerStop));
    }

    void theFacadesTitleIsALocalizedKey() {
        auto ui = loaded();
        QString text, informative;
        auto t = whenModal<QMessageBox>([&](QMessageBox* box) {
            text = box->text();
            informative = box->informativeText();
            box->defaultButton()->click();
        });
        QCOMPARE(ui->showMessageBox("Details here", "IDS_CAPTION_SAVESETTING", 0x1), int(kVmxAnswerOK));
        QCOMPARE(text, QStringLiteral("Save Setting"));
        QCOMPARE(informative, QStringLiteral("Details here"));
    }

    // ---- Scripts ----

    void scriptsCanPressButtonsAndTakePictures() {
        auto ui = loaded();
        QVERIFY(!ui->performDialogAction("onOK")); // nothing shown
        ui->showUi(true, false, true);
        QTemporaryDir dir;
        const std::string file = dir.filePath("area.png").toStdString();
        QVERIFY(ui->saveDialogPicture(file, "Area"));
        QCOMPARE(window(*ui)->tableMain()->currentWidget()->property("identifier").toString(),
                 QStringLiteral("Area"));
        QVERIFY(QImage(QString::fromStdString(file)).width() > 100);
        QVERIFY(!ui->saveDialogPicture(dir.filePath("x.png").toStdString(), "Imprinter"));
        QVERIFY(!ui->performDialogAction("onNothing"));
        QVERIFY(ui->performDialogAction("onOK"));
        QCOMPARE(codes(), std::vector<std::uint16_t>{kVmxEventClosed});
        ui->hideUi();
    }
};

QTEST_MAIN(TestDialog)
#include "tst_dialog.moc"
