// The current paper and its orientation, the resolution-dependent choices, the paper lists and
// the geometry of the scan areas.
#include "ModelTestSupport.h"

#include <limits>

class TestPaperRules : public ModelFixture {
    Q_OBJECT

    // Area values in millimetres, written "Front.X=20 Width=100".
    static std::vector<std::pair<std::string, double>> areaValues(const QString& text) {
        std::vector<std::pair<std::string, double>> out;
        for (const QString& pair : text.split(' ', Qt::SkipEmptyParts))
            out.emplace_back(pair.section('=', 0, 0).toStdString(), pair.section('=', 1).toDouble());
        return out;
    }

    // Sets area values in the setting and their working copies, telling nobody.
    static void placeArea(TwainDialogData& model, const QString& text) {
        for (auto& [rest, v] : areaValues(text)) {
            model.setValueForKeyPathWithoutNotification(v, "Data.Area.Measure." + rest);
            model.setValueForKeyPathWithoutNotification(v, "temp.Area." + rest);
        }
    }

    // Compares the setting and, with the unit in millimetres, the working copies too.
    static void compareArea(TwainDialogData& model, const QString& text, bool workingCopies = false) {
        for (auto& [rest, v] : areaValues(text))
            for (const char* prefix : {"Data.Area.Measure.", "temp.Area."}) {
                double got = model.valueForKeyPath(prefix + rest).doubleValue();
                if (std::fabs(got - v) > 1e-9)
                    QFAIL(qPrintable(
                        QString("%1%2 is %3, expected %4").arg(prefix).arg(rest.c_str()).arg(got).arg(v)));
                if (!workingCopies)
                    break;
            }
    }

private slots:
    void init() { fresh(); }

    // ---- The current paper ----

    void currentPaperSize_data() {
        columns<TwValue, double, double>("paperSize", "width", "length");
        row("A4", TwValue(1), 2100.0, 2970.0);
        row("A5", TwValue(5), 1480.0, 2100.0);
        row("high bits ignored", TwValue(0x30005), 1480.0, 2100.0);
        row("unknown code", TwValue(99), 2100.0, 2970.0);
        row("custom, truncated", TwValue("Mine"), 1005.0, 500.0);
        row("custom that vanished", TwValue("Gone"), 2100.0, 2970.0);
        row("custom without a size", TwValue("Broken"), 2100.0, 2970.0);
        row("not a paper", TwValue::array({5}), 2100.0, 2970.0);
    }
    void currentPaperSize() {
        QFETCH(TwValue, paperSize);
        TwainDialogData model;
        model.setValueForKeyPath(standardPapers(), "content.PaperSize");
        model.m_CustomPapers =
            TwValue::array({customPaper("Mine", 100.55, 50.0), customPaper("Broken", 0, 0)});
        model.setValueForKeyPath(paperSize, "Data.PaperSize");
        TwSize size = model.GetCurrentPaperSize();
        QTEST(size.width, "width");
        QTEST(size.length, "length");
    }

    // ---- Landscape ----

