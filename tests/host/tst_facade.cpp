// The facade as the data source drives it without a window: building the model, the paper-source
// filter, key-path reads and writes, the callback and its capability record, and the trace.
#include "FakeModelDef.h"
#include "TwainDialogController.h"
#include "TwainDialogData.h"
#include "VmxUIControllerImpl.h"

class TestFacade : public QObject {
    Q_OBJECT
    TestModelDef def = hostModelDef();
    QTemporaryDir dir;

    std::unique_ptr<VmxUIControllerImpl> loaded(bool flatbed = true, bool passport = true) {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->initWithDSBundle(dir.path().toStdString());
        OrvaSetLogPaths(nullptr, nullptr); // init points the log at the system's paths
        ui->setModelDef(&def);
        ui->setModelName("Test scanner");
        ui->setDataWithDictionary(capabilityValues(flatbed, passport), 0);
        return ui;
    }

private slots:
    void withoutModelEverythingIsQuiet() {
        VmxUIControllerImpl ui;
        QVERIFY(ui.dataForKeyPath("Data.Resolution").isNull() && ui.DialogData() == nullptr);
        ui.setDataWithKeyPathValue(TwValue::dictionary({{"Data.Resolution", 300}}));
        ui.setUIContents(def.options);
        ui.setCallback(&recordEvent);
        ui.showUi(false, true, true);
        ui.hideUi();
        ui.closeDS();
        QVERIFY(ui.dataForKeyPath("Data.Resolution").isNull());
    }

    void paperSourcesFollowTheScanner_data() {
        columns<bool, bool, QList<int>>("flatbed", "passport", "expected");
        row("feeder only", false, false, QList<int>{0, 1});
        row("passport", false, true, QList<int>{0, 1, 5});
        row("flatbed", true, false, QList<int>{0, 2, 3, 1, 4});
        row("both, list order kept", true, true, QList<int>{0, 2, 3, 1, 4, 5});
    }
    void paperSourcesFollowTheScanner() {
        auto [flatbed, passport, expected] = fetch<bool, bool, QList<int>>("flatbed", "passport", "expected");
        auto ui = loaded(flatbed, passport);
        auto got = codes(ui->dataForKeyPath("content.PaperSource"));
        QCOMPARE(QList<int>(got.begin(), got.end()), expected);
        QCOMPARE(codes(ui->dataForKeyPath("content.PaperSourceAll")).size(), size_t(6));
    }

    // The contents are one change per observed list; key-path writes tell once and ignore a
    // value that is no dictionary.
    void contentsAndKeyPathWrites() {
        auto ui = loaded();
        QCOMPARE(ui->dataForKeyPath("Default.Resolution").intValue(), 200);
        ChangeRecorder o(*ui->model(), {"content.Resolution", "content.PaperSource", "Data.Resolution"});
        ui->setUIContents(def.options);
        QCOMPARE(o.count(), 2);
        ui->setDataWithKeyPathValue(
            TwValue::dictionary({{"Data.Resolution", 600}, {"Data.Feed.NoLookAhead", true}}));
        QCOMPARE(o.count(), 3);
        QCOMPARE(ui->dataForKeyPath("Data.Resolution").intValue(), 600);
        QVERIFY(ui->dataForKeyPath("Data.Feed.NoLookAhead").boolValue());
        ui->setDataWithKeyPathValue(TwValue());
        QCOMPARE(ui->dataForKeyPath("Data.Resolution").intValue(), 600);
    }

    // Values cross the facade as copies both ways: a sub-dictionary the data source shares between
    // two sections, the caller's own tree, and what it reads back never alias the store.
    void valuesCrossTheFacadeAsCopies() {
        TwValue shared = TwValue::dictionary({{"Enable", false}, {"Width", 10}});
        TwValue values = capabilityValues(true, true);
        values.dict()->value("Data").dict()->set("Extra", shared);
        values.dict()->value("Default").dict()->set("Extra", shared);
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->setModelDef(&def);
        ui->setDataWithDictionary(values, 0);
        ui->setDataWithKeyPathValue(TwValue::dictionary({{"Data.Extra.Enable", true}}));
        QVERIFY(!ui->dataForKeyPath("Default.Extra.Enable").boolValue());
        QVERIFY(!shared.dict()->value("Enable").boolValue());

        TwValue written = TwValue::dictionary({{"Width", 20}});
        ui->setDataWithKeyPathValue(TwValue::dictionary({{"Data.Extra", written}}));
        written.dict()->set("Width", 30);
        QCOMPARE(ui->dataForKeyPath("Data.Extra.Width").intValue(), 20);

        ui->dataForKeyPath("Data.Extra").dict()->set("Width", 40);
        ui->DialogData()->valueForKeyPath("Data.Extra").dict()->set("Width", 50);
        ui->customPaperSize().list()->clear();
        QCOMPARE(ui->dataForKeyPath("Data.Extra.Width").intValue(), 20);
        // The store's contents, edited in place, are not the model definition's.
        ui->setUIContents(def.options);
        ui->model()->valueForKeyPath("content.Resolution").list()->at(0).dict()->set("display", "changed");
        QCOMPARE(def.options.dict()->value("Resolution").list()->at(0).dict()->value("display").stringValue(),
                 std::string("300 dpi"));
    }

