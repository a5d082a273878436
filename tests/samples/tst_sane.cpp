// The sample data source on a real SANE stack: libsane's test backend, opened and read through
// libsane itself. What the device offers becomes the dialog's choices; prescans are bitmaps of the
// page at the prescan resolution; scans (run as sampleds runs them) write their pages, stop on a
// jam or on Stop, and an unknown device is refused.
#include "ImageShared.h"
#include "SaneBitmaps.h"
#include "SaneCapabilities.h"
#include "SaneScanner.h"
#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <cstring>

namespace {
const std::string kConfigDir = std::string(SAMPLE_BUNDLE_DIR) + "/Contents/Resources/sane";

std::unique_ptr<SaneScanner> openTest(const std::vector<std::pair<std::string, std::string>>& options = {}) {
    std::string error;
    auto scanner = SaneScanner::open("test", kConfigDir, options, &error);
    if (!scanner)
        qWarning("%s", error.c_str());
    return scanner;
}

std::vector<int> valuesOf(const TwValue& list) {
    std::vector<int> values;
    if (auto entries = list.list())
        for (const TwValue& entry : *entries)
            values.push_back(entry.dict()->value("value").intValue());
    return values;
}

TwValue at(const TwValue& root, std::initializer_list<const char*> path) {
    TwValue v = root;
    for (const char* key : path)
        v = v.dict() ? v.dict()->value(key) : TwValue();
    return v;
}

int pixelsFor(double mm, int dpi) {
    return int(mm / 25.4 * dpi);
}

using Run = BuiltProgramRun;

// sampleds with its own home, as a data source is started.
Run sampleds(const QStringList& arguments, const QString& home) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("HOME", home);
    env.insert("XDG_CONFIG_HOME", home + "/.config");
    env.insert("QT_QPA_PLATFORM", "offscreen");
    return runBuiltProgram(QStringLiteral(SAMPLEDS_PATH), arguments, env.toStringList(), 120000);
}

int pdfPages(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    return int(QString::fromLatin1(file.readAll()).count(QRegularExpression("/Type\\s*/Page[^s]")));
}
} // namespace

class TestSane : public QObject {
    Q_OBJECT
private slots:
    // ---- What the device offers ----

