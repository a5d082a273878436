// The current paper and its orientation, the resolution-dependent choices, the paper lists and
// the geometry of the scan areas.
#include "ModelTestSupport.h"
#include "OrvaDebug.h"

#include <QTest>

#include <cmath>

Q_DECLARE_METATYPE(TwValue)

namespace {

TwValue dict(std::initializer_list<std::pair<std::string, TwValue>> entries) {
    return TwValue::dictionary(entries);
}

std::vector<int> codes(const TwValue& list) {
    std::vector<int> out;
    if (auto a = list.list())
        for (auto& e : *a)
            out.push_back(e.dict()->value("value").intValue());
    return out;
}

// Sets area values (millimetres) in the setting and their working copies, telling nobody.
void placeArea(TwainDialogData& model, const TwValue& values) {
    if (auto d = values.dict()) {
        for (auto& [rest, v] : *d) {
            model.setValueForKeyPathWithoutNotification(v, "Data.Area.Measure." + rest);
            model.setValueForKeyPathWithoutNotification(v, "temp.Area." + rest);
        }
    }
}

void compareArea(TwainDialogData& model, const TwValue& expected) {
    for (auto& [rest, v] : *expected.dict()) {
        double got = model.valueForKeyPath("Data.Area.Measure." + rest).doubleValue();
        if (std::fabs(got - v.doubleValue()) > 1e-9)
            QFAIL(
                qPrintable(QString("%1 is %2, expected %3").arg(rest.c_str()).arg(got).arg(v.doubleValue())));
    }
}

} // namespace

