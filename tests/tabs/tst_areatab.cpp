// The Area tab bound to the sample scanner: the unit changes the pattern and the range of every
// area field, a change recomputes exactly the ranges that depend on it, the two sides share one
// place and only the selected one shows, and a field the model corrected reloads.

#include "TabTestSupport.h"
#include "TwainNumberFormatter.h"
#include "TwainViewArea.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableWidget>
#include <QtTest>

using namespace tabtest;

namespace {

const TwainNumberFormatter* formatterOf(const QLineEdit* field) {
    return qobject_cast<const TwainNumberFormatter*>(field->validator());
}

QString fieldName(const char* side, const char* item, int n) {
    return QStringLiteral("txt%1%2%3").arg(QLatin1String(side), QLatin1String(item)).arg(n);
}

} // namespace

class TestAreaTab : public QObject {
    Q_OBJECT
    Sample sample;

    struct Bound {
        std::unique_ptr<VmxUIControllerImpl> ui;
        std::unique_ptr<TwainViewArea> tab;
        TwainDialogData* model() const { return ui->model().get(); }
        QLineEdit* field(const char* name) const { return child<QLineEdit>(tab.get(), name); }
    };

    Bound bound(const TwValue& values = TwValue()) {
        Bound b;
        b.ui = sample.load(values);
        b.tab = std::make_unique<TwainViewArea>();
        b.tab->bindControlsToObject(b.model());
        return b;
    }

    // Chooses a unit the way the user does: the pop-up's entry, activated.
    static void chooseUnit(TwainViewArea* tab, int index) {
        auto* unit = child<QComboBox>(tab, "cmbUnit");
        unit->setCurrentIndex(index);
        emit unit->activated(index);
    }

private slots:
    void initTestCase() {
        std::string error;
        QVERIFY2(sample.read(&error), error.c_str());
    }
    void init() { sample.freshPreferences(); }
    void cleanupTestCase() { OrvaSetLogPaths(nullptr, nullptr); }

    void theMapsHoldEveryFieldOnce() {
        TwainViewArea tab;
        QCOMPARE(tab.formatTexts().size(), qsizetype(29));
        QCOMPARE(tab.formatterMapSize(), std::size_t(18));
        QCOMPARE(tab.effectedMapSize(), std::size_t(15));
        QCOMPARE(QSet<QLineEdit*>(tab.formatTexts().begin(), tab.formatTexts().end()).size(), qsizetype(29));
        QCOMPARE(tab.formatTexts().first(), child<QLineEdit>(&tab, "txtFrontX"));
        QCOMPARE(tab.formatTexts().at(5), child<QLineEdit>(&tab, "txtFrontX1"));
        QCOMPARE(tab.formatTexts().at(17), child<QLineEdit>(&tab, "txtBackX1"));
        QCOMPARE(tab.formatTexts().last(), child<QLineEdit>(&tab, "txtBackLength3"));

        // Back X fields and the back main X share the front formatters; widths and lengths have their own.
        for (int n = 1; n <= 3; ++n) {
            QCOMPARE(formatterOf(child<QLineEdit>(&tab, qPrintable(fieldName("Back", "X", n)))),
                     tab.formatterForKeyPath("temp.Area.Front.L1.X"));
            QCOMPARE(formatterOf(child<QLineEdit>(&tab, qPrintable(fieldName("Back", "Y", n)))),
                     tab.formatterForKeyPath("temp.Area.Front.L1.Y"));
            const std::string width = "temp.Area.Back.L" + std::to_string(n) + ".Width";
            QCOMPARE(formatterOf(child<QLineEdit>(&tab, qPrintable(fieldName("Back", "Width", n)))),
                     tab.formatterForKeyPath(width));
            QVERIFY(tab.formatterForKeyPath(width) !=
                    tab.formatterForKeyPath("temp.Area.Front.L" + std::to_string(n) + ".Width"));
            QCOMPARE(formatterOf(child<QLineEdit>(&tab, qPrintable(fieldName("Front", "Brightness", n)))),
                     tab.brightnessFormatter());
            QCOMPARE(
                child<QSpinBox>(&tab, qPrintable(QStringLiteral("stpBackBrightness%1").arg(n)))->maximum(),
                255);
        }
        QCOMPARE(formatterOf(child<QLineEdit>(&tab, "txtBackX")),
                 tab.formatterForKeyPath("temp.Area.Front.X"));
        QVERIFY(!tab.formatterForKeyPath("temp.Area.Back.X"));
        QCOMPARE(tab.effectedKeyPath("temp.Area.Back.X"), std::string("temp.Area.Width"));
        QCOMPARE(tab.effectedKeyPath("temp.Area.Y"), std::string("temp.Area.Length"));
        QCOMPARE(tab.effectedKeyPath("temp.Area.Back.L2.X"), std::string("temp.Area.Back.L2.Width"));
        QCOMPARE(tab.effectedKeyPath("temp.Area.Front.L3.Y"), std::string("temp.Area.Front.L3.Length"));
        QCOMPARE(tab.effectedKeyPath("temp.Area.Width"), std::string());

        // Before binding: tenths of a millimetre of an A4 sheet.
        QCOMPARE(tab.formatterForKeyPath("temp.Area.Width")->maximum().value_or(-1), 210.0);
        QCOMPARE(tab.formatterForKeyPath("temp.Area.Length")->maximum().value_or(-1), 297.0);
    }

