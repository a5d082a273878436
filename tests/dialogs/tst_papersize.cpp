// The custom paper-size dialog with the sample scanner: names, the feeder clamp, the limit of 50,
// overwriting, units, the limit labels, deleting and what stays selected, the list being the
// model's own, what persists, and what the main dialog's paper selection does afterwards.
#include "EditorTestSupport.h"
#include "TwDlgMain.h"
#include "TwDlgPaperSize.h"
#include "TwPaperSizeTableModel.h"
#include "TwainNumberFormatter.h"
#include "TwainView.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

namespace {
// The sample feeder in millimetres (its definition gives inches).
constexpr double kMinWidth = 2.0 * 25.4, kMaxWidth = 8.504 * 25.4, kMinLength = 2.0 * 25.4,
                 kMaxLength = 118.0 * 25.4;

TwValue paper(const std::string& name, double width, double length) {
    return TwValue::dictionary({{"Name", name}, {"Width", width}, {"Length", length}});
}
} // namespace

class TestPaperSize : public QObject {
    Q_OBJECT
    SampleScanner scanner;

    // Enters a paper as the user would leave it in the fields (already converted to the unit).
    static void enter(TwDlgPaperSize* d, const std::string& name, double width, double length) {
        d->ownValues().setValueForKeyPath(name, "paperName");
        d->ownValues().setValueForKeyPath(width, "paperWidth");
        d->ownValues().setValueForKeyPath(length, "paperLength");
    }
    static TwValue papers(VmxUIControllerImpl& ui) { return ui.model()->customPaperSize(); }

private slots:
    void initTestCase() { QVERIFY(scanner.load()); }
    void init() { scanner.reset(); }
    void cleanupTestCase() { TwSetMessageBoxRunner({}); }

