// The custom paper-size dialog with the sample scanner: names, the feeder clamp, the limit of 50,
// overwriting, units, the limit labels, deleting and what stays selected, the list being the
// model's own, what persists, and what the main dialog's paper selection does afterwards.
#include "SampleFixture.h"
#include "TwPaperSizeTableModel.h"

class TestPaperSize : public QObject {
    Q_OBJECT

    // The sample feeder in millimetres (its definition gives inches).
    static constexpr double kMinWidth = 2.0 * 25.4, kMaxWidth = 8.504 * 25.4, kMinLength = 2.0 * 25.4,
                            kMaxLength = 118.0 * 25.4;

    SampleScanner scanner;

    // Enters a paper as the user would leave it in the fields (already converted to the unit).
    static void enter(TwDlgPaperSize* d, const std::string& name, double width, double length) {
        d->ownValues().setValueForKeyPath(name, "paperName");
        d->ownValues().setValueForKeyPath(width, "paperWidth");
        d->ownValues().setValueForKeyPath(length, "paperLength");
    }
    static TwValue papers(VmxUIControllerImpl& ui) { return ui.model()->customPaperSize(); }

private slots:
    void init() { QVERIFY2(scanner.reset(), scanner.error.c_str()); }

    // Save trims the name (32 characters at most, a blank one asks for a name), rounds the size to
    // tenths of a millimetre and holds it within the feeder's limits, also with a flatbed that
    // takes other sizes; inches are saved as millimetres.
    void whatSaveStores_data() {
        // savedName: empty: nothing saved
        columns<QString, bool, int, QSizeF, QString, QSizeF, QString>("name", "flatbed", "unit", "size",
                                                                      "savedName", "saved", "message");
        const QSizeF card(100, 150);
        row("32 characters", QString(32, 'n'), true, 1, card, QString(32, 'n'), card, "");
        row("33 characters", QString(33, 'n'), true, 1, card, "", card,
            "The name must be 32 characters or fewer.");
        row("trimmed to 32", "  " + QString(32, 't') + " ", true, 1, card, QString(32, 't'), card, "");
        row("blank", "   ", true, 1, card, "", card, "Please enter a name.");
        row("rounded to tenths", "Custom", true, 1, QSizeF(100.04, 150.05), "Custom", QSizeF(100.0, 150.1),
            "");
        row("too wide, too short", "Custom", true, 1, QSizeF(300, 10), "Custom",
            QSizeF(kMaxWidth, kMinLength), "");
        row("too narrow, too long, no flatbed", "Custom", false, 1, QSizeF(1, 9000), "Custom",
            QSizeF(kMinWidth, kMaxLength), "");
        row("inches", "Custom", true, 0, QSizeF(4, 6), "Custom", QSizeF(101.6, 152.4), "");
    }
    void whatSaveStores() {
        auto [name, flatbed, unit, size, savedName, saved, message] =
            fetch<QString, bool, int, QSizeF, QString, QSizeF, QString>("name", "flatbed", "unit", "size",
                                                                        "savedName", "saved", "message");
        auto ui = scanner.load({.flatbed = flatbed});
        runWith(ui->controller()->panel<TwDlgPaperSize>(), [&](TwDlgPaperSize* d) {
            d->ownValues().setValueForKeyPath(unit, "unit");
            enter(d, name.toStdString(), size.width(), size.height());
            d->onSave();
            d->onClose();
        });
        QCOMPARE(scanner.boxMessages(), message.isEmpty() ? QStringList() : QStringList{message});
        for (auto& box : scanner.boxes)
            QCOMPARE(box.messageType, 0x20001u);
        QCOMPARE(papers(*ui).list()->size(), std::size_t(savedName.isEmpty() ? 0 : 1));
        if (!savedName.isEmpty())
            QCOMPARE(papers(*ui).list()->front(),
                     customPaper(savedName.toStdString(), float(saved.width()), float(saved.height())));
    }

