// The Area tab bound to the sample scanner: the unit changes the pattern and the range of every
// area field, a change recomputes exactly the ranges that depend on it, the two sides share one
// place and only the selected one shows, and a field the model corrected reloads.

#include "TabTestSupport.h"
#include "TwainNumberFormatter.h"
#include "TwainViewArea.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableWidget>
#include <QtTest>

#include <set>

using namespace tabtest;

namespace {

const TwainNumberFormatter* formatterOf(const QLineEdit* field) {
    return qobject_cast<const TwainNumberFormatter*>(field->validator());
}

double maximumOf(const TwainNumberFormatter* formatter) {
    return formatter->maximum().value_or(-1);
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
        double maximum(const char* keyPath) const { return maximumOf(tab->formatterForKeyPath(keyPath)); }
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

    // Millimetre ranges to the unit's integer steps, rounded half up: hundredths of an inch,
    // tenths of a millimetre; no range for an unknown unit or one too large.
    void theUnitsIntegerRangesRoundHalfUp_data() {
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("length");
        QTest::addColumn<int>("unit");
        QTest::addColumn<QList<int>>("range"); // minimum, maximum, places; empty: none
        QTest::newRow("A4 width in inches") << 0.0 << 210.0 << 0 << QList<int>{0, 827, 2};
        QTest::newRow("one inch") << 25.4 << 25.4 << 0 << QList<int>{100, 200, 2};
        QTest::newRow("millimetres") << 10.0 << 200.0 << 1 << QList<int>{100, 2100, 1};
        QTest::newRow("unknown unit") << 0.0 << 210.0 << 2 << QList<int>{};
        QTest::newRow("too large") << 0.0 << 1e300 << 1 << QList<int>{};
    }
    void theUnitsIntegerRangesRoundHalfUp() {
        QFETCH(double, from);
        QFETCH(double, length);
        QFETCH(int, unit);
        QFETCH(QList<int>, range);
        auto r = TwainViewArea::rangeForUnit({from, length}, unit);
        QCOMPARE(bool(r), !range.isEmpty());
        if (r)
            QCOMPARE((QList<int>{r->minimum, r->maximum, r->places}), range);
    }

    void bindingCopiesTheAreaAndShowsTheFrontInMillimetres() {
        Bound b = bound();
        QCOMPARE(b.model()->valueForKeyPath("temp.Area.Side"), TwValue(0));
        QCOMPARE(b.model()->valueForKeyPath("hidden.Area.Back"), TwValue(true));
        QCOMPARE(b.field("txtWidth")->text(), QStringLiteral("210.0"));
        QCOMPARE(b.field("txtFrontY2")->text(), QStringLiteral("40.0"));
        QCOMPARE(b.field("txtFrontBrightness1")->text(), QStringLiteral("128"));
        QCOMPARE(child<QComboBox>(b.tab.get(), "cmbUnit")->currentText(), QStringLiteral("Millimeters"));
        // Ranges from the paper: X up to 210 - 10, width 10 up to 210 - X.
        QCOMPARE(b.maximum("temp.Area.Front.X"), 200.0);
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Width")->minimum().value_or(-1), 10.0);
        QCOMPARE(b.maximum("temp.Area.Width"), 210.0);
        QCOMPARE(b.maximum("temp.Area.Front.L1.X"), 208.0);
        QCOMPARE(b.maximum("temp.Area.Front.L1.Width"), 200.0);
        // The back sub-areas take the front's X and Y ranges.
        QCOMPARE(formatterOf(b.field("txtBackX2")), b.tab->formatterForKeyPath("temp.Area.Front.L1.X"));
        QCOMPARE(formatterOf(b.field("txtBackY3")), b.tab->formatterForKeyPath("temp.Area.Front.L1.Y"));
    }

    void switchingTheUnitReformatsEveryField() {
        Bound b = bound();
        // 25.4 mm typed as the first sub-area's width, once the sub-area is on.
        QTest::mouseClick(child<QCheckBox>(b.tab.get(), "btnFrontArea1"), Qt::LeftButton);
        QLineEdit* width1 = b.field("txtFrontWidth1");
        width1->selectAll();
        QTest::keyClicks(width1, "25.4");
        QCOMPARE(b.model()->valueForKeyPath("Data.Area.Measure.Front.L1.Width").doubleValue(), 25.4);

        QList<QSignalSpy*> spies;
        for (QLineEdit* field : b.tab->formatTexts())
            spies << new QSignalSpy(const_cast<QValidator*>(field->validator()), &QValidator::changed);
        chooseUnit(b.tab.get(), 0);
        QCOMPARE(b.model()->valueForKeyPath("Data.Area.Unit"), TwValue(0));
        QCOMPARE(width1->text(), QStringLiteral("1.00"));
        QCOMPARE(b.field("txtWidth")->text(), QStringLiteral("8.27"));
        for (QLineEdit* field : b.tab->formatTexts()) {
            QCOMPARE(formatterOf(field)->format(), QStringLiteral("0.00"));
            QVERIFY2(!field->text().isEmpty(), qPrintable(field->objectName()));
        }
        for (QSignalSpy* spy : spies)
            QVERIFY(spy->count() > 0);
        QCOMPARE(formatterOf(b.field("txtFrontBrightness1"))->format(), QStringLiteral("0"));
        QCOMPARE(b.maximum("temp.Area.Width"), 8.27);
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
        QCOMPARE(formatterOf(b.field("txtLength"))->format(), QStringLiteral("0.0"));
        QCOMPARE(b.maximum("temp.Area.Width"), 210.0);
    }

    void aChangeRecomputesOnlyTheRangeThatDependsOnIt() {
        Bound b = bound();
        std::map<std::string, std::unique_ptr<QSignalSpy>> spies;
        std::vector<std::string> keys{"temp.Area.Front.X", "temp.Area.Y",          "temp.Area.Width",
                                      "temp.Area.Length",  "temp.Area.Front.L1.X", "temp.Area.Front.L1.Y"};
        for (const char* side : {"Front", "Back"})
            for (const char* item : {"Width", "Length"})
                for (int n = 1; n <= 3; ++n)
                    keys.push_back(std::string("temp.Area.") + side + ".L" + std::to_string(n) + "." + item);
        for (const std::string& key : keys)
            spies[key] = std::make_unique<QSignalSpy>(b.tab->formatterForKeyPath(key), &QValidator::changed);
        auto changed = [&] {
            std::set<std::string> out;
            for (auto& [key, spy] : spies)
                if (spy->count() > 0)
                    out.insert(key);
            for (auto& [key, spy] : spies)
                spy->clear();
            return out;
        };

        set(*b.ui, "temp.Area.Back.L2.X", TwValue(20.0));
        QCOMPARE(changed(), std::set<std::string>{"temp.Area.Back.L2.Width"});
        QCOMPARE(b.maximum("temp.Area.Back.L2.Width"), 190.0);
        set(*b.ui, "temp.Area.Y", TwValue(50.0));
        QCOMPARE(changed(), std::set<std::string>{"temp.Area.Length"});
        QCOMPARE(b.maximum("temp.Area.Length"), 247.0);
        // A new paper recomputes them all.
        set(*b.ui, "Data.PaperSize", TwValue(5)); // A5
        QCOMPARE(changed().size(), keys.size());
        QCOMPARE(b.maximum("temp.Area.Front.L1.X"), 146.0);
    }

    // The ranges follow the paper in its orientation, not only the paper size.
    void theRangesFollowThePaperTurned() {
        Bound b = bound();
        set(*b.ui, "Data.PaperSize", TwValue(5)); // A5, which the feeder takes turned
        QCOMPARE(b.maximum("temp.Area.Width"), 148.0);
        QVERIFY(b.model()->valueForKeyPath("enable.Landscape").boolValue());
        set(*b.ui, "Data.Landscape", TwValue(true));
        QCOMPARE(b.maximum("temp.Area.Width"), 210.0);
        QCOMPARE(b.maximum("temp.Area.Front.L1.Y"), 146.0);
        set(*b.ui, "Data.Landscape", TwValue(false));
        QCOMPARE(b.maximum("temp.Area.Width"), 148.0);
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
        QCOMPARE(back.size(), front.size());
        QList<QRect> frontPlaces;
        for (QWidget* w : front)
            frontPlaces << w->geometry();

        // The user picks the back row.
        QTest::mouseClick(side->viewport(), Qt::LeftButton, {},
                          side->visualItemRect(side->item(1, 0)).center());
        QCOMPARE(b.model()->valueForKeyPath("temp.Area.Side"), TwValue(1));
        QApplication::processEvents();
        tab->layout()->activate();
        for (qsizetype i = 0; i < front.size(); ++i) {
            QVERIFY2(front[i]->isHidden(), qPrintable(front[i]->objectName()));
            QVERIFY2(!back[i]->isHidden(), qPrintable(back[i]->objectName()));
            QCOMPARE(back[i]->geometry(), frontPlaces[i]);
        }
        QVERIFY(child(tab, "btnBackArea2")->isEnabled());
        QVERIFY(!child(tab, "stpBackBrightness2")->isEnabled()); // its sub-area is off

        // Without duplex only the front remains.
        set(*b.ui, "Data.PaperSource", TwValue(0));
        QCOMPARE(b.model()->valueForKeyPath("temp.Area.Side"), TwValue(0));
        for (qsizetype i = 0; i < front.size(); ++i) {
            QVERIFY(!front[i]->isHidden());
            QVERIFY2(back[i]->isHidden() && !back[i]->isEnabled(), qPrintable(back[i]->objectName()));
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
        QVERIFY(!b.field("txtFrontX3")->isEnabled());

        // The stepper writes the brightness, and the field beside it shows it.
        child<QSpinBox>(b.tab.get(), "stpFrontBrightness2")->stepUp();
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
        // The same field asked twice in a row reloads both times; a key no field shows is ignored,
        // asked once or again.
        for (int i = 0; i < 2; ++i) {
            width->setText(QStringLiteral("99.9"));
            b.model()->TextEditRefresh(TwValue(), "temp.Area.Width");
            QCOMPARE(width->text(), QStringLiteral("210.0"));
        }
        b.model()->TextEditRefresh(TwValue(), "temp.Area.Nothing");
        width->setText(QStringLiteral("99.9"));
        b.model()->TextEditRefresh(TwValue(), "temp.Area.Nothing");
        QCOMPARE(width->text(), QStringLiteral("99.9"));

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
        QCOMPARE(b.model()->valueForKeyPath("Data.Area.Measure.Width").doubleValue(), 110.0);
        QCOMPARE(width->text(), QStringLiteral("110.0"));
        QCOMPARE(b.maximum("temp.Area.Width"), 110.0);
    }

    void aModelWithoutAnAreaLeavesTheFieldsUnbound() {
        TwValue values = sample.capabilities.deepCopy();
        values.dict()->value("Data").dict()->set("Area", TwValue());
        if (TwValue defaults = values.dict()->value("Default"); defaults.isDictionary())
            defaults.dict()->set("Area", TwValue());
        Bound b = bound(values);
        QVERIFY(boundKeyPath(b.field("txtWidth"), "value").empty());
        QVERIFY(sample.logText().contains(QStringLiteral("is not found KeyPath:temp.Area.Width")));
        // Still a working tab: the side switch and the unbinding.
        set(*b.ui, "Data.PaperSource", TwValue(1));
        set(*b.ui, "temp.Area.Side", TwValue(1));
        QVERIFY(child(b.tab.get(), "txtFrontX1")->isHidden());
        b.tab->unbindControls();
        QCOMPARE(b.model()->observationCount(b.tab.get()), std::size_t(0));
    }
};

QTEST_MAIN(TestAreaTab)
#include "tst_areatab.moc"
