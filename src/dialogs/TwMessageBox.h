// Message boxes built from the message-type bit field: the button set in the low byte, the
// default-button swap in 0x0F00, the icon in 0xF0000. The controller's boxes know the sets 1 to 4,
// the facade's also set 5 (Continue/Stop). Answers are the codes of VmxUI.h: OK 10, Cancel 11,
// Yes 12, No 13, Retry 14, Continue 15, Stop 16; an answer by no button is 0.
#pragma once

#include <QMessageBox>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

struct TwMessageButton {
    QString title;
    int code = 0;
};

struct TwMessageBoxSetup {
    QString title;   // the bold main text; may be empty
    QString message; // the informative text
    std::uint32_t messageType = 1;
    // As shown: the first is the default button (Return), the second the alternate.
    std::vector<TwMessageButton> buttons;
    // The button Escape presses, or -1 when Escape is left to Qt.
    int escapeIndex = -1;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    // False for an unknown button set: one plain OK button whose answer is 0.
    bool knownSet = true;
};

// Localized button titles: the key ("IDS_OK", ...) to the text.
using TwMessageText = std::function<QString(const char* key)>;

// The box a message type asks for. withContinueStop adds the facade's set 5.
TwMessageBoxSetup TwMessageBoxSetupFor(const QString& title, const QString& message,
                                       std::uint32_t messageType, bool withContinueStop,
                                       const TwMessageText& text);

// The code of the button at the index (0 first, 1 second); anything else is 0.
int TwMessageAnswerForIndex(const TwMessageBoxSetup& setup, int index);
// The code for an answer of the platform's alert panel as a polling callback gives it: -1 the
// third button (0), 0 the second button, anything else the first.
int TwMessageAnswerForPanelReturn(const TwMessageBoxSetup& setup, std::int16_t panelReturn);

// A Qt message box for the setup, not shown. Its buttons appear in the order of the setup, left to
// right with the default one rightmost, each carrying its code in the property "twAnswer".
QMessageBox* TwCreateMessageBox(const TwMessageBoxSetup& setup, QWidget* parent);

// Polls while a box is open: nothing keeps it open, a value ends it as that panel return.
using TwMessagePoll = std::function<std::optional<std::int16_t>()>;

// Told once the box is on the screen, for windows that go beside it.
using TwMessageShown = std::function<void(QMessageBox* box)>;

// Shows the box modally and answers its code. With a poll, it is called every intervalMs
// milliseconds (the first one interval after the box opened) until it ends the box. The next poll
// falls due one interval after the last one began, and never while one is still running: a poll
// that itself runs an event loop (another box) is not asked again from inside it.
int TwRunMessageBox(const TwMessageBoxSetup& setup, QWidget* parent, const TwMessagePoll& poll = {},
                    std::uint32_t intervalMs = 0, const TwMessageShown& shown = {});

// Tests replace the showing of un-polled boxes; an empty function restores it.
using TwMessageBoxRunner = std::function<int(const TwMessageBoxSetup& setup)>;
void TwSetMessageBoxRunner(TwMessageBoxRunner runner);
