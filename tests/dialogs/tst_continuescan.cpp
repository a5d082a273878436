// The data source's questions while it scans: the continue-scan question with the problem page
// beside it, polled message boxes, and all of them with the progress panel asked from many threads
// at once while the GUI thread runs its loop.
#include "DialogTestSupport.h"
#include "OrvaDebug.h"
#include "SamplePage.h"
#include "SampleTestSupport.h"
#include "TwDlgScanning.h"
#include "TwMessageBox.h"
#include "TwainDialogController.h"

#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <thread>

namespace {

// A 4 x 4 colour bitmap, made with malloc as a data source does: the top row red, the rest white.
void* redTopBitmap(std::uint32_t* length) {
    const std::int32_t side = 4;
    const std::uint32_t rowBytes = 12;
    *length = 40 + rowBytes * side;
    auto* p = static_cast<unsigned char*>(std::calloc(1, *length));
    const std::uint32_t headerSize = 40;
    const std::uint16_t planes = 1, bits = 24;
    std::memcpy(p, &headerSize, 4);
    std::memcpy(p + 4, &side, 4);
    std::memcpy(p + 8, &side, 4);
    std::memcpy(p + 12, &planes, 2);
    std::memcpy(p + 14, &bits, 2);
    std::memset(p + 40, 0xff, rowBytes * side);
    for (int x = 0; x < side; ++x) {
        p[40 + 3 * x] = 0;     // blue
        p[40 + 3 * x + 1] = 0; // green
    }
    return p;
}

struct Seen {
    std::uint16_t event;
    void* record;
    bool withImage;
};

// What the data source of one question does and sees; used on the GUI thread only.
struct QuestionSource {
    std::vector<Seen> seen;
    std::deque<std::uint16_t> pollAnswers; // then "keep waiting"
    enum { Page, NoPage, BrokenPage, SamplePage } page = Page;
} g_source;

std::uint16_t questionCallback(std::uint16_t event, void* data) {
    auto* record = static_cast<TwPreviewRecord*>(data);
    if (event == kVmxEventContinueScanOpen && record) {
        if (g_source.page == QuestionSource::Page) {
            record->front.pDIB = redTopBitmap(&record->front.imageLength);
        } else if (g_source.page == QuestionSource::SamplePage) {
            // The sample scanner's A5 page, as a data source hands over the page it stopped at.
            const auto page =
                RenderSamplePage({148.0, 210.0, 60, SampleImageType::Color, false}, SampleSide::Front);
            record->front.pDIB = page.dib;
            record->front.imageLength = page.length;
        } else if (g_source.page == QuestionSource::BrokenPage) {
            record->front.pDIB = std::malloc(8); // too short to be a bitmap
            record->front.imageLength = 8;
        }
    }
    g_source.seen.push_back({event, data, record && record->front.pDIB});
    if (event == kVmxEventContinueScanPoll && !g_source.pollAnswers.empty()) {
        const std::uint16_t answer = g_source.pollAnswers.front();
        g_source.pollAnswers.pop_front();
        return answer;
    }
    return event == kVmxEventContinueScanPoll || event == 0x4242 ? kVmxResultContinue : 0;
}

// The many-threads case: counts, from whatever thread the module calls.
std::atomic_int g_opened{0}, g_closedQuestions{0};
std::uint16_t busyCallback(std::uint16_t event, void* data) {
    auto* record = static_cast<TwPreviewRecord*>(data);
    if (event == kVmxEventContinueScanOpen && record) {
        record->front.pDIB = redTopBitmap(&record->front.imageLength);
        ++g_opened;
    } else if (event == kVmxEventContinueScanClose) {
        ++g_closedQuestions;
    }
    if (event == 0x4243)
        return 1; // ends its box at the first poll, as the first button
    return event == 0x4244 || event == kVmxEventContinueScanPoll ? kVmxResultContinue : 0;
}

QList<std::uint16_t> events() {
    QList<std::uint16_t> codes;
    for (auto& s : g_source.seen)
        codes << s.event;
    return codes;
}

} // namespace