    // Names are trimmed and at most 32 characters; a blank one asks for a name.
    void names_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("saved");
        QTest::addColumn<QString>("message");
        QTest::newRow("32 characters") << QString(32, 'n') << QString(32, 'n') << QString();
        QTest::newRow("33 characters")
            << QString(33, 'n') << QString() << QStringLiteral("The name must be 32 characters or fewer.");
        QTest::newRow("trimmed to 32") << "  " + QString(32, 't') + " " << QString(32, 't') << QString();
        QTest::newRow("blank") << QStringLiteral("   ") << QString()
                               << QStringLiteral("Please enter a name.");
    }
    void names() {
        QFETCH(QString, name);
        QFETCH(QString, saved);
        QFETCH(QString, message);
        auto ui = scanner.facade();
        auto* dialog = ui->controller()->dlgPaperSize();
        runWith(dialog, [&](TwDlgPaperSize* d) {
            enter(d, name.toStdString(), 100.0, 150.0);
            d->onSave();
            d->onClose();
        });
        QCOMPARE(papers(*ui).list()->size(), std::size_t(saved.isEmpty() ? 0 : 1));
        if (!saved.isEmpty())
            QCOMPARE(papers(*ui).list()->front().dict()->value("Name"), TwValue(saved.toStdString()));
        QCOMPARE(scanner.boxes.size(), std::size_t(message.isEmpty() ? 0 : 1));
        if (!message.isEmpty()) {
            QCOMPARE(scanner.boxes[0].message, message);
            QCOMPARE(scanner.boxes[0].messageType, 0x20001u);
        }
    }

    // A size reaching Save is rounded to tenths of a millimetre and held within the feeder's
    // limits, also with a flatbed that takes other sizes; inches are saved as millimetres.
    void sizesAreRoundedAndClampedToTheFeeder_data() {
        QTest::addColumn<bool>("flatbed");
        QTest::addColumn<int>("unit");
        QTest::addColumn<double>("width");
        QTest::addColumn<double>("length");
        QTest::addColumn<double>("savedWidth");
        QTest::addColumn<double>("savedLength");
        QTest::newRow("within") << true << 1 << 100.04 << 150.05 << 100.0 << 150.1;
        QTest::newRow("too wide, too short") << true << 1 << 300.0 << 10.0 << kMaxWidth << kMinLength;
        QTest::newRow("too narrow, too long") << false << 1 << 1.0 << 9000.0 << kMinWidth << kMaxLength;
        QTest::newRow("inches") << true << 0 << 4.0 << 6.0 << 101.6 << 152.4;
    }
    void sizesAreRoundedAndClampedToTheFeeder() {
        QFETCH(bool, flatbed);
        QFETCH(int, unit);
        QFETCH(double, width);
        QFETCH(double, length);
        QFETCH(double, savedWidth);
        QFETCH(double, savedLength);
        auto ui = scanner.facade(flatbed);
        runWith(ui->controller()->dlgPaperSize(), [&](TwDlgPaperSize* d) {
            d->ownValues().setValueForKeyPath(unit, "unit");
            enter(d, "Custom", width, length);
            d->onSave();
            d->onClose();
        });
        const TwDictionary* saved = papers(*ui).list()->front().dict();
        QCOMPARE(saved->value("Width").doubleValue(), double(float(savedWidth)));
        QCOMPARE(saved->value("Length").doubleValue(), double(float(savedLength)));
    }

    // The fifty-first new paper is refused; a paper of the same name is saved over after a Yes,
    // also at fifty, and left alone after a No.
    void fiftyPapersAndOverwriting() {
        auto ui = scanner.facade();
        for (int i = 0; i < 50; ++i)
            papers(*ui).list()->push_back(paper("Paper " + std::to_string(i), 100, 100));
        runWith(ui->controller()->dlgPaperSize(), [&](TwDlgPaperSize* d) {
            enter(d, "One too many", 120, 120);
            d->onSave();
            QCOMPARE(d->papersModel()->rowCount(), 50);
            QCOMPARE(scanner.boxes.back().message,
                     QStringLiteral(
                         "No more items can be saved. Delete an item you no longer need and try again."));

            scanner.boxAnswer = kVmxAnswerNo;
            enter(d, "Paper 7", 120, 130);
            d->onSave();
            QCOMPARE(d->papersModel()->paper(7).dict()->value("Width"), TwValue(100));
            QCOMPARE(scanner.boxes.back().message,
                     QStringLiteral("\"Paper 7\" already exists. Do you want to overwrite it?"));
            QCOMPARE(scanner.boxes.back().messageType, 0x40003u);

            scanner.boxAnswer = kVmxAnswerYes;
            d->onSave();
            QCOMPARE(d->papersModel()->rowCount(), 50);
            QCOMPARE(d->papersModel()->paper(7).dict()->value("Length"), TwValue(130));
            QCOMPARE(d->selectedRow(), 7);
            QVERIFY(d->addedPaperSize().isEmpty());
            d->onClose();
        });
        QCOMPARE(scanner.boxes.size(), std::size_t(3));
        QCOMPARE(SampleScanner::stored("custom papers").list()->at(7).dict()->value("Length"), TwValue(130));
    }

    // Millimetres to inches and back multiplies back what was divided; the field ranges, the
    // limit labels and the list follow the unit.
    void switchingUnits() {
        auto ui = scanner.facade(false);
        papers(*ui).list()->push_back(paper("Card", 85.6, 54.0));
        runWith(ui->controller()->dlgPaperSize(), [&](TwDlgPaperSize* d) {
            auto* formatter = qobject_cast<const TwainNumberFormatter*>(d->txtWidth()->validator());
            QCOMPARE(d->txtWidth()->text(), QStringLiteral("210.0"));
            QCOMPARE(*formatter->maximum(), 216.0); // 8.504 in, in tenths of a millimetre, truncated
            auto* label = d->findChild<QLabel*>(QStringLiteral("labADFMaxWidth"));
            QCOMPARE(label->text(), QStringLiteral("216.0"));
            const QModelIndex size = d->papersModel()->index(0, TwPaperSizeTableModel::SizeColumn);
            QCOMPARE(size.data().toString(), QStringLiteral("85.6 × 54.0"));

            d->cmbUnit()->setCurrentIndex(d->cmbUnit()->findText(QStringLiteral("Inches")));
            emit d->cmbUnit()->activated(d->cmbUnit()->currentIndex());
            QCOMPARE(d->unit(), 0);
            QCOMPARE(d->ownValues().valueForKeyPath("paperWidth").doubleValue(), 210.0 / 25.4);
            QCOMPARE(d->txtWidth()->text(), QStringLiteral("8.27"));
            QCOMPARE(*formatter->maximum(), 8.50); // hundredths of an inch, truncated
            QCOMPARE(*formatter->minimum(), 2.0);  // 508 tenths of a millimetre are 200 hundredths
            QCOMPARE(label->text(), QStringLiteral("8.50"));
            QCOMPARE(size.data().toString(), QStringLiteral("3.37 × 2.13"));

            d->ownValues().setValueForKeyPath(1, "unit");
            QCOMPARE(d->ownValues().valueForKeyPath("paperWidth").doubleValue(), 210.0 / 25.4 * 25.4);
            QCOMPARE(d->ownValues().valueForKeyPath("paperLength").doubleValue(), 297.0 / 25.4 * 25.4);
            QCOMPARE(label->text(), QStringLiteral("216.0"));
            d->onClose();
        });
    }

    // Without a flatbed its four limits show "-"; with one, its own limits.
    void flatbedLimits_data() {
        QTest::addColumn<bool>("flatbed");
        QTest::addColumn<QString>("minWidth");
        QTest::addColumn<QString>("maxLength");
        QTest::newRow("no flatbed") << false << "-"
                                    << "-";
        QTest::newRow("flatbed") << true << "12.7"
                                 << "296.9";
    }
    void flatbedLimits() {
        QFETCH(bool, flatbed);
        QFETCH(QString, minWidth);
        QFETCH(QString, maxLength);
        auto ui = scanner.facade(flatbed);
        runWith(ui->controller()->dlgPaperSize(), [&](TwDlgPaperSize* d) {
            QCOMPARE(d->findChild<QLabel*>(QStringLiteral("labFlatMinWidth"))->text(), minWidth);
            QCOMPARE(d->findChild<QLabel*>(QStringLiteral("labFlatMaxLength"))->text(), maxLength);
            if (!flatbed)
                for (const char* name : {"labFlatMinLength", "labFlatMaxWidth"})
                    QCOMPARE(d->findChild<QLabel*>(QLatin1String(name))->text(), QStringLiteral("-"));
            QCOMPARE(d->findChild<QLabel*>(QStringLiteral("labADFMinLength"))->text(),
                     QStringLiteral("50.8"));
            d->onClose();
        });
    }

    // Selecting a row loads it; deleting the last of several selects the row above, deleting
    // another keeps the place selected, deleting the only one leaves no selection and Delete off.
    void deletingAndTheSelection_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("selectedAfter");
        QTest::addColumn<QString>("nameShown");
        QTest::newRow("last of three") << 3 << 2 << int(kVmxAnswerOK) << 1 << "P1";
        QTest::newRow("middle of three") << 3 << 1 << int(kVmxAnswerOK) << 1 << "P2";
        QTest::newRow("first of three") << 3 << 0 << int(kVmxAnswerOK) << 0 << "P1";
        QTest::newRow("only one") << 1 << 0 << int(kVmxAnswerOK) << -1 << "P0";
        QTest::newRow("cancelled") << 3 << 2 << int(kVmxAnswerCancel) << 2 << "P2";
    }
    void deletingAndTheSelection() {
        QFETCH(int, count);
        QFETCH(int, row);
        QFETCH(int, answer);
        QFETCH(int, selectedAfter);
        QFETCH(QString, nameShown);
        auto ui = scanner.facade();
        for (int i = 0; i < count; ++i)
            papers(*ui).list()->push_back(paper("P" + std::to_string(i), 100 + i, 200));
        scanner.boxAnswer = answer;
        runWith(ui->controller()->dlgPaperSize(), [&](TwDlgPaperSize* d) {
            QVERIFY(!d->btnDelete()->isEnabled());
            d->onDelete(); // nothing selected: nothing asked
            QVERIFY(scanner.boxes.empty());
            QTest::mouseClick(d->tblPaperSize()->viewport(), Qt::LeftButton, {},
                              d->tblPaperSize()->visualRect(d->papersModel()->index(row, 0)).center());
            QCOMPARE(d->selectedRow(), row);
            QCOMPARE(d->txtName()->text(), QStringLiteral("P%1").arg(row));
            QCOMPARE(d->txtWidth()->text(), QStringLiteral("%1.0").arg(100 + row));
            QVERIFY(d->btnDelete()->isEnabled());
            QTest::mouseClick(d->btnDelete(), Qt::LeftButton);
            QCOMPARE(scanner.boxes.size(), std::size_t(1));
            QCOMPARE(scanner.boxes[0].message,
                     QStringLiteral("Are you sure you want to delete the paper size \"P%1\"?").arg(row));
            QCOMPARE(scanner.boxes[0].messageType, 0x40002u);
            QCOMPARE(d->selectedRow(), selectedAfter);
            QCOMPARE(d->btnDelete()->isEnabled(), selectedAfter >= 0);
            QCOMPARE(d->txtName()->text(), nameShown);
            d->onClose();
        });
        const int left = answer == kVmxAnswerOK ? count - 1 : count;
        QCOMPARE(int(papers(*ui).list()->size()), left);
        QCOMPARE(int(SampleScanner::stored("custom papers").list()
                         ? SampleScanner::stored("custom papers").list()->size()
                         : 0),
                 answer == kVmxAnswerOK ? left : 0);
    }

    // The table presents the model's own list: a paper saved is in the model's array (the same
    // one), saved to the preferences, and read back by a new model as after a restart.
    void theListIsTheModelsAndPersists() {
        {
            auto ui = scanner.facade();
            const TwValue list = papers(*ui);
            runWith(ui->controller()->dlgPaperSize(), [&](TwDlgPaperSize* d) {
                QCOMPARE(d->papersModel()->papers().list(), list.list());
                QTest::keyClicks(d->txtName(), QStringLiteral("Receipt"));
                d->txtWidth()->selectAll();
                QTest::keyClicks(d->txtWidth(), QStringLiteral("80"));
                d->txtLength()->selectAll();
                QTest::keyClicks(d->txtLength(), QStringLiteral("250.5"));
                QTest::mouseClick(d->btnSave(), Qt::LeftButton);
                QCOMPARE(d->selectedRow(), 0);
                QCOMPARE(d->addedPaperSize(), QStringList{QStringLiteral("Receipt")});
                QTest::mouseClick(d->btnClose(), Qt::LeftButton);
            });
            QCOMPARE(list.list()->size(), std::size_t(1));
        }
        auto again = scanner.facade();
        QCOMPARE(papers(*again).list()->size(), std::size_t(1));
        const TwDictionary* saved = papers(*again).list()->front().dict();
        QCOMPARE(saved->value("Name"), TwValue("Receipt"));
        QCOMPARE(saved->value("Width"), TwValue(80.0));
        QCOMPARE(saved->value("Length").doubleValue(), double(250.5f));
    }

    // From the Basic tab's button with the main dialog modal and modeless: a paper added becomes
    // the selection and appears in the paper lists; deleting the selected custom paper falls
    // back to a standard one and the area follows the new paper.
    void theMainDialogFollows_data() {
        QTest::addColumn<int>("modal");
        QTest::newRow("modeless") << 0;
        QTest::newRow("modal") << 1;
    }
    void theMainDialogFollows() {
        QFETCH(int, modal);
        auto ui = scanner.facade(true, modal);
        QPushButton* custom = ui->controller()
                                  ->windowIfLoaded()
                                  ->view(QStringLiteral("Basic"))
                                  ->findChild<QPushButton*>(QStringLiteral("btnCustom"));
        auto* dialog = ui->controller()->dlgPaperSize();
        auto add = whenModal<TwDlgPaperSize>([&](TwDlgPaperSize* d) {
            enter(d, "Postcard", 100, 148);
            QTest::mouseClick(d->btnSave(), Qt::LeftButton);
            QTest::mouseClick(d->btnClose(), Qt::LeftButton);
        });
        QTest::mouseClick(custom, Qt::LeftButton);
        QVERIFY(!dialog->isVisible());
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
        ui->hideUi();
    }
    // Help opens the data source's help book, as the main dialog's Help does.
    void helpOpensTheHelpBook() {
        QList<QUrl> opened;
        TwainDialogController::setUrlOpener([&](const QUrl& url) {
            opened << url;
            return true;
        });
        auto ui = scanner.facade();
        runWith(ui->controller()->dlgPaperSize(), [&](TwDlgPaperSize* d) {
            QTest::mouseClick(d->btnHelp(), Qt::LeftButton);
            QVERIFY(d->isVisible());
        });
        TwainDialogController::setUrlOpener({});
        QCOMPARE(opened.size(), 1);
        QVERIFY(opened[0].toLocalFile().endsWith(QStringLiteral("HelpBook/index.html")));
    }

    // VMX_EDITOR_SHOTS=<dir>: the picture of the README, with a few papers in inches.
    void pictureForTheReadme() {
        if (qEnvironmentVariableIsEmpty("VMX_EDITOR_SHOTS"))
            QSKIP("VMX_EDITOR_SHOTS is not set");
        auto ui = scanner.facade(true);
        papers(*ui).list()->push_back(paper("Receipt", 80.0, 297.0));
        papers(*ui).list()->push_back(paper("Postcard", 100.0, 148.0));
        papers(*ui).list()->push_back(paper("Check", 152.4, 69.8));
        runWith(ui->controller()->dlgPaperSize(), [&](TwDlgPaperSize* d) {
            d->ownValues().setValueForKeyPath(0, "unit");
            d->selectRow(1);
            QVERIFY(saveEditorPicture(d, QStringLiteral("PaperSize")));
        });
    }
};

QTEST_MAIN(TestPaperSize)
#include "tst_papersize.moc"