    // The fifty-first new paper is refused; a paper of the same name is saved over after a Yes,
    // also at fifty, and left alone after a No.
    void fiftyPapersAndOverwriting() {
        auto ui = scanner.load();
        for (int i = 0; i < 50; ++i)
            papers(*ui).list()->push_back(customPaper("Paper " + std::to_string(i), 100, 100));
        runWith(ui->controller()->panel<TwDlgPaperSize>(), [&](TwDlgPaperSize* d) {
            enter(d, "One too many", 120, 120);
            d->onSave();
            QCOMPARE(d->papersModel()->rowCount(), 50);
            scanner.boxAnswers = {kVmxAnswerNo, kVmxAnswerYes};
            enter(d, "Paper 7", 120, 130);
            d->onSave();
            QCOMPARE(d->papersModel()->paper(7).dict()->value("Width"), TwValue(100));
            d->onSave();
            QCOMPARE(d->papersModel()->rowCount(), 50);
            QCOMPARE(d->papersModel()->paper(7).dict()->value("Length"), TwValue(130));
            QCOMPARE(d->selectedRow(), 7);
            QVERIFY(d->addedPaperSize().isEmpty());
            d->onClose();
        });
        const QString overwrite = u"\"Paper 7\" already exists. Do you want to overwrite it?"_s;
        QCOMPARE(scanner.boxMessages(),
                 (QStringList{"No more items can be saved. Delete an item you no longer need and try again.",
                              overwrite, overwrite}));
        QCOMPARE(scanner.boxes.back().messageType, 0x40003u);
        QCOMPARE(SampleScanner::stored("custom papers").list()->at(7).dict()->value("Length"), TwValue(130));
    }

    // Millimetres to inches and back multiplies back what was divided; the field ranges, the
    // limit labels and the list follow the unit.
    void switchingUnits() {
        auto ui = scanner.load({.flatbed = false});
        papers(*ui).list()->push_back(customPaper("Card", 85.6, 54.0));
        runWith(ui->controller()->panel<TwDlgPaperSize>(), [&](TwDlgPaperSize* d) {
            auto* formatter = qobject_cast<const TwainNumberFormatter*>(d->txtWidth()->validator());
            auto* label = d->findChild<QLabel*>(u"labADFMaxWidth"_s);
            const QModelIndex size = d->papersModel()->index(0, TwPaperSizeTableModel::SizeColumn);
            QCOMPARE(d->txtWidth()->text(), u"210.0"_s);
            QCOMPARE(*formatter->maximum(), 216.0); // 8.504 in, in tenths of a millimetre, truncated
            QCOMPARE(label->text(), u"216.0"_s);
            QCOMPARE(size.data().toString(), u"85.6 × 54.0"_s);

            choose(d->cmbUnit(), u"Inches"_s);
            QCOMPARE(d->unit(), 0);
            QCOMPARE(d->ownValues().valueForKeyPath("paperWidth").doubleValue(), 210.0 / 25.4);
            QCOMPARE(d->txtWidth()->text(), u"8.27"_s);
            QCOMPARE(*formatter->maximum(), 8.50); // hundredths of an inch, truncated
            QCOMPARE(*formatter->minimum(), 2.0);  // 508 tenths of a millimetre are 200 hundredths
            QCOMPARE(label->text(), u"8.50"_s);
            QCOMPARE(size.data().toString(), u"3.37 × 2.13"_s);

            d->ownValues().setValueForKeyPath(1, "unit");
            QCOMPARE(d->ownValues().valueForKeyPath("paperWidth").doubleValue(), 210.0 / 25.4 * 25.4);
            QCOMPARE(d->ownValues().valueForKeyPath("paperLength").doubleValue(), 297.0 / 25.4 * 25.4);
            QCOMPARE(label->text(), u"216.0"_s);
        });
    }

