// The data source's questions while it scans: the continue-scan question with the problem page
// beside it, polled message boxes, and all of them with the progress panel asked from many threads
// at once while the GUI thread runs its loop; and message boxes from the message-type bit field
// beneath: the buttons, their order and codes, the default and Escape buttons, the icon, and the
// answers of a box that polls the data source. The sample scanner's prescan page as the module
// receives it (a bitmap of the asked depth, size and resolution, the right way up, with ratios that
// fit the page) and the preview record filled for one or both sides or left empty; and the sample
// data source's simulated scan run headless as a script runs it: the paper wait that ends by the
// data source's poll, the pages going by, and the double feed whose question the scanner's panel
// answers, going on or stopping by the answer.
#include "SampleFixture.h"
#include "SamplePage.h"
#include "TwPreviewCoordinator.h"
#include "preview/PreviewPages.h"

#include <deque>

namespace {

// A 4 x 4 colour page: the top row red, the rest white.
void* redTopBitmap(std::uint32_t* length) {
    QImage page(4, 4, QImage::Format_RGB32);
    page.fill(Qt::white);
    for (int x = 0; x < 4; ++x)
        page.setPixel(x, 0, qRgb(255, 0, 0));
    return makeBitmap(page, 0, length);
}

struct Seen {
    std::uint16_t event;
    void* record;
    bool withImage;
};

// What the data source of one question does and sees; used on the GUI thread only.
struct QuestionSource {
    std::vector<Seen> seen;
    std::deque<std::uint16_t>
        pollAnswers; // of the question and of boxes polled by 0x4242; then "keep waiting"
    enum { Page, NoPage, BrokenPage, SamplePage } page = Page;
    bool backIsFront = false; // the back given as the front's block, a data source's mistake
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
        if (g_source.backIsFront) {
            record->back.pDIB = record->front.pDIB;
            record->back.imageLength = record->front.imageLength;
        }
    }
    g_source.seen.push_back({event, data, record && record->front.pDIB});
    const bool polled = event == kVmxEventContinueScanPoll || event == 0x4242;
    if (polled && !g_source.pollAnswers.empty()) {
        const std::uint16_t answer = g_source.pollAnswers.front();
        g_source.pollAnswers.pop_front();
        return answer;
    }
    return polled ? kVmxResultContinue : 0;
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
    return mapped(g_source.seen, [](const Seen& s) { return s.event; });
}

} // namespace

class TestContinueScan : public QObject {
    Q_OBJECT

    // Titles as a string table gives them, so that the test sees the key behind every button.
    static QString textFor(const char* key) {
        static const QHash<QString, QString> table{
            {"IDS_OK", "OK"},       {"IDS_CANCEL", "Cancel"},     {"IDS_YES", "Yes"},  {"IDS_NO", "No"},
            {"IDS_RETRY", "Retry"}, {"IDS_CONTINUE", "Continue"}, {"IDS_STOP", "Stop"}};
        return table.value(key, key);
    }

    static TwMessageBoxSetup boxFor(std::uint32_t type, bool withContinueStop = false) {
        return TwMessageBoxSetupFor(u"Title"_s, u"Message"_s, type, withContinueStop, &textFor);
    }

    static QStringList titles(const TwMessageBoxSetup& s) {
        return mapped(s.buttons, [](const auto& b) { return b.title; });
    }
    SampleScanner sample;

    Facade loaded(VmxUICallback callback = &questionCallback) {
        auto ui = sample.load({.callback = callback});
        ui->setContinueScanPollInterval(20);
        return ui;
    }

private slots:
    void init() {
        g_source = QuestionSource{};
        QVERIFY2(sample.reset(), sample.error.c_str());
        TwSetMessageBoxRunner({}); // the real boxes, answered as a person does
    }

