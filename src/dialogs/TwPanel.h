// The base of every dialog window: a modal run with a return code, and the binding of the panel's
// controls to the settings model exactly while the panel is shown.
//
// A panel ends its run by setting returnCode and closing itself; the close box and Escape close it
// with the code it has (0 unless an action set it). runModal answers that code.
//
// The values a panel edits for itself (a name, a page order, margins) live in its own observable
// store, ownValues(): its controls bind to that store through the panel's responder binding exactly
// as they bind to the settings model, and the panel observes it where a change must do something.
#pragma once

#include "TwObservableValues.h"
#include "TwObservation.h"
#include "TwWindowPlacement.h"

#include <QDialog>
#include <QPointer>
#include <QString>

#include <cstdint>
#include <memory>

class TwPanelHost;
class TwResponderBinding;
class TwainDialogData;
class QCloseEvent;

class TwPanel : public QDialog, public TwKeyValueObserver {
    Q_OBJECT
public:
    explicit TwPanel(QWidget* parent = nullptr);
    ~TwPanel() override;

    // The window controller, through what panels may ask of it; it outlives its panels. Buttons
    // that name a "textKey" take their titles from the data source's string table when it has them.
    void setPanelHost(TwPanelHost* host);
    TwPanelHost* panelHost() const { return m_host; }
    // The host's settings model, or null.
    TwainDialogData* dialogData() const;

    // The panel's own values; bindings to it are made and undone with the panel's other bindings.
    TwObservableValues& ownValues() { return m_ownValues; }

    int returnCode() const { return m_returnCode; }
    void setReturnCode(int code) { m_returnCode = code; }
    bool isRunModul() const { return m_isRunModul; }
    TwResponderBinding* responderBinding() const { return m_responderBinding.get(); }

    // Binds, runs modally until the panel closes, unbinds; answers returnCode.
    virtual int runModal();
    // Shows the panel modelessly, binding it first; nothing when it is already visible.
    void showWindow();
    // A new binding object for the panel; subclasses extend it with their controls.
    virtual void bindControlAll();
    virtual void unbindControlAll();
    // Asked when the user closes the panel (close box, Escape); true lets it close.
    virtual bool windowShouldClose();
    // Told whenever the panel closes: ends a modal run with returnCode and unbinds.
    virtual void windowWillClose();
    // The close box: asks windowShouldClose first. close() closes without asking.
    void performClose();
    // Closes from code as close() does (windowWillClose, then hidden), but keeps the window
    // system's window for the next showing: Qt would destroy and make it again, which is slower
    // and leaves a little memory behind each time.
    void closePanel();
    // Centres the panel over the controller's main window.
    void center();
    // Places the panel gap points right of the other window, tops or bottoms level, wholly on the
    // screen (TwPlacement::beside): the other window moves left to make room when it may, the
    // panel is narrowed or goes to the left, and where it must lie over the other window it keeps
    // clear of keepClear (screen coordinates).
    using Level = TwPlacement::Level;
    void placeBeside(QWidget* other, int gap, Level level, const QRect& keepClear = {},
                     bool mayMoveOther = false);

    // The text of a string-table key through the controller (the data source's table first), or
    // this module's own table when the panel has no controller.
    QString localizedString(const QString& key) const;
    // A message box with an empty title through the controller, or shown directly without one.
    int showMessageBox(const QString& message, std::uint32_t messageType);
    // Sends every button with an "action" property below root to that action when it is pressed:
    // the panel's own slot of that name when it has one (onOK, onCancel), else the controller's
    // action (onHelp, onScanCancel, ...). A button is connected once, and only by its own window.
    void connectActions(QWidget* root);

    void observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                const TwKeyValueChange& change, void* context) override;

public slots:
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    // Wherever it was put, a panel comes up wholly on its screen.
    void showEvent(QShowEvent* event) override;
    const char* className() const;

private:
    // windowShouldClose, with a second question while it is being asked kept out.
    bool askShouldClose();

    TwPanelHost* m_host = nullptr;
    // Declared before the binding: the binding's observations of it are undone first.
    TwObservableValues m_ownValues;
    std::unique_ptr<TwResponderBinding> m_responderBinding;
    int m_returnCode = 0;
    bool m_isRunModul = false;
    bool m_asking = false;
};
