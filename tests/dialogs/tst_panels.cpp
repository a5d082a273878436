// The panels the main dialog opens, driven as a person drives them (typing, pressing their
// buttons) with the sample scanner: the name dialog and its checks.
#include "DialogTestSupport.h"
#include "SampleTestSupport.h"
#include "TwDlgMain.h"
#include "TwDlgSaveSetting.h"
#include "TwMessageBox.h"
#include "TwainDialogController.h"
#include "TwainDialogData.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {
std::uint16_t ignoreEvents(std::uint16_t, void*) {
    return 0;
}

// Types the text into the name dialog as a person would and presses OK; presses Cancel when the
// dialog stays open. Whether it stayed is noted.
std::unique_ptr<QTimer> typeNameAndPressOK(const QString& text, bool* stayed) {
    return whenModal<TwDlgSaveSetting>([text, stayed](TwDlgSaveSetting* d) {
        QLineEdit* edit = d->cmbNames()->lineEdit();
        edit->selectAll();
        QTest::keyClicks(edit, text);
        QTest::mouseClick(d->btnOK(), Qt::LeftButton);
        *stayed = d->isVisible();
        if (*stayed)
            QTest::mouseClick(d->btnCancel(), Qt::LeftButton);
    });
}
} // namespace

class TestPanels : public QObject {
    Q_OBJECT
    SampleScanner sample;
    std::vector<TwMessageBoxSetup> boxes;
    QList<int> boxAnswers; // answers of the boxes to come; OK once they run out

    void recordBoxes() {
        TwSetMessageBoxRunner([this](const TwMessageBoxSetup& s) {
            boxes.push_back(s);
            return boxAnswers.isEmpty() ? int(kVmxAnswerOK) : boxAnswers.takeFirst();
        });
    }
    QStringList boxTexts() const {
        QStringList texts;
        for (auto& b : boxes)
            texts << b.message;
        return texts;
    }

private slots:
    void initTestCase() {
        std::string error;
        QVERIFY2(sample.read(&error), error.c_str());
    }

    void init() {
        SampleScanner::forgetPreferences();
        boxes.clear();
        boxAnswers.clear();
        recordBoxes();
    }
    void cleanup() { TwSetMessageBoxRunner({}); }

    // ---- The name dialog ----