    // Every way the question ends: its answer, the data source told of the end exactly once and
    // last, the page beside the question the right way up while it is open, and the page's
    // memory freed before the end is told. The question has the keyboard, not the page: Return
    // answers its default button, Escape its escape button. The 16-bit value names the problem
    // page; the texts come from the string tables.
    void everyWayTheQuestionEnds_data() {
        // press: a button, a key ("Return", "Escape"), "close", or "" to let the polls decide
        columns<QString, QList<int>, int, int>("press", "polls", "answer", "value");
        row("Continue pressed, page 3", "Continue", QList<int>{}, 15, 3);
        row("Stop pressed", "Stop", QList<int>{}, 16, 0);
        row("Return", "Return", QList<int>{}, 15, 0);
        row("Escape", "Escape", QList<int>{}, 16, 0);
        row("close box", "close", QList<int>{}, 16, 0);
        row("kept waiting, then pressed", "Stop later", QList<int>{}, 16, 0);
        row("polled: Continue", "", QList<int>{kVmxResultContinue, 15}, 15, 0);
        row("polled: Stop", "", QList<int>{16}, 16, 0);
        row("polled: 1, the first button", "", QList<int>{1}, 15, 0);
        row("polled: 0, the second button", "", QList<int>{0}, 16, 0);
        row("polled: -1, no button", "", QList<int>{0xFFFF}, 0, 0);
    }
    void everyWayTheQuestionEnds() {
        auto [press, polls, answer, value] =
            fetch<QString, QList<int>, int, int>("press", "polls", "answer", "value");
        auto ui = loaded();
        g_source.pollAnswers.assign(polls.begin(), polls.end());
        QRect boxFrame, pageFrame;
        QRgb top = 0, bottom = 0;
        bool pageActive = false;
        QStringList texts; // main and informative text, default and Escape buttons
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        auto timer = whenModal<QMessageBox>([&](QMessageBox* box) {
            texts = {box->text(), box->informativeText(), box->defaultButton()->text(),
                     box->escapeButton()->text()};
            icon = box->icon();
            QWidget* page = ui->previewCoordinator()->continueScanPage();
            if (page) {
                boxFrame = box->frameGeometry();
                pageFrame = page->frameGeometry();
                const QImage picture = page->findChild<QWidget*>("viewPreview")->grab().toImage();
                top = picture.pixel(picture.width() / 2, 1);
                bottom = picture.pixel(picture.width() / 2, picture.height() - 2);
            }
            if (press == u"Escape"_s || press == u"Return"_s) { // the question has the keyboard, not the page
                QTRY_COMPARE(QApplication::activeWindow(), box);
                pageActive =
                    page && (page->isActiveWindow() || page->isAncestorOf(QApplication::focusWidget()));
                QTest::keyClick(QApplication::focusWidget(),
                                press == u"Escape"_s ? Qt::Key_Escape : Qt::Key_Return);
            } else if (press == u"close"_s)
                box->close();
            else if (press == u"Stop later"_s)
                QTimer::singleShot(150, box, [box] { buttonTitled(box, "Stop")->click(); });
            else if (!press.isEmpty())
                buttonTitled(box, press)->click();
        });
        QCOMPARE(ui->showContinueScanDialog(std::uint16_t(value)), answer);
        const QString message =
            u"Scanning has been interrupted.\n\nA double feed was detected. Check the document shown "
            "beside this message.\n\nClick Continue to keep scanning, or Stop to end the scan."_s;
        if (!press.isEmpty()) {
            QCOMPARE(texts, (value ? QStringList{"Page 3", message, "Continue", "Stop"}
                                   : QStringList{message, "", "Continue", "Stop"}));
            QCOMPARE(icon, QMessageBox::Question);
        }
        QVERIFY((!boxFrame.isNull() || press.isEmpty()) && !pageActive);
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
        if (press == u"Stop later"_s)
            QVERIFY2(codes.count(kVmxEventContinueScanPoll) >= 3, "polled while waiting");
        for (auto& s : g_source.seen)
            QCOMPARE(s.record, g_source.seen.front().record);
        QVERIFY(!g_source.seen.back().withImage);
        QCOMPARE(ui->previewCoordinator()->continueScanPage(), nullptr);
    }

