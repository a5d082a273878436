// Message boxes from the message-type bit field: the buttons, their order and codes, the default
// and Escape buttons, the icon, and the answers of a box that polls the data source.
#include "TwMessageBox.h"
#include "WidgetTestSupport.h"

class TestMessageBox : public QObject {
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
        QStringList out;
        for (auto& b : s.buttons)
            out << b.title;
        return out;
    }

private slots:
    // The buttons left to right with their codes, the Escape button (-1: none) and the icon; a
    // set the caller does not know gives one plain button that answers nothing.
    void buttonSetsSwapAndIcons_data() {
        columns<uint, bool, QStringList, QList<int>, int, int>("type", "withContinueStop", "buttons", "codes",
                                                               "escape", "icon");
        row("0x20001 OK, caution", 0x20001u, false, QStringList{"OK"}, QList<int>{10}, -1,
            int(QMessageBox::Warning));
        row("0x40002 OK/Cancel, question", 0x40002u, false, QStringList{"OK", "Cancel"}, QList<int>{10, 11},
            1, int(QMessageBox::Question));
        row("0x102 swapped OK/Cancel", 0x102u, false, QStringList{"Cancel", "OK"}, QList<int>{11, 10}, 0,
            int(QMessageBox::NoIcon));
        row("0x10003 Yes/No, note", 0x10003u, false, QStringList{"Yes", "No"}, QList<int>{12, 13}, 1,
            int(QMessageBox::Information));
        row("0x30004 Retry/Cancel, stop", 0x30004u, false, QStringList{"Retry", "Cancel"}, QList<int>{14, 11},
            1, int(QMessageBox::Critical));
        row("0x50002 icon beyond 4", 0x50002u, false, QStringList{"OK", "Cancel"}, QList<int>{10, 11}, 1,
            int(QMessageBox::NoIcon));
        row("facade's set 5 swapped", 0x105u, true, QStringList{"Stop", "Continue"}, QList<int>{16, 15}, 0,
            int(QMessageBox::NoIcon));
        row("set 5 without the facade", 5u, false, QStringList{"OK"}, QList<int>{0}, -1,
            int(QMessageBox::NoIcon));
        row("set 0", 0x20000u, true, QStringList{"OK"}, QList<int>{0}, -1, int(QMessageBox::Warning));
    }
    void buttonSetsSwapAndIcons() {
        auto [type, withContinueStop, buttons, codes, escape, icon] =
            fetch<uint, bool, QStringList, QList<int>, int, int>("type", "withContinueStop", "buttons",
                                                                 "codes", "escape", "icon");
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

QTEST_MAIN(TestMessageBox)
#include "tst_messagebox.moc"
