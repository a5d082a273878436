// The settings dialog driven through the facade with the sample scanner: the tabs the model
// definition leaves, settings-only mode, the button actions and what they send and save, the
// modal-run flags, binding without leftovers, progress, help, and calls from other threads.
#include "SampleFixture.h"

using Codes = std::vector<std::uint16_t>;

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
    SampleScanner sample;
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

private slots:
    void initTestCase() {
        QVERIFY2(sample.read(), sample.error.c_str());
        mainDialog = sample.definition.dict()->value("UIControl").dict()->value("MainDialog").deepCopy();
    }
    void init() {
        sample.reset();
        sample.definition.dict()->value("UIControl").dict()->set("MainDialog", mainDialog.deepCopy());
    }

    // ---- Tabs ----

    void aHiddenTabIsGoneAndTheOthersRemain() {
        setTab("Layout", TwValue::dictionary({{"hidden", true}}));
        setTab("Feed", TwValue::dictionary({{"hidden", 1}, {"localizedText", "Never shown"}}));
        setTab("Area", TwValue::dictionary({{"hidden", "yes"}})); // not a number: shown
        setTab("Basic", TwValue::dictionary({{"hidden", false}, {"localizedText", "Main"}}));
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
        setTab("ControlSheet", TwValue::dictionary({{"hidden", true}}));
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
        const int width = w->width();
        const int hintWidth = w->sizeHint().width();
        ui->hideUi();

        const QString text = u"Long text "_s.repeated(10000);
        ui->setDataWithKeyPathValue(TwValue::dictionary(
            {{"temp.GrayDPI", text.toStdString()}, {"temp.Distinction", text.toStdString()}}));
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
        QVERIFY(g_sent.empty() && !prompted && SampleScanner::stored("untitle profile").isNull());
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
        TwSetFormatterAlert({}); // the real box
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
            const auto controls = page->findChildren<QWidget*>();
            const bool pageTakesTab = std::any_of(controls.begin(), controls.end(), [](QWidget* c) {
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
        QVERIFY(!ui->controllerIfMade()->dlgGamma()->isColor());
    }

    // ---- Settings ----

    // The untitled setting cannot be deleted; another is deleted once the user says OK.
    void deletingASetting() {
        sample.recordBoxes();
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
        TwDlgScanning* panel = c->scanningPanel();
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
                 qPrintable(u"%1,%2"_s.arg(centreOf(panel).x()).arg(centreOf(panel).y())));
        QTest::mouseClick(panel->btnStop(), Qt::LeftButton);
        QCOMPARE(sentCodes(), (Codes{kVmxEventStart, kVmxEventScanCancel}));
        ui->hideUi(); // hides the progress too
        QVERIFY(!panel->isVisible());
    }

    void progressWithoutTheDialogOrWithoutIndicators() {
        auto ui = loaded();
        ui->showProgressDialog();
        auto* panel = ui->controllerIfMade()->scanningPanel();
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
        TwainDialogController c;
        const QString bundle = QString::fromStdString(SampleScanner::kBundle);
        QVERIFY(!c.registerHelp({"/nonexistent", bundle + "/Contents"}));
        QVERIFY(c.registerHelp({"/nonexistent", bundle}));
        QCOMPARE(c.helpBookName(), u"Orvanic VMX-S Scanner Help"_s);

        QList<QUrl> opened;
        bool launches = true; // a machine without a browser or launcher cannot open the page
        TwainDialogController::setUrlOpener([&](const QUrl& url) {
            opened << url;
            return launches;
        });
        TwainDialogController::setHelpRoot(u"/nonexistent-help-root"_s);
        sample.recordBoxes();
        auto ui = shown();
        // The main panel's Help button and the other panels' open the page once each.
        QTest::mouseClick(window(*ui)->btnHelp(), Qt::LeftButton);
        auto* panels = ui->controller();
        for (TwPanel* panel :
             std::initializer_list<TwPanel*>{panels->dlgCustom(), panels->dlgDoubleExposure(),
                                             panels->dlgPageSeparation(), panels->dlgPaperSize()})
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
        auto bare = loaded(empty.path().toStdString());
        bare->showUi(true, false, false);
        bare->controllerIfMade()->onHelp();
        QVERIFY(opened.isEmpty());
        QCOMPARE(sample.boxes.size(), std::size_t(1));
        QCOMPARE(sample.boxes[0].message, u"IDS_ERR_HELPFILE_LOAD"_s); // no string table here
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

    void hideUiFromAnotherThreadRunsOnTheGuiThread() {
        auto ui = shown();
        std::atomic_bool done{false};
        std::thread worker([&] {
            ui->hideUi();
            done = true;
        });
        QTRY_VERIFY(done.load());
        worker.join();
        QVERIFY(!window(*ui)->isVisible());
    }

    // The title is a key of the string table and the message the box's informative text; the
    // answer is the button pressed, from a worker too.
    void aMessageBoxAnswersTheButtonFromAnyThread() {
        auto ui = loaded();
        QStringList texts;
        auto timer = whenModal<QMessageBox>([&](QMessageBox* box) {
            texts = {box->text(), box->informativeText()};
            buttonTitled(box, "Cancel")->click();
        });
        std::atomic_int answer{-1};
        std::thread worker(
            [&] { answer = ui->showMessageBox("Replace the paper?", "IDS_CAPTION_SAVESETTING", 0x40002); });
        QTRY_VERIFY(answer.load() != -1);
        worker.join();
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
        QVERIFY(!ui->performDialogAction("onNothing") && ui->performDialogAction("onOK"));
        QCOMPARE(sentCodes(), Codes{kVmxEventClosed});
    }
};

QTEST_MAIN(TestDialog)
#include "tst_dialog.moc"