class TestContinueScan : public QObject {
    Q_OBJECT
    SampleScanner sample;

    std::unique_ptr<VmxUIControllerImpl> loaded(VmxUICallback callback = &questionCallback) {
        auto ui = sample.load(callback);
        ui->setContinueScanPollInterval(20);
        return ui;
    }

private slots:
    void initTestCase() {
        std::string error;
        QVERIFY2(sample.read(&error), error.c_str());
    }
    void init() {
        g_source = QuestionSource{};
        SampleScanner::forgetPreferences();
    }

    // Every way the question ends: its answer, the data source told of the end exactly once and
    // last, the page beside the question the right way up while it is open, and the page's
    // memory freed before the end is told.
    void everyWayTheQuestionEnds_data() {
        QTest::addColumn<QString>("press"); // a button, "Escape", "close", or "" to let the polls decide
        QTest::addColumn<QList<int>>("polls");
        QTest::addColumn<int>("answer");
        QTest::newRow("Continue pressed") << "Continue" << QList<int>{} << 15;
        QTest::newRow("Stop pressed") << "Stop" << QList<int>{} << 16;
        QTest::newRow("Escape") << "Escape" << QList<int>{} << 16;
        QTest::newRow("close box") << "close" << QList<int>{} << 16;
        QTest::newRow("kept waiting, then pressed") << "Stop later" << QList<int>{} << 16;
        QTest::newRow("polled: Continue") << "" << QList<int>{kVmxResultContinue, 15} << 15;
        QTest::newRow("polled: Stop") << "" << QList<int>{16} << 16;
        QTest::newRow("polled: 1, the first button") << "" << QList<int>{1} << 15;
        QTest::newRow("polled: 0, the second button") << "" << QList<int>{0} << 16;
        QTest::newRow("polled: -1, no button") << "" << QList<int>{0xFFFF} << 0;
    }
    void everyWayTheQuestionEnds() {
        QFETCH(QString, press);
        QFETCH(QList<int>, polls);
        QFETCH(int, answer);
        auto ui = loaded();
        for (int p : polls)
            g_source.pollAnswers.push_back(std::uint16_t(p));
        QRect boxFrame, pageFrame;
        QRgb top = 0, bottom = 0;
        auto timer = whenModal<QMessageBox>([&](QMessageBox* box) {
            QWidget* page = ui->controllerIfMade()->continueScanPage();
            if (page) {
                boxFrame = box->frameGeometry();
                pageFrame = page->frameGeometry();
                const QImage picture = page->findChild<QWidget*>("viewPreview")->grab().toImage();
                top = picture.pixel(picture.width() / 2, 1);
                bottom = picture.pixel(picture.width() / 2, picture.height() - 2);
            }
            if (press == QLatin1String("Escape"))
                QTest::keyClick(box, Qt::Key_Escape);
            else if (press == QLatin1String("close"))
                box->close();
            else if (press == QLatin1String("Stop later"))
                QTimer::singleShot(150, box, [box] { buttonTitled(box, "Stop")->click(); });
            else if (!press.isEmpty())
                buttonTitled(box, press)->click();
        });
        QCOMPARE(ui->showContinueScanDialog(0), answer);
        QVERIFY(!boxFrame.isNull() || press.isEmpty());
        if (!boxFrame.isNull()) {
            QVERIFY2(pageFrame.left() >= boxFrame.right(), "the page is beside the question");
            QCOMPARE(top, qRgb(255, 0, 0));
            QCOMPARE(bottom, qRgb(255, 255, 255));
        }
        const auto codes = events();
        QCOMPARE(codes.first(), kVmxEventContinueScanOpen);
        QCOMPARE(codes.last(), kVmxEventContinueScanClose);
        QCOMPARE(codes.count(kVmxEventContinueScanClose), 1);
        QCOMPARE(codes.count(kVmxEventContinueScanPoll) + 2, codes.size());
        if (press == QLatin1String("Stop later"))
            QVERIFY2(codes.count(kVmxEventContinueScanPoll) >= 3, "polled while waiting");
        for (auto& s : g_source.seen)
            QCOMPARE(s.record, g_source.seen.front().record);
        QVERIFY(!g_source.seen.back().withImage);
        QCOMPARE(ui->controllerIfMade()->continueScanPage(), nullptr);
    }