    void eventOneNeedsTheCallbackOfTheCurrentModel() {
        auto ui = loaded();
        g_sent.clear();
        ui->DialogData()->UpdateCapData("Data.Resolution", 300);
        QVERIFY(g_sent.empty()); // no callback yet
        ui->setCallback(&recordEvent);
        ui->DialogData()->UpdateCapData("Data.Resolution", 300);
        QCOMPARE(g_sent.size(), size_t(1));
        QCOMPARE(g_sent[0].code, std::uint16_t(1));
        QCOMPARE(g_sent[0].record.value.uint32, 300u);

        // A rebuilt model carries no callback until the data source hands it over again.
        ui->setDataWithDictionary(capabilityValues(true, true), 0);
        ui->DialogData()->UpdateCapData("Data.ImageType", 2);
        QCOMPARE(g_sent.size(), size_t(1));
        ui->setCallback(&recordEvent);
        ui->DialogData()->UpdateCapData("Data.ImageType", 2);
        QCOMPARE(g_sent.size(), size_t(2));
    }

    void presetsAndTheFrameAreForwardedToTheModel() {
        auto ui = loaded();
        QVERIFY(ui->customPaperSize().isArray());
        ui->model()->setCustomGamme("Soft", true, TwValue::dictionary({{"Red", 1}}));
        QCOMPARE(ui->customGamme("Soft", true).dict()->value("Red").intValue(), 1);
        QVERIFY(ui->customGamme("Soft", false).isNull());
        TwPaperFrame frame{0, 0, 0, 0};
        ui->getPaperFrame(&frame);
        TwPaperFrame wanted{10, 20, frame.right - 10, frame.bottom - 20};
        ui->setPaperFrame(wanted);
        TwPaperFrame back{};
        ui->getPaperFrame(&back);
        QCOMPARE(back.left, 10.0);
        QCOMPARE(back.top, 20.0);
        ui->showUi(false, true, true); // without showing: only the flags
        QVERIFY(!ui->isShow() && ui->isShowModal());
        // Closing drops the model: nothing is forwarded any more.
        ui->closeDS();
        QVERIFY(ui->DialogData() == nullptr && ui->dataForKeyPath("Data.Resolution").isNull());
        ui->setPaperFrame(wanted);
        QVERIFY(ui->customPaperSize().isNull());
    }

    void malformedCapabilityValuesAreRefused() {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->setModelDef(&def);
        ui->setDataWithDictionary(TwValue::array({1, 2}), 0);
        QVERIFY(ui->DialogData() != nullptr); // an empty model, still usable
        QVERIFY(ui->dataForKeyPath("Data.Resolution").isNull());
        QCOMPARE(codes(ui->dataForKeyPath("content.PaperSource")), (std::vector<int>{0, 1}));
    }

    // A data source may blank a text on purpose: the facade and the controller keep its answer.
    void blankTextsOfTheDataSourceAreKept() {
        QTemporaryDir ds;
        writeStrings(ds.path(), dict({{"IDS_OK", ""}}));
        qputenv("LANGUAGE", "en");
        VmxUIControllerImpl ui;
        ui.initWithDSBundle(ds.path().toStdString());
        OrvaSetLogPaths(nullptr, nullptr);
        ui.setModelDef(&def);
        ui.setDataWithDictionary(capabilityValues(true, true), 0);
        QCOMPARE(ui.localizedString("IDS_OK"), std::string());
        QCOMPARE(ui.localizedStringNoEmpty("IDS_OK"), std::string(" "));
        QCOMPARE(ui.controller()->localizedString("IDS_OK"), QString());
        QCOMPARE(ui.controller()->localizedStringNoEmpty("IDS_OK"), QString(" "));
        QCOMPARE(ui.localizedString("IDS_NOT_THERE", "default"), std::string("default"));
    }

    void callsAreTraced() {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->initWithDSBundle(dir.path().toStdString());
        LogCapture log; // after init, which points the log at a place of its own
        ui->setModelDef(&def);
        ui->setDataWithDictionary(capabilityValues(false, false), 0);
        ui->setCallback(&recordEvent);
        ui->showUi(false, false, true);
        ui->closeDS();
        ui.reset();
        for (const char* line :
             {"ENTER: VmxUIController::setDataWithDictionary", "hasFlatbed = 0, canPassport = 0",
              "ENTER: VmxUIController::showUi", "\tmodal = 0, onlyUI = 1", "ENTER: VmxUIController::closeDS"})
            QVERIFY2(log.text().contains(line), line);
    }
};

QTEST_APPLESS_MAIN(TestFacade)
#include "tst_facade.moc"