    // The flatbed's four limits, "-" without a flatbed; the feeder's beside them.
    void theLimitLabels_data() {
        // shown: flatbed min, max width, min, max length; feeder min length
        columns<bool, QStringList>("flatbed", "shown");
        row("no flatbed", false, QStringList{"-", "-", "-", "-", "50.8"});
        row("flatbed", true, QStringList{"12.7", "215.9", "12.7", "296.9", "50.8"});
    }
    void theLimitLabels() {
        auto [flatbed, shown] = fetch<bool, QStringList>("flatbed", "shown");
        auto ui = scanner.load({.flatbed = flatbed});
        runWith(ui->controller()->panel<TwDlgPaperSize>(), [&](TwDlgPaperSize* d) {
            const QStringList labels{"labFlatMinWidth", "labFlatMaxWidth", "labFlatMinLength",
                                     "labFlatMaxLength", "labADFMinLength"};
            QCOMPARE(mapped(labels, [&](const QString& name) { return d->findChild<QLabel*>(name)->text(); }),
                     shown);
        });
    }

    // Selecting a row loads it; deleting the last of several selects the row above, deleting
    // another keeps the place selected, deleting the only one leaves no selection and Delete off.
    void deletingAndTheSelection_data() {
        columns<int, int, int, int, QString>("count", "row", "answer", "selectedAfter", "nameShown");
        row("last of three", 3, 2, int(kVmxAnswerOK), 1, "P1");
        row("middle of three", 3, 1, int(kVmxAnswerOK), 1, "P2");
        row("first of three", 3, 0, int(kVmxAnswerOK), 0, "P1");
        row("only one", 1, 0, int(kVmxAnswerOK), -1, "P0");
        row("cancelled", 3, 2, int(kVmxAnswerCancel), 2, "P2");
    }
    void deletingAndTheSelection() {
        auto [count, row, answer, selectedAfter, nameShown] =
            fetch<int, int, int, int, QString>("count", "row", "answer", "selectedAfter", "nameShown");
        auto ui = scanner.load();
        for (int i = 0; i < count; ++i)
            papers(*ui).list()->push_back(customPaper("P" + std::to_string(i), 100 + i, 200));
        scanner.boxAnswer = answer;
        runWith(ui->controller()->panel<TwDlgPaperSize>(), [&](TwDlgPaperSize* d) {
            QVERIFY(!d->btnDelete()->isEnabled());
            d->onDelete(); // nothing selected: nothing asked
            QVERIFY(scanner.boxes.empty());
            QTest::mouseClick(d->tblPaperSize()->viewport(), Qt::LeftButton, {},
                              d->tblPaperSize()->visualRect(d->papersModel()->index(row, 0)).center());
            QCOMPARE(d->selectedRow(), row);
            QCOMPARE(d->txtName()->text(), u"P%1"_s.arg(row));
            QCOMPARE(d->txtWidth()->text(), u"%1.0"_s.arg(100 + row));
            QVERIFY(d->btnDelete()->isEnabled());
            QTest::mouseClick(d->btnDelete(), Qt::LeftButton);
            QCOMPARE(scanner.boxMessages(),
                     QStringList{u"Are you sure you want to delete the paper size \"P%1\"?"_s.arg(row)});
            QCOMPARE(scanner.boxes[0].messageType, 0x40002u);
            QCOMPARE(d->selectedRow(), selectedAfter);
            QCOMPARE(d->btnDelete()->isEnabled(), selectedAfter >= 0);
            QCOMPARE(d->txtName()->text(), nameShown);
        });
        const int left = answer == kVmxAnswerOK ? count - 1 : count;
        QCOMPARE(int(papers(*ui).list()->size()), left);
        const TwValue stored = SampleScanner::stored("custom papers");
        QCOMPARE(stored.list() ? int(stored.list()->size()) : 0, answer == kVmxAnswerOK ? left : 0);
    }