    // A page the data source leaves out, or one that is no bitmap, shows the question alone; what
    // was handed over is freed all the same, and one block given as both sides is freed once.
    void whatIsHandedOverIsFreed_data() {
        columns<int, bool, bool, QString>("page", "backIsFront", "shown", "logged");
        const QString refused = "ERROR: TwPreviewCoordinator::showContinueScanPage:";
        row("no page", int(QuestionSource::NoPage), false, false, "ERROR: pDIB = NULL");
        row("broken page", int(QuestionSource::BrokenPage), false, false, refused);
        row("one block as both sides, shown", int(QuestionSource::Page), true, true, QString());
        row("one block as both sides, refused", int(QuestionSource::BrokenPage), true, false, QString());
    }
    void whatIsHandedOverIsFreed() {
        auto [page, backIsFront, shown, logged] =
            fetch<int, bool, bool, QString>("page", "backIsFront", "shown", "logged");
        auto ui = loaded();
        LogCapture log;
        g_source.page = decltype(g_source.page)(page);
        g_source.backIsFront = backIsFront;
        bool pageShown = false;
        auto timer = whenModal<QMessageBox>([&](QMessageBox* box) {
            pageShown = ui->previewCoordinator()->continueScanPage() != nullptr;
            buttonTitled(box, "Stop")->click();
        });
        QCOMPARE(ui->showContinueScanDialog(0), int(kVmxAnswerStop));
        QCOMPARE(pageShown, shown);
        if (!logged.isEmpty())
            QVERIFY2(log.text().contains(logged), qPrintable(log.text()));
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

    // A polled box from the facade ends as the callback says: "keep waiting" keeps it (until a
    // button is pressed), 0 is the second button, -1 the third (no button), 1 the first.
    void aPolledBoxEndsAsTheCallbackSays_data() {
        // polls: then "keep waiting"
        columns<uint, QList<int>, int>("type", "polls", "answer");
        row("waiting, then 0: Cancel", 0x2u, QList<int>{kVmxResultContinue, kVmxResultContinue, 0},
            int(kVmxAnswerCancel));
        row("-1: no button", 0x5u, QList<int>{0xFFFF}, 0);
        row("1: the first, swapped", 0x105u, QList<int>{1}, int(kVmxAnswerStop));
        row("never ended: Cancel pressed", 0x2u, QList<int>{}, int(kVmxAnswerCancel));
    }
    void aPolledBoxEndsAsTheCallbackSays() {
        auto [type, polls, answer] = fetch<uint, QList<int>, int>("type", "polls", "answer");
        auto ui = loaded();
        g_source.pollAnswers.assign(polls.begin(), polls.end());
        auto timer = whenModal<QMessageBox>([](QMessageBox* box) {
            QTimer::singleShot(150, box, [box] { buttonTitled(box, "Cancel")->click(); });
        });
        QCOMPARE(ui->showMessageBox("Waiting for paper", "", type, 0x4242, 10), answer);
        const auto asked = events().count(0x4242);
        if (polls.isEmpty())
            QVERIFY2(asked >= 3, qPrintable(QString::number(asked)));
        else
            QCOMPARE(asked, polls.size());
    }

    // VMX_DIALOG_SHOTS=<dir>: a picture of the question with its page (under xvfb-run for real
    // windows).
    void pictures() {
        if (dialogShotsFolder().isEmpty())
            QSKIP("VMX_DIALOG_SHOTS names no folder");
        auto ui = loaded();
        ui->showUi(true, false, false);
        g_source.page = QuestionSource::SamplePage;
        QString saved = u"not taken"_s;
        auto timer = whenModal<QMessageBox>([&](QMessageBox* box) {
            QTest::qWait(300); // laid out and painted
            saved =
                saveWindowsPicture(u"ContinueScan"_s, {box, ui->previewCoordinator()->continueScanPage()});
            buttonTitled(box, "Continue")->click();
        });
        ui->showContinueScanDialog(3);
        ui->hideUi();
        QVERIFY2(!saved.isEmpty() && saved != u"not taken"_s, qPrintable(saved));
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
        QVERIFY(!ui->controllerIfMade()->panelIfMade<TwDlgScanning>()->isVisible());
    }

    // ---- The sample scanner's pages and its simulated scan ----

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
        QVERIFY(RenderSamplePrescan(settings, &record));
        QVERIFY(record.front.pDIB);
        QVERIFY(record.back.pDIB);
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
        // The run inherits the case's own home and preferences folder, never the user's.
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        const BuiltProgramRun scan = runBuiltProgram(
            QStringLiteral(SAMPLEDS_PATH),
            {"--headless", "--scan", "--scan-pages", "4", "--double-feed-at", "2", "--paper-wait", "0.3",
             "--page-time", "20", "--auto-answer", answer, "--answer-after", "0"},
            env.toStringList(), 60000);
        const QString& out = scan.out;
        QCOMPARE(scan.exitCode, 0);
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

    // ---- Message boxes ----

    // The buttons left to right with their codes, the Escape button (-1: none) and the icon; a
    // set the caller does not know gives one plain button that answers nothing.
    void buttonSetsSwapAndIcons_data() {
        // buttons: "title=code" left to right
        columns<uint, bool, QString, int, int>("type", "withContinueStop", "buttons", "escape", "icon");
        row("0x20001 OK, caution", 0x20001u, false, "OK=10", -1, int(QMessageBox::Warning));
        row("0x40002 OK/Cancel, question", 0x40002u, false, "OK=10 Cancel=11", 1, int(QMessageBox::Question));
        row("0x102 swapped OK/Cancel", 0x102u, false, "Cancel=11 OK=10", 0, int(QMessageBox::NoIcon));
        row("0x10003 Yes/No, note", 0x10003u, false, "Yes=12 No=13", 1, int(QMessageBox::Information));
        row("0x30004 Retry/Cancel, stop", 0x30004u, false, "Retry=14 Cancel=11", 1,
            int(QMessageBox::Critical));
        row("0x50002 icon beyond 4", 0x50002u, false, "OK=10 Cancel=11", 1, int(QMessageBox::NoIcon));
        row("facade's set 5 swapped", 0x105u, true, "Stop=16 Continue=15", 0, int(QMessageBox::NoIcon));
        row("set 5 without the facade", 5u, false, "OK=0", -1, int(QMessageBox::NoIcon));
        row("set 0", 0x20000u, true, "OK=0", -1, int(QMessageBox::Warning));
    }
    void buttonSetsSwapAndIcons() {
        auto [type, withContinueStop, set, escape, icon] =
            fetch<uint, bool, QString, int, int>("type", "withContinueStop", "buttons", "escape", "icon");
        QStringList buttons;
        QList<int> codes;
        for (const QString& b : set.split(' ')) {
            buttons << b.section('=', 0, 0);
            codes << b.section('=', 1).toInt();
        }
        auto s = boxFor(type, withContinueStop);
        QCOMPARE(s.knownSet, codes != QList<int>{0});
        QCOMPARE(titles(s), buttons);
        QCOMPARE(s.escapeIndex, escape);
        QCOMPARE(int(s.icon), icon);
        // The Qt box: the first button is the default (Return), Escape presses the one the layout names.
        std::unique_ptr<QMessageBox> box(TwCreateMessageBox(s, nullptr));
        QCOMPARE(box->buttons().size(), buttons.size());
        QCOMPARE(box->defaultButton()->text(), buttons[0]);
        if (escape >= 0)
            QCOMPARE(box->escapeButton()->text(), buttons[escape]);
        // Each button pressed answers its code.
        for (int i = 0; i < buttons.size(); ++i) {
            auto timer =
                whenModal<QMessageBox>([&](QMessageBox* b) { buttonTitled(b, buttons[i])->click(); });
            QCOMPARE(TwRunMessageBox(s, nullptr), codes[i]);
        }
    }

    void emptyTitlesBecomeOneBlank() {
        auto s = TwMessageBoxSetupFor({}, u"m"_s, 2, false, [](const char*) { return QString(); });
        QCOMPARE(titles(s), (QStringList{" ", " "}));
    }

    // Title and message; the default button stands rightmost; without a title the message is the
    // main text.
    void theQtBoxShowsTheTexts() {
        std::unique_ptr<QMessageBox> box(TwCreateMessageBox(boxFor(0x40002), nullptr));
        QCOMPARE(box->text(), u"Title"_s);
        QCOMPARE(box->informativeText(), u"Message"_s);
        box->show();
        QVERIFY(box->defaultButton()->x() > box->escapeButton()->x());

        auto untitled = TwMessageBoxSetupFor({}, u"Please enter a name."_s, 0x20001, false, &textFor);
        std::unique_ptr<QMessageBox> plain(TwCreateMessageBox(untitled, nullptr));
        QCOMPARE(plain->text(), u"Please enter a name."_s);
        QVERIFY(plain->informativeText().isEmpty());
    }

    // A box has a dialog's frame (a close box, no minimise or maximise), is as wide as its whole
    // title needs, wraps its text no narrower than Qt's own limit allows, and comes up wholly on
    // the screen even over a window that reaches past the screen's corner.
    void aBoxFitsItsTextsAndTheScreen() {
        QWidget parent;
        parent.setWindowTitle(u"Orvanic VMX-S60 Document Scanner with Flatbed Unit"_s);
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        parent.setGeometry(screen.left() - 300, screen.top() - 200, 400, 300);
        const QString message = QStringLiteral("Load the pages into the feeder. Scanning starts as soon as "
                                               "paper is detected.");
        std::unique_ptr<QMessageBox> box(TwCreateMessageBox(
            TwMessageBoxSetupFor(u"Waiting for paper"_s, message, 0x10002, false, &textFor), &parent));
        const Qt::WindowFlags flags = box->windowFlags();
        QVERIFY(flags & Qt::WindowCloseButtonHint);
        QVERIFY(!(flags & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint)));
        box->show();
        QFont bold = box->font();
        bold.setBold(true);
        QVERIFY(box->width() >= QFontMetrics(bold).horizontalAdvance(parent.windowTitle()));
        auto* text = box->findChild<QLabel*>(u"qt_msgbox_informativelabel"_s);
        QVERIFY(text->width() >= std::min(QFontMetrics(text->font()).horizontalAdvance(message), 500));
        QVERIFY(screen.contains(box->frameGeometry()));
    }

