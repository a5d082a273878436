// The panels the main dialog opens, driven as a person drives them (typing, pressing their
// buttons) with the sample scanner: which button opens which panel, the name dialog and its
// checks, the about panel, the page-order dialogs and the customize dialog's units and margins.
#include "SampleFixture.h"
#include "TwDlgAbout.h"

class TestPanels : public QObject {
    Q_OBJECT

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

private slots:
    void initTestCase() { QVERIFY2(sample.read(), sample.error.c_str()); }
    void init() {
        sample.reset();
        sample.recordBoxes();
    }

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
        QTest::mouseClick(ui->controllerIfMade()->windowIfLoaded()->btnSave(), Qt::LeftButton);
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
        QVERIFY(!stayed && !model->IsProfileExist("One too many"));
        QCOMPARE(sample.boxes.size(), std::size_t(1));
        QVERIFY(sample.boxes[0].message.startsWith(u"No more items can be saved"_s));

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
        TwDlgSaveSetting* d = ui->controller()->dlgSaveSetting();
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
        TwDlgMain* w = ui->controllerIfMade()->windowIfLoaded();
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
        auto other = std::make_unique<VmxUIControllerImpl>();
        other->initWithDSBundle(bare.path().toStdString());
        other->setModelDef(&sample.def);
        other->setDataWithDictionary(TwValue::dictionary(), 0);
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
        ui->setDataWithKeyPathValue(TwValue::dictionary(
            {{"Data.Layout.DoubleExposure.PageOrder", 2}, {"Data.Layout.DoubleExposure.PaperSize", paper}}));
        int shownOrder = -1, shownPaper = -1;
        auto timer = whenModal<TwDlgDoubleExposure>([&](TwDlgDoubleExposure* d) {
            shownOrder = d->rdoDoubleExposure()->selectedIndex();
            shownPaper = d->cmbPaperSize()->currentIndex();
            d->findChild<QRadioButton*>("rdoDoubleExposure_3")->click();
            d->cmbPaperSize()->setCurrentIndex(5); // as a person picks it
            emit d->cmbPaperSize()->activated(5);
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
        TwDlgCustom* custom = ui->controller()->dlgCustom();
        QCOMPARE(custom->unit(), std::uint32_t(TwDlgCustom::Millimetre));
        QString shownMillimetres, shownInches;
        double inches = 0;
        auto timer = whenModal<TwDlgCustom>([&](TwDlgCustom* d) {
            shownMillimetres = d->field("removalLeft")->text();
            d->cmbUnit()->setCurrentIndex(d->cmbUnit()->findText("Inches"));
            emit d->cmbUnit()->activated(d->cmbUnit()->currentIndex());
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
                 TwValue::array({50, 25, 30}));
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
        TwDlgCustom* custom = ui->controller()->dlgCustom();
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
        saved << saveWindowsPicture(u"Scanning"_s, {c->scanningPanel()});
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
        QVERIFY2(available.contains(window), qPrintable(QString("%1 %2 %3 %4")
                                                            .arg(window.x())
                                                            .arg(window.y())
                                                            .arg(window.width())
                                                            .arg(window.height())));
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
};

QTEST_MAIN(TestPanels)
#include "tst_panels.moc"
