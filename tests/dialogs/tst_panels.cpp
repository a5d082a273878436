// The settings dialog driven through the facade with the sample scanner: the tabs the model
// definition leaves, settings-only mode, the button actions and what they send and save, the
// modal-run flags, binding without leftovers, progress, help, and calls from other threads. And the
// panels it opens, driven as a person drives them (typing, pressing their buttons): which button
// opens which panel, the name dialog and its checks, the about panel, the page-order dialogs and
// the customize dialog's units and margins. And what the user keeps between sessions: the factory
// profile, saved and deleted profiles, the last setting used, custom gammas, papers and margins,
// and what wrong or broken preferences turn into; the sample's own rules (the model observes
// itself once the data is set, and every edit re-evaluates them and runs the value reactions);
// and the facade as the data source drives it without a window, with a small model definition:
// building the model, the paper-source filter, key-path reads and writes, the callback and its
// capability record, and the trace.
#include "ChangeRecorder.h"
#include "SampleFixture.h"
#include "TwDlgAbout.h"
#include "host/FakeModelDef.h"

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

class TestPanels : public QObject {
    Q_OBJECT
    TwValue mainDialog; // the sample's own main-dialog entries, which a case may change

    Facade loaded(const std::string& bundle = SampleScanner::kBundle) {
        return sample.load({.callback = &recordEvent, .bundle = bundle});
    }
    // The facade with the dialog shown (modeless unless asked).
    Facade shown(bool modal = false, bool settingsOnly = false) {
        return sample.load(
            {.callback = &recordEvent, .show = true, .modal = modal, .settingsOnly = settingsOnly});
    }
    void setTab(const char* id, const TwValue& entry) {
        sample.definition.dict()->value("UIControl").dict()->value("MainDialog").dict()->set(id, entry);
    }

    // Types the text into the name dialog as a person would and presses OK; presses Cancel when the
    // dialog stays open. Whether it stayed is noted.
    static std::unique_ptr<QTimer> typeNameAndPressOK(const QString& text, bool* stayed) {
        return whenModal<TwDlgSaveSetting>([text, stayed](TwDlgSaveSetting* d) {
            retype(d->cmbNames()->lineEdit(), text);
            QTest::mouseClick(d->btnOK(), Qt::LeftButton);
            *stayed = d->isVisible();
            if (*stayed)
                QTest::mouseClick(d->btnCancel(), Qt::LeftButton);
        });
    }

    SampleScanner sample;

    TestModelDef def = hostModelDef();
    QTemporaryDir dir;

    // The facade with the small model definition and a bundle without a string table.
    Facade hostLoaded(bool flatbed = true, bool passport = true) {
        return sample.load({.flatbed = flatbed,
                            .bundle = dir.path().toStdString(),
                            .values = capabilityValues(flatbed, passport),
                            .modelDef = &def});
    }
    static QList<std::string> profileNames(TwainDialogData& model) {
        return codes<std::string>(model.customProfiles(), "ProfileName");
    }

private slots:
    void initTestCase() {
        mainDialog = sample.definition.dict()->value("UIControl").dict()->value("MainDialog").deepCopy();
    }
    void init() {
        QVERIFY2(sample.reset(), sample.error.c_str());
        sample.definition.dict()->value("UIControl").dict()->set("MainDialog", mainDialog.deepCopy());
    }

    // ---- The main dialog ----

    // ---- Tabs ----

    void aHiddenTabIsGoneAndTheOthersRemain() {
        setTab("Layout", dict({{"hidden", true}}));
        setTab("Feed", dict({{"hidden", 1}, {"localizedText", "Never shown"}}));
        setTab("Area", dict({{"hidden", "yes"}})); // not a number: shown
        setTab("Basic", dict({{"hidden", false}, {"localizedText", "Main"}}));
        auto ui = shown();
        TwDlgMain* w = window(*ui);
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->tabIdentifiers(), (QStringList{"Basic", "Common", "BinaryImage", "GrayImage",
                                                   "ColorImage", "Area", "ControlSheet"}));
        QCOMPARE(w->tableMain()->tabText(0), u"Main"_s);
        QCOMPARE(w->view("Layout")->responderBinding(), nullptr);