    void theTestDeviceBecomesTheDialogsChoices() {
        auto scanner = openTest();
        QVERIFY(scanner);
        const SaneTraits& t = scanner->traits();
        QCOMPARE(t.resolutions, (std::vector<int>{50, 75, 100, 150, 200, 240, 300, 400, 600, 1200}));
        QCOMPARE(t.prescanResolution, 100);
        // Gray and Color, and line art as Gray at 1 bit.
        QCOMPARE(t.modes.size(), std::size_t(3));
        QCOMPARE(t.modes[0].deviceMode, std::string("Gray"));
        QCOMPARE(t.modes[0].depth, 1);
        QCOMPARE(t.modes[2].deviceMode, std::string("Color"));
        QCOMPARE(t.sources.size(), std::size_t(2));
        QCOMPARE(t.sources[0].paperSource, kSourceFlatbed);
        QCOMPARE(t.sources[1].paperSource, kSourceFeeder);
        QCOMPARE(t.sources[1].maxWidthMm, 200.0);
        QCOMPARE(t.sources[1].maxLengthMm, 200.0);
        // Learning each source's area leaves the device's own source selected.
        QCOMPARE(scanner->device().text("source").value_or(""), std::string("Flatbed"));

        const TwValue definition =
            TwPlistReadFile(std::string(SAMPLE_BUNDLE_DIR) + "/Contents/Resources/ModelDef.plist");
        const TwValue capabilities =
            TwPlistReadFile(std::string(SAMPLE_BUNDLE_DIR) + "/Contents/Resources/Capabilities.plist");
        const SaneMapping m = MapSaneTraits(t, definition, capabilities);
        QVERIFY2(m.refusal.empty(), m.refusal.c_str());
        QCOMPARE(valuesOf(at(m.modelDef, {"UIOptions", "Resolution"})), t.resolutions);
        QCOMPARE(valuesOf(at(m.modelDef, {"UIOptions", "ImageType"})), (std::vector<int>{0, 1, 2}));
        QCOMPARE(valuesOf(at(m.modelDef, {"UIOptions", "PaperSource"})), (std::vector<int>{2, 0}));
        // Papers that fit 200 x 200 mm, after the whole area; A4 and A5 do not.
        const std::vector<int> papers = valuesOf(at(m.modelDef, {"UIOptions", "PaperSize"}));
        QCOMPARE(papers.front(), kWholeAreaPaper);
        for (int paper : {13, 39, 53})
            QVERIFY(std::find(papers.begin(), papers.end(), paper) != papers.end());
        for (int paper : {1, 5, 3})
            QVERIFY(std::find(papers.begin(), papers.end(), paper) == papers.end());
        QCOMPARE(at(m.modelDef, {"FeederADF", "MaxWidth"}).doubleValue(), 200 / 25.4);
        QCOMPARE(at(m.modelDef, {"FeederFlatbed", "MaxHeight"}).doubleValue(), 200 / 25.4);
        QCOMPARE(at(m.capabilities, {"ScanInfo", "FlatbedConnected"}).boolValue(), true);
        QCOMPARE(at(m.capabilities, {"Data", "PaperSize"}).intValue(), kWholeAreaPaper);
        QCOMPARE(at(m.capabilities, {"Data", "Area", "Measure", "Width"}).doubleValue(), 200.0);
        QCOMPARE(at(m.capabilities, {"Default", "Resolution"}).intValue(), 300);
        for (const char* control : {"PaperSource", "ImageType", "Resolution"})
            QCOMPARE(at(m.modelDef, {"UIControl", "Basic", control, "enabled"}).boolValue(), true);
    }

    void resolutionChoices_data() {
        QTest::addColumn<QList<double>>("list");
        QTest::addColumn<QList<double>>("range"); // min, max, quant
        QTest::addColumn<QList<int>>("choices");
        QTest::addColumn<int>("prescan");
        QTest::newRow("a range of one value")
            << QList<double>{} << QList<double>{300, 300, 0} << QList<int>{300} << 300;
        QTest::newRow("usual steps of a range") << QList<double>{} << QList<double>{75, 600, 25}
                                                << QList<int>{75, 100, 150, 200, 300, 400, 600} << 100;
        QTest::newRow("steps that miss 100: the highest below")
            << QList<double>{} << QList<double>{60, 600, 30} << QList<int>{150, 240, 300, 600} << 90;
        QTest::newRow("a range above 100: its lowest")
            << QList<double>{} << QList<double>{150, 1200, 0}
            << QList<int>{150, 200, 240, 300, 400, 600, 1200} << 150;
        QTest::newRow("no usual step: the ends")
            << QList<double>{} << QList<double>{101, 149, 1} << QList<int>{101, 149} << 101;
        QTest::newRow("a list") << QList<double>{600, 150, 300} << QList<double>{}
                                << QList<int>{150, 300, 600} << 150;
        QTest::newRow("a list with a prescan step")
            << QList<double>{50, 75, 200} << QList<double>{} << QList<int>{50, 75, 200} << 75;
    }
    void resolutionChoices() {
        QFETCH(QList<double>, list);
        QFETCH(QList<double>, range);
        QFETCH(QList<int>, choices);
        QFETCH(int, prescan);
        SaneConstraint c;
        c.numbers.assign(list.begin(), list.end());
        if (!range.isEmpty()) {
            c.min = range[0];
            c.max = range[1];
            c.quant = range[2];
        }
        const std::vector<int> got = SaneResolutionChoices(c);
        QCOMPARE(QList<int>(got.begin(), got.end()), choices);
        QCOMPARE(SanePrescanResolution(c), prescan);
    }