    // Save... with a typed name: what is refused (and stays open), what is asked, what is saved.
    void savingASettingChecksTheName_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QList<int>>("answers");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QString>("saved"); // empty: nothing saved, the dialog stayed
        const QString fifty(50, QLatin1Char('x'));
        const QString overwrite =
            QStringLiteral("A setting named \"%1\" already exists. Do you want to replace it?");
        QTest::newRow("new name, blanks around")
            << "  Letters 300  " << QList<int>{} << QStringList{} << "Letters 300";
        QTest::newRow("blank") << "   " << QList<int>{} << QStringList{"Please enter a name."} << "";
        QTest::newRow("50 characters") << fifty << QList<int>{} << QStringList{} << fifty;
        QTest::newRow("51 characters")
            << fifty + "y" << QList<int>{} << QStringList{"The name must be 50 characters or fewer."} << "";
        QTest::newRow("50 characters between blanks")
            << " " + fifty + " " << QList<int>{} << QStringList{} << fifty;
        QTest::newRow("the untitled name in capitals")
            << "UNTITLED" << QList<int>{}
            << QStringList{"This name is reserved for the untitled setting. Please enter a different name."}
            << "";
        QTest::newRow("existing name in lower case, replaced")
            << "receipts" << QList<int>{kVmxAnswerOK} << QStringList{overwrite.arg("receipts")} << "receipts";
        QTest::newRow("existing name in lower case, kept")
            << "receipts" << QList<int>{kVmxAnswerCancel} << QStringList{overwrite.arg("receipts")} << "";
    }
    void savingASettingChecksTheName() {
        QFETCH(QString, typed);
        QFETCH(QList<int>, answers);
        QFETCH(QStringList, messages);
        QFETCH(QString, saved);
        auto ui = sample.load(&ignoreEvents);
        ui->showUi(true, false, false);
        TwainDialogData* model = ui->model().get();
        model->AddCustomProfile("Receipts");
        const int before = model->ProfileCount();
        boxAnswers = answers;
        bool stayed = false;
        auto timer = typeNameAndPressOK(typed, &stayed);
        QTest::mouseClick(ui->controllerIfMade()->windowIfLoaded()->btnSave(), Qt::LeftButton);
        QCOMPARE(boxTexts(), messages);
        for (auto& box : boxes)
            QCOMPARE(box.messageType, box.buttons.size() == 1 ? 0x20001u : 0x40002u);
        QCOMPARE(stayed, saved.isEmpty());
        if (saved.isEmpty()) {
            QCOMPARE(model->ProfileCount(), before);
            QVERIFY(model->IsProfileExist("Receipts"));
        } else {
            QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue(saved.toStdString()));
            // Saved exactly as typed: a name differing in letter case replaces the old setting.
            const bool replaced = saved == QLatin1String("receipts");
            QCOMPARE(model->ProfileCount(), before + (replaced ? 0 : 1));
            QVERIFY(SampleScanner::stored("profiles").list());
        }
        ui->hideUi();
    }

    // The dialog offers the saved names and starts empty; at fifty settings only an existing
    // name can still be saved.
    void theFiftyFirstSettingIsRefused() {
        auto ui = sample.load(&ignoreEvents);
        ui->showUi(true, false, false);
        TwainDialogData* model = ui->model().get();
        for (int i = model->ProfileCount(); i < 50; ++i)
            model->AddCustomProfile("Setting " + std::to_string(i));
        QStringList offered;
        QString shownName = QStringLiteral("not shown");
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
        QCOMPARE(boxes.size(), std::size_t(1));
        QVERIFY(boxes[0].message.startsWith(QStringLiteral("No more items can be saved")));

        timer = typeNameAndPressOK(QStringLiteral("SETTING 7"), &stayed);
        ui->controllerIfMade()->onSaveSetting();
        QCOMPARE(model->ProfileCount(), 50);
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("SETTING 7"));
        ui->hideUi();
    }

    // Gamma names (type 1): 32 characters at most; a listed name, compared exactly, is asked
    // about only when the caller wants the check.
    void gammaNames_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("checkOverwrite");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<int>("result");
        const QString asked = QStringLiteral("\"Soft\" already exists. Do you want to overwrite it?");
        QTest::newRow("32 characters") << QString(32, 'g') << true << 0 << QStringList{} << 1;
        QTest::newRow("33 characters")
            << QString(33, 'g') << true << 0 << QStringList{"The name must be 32 characters or fewer."} << 0;
        QTest::newRow("listed, replaced") << "Soft" << true << int(kVmxAnswerOK) << QStringList{asked} << 1;
        QTest::newRow("listed, kept") << "Soft" << true << int(kVmxAnswerCancel) << QStringList{asked} << 0;
        QTest::newRow("listed, no check") << "Soft" << false << 0 << QStringList{} << 1;
        QTest::newRow("other letter case") << "soft" << true << 0 << QStringList{} << 1;
    }
    void gammaNames() {
        QFETCH(QString, typed);
        QFETCH(bool, checkOverwrite);
        QFETCH(int, answer);
        QFETCH(QStringList, messages);
        QFETCH(int, result);
        auto ui = sample.load(&ignoreEvents);
        TwDlgSaveSetting* d = ui->controller()->dlgSaveSetting();
        d->setType(TwDlgSaveSetting::GammaName);
        QCOMPARE(d->windowTitle(), QStringLiteral("Save Gamma As"));
        QCOMPARE(d->labTitle()->text(), QStringLiteral("Gamma name:"));
        d->setCheckOverwrite(checkOverwrite);
        d->setNameList({QStringLiteral("Soft"), QStringLiteral("Hard")});
        d->setName(QStringLiteral("Hard"));
        if (answer)
            boxAnswers = {answer};
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
        QCOMPARE(shown, QStringLiteral("Hard"));
        QCOMPARE(stayed, result == 0);
        QCOMPARE(boxTexts(), messages);
        if (result == 1)
            QCOMPARE(d->name(), typed);

        // Another type keeps the longest name and shows no texts.
        d->setType(7);
        QCOMPARE(d->maxNameLength(), 32u);
        QVERIFY(d->windowTitle().isEmpty() && d->labTitle()->text().isEmpty());
    }
};

QTEST_MAIN(TestPanels)
#include "tst_panels.moc"
