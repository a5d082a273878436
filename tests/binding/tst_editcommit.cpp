// Ending the editing of a panel: a rejected entry refuses with the range message and keeps the
// focus; accepted entries are written and shown with their pattern.
#include "BindingTestSupport.h"
#include "TwBoundControl.h"
#include "TwBundle.h"
#include "TwEditCommit.h"
#include "TwRangeHelpers.h"
#include "TwResponderBinding.h"
#include "TwainNumberFormatter.h"
#include "TwainTextFormatter.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTest>

class TestEditCommit : public QObject {
    Q_OBJECT

    struct Alert {
        QWidget* field;
        QString message;
    };
    QList<Alert> alerts;

    TwainDialogData model;
    std::unique_ptr<TwResponderBinding> rb;
    std::unique_ptr<QWidget> panel;
    QLineEdit* ratio = nullptr;
    QLineEdit* name = nullptr;

private slots:
    void init() {
        TwBundle::setModuleBundlePath(VMX_BUNDLE_DIR);
        alerts.clear();
        TwSetFormatterAlert([this](QWidget* field, const QString& message) {
            alerts.push_back({field, message});
        });
        model.setValueForKeyPath(12, "Data.Ratio");
        model.setValueForKeyPath("scan", "Data.Name");
        panel = std::make_unique<QWidget>();
        ratio = new QLineEdit(panel.get());
        name = new QLineEdit(panel.get());
        SetTextRange(ratio, 100, 3560, 1);
        rb = std::make_unique<TwResponderBinding>();
        rb->bindValues({"Data.Ratio", ratio, "Data.Name", name}, &model);
        panel->show();
    }
    void cleanup() {
        rb.reset();
        panel.reset();
        TwSetFormatterAlert({});
        TwBundle::setModuleBundlePath("");
    }

    void rejectedEntryRefusesAndKeepsTheFocus() {
        ratio->setFocus();
        ratio->selectAll();
        QTest::keyClicks(ratio, "400");
        name->setFocus(); // leaving the field does not end a rejected entry
        QVERIFY(!TwEndEditing(panel.get()));
        QCOMPARE(alerts.size(), 1);
        QCOMPARE(alerts[0].field, ratio);
        QCOMPARE(alerts[0].message, QString("Must in 10.0 - 356.0"));
        QCOMPARE(panel->focusWidget(), ratio);
        QCOMPARE(ratio->selectedText(), QString("400")); // the user's text stays until corrected

        QTest::keyClicks(ratio, "35");
        QVERIFY(TwEndEditing(panel.get()));
        QCOMPARE(alerts.size(), 1);
        QCOMPARE(model.valueForKeyPath("Data.Ratio"), TwValue(35.0));
        QCOMPARE(ratio->text(), QString("35.0"));
        QVERIFY(!ratio->isModified());
    }

    void untouchedFieldsNeverRefuse() {
        // A value outside the range set by the model itself is not the user's entry.
        model.setValueForKeyPath(999, "Data.Ratio");
        QCOMPARE(ratio->text(), QString("999.0"));
        QVERIFY(TwEndEditing(panel.get()));
        QVERIFY(alerts.isEmpty());
    }

    void endingWritesEntriesNotYetWritten() {
        auto* late = new QLineEdit(panel.get());
        late->show();
        model.setValueForKeyPath("a", "Data.Late");
        rb->bind(kTwValueBinding, late, &model, "Data.Late", TwBindingOptions{});
        late->setFocus();
        QTest::keyClicks(late, "bc");
        QCOMPARE(model.valueForKeyPath("Data.Late"), TwValue("a"));
        QVERIFY(TwEndEditing(panel.get()));
        QCOMPARE(model.valueForKeyPath("Data.Late"), TwValue("abc"));
    }

    void formatterWithoutMessageUsesTheDefaultText() {
        auto* plain = new QLineEdit(panel.get());
        plain->show();
        TwainNumberFormatter bare(plain);
        bare.setMaximum(5.0);
        plain->setValidator(&bare);
        QTest::keyClicks(plain, "7");
        QVERIFY(!TwEndEditing(panel.get()));
        QCOMPARE(alerts.size(), 1);
        QCOMPARE(alerts[0].message, TwFormatterDefaultMessage());
        plain->setValidator(nullptr);
    }

    void unboundFieldIsReformatted() {
        auto* free = new QLineEdit(panel.get());
        free->show();
        SetTextRange(free, 0, 500, 2);
        QTest::keyClicks(free, "1.5");
        QVERIFY(TwEndEditing(panel.get()));
        QCOMPARE(free->text(), QString("1.50"));
        QVERIFY(TwBoundControl::bindingNames(free).empty());
    }

    void hiddenFieldsAreLeftAlone() {
        ratio->selectAll();
        QTest::keyClicks(ratio, "400");
        ratio->hide();
        name->setFocus();
        QVERIFY(TwEndEditing(panel.get()));
        QVERIFY(alerts.isEmpty());
    }

    void comboBoxEntryIsCheckedToo() {
        auto* combo = new QComboBox(panel.get());
        combo->setEditable(true);
        combo->show();
        SetTextRange(combo, 50, 600, 0);
        model.setValueForKeyPath(300, "Data.Resolution");
        rb->bindValue(combo, &model, "Data.Resolution");
        combo->lineEdit()->selectAll();
        QTest::keyClicks(combo->lineEdit(), "9000");
        QVERIFY(!TwEndEditing(panel.get()));
        QCOMPARE(alerts.size(), 1);
        QCOMPARE(alerts[0].field, combo);
        QCOMPARE(alerts[0].message, QString("Must in 50 - 600"));
        QVERIFY(panel->focusWidget() == combo || panel->focusWidget() == combo->lineEdit());
    }

    void textLimitNeverRefuses() {
        auto* title = new QLineEdit(panel.get());
        title->show();
        TwainTextFormatter limit(title);
        limit.setMaximumLength(4);
        title->setValidator(&limit);
        QTest::keyClicks(title, "abcdef");
        QCOMPARE(title->text(), QString("abcd"));
        QVERIFY(TwEndEditing(panel.get()));
        title->setValidator(nullptr);
    }

    void noWindowNothingToEnd() { QVERIFY(TwEndEditing(nullptr)); }
};

QTEST_MAIN(TestEditCommit)
#include "tst_editcommit.moc"