    void namesOfModesAndSources_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("imageType"); // -1: none
        QTest::addColumn<int>("paperSource");
        QTest::newRow("Lineart") << "Lineart" << 0 << -1;
        QTest::newRow("Halftone") << "Halftone" << 0 << -1;
        QTest::newRow("Gray") << "Gray" << 1 << -1;
        QTest::newRow("Grayscale") << "Grayscale" << 1 << -1;
        QTest::newRow("Color") << "Color" << 2 << -1;
        QTest::newRow("Flatbed") << "Flatbed" << -1 << kSourceFlatbed;
        QTest::newRow("ADF") << "ADF" << -1 << kSourceFeeder;
        QTest::newRow("Automatic Document Feeder") << "Automatic Document Feeder" << -1 << kSourceFeeder;
        QTest::newRow("ADF Duplex") << "ADF Duplex" << -1 << kSourceDuplex;
        QTest::newRow("Transparency Unit") << "Transparency Unit" << -1 << -1;
    }
    void namesOfModesAndSources() {
        QFETCH(QString, name);
        QFETCH(int, imageType);
        QFETCH(int, paperSource);
        QCOMPARE(SaneImageTypeOfMode(name.toStdString()).value_or(-1), imageType);
        QCOMPARE(SanePaperSourceOf(name.toStdString()).value_or(-1), paperSource);
    }

    // Devices with odd options get a dialog with what can be offered, or a clear refusal.
    void oddDevices_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("refusal"); // empty: offered
        QTest::newRow("one fixed resolution, no mode option, one unnamed source") << 0 << "";
        QTest::newRow("a scan area of zero width") << 1 << "the device's scan area is empty (0 x 297 mm)";
        QTest::newRow("no mode this data source reads") << 2 << "the device offers no image mode";
        QTest::newRow("no resolution") << 3 << "the device offers no resolution";
        QTest::newRow("no source") << 4 << "the device offers no paper source";
    }
    void oddDevices() {
        QFETCH(int, kind);
        QFETCH(QString, refusal);
        SaneTraits t;
        t.productName = "odd";
        t.resolutions = {300};
        t.resolution = 300;
        t.modes = {{2, "", 0}};
        t.sources = {{kSourceFlatbed, "", 216, 297}};
        if (kind == 1)
            t.sources[0].maxWidthMm = 0;
        if (kind == 2)
            t.modes.clear();
        if (kind == 3)
            t.resolutions.clear();
        if (kind == 4)
            t.sources.clear();
        const SaneMapping m = MapSaneTraits(t, TwValue::dictionary(), TwValue::dictionary());
        QVERIFY2(QString::fromStdString(m.refusal).startsWith(refusal), m.refusal.c_str());
        if (!refusal.isEmpty())
            return;
        QCOMPARE(valuesOf(at(m.modelDef, {"UIOptions", "Resolution"})), std::vector<int>{300});
        QCOMPARE(valuesOf(at(m.modelDef, {"UIOptions", "ImageType"})), std::vector<int>{2});
        // Nothing to choose: the choices are shown but cannot be changed.
        for (const char* control : {"PaperSource", "ImageType", "Resolution"})
            QCOMPARE(at(m.modelDef, {"UIControl", "Basic", control, "enabled"}).boolValue(), false);
        QCOMPARE(at(m.capabilities, {"Data", "ImageType"}).intValue(), 2);
        QCOMPARE(at(m.capabilities, {"Data", "PaperSource"}).intValue(), kSourceFlatbed);
        QCOMPARE(at(m.capabilities, {"ScanInfo", "FlatbedConnected"}).boolValue(), true);
    }

    // ---- Prescans ----

    void aPrescanIsABitmapOfThePage_data() {
        QTest::addColumn<int>("imageType");
        QTest::addColumn<QString>("picture");
        QTest::addColumn<double>("widthMm");
        QTest::addColumn<double>("lengthMm");
        QTest::addColumn<int>("bitCount");
        QTest::addColumn<double>("black");
        QTest::addColumn<double>("white");
        QTest::newRow("line art, black") << 0 << "Solid black" << 200.0 << 200.0 << 1 << 100.0 << 0.0;
        QTest::newRow("line art, white") << 0 << "Solid white" << 105.0 << 148.0 << 1 << 0.0 << 100.0;
        QTest::newRow("grey, white") << 1 << "Solid white" << 200.0 << 200.0 << 8 << 0.0 << 100.0;
        QTest::newRow("colour, black") << 2 << "Solid black" << 55.0 << 91.0 << 24 << 100.0 << 0.0;
    }
    void aPrescanIsABitmapOfThePage() {
        QFETCH(int, imageType);
        QFETCH(QString, picture);
        QFETCH(double, widthMm);
        QFETCH(double, lengthMm);
        QFETCH(int, bitCount);
        QFETCH(double, black);
        QFETCH(double, white);
        auto scanner = openTest({{"test-picture", picture.toStdString()}});
        QVERIFY(scanner);
        SaneScanSettings s;
        s.dpi = scanner->traits().prescanResolution;
        s.mode = scanner->modeFor(imageType);
        s.source = scanner->sourceFor(kSourceFlatbed);
        s.widthMm = widthMm;
        s.lengthMm = lengthMm;
        TwPreviewRecord record{};
        std::string error;
        QVERIFY2(scanner->prescan(s, &record, &error), error.c_str());
        QVERIFY(!record.back.pDIB);
        TwOwnedDIB front(record.front.pDIB, record.front.imageLength);
        const auto layout = TwDibLayoutOf(front.data(), front.length(), "test");
        QVERIFY(layout);
        QCOMPARE(int(layout->bitCount), bitCount);
        QVERIFY(std::abs(layout->width - pixelsFor(widthMm, 100)) <= 1);
        QVERIFY(std::abs(layout->height - pixelsFor(lengthMm, 100)) <= 1);
        // The record is packed: its ratios are read out before they are compared.
        const double blackRatio = record.front.blackRatio, whiteRatio = record.front.whiteRatio;
        QCOMPARE(blackRatio, black);
        QCOMPARE(whiteRatio, white);
    }

    void colourComesOutAsColour() {
        auto scanner = openTest({{"test-picture", "Color pattern"}});
        QVERIFY(scanner);
        SaneScanSettings s;
        s.dpi = 100;
        s.mode = scanner->modeFor(2);
        s.widthMm = 200;
        s.lengthMm = 20;
        TwPreviewRecord record{};
        QVERIFY(scanner->prescan(s, &record, nullptr));
        TwOwnedDIB front(record.front.pDIB, record.front.imageLength);
        QVERIFY(record.front.colorRatio > 30);
        // The pattern's top band is red: a bitmap holds it as blue, green, red.
        const auto layout = TwDibLayoutOf(front.data(), front.length(), "test");
        QVERIFY(layout);
        const auto* rows = FindDIBBits(front.data(), front.length());
        int redOverBlue = -255;
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < layout->width; ++x) {
                const auto* p = rows + std::size_t(y) * layout->stride + std::size_t(x) * 3;
                redOverBlue = std::max(redOverBlue, int(p[2]) - int(p[0]));
            }
        QVERIFY2(redOverBlue > 128, qPrintable(QString::number(redOverBlue)));
    }

    void aHandScannersFrameOfUnknownLengthIsRead() {
        auto scanner = openTest({{"hand-scanner", "yes"}});
        QVERIFY(scanner);
        // Its fixed width of 11 cm, without geometry options; the length is not known beforehand.
        QVERIFY(!scanner->traits().geometry);
        QVERIFY(std::abs(scanner->traits().sources.front().maxWidthMm - 110) < 1);
        SaneScanSettings s;
        s.dpi = 100;
        s.mode = scanner->modeFor(1);
        TwPreviewRecord record{};
        std::string error;
        QVERIFY2(scanner->prescan(s, &record, &error), error.c_str());
        TwOwnedDIB front(record.front.pDIB, record.front.imageLength);
        const auto layout = TwDibLayoutOf(front.data(), front.length(), "test");
        QVERIFY(layout);
        QVERIFY(std::abs(layout->width - pixelsFor(110, 100)) <= 1);
        QVERIFY(layout->height > 0);
    }

    void sixteenBitSamplesKeepTheirHighByte() {
        SaneImage image;
        image.format = SaneFormat::Gray;
        image.depth = 16;
        image.width = 2;
        image.height = 1;
        image.bytesPerLine = 4;
        const std::uint16_t samples[2] = {0x1234, 0xFF00};
        image.bytes.resize(4);
        std::memcpy(image.bytes.data(), samples, 4);
        SamplePage page = SaneBitmapOf(image, 100);
        TwOwnedDIB dib(page.dib, page.length);
        const auto* row = FindDIBBits(dib.data(), dib.length());
        QVERIFY(row);
        QCOMPARE(int(row[0]), 0x12);
        QCOMPARE(int(row[1]), 0xFF);
        // Rows shorter than the width claims are refused, not read past.
        image.bytes.resize(3);
        QVERIFY(!SaneBitmapOf(image, 100).dib);
    }

    // ---- Scans, as sampleds runs them ----

    void aThreePageFeederScanWritesThreePages() {
        QTemporaryDir home, output;
        const Run run = sampleds({"--device", "test", "--set", "Data.Resolution=50", "--set",
                                  "Data.ImageType=1", "--scan-pages", "3", "--scan-after", "0.3",
                                  "--close-after", "0.5", "--output", output.path()},
                                 home.path());
        QVERIFY2(run.exitCode == 0, qPrintable(run.out + run.err));
        QVERIFY2(run.out.contains("source Automatic Document Feeder"), qPrintable(run.out));
        const QStringList pngs = QDir(output.path()).entryList({"*.png"}, QDir::Files, QDir::Name);
        QCOMPARE(pngs, (QStringList{"page-001-front.png", "page-002-front.png", "page-003-front.png"}));
        for (const QString& png : pngs) {
            const QImage page(output.filePath(png));
            QVERIFY(std::abs(page.width() - pixelsFor(200, 50)) <= 1);
            QVERIFY(std::abs(page.height() - pixelsFor(200, 50)) <= 1);
            QVERIFY(page.isGrayscale());
        }
        QCOMPARE(pdfPages(output.filePath("scan.pdf")), 3);
    }

    void theFeederRunningEmptyEndsTheScan() {
        QTemporaryDir home, output;
        const Run run =
            sampleds({"--device", "test", "--set", "Data.Resolution=50", "--set", "Data.ImageType=0",
                      "--scan-after", "0.3", "--close-after", "0.5", "--output", output.path()},
                     home.path());
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.out.contains("scan: the feeder is empty after page 10"), qPrintable(run.out));
        QCOMPARE(QDir(output.path()).entryList({"*.png"}, QDir::Files).size(), 10);
        QCOMPARE(pdfPages(output.filePath("scan.pdf")), 10);
    }

    void aFailedReadShowsTheMessageBoxAndEndsTheScan_data() {
        QTest::addColumn<QString>("status");
        QTest::addColumn<QString>("message");
        QTest::newRow("jam") << "SANE_STATUS_JAMMED"
                             << "The paper is jammed in the scanner.";
        QTest::newRow("cover open") << "SANE_STATUS_COVER_OPEN"
                                    << "The scanner's cover is open.";
        QTest::newRow("I/O error") << "SANE_STATUS_IO_ERROR"
                                   << "The scanner reported an error";
    }
    void aFailedReadShowsTheMessageBoxAndEndsTheScan() {
        QFETCH(QString, status);
        QFETCH(QString, message);
        QTemporaryDir home, output;
        const Run run =
            sampleds({"--device", "test", "--device-option", "read-return-value=" + status, "--set",
                      "Data.Resolution=50", "--scan-after", "0.3", "--close-after", "0.5", "--auto-answer",
                      "continue", "--answer-after", "0.2", "--output", output.path()},
                     home.path());
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.out.contains("scan: message box: " + message), qPrintable(run.out));
        QVERIFY(run.out.contains("event 0x2002: scanner error box poll"));
        QVERIFY(run.out.contains("scan: message box answered 10"));
        QVERIFY(run.out.contains("scan: finished: 0 pages"));
        QVERIFY(QDir(output.path()).entryList({"*.png"}, QDir::Files).isEmpty());
    }

    void noPaperAtTheStartIsThePolledPaperBox() {
        QTemporaryDir home, output;
        // The device finds no documents when it reads; each poll of the box starts a frame again.
        const Run run = sampleds({"--device", "test", "--device-option",
                                  "read-return-value=SANE_STATUS_NO_DOCS", "--set", "Data.Resolution=50",
                                  "--scan-after", "0.3", "--close-after", "0.5", "--output", output.path()},
                                 home.path());
        QCOMPARE(run.exitCode, 0);
        const QStringList lines{"scan: no paper in the feeder: waiting (a polled message box)",
                                "event 0x2001: paper poll", "scan: paper wait answered 10",
                                "scan: no paper: nothing scanned", "scan: finished: 0 pages"};
        qsizetype from = 0;
        for (const QString& line : lines) {
            const qsizetype found = run.out.indexOf(line, from);
            QVERIFY2(found >= 0, qPrintable(line + "\nnot found in order in:\n" + run.out));
            from = found + line.size();
        }
    }

    void stopDuringAPageCancelsIt() {
        QTemporaryDir home, output;
        // A slow page (a pause after every buffer), so that Stop comes while it is read.
        const Run run = sampleds({"--device", "test", "--device-option", "read-delay=yes", "--device-option",
                                  "read-delay-duration=100000", "--set", "Data.Resolution=600", "--set",
                                  "Data.ImageType=2", "--scan-after", "0.3", "--stop-after", "1",
                                  "--close-after", "0.5", "--output", output.path()},
                                 home.path());
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.out.contains("scan: cancelled with Stop during page 1 front"), qPrintable(run.out));
        QVERIFY(run.out.contains("scan: finished: 0 pages"));
        QVERIFY(QDir(output.path()).entryList({"*.png"}, QDir::Files).isEmpty());
    }

    void theModuleOffersWhatTheDeviceHas() {
        QTemporaryDir home;
        const Run run = sampleds({"--device", "test", "--headless"}, home.path());
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.out.contains("ScanInfo.ProductName = \"Noname frontend-tester\""), qPrintable(run.out));
        QVERIFY(run.out.contains("paper sources offered: (2, 0)"));
        QVERIFY(run.out.contains("Data.PaperSize = 1000"));
    }

    void devicesAreListedAndAnUnknownOneIsRefused() {
        QTemporaryDir home;
        const Run list = sampleds({"--list-devices"}, home.path());
        QCOMPARE(list.exitCode, 0);
        QVERIFY2(list.out.contains("test:0\tNoname frontend-tester"), qPrintable(list.out));
        const Run unknown = sampleds({"--device", "no-such-scanner", "--headless"}, home.path());
        QCOMPARE(unknown.exitCode, 2);
        QVERIFY2(unknown.err.contains("cannot open the SANE device \"no-such-scanner\""),
                 qPrintable(unknown.err));
        const Run badOption =
            sampleds({"--device", "test", "--device-option", "no-such-option=1", "--headless"}, home.path());
        QCOMPARE(badOption.exitCode, 2);
        QVERIFY2(badOption.err.contains("option no-such-option: the device has no such option"),
                 qPrintable(badOption.err));
    }
};

QTEST_GUILESS_MAIN(TestSane)
#include "tst_sane.moc"
