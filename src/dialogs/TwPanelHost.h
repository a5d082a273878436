// What a panel may ask of the window that hosts it (the window controller): the settings model,
// texts, message boxes, the main window to stand over, closing the preview, and the actions a
// button names that the panel does not run itself. Panels know the controller only through this.
#pragma once

#include <QString>

#include <cstdint>

class QObject;
class QWidget;
class TwainDialogData;

class TwPanelHost {
public:
    // The settings model, or null once the dialog has let go of it.
    virtual TwainDialogData* dialogData() const = 0;
    // The text of a string-table key, the data source's table first.
    virtual QString localizedString(const QString& key) = 0;
    virtual int showMessageBox(const QString& message, const QString& title, std::uint32_t messageType) = 0;
    // The settings dialog's main window, once made.
    virtual QWidget* mainWindow() const = 0;
    virtual void closePreview() = 0;
    // Runs the named action of the dialog (onHelp, onScanCancel, ...); false for an unknown name.
    virtual bool performAction(const QString& action, QObject* sender) = 0;

protected:
    ~TwPanelHost() = default;
};
