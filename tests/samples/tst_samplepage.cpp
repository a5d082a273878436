// The sample scanner's prescan page as the module receives it: a bitmap of the asked depth, size
// and resolution, the right way up, with ratios that fit the page; and the preview record filled
// for one or both sides, or left empty. And the sample data source's simulated scan, run as a
// script runs it (headless): the paper wait that ends by the data source's poll, the pages going by,
// and the double feed whose question the scanner's panel answers, going on or stopping by the answer.
#include "ImageShared.h"
#include "SamplePage.h"
#include "TestSupport.h"

class TestSamplePage : public QObject {
    Q_OBJECT

private slots:
    void aPageIsABitmapOfTheAskedKind_data() {
        columns<int, bool, int>("type", "back", "bits");
        row("black and white front", int(SampleImageType::Binary), false, 1);
        row("grayscale front", int(SampleImageType::Gray), false, 8);
        row("colour front", int(SampleImageType::Color), false, 24);
        row("colour back", int(SampleImageType::Color), true, 24);
    }
    void aPageIsABitmapOfTheAskedKind() {
        auto [type, back, bits] = fetch<int, bool, int>("type", "back", "bits");
        const SampleScanSettings settings{148.0, 210.0, 100, SampleImageType(type), false};
        const SamplePage page = RenderSamplePage(settings, back ? SampleSide::Back : SampleSide::Front);
        auto layout = TwDibLayoutOf(page.dib, page.length, "test");
        QVERIFY(layout);
        QCOMPARE(int(layout->bitCount), bits);
        QCOMPARE(layout->totalSize(), std::uint64_t(page.length));
        auto size = GetDIBSizeMillimetres(page.dib, page.length);
        QVERIFY(size && std::abs(size->first - 148.0) < 0.2 && std::abs(size->second - 210.0) < 0.2);

        // Mostly paper, some ink; colour only where the page has some.
        QVERIFY(page.whiteRatio > 50 && page.blackRatio > 1 && page.whiteRatio + page.blackRatio <= 100);
        QCOMPARE(page.colorRatio > 10, bits == 24 && !back);
        QCOMPARE(page.colorRatio == 0, bits != 24 || back);

        // The top rows are the top of the page: the margin is paper, the first text line ink.
        QTemporaryDir dir;
        const QString path = dir.filePath("page.bmp");
        SaveBMP(page.dib, page.length, QFile::encodeName(path).constData(), 0);
        std::free(page.dib);
        const QImage image(path, "BMP");
        QCOMPARE(image.size(), QSize(layout->width, layout->height));
        QCOMPARE(image.pixel(2, 2), qRgb(255, 255, 255));
        const int textX = int(std::lround(layout->width * 0.08)) + 1;
        const int textY = int(std::lround(layout->height * 0.06)) + 1;
        QVERIFY(qGray(image.pixel(textX, textY)) < 64);
        QCOMPARE(qGray(image.pixel(textX, layout->height - 1 - textY)), 255);
    }

    // Both sides for duplex, the front alone otherwise; nothing half-filled when a side cannot be made.
    void thePreviewRecordHoldsTheScannedSides() {
        TwPreviewRecord record{};
        SampleScanSettings settings{54.0, 86.0, 100, SampleImageType::Gray, true};
        QVERIFY(RenderSamplePrescan(settings, &record) && record.front.pDIB && record.back.pDIB);
        QCOMPARE(GetDIBSize(record.back.pDIB, record.back.imageLength), record.back.imageLength);
        std::free(record.front.pDIB);
        std::free(record.back.pDIB);

        settings.duplex = false;
        QVERIFY(RenderSamplePrescan(settings, &record));
        QVERIFY(record.front.pDIB && !record.back.pDIB && record.back.imageLength == 0);
        std::free(record.front.pDIB);

        settings.lengthMm = 20000; // beyond 65535 pixels
        QVERIFY(!RenderSamplePrescan(settings, &record));
        QVERIFY(!record.front.pDIB && !record.back.pDIB && record.front.imageLength == 0);
    }

    // ---- The simulated scan, run headless ----

    void aHeadlessScanGoesOnOrStopsByTheAnswer_data() {
        columns<QString, QStringList>("answer", "lines");
        row("continue", "continue",
            QStringList{"scan: paper wait answered 10 (OK)", "event 0x1001: continue-scan question opens",
                        "event 0x1002: continue-scan question closed",
                        "scan: continue-scan question at page 2 answered 15 (Continue)", "scan: page 4 of 4",
                        "scan: finished: 4 of 4 pages scanned"});
        row("stop", "stop",
            QStringList{"scan: paper wait answered 10 (OK)", "scan: page 1 of 4",
                        "scan: continue-scan question at page 2 answered 16 (Stop)",
                        "scan: finished: 1 of 4 pages scanned"});
    }
    void aHeadlessScanGoesOnOrStopsByTheAnswer() {
        auto [answer, lines] = fetch<QString, QStringList>("answer", "lines");
        QProcess sample;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        // A home and preferences of the run's own, never the user's.
        QTemporaryDir home;
        env.insert("HOME", home.path());
        env.insert("XDG_CONFIG_HOME", home.path());
        sample.setProcessEnvironment(env);
        sample.start(QStringLiteral(SAMPLEDS_PATH),
                     {"--headless", "--scan", "--scan-pages", "4", "--double-feed-at", "2", "--paper-wait",
                      "0.3", "--page-time", "20", "--auto-answer", answer, "--answer-after", "0"});
        QVERIFY(sample.waitForFinished(60000));
        const QString out = QString::fromUtf8(sample.readAllStandardOutput());
        QCOMPARE(sample.exitCode(), 0);
        // In this order, each once.
        qsizetype from = 0;
        for (const QString& line : lines) {
            const qsizetype at = out.indexOf(line, from);
            QVERIFY2(at >= 0, qPrintable(line + QStringLiteral("\nnot after position ") +
                                         QString::number(from) + QStringLiteral(" in:\n") + out));
            from = at + line.size();
        }
        QCOMPARE(out.count("event 0x1002"), 1);
    }
};

QTEST_GUILESS_MAIN(TestSamplePage)
#include "tst_samplepage.moc"
