#include "TwEditCommit.h"

#include "OrvaDebug.h"
#include "TwBindingAdapters.h"
#include "TwBoundControl.h"
#include "TwFormatter.h"
#include "TwWindowPlacement.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>
#include <QWidget>

namespace {
TwFormatterAlert& alertHandler() {
    static TwFormatterAlert handler;
    return handler;
}

void showAlert(QWidget* field, const QString& message) {
    if (alertHandler()) {
        alertHandler()(field, message);
        return;
    }
    QMessageBox box(QMessageBox::Warning, field->window()->windowTitle(), message, QMessageBox::Ok,
                    field->window());
    // Qt sizes a message box as it shows it; then it is put wholly on the screen.
    QTimer::singleShot(0, &box, [&box] { TwKeepOnScreen(&box); });
    box.exec();
}

// The control a text field belongs to: an editable combo box owns its line edit.
QWidget* ownerOf(QLineEdit* edit) {
    auto* combo = qobject_cast<QComboBox*>(edit->parentWidget());
    return combo && combo->lineEdit() == edit ? static_cast<QWidget*>(combo) : edit;
}

// False, with the alert shown and the focus kept, when the field's entry is rejected.
bool endEditingOf(QLineEdit* edit) {
    if (!edit->isModified())
        return true;
    QWidget* control = ownerOf(edit);
    const TwFormatter* formatter = TwFormatterOfControl(control);
    if (formatter) {
        TwValue value;
        QString error;
        if (!formatter->getObjectValue(&value, edit->text(), &error)) {
            OrvaLog(kOrvaLogDebug, "\t%s: '%s' refused in %s\n", "TwEndEditing",
                    edit->text().toUtf8().constData(), control->objectName().toUtf8().constData());
            showAlert(control, error.isEmpty() ? TwFormatterDefaultMessage() : error);
            edit->setFocus(Qt::OtherFocusReason);
            edit->selectAll();
            return false;
        }
        if (!TwBoundControl::of(control)) {
            // Not bound: the dialog reads the field itself; show the entry as the formatter does.
            edit->setText(formatter->stringForObjectValue(value));
            return true;
        }
    }
    if (!TwBoundControl::commitEditing(control))
        return false;
    TwBoundControl::refresh(control);
    edit->setModified(false);
    return true;
}
} // namespace

void TwSetFormatterAlert(TwFormatterAlert alert) {
    alertHandler() = std::move(alert);
}

QString TwFormatterDefaultMessage() {
    return QStringLiteral("The value is not valid.");
}

bool TwEndEditing(QWidget* window) {
    if (!window)
        return true;
    QList<QLineEdit*> fields;
    QWidget* focus = window->focusWidget();
    if (auto* combo = qobject_cast<QComboBox*>(focus); combo && combo->lineEdit())
        fields << combo->lineEdit(); // the combo box is the focus proxy of its line edit
    else if (auto* focused = qobject_cast<QLineEdit*>(focus))
        fields << focused;
    for (QLineEdit* edit : window->findChildren<QLineEdit*>())
        if (!fields.contains(edit) && edit->isVisibleTo(window))
            fields << edit;
    for (QLineEdit* edit : fields)
        if (!endEditingOf(edit))
            return false;
    return true;
}