    void landscapeFollowsTheFeeder_data() {
        columns<TwValue, double, bool>("paperSize", "physicalWidth", "enabled");
        row("A4 is too long to turn", TwValue(1), 8.5, false);
        row("A4 on a wider feeder", TwValue(1), 12.0, true);
        row("A5", TwValue(5), 8.5, true);
        row("length equal to the feeder width", TwValue(52), 8.5, true);
        row("card just wide enough", TwValue(53), 8.5, true);
        row("custom too narrow to feed sideways", TwValue("Narrow"), 8.5, false);
        row("custom at the minimum", TwValue("Edge"), 8.5, true);
    }
    void landscapeFollowsTheFeeder() {
        auto [paperSize, physicalWidth, enabled] =
            fetch<TwValue, double, bool>("paperSize", "physicalWidth", "enabled");
        def->physicalWidth = physicalWidth;
        def->minHeight = 2.0;
        def->rules = dict({{"enable.Landscape", dict({{"CUSTOM", TwValue::dictionary()}})}});
        reload();
        model->m_CustomPapers =
            TwValue::array({customPaper("Narrow", 40, 80), customPaper("Edge", 50.9, 100)});
        model->setValueForKeyPath(TwValue(13), "Data.PaperSize"); // A6: always allowed
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(true));
        model->setValueForKeyPath(paperSize, "Data.PaperSize");
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(enabled));
        QCOMPARE(model->getEnableCustomForKeyPath("enable.Landscape"), enabled);
    }

    void landscapeKeepsTheOtherConditionsOfItsRule() {
        def->rules = dict({{"enable.Landscape",
                            dict({{"AND", dict({{"CUSTOM", TwValue::dictionary()},
                                                {"NOT - 1", dict({{"Data.AutoCrop.Enable", true}})}})}})}});
        reload();
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
        columns<int, QList<int>>("resolution", "kept");
        row("150", 150, QList<int>{0, 4, 5});
        row("300", 300, QList<int>{0, 1, 2, 4, 5});
        row("400", 400, QList<int>{0, 1, 2, 3, 4, 5});
        row("90", 90, QList<int>{0});
    }
    void binaryRates() {
        QFETCH(int, resolution);
        TwainDialogData model;
        model.setValueForKeyPath(rateChoices({0, 1, 2, 3, 4, 5}), "content.RateImage");
        model.setValueForKeyPath(TwValue(resolution), "Data.Resolution");
        model.SetBinaryImageRate();
        auto got = codes(model.valueForKeyPath("content.RateImageAvail"));
        QTEST(QList<int>(got.begin(), got.end()), "kept");
    }

    void grayResolution_data() {
        columns<int, int, int, int>("resolution", "code", "newCode", "gray");
        row("150, none", 150, 0, 0, 150);
        row("150, 1/2 steps to none", 150, 1, 0, 150);
        row("150, 1/4 steps to none", 150, 3, 0, 150);
        row("150, code 4 divides by one", 150, 4, 4, 150);
        row("300, none", 300, 0, 0, 300);
        row("300, 1/2", 300, 1, 1, 150);
        row("300, 1/3", 300, 2, 2, 100);
        row("300, 1/4 steps to 1/3", 300, 3, 2, 100);
        row("300, code 5", 300, 5, 5, 300);
        row("600, 1/2", 600, 1, 1, 300);
        row("600, 1/3", 600, 2, 2, 200);
        row("600, 1/4", 600, 3, 3, 150);
        row("90, code 4 moves to 3 and down", 90, 4, 0, 90);
        row("90, huge code", 90, 1000000000, 0, 90);
        row("negative code", 90, -3, -3, 90);
    }
    void grayResolution() {
        auto [resolution, code] = fetch<int, int>("resolution", "code");
        TwainDialogData model;
        model.setValueForKeyPath(TwValue(resolution), "Data.Resolution");
        model.setValueForKeyPath(TwValue(code), "Data.AutoDistinction.RateBinaryImage");
        model.SetGrayDPI();
        QTEST(model.valueForKeyPath("Data.AutoDistinction.RateBinaryImage").intValue(), "newCode");
        QTEST(model.valueForKeyPath("temp.GrayDPI").intValue(), "gray");
    }

    void aResolutionEditUpdatesBoth() {
        model->setValueForKeyPath(TwValue(3), "Data.AutoDistinction.RateBinaryImage");
        QCOMPARE(valuesAt(*model, {"Data.AutoDistinction.RateBinaryImage", "temp.GrayDPI"}),
                 TwValue::array({2, 100}));
        model->setValueForKeyPath(TwValue(150), "Data.Resolution");
        QCOMPARE(codes(model->valueForKeyPath("content.RateImageAvail")), std::vector<int>{0});
        QCOMPARE(valuesAt(*model, {"Data.AutoDistinction.RateBinaryImage", "temp.GrayDPI"}),
                 TwValue::array({0, 150}));
        model->setValueForKeyPath(TwValue(600), "Data.Resolution");
        QCOMPARE(codes(model->valueForKeyPath("content.RateImageAvail")), (std::vector<int>{0, 1, 2, 3}));
        QCOMPARE(model->valueForKeyPath("temp.GrayDPI"), TwValue(600));
    }

    void autoCropLength_data() {
        columns<TwValue, int>("feeder", "length");
        row("sample feeder: A3 too wide", dict({{"MaxWidth", 8.504}, {"MaxHeight", 118.0}}), 8400);
        row("narrower: no Letter or Legal", dict({{"MaxWidth", 8.3}, {"MaxHeight", 118.0}}), 7016);
        row("no limits: every paper", dict({}), 9921);
        row("feeder not a dictionary", TwValue("ADF"), 9921);
        row("nothing fits", dict({{"MaxWidth", 1.0}, {"MaxHeight", 1.0}}), 0);
    }
    void autoCropLength() {
        QFETCH(TwValue, feeder);
        TestModelDef def;
        def.adf = feeder;
        TwainDialogData model;
        model.setModelDef(&def);
        model.setValueForKeyPath(standardPapers(), "content.PaperSize");
        model.calcAutoCropLength();
        QTEST(model.valueForKeyPath("range.AutoCropLength").intValue(), "length");
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
        // The entry without a name is left out.
        QCOMPARE(model.valueForKeyPath("content.PaperSizeAll.value"),
                 TwValue::array({1, 5, "Receipt", "Card"}));
        QCOMPARE(model.valueForKeyPath("content.PaperSizeAll.display"),
                 TwValue::array({"A4", "A5", "Receipt - 80.0 x 200.2 mm", "Card - 85.6 x 54.0 mm"}));
        QCOMPARE(all.list()->at(3).dict()->value("mmWidth"), TwValue(856));
        TwValue plusNone = model.valueForKeyPath("content.PaperSizeAllPlusNone");
        QCOMPARE(plusNone.list()->at(0),
                 dict({{"value", 0}, {"display", model.localizedString("IDS_PAPERSIZE_NONE")}}));
        plusNone.list()->erase(plusNone.list()->begin());
        QCOMPARE(plusNone, all);
    }

    void aVanishedCustomPaperLeavesTheLists() {
        model->m_CustomPapers =
            TwValue::array({customPaper("Receipt", 80, 200), customPaper("Slip", 100, 100)});
        model->updateContentPaperSizeAll();
        model->setValueForKeyPath(TwValue("Receipt"), "Data.PaperSize");
        QCOMPARE(model->GetCurrentPaperSize().width, 800.0);
        model->m_CustomPapers.list()->erase(model->m_CustomPapers.list()->begin());
        model->updateContentPaperSizeAll();
        TwValue all = model->valueForKeyPath("content.PaperSizeAll.value");
        QCOMPARE(all.list()->back(), TwValue("Slip"));
        QVERIFY(std::none_of(all.list()->begin(), all.list()->end(),
                             [](auto& v) { return v.isString() && v.stringValue() == "Receipt"; }));
        QCOMPARE(model->GetCurrentPaperSize().width, 2100.0); // back to the first standard paper
    }

    // ---- Area geometry ----

    void formatterRanges_data() {
        columns<QString, QString, bool, double, double>("key", "area", "duplex", "start", "length");
        row("front X", "temp.Area.Front.X", "", false, 0.0, 200.0);
        row("Y", "temp.Area.Y", "", false, 0.0, 287.0);
        row("width beside X", "temp.Area.Width", "Front.X=20", false, 10.0, 180.0);
        row("width ignores the back when simplex", "temp.Area.Width", "Back.X=50", false, 10.0, 200.0);
        row("width beside the back X in duplex", "temp.Area.Width", "Front.X=20 Back.X=50", true, 10.0,
            150.0);
        row("length below Y", "temp.Area.Length", "Y=7", false, 10.0, 280.0);
        row("sub-area X", "temp.Area.Front.L1.X", "", false, 0.0, 208.0);
        row("sub-area width", "temp.Area.Front.L1.Width", "Front.L1.X=10", false, 2.0, 198.0);
        row("sub-area length", "temp.Area.Back.L1.Length", "Back.L1.Y=100", false, 2.0, 195.0);
        row("X beyond the paper", "temp.Area.Width", "Front.X=205", false, 10.0, 0.0);
        row("not an area", "Data.Resolution", "", false, 0.0, 0.0);
    }
    void formatterRanges() {
        auto [key, area, duplex] = fetch<QString, QString, bool>("key", "area", "duplex");
        placeArea(*model, area);
        model->setValueForKeyPathWithoutNotification(TwValue(duplex), "enable.Duplex");
        TwRange range = model->GetFormatterRange(key.toStdString());
        QTEST(range.start, "start");
        QTEST(range.length, "length");
    }

    void editedAreasStayOnThePaper_data() {
        columns<QString, QString, double, QString>("before", "key", "entered", "after");
        row("too wide: shrunk to the paper", "", "Width", 250.0, "Width=210 Front.X=0");
        row("X kept, width gives way", "", "Front.X", 30.0, "Front.X=30 Width=180 Back.X=0");
        row("width kept, X moves", "Front.X=30 Width=180", "Width", 200.0, "Front.X=10 Width=200 Back.X=0");
        row("width moves the back X too", "Width=100 Back.X=110", "Width", 150.0,
            "Front.X=0 Back.X=60 Width=150");
        row("X no further than the minimum width", "", "Front.X", 205.0, "Front.X=200 Width=10");
        row("main minimum length", "", "Length", 5.0, "Length=10 Y=0");
        row("Y near the bottom", "", "Y", 295.0, "Y=287 Length=10");
        row("sub-area too wide: moved, then shrunk", "", "Front.L1.Width", 300.0,
            "Front.L1.Width=210 Front.L1.X=0");
        row("sub-area moved back", "", "Back.L1.Width", 205.0, "Back.L1.Width=205 Back.L1.X=5");
        row("sub-area minimum", "", "Front.L1.Length", 1.0, "Front.L1.Length=2");
        row("sub-area outside the main area is kept", "Width=100", "Front.L1.X", 150.0,
            "Front.L1.X=150 Front.L1.Width=50");
    }

    void editedAreasStayOnThePaper() {
        auto [before, key, entered, after] =
            fetch<QString, QString, double, QString>("before", "key", "entered", "after");
        placeArea(*model, before);
        model->setValueForKeyPath(TwValue(entered), "temp.Area." + key.toStdString());
        compareArea(*model, after, true);
    }

    void aCorrectedFieldIsAskedToRefresh() {
        model->setValueForKeyPath(TwValue(0), "Data.Area.Unit");
        model->setValueForKeyPath(TwValue(9.0), "temp.Area.Width");
        QCOMPARE(model->valueForKeyPath("Data.Area.Measure.Width").doubleValue(), 210.0);
        QCOMPARE(model->valueForKeyPath("temp.Area.Width").doubleValue(), 210.0 / 25.4);
        QCOMPARE(valuesAt(*model, {"temp.TextEditDatakey", "temp.TextEditRefresh"}),
                 TwValue::array({"temp.Area.Width", 0}));
        // A value that fits asks for nothing.
        model->setValueForKeyPath(TwValue(4.0), "temp.Area.Width");
        QCOMPARE(model->valueForKeyPath("Data.Area.Measure.Width").doubleValue(), 4.0 * 25.4);
        QCOMPARE(model->valueForKeyPath("temp.TextEditRefresh"), TwValue(0));
    }

    void aWholePaperAreaFollowsThePaper() {
        model->setValueForKeyPath(TwValue(5), "Data.PaperSize");
        compareArea(*model, "Front.X=0 Back.X=0 Y=0 Width=148 Length=210 Front.L1.X=10 Front.L1.Width=50");
        QCOMPARE(model->valueForKeyPath("temp.Area.Width").doubleValue(), 148.0);
        model->setValueForKeyPath(TwValue(1), "Data.PaperSize");
        compareArea(*model, "Width=210 Length=297");
        model->setValueForKeyPath(TwValue(53), "Data.PaperSize"); // a card: the sub-areas move onto it
        compareArea(*model, "Width=55 Length=91 Front.L1.X=5 Front.L1.Width=50 Back.L1.X=5");
    }

    void aDrawnAreaIsKeptMovedAndShrunk() {
        placeArea(*model, "Front.X=20 Back.X=0 Y=30 Width=100 Length=150");
        model->setValueForKeyPath(TwValue(5), "Data.PaperSize"); // A5: still fits
        compareArea(*model, "Front.X=20 Y=30 Width=100 Length=150");
        model->setValueForKeyPath(TwValue(13), "Data.PaperSize"); // A6, 105 x 148
        compareArea(*model, "Front.X=5 Back.X=0 Y=0 Width=100 Length=148");
        model->setValueForKeyPath(TwValue(1), "Data.PaperSize"); // back on A4 the area stays as it is
        compareArea(*model, "Front.X=5 Y=0 Width=100 Length=148");
    }

    void turningThePaperTurnsAWholePaperArea() {
        model->setValueForKeyPath(TwValue(5), "Data.PaperSize");
        model->setValueForKeyPath(TwValue(true), "Data.Landscape");
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(true));
        compareArea(*model, "Width=210 Length=148");
        model->setValueForKeyPath(TwValue(1), "Data.PaperSize"); // A4 cannot turn: portrait again
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(false));
        compareArea(*model, "Width=210 Length=297");
    }

    void validateAllBringsEveryAreaBack() {
        placeArea(*model, "Front.X=300 Back.L1.Y=296 Front.L1.Width=0.5 Back.L1.X=nan Back.L1.Width=inf");
        model->ValidateAreaRectAll();
        compareArea(*model, "Front.X=0 Width=210 Back.L1.Y=277 Back.L1.Length=20 Front.L1.Width=2 "
                            "Back.L1.X=0 Back.L1.Width=210");
        QCOMPARE(model->valueForKeyPath("temp.Area.Back.L1.Y").doubleValue(), 277.0);
    }

    // Every area value stays a finite number on the paper, whether typed into a working copy or
    // written into the setting by the data source: what is not one is refused and the old value
    // stays; a finite value is fitted.
    void areaValuesStayFinite_data() {
        columns<int, QString, TwValue, QString>("unit", "key", "value", "after");
        const double inf = std::numeric_limits<double>::infinity();
        auto row = [](const char* name, int unit, const char* key, TwValue v, const char* after) {
            QTest::newRow(name) << unit << QString(key) << v << QString(after);
        };
        row("typed X not a number", 1, "temp.Area.Front.X", std::nan(""), "Front.X=0 Width=210");
        row("typed width infinite", 1, "temp.Area.Width", inf, "Width=210");
        row("typed length -infinite", 1, "temp.Area.Length", -inf, "Length=297");
        row("typed inches overflowing", 0, "temp.Area.Front.L1.X", 1e308, "Front.L1.X=10");
        row("setting X not a number", 1, "Data.Area.Measure.Front.X", std::nan(""), "Front.X=0");
        row("setting width text", 1, "Data.Area.Measure.Width", "wide", "Width=210");
        row("setting width 0: the minimum", 1, "Data.Area.Measure.Width", 0, "Width=10");
        row("setting sub-area huge: the paper", 0, "Data.Area.Measure.Front.L1.Width", 1e300,
            "Front.L1.X=0 Front.L1.Width=210");
    }
    void areaValuesStayFinite() {
        auto [unit, key, value, after] =
            fetch<int, QString, TwValue, QString>("unit", "key", "value", "after");
        model->setValueForKeyPath(TwValue(unit), "Data.Area.Unit");
        LogCapture log;
        model->setValueForKeyPath(value, key.toStdString());
        compareArea(*model, after);
        const double perUnit = unit == 0 ? 25.4 : 1.0;
        for (auto& [rest, mm] : areaValues(after))
            QCOMPARE(model->valueForKeyPath("temp.Area." + rest).doubleValue() * perUnit, mm);
        QCOMPARE(log.text().contains("is not a finite number"),
                 !value.isNumber() || !std::isfinite(value.doubleValue() * perUnit));
    }

    void areasTheSettingLacksAreNotCreated() {
        model->setValueForKeyPathWithoutNotification(TwValue(), "Data.Area.Measure.Back.L1");
        model->setValueForKeyPathWithoutNotification(TwValue("wide"), "Data.Area.Measure.Front.L1.Width");
        model->ValidateAreaRectAll();
        QVERIFY(model->valueForKeyPath("Data.Area.Measure.Back.L1").isNull());
        QCOMPARE(model->valueForKeyPath("Data.Area.Measure.Front.L1.Width"), TwValue("wide"));
    }

    void paperFrame() {
        model->setValueForKeyPath(TwValue(0), "Data.Area.Unit");
        model->setPaperFrame({10, 20, 110, 220});
        compareArea(*model, "Front.X=10 Back.X=10 Y=20 Width=100 Length=200");
        QCOMPARE(model->valueForKeyPath("temp.Area.Width").doubleValue(), 100.0 / 25.4);
        TwPaperFrame frame;
        model->getPaperFrame(&frame);
        QCOMPARE(QRectF(QPointF(frame.left, frame.top), QPointF(frame.right, frame.bottom)),
                 QRectF(10, 20, 100, 200));

        model->setPaperFrame({110, 220, 10, 20}); // corners in any order
        compareArea(*model, "Front.X=10 Width=100");
        model->setPaperFrame({0, 0, 500, 500}); // larger than the paper
        compareArea(*model, "Width=210 Length=297");
        model->setPaperFrame({NAN, 0, 10, 10}); // refused
        compareArea(*model, "Width=210 Length=297");
        model->getPaperFrame(nullptr);
    }
};

QTEST_GUILESS_MAIN(TestPaperRules)
#include "tst_paperrules.moc"
