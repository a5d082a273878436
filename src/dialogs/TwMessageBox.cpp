#include "TwMessageBox.h"

#include "OrvaDebug.h"
#include "TwWindowPlacement.h"
#include "VmxUI.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QLabel>
#include <QLayout>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

#include <algorithm>

namespace {

TwMessageBoxRunner& runner() {
    static TwMessageBoxRunner r;
    return r;
}

struct ButtonSet {
    const char* first;
    int firstCode;
    const char* second;
    int secondCode;
};

std::optional<ButtonSet> buttonSet(std::uint32_t set, bool withContinueStop) {
    switch (set) {
    case kVmxButtonsOK:
        return ButtonSet{"IDS_OK", kVmxAnswerOK, nullptr, 0};
    case kVmxButtonsOKCancel:
        return ButtonSet{"IDS_OK", kVmxAnswerOK, "IDS_CANCEL", kVmxAnswerCancel};
    case kVmxButtonsYesNo:
        return ButtonSet{"IDS_YES", kVmxAnswerYes, "IDS_NO", kVmxAnswerNo};
    case kVmxButtonsRetryCancel:
        return ButtonSet{"IDS_RETRY", kVmxAnswerRetry, "IDS_CANCEL", kVmxAnswerCancel};
    case kVmxButtonsContinueStop:
        if (withContinueStop)
            return ButtonSet{"IDS_CONTINUE", kVmxAnswerContinue, "IDS_STOP", kVmxAnswerStop};
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

QMessageBox::Icon iconFor(std::uint32_t messageType) {
    switch ((messageType & kVmxIconMask) >> 16) {
    case 1:
        return QMessageBox::Information; // note
    case 2:
        return QMessageBox::Warning; // caution
    case 3:
        return QMessageBox::Critical; // stop
    case 4:
        return QMessageBox::Question; // question
    default:
        return QMessageBox::NoIcon;
    }
}

// Room the window manager takes in a title bar besides the title: its icon and buttons.
constexpr int kTitleBarAllowance = 120;

// A box that comes up wholly on its screen and wide enough for its whole title where the screen
// allows. Qt sizes a message box when it is shown, so the width is settled after that.
class TwPlacedMessageBox : public QMessageBox {
public:
    using QMessageBox::QMessageBox;

protected:
    void showEvent(QShowEvent* event) override {
        QMessageBox::showEvent(event);
        fitTitle();
        TwKeepOnScreen(this);
    }

private:
    void fitTitle() {
        QFont bold = font();
        bold.setBold(true);
        int wanted = QFontMetrics(bold).horizontalAdvance(windowTitle()) + kTitleBarAllowance;
        if (const QScreen* s = screen()) {
            const QMargins frame = TwFrameMarginsOf(this);
            wanted = std::min(wanted, s->availableGeometry().width() - frame.left() - frame.right());
        }
        if (wanted <= width())
            return;
        setFixedWidth(wanted);
        if (layout() && layout()->hasHeightForWidth())
            setFixedHeight(layout()->totalHeightForWidth(wanted));
    }
};

// A wrapped text is as wide as its longest line up to Qt's own soft limit for message boxes (half
// the screen, at most 500 points), not squeezed into the narrowest column that holds its words.
void widenText(QMessageBox* box) {
    auto* label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"));
    if (!label)
        return;
    const QScreen* s = box->screen();
    const int soft = std::min(s ? s->availableGeometry().width() / 2 : 1000, 500);
    int longest = 0;
    const QFontMetrics metrics(label->font());
    for (const QString& line : label->text().split(QLatin1Char('\n')))
        longest = std::max(longest, metrics.horizontalAdvance(line));
    label->setMinimumWidth(std::min(longest, soft));
}

} // namespace

TwMessageBoxSetup TwMessageBoxSetupFor(const QString& title, const QString& message,
                                       std::uint32_t messageType, bool withContinueStop,
                                       const TwMessageText& text) {
    TwMessageBoxSetup setup;
    setup.title = title;
    setup.message = message;
    setup.messageType = messageType;
    setup.icon = iconFor(messageType);
    auto set = buttonSet(messageType & kVmxButtonSetMask, withContinueStop);
    auto title_ = [&](const char* key) {
        QString t = text ? text(key) : QString::fromLatin1(key);
        return t.isEmpty() ? QStringLiteral(" ") : t;
    };
    if (!set) {
        // The platform's single default button, which stands for no code.
        setup.knownSet = false;
        setup.buttons.push_back({QMessageBox::tr("OK"), 0});
        return setup;
    }
    setup.buttons.push_back({title_(set->first), set->firstCode});
    if (set->second) {
        setup.buttons.push_back({title_(set->second), set->secondCode});
        if (messageType & kVmxSwapMask) {
            std::swap(setup.buttons[0], setup.buttons[1]);
            // Left to the platform: Escape presses the button that backs out, wherever it is.
            for (int i = 0; i < 2; ++i) {
                int code = setup.buttons[std::size_t(i)].code;
                if (code == kVmxAnswerCancel || code == kVmxAnswerNo || code == kVmxAnswerStop)
                    setup.escapeIndex = i;
            }
        } else {
            setup.escapeIndex = 1;
        }
    }
    return setup;
}

int TwMessageAnswerForIndex(const TwMessageBoxSetup& setup, int index) {
    if (index < 0 || index >= int(setup.buttons.size()))
        return 0;
    return setup.buttons[std::size_t(index)].code;
}

int TwMessageAnswerForPanelReturn(const TwMessageBoxSetup& setup, std::int16_t panelReturn) {
    if (panelReturn == -1)
        return 0;
    return TwMessageAnswerForIndex(setup, panelReturn == 0 ? 1 : 0);
}

QMessageBox* TwCreateMessageBox(const TwMessageBoxSetup& setup, QWidget* parent) {
    auto* box = new TwPlacedMessageBox(parent);
    // The frame of a dialog: a title and a close box, no minimise or maximise buttons.
    box->setWindowFlags(Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint | Qt::CustomizeWindowHint |
                        Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    box->setIcon(setup.icon);
    if (setup.title.isEmpty()) {
        box->setText(setup.message);
    } else {
        box->setText(setup.title);
        box->setInformativeText(setup.message);
        widenText(box);
    }
    box->setTextFormat(Qt::PlainText);
    if (parent)
        box->setWindowTitle(parent->window()->windowTitle());
    // Added right to left so that the default button ends up rightmost; ActionRole keeps Qt from
    // reordering them by role.
    std::vector<QPushButton*> made(setup.buttons.size());
    for (int i = int(setup.buttons.size()) - 1; i >= 0; --i) {
        auto& b = setup.buttons[std::size_t(i)];
        made[std::size_t(i)] = box->addButton(b.title, QMessageBox::ActionRole);
        made[std::size_t(i)]->setProperty("twAnswer", b.code);
        made[std::size_t(i)]->setProperty("twIndex", i);
    }
    box->setDefaultButton(made.front());
    if (setup.escapeIndex >= 0 && setup.escapeIndex < int(made.size()))
        box->setEscapeButton(made[std::size_t(setup.escapeIndex)]);
    else if (made.size() == 1)
        box->setEscapeButton(made.front());
    // The texts can't be selected, as on the platform's alerts.
    box->setTextInteractionFlags(Qt::NoTextInteraction);
    return box;
}

int TwRunMessageBox(const TwMessageBoxSetup& setup, QWidget* parent, const TwMessagePoll& poll,
                    std::uint32_t intervalMs, const TwMessageShown& shown) {
    if (!poll && !shown && runner())
        return runner()(setup);
    QPointer<QMessageBox> box = TwCreateMessageBox(setup, parent);
    std::optional<int> polledAnswer;
    // A period of 0 would poll without pause; one millisecond is the shortest we wait.
    const int period = int(std::clamp<std::uint32_t>(intervalMs, 1, 0x7fffffff));
    QTimer timer;
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    QElapsedTimer clock;
    if (poll) {
        QObject::connect(&timer, &QTimer::timeout, box, [&] {
            const qint64 began = clock.elapsed();
            auto r = poll();
            // Pressed meanwhile (the poll may run a loop of its own): the button answers.
            if (!box || !box->isVisible() || polledAnswer)
                return;
            if (r) {
                polledAnswer = TwMessageAnswerForPanelReturn(setup, *r);
                box->done(0);
                return;
            }
            timer.start(int(std::max<qint64>(0, began + period - clock.elapsed())));
        });
    }
    if (shown || poll) {
        // Once the box's own loop runs, i.e. once it is shown.
        QTimer::singleShot(0, box, [&] {
            if (shown)
                shown(box);
            if (poll) {
                clock.start();
                timer.start(period);
            }
        });
    }
    box->exec();
    timer.stop();
    int answer = 0;
    if (polledAnswer) {
        answer = *polledAnswer;
    } else if (box) {
        QAbstractButton* clicked = box->clickedButton();
        if (clicked && setup.knownSet)
            answer = clicked->property("twAnswer").toInt();
    }
    delete box;
    return answer;
}

void TwSetMessageBoxRunner(TwMessageBoxRunner r) {
    runner() = std::move(r);
}