    void theUnitsIntegerRangesRoundHalfUp() {
        auto r = TwainViewArea::rangeForUnit({0, 210}, 0);
        QVERIFY(r);
        QCOMPARE(r->minimum, 0);
        QCOMPARE(r->maximum, 827);
        QCOMPARE(r->places, 2);
        r = TwainViewArea::rangeForUnit({10, 200}, 1);
        QCOMPARE(r->minimum, 100);
        QCOMPARE(r->maximum, 2100);
        QCOMPARE(r->places, 1);
        r = TwainViewArea::rangeForUnit({25.4, 25.4}, 0);
        QCOMPARE(r->minimum, 100);
        QCOMPARE(r->maximum, 200);
        QVERIFY(!TwainViewArea::rangeForUnit({0, 210}, 2));
        QVERIFY(!TwainViewArea::rangeForUnit({0, 1e300}, 1));
    }

    void bindingCopiesTheAreaAndShowsTheFrontInMillimetres() {
        Bound b = bound();
        TwainDialogData* model = b.model();
        QCOMPARE(model->valueForKeyPath("temp.Area.Side"), TwValue(0));
        QCOMPARE(model->valueForKeyPath("temp.Area.Front.L2.Brightness"), TwValue(128));
        QCOMPARE(model->valueForKeyPath("temp.Area.Back.Halftone"), TwValue(0));
        QCOMPARE(model->valueForKeyPath("hidden.Area.Front"), TwValue(false));
        QCOMPARE(model->valueForKeyPath("hidden.Area.Back"), TwValue(true));

        QCOMPARE(b.field("txtWidth")->text(), QStringLiteral("210.0"));
        QCOMPARE(b.field("txtLength")->text(), QStringLiteral("297.0"));
        QCOMPARE(b.field("txtFrontY2")->text(), QStringLiteral("40.0"));
        QCOMPARE(b.field("txtFrontBrightness1")->text(), QStringLiteral("128"));
        QCOMPARE(child<QComboBox>(b.tab.get(), "cmbUnit")->currentText(), QStringLiteral("Millimeters"));
        // Ranges from the paper: X up to 210 - 10, width 10 up to 210 - X.
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Front.X")->maximum().value_or(-1), 200.0);
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Width")->minimum().value_or(-1), 10.0);
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Width")->maximum().value_or(-1), 210.0);
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Front.L1.X")->maximum().value_or(-1), 208.0);
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Front.L1.Width")->maximum().value_or(-1), 200.0);
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Front.L1.Width")->minimum().value_or(-1), 2.0);

        for (int n = 1; n <= 3; ++n) {
            QVERIFY(!child(b.tab.get(), qPrintable(fieldName("Front", "X", n)))->isHidden());
            QVERIFY(child(b.tab.get(), qPrintable(fieldName("Back", "X", n)))->isHidden());
        }
        QCOMPARE(b.tab->tempTextControl("temp.Area.Back.L3.Length"),
                 child<QWidget>(b.tab.get(), "txtBackLength3"));
        QCOMPARE(b.tab->tempTextControl("temp.Area.Side"), child<QWidget>(b.tab.get(), "tblSide"));
        QVERIFY(!b.tab->tempTextControl("Data.Area.Front.L1.Enable"));
    }