    // The table presents the model's own list: a paper saved is in the model's array (the same
    // one), saved to the preferences, and read back by a new model as after a restart.
    void theListIsTheModelsAndPersists() {
        {
            auto ui = scanner.load();
            const TwValue list = papers(*ui);
            runWith(ui->controller()->panel<TwDlgPaperSize>(), [&](TwDlgPaperSize* d) {
                QCOMPARE(d->papersModel()->papers().list(), list.list());
                QTest::keyClicks(d->txtName(), u"Receipt"_s);
                d->txtWidth()->selectAll();
                QTest::keyClicks(d->txtWidth(), u"80"_s);
                d->txtLength()->selectAll();
                QTest::keyClicks(d->txtLength(), u"250.5"_s);
                QTest::mouseClick(d->btnSave(), Qt::LeftButton);
                QCOMPARE(d->selectedRow(), 0);
                QCOMPARE(d->addedPaperSize(), QStringList{u"Receipt"_s});
                QTest::mouseClick(d->btnClose(), Qt::LeftButton);
            });
            QCOMPARE(list.list()->size(), std::size_t(1));
        }
        QCOMPARE(papers(*scanner.load()), array({customPaper("Receipt", 80.0, double(250.5f))}));
    }

    // From the Basic tab's button with the main dialog modal and modeless: a paper added becomes
    // the selection and appears in the paper lists; deleting the selected custom paper falls
    // back to a standard one and the area follows the new paper.
    void theMainDialogFollows_data() {
        QTest::addColumn<bool>("modal");
        row("modeless", false);
        row("modal", true);
    }
    void theMainDialogFollows() {
        QFETCH(bool, modal);
        auto ui = scanner.load({.show = true, .modal = modal});
        QPushButton* custom = tabChild<QPushButton>(*ui, "Basic", "btnCustom");
        auto add = whenModal<TwDlgPaperSize>([&](TwDlgPaperSize* d) {
            enter(d, "Postcard", 100, 148);
            QTest::mouseClick(d->btnSave(), Qt::LeftButton);
            QTest::mouseClick(d->btnClose(), Qt::LeftButton);
        });
        QTest::mouseClick(custom, Qt::LeftButton);
        QVERIFY(!ui->controller()->panel<TwDlgPaperSize>()->isVisible());
        QCOMPARE(ui->dataForKeyPath("Data.PaperSize"), TwValue("Postcard"));
        const TwValue all = ui->dataForKeyPath("content.PaperSizeAll");
        QCOMPARE(all.list()->back().dict()->value("value"), TwValue("Postcard"));
        QCOMPARE(ui->dataForKeyPath("content.PaperSizeAllPlusNone").list()->back().dict()->value("value"),
                 TwValue("Postcard"));
        QCOMPARE(ui->dataForKeyPath("Data.Area.Measure.Width").doubleValue(), 100.0);

        auto remove = whenModal<TwDlgPaperSize>([&](TwDlgPaperSize* d) {
            d->selectRow(0);
            d->onDelete();
            d->onClose();
        });
        QTest::mouseClick(custom, Qt::LeftButton);
        QCOMPARE(ui->dataForKeyPath("Data.PaperSize"), TwValue(1));
        QCOMPARE(ui->dataForKeyPath("content.PaperSizeAll").list()->size(), all.list()->size() - 1);
        QCOMPARE(ui->dataForKeyPath("Data.Area.Measure.Width").doubleValue(), 210.0);
    }

    // VMX_EDITOR_SHOTS=<dir>: the picture of the README, with a few papers in inches.
    void pictureForTheReadme() {
        if (qEnvironmentVariableIsEmpty("VMX_EDITOR_SHOTS"))
            QSKIP("VMX_EDITOR_SHOTS is not set");
        auto ui = scanner.load();
        for (const TwValue& p : {customPaper("Receipt", 80.0, 297.0), customPaper("Postcard", 100.0, 148.0),
                                 customPaper("Check", 152.4, 69.8)})
            papers(*ui).list()->push_back(p);
        runWith(ui->controller()->panel<TwDlgPaperSize>(), [&](TwDlgPaperSize* d) {
            d->ownValues().setValueForKeyPath(0, "unit");
            d->selectRow(1);
            QVERIFY(saveEditorPicture(d, u"PaperSize"_s));
        });
    }
};

QTEST_MAIN(TestPaperSize)
#include "tst_papersize.moc"