    // The 16-bit value names the problem page; the texts come from the string tables.
    void theValueNamesTheProblemPage() {
        auto ui = loaded();
        QString text, informative;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        QString escape, standard;
        auto read = [&] {
            return whenModal<QMessageBox>([&](QMessageBox* box) {
                text = box->text();
                informative = box->informativeText();
                icon = box->icon();
                escape = box->escapeButton()->text();
                standard = box->defaultButton()->text();
                box->defaultButton()->click();
            });
        };
        const QString message =
            QStringLiteral("Scanning has been interrupted.\n\nA double feed was detected. Check the document "
                           "shown beside this "
                           "message.\n\nClick Continue to keep scanning, or Stop to end the scan.");
        auto t1 = read();
        QCOMPARE(ui->showContinueScanDialog(3), int(kVmxAnswerContinue));
        QCOMPARE(text, QStringLiteral("Page 3"));
        QCOMPARE(informative, message);
        QCOMPARE(icon, QMessageBox::Question);
        QCOMPARE(standard, QStringLiteral("Continue"));
        QCOMPARE(escape, QStringLiteral("Stop"));
        auto t2 = read();
        ui->showContinueScanDialog(0);
        QCOMPARE(text, message);
    }

    // A page the data source leaves out, or one that is no bitmap, shows the question alone; what
    // was handed over is freed all the same.
    void aMissingOrBrokenPageShowsTheQuestionAlone_data() {
        QTest::addColumn<int>("page");
        QTest::addColumn<QString>("logged");
        QTest::newRow("no page") << int(QuestionSource::NoPage) << "ERROR: pDIB = NULL";
        QTest::newRow("broken page") << int(QuestionSource::BrokenPage)
                                     << "ERROR: TwainDialogController::showContinueScanPage:";
    }
    void aMissingOrBrokenPageShowsTheQuestionAlone() {
        QFETCH(int, page);
        QFETCH(QString, logged);
        auto ui = loaded();
        QTemporaryDir dir;
        const QString logFile = dir.filePath("trace.log");
        QFile(logFile).open(QIODevice::WriteOnly);
        OrvaSetLogPaths(logFile.toLocal8Bit().constData(), nullptr);
        g_source.page = decltype(g_source.page)(page);
        bool alone = false;
        auto timer = whenModal<QMessageBox>([&](QMessageBox* box) {
            alone = ui->controllerIfMade()->continueScanPage() == nullptr;
            buttonTitled(box, "Stop")->click();
        });
        QCOMPARE(ui->showContinueScanDialog(0), int(kVmxAnswerStop));
        OrvaSetLogPaths(nullptr, nullptr);
        QVERIFY(alone);
        QFile log(logFile);
        QVERIFY(log.open(QIODevice::ReadOnly));
        QVERIFY(QString::fromUtf8(log.readAll()).contains(logged));
        QVERIFY(!g_source.seen.back().withImage);
    }

    void withoutACallbackNothingIsAsked() {
        auto ui = loaded(nullptr);
        bool shown = false;
        auto timer = whenModal<QMessageBox>([&](QMessageBox* box) {
            shown = true;
            box->defaultButton()->click();
        });
        QCOMPARE(ui->showContinueScanDialog(1), 0);
        QVERIFY(!shown);
    }

    void fromAWorkerThreadTheSameAnswer() {
        auto ui = loaded();
        auto timer = whenModal<QMessageBox>([](QMessageBox* box) { buttonTitled(box, "Stop")->click(); });
        std::atomic_int answer{-1};
        std::thread worker([&] { answer = ui->showContinueScanDialog(2); });
        QTRY_VERIFY(answer.load() != -1);
        worker.join();
        QCOMPARE(answer.load(), int(kVmxAnswerStop));
        QCOMPARE(events().count(kVmxEventContinueScanClose), 1);
    }