        // The next showing starts again from the full set with the form's labels.
        ui->hideUi();
        sample.definition.dict()->value("UIControl").dict()->set("MainDialog", mainDialog.deepCopy());
        setTab("ControlSheet", dict({{"hidden", true}}));
        ui->setDataWithDictionary(sample.capabilities.deepCopy(), 0);
        ui->showUi(true, false, false);
        QCOMPARE(w->tabIdentifiers(), (QStringList{"Basic", "Common", "Layout", "BinaryImage", "GrayImage",
                                                   "ColorImage", "Feed", "Area"}));
        QCOMPARE(w->tableMain()->tabText(0), w->view("Basic")->windowTitle());
    }

    void everyTabIsBoundWhileShownAndNothingIsLeftAfter() {
        auto ui = loaded();
        auto* model = ui->model().get();
        const std::size_t own = model->observationCount();
        ui->showUi(true, false, false);
        TwDlgMain* w = window(*ui);
        const std::size_t shownCount = model->observationCount();
        for (const QString& id : w->tabIdentifiers())
            QVERIFY2(w->view(id)->responderBinding() && !w->view(id)->responderBinding()->bindings().empty(),
                     qPrintable(id));
        ui->hideUi();
        QCOMPARE(model->observationCount(), own);

        // Bound again: as many observations as the first time, never doubled, and none after.
        ui->showUi(true, false, false);
        w->bindControlAll();
        QCOMPARE(model->observationCount(), shownCount);
        ui->hideUi();
        QCOMPARE(model->observationCount(), own);
    }

    // Texts the model or the data source supplies, however long, stay within their place: the
    // labels and group-box titles that show them are elided, with the whole text as tool tip, and
    // the window keeps its width.
    void longTextsLeaveTheWindowsWidthAlone() {
        auto ui = shown();
        TwDlgMain* w = window(*ui);
        const int common = w->tabIdentifiers().indexOf(u"Common"_s);
        w->tableMain()->setCurrentIndex(common);
        QApplication::processEvents();
        const int width = w->width(), hintWidth = w->sizeHint().width();
        ui->hideUi();

        const QString text = u"Long text "_s.repeated(10000);
        ui->setDataWithKeyPathValue(
            dict({{"temp.GrayDPI", text.toStdString()}, {"temp.Distinction", text.toStdString()}}));
        ui->showUi(true, false, false);
        w->tableMain()->setCurrentIndex(common);
        QApplication::processEvents();
        w->grab(); // a paint of the whole window, which took seconds with the text laid out whole
        QVERIFY2(qAbs(w->width() - width) <= 8, qPrintable(QString::number(w->width())));
        QVERIFY2(qAbs(w->sizeHint().width() - hintWidth) <= 8,
                 qPrintable(QString::number(w->sizeHint().width())));
        auto* dpi = tabChild<QLabel>(*ui, "Common", "txtDPI");
        auto* box = tabChild<QGroupBox>(*ui, "Common", "boxDistinctionResolution");
        for (const QString& shown : {dpi->text(), box->title()})
            QVERIFY(shown.endsWith(QChar(0x2026)) && shown.size() < 100);
        QCOMPARE((QStringList{dpi->toolTip(), box->toolTip()}), (QStringList{text, text}));
    }

    // ---- Modes and flags ----

    // Settings-only mode enables OK and disables Scan; showUi(false, ...) only sets the flags;
    // startModal twice starts one run; stopModal wakes the loop of a modal run only.
    void modesAndModalRuns_data() {
        columns<bool, bool, bool>("show", "modal", "settingsOnly");
        row("settings only", true, false, true);
        row("scan, modeless", true, false, false);
        row("scan, modal", true, true, false);
        row("flags only", false, true, true);
    }
    void modesAndModalRuns() {
        auto [show, modal, settingsOnly] = fetch<bool, bool, bool>("show", "modal", "settingsOnly");
        const int before = TwApplication::modalRunsStarted();
        auto ui = loaded();
        ui->showUi(show, modal, settingsOnly);
        auto* c = ui->controllerIfMade();
        QVERIFY(c && c->isModal() == modal && c->uiOnly() == settingsOnly);
        QCOMPARE(ui->isShow(), show);
        QCOMPARE(ui->isShowModal(), modal);
        TwDlgMain* w = c->windowIfLoaded();
        QCOMPARE(w != nullptr, show);
        QCOMPARE(TwApplication::modalWindow(), modal && show ? w : nullptr);
        ui->startModal();
        QCOMPARE(TwApplication::modalRunsStarted(), before + int(modal && show));
        if (!show) {
            QVERIFY(g_sent.empty());
            return;
        }
        QCOMPARE(w->btnOK()->isEnabled(), settingsOnly);
        QCOMPARE(w->btnStart()->isEnabled(), !settingsOnly);
        QCOMPARE(w->windowModality(), modal ? Qt::ApplicationModal : Qt::NonModal);
        ui->stopModal();
        QCOMPARE(ui->wakeUpsPosted(), int(modal));
        QVERIFY(!ui->isShowModal());
        QCOMPARE(TwApplication::modalWindow(), nullptr);
        QTRY_COMPARE(w->windowModality(), Qt::NonModal); // once the loop has turned
        QVERIFY(w->isVisible());
        ui->hideUi();
        if (!modal)
            QCOMPARE(ui->wakeUpsPosted(), 0);
    }

    // ---- OK, Cancel, Scan ----

    // What each way out of the dialog sends and whether it saves the untitled setting; the modal
    // run ends, and the window stays until the data source hides it.
    void theButtonsSendTheirEventAndSave_data() {
        columns<QString, bool, Codes, bool>("action", "settingsOnly", "sent", "saves");
        row("OK", "OK", true, Codes{kVmxEventClosed}, true);
        row("Cancel", "Cancel", true, Codes{kVmxEventClosed}, false);
        row("close box", "close", false, Codes{kVmxEventClosed}, false);
        row("Escape", "Escape", false, Codes{kVmxEventClosed}, false);
        row("Scan", "Start", false, Codes{kVmxEventStart}, true);
        row("Prescan", "Prescan", false, Codes{kVmxEventPrescan}, true);
        row("OK without callback", "OK-local", true, Codes{}, true);
    }
    void theButtonsSendTheirEventAndSave() {
        auto [action, settingsOnly, sent, saves] =
            fetch<QString, bool, Codes, bool>("action", "settingsOnly", "sent", "saves");
        auto ui = shown(true, settingsOnly);
        TwDlgMain* w = window(*ui);
        set(*ui, "Data.Resolution", 400);
        if (action == u"OK-local"_s)
            ui->setCallback(nullptr);
        if (action == u"close"_s)
            w->performClose();
        else if (action == u"Escape"_s)
            QTest::keyClick(w, Qt::Key_Escape);
        else
            QTest::mouseClick(child<QPushButton>(w, qPrintable("btn" + action.section('-', 0, 0))),
                              Qt::LeftButton);
        QCOMPARE(sentCodes(), sent);
        if (!sent.empty() && sent[0] != kVmxEventPrescan)
            QCOMPARE(g_sent[0].data, static_cast<void*>(ui->controllerIfMade()));
        QCOMPARE(SampleScanner::stored("untitle profile").isDictionary(), saves);
        if (saves)
            QCOMPARE(SampleScanner::stored("untitle profile").dict()->value("Resolution"), TwValue(400));
        if (sent == Codes{kVmxEventClosed}) {
            QVERIFY(!ui->controllerIfMade()->isModal());
            QCOMPARE(TwApplication::modalWindow(), nullptr);
        }
        QCOMPARE(ui->controllerIfMade()->isNoStopScan(), action == u"Prescan"_s);
        QVERIFY(w->isVisible());
        ui->hideUi();
        QVERIFY(!w->isVisible());
    }

    void aRejectedEntryStopsOKScanAndSave() {
        auto ui = shown(false, true);
        TwDlgMain* w = window(*ui);
        w->tableMain()->setCurrentIndex(w->tabIdentifiers().indexOf(u"Area"_s));
        auto* width = tabChild<QLineEdit>(*ui, "Area", "txtWidth");
        QVERIFY(width && width->isVisible());
        retype(width, u"9999"_s); // wider than any paper
        bool prompted = false;
        auto nameDialog = whenModal<TwDlgSaveSetting>([&](TwDlgSaveSetting* d) {
            prompted = true;
            d->onCancel();
        });
        QTest::mouseClick(w->btnOK(), Qt::LeftButton);
        ui->controllerIfMade()->onStart();
        ui->controllerIfMade()->onSaveSetting();
        QVERIFY(g_sent.empty());
        QVERIFY(!prompted);
        QVERIFY(SampleScanner::stored("untitle profile").isNull());
        QCOMPARE(sample.alerts.size(), 3);
        QCOMPARE(w->focusWidget(), width);

        // A valid entry lets OK through.
        retype(width, u"100"_s);
        QTest::mouseClick(w->btnOK(), Qt::LeftButton);
        QCOMPARE(sentCodes(), Codes{kVmxEventClosed});
    }

    // Leaving the Resolution field with 99999 refuses it there and then, in a box that names the
    // field; the field keeps the focus and the setting its value.
    void leavingAFieldWithARejectedEntryNamesTheField() {
        TwSetMessageBoxRunner({}); // the real boxes
        TwSetFormatterAlert({});
        auto ui = shown(false, true);
        TwDlgMain* w = window(*ui);
        w->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(w));
        auto* resolution = tabChild<QComboBox>(*ui, "Basic", "cmbResolution");
        resolution->setFocus();
        resolution->lineEdit()->selectAll();
        QTest::keyClicks(resolution->lineEdit(), u"99999"_s);
        QStringList texts;
        auto box = whenModal<QMessageBox>([&](QMessageBox* b) {
            texts << b->text() << b->informativeText();
            b->button(QMessageBox::Ok)->click();
        });
        QTest::keyClick(resolution->lineEdit(), Qt::Key_Tab);
        QTRY_COMPARE(texts.size(), 2);
        QCOMPARE(texts[0], u"Resolution"_s);
        QVERIFY2(texts[1].contains(u"600"_s), qPrintable(texts[1]));
        QTRY_VERIFY(w->focusWidget() == resolution || w->focusWidget() == resolution->lineEdit());
        QCOMPARE(ui->dataForKeyPath("Data.Resolution").intValue(), 300);
    }

    // Tab leads from the setting row to the tab bar and from the bar into the page shown, on
    // every page the arrow keys switch to; Shift+Tab from the bar goes back up to the setting row.
    void tabLeadsFromTheTabBarIntoThePageShown() {
        auto ui = shown(false, true);
        TwDlgMain* w = window(*ui);
        w->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(w));
        QTabWidget* tabs = w->tableMain();
        QVERIFY(tabs && tabs->count() > 2);
        int entered = 0;
        tabs->tabBar()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(tabs->tabBar(), Qt::Key_Backtab);
        QCOMPARE(QApplication::focusWidget(), w->btnDelete());
        QTest::keyClick(w->btnDelete(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), tabs->tabBar());
        for (int i = 1; i < tabs->count(); ++i) {
            QTest::keyClick(tabs->tabBar(), Qt::Key_Right);
            QCOMPARE(tabs->currentIndex(), i);
            QTest::keyClick(tabs->tabBar(), Qt::Key_Tab);
            QWidget* focus = QApplication::focusWidget();
            QWidget* page = tabs->currentWidget();
            const bool pageTakesTab = std::ranges::any_of(page->findChildren<QWidget*>(), [](QWidget* c) {
                return (c->focusPolicy() & Qt::TabFocus) && c->isVisible() && c->isEnabled();
            });
            if (!pageTakesTab) { // the image type leaves this page's options off
                QCOMPARE(focus, w->findChild<QWidget*>(u"btnHelp"_s));
                tabs->tabBar()->setFocus(Qt::TabFocusReason);
                continue;
            }
            QVERIFY2(focus && page->isAncestorOf(focus),
                     qPrintable(u"%1: the focus went to %2"_s.arg(
                         tabs->tabText(i), focus ? focus->objectName() : u"nothing"_s)));
            ++entered;
            tabs->tabBar()->setFocus(Qt::TabFocusReason);
        }
        QVERIFY(entered > 3);
    }

    // The tab buttons reach the controller's actions once, however often the dialog was bound:
    // the paper-size and gamma editors open once per click; gamma tags outside 0 to 2 do nothing.
    void tabButtonsRunTheirActionsOnceAndGammaTagsOutOfRangeDoNothing() {
        auto ui = shown();
        ui->hideUi();
        ui->showUi(true, false, false);
        QStringList opened;
        QTimer closer; // closes every editor that comes up, and notes it
        closer.setInterval(10);
        connect(&closer, &QTimer::timeout, [&] {
            auto* panel = qobject_cast<TwPanel*>(QApplication::activeModalWidget());
            if (panel && panel->isVisible()) {
                opened << QString::fromLatin1(panel->metaObject()->className());
                panel->close();
            }
        });
        closer.start();
        tabChild<QPushButton>(*ui, "Basic", "btnCustom")->click();
        QPushButton gamma;
        for (int tag : {3, -1, 2}) {
            gamma.setProperty("tag", tag);
            ui->controllerIfMade()->onCustomGamma(&gamma);
        }
        ui->controllerIfMade()->onCustomGamma(nullptr);
        set(*ui, "Data.ImageType", 1); // grey: its gamma is on
        tabChild<QPushButton>(*ui, "GrayImage", "btnGamma")->click();
        ui->hideUi();
        QCOMPARE(opened, (QStringList{"TwDlgPaperSize", "TwDlgCustomGamma", "TwDlgCustomGamma"}));
        QVERIFY(!ui->controllerIfMade()->panel<TwDlgCustomGamma>()->isColor());
    }

    // ---- Settings ----

    // The untitled setting cannot be deleted; another is deleted once the user says OK.
    void deletingASetting() {
        auto ui = shown();
        const int before = ui->model()->ProfileCount();
        QTest::mouseClick(window(*ui)->btnDelete(), Qt::LeftButton);
        QCOMPARE(ui->model()->ProfileCount(), before);
        QCOMPARE(sample.boxes.back().message, u"The untitled setting cannot be deleted."_s);

        ui->model()->AddCustomProfile("Receipts");
        sample.boxAnswer = kVmxAnswerCancel;
        ui->controllerIfMade()->onDeleteSetting();
        QVERIFY(ui->model()->IsProfileExist("Receipts"));
        const QString sure = u"Are you sure you want to delete the setting \"Receipts\"?"_s;
        QCOMPARE(sample.boxes.back().message, sure);
        QCOMPARE(sample.boxes.back().messageType, 0x40002u);
        // A typed name that is no setting is not selected, by Return or by going to Delete.
        QComboBox* names = window(*ui)->cmbSettingNames();
        names->setFocus();
        QTest::keyClicks(names, "XYZ");
        QTest::keyClick(names, Qt::Key_Return);
        QCOMPARE(names->currentText(), u"Receipts"_s);
        QTest::keyClicks(names, "XYZ");
        QTest::mouseClick(window(*ui)->btnDelete(), Qt::LeftButton);
        QCOMPARE(sample.boxes.back().message, sure);
        sample.boxAnswer = kVmxAnswerOK;
        ui->controllerIfMade()->onDeleteSetting();
        QVERIFY(!ui->model()->IsProfileExist("Receipts"));
    }

    void defaultRestoresTheFactorySetting() {
        auto ui = shown();
        TwValue factory = ui->dataForKeyPath("Default.Resolution");
        set(*ui, {{"Data.Resolution", factory.intValue() == 400 ? 200 : 400},
                  {"Customize.BorderRemoval.left", 99}});
        QTest::mouseClick(window(*ui)->btnDefault(), Qt::LeftButton);
        QCOMPARE(ui->dataForKeyPath("Data.Resolution"), factory);
        QCOMPARE(ui->dataForKeyPath("Customize.BorderRemoval.left").intValue(), 30);
    }

    // ---- Progress ----

    void theProgressPanelFollowsTheScan() {
        auto ui = shown();
        auto* c = ui->controllerIfMade();
        c->onPrescan(); // prescans hide the stop button
        ui->showProgressDialog();
        TwDlgScanning* panel = c->panelIfMade<TwDlgScanning>();
        QVERIFY(panel && panel->isVisible() && panel->isAnimating() && panel->btnStop()->isHidden());
        QCOMPARE(panel->windowModality(), Qt::WindowModal);

        // n of m; 0 of 0 is an empty determinate bar, not a busy one.
        for (std::uint32_t total : {120u, 0u}) {
            const std::uint32_t record[3] = {0, total, total / 4};
            ui->setProgress(record);
            const int max = panel->progressIndicator()->maximum();
            QVERIFY2(total ? max == int(total) : max > 0, qPrintable(QString::number(max)));
            QCOMPARE(panel->progressIndicator()->value(), int(total / 4));
        }
        const auto centreOf = [](const QWidget* w) {
            return w->geometry().center();
        };
        TwDlgMain* main = window(*ui);
        QVERIFY((centreOf(panel) - centreOf(main)).manhattanLength() <= 1);
        ui->hideProgressDialog();
        QVERIFY(!panel->isVisible() && !panel->isAnimating());

        // Every appearance stands over the dialog where it is now.
        main->move(main->pos() + QPoint(40, 30));
        g_sent.clear();
        c->onStart();
        ui->showProgressDialog();
        QVERIFY2((centreOf(panel) - centreOf(main)).manhattanLength() <= 1,
                 qPrintable(QDebug::toString(panel->geometry())));
        QTest::mouseClick(panel->btnStop(), Qt::LeftButton);
        QCOMPARE(sentCodes(), (Codes{kVmxEventStart, kVmxEventScanCancel}));
        ui->hideUi(); // hides the progress too
        QVERIFY(!panel->isVisible());
    }

    void progressWithoutTheDialogOrWithoutIndicators() {
        auto ui = loaded();
        ui->showProgressDialog();
        auto* panel = ui->controllerIfMade()->panelIfMade<TwDlgScanning>();
        QVERIFY(panel && panel->isVisible() && panel->btnStop()->isHidden());
        QCOMPARE(panel->windowModality(), Qt::NonModal);
        ui->hideProgressDialog();
        QVERIFY(!panel->isVisible());

        auto quiet = loaded();
        quiet->setShowIndicators(false);
        quiet->showProgressDialog();
        QCOMPARE(quiet->controllerIfMade(), nullptr);
    }

    // ---- Help ----

    void helpOpensTheDataSourcesBookOrSaysItIsMissing() {
        TwHelpBook book;
        const QString bundle = QString::fromStdString(SampleScanner::kBundle);
        QVERIFY(!book.registerHelp({"/nonexistent", bundle + "/Contents"}));
        QVERIFY(book.registerHelp({"/nonexistent", bundle}));
        QCOMPARE(book.name(), u"Orvanic VMX-S Scanner Help"_s);

        QList<QUrl> opened;
        bool launches = true; // a machine without a browser or launcher cannot open the page
        TwHelpBook::setUrlOpener([&](const QUrl& url) {
            opened << url;
            return launches;
        });
        TwHelpBook::setHelpRoot(u"/nonexistent-help-root"_s);
        auto ui = shown();
        // The main panel's Help button and the other panels' open the page once each.
        QTest::mouseClick(window(*ui)->btnHelp(), Qt::LeftButton);
        auto* panels = ui->controller();
        for (TwPanel* panel : std::initializer_list<TwPanel*>{
                 panels->panel<TwDlgCustom>(), panels->panel<TwDlgDoubleExposure>(),
                 panels->panel<TwDlgPageSeparation>(), panels->panel<TwDlgPaperSize>()})
            runWith(panel,
                    [](TwPanel* p) { QTest::mouseClick(child<QPushButton>(p, "btnHelp"), Qt::LeftButton); });
        QCOMPARE(opened.size(), 5);
        for (const QUrl& url : opened)
            QVERIFY2(url.toLocalFile().endsWith("Resources/help/HelpBook/index.html"),
                     qPrintable(url.toString()));
        QVERIFY(sample.boxes.empty());
        launches = false;
        QTest::mouseClick(window(*ui)->btnHelp(), Qt::LeftButton);
        QCOMPARE(sample.boxes.size(), std::size_t(1));
        QCOMPARE(sample.boxes[0].messageType, 0x20001u);
        QVERIFY(sample.boxes[0].message.contains(u"help"_s));
        ui->hideUi();

        sample.boxes.clear();
        opened.clear();
        QTemporaryDir empty;
        QDir(empty.path()).mkpath(u"Contents/Resources"_s);
        auto bare = sample.load({.bundle = empty.path().toStdString(), .show = true});
        bare->controllerIfMade()->onHelp();
        QVERIFY(opened.isEmpty());
        QCOMPARE(sample.boxMessages(), QStringList{"IDS_ERR_HELPFILE_LOAD"}); // no string table here
    }

    // ---- Panels ----

    void aPanelsRunAnswersItsReturnCodeAndBindsOncePerShowing() {
        AcceptingPanel panel;
        QTimer::singleShot(20, &panel, [&] { panel.onOK(); });
        QCOMPARE(panel.runModal(), 1);
        QVERIFY(!panel.isRunModul());
        QCOMPARE(panel.responderBinding()->bindings().size(), std::size_t(0));
        QTimer::singleShot(20, &panel, [&] { QTest::keyClick(&panel, Qt::Key_Escape); });
        QCOMPARE(panel.runModal(), 0);
        QCOMPARE(panel.binds, 2);

        panel.showWindow();
        TwResponderBinding* first = panel.responderBinding();
        panel.showWindow(); // already visible: not bound again
        QCOMPARE(panel.binds, 3);
        QCOMPARE(panel.responderBinding(), first);
        panel.close();
    }

    // ---- Threads and the facade's boxes ----

    // A worker's box: the title is a key of the string table and the message the box's informative
    // text, the answer the button pressed. A worker's hideUi runs on the GUI thread.
    void callsFromAnotherThreadRunOnTheGuiThread() {
        TwSetMessageBoxRunner({}); // the real box
        auto ui = shown();
        QStringList texts;
        auto timer = whenModal<QMessageBox>([&](QMessageBox* box) {
            texts = {box->text(), box->informativeText()};
            buttonTitled(box, "Cancel")->click();
        });
        std::atomic_int answer{-1};
        std::atomic_bool done{false};
        std::thread worker([&] {
            answer = ui->showMessageBox("Replace the paper?", "IDS_CAPTION_SAVESETTING", 0x40002);
            ui->hideUi();
            done = true;
        });
        QTRY_VERIFY(done.load());
        worker.join();
        QVERIFY(!window(*ui)->isVisible());
        QCOMPARE(answer.load(), int(kVmxAnswerCancel));
        QCOMPARE(texts, (QStringList{"Save Setting", "Replace the paper?"}));
    }

    // ---- Scripts ----

    void scriptsCanPressButtonsAndTakePictures() {
        auto ui = loaded();
        QVERIFY(!ui->performDialogAction("onOK")); // nothing shown
        ui->showUi(true, false, true);
        QTemporaryDir dir;
        const std::string file = dir.filePath("area.png").toStdString();
        QVERIFY(ui->saveDialogPicture(file, "Area"));
        QCOMPARE(window(*ui)->tableMain()->currentWidget()->property("identifier").toString(), u"Area"_s);
        QVERIFY(QImage(QString::fromStdString(file)).width() > 100);
        QVERIFY(!ui->saveDialogPicture(dir.filePath("x.png").toStdString(), "Imprinter"));
        // Only the dialog's actions: QObject's own slots are no action a script may name.
        for (const char* notAnAction : {"onNothing", "deleteLater", "destroyed", "onOK()", ""})
            QVERIFY2(!ui->performDialogAction(notAnAction), notAnAction);
        QVERIFY(ui->controllerIfMade());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(window(*ui)->isVisible());
        QVERIFY(ui->performDialogAction("onOK"));
        QCOMPARE(sentCodes(), Codes{kVmxEventClosed});
    }

    // ---- The panels it opens ----

    // ---- The name dialog ----

    // Save... with a typed name: what is refused (and stays open), what is asked, what is saved.
    void savingASettingChecksTheName_data() {
        // saved: empty: nothing saved, the dialog stayed
        columns<QString, QList<int>, QStringList, QString>("typed", "answers", "messages", "saved");
        const QString fifty(50, 'x');
        const QString overwrite = u"A setting named \"%1\" already exists. Do you want to replace it?"_s;
        row("new name, blanks around", "  Letters 300  ", QList<int>{}, QStringList{}, "Letters 300");
        row("blank", "   ", QList<int>{}, QStringList{"Please enter a name."}, "");
        row("50 characters", fifty, QList<int>{}, QStringList{}, fifty);
        row("51 characters", fifty + "y", QList<int>{},
            QStringList{"The name must be 50 characters or fewer."}, "");
        row("50 characters between blanks", " " + fifty + " ", QList<int>{}, QStringList{}, fifty);
        row("the untitled name in capitals", "UNTITLED", QList<int>{},
            QStringList{"This name is reserved for the untitled setting. Please enter a different name."},
            "");
        row("existing name in lower case, replaced", "receipts", QList<int>{kVmxAnswerOK},
            QStringList{overwrite.arg("receipts")}, "receipts");
        row("existing name in lower case, kept", "receipts", QList<int>{kVmxAnswerCancel},
            QStringList{overwrite.arg("receipts")}, "");
    }
    void savingASettingChecksTheName() {
        auto [typed, answers, messages, saved] =
            fetch<QString, QList<int>, QStringList, QString>("typed", "answers", "messages", "saved");
        auto ui = sample.load({.show = true});
        TwainDialogData* model = ui->model().get();
        model->AddCustomProfile("Receipts");
        const int before = model->ProfileCount();
        sample.boxAnswers = answers;
        bool stayed = false;
        auto timer = typeNameAndPressOK(typed, &stayed);
        QTest::mouseClick(window(*ui)->btnSave(), Qt::LeftButton);
        QCOMPARE(sample.boxMessages(), messages);
        for (auto& box : sample.boxes)
            QCOMPARE(box.messageType, box.buttons.size() == 1 ? 0x20001u : 0x40002u);
        QCOMPARE(stayed, saved.isEmpty());
        if (saved.isEmpty()) {
            QCOMPARE(model->ProfileCount(), before);
            QVERIFY(model->IsProfileExist("Receipts"));
        } else {
            QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue(saved.toStdString()));
            // Saved exactly as typed: a name differing in letter case replaces the old setting.
            const bool replaced = saved == u"receipts"_s;
            QCOMPARE(model->ProfileCount(), before + (replaced ? 0 : 1));
            QVERIFY(SampleScanner::stored("profiles").list());
        }
    }

    // The dialog offers the saved names and starts empty; at fifty settings only an existing
    // name can still be saved.
    void theFiftyFirstSettingIsRefused() {
        auto ui = sample.load({.show = true});
        TwainDialogData* model = ui->model().get();
        for (int i = model->ProfileCount(); i < 50; ++i)
            model->AddCustomProfile("Setting " + std::to_string(i));
        QStringList offered;
        QString shownName = u"not shown"_s;
        bool stayed = false;
        auto timer = whenModal<TwDlgSaveSetting>([&](TwDlgSaveSetting* d) {
            for (int i = 0; i < d->cmbNames()->count(); ++i)
                offered << d->cmbNames()->itemText(i);
            shownName = d->cmbNames()->currentText();
            QTest::keyClicks(d->cmbNames()->lineEdit(), "One too many");
            QTest::mouseClick(d->btnOK(), Qt::LeftButton);
            stayed = d->isVisible();
        });
        ui->controllerIfMade()->onSaveSetting();
        QCOMPARE(offered.size(), 50);
        QCOMPARE(shownName, QString());
        QVERIFY(!stayed);
        QVERIFY(!model->IsProfileExist("One too many"));
        QCOMPARE(sample.boxMessages(),
                 QStringList{"No more items can be saved. Delete an item you no longer need and try again."});

        timer = typeNameAndPressOK(u"SETTING 7"_s, &stayed);
        ui->controllerIfMade()->onSaveSetting();
        QCOMPARE(model->ProfileCount(), 50);
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("SETTING 7"));
    }

    // Gamma names (type 1): 32 characters at most; a listed name, compared exactly, is asked
    // about only when the caller wants the check.
    void gammaNames_data() {
        columns<QString, bool, int, QStringList, int>("typed", "checkOverwrite", "answer", "messages",
                                                      "result");
        const QString asked = u"\"Soft\" already exists. Do you want to overwrite it?"_s;
        row("32 characters", QString(32, 'g'), true, 0, QStringList{}, 1);
        row("33 characters", QString(33, 'g'), true, 0,
            QStringList{"The name must be 32 characters or fewer."}, 0);
        row("listed, replaced", "Soft", true, int(kVmxAnswerOK), QStringList{asked}, 1);
        row("listed, kept", "Soft", true, int(kVmxAnswerCancel), QStringList{asked}, 0);
        row("listed, no check", "Soft", false, 0, QStringList{}, 1);
        row("other letter case", "soft", true, 0, QStringList{}, 1);
    }
    void gammaNames() {
        auto [typed, checkOverwrite, answer, messages, result] = fetch<QString, bool, int, QStringList, int>(
            "typed", "checkOverwrite", "answer", "messages", "result");
        auto ui = sample.load();
        TwDlgSaveSetting* d = ui->controller()->panel<TwDlgSaveSetting>();
        d->setType(TwDlgSaveSetting::GammaName);
        QCOMPARE(d->windowTitle(), u"Save Gamma As"_s);
        QCOMPARE(d->labTitle()->text(), u"Gamma name:"_s);
        d->setCheckOverwrite(checkOverwrite);
        d->setNameList({u"Soft"_s, u"Hard"_s});
        d->setName(u"Hard"_s);
        if (answer)
            sample.boxAnswers = {answer};
        bool stayed = false;
        QString shown;
        auto timer = whenModal<TwDlgSaveSetting>([&](TwDlgSaveSetting* dialog) {
            shown = dialog->cmbNames()->currentText();
            QLineEdit* edit = dialog->cmbNames()->lineEdit();
            edit->selectAll();
            QTest::keyClicks(edit, typed);
            QTest::keyClick(edit, Qt::Key_Return); // the default button
            stayed = dialog->isVisible();
            if (stayed)
                QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QCOMPARE(d->runModal(), result);
        QCOMPARE(shown, u"Hard"_s);
        QCOMPARE(stayed, result == 0);
        QCOMPARE(sample.boxMessages(), messages);
        if (result == 1)
            QCOMPARE(d->name(), typed);

        // Another type keeps the longest name and shows no texts.
        d->setType(7);
        QCOMPARE(d->maxNameLength(), 32u);
        QVERIFY(d->windowTitle().isEmpty() && d->labTitle()->text().isEmpty());
    }

    // ---- Which button opens which panel ----

    void everyButtonOpensItsPanel_data() {
        // tab: empty: a button of the main panel
        columns<QString, QString>("tab", "panel");
        row("btnSave", QString(), u"TwDlgSaveSetting"_s);
        row("btnAbout", QString(), u"TwDlgAbout"_s);
        row("btnCustomize", QString(), u"TwDlgCustom"_s);
        row("btnDoubleExposureCfg", u"Layout"_s, u"TwDlgDoubleExposure"_s);
        row("btnPageSeparationCfg", u"Layout"_s, u"TwDlgPageSeparation"_s);
    }
    void everyButtonOpensItsPanel() {
        auto [tab, panel] = fetch<QString, QString>("tab", "panel");
        const QString button = QString::fromLatin1(QTest::currentDataTag());
        auto ui = sample.load({.show = true});
        TwDlgMain* w = window(*ui);
        // The Settings... buttons work while their option is on (double exposure: on a duplex source).
        const QString option = QString(button).remove("btn").remove("Cfg");
        set(*ui, "Data.PaperSource=1 Data.Layout." + option + ".Enable=true");
        QWidget* root = w;
        if (!tab.isEmpty()) {
            w->tableMain()->setCurrentIndex(w->tabIdentifiers().indexOf(tab));
            root = w->view(tab);
        }
        auto* b = root->findChild<QPushButton*>(button);
        QVERIFY(b && b->isEnabled());
        QString opened;
        auto timer = whenModal<TwPanel>([&](TwPanel* p) {
            opened = QString::fromLatin1(p->metaObject()->className());
            QTest::keyClick(p, Qt::Key_Escape);
        });
        QTest::mouseClick(b, Qt::LeftButton);
        QCOMPARE(opened, panel);
    }

    // ---- About ----

    // The data source's version texts and the scanner's; a bundle without them shows none, and
    // the panel leaves no binding behind.
    void theAboutPanelShowsTheVersions() {
        auto ui = sample.load();
        TwainDialogData* model = ui->model().get();
        const std::size_t observations = model->observationCount();
        QStringList texts;
        auto read = [&](TwDlgAbout* about) {
            texts = QStringList{about->txtDriverVersion()->text(),  about->txtDriverVerInfo()->text(),
                                about->txtCopyright()->text(),      about->txtScannerProduct()->text(),
                                about->txtScannerVersion()->text(), about->txtScannerInterface()->text()};
            QTest::mouseClick(about->findChild<QPushButton*>("btnOK"), Qt::LeftButton);
        };
        auto timer = whenModal<TwDlgAbout>(read);
        ui->controller()->onAbout();
        QCOMPARE(texts, (QStringList{"1.0.0", "Orvanic VMX-S sample data source 1.0.0 (simulated scanner)",
                                     QString::fromUtf8("Copyright © Orvanic. All rights reserved."),
                                     "Orvanic VMX-S60", "1.00", "USB 3.0"}));
        QCOMPARE(model->observationCount(), observations);

        QTemporaryDir bare;
        QDir(bare.path()).mkpath("Contents/Resources");
        auto other = loaded(bare.path().toStdString());
        timer = whenModal<TwDlgAbout>(read);
        other->controller()->onAbout();
        QCOMPARE(texts.mid(0, 3), (QStringList{"", "", ""}));
    }

    // ---- Page orders ----

    // The dialog starts from the setting; OK stores the picked order and paper, anything else
    // keeps them. A paper the list lacks shows as the first entry.
    void doubleExposureStoresWhatWasPicked_data() {
        // paperIndex: of the setting's paper in the list; -1: not in it
        columns<int, bool>("paperIndex", "ok");
        row("OK", 3, true);
        row("Cancel", 3, false);
        row("paper not in the list", -1, true);
    }
    void doubleExposureStoresWhatWasPicked() {
        auto [paperIndex, ok] = fetch<int, bool>("paperIndex", "ok");
        auto ui = sample.load();
        const TwValue papers = ui->dataForKeyPath("content.PaperSizeAllPlusNone");
        QVERIFY(papers.list() && papers.list()->size() > 5);
        auto valueAt = [&](int i) {
            return (*papers.list())[std::size_t(i)].dict()->value("value");
        };
        const TwValue paper = paperIndex < 0 ? TwValue(9999) : valueAt(paperIndex);
        ui->setDataWithKeyPathValue(dict(
            {{"Data.Layout.DoubleExposure.PageOrder", 2}, {"Data.Layout.DoubleExposure.PaperSize", paper}}));
        int shownOrder = -1, shownPaper = -1;
        auto timer = whenModal<TwDlgDoubleExposure>([&](TwDlgDoubleExposure* d) {
            shownOrder = d->rdoDoubleExposure()->selectedIndex();
            shownPaper = d->cmbPaperSize()->currentIndex();
            d->findChild<QRadioButton*>("rdoDoubleExposure_3")->click();
            choose(d->cmbPaperSize(), 5);
            QTest::mouseClick(ok ? d->btnOK() : d->btnCancel(), Qt::LeftButton);
        });
        ui->controller()->onDoubleExposure();
        QCOMPARE(shownOrder, 2);
        QCOMPARE(shownPaper, std::max(paperIndex, 0));
        QCOMPARE(ui->dataForKeyPath("Data.Layout.DoubleExposure.PageOrder"), TwValue(ok ? 3 : 2));
        QCOMPARE(ui->dataForKeyPath("Data.Layout.DoubleExposure.PaperSize"), ok ? valueAt(5) : paper);
    }

    void pageSeparationStoresTheOrderOnOK() {
        auto ui = sample.load();
        set(*ui, "Data.Layout.PageSeparation.PageOrder", 1);
        for (bool ok : {false, true}) {
            int shown = -1;
            auto timer = whenModal<TwDlgPageSeparation>([&](TwDlgPageSeparation* d) {
                shown = d->rdoPageSeparation()->selectedIndex();
                QVERIFY(!d->rdoPageSeparation()->buttons()[0]->icon().isNull());
                d->findChild<QRadioButton*>("rdoPageSeparation_2")->click();
                if (ok)
                    QTest::mouseClick(d->btnOK(), Qt::LeftButton);
                else
                    QTest::keyClick(d, Qt::Key_Escape);
            });
            ui->controller()->onPageSeparetion();
            QCOMPARE(shown, 1);
            QCOMPARE(ui->dataForKeyPath("Data.Layout.PageSeparation.PageOrder"), TwValue(ok ? 2 : 1));
        }
    }

    // ---- Customize ----

    // 5.0 mm shows 5.0; in inches about 0.19685, stored again as 50 tenths, not 49. An entry of
    // 0.1 in is stored as 25 (2.54 mm, cut to tenths). The margins are saved; Cancel stores nothing.
    void customizeConvertsAndStoresTheMargins() {
        auto ui = sample.load();
        set(*ui, "Customize.BorderRemoval.left", 50);
        TwDlgCustom* custom = ui->controller()->panel<TwDlgCustom>();
        QCOMPARE(custom->unit(), std::uint32_t(TwDlgCustom::Millimetre));
        QString shownMillimetres, shownInches;
        double inches = 0;
        auto timer = whenModal<TwDlgCustom>([&](TwDlgCustom* d) {
            shownMillimetres = d->field("removalLeft")->text();
            choose(d->cmbUnit(), u"Inches"_s);
            inches = d->margin("removalLeft");
            shownInches = d->field("removalLeft")->text();
            retype(d->field("removalTop"), "0.1");
            QTest::mouseClick(d->btnOK(), Qt::LeftButton);
        });
        custom->runModal();
        QCOMPARE(shownMillimetres, u"5.0"_s);
        QVERIFY2(qAbs(inches - 5.0 / 25.4) < 1e-9, qPrintable(QString::number(inches, 'g', 12)));
        QCOMPARE(shownInches, u"0.20"_s);
        QCOMPARE(valuesAt(*ui->model(), {"Customize.BorderRemoval.left", "Customize.BorderRemoval.top",
                                         "Customize.RemoveShadow.bottom"}),
                 array({50, 25, 30}));
        const TwValue saved = SampleScanner::stored("customize");
        QVERIFY(saved.dict());
        QCOMPARE(saved.dict()->value("BorderRemoval").dict()->value("top"), TwValue(25));

        // Opened again in inches; Cancel leaves the model alone.
        timer = whenModal<TwDlgCustom>([&](TwDlgCustom* d) {
            shownInches = d->field("removalTop")->text();
            d->setUnit(TwDlgCustom::Millimetre);
            shownMillimetres = d->field("removalTop")->text();
            QTest::keyClick(d, Qt::Key_Escape);
        });
        custom->runModal();
        QCOMPARE(shownInches, u"0.10"_s);
        QCOMPARE(shownMillimetres, u"2.5"_s);
        QCOMPARE(ui->dataForKeyPath("Customize.BorderRemoval.top"), TwValue(25));
    }

    // The unit set to itself tells nobody; another unit tells each margin once.
    void aUnitSetToItselfSendsNoNotices() {
        auto ui = sample.load();
        TwDlgCustom* custom = ui->controller()->panel<TwDlgCustom>();
        custom->bindControlAll();
        ChangeRecorder notices(custom->ownValues(), {"unit"});
        for (const char* key : TwDlgCustom::kMarginKeys)
            notices.watch(custom->ownValues(), key);
        custom->setUnit(TwDlgCustom::Millimetre);
        QCOMPARE(notices.count(), 0);
        custom->setUnit(TwDlgCustom::Inch);
        QCOMPARE(notices.count(), 9);
        QCOMPARE(notices.count("unit"), 1);
        for (const char* key : TwDlgCustom::kMarginKeys)
            QCOMPARE(notices.count(key), 1);
        QVERIFY(qAbs(custom->margin("shadowLeft") - 3.0 / 25.4) < 1e-9);
        custom->unbindControlAll();
    }

    // A margin beyond the model's limit (shadows up to 25.4 mm) is refused and nothing is stored.
    void aMarginBeyondItsLimitIsRefused() {
        auto ui = sample.load();
        bool stayed = false;
        auto timer = whenModal<TwDlgCustom>([&](TwDlgCustom* d) {
            retype(d->field("shadowRight"), "30");
            QTest::mouseClick(d->btnOK(), Qt::LeftButton);
            stayed = d->isVisible();
            QTest::mouseClick(d->btnCancel(), Qt::LeftButton);
        });
        ui->controller()->onCustomize();
        QVERIFY(stayed);
        QCOMPARE(sample.alerts.size(), 1);
        QVERIFY2(sample.alerts[0].contains("25.4"), qPrintable(sample.alerts[0]));
        QCOMPARE(ui->dataForKeyPath("Customize.RemoveShadow.right"), TwValue(30));
        QVERIFY(SampleScanner::stored("customize").isNull());
    }

    // ---- Pictures (VMX_DIALOG_SHOTS=<dir>, under xvfb-run for real windows) ----

    void pictures() {
        if (dialogShotsFolder().isEmpty())
            QSKIP("VMX_DIALOG_SHOTS names no folder");
        auto ui = sample.load({.show = true});
        auto* c = ui->controllerIfMade();
        QStringList saved;
        auto take = [&](const char* name) {
            return whenModal<TwPanel>([&saved, name](TwPanel* p) {
                QTest::qWait(200); // laid out and painted
                saved << saveWindowsPicture(QString::fromLatin1(name), {p});
                QTest::keyClick(p, Qt::Key_Escape);
            });
        };
        set(*ui, "Customize.BorderRemoval.left=50 Customize.RemoveShadow.top=15");
        for (auto [panel, action] : {std::pair{"Customize", "onCustomize"},
                                     {"About", "onAbout"},
                                     {"DoubleExposure", "onDoubleExposure"},
                                     {"PageSeparation", "onPageSeparetion"},
                                     {"SaveSetting", "onSaveSetting"}}) {
            auto timer = take(panel);
            c->performAction(QLatin1String(action));
        }
        c->onStart(); // a scan shows the Stop button
        ui->showProgressDialog();
        const std::uint32_t progress[3] = {0, 5, 2};
        ui->setProgress(progress);
        QTest::qWait(200);
        saved << saveWindowsPicture(u"Scanning"_s, {c->panelIfMade<TwDlgScanning>()});
        ui->hideProgressDialog();
        ui->hideUi();
        QCOMPARE(saved.size(), 6);
        QVERIFY2(!saved.contains(QString()), "a picture was not written");
        qInfo("%s", qPrintable(saved.join(' ')));
    }

    // A window beside another lies wholly on the screen, the window manager's frame and title bar
    // included: beside the other where there is room (which the other makes by moving left when it
    // may), else narrowed, else on its left, and where it must lie over the other, clear of the
    // other's buttons. On a large and a small desktop, and at twice the scale (half the points).
    void aWindowBesideAnotherStaysOnTheScreen_data() {
        // other: client area; empty: the dialog, centred
        // level: 0 tops, 1 bottoms
        // where: right, left or over
        columns<QSize, QRect, bool, int, QString>("screen", "other", "otherMayMove", "level", "where");
        const QRect centred;
        row("1920 x 1080", QSize(1920, 1080), centred, true, 1, "right");
        row("1366 x 768: the dialog moves left", QSize(1366, 768), centred, true, 1, "right");
        row("1920 x 1080 at 2x", QSize(960, 540), centred, true, 1, "over");
        row("1366 x 768 at 2x", QSize(683, 384), centred, true, 1, "over");
        row("a question that stays: to its left", QSize(1366, 768), QRect(900, 300, 400, 150), false, 0,
            "left");
        row("above the top: pushed down", QSize(1920, 1080), QRect(100, 100, 400, 300), false, 1, "right");
    }
    void aWindowBesideAnotherStaysOnTheScreen() {
        auto [screen, other, otherMayMove, level, where] =
            fetch<QSize, QRect, bool, int, QString>("screen", "other", "otherMayMove", "level", "where");
        const QMargins frame(1, 20, 1, 5); // a window manager's border and title bar
        const QRect available(QPoint(0, 0), screen);
        if (other.isEmpty()) { // the dialog as the window system centres it
            other = QRect(QPoint(0, 0), QSize(772, 496));
            other.moveCenter(available.center());
        }
        // The dialog's bottom buttons, and the preview's size and smallest size.
        const QRect buttons(other.left() + 8, other.bottom() - 30, other.width() - 16, 24);
        const QSize size(595, 760), minimum(300, 250);
        const auto placed = TwPlacement::beside(
            TwPlacement::frameOf(other, frame), buttons, QRect(QPoint(0, 0), size), frame, minimum, available,
            10, level == 0 ? TwPlacement::Level::Tops : TwPlacement::Level::Bottoms, otherMayMove);
        const QRect window = TwPlacement::frameOf(placed.client, frame);
        const QRect moved = TwPlacement::frameOf(other, frame).translated(placed.anchorShift, 0);
        QVERIFY2(available.contains(window), qPrintable(QDebug::toString(window)));
        QVERIFY(placed.client.width() >= minimum.width() && placed.client.height() >= minimum.height());
        QVERIFY(available.contains(moved) || !available.contains(TwPlacement::frameOf(other, frame)));
        if (!otherMayMove)
            QCOMPARE(placed.anchorShift, 0);
        if (where == "right")
            QVERIFY(window.left() > moved.right());
        else if (where == "left")
            QVERIFY(window.right() < moved.left());
        else if (available.contains(buttons))
            QVERIFY(!window.intersects(buttons.translated(placed.anchorShift, 0)));
    }

    // The widget side: a panel takes the place worked out for it, and so does the window it is
    // placed beside when that moves.
    void aPanelIsPlacedAndComesUpOnTheScreen() {
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QWidget anchor;
        anchor.setGeometry(QRect(screen.right() - 100, screen.top() + 100, 90, 300));
        TwPanel panel;
        panel.resize(600, 200);
        panel.placeBeside(&anchor, 10, TwPanel::Level::Tops, {}, true);
        QCOMPARE(panel.geometry(), QRect(screen.right() - 599, screen.top() + 100, 600, 200));
        QCOMPARE(anchor.geometry().right(), screen.right() - 610);
        panel.move(screen.left() - 300, screen.top() - 50); // put off the screen, it comes up on it
        panel.show();
        QVERIFY(screen.contains(panel.frameGeometry()));
    }

    // ---- What the user keeps between sessions ----

    void firstStartWritesTheFactoryProfileOnce() {
        {
            auto ui = sample.load();
            QVERIFY(ui->dataForKeyPath("profiles.content").isEqual(array({"Untitled", "Factory Default"})));
            QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Untitled"));
        }
        auto prefs = SampleScanner::preferences();
        QCOMPARE(prefs.copyValue("Runned").intValue(), 1);
        TwValue profiles = prefs.copyValue("profiles");
        QCOMPARE(profiles.list()->size(), size_t(1));
        // The factory profile is the Default section, named.
        QCOMPARE(profiles.list()->at(0).dict()->value("Resolution"),
                 sample.capabilities.dict()->value("Default").dict()->value("Resolution"));

        {
            auto ui = sample.load();
            ui->model()->deleteCustomProfile("Factory Default"); // the only one: untitled is selected
            QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Untitled"));
            QCOMPARE(SampleScanner::stored("profiles").list()->size(), size_t(0));
        }
        auto again = sample.load(); // the user deleted it: it does not come back
        QCOMPARE(again->model()->ProfileCount(), 0);
        QVERIFY(again->dataForKeyPath("profiles.content").isEqual(array({"Untitled"})));
    }

    void savingUnderANameThatDiffersInCaseReplacesInPlace() {
        auto ui = sample.load();
        auto& model = *ui->model();
        model.AddCustomProfile("Office");
        model.AddCustomProfile("Home");
        set(*ui, "Data.Resolution", 600);
        QVERIFY(model.IsProfileExist("office"));
        ChangeRecorder watcher(model, {"profiles.name"});
        model.AddCustomProfile("OFFICE");
        QCOMPARE(profileNames(model), (QList<std::string>{"Factory Default", "OFFICE", "Home"}));
        QCOMPARE(model.customProfiles().list()->at(1).dict()->value("Resolution").intValue(), 600);
        // The setting-name box is told the new name.
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("OFFICE"));
        QCOMPARE(watcher.last(), TwValue("OFFICE"));
        QCOMPARE(SampleScanner::stored("profiles").list()->size(), size_t(3));
    }

    void deletingSelectsANeighbour_data() {
        columns<QString, QString>("deleted", "selected");
        row("the last of three: the new last", QString("B"), QString("A"));
        row("the middle: the one that moves up", QString("A"), QString("B"));
        row("an unknown name: untitled", QString("Z"), QString("Untitled"));
    }
    void deletingSelectsANeighbour() {
        QFETCH(QString, deleted);
        auto ui = sample.load();
        auto& model = *ui->model();
        model.AddCustomProfile("A");
        model.AddCustomProfile("B");
        QVERIFY(model.deleteCustomProfile(deleted.toStdString()));
        QTEST(QString::fromStdString(ui->dataForKeyPath("profiles.name").stringValue()), "selected");
    }

    // An edit of the setting selects the untitled one. Only a saved setting (or the untitled one)
    // can be selected by name, which applies it: another letter case picks the one it names, any
    // other name is refused and the selection stays. The area unit is no edit of the setting.
    void aNameSelectsOnlyASavedSetting_data() {
        columns<bool, TwValue, QString, int>("fromLow", "name", "selected", "resolution");
        row("saved", false, TwValue("Low"), "Low", 200);
        row("another case", false, TwValue("LOW"), "Low", 200);
        row("untitled, another case", true, TwValue("untitled"), "Untitled", 200);
        row("no setting", false, TwValue("lettersXYZ"), "Untitled", 600);
        row("no setting, from a saved one", true, TwValue("XYZ"), "Low", 200);
        row("not a name", true, TwValue(5), "Low", 200);
    }
    void aNameSelectsOnlyASavedSetting() {
        auto [fromLow, name] = fetch<bool, TwValue>("fromLow", "name");
        auto ui = sample.load();
        set(*ui, "Data.Resolution", 200);
        ui->model()->AddCustomProfile("Low");
        if (!fromLow)
            set(*ui, "Data.Resolution", 600);
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue(fromLow ? "Low" : "Untitled"));
        set(*ui, "profiles.name", name);
        QTEST(QString::fromStdString(ui->dataForKeyPath("profiles.name").stringValue()), "selected");
        QTEST(ui->dataForKeyPath("Data.Resolution").intValue(), "resolution");
        set(*ui, "Data.Area.Unit", 0);
        QTEST(QString::fromStdString(ui->dataForKeyPath("profiles.name").stringValue()), "selected");
    }

    void theLastSettingComesBack() {
        {
            auto ui = sample.load();
            set(*ui, {{"Data.Resolution", 600}, {"Data.ImageType", 1}});
            ui->model()->saveUntitleProfile();
        }
        {
            auto ui = sample.load();
            QCOMPARE(valuesAt(*ui->model(), {"Data.Resolution", "Data.ImageType", "profiles.name"}),
                     array({600, 1, "Untitled"}));
            QVERIFY(SampleScanner::stored("profile name").isNull());
            set(*ui, "profiles.name", "Factory Default");
            ui->model()->saveUntitleProfile();
        }
        auto ui = sample.load();
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Factory Default"));
        QCOMPARE(ui->dataForKeyPath("Data.Resolution"),
                 sample.capabilities.dict()->value("Default").dict()->value("Resolution"));
    }

    void aLastProfileDeletedElsewhereFallsBackToTheLastSetting() {
        {
            auto ui = sample.load();
            set(*ui, "Data.Resolution", 400);
            ui->model()->AddCustomProfile("Gone");
            QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Gone"));
            ui->model()->saveUntitleProfile();
        }
        auto prefs = SampleScanner::preferences();
        prefs.setValue("profiles", array());
        QVERIFY(prefs.synchronize());
        auto ui = sample.load();
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Untitled"));
        QVERIFY(!ui->dataForKeyPath("Default.Resolution").isEqual(TwValue(400)));
        QCOMPARE(ui->dataForKeyPath("Data.Resolution").intValue(), 400);
    }

    // Saved gammas come back and extend the menu (a second save of a name merges into the first);
    // a deleted gamma a profile still names reads as 0.
    void customGammasPersistAndADeletedOneBecomesZero() {
        {
            auto ui = sample.load();
            ui->model()->setCustomGamme("Warm", true, dict({{"Red", array({1, 2})}}));
            ui->model()->setCustomGamme("Warm", true, dict({{"Blue", 3}}));
            ui->model()->setCustomGamme("Mine", false, dict({{"Points", array({0, 128, 255})}}));
            QVERIFY(ui->model()->saveCustomGamma());
        }
        auto ui = sample.load();
        auto& model = *ui->model();
        QCOMPARE(model.customGammaNamesWithColor(true), std::vector<std::string>{"Warm"});
        QVERIFY(model.CustomGammas().dict()->value("Color").isEqual(model.customGammasWithColor(true)));
        TwValue warm = model.customGamme("Warm", true);
        QVERIFY(warm.dict()->value("Red").isArray() && warm.dict()->value("Blue").intValue() == 3);
        TwValue menu = ui->dataForKeyPath("content.Color.Gamma");
        QCOMPARE(menu.list()->size(), ui->dataForKeyPath("content.Gamma").list()->size() + 1);
        QCOMPARE(menu.list()->back().dict()->value("display").stringValue(), std::string("Warm"));

        QVERIFY(TwainDialogData::gammaExist(TwValue("Mine"), ui->dataForKeyPath("content.Gray.Gamma")));
        set(*ui, {{"Data.GrayImage.Front.Gamma", "Mine"}, {"Data.BinaryImage.Back.Gamma", "Mine"}});
        model.AddCustomProfile("Curved");
        model.deleteCustomGamme("Mine", false);
        QVERIFY(!TwainDialogData::gammaExist(TwValue("Mine"), ui->dataForKeyPath("content.Gray.Gamma")));
        set(*ui, "profiles.name", "Factory Default");
        set(*ui, "profiles.name", "Curved");
        QCOMPARE(valuesAt(*ui->model(), {"Data.GrayImage.Front.Gamma", "Data.BinaryImage.Back.Gamma"}),
                 array({0, 0}));
        QVERIFY(SampleScanner::stored("custom gamma").dict()->value("Gray").list()->empty());
    }

    // An applied profile in inches shows inches (the setting stays in millimetres); a paper source
    // the scanner lacks and a paper that vanished are corrected.
    void appliedProfilesAreShownAndCorrected() {
        auto ui = sample.load({.flatbed = false});
        TwValue profile = ui->dataForKeyPath("Data").deepCopy();
        profile.dict()->set("ProfileName", "Inches");
        profile.dict()->set("PaperSource", 2);
        profile.dict()->set("PaperSize", "Vanished paper");
        TwValue area = profile.dict()->value("Area");
        area.dict()->set("Unit", 0);
        area.dict()->value("Measure").dict()->set("Width", 25.4);
        ui->model()->SettingApply(profile);
        QCOMPARE(valuesAt(*ui->model(), {"Data.Area.Measure.Width", "temp.Area.Width"}), array({25.4, 1.0}));
        QCOMPARE(ui->dataForKeyPath("Data.PaperSource"), ui->dataForKeyPath("Default.PaperSource"));
        QCOMPARE(ui->dataForKeyPath("Data.PaperSize"), TwValue(1));
    }

    // Two processes (two models with preferences of their own) save in turn, each from what it read
    // at its start: different keys are both kept, none of either side's profiles is lost, and a
    // deletion made by one stays although the other still had the profile.
    void twoProcessesSavingInTurnKeepBoth() {
        auto first = sample.load();
        auto second = sample.load();
        first->model()->m_CustomPapers.list()->push_back(customPaper("Card", 55.0, 91.0));
        QVERIFY(first->model()->saveCustomPaperSize());
        second->setDataWithKeyPathValue(dict({{"Customize.BorderRemoval.left", 12}}));
        second->model()->saveCustomize();
        for (int i = 0; i < 20; ++i) {
            first->model()->AddCustomProfile("First " + std::to_string(i));
            second->model()->AddCustomProfile("Second " + std::to_string(i));
        }
        first->model()->deleteCustomProfile("Second 3");
        second->model()->AddCustomProfile("Second 20");
        auto third = sample.load();
        QVERIFY(third->model()->customPaperExist(TwValue("Card")));
        QCOMPARE(third->dataForKeyPath("Customize.BorderRemoval.left").intValue(), 12);
        const auto papers = codes<std::string>(third->dataForKeyPath("content.PaperSizeAll"), "display");
        QVERIFY(papers.back().starts_with("Card - 55.0 x 91.0 mm"));
        auto names = profileNames(*third->model());
        QCOMPARE(names.size(), std::size_t(1 + 20 + 20));
        QVERIFY(std::ranges::count(names, "First 19") == 1 && std::ranges::count(names, "Second 20") == 1);
        QVERIFY(std::ranges::count(names, "Second 3") == 0);
    }

    void marginsAreClampedAndDefaulted_data() {
        columns<TwValue, QString, int>("stored", "keyPath", "read");
        auto customize = [](const char* family, const char* side, TwValue v) {
            return dict({{family, dict({{side, v}})}});
        };
        row("border too large", customize("BorderRemoval", "left", 5000), "BorderRemoval.left", 4318);
        row("shadow negative", customize("RemoveShadow", "top", -3), "RemoveShadow.top", 0);
        row("in range", customize("RemoveShadow", "right", 40), "RemoveShadow.right", 40);
        row("not a number", customize("BorderRemoval", "bottom", "wide"), "BorderRemoval.bottom", 30);
        row("not a dictionary", TwValue(5), "RemoveShadow.left", 30);
    }
    void marginsAreClampedAndDefaulted() {
        auto [stored, keyPath] = fetch<TwValue, QString>("stored", "keyPath");
        auto prefs = SampleScanner::preferences();
        prefs.setValue("customize", stored);
        QVERIFY(prefs.synchronize());
        auto ui = sample.load();
        QTEST(ui->dataForKeyPath("Customize." + keyPath.toStdString()).intValue(), "read");
        ui->model()->resetCustomize();
        QCOMPARE(ui->dataForKeyPath("Customize." + keyPath.toStdString()).intValue(), 30);
        QVERIFY(SampleScanner::stored("customize").isNull());
    }

    void wrongTypesInThePreferencesAreIgnored() {
        auto prefs = SampleScanner::preferences();
        prefs.setValue("Runned", 1);
        prefs.setValue("profiles", array({"not a profile", dict({{"ProfileName", "Kept"}})}));
        prefs.setValue("custom papers", dict({{"Name", "x"}}));
        prefs.setValue("custom gamma", array({1}));
        prefs.setValue("untitle profile", "nothing");
        prefs.setValue("profile name", 7);
        QVERIFY(prefs.synchronize());
        auto ui = sample.load();
        QCOMPARE(profileNames(*ui->model()), QList<std::string>{"Kept"});
        QCOMPARE(ui->model()->customPaperSize().list()->size(), size_t(0));
        QVERIFY(ui->model()->customGammaNamesWithColor(true).empty());
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Untitled"));
    }

    void anUnreadableFileIsKeptAsideAndStartsEmpty() {
        QString file =
            sample.home->config() + "/" + QString::fromStdString(SampleScanner::kDomain) + ".plist";
        writeFile(file, "<plist><dict><key>profiles</key><array><dict>");
        auto ui = sample.load();
        QCOMPARE(profileNames(*ui->model()), QList<std::string>{"Factory Default"});
        QCOMPARE(QDir(sample.home->config()).entryList({"*.unreadable-*"}).size(), 1);
        QVERIFY(TwPlistReadFile(file.toStdString()).isDictionary());
    }

    void withoutABundleIdentifierNothingIsKept() {
        QTemporaryDir bundle;
        QDir().mkpath(bundle.path() + "/Contents/Resources");
        auto ui = sample.load({.bundle = bundle.path().toStdString()});
        auto& model = *ui->model();
        QVERIFY(!model.prepareFactoryProfiles() && !model.saveCustomProfile() &&
                !model.saveCustomPaperSize() && !model.saveCustomGamma());
        QVERIFY(model.customProfiles().isNull());
        model.saveUntitleProfile();
        model.AddCustomProfile("Nowhere");
        QCOMPARE(QDir(sample.home->config()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size(), 0);
        QCOMPARE(ui->dataForKeyPath("profiles.temporary"), TwValue("IDS_TEMPORARY_SETTINGNAME_NEW"));
    }

    // ---- The sample's rules and reactions ----

    void everyRuleHasAValueOnceLoaded() {
        auto ui = sample.load();
        for (auto& [target, rule] : *sample.def.UIEnable().dict()) {
            TwValue value = ui->dataForKeyPath(target);
            QVERIFY2(value.isBoolean(), target.c_str());
        }
        // One-sided paper, and A4 too long to turn.
        QCOMPARE(valuesAt(*ui->model(), {"enable.Duplex", "enable.Landscape", "enable.Deskew"}),
                 array({false, false, true}));
        QCOMPARE(codes(ui->dataForKeyPath("content.RateImageAvail")), (QList<int>{0, 1, 2}));
        QCOMPARE(ui->dataForKeyPath("temp.GrayColor"), TwValue("Color")); // the sample's own text
    }

    void aResolutionEditRunsRulesAndReactions() {
        auto ui = sample.load();
        set(*ui, "Data.ImageType=22 profiles.temporary=Untitled profiles.name=Mine");
        QCOMPARE(ui->dataForKeyPath("enable.AutoDistinctionResolution"), TwValue(true));
        set(*ui, "Data.Resolution", TwValue(150));
        QCOMPARE(ui->dataForKeyPath("enable.AutoDistinctionResolution"), TwValue(false));
        QCOMPARE(codes(ui->dataForKeyPath("content.RateImageAvail")), QList<int>{0});
        QCOMPARE(valuesAt(*ui->model(), {"temp.GrayDPI", "profiles.name", "temp.GrayColor"}),
                 array({150, "Untitled", "Gray"}));
    }

    void paperEditsReachRulesAndArea() {
        auto ui = sample.load();
        QCOMPARE(ui->dataForKeyPath("enable.Layout.Rotate"), TwValue(true));
        set(*ui, {{"Data.PaperSize", TwValue(5)}, {"Data.Landscape", TwValue(true)}});
        QCOMPARE(valuesAt(*ui->model(), {"enable.Layout.Rotate", "Data.Area.Measure.Width"}),
                 array({false, 210.0}));
        set(*ui, "Data.PaperSize", TwValue(4)); // Legal cannot turn
        QCOMPARE(
            valuesAt(*ui->model(), {"enable.Landscape", "enable.Layout.Rotate", "Data.Area.Measure.Length"}),
            array({false, true, 355.6}));
        // The feeder in duplex: the back side is offered and both sides are selected.
        set(*ui, "Data.PaperSource", TwValue(1));
        QCOMPARE(ui->dataForKeyPath("enable.Area.Back"), TwValue(true));
        for (const char* side : {"temp.BinaryImageSide", "temp.GrayImageSide", "temp.ColorImageSide"})
            QCOMPARE(ui->dataForKeyPath(side), TwValue(2));
        set(*ui, "temp.GrayImageSide", TwValue(1));
        QCOMPARE(ui->dataForKeyPath("temp.GrayImageSideText"), TwValue("Back"));
        // The flatbed switches feed pages off.
        set(*ui, "Data.Feed.FeedPageMode", TwValue(1));
        QCOMPARE(ui->dataForKeyPath("enable.Feed.FeedPage"), TwValue(true));
        set(*ui, "Data.PaperSource", TwValue(2));
        QCOMPARE(valuesAt(*ui->model(), {"Data.Feed.FeedPageMode", "enable.Feed.FeedPage"}),
                 array({0, false}));
    }

    // The default setting is applied before the model observes itself, so the working copies
    // exist and are observed from the start.
    void workingValuesMirrorIntoTheSettingOnceLoaded() {
        auto ui = sample.load();
        set(*ui, "temp.BinaryImage.Brightness", TwValue(90));
        QCOMPARE(ui->dataForKeyPath("Data.BinaryImage.Front.Brightness").intValue(), 90);
        set(*ui, "Data.PaperSource", TwValue(1)); // duplex: both sides are edited together
        set(*ui, "temp.ColorImage.Contrast", TwValue(70));
        QCOMPARE(valuesAt(*ui->model(), {"Data.ColorImage.Front.Contrast", "Data.ColorImage.Back.Contrast"}),
                 array({70, 70}));
    }

    void replacingOrClosingTheModelEndsItsObservation() {
        auto ui = sample.load();
        std::shared_ptr<TwainDialogData> first = ui->model();
        ui->setDataWithDictionary(sample.capabilities.deepCopy(), 0);
        QCOMPARE(first->observationCount(first.get()), std::size_t(0));
        std::shared_ptr<TwainDialogData> second = ui->model();
        QVERIFY(second != first);
        QVERIFY(second->observationCount(second.get()) > 0);
        ui->closeDS();
        QCOMPARE(second->observationCount(second.get()), std::size_t(0));

        auto other = sample.load();
        std::shared_ptr<TwainDialogData> third = other->model();
        other.reset();
        QCOMPARE(third->observationCount(third.get()), std::size_t(0));
    }

    // ---- The facade without a window, with a small model definition ----

    void withoutModelEverythingIsQuiet() {
        VmxUIControllerImpl ui;
        QVERIFY(ui.dataForKeyPath("Data.Resolution").isNull());
        QVERIFY(ui.DialogData() == nullptr);
        ui.setDataWithKeyPathValue(dict({{"Data.Resolution", 300}}));
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
        auto ui = hostLoaded(flatbed, passport);
        QCOMPARE(codes(ui->dataForKeyPath("content.PaperSource")), expected);
        QCOMPARE(codes(ui->dataForKeyPath("content.PaperSourceAll")).size(), size_t(6));
    }

    // The contents are one change per observed list; key-path writes tell once and ignore a
    // value that is no dictionary.
    void contentsAndKeyPathWrites() {
        auto ui = hostLoaded();
        QCOMPARE(ui->dataForKeyPath("Default.Resolution").intValue(), 200);
        ChangeRecorder o(*ui->model(), {"content.Resolution", "content.PaperSource", "Data.Resolution"});
        ui->setUIContents(def.options);
        QCOMPARE(o.count(), 2);
        set(*ui, "Data.Resolution=600 Data.Feed.NoLookAhead=true");
        QCOMPARE(o.count(), 3);
        QCOMPARE(ui->dataForKeyPath("Data.Resolution").intValue(), 600);
        QVERIFY(ui->dataForKeyPath("Data.Feed.NoLookAhead").boolValue());
        ui->setDataWithKeyPathValue(TwValue());
        QCOMPARE(ui->dataForKeyPath("Data.Resolution").intValue(), 600);
    }

    // Values cross the facade as copies both ways: a sub-dictionary the data source shares between
    // two sections, the caller's own tree, and what it reads back never alias the store.
    void valuesCrossTheFacadeAsCopies() {
        TwValue shared = dict({{"Enable", false}, {"Width", 10}});
        TwValue values = capabilityValues(true, true);
        values.dict()->value("Data").dict()->set("Extra", shared);
        values.dict()->value("Default").dict()->set("Extra", shared);
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->setModelDef(&def);
        ui->setDataWithDictionary(values, 0);
        ui->setDataWithKeyPathValue(dict({{"Data.Extra.Enable", true}}));
        QVERIFY(!ui->dataForKeyPath("Default.Extra.Enable").boolValue());
        QVERIFY(!shared.dict()->value("Enable").boolValue());

        TwValue written = dict({{"Width", 20}});
        ui->setDataWithKeyPathValue(dict({{"Data.Extra", written}}));
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
        auto ui = hostLoaded();
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
        auto ui = hostLoaded();
        QVERIFY(ui->customPaperSize().isArray());
        ui->model()->setCustomGamme("Soft", true, dict({{"Red", 1}}));
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
        // Closing drops the model: nothing is forwarded any more.
        ui->closeDS();
        QVERIFY(ui->DialogData() == nullptr);
        QVERIFY(ui->dataForKeyPath("Data.Resolution").isNull());
        ui->setPaperFrame(wanted);
        QVERIFY(ui->customPaperSize().isNull());
    }

    void malformedCapabilityValuesAreRefused() {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->setModelDef(&def);
        ui->setDataWithDictionary(array({1, 2}), 0);
        QVERIFY(ui->DialogData() != nullptr); // an empty model, still usable
        QVERIFY(ui->dataForKeyPath("Data.Resolution").isNull());
        QCOMPARE(codes(ui->dataForKeyPath("content.PaperSource")), (QList<int>{0, 1}));
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
        OrvaSetLogLevel(kOrvaLogDebug);
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

QTEST_MAIN(TestPanels)
#include "tst_panels.moc"