    // A polling box ends as the poll says (swapped Continue/Stop: Stop is first); told to wait,
    // it stays until a button is pressed. The first poll comes one interval after the box opened.
    void aPollingBoxEndsAsThePollSays_data() {
        // panelReturn: 99: keep waiting
        columns<int, int>("panelReturn", "answer");
        row("1: first button", 1, 16);
        row("0: second button", 0, 15);
        row("-1: third button", -1, 0);
        row("anything else: first button", 42, 16);
        row("waiting: the button pressed", 99, 15);
    }
    void aPollingBoxEndsAsThePollSays() {
        auto [panelReturn, answer] = fetch<int, int>("panelReturn", "answer");
        QElapsedTimer clock;
        qint64 firstPoll = -1;
        int polls = 0;
        TwMessagePoll poll = [&]() -> std::optional<std::int16_t> {
            firstPoll = firstPoll < 0 ? clock.elapsed() : firstPoll;
            ++polls;
            return panelReturn == 99 ? std::nullopt : std::optional<std::int16_t>(panelReturn);
        };
        auto timer = whenModal<QMessageBox>([](QMessageBox* box) {
            QTimer::singleShot(400, box, [box] { buttonTitled(box, u"Continue"_s)->click(); });
        });
        clock.start();
        QCOMPARE(TwRunMessageBox(boxFor(0x105, true), nullptr, poll, 100), answer);
        // Not at once, not at the first turn of the loop: one interval later.
        QVERIFY2(firstPoll >= 75, qPrintable(QString::number(firstPoll)));
        QVERIFY(panelReturn != 99 || polls >= 3);
    }

    // A poll that runs a loop of its own (the data source shows another box meanwhile) is not
    // asked again from inside that loop.
    void aPollIsNeverAskedAgainWhileItRuns() {
        int depth = 0, deepest = 0, polls = 0;
        TwMessagePoll poll = [&]() -> std::optional<std::int16_t> {
            deepest = std::max(deepest, ++depth);
            QEventLoop loop;
            QTimer::singleShot(60, &loop, &QEventLoop::quit);
            loop.exec();
            --depth;
            return ++polls == 3 ? std::optional<std::int16_t>(1) : std::nullopt;
        };
        QCOMPARE(TwRunMessageBox(boxFor(0x2), nullptr, poll, 5), int(kVmxAnswerOK));
        QCOMPARE(deepest, 1);
        QCOMPARE(polls, 3);
    }
};

QTEST_MAIN(TestContinueScan)
#include "tst_continuescan.moc"