    // A polled box whose data source always says "keep waiting" stays until a button is pressed.
    void aPolledBoxThatIsNeverEndedWaitsForAButton() {
        auto ui = loaded();
        auto timer = whenModal<QMessageBox>([](QMessageBox* box) {
            QTimer::singleShot(150, box, [box] { buttonTitled(box, "Cancel")->click(); });
        });
        QCOMPARE(ui->showMessageBox("Waiting for paper", "", 0x2, 0x4242, 10), int(kVmxAnswerCancel));
        int polls = 0;
        for (auto& s : g_source.seen)
            polls += s.event == 0x4242;
        QVERIFY2(polls >= 3, qPrintable(QString::number(polls)));
    }

    // VMX_DIALOG_SHOTS=<dir>: a picture of the question with its page (under xvfb-run for real
    // windows).
    void pictures() {
        if (dialogShotsFolder().isEmpty())
            QSKIP("VMX_DIALOG_SHOTS names no folder");
        auto ui = loaded();
        ui->showUi(true, false, false);
        g_source.page = QuestionSource::SamplePage;
        QString saved = QStringLiteral("not taken");
        auto timer = whenModal<QMessageBox>([&](QMessageBox* box) {
            QTest::qWait(300); // laid out and painted
            saved = saveWindowsPicture(QStringLiteral("ContinueScan"),
                                       {box, ui->controllerIfMade()->continueScanPage()});
            buttonTitled(box, "Continue")->click();
        });
        ui->showContinueScanDialog(3);
        ui->hideUi();
        QVERIFY2(!saved.isEmpty() && saved != QLatin1String("not taken"), qPrintable(saved));
        qInfo("%s", qPrintable(saved));
    }

    // Eight threads ask for message boxes (plain and polled), the continue-scan question and the
    // progress panel at once while the GUI thread runs its loop and someone presses the default
    // buttons: every request is answered and nothing waits forever.
    void eightThreadsAskAtOnce() {
        auto ui = loaded(&busyCallback);
        ui->showUi(true, false, false);
        g_opened = 0;
        g_closedQuestions = 0;
        QTimer presser;
        presser.setInterval(5);
        connect(&presser, &QTimer::timeout, [] {
            for (QWidget* w : QApplication::topLevelWidgets())
                if (auto* box = qobject_cast<QMessageBox*>(w);
                    box && box->isVisible() && box->defaultButton())
                    box->defaultButton()->click();
        });
        presser.start();
        constexpr int kThreads = 8;
        std::array<std::array<int, 4>, kThreads> answers{};
        std::atomic_int finished{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([&, i] {
                auto& a = answers[std::size_t(i)];
                a[0] = ui->showMessageBox("Replace the paper?", "", 0x40002);
                a[1] = ui->showMessageBox("Ended by its poll", "", 0x2, 0x4243, 5);
                a[2] = ui->showMessageBox("Ended by a button", "", 0x2, 0x4244, 5);
                ui->showProgressDialog();
                const std::uint32_t record[3] = {0, kThreads, std::uint32_t(i)};
                ui->setProgress(record);
                a[3] = ui->showContinueScanDialog(std::uint16_t(i + 1));
                ui->hideProgressDialog();
                ++finished;
            });
        }
        QTRY_COMPARE_WITH_TIMEOUT(finished.load(), kThreads, 60000);
        for (auto& t : threads)
            t.join();
        presser.stop();
        for (auto& a : answers)
            QCOMPARE(a, (std::array<int, 4>{kVmxAnswerOK, kVmxAnswerOK, kVmxAnswerOK, kVmxAnswerContinue}));
        QCOMPARE(g_opened.load(), kThreads);
        QCOMPARE(g_closedQuestions.load(), kThreads);
        ui->hideProgressDialog();
        QVERIFY(!ui->controllerIfMade()->scanningPanel()->isVisible());
        ui->hideUi();
    }
};

QTEST_MAIN(TestContinueScan)
#include "tst_continuescan.moc"
