// The sample data source's simulated scan, run as a script runs it (headless): the paper wait
// that ends by the data source's poll, the pages going by, and the double feed whose question the
// scanner's panel answers, going on or stopping by the answer.
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class TestSampleScan : public QObject {
    Q_OBJECT
private slots:
    void aHeadlessScanGoesOnOrStopsByTheAnswer_data() {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("continue") << "continue"
                                  << QStringList{
                                         "scan: paper wait answered 10 (OK)",
                                         "event 0x1001: continue-scan question opens",
                                         "event 0x1002: continue-scan question closed",
                                         "scan: continue-scan question at page 2 answered 15 (Continue)",
                                         "scan: page 4 of 4",
                                         "scan: finished: 4 of 4 pages scanned"};
        QTest::newRow("stop") << "stop"
                              << QStringList{"scan: paper wait answered 10 (OK)", "scan: page 1 of 4",
                                             "scan: continue-scan question at page 2 answered 16 (Stop)",
                                             "scan: finished: 1 of 4 pages scanned"};
    }
    void aHeadlessScanGoesOnOrStopsByTheAnswer() {
        QFETCH(QString, answer);
        QFETCH(QStringList, lines);
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

QTEST_MAIN(TestSampleScan)
#include "tst_samplescan.moc"