    void switchingTheUnitReformatsEveryField() {
        Bound b = bound();
        TwainDialogData* model = b.model();
        // 25.4 mm typed as the first sub-area's width, once the sub-area is on.
        QTest::mouseClick(child<QCheckBox>(b.tab.get(), "btnFrontArea1"), Qt::LeftButton);
        QLineEdit* width1 = b.field("txtFrontWidth1");
        width1->selectAll();
        QTest::keyClicks(width1, "25.4");
        QCOMPARE(model->valueForKeyPath("Data.Area.Measure.Front.L1.Width").doubleValue(), 25.4);

        QList<QSignalSpy*> spies;
        for (QLineEdit* field : b.tab->formatTexts())
            spies << new QSignalSpy(const_cast<QValidator*>(field->validator()), &QValidator::changed);
        chooseUnit(b.tab.get(), 0);
        QCOMPARE(model->valueForKeyPath("Data.Area.Unit"), TwValue(0));
        QCOMPARE(width1->text(), QStringLiteral("1.00"));
        QCOMPARE(b.field("txtWidth")->text(), QStringLiteral("8.27"));
        QCOMPARE(b.field("txtFrontY2")->text(), QStringLiteral("1.57"));
        for (QLineEdit* field : b.tab->formatTexts()) {
            QCOMPARE(formatterOf(field)->format(), QStringLiteral("0.00"));
            QVERIFY2(!field->text().isEmpty(), qPrintable(field->objectName()));
        }
        // Every field's formatter got a new range, the brightness ones kept theirs.
        for (QSignalSpy* spy : spies)
            QVERIFY(spy->count() > 0);
        QCOMPARE(formatterOf(b.field("txtFrontBrightness1"))->format(), QStringLiteral("0"));
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Width")->maximum().value_or(-1), 8.27);
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Front.X")->maximum().value_or(-1), 7.87);
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Width")->errorString(),
                 QStringLiteral("Must in 0.39 - 8.27"));

        // The same unit again changes nothing.
        for (QSignalSpy* spy : spies)
            spy->clear();
        chooseUnit(b.tab.get(), 0);
        for (QSignalSpy* spy : spies)
            QCOMPARE(spy->count(), 0);
        qDeleteAll(spies);

