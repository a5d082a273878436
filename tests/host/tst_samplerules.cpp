// The sample scanner driven through the facade: the model observes itself once the data is set,
// and every edit re-evaluates the sample's rules and runs the value reactions.
#include "SampleFixture.h"

class TestSampleRules : public QObject {
    Q_OBJECT
    SampleScanner sample;

private slots:
    void initTestCase() { QVERIFY2(sample.read(), sample.error.c_str()); }
    void init() { sample.reset(); }

    void everyRuleHasAValueOnceLoaded() {
        auto ui = sample.load();
        for (auto& [target, rule] : *sample.def.UIEnable().dict()) {
            TwValue value = ui->dataForKeyPath(target);
            QVERIFY2(value.isBoolean(), target.c_str());
        }
        // One-sided paper, and A4 too long to turn.
        QCOMPARE(valuesAt(*ui->model(), {"enable.Duplex", "enable.Landscape", "enable.Deskew"}),
                 TwValue::array({false, false, true}));
        QCOMPARE(codes(ui->dataForKeyPath("content.RateImageAvail")), (std::vector<int>{0, 1, 2}));
        QCOMPARE(ui->dataForKeyPath("temp.GrayColor"), TwValue("Color")); // the sample's own text
    }

    void aResolutionEditRunsRulesAndReactions() {
        auto ui = sample.load();
        set(*ui, {{"Data.ImageType", TwValue(22)},
                  {"profiles.temporary", TwValue("Untitled")},
                  {"profiles.name", TwValue("Mine")}});
        QCOMPARE(ui->dataForKeyPath("enable.AutoDistinctionResolution"), TwValue(true));
        set(*ui, "Data.Resolution", TwValue(150));
        QCOMPARE(ui->dataForKeyPath("enable.AutoDistinctionResolution"), TwValue(false));
        QCOMPARE(codes(ui->dataForKeyPath("content.RateImageAvail")), std::vector<int>{0});
        QCOMPARE(valuesAt(*ui->model(), {"temp.GrayDPI", "profiles.name", "temp.GrayColor"}),
                 TwValue::array({150, "Untitled", "Gray"}));
    }

    void paperEditsReachRulesAndArea() {
        auto ui = sample.load();
        QCOMPARE(ui->dataForKeyPath("enable.Layout.Rotate"), TwValue(true));
        set(*ui, {{"Data.PaperSize", TwValue(5)}, {"Data.Landscape", TwValue(true)}});
        QCOMPARE(valuesAt(*ui->model(), {"enable.Layout.Rotate", "Data.Area.Measure.Width"}),
                 TwValue::array({false, 210.0}));
        set(*ui, "Data.PaperSize", TwValue(4)); // Legal cannot turn
        QCOMPARE(
            valuesAt(*ui->model(), {"enable.Landscape", "enable.Layout.Rotate", "Data.Area.Measure.Length"}),
            TwValue::array({false, true, 355.6}));
        // The feeder in duplex: the back side is offered and both sides are selected.
        set(*ui, "Data.PaperSource", TwValue(1));
        QCOMPARE(ui->dataForKeyPath("enable.Area.Back"), TwValue(true));
        for (const char* side : {"temp.BinaryImageSide", "temp.GrayImageSide", "temp.ColorImageSide"})
            QCOMPARE(ui->dataForKeyPath(side), TwValue(2));
        set(*ui, "temp.GrayImageSide", TwValue(1));
        QCOMPARE(ui->dataForKeyPath("temp.GrayImageSideText"), TwValue("Back"));
        // The flatbed switches feed pages off.
        set(*ui, "Data.Feed.FeedPageMode", TwValue(1));
        QCOMPARE(ui->dataForKeyPath("enable.Feed.FeedPage"), TwValue(true));
        set(*ui, "Data.PaperSource", TwValue(2));
        QCOMPARE(valuesAt(*ui->model(), {"Data.Feed.FeedPageMode", "enable.Feed.FeedPage"}),
                 TwValue::array({0, false}));
    }

    // The default setting is applied before the model observes itself, so the working copies
    // exist and are observed from the start.
    void workingValuesMirrorIntoTheSettingOnceLoaded() {
        auto ui = sample.load();
        set(*ui, "temp.BinaryImage.Brightness", TwValue(90));
        QCOMPARE(ui->dataForKeyPath("Data.BinaryImage.Front.Brightness").intValue(), 90);
        set(*ui, "Data.PaperSource", TwValue(1)); // duplex: both sides are edited together
        set(*ui, "temp.ColorImage.Contrast", TwValue(70));
        QCOMPARE(valuesAt(*ui->model(), {"Data.ColorImage.Front.Contrast", "Data.ColorImage.Back.Contrast"}),
                 TwValue::array({70, 70}));
    }

    void replacingOrClosingTheModelEndsItsObservation() {
        auto ui = sample.load();
        std::shared_ptr<TwainDialogData> first = ui->model();
        ui->setDataWithDictionary(sample.capabilities.deepCopy(), 0);
        QCOMPARE(first->observationCount(first.get()), std::size_t(0));
        std::shared_ptr<TwainDialogData> second = ui->model();
        QVERIFY(second != first && second->observationCount(second.get()) > 0);
        ui->closeDS();
        QCOMPARE(second->observationCount(second.get()), std::size_t(0));

        auto other = sample.load();
        std::shared_ptr<TwainDialogData> third = other->model();
        other.reset();
        QCOMPARE(third->observationCount(third.get()), std::size_t(0));
    }
};

QTEST_GUILESS_MAIN(TestSampleRules)
#include "tst_samplerules.moc"