class TestPaperRules : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { OrvaSetLogPaths(nullptr, nullptr); }

    // ---- The current paper ----

    void currentPaperSize_data() {
        QTest::addColumn<TwValue>("paperSize");
        QTest::addColumn<double>("width");
        QTest::addColumn<double>("length");
        QTest::newRow("A4") << TwValue(1) << 2100.0 << 2970.0;
        QTest::newRow("A5") << TwValue(5) << 1480.0 << 2100.0;
        QTest::newRow("high bits ignored") << TwValue(0x30005) << 1480.0 << 2100.0;
        QTest::newRow("unknown code") << TwValue(99) << 2100.0 << 2970.0;
        QTest::newRow("custom, truncated") << TwValue("Mine") << 1005.0 << 500.0;
        QTest::newRow("custom that vanished") << TwValue("Gone") << 2100.0 << 2970.0;
        QTest::newRow("custom without a size") << TwValue("Broken") << 2100.0 << 2970.0;
        QTest::newRow("missing") << TwValue() << 2100.0 << 2970.0;
        QTest::newRow("not a paper") << TwValue::array({5}) << 2100.0 << 2970.0;
    }
    void currentPaperSize() {
        QFETCH(TwValue, paperSize);
        QFETCH(double, width);
        QFETCH(double, length);
        TwainDialogData model;
        model.setValueForKeyPath(standardPapers(), "content.PaperSize");
        model.m_CustomPapers =
            TwValue::array({customPaper("Mine", 100.55, 50.0), customPaper("Broken", 0, 0)});
        model.setValueForKeyPath(paperSize, "Data.PaperSize");
        TwSize size = model.GetCurrentPaperSize();
        QCOMPARE(size.width, width);
        QCOMPARE(size.length, length);
    }

    void orientation_data() {
        QTest::addColumn<bool>("allowed");
        QTest::addColumn<bool>("landscape");
        QTest::addColumn<double>("width");
        QTest::newRow("turned") << true << true << 2100.0;
        QTest::newRow("not chosen") << true << false << 1480.0;
        QTest::newRow("not allowed") << false << true << 1480.0;
    }
    void orientation() {
        QFETCH(bool, allowed);
        QFETCH(bool, landscape);
        QFETCH(double, width);
        TwainDialogData model;
        model.setValueForKeyPath(standardPapers(), "content.PaperSize");
        model.setValueForKeyPath(TwValue(5), "Data.PaperSize");
        model.setValueForKeyPath(TwValue(allowed), "enable.Landscape");
        model.setValueForKeyPath(TwValue(landscape), "Data.Landscape");
        TwSize size = model.GetCurrentPaperSizeInCurrentOrientation();
        QCOMPARE(size.width, width);
        QCOMPARE(size.length, width == 2100.0 ? 1480.0 : 2100.0);
    }

    void unitAndDuplex() {
        TwainDialogData model;
        QVERIFY(!model.AreaUnitIsInch());
        for (auto [unit, inch] : {std::pair{TwValue(0), true}, {TwValue(1), false}, {TwValue("0"), false}}) {
            model.setValueForKeyPath(unit, "Data.Area.Unit");
            QCOMPARE(model.AreaUnitIsInch(), inch);
        }
        QVERIFY(!model.IsDuplx());
        for (int source = 0; source < 7; ++source) {
            model.setValueForKeyPath(TwValue(source), "Data.PaperSource");
            QCOMPARE(model.IsDuplx(), source == 1 || source == 4);
        }
    }

    // ---- Landscape ----

    void landscapeFollowsTheFeeder_data() {
        QTest::addColumn<TwValue>("paperSize");
        QTest::addColumn<double>("physicalWidth");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("A4 is too long to turn") << TwValue(1) << 8.5 << false;
        QTest::newRow("A4 on a wider feeder") << TwValue(1) << 12.0 << true;
        QTest::newRow("A5") << TwValue(5) << 8.5 << true;
        QTest::newRow("length equal to the feeder width") << TwValue(52) << 8.5 << true;
        QTest::newRow("Letter") << TwValue(3) << 8.5 << false;
        QTest::newRow("card just wide enough") << TwValue(53) << 8.5 << true;
        QTest::newRow("custom too narrow to feed sideways") << TwValue("Narrow") << 8.5 << false;
        QTest::newRow("custom at the minimum") << TwValue("Edge") << 8.5 << true;
    }
    void landscapeFollowsTheFeeder() {
        QFETCH(TwValue, paperSize);
        QFETCH(double, physicalWidth);
        QFETCH(bool, enabled);
        TestModelDef def;
        def.physicalWidth = physicalWidth;
        def.minHeight = 2.0;
        def.rules = dict({{"enable.Landscape", dict({{"CUSTOM", TwValue::dictionary()}})}});
        auto model = loadedModel(def);
        model->m_CustomPapers =
            TwValue::array({customPaper("Narrow", 40, 80), customPaper("Edge", 50.9, 100)});
        model->setValueForKeyPath(TwValue(13), "Data.PaperSize"); // A6: always allowed
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(true));
        model->setValueForKeyPath(paperSize, "Data.PaperSize");
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(enabled));
        QCOMPARE(model->getEnableCustomForKeyPath("enable.Landscape"), enabled);
    }

    void landscapeKeepsTheOtherConditionsOfItsRule() {
        TestModelDef def;
        def.rules = dict({{"enable.Landscape",
                           dict({{"AND", dict({{"CUSTOM", TwValue::dictionary()},
                                               {"NOT - 1", dict({{"Data.AutoCrop.Enable", true}})}})}})}});
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(5), "Data.PaperSize");
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(true));
        model->setValueForKeyPath(TwValue(true), "Data.AutoCrop.Enable");
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(false));
        model->setValueForKeyPath(TwValue(1), "Data.PaperSize");
        model->setValueForKeyPath(TwValue(false), "Data.AutoCrop.Enable");
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(false)); // A4 cannot turn
    }

    // ---- Resolution-dependent choices ----

    void binaryRates_data() {
        QTest::addColumn<int>("resolution");
        QTest::addColumn<QList<int>>("kept");
        QTest::newRow("150") << 150 << QList<int>{0, 4, 5};
        QTest::newRow("300") << 300 << QList<int>{0, 1, 2, 4, 5};
        QTest::newRow("399") << 399 << QList<int>{0, 1, 2, 4, 5};
        QTest::newRow("400") << 400 << QList<int>{0, 1, 2, 3, 4, 5};
        QTest::newRow("600") << 600 << QList<int>{0, 1, 2, 3, 4, 5};
        QTest::newRow("90") << 90 << QList<int>{0};
    }
    void binaryRates() {
        QFETCH(int, resolution);
        QFETCH(QList<int>, kept);
        TwainDialogData model;
        model.setValueForKeyPath(rateChoices({0, 1, 2, 3, 4, 5}), "content.RateImage");
        model.setValueForKeyPath(TwValue(resolution), "Data.Resolution");
        model.SetBinaryImageRate();
        auto got = codes(model.valueForKeyPath("content.RateImageAvail"));
        QCOMPARE(QList<int>(got.begin(), got.end()), kept);
        // The kept entries are the choice list's own entries.
        QVERIFY(model.valueForKeyPath("content.RateImageAvail").list()->front().dict() ==
                model.valueForKeyPath("content.RateImage").list()->front().dict());
    }

    void grayResolution_data() {
        QTest::addColumn<int>("resolution");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("newCode");
        QTest::addColumn<int>("gray");
        QTest::newRow("150, none") << 150 << 0 << 0 << 150;
        QTest::newRow("150, 1/2 steps to none") << 150 << 1 << 0 << 150;
        QTest::newRow("150, 1/3 steps to none") << 150 << 2 << 0 << 150;
        QTest::newRow("150, 1/4 steps to none") << 150 << 3 << 0 << 150;
        QTest::newRow("150, code 4 divides by one") << 150 << 4 << 4 << 150;
        QTest::newRow("150, code 5") << 150 << 5 << 5 << 150;
        QTest::newRow("300, none") << 300 << 0 << 0 << 300;
        QTest::newRow("300, 1/2") << 300 << 1 << 1 << 150;
        QTest::newRow("300, 1/3") << 300 << 2 << 2 << 100;
        QTest::newRow("300, 1/4 steps to 1/3") << 300 << 3 << 2 << 100;
        QTest::newRow("300, code 4") << 300 << 4 << 4 << 300;
        QTest::newRow("300, code 9") << 300 << 9 << 9 << 300;
        QTest::newRow("600, none") << 600 << 0 << 0 << 600;
        QTest::newRow("600, 1/2") << 600 << 1 << 1 << 300;
        QTest::newRow("600, 1/3") << 600 << 2 << 2 << 200;
        QTest::newRow("600, 1/4") << 600 << 3 << 3 << 150;
        QTest::newRow("600, code 4") << 600 << 4 << 4 << 600;
        QTest::newRow("600, code 5") << 600 << 5 << 5 << 600;
        QTest::newRow("90, code 4 moves to 3 and down") << 90 << 4 << 0 << 90;
        QTest::newRow("90, huge code") << 90 << 1000000000 << 0 << 90;
        QTest::newRow("90, 1/2") << 90 << 1 << 0 << 90;
        QTest::newRow("negative code") << 90 << -3 << -3 << 90;
    }
    void grayResolution() {
        QFETCH(int, resolution);
        QFETCH(int, code);
        QFETCH(int, newCode);
        QFETCH(int, gray);
        TwainDialogData model;
        model.setValueForKeyPath(TwValue(resolution), "Data.Resolution");
        model.setValueForKeyPath(TwValue(code), "Data.AutoDistinction.RateBinaryImage");
        model.SetGrayDPI();
        QCOMPARE(model.valueForKeyPath("Data.AutoDistinction.RateBinaryImage"), TwValue(newCode));
        QCOMPARE(model.valueForKeyPath("temp.GrayDPI"), TwValue(gray));
    }

    void aResolutionEditUpdatesBoth() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(3), "Data.AutoDistinction.RateBinaryImage");
        QCOMPARE(model->valueForKeyPath("Data.AutoDistinction.RateBinaryImage"), TwValue(2));
        QCOMPARE(model->valueForKeyPath("temp.GrayDPI"), TwValue(100));
        model->setValueForKeyPath(TwValue(150), "Data.Resolution");
        QCOMPARE(codes(model->valueForKeyPath("content.RateImageAvail")), std::vector<int>{0});
        QCOMPARE(model->valueForKeyPath("Data.AutoDistinction.RateBinaryImage"), TwValue(0));
        QCOMPARE(model->valueForKeyPath("temp.GrayDPI"), TwValue(150));
        model->setValueForKeyPath(TwValue(600), "Data.Resolution");
        QCOMPARE(codes(model->valueForKeyPath("content.RateImageAvail")), (std::vector<int>{0, 1, 2, 3}));
        QCOMPARE(model->valueForKeyPath("temp.GrayDPI"), TwValue(600));
    }

    void autoCropLength_data() {
        QTest::addColumn<TwValue>("feeder");
        QTest::addColumn<int>("length");
        QTest::newRow("sample feeder: A3 too wide")
            << dict({{"MaxWidth", 8.504}, {"MaxHeight", 118.0}}) << 8400;
        QTest::newRow("narrower: no Letter or Legal")
            << dict({{"MaxWidth", 8.3}, {"MaxHeight", 118.0}}) << 7016;
        QTest::newRow("short: only small papers") << dict({{"MaxWidth", 8.504}, {"MaxHeight", 8.3}}) << 4961;
        QTest::newRow("no limits: every paper") << dict({}) << 9921;
        QTest::newRow("width only") << dict({{"MaxWidth", 8.3}}) << 7016;
        QTest::newRow("limits not numbers") << dict({{"MaxWidth", "wide"}, {"MaxHeight", TwValue()}}) << 9921;
        QTest::newRow("feeder not a dictionary") << TwValue("ADF") << 9921;
        QTest::newRow("nothing fits") << dict({{"MaxWidth", 1.0}, {"MaxHeight", 1.0}}) << 0;
    }
    void autoCropLength() {
        QFETCH(TwValue, feeder);
        QFETCH(int, length);
        TestModelDef def;
        def.adf = feeder;
        TwainDialogData model;
        model.setModelDef(&def);
        model.setValueForKeyPath(standardPapers(), "content.PaperSize");
        ChangeRecorder recorder;
        model.addObserver(&recorder, "range.AutoCropLength", kTwObserveNew);
        model.calcAutoCropLength();
        QCOMPARE(model.valueForKeyPath("range.AutoCropLength"), TwValue(length));
        QCOMPARE(recorder.count("range.AutoCropLength"), 0); // a plain write
        model.removeObserver(&recorder, "range.AutoCropLength");
    }

    // ---- Paper lists ----

    void paperListsHoldStandardThenCustomPapers() {
        TwainDialogData model;
        model.setValueForKeyPath(
            TwValue::array({paper(1, "A4", 2100, 2970, 7016), paper(5, "A5", 1480, 2100, 4961)}),
            "content.PaperSize");
        model.m_CustomPapers =
            TwValue::array({customPaper("Receipt", 80, 200.25), TwValue::dictionary({{"Width", 10}}),
                            customPaper("Card", 85.6, 54)});
        model.updateContentPaperSizeAll();
        TwValue all = model.valueForKeyPath("content.PaperSizeAll");
        QCOMPARE(all.list()->size(), std::size_t(4));
        QCOMPARE(all.list()->at(0).dict()->value("value"), TwValue(1));
        QCOMPARE(all.list()->at(1).dict()->value("value"), TwValue(5));
        QCOMPARE(all.list()->at(2).dict()->value("value"), TwValue("Receipt"));
        QCOMPARE(all.list()->at(2).dict()->value("display"), TwValue("Receipt - 80.0 x 200.2 mm"));
        QCOMPARE(all.list()->at(3).dict()->value("display"), TwValue("Card - 85.6 x 54.0 mm"));
        QCOMPARE(all.list()->at(3).dict()->value("mmWidth"), TwValue(856));
        TwValue plusNone = model.valueForKeyPath("content.PaperSizeAllPlusNone");
        QCOMPARE(plusNone.list()->size(), std::size_t(5));
        QCOMPARE(plusNone.list()->at(0).dict()->value("value"), TwValue(0));
        QCOMPARE(plusNone.list()->at(0).dict()->value("display"),
                 TwValue(model.localizedString("IDS_PAPERSIZE_NONE")));
        for (std::size_t i = 0; i < 4; ++i)
            QCOMPARE(plusNone.list()->at(i + 1), all.list()->at(i));
    }

    void aVanishedCustomPaperLeavesTheLists() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->m_CustomPapers =
            TwValue::array({customPaper("Receipt", 80, 200), customPaper("Slip", 100, 100)});
        model->updateContentPaperSizeAll();
        model->setValueForKeyPath(TwValue("Receipt"), "Data.PaperSize");
        QCOMPARE(model->GetCurrentPaperSize().width, 800.0);
        model->m_CustomPapers.list()->erase(model->m_CustomPapers.list()->begin());
        model->updateContentPaperSizeAll();
        TwValue all = model->valueForKeyPath("content.PaperSizeAll.value");
        QVERIFY(!std::any_of(all.list()->begin(), all.list()->end(),
                             [](auto& v) { return v.isEqual(TwValue("Receipt")); }));
        QVERIFY(std::any_of(all.list()->begin(), all.list()->end(),
                            [](auto& v) { return v.isEqual(TwValue("Slip")); }));
        TwSize size = model->GetCurrentPaperSize();
        QCOMPARE(size.width, 2100.0);
        QCOMPARE(size.length, 2970.0);
    }

    // ---- Area geometry ----

    void formatterRanges_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<TwValue>("area");
        QTest::addColumn<bool>("duplex");
        QTest::addColumn<double>("start");
        QTest::addColumn<double>("length");
        TwValue none = TwValue::dictionary();
        QTest::newRow("front X") << "temp.Area.Front.X" << none << false << 0.0 << 200.0;
        QTest::newRow("back X") << "temp.Area.Back.X" << none << false << 0.0 << 200.0;
        QTest::newRow("Y") << "temp.Area.Y" << none << false << 0.0 << 287.0;
        QTest::newRow("width beside X")
            << "temp.Area.Width" << dict({{"Front.X", 20.0}}) << false << 10.0 << 180.0;
        QTest::newRow("width ignores the back when simplex")
            << "temp.Area.Width" << dict({{"Back.X", 50.0}}) << false << 10.0 << 200.0;
        QTest::newRow("width beside the back X in duplex")
            << "temp.Area.Width" << dict({{"Front.X", 20.0}, {"Back.X", 50.0}}) << true << 10.0 << 150.0;
        QTest::newRow("length below Y") << "temp.Area.Length" << dict({{"Y", 7.0}}) << false << 10.0 << 280.0;
        QTest::newRow("setting key") << "Data.Area.Measure.Width" << dict({{"Front.X", 20.0}}) << false
                                     << 10.0 << 180.0;
        QTest::newRow("sub-area X") << "temp.Area.Front.L1.X" << none << false << 0.0 << 208.0;
        QTest::newRow("sub-area Y") << "temp.Area.Back.L1.Y" << none << false << 0.0 << 295.0;
        QTest::newRow("sub-area width")
            << "temp.Area.Front.L1.Width" << dict({{"Front.L1.X", 10.0}}) << false << 2.0 << 198.0;
        QTest::newRow("sub-area length")
            << "temp.Area.Back.L1.Length" << dict({{"Back.L1.Y", 100.0}}) << false << 2.0 << 195.0;
        QTest::newRow("X beyond the paper")
            << "temp.Area.Width" << dict({{"Front.X", 205.0}}) << false << 10.0 << 0.0;
        QTest::newRow("side selector") << "temp.Area.Side" << none << false << 0.0 << 0.0;
        QTest::newRow("not an area") << "Data.Resolution" << none << false << 0.0 << 0.0;
    }
    void formatterRanges() {
        QFETCH(QString, key);
        QFETCH(TwValue, area);
        QFETCH(bool, duplex);
        QFETCH(double, start);
        QFETCH(double, length);
        TestModelDef def;
        auto model = loadedModel(def);
        placeArea(*model, area);
        model->setValueForKeyPathWithoutNotification(TwValue(duplex), "enable.Duplex");
        TwSize range = model->GetFormatterRange(key.toStdString());
        QCOMPARE(range.width, start);
        QCOMPARE(range.length, length);
    }

    void formatterRangesFollowTheOrientation() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(5), "Data.PaperSize");
        model->setValueForKeyPath(TwValue(true), "Data.Landscape");
        QCOMPARE(model->GetFormatterRange("temp.Area.Y").length, 138.0);
        QCOMPARE(model->GetFormatterRange("temp.Area.Front.X").length, 200.0);
    }

    void editedAreasStayOnThePaper_data() {
        QTest::addColumn<TwValue>("before");
        QTest::addColumn<QString>("key");
        QTest::addColumn<double>("entered");
        QTest::addColumn<TwValue>("after");
        TwValue none = TwValue::dictionary();
        QTest::newRow("too wide: shrunk to the paper")
            << none << "Width" << 250.0 << dict({{"Width", 210.0}, {"Front.X", 0.0}});
        QTest::newRow("X kept, width gives way")
            << none << "Front.X" << 30.0 << dict({{"Front.X", 30.0}, {"Width", 180.0}, {"Back.X", 0.0}});
        QTest::newRow("width kept, X moves")
            << dict({{"Front.X", 30.0}, {"Width", 180.0}}) << "Width" << 200.0
            << dict({{"Front.X", 10.0}, {"Width", 200.0}, {"Back.X", 0.0}});
        QTest::newRow("width moves the back X too")
            << dict({{"Width", 100.0}, {"Back.X", 110.0}}) << "Width" << 150.0
            << dict({{"Front.X", 0.0}, {"Back.X", 60.0}, {"Width", 150.0}});
        QTest::newRow("back X kept, width gives way")
            << none << "Back.X" << 50.0 << dict({{"Back.X", 50.0}, {"Width", 160.0}, {"Front.X", 0.0}});
        QTest::newRow("X no further than the minimum width")
            << none << "Front.X" << 205.0 << dict({{"Front.X", 200.0}, {"Width", 10.0}});
        QTest::newRow("negative X") << none << "Front.X" << -5.0
                                    << dict({{"Front.X", 0.0}, {"Width", 210.0}});
        QTest::newRow("main minimum length")
            << none << "Length" << 5.0 << dict({{"Length", 10.0}, {"Y", 0.0}});
        QTest::newRow("Y near the bottom") << none << "Y" << 295.0 << dict({{"Y", 287.0}, {"Length", 10.0}});
        QTest::newRow("sub-area too wide: moved, then shrunk")
            << none << "Front.L1.Width" << 300.0 << dict({{"Front.L1.Width", 210.0}, {"Front.L1.X", 0.0}});
        QTest::newRow("sub-area moved back")
            << none << "Back.L1.Width" << 205.0 << dict({{"Back.L1.Width", 205.0}, {"Back.L1.X", 5.0}});
        QTest::newRow("sub-area minimum")
            << none << "Front.L1.Length" << 1.0 << dict({{"Front.L1.Length", 2.0}});
        QTest::newRow("sub-area outside the main area is kept")
            << dict({{"Width", 100.0}}) << "Front.L1.X" << 150.0
            << dict({{"Front.L1.X", 150.0}, {"Front.L1.Width", 50.0}});
        QTest::newRow("a fitting value is left alone")
            << none << "Front.L1.Y" << 40.0 << dict({{"Front.L1.Y", 40.0}, {"Front.L1.Length", 20.0}});
    }
    void editedAreasStayOnThePaper() {
        QFETCH(TwValue, before);
        QFETCH(QString, key);
        QFETCH(double, entered);
        QFETCH(TwValue, after);
        TestModelDef def;
        auto model = loadedModel(def);
        placeArea(*model, before);
        model->setValueForKeyPath(TwValue(entered), "temp.Area." + key.toStdString());
        compareArea(*model, after);
        // Working copies agree with the setting (millimetres here).
        for (auto& [rest, v] : *after.dict())
            QCOMPARE(model->valueForKeyPath("temp.Area." + rest).doubleValue(), v.doubleValue());
    }

    void aCorrectedFieldIsAskedToRefresh() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(0), "Data.Area.Unit");
        model->setValueForKeyPath(TwValue(9.0), "temp.Area.Width");
        QCOMPARE(model->valueForKeyPath("Data.Area.Measure.Width").doubleValue(), 210.0);
        QCOMPARE(model->valueForKeyPath("temp.Area.Width").doubleValue(), 210.0 / 25.4);
        QCOMPARE(model->valueForKeyPath("temp.TextEditDatakey"), TwValue("temp.Area.Width"));
        QCOMPARE(model->valueForKeyPath("temp.TextEditRefresh"), TwValue(0));
        // A value that fits asks for nothing.
        model->setValueForKeyPath(TwValue(4.0), "temp.Area.Width");
        QCOMPARE(model->valueForKeyPath("Data.Area.Measure.Width").doubleValue(), 4.0 * 25.4);
        QCOMPARE(model->valueForKeyPath("temp.TextEditRefresh"), TwValue(0));
    }

    void aWholePaperAreaFollowsThePaper() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(5), "Data.PaperSize");
        compareArea(*model, dict({{"Front.X", 0.0},
                                  {"Back.X", 0.0},
                                  {"Y", 0.0},
                                  {"Width", 148.0},
                                  {"Length", 210.0},
                                  {"Front.L1.X", 10.0},
                                  {"Front.L1.Width", 50.0}}));
        QCOMPARE(model->valueForKeyPath("temp.Area.Width").doubleValue(), 148.0);
        model->setValueForKeyPath(TwValue(1), "Data.PaperSize");
        compareArea(*model, dict({{"Width", 210.0}, {"Length", 297.0}}));
        model->setValueForKeyPath(TwValue(53), "Data.PaperSize"); // a card: the sub-areas move onto it
        compareArea(*model, dict({{"Width", 55.0},
                                  {"Length", 91.0},
                                  {"Front.L1.X", 5.0},
                                  {"Front.L1.Width", 50.0},
                                  {"Back.L1.X", 5.0}}));
    }

    void aDrawnAreaIsKeptMovedAndShrunk() {
        TestModelDef def;
        auto model = loadedModel(def);
        placeArea(
            *model,
            dict({{"Front.X", 20.0}, {"Back.X", 0.0}, {"Y", 30.0}, {"Width", 100.0}, {"Length", 150.0}}));
        model->setValueForKeyPath(TwValue(5), "Data.PaperSize"); // A5: still fits
        compareArea(*model, dict({{"Front.X", 20.0}, {"Y", 30.0}, {"Width", 100.0}, {"Length", 150.0}}));
        model->setValueForKeyPath(TwValue(13), "Data.PaperSize"); // A6, 105 x 148
        compareArea(
            *model,
            dict({{"Front.X", 5.0}, {"Back.X", 0.0}, {"Y", 0.0}, {"Width", 100.0}, {"Length", 148.0}}));
        model->setValueForKeyPath(TwValue(1), "Data.PaperSize"); // back on A4 the area stays as it is
        compareArea(*model, dict({{"Front.X", 5.0}, {"Y", 0.0}, {"Width", 100.0}, {"Length", 148.0}}));
    }

    void turningThePaperTurnsAWholePaperArea() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(5), "Data.PaperSize");
        model->setValueForKeyPath(TwValue(true), "Data.Landscape");
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(true));
        compareArea(*model, dict({{"Width", 210.0}, {"Length", 148.0}}));
        model->setValueForKeyPath(TwValue(1), "Data.PaperSize"); // A4 cannot turn: portrait again
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(false));
        compareArea(*model, dict({{"Width", 210.0}, {"Length", 297.0}}));
    }

    void validateAllBringsEveryAreaBack() {
        TestModelDef def;
        auto model = loadedModel(def);
        placeArea(*model, dict({{"Front.X", 300.0}, {"Back.L1.Y", 296.0}, {"Front.L1.Width", 0.5}}));
        model->ValidateAreaRectAll();
        compareArea(*model, dict({{"Front.X", 0.0},
                                  {"Width", 210.0},
                                  {"Back.L1.Y", 277.0},
                                  {"Back.L1.Length", 20.0},
                                  {"Front.L1.Width", 2.0}}));
        QCOMPARE(model->valueForKeyPath("temp.Area.Back.L1.Y").doubleValue(), 277.0);
    }

    void areasTheSettingLacksAreNotCreated() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPathWithoutNotification(TwValue(), "Data.Area.Measure.Back.L1");
        model->setValueForKeyPathWithoutNotification(TwValue("wide"), "Data.Area.Measure.Front.L1.Width");
        model->ValidateAreaRectAll();
        QVERIFY(model->valueForKeyPath("Data.Area.Measure.Back.L1").isNull());
        QCOMPARE(model->valueForKeyPath("Data.Area.Measure.Front.L1.Width"), TwValue("wide"));
    }

    void paperFrame() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(0), "Data.Area.Unit");
        model->setPaperFrame({10, 20, 110, 220});
        compareArea(
            *model,
            dict({{"Front.X", 10.0}, {"Back.X", 10.0}, {"Y", 20.0}, {"Width", 100.0}, {"Length", 200.0}}));
        QCOMPARE(model->valueForKeyPath("temp.Area.Width").doubleValue(), 100.0 / 25.4);
        TwPaperFrame frame;
        model->getPaperFrame(&frame);
        QCOMPARE(frame.left, 10.0);
        QCOMPARE(frame.top, 20.0);
        QCOMPARE(frame.right, 110.0);
        QCOMPARE(frame.bottom, 220.0);

        model->setPaperFrame({110, 220, 10, 20}); // corners in any order
        compareArea(*model, dict({{"Front.X", 10.0}, {"Width", 100.0}}));
        model->setPaperFrame({0, 0, 500, 500}); // larger than the paper
        compareArea(*model, dict({{"Width", 210.0}, {"Length", 297.0}}));
        model->setPaperFrame({NAN, 0, 10, 10}); // refused
        compareArea(*model, dict({{"Width", 210.0}, {"Length", 297.0}}));
        model->getPaperFrame(nullptr);
    }
};

QTEST_GUILESS_MAIN(TestPaperRules)
#include "tst_paperrules.moc"