        // And back: millimetres with one place.
        chooseUnit(b.tab.get(), 1);
        QCOMPARE(width1->text(), QStringLiteral("25.4"));
        QCOMPARE(b.field("txtWidth")->text(), QStringLiteral("210.0"));
        QCOMPARE(formatterOf(b.field("txtLength"))->format(), QStringLiteral("0.0"));
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Width")->maximum().value_or(-1), 210.0);
    }

    void aChangeRecomputesOnlyTheRangeThatDependsOnIt() {
        Bound b = bound();
        std::map<std::string, QSignalSpy*> spies;
        for (const char* side : {"Front", "Back"})
            for (int n = 1; n <= 3; ++n)
                for (const char* item : {"Width", "Length"}) {
                    std::string key =
                        std::string("temp.Area.") + side + ".L" + std::to_string(n) + "." + item;
                    spies[key] = new QSignalSpy(b.tab->formatterForKeyPath(key), &QValidator::changed);
                }
        for (const char* key : {"temp.Area.Front.X", "temp.Area.Y", "temp.Area.Width", "temp.Area.Length",
                                "temp.Area.Front.L1.X", "temp.Area.Front.L1.Y"})
            spies[key] = new QSignalSpy(b.tab->formatterForKeyPath(key), &QValidator::changed);
        QCOMPARE(spies.size(), std::size_t(18));

        set(*b.ui, "temp.Area.Back.L2.X", TwValue(20.0));
        for (auto& [key, spy] : spies)
            QVERIFY2((spy->count() > 0) == (key == "temp.Area.Back.L2.Width"), key.c_str());
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Back.L2.Width")->maximum().value_or(-1), 190.0);

        for (auto& [key, spy] : spies)
            spy->clear();
        set(*b.ui, "temp.Area.Y", TwValue(50.0));
        for (auto& [key, spy] : spies)
            QVERIFY2((spy->count() > 0) == (key == "temp.Area.Length"), key.c_str());
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Length")->maximum().value_or(-1), 247.0);

        // A new paper recomputes them all.
        for (auto& [key, spy] : spies)
            spy->clear();
        set(*b.ui, "Data.PaperSize", TwValue(5)); // A5
        for (auto& [key, spy] : spies)
            QVERIFY2(spy->count() > 0, key.c_str());
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Front.L1.X")->maximum().value_or(-1), 146.0);
        for (auto& [key, spy] : spies)
            delete spy;
    }

    void theSideSwitchSwapsTheSubAreaControlsInOnePlace() {
        Bound b = bound();
        TwainViewArea* tab = b.tab.get();
        tab->resize(tab->sizeHint());
        tab->show();
        QVERIFY(QTest::qWaitForWindowExposed(tab));
        auto* side = child<QTableWidget>(tab, "tblSide");
        QVERIFY(!side->isEnabled()); // one-sided paper source

        set(*b.ui, "Data.PaperSource", TwValue(1));
        QVERIFY(side->isEnabled());
        const QList<QWidget*> front = tab->sideControls(0);
        const QList<QWidget*> back = tab->sideControls(1);
        QCOMPARE(front.size(), qsizetype(22));
        QCOMPARE(back.size(), qsizetype(22));
        QList<QRect> frontPlaces;
        for (QWidget* w : front)
            frontPlaces << w->geometry();

        // The user picks the back row.
        QTest::mouseClick(side->viewport(), Qt::LeftButton, {},
                          side->visualItemRect(side->item(1, 0)).center());
        QCOMPARE(b.model()->valueForKeyPath("temp.Area.Side"), TwValue(1));
        QApplication::processEvents();
        tab->layout()->activate();
        for (qsizetype i = 0; i < 22; ++i) {
            QVERIFY2(front[i]->isHidden(), qPrintable(front[i]->objectName()));
            QVERIFY2(!back[i]->isHidden(), qPrintable(back[i]->objectName()));
            QCOMPARE(back[i]->geometry(), frontPlaces[i]);
        }
        QVERIFY(child(tab, "btnBackArea2")->isEnabled());
        QVERIFY(!child(tab, "stpBackBrightness2")->isEnabled()); // its sub-area is off

        // Without duplex only the front remains.
        set(*b.ui, "Data.PaperSource", TwValue(0));
        QCOMPARE(b.model()->valueForKeyPath("temp.Area.Side"), TwValue(0));
        for (qsizetype i = 0; i < 22; ++i) {
            QVERIFY(!front[i]->isHidden());
            QVERIFY(back[i]->isHidden());
            QVERIFY2(!back[i]->isEnabled(), qPrintable(back[i]->objectName()));
        }
        QVERIFY(!b.field("txtBackX")->isEnabled());

        // Every binding starts on the front, whatever was shown before.
        set(*b.ui, "Data.PaperSource", TwValue(1));
        set(*b.ui, "temp.Area.Side", TwValue(1));
        tab->unbindControls();
        tab->bindControlsToObject(b.model());
        QCOMPARE(b.model()->valueForKeyPath("temp.Area.Side"), TwValue(0));
        QVERIFY(!front[3]->isHidden());
    }

    void aSubAreaCheckBoxEnablesItsFields() {
        Bound b = bound();
        QLineEdit* x2 = b.field("txtFrontX2");
        QVERIFY(!x2->isEnabled());
        QTest::mouseClick(child<QCheckBox>(b.tab.get(), "btnFrontArea2"), Qt::LeftButton);
        QCOMPARE(b.model()->valueForKeyPath("Data.Area.Front.L2.Enable"), TwValue(true));
        QVERIFY(x2->isEnabled());
        QVERIFY(child(b.tab.get(), "stpFrontBrightness2")->isEnabled());
        QVERIFY(!b.field("txtFrontX3")->isEnabled());

        // The stepper writes the brightness, and the field beside it shows it.
        auto* stepper = child<QSpinBox>(b.tab.get(), "stpFrontBrightness2");
        stepper->stepUp();
        QCOMPARE(b.model()->valueForKeyPath("Data.Area.Front.L2.Brightness"), TwValue(129));
        QCOMPARE(b.field("txtFrontBrightness2")->text(), QStringLiteral("129"));

        // Automatic crop turns the whole area off.
        set(*b.ui, "Data.AutoCrop.Enable", TwValue(true));
        QVERIFY(!b.field("txtWidth")->isEnabled());
        QVERIFY(!x2->isEnabled());
        QVERIFY(!child(b.tab.get(), "cmbUnit")->isEnabled());
    }

    void aCorrectedFieldReloadsWhenTheModelAsks() {
        Bound b = bound();
        QLineEdit* width = b.field("txtWidth");
        width->setText(QStringLiteral("99.9"));
        b.model()->TextEditRefresh(TwValue(), "temp.Area.Width");
        QCOMPARE(b.model()->valueForKeyPath("temp.TextEditDatakey"), TwValue("temp.Area.Width"));
        QCOMPARE(width->text(), QStringLiteral("210.0"));

        // A key no field of the tab shows is ignored, asked once or again.
        b.model()->TextEditRefresh(TwValue(), "temp.Area.Nothing");
        width->setText(QStringLiteral("99.9"));
        b.model()->TextEditRefresh(TwValue(), "temp.Area.Nothing");
        QCOMPARE(width->text(), QStringLiteral("99.9"));
        // The same field asked twice in a row reloads both times.
        b.model()->TextEditRefresh(TwValue(), "temp.Area.Width");
        QCOMPARE(width->text(), QStringLiteral("210.0"));
        width->setText(QStringLiteral("99.9"));
        b.model()->TextEditRefresh(TwValue(), "temp.Area.Width");
        QCOMPARE(width->text(), QStringLiteral("210.0"));

        // In inches through the inch pattern.
        chooseUnit(b.tab.get(), 0);
        QLineEdit* y = b.field("txtY");
        y->setText(QStringLiteral("3"));
        b.model()->TextEditRefresh(TwValue(), "temp.Area.Y");
        QCOMPARE(y->text(), QStringLiteral("0.00"));

        // Typed past the paper: the model keeps the X and the width gives way.
        chooseUnit(b.tab.get(), 1);
        QLineEdit* x = b.field("txtFrontX");
        x->selectAll();
        QTest::keyClicks(x, "100");
        QCOMPARE(b.model()->valueForKeyPath("Data.Area.Measure.Front.X").doubleValue(), 100.0);
        QCOMPARE(b.model()->valueForKeyPath("Data.Area.Measure.Width").doubleValue(), 110.0);
        QCOMPARE(width->text(), QStringLiteral("110.0"));
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Width")->maximum().value_or(-1), 110.0);
    }

    void aModelWithoutAnAreaLeavesTheFieldsUnbound() {
        TwValue values = sample.capabilities.deepCopy();
        values.dict()->value("Data").dict()->set("Area", TwValue());
        if (TwValue defaults = values.dict()->value("Default"); defaults.isDictionary())
            defaults.dict()->set("Area", TwValue());
        Bound b = bound(values);
        QVERIFY(b.model()->valueForKeyPath("Data.Area").isNull());
        QVERIFY(b.model()->valueForKeyPath("temp.Area.Width").isNull());
        QVERIFY(boundKeyPath(b.field("txtWidth"), "value").empty());
        QVERIFY(boundKeyPath(b.field("txtFrontX1"), "value").empty());
        QVERIFY(sample.logText().contains(QStringLiteral("is not found KeyPath:temp.Area.Width")));
        // Still a working tab: the side switch and the unbinding.
        set(*b.ui, "Data.PaperSource", TwValue(1));
        set(*b.ui, "temp.Area.Side", TwValue(1));
        QVERIFY(child(b.tab.get(), "txtFrontX1")->isHidden());
        const std::size_t before = b.model()->observationCount();
        b.tab->unbindControls();
        QVERIFY(b.model()->observationCount() < before);
        QCOMPARE(b.model()->observationCount(b.tab.get()), std::size_t(0));
    }

    void unknownUnitsAndEmptyRangesLeaveTheFormatterAlone() {
        Bound b = bound();
        TwainNumberFormatter* width = b.tab->formatterForKeyPath("temp.Area.Width");
        QSignalSpy spy(width, &QValidator::changed);
        b.tab->setFormatter(width, "temp.Area.Width", 7);
        b.tab->setFormatter(width, "temp.Area.Nothing", 1);
        b.tab->setFormatterForUnitAll(-1);
        QCOMPARE(spy.count(), 0);
        QCOMPARE(width->maximum().value_or(-1), 210.0);
        b.tab->unbindControls();
        b.tab->setFormatter(width, "temp.Area.Width", 0);
        QCOMPARE(spy.count(), 0);
    }
};

QTEST_MAIN(TestAreaTab)
#include "tst_areatab.moc"
