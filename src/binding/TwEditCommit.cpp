#include "TwEditCommit.h"

#include "OrvaDebug.h"
#include "TwBindingAdapters.h"
#include "TwBoundControl.h"
#include "TwFormatter.h"
#include "TwWindowPlacement.h"

#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace {
TwFormatterAlert& alertHandler() {
    static TwFormatterAlert handler;
    return handler;
}

// What the field's row label says ("Resolution" for "&Resolution:"), or nothing.
QString fieldName(const QWidget* control) {
    if (control->objectName().isEmpty())
        return {};
    for (const QLabel* label : control->window()->findChildren<QLabel*>()) {
        if (label->buddy() != control && label->property("follows").toString() != control->objectName())
            continue;
        QString name = label->text().remove(QLatin1Char('&')).trimmed();
        if (name.endsWith(QLatin1Char(':')))
            name.chop(1);
        return name.trimmed();
    }
    return {};
}

void showAlert(QWidget* field, const QString& message) {
    if (alertHandler()) {
        alertHandler()(field, message);
        return;
    }
    // The field's name first, so that the person knows which entry is meant.
    const QString name = fieldName(field);
    QMessageBox box(QMessageBox::Warning, field->window()->windowTitle(), name.isEmpty() ? message : name,
                    QMessageBox::Ok, field->window());
    if (!name.isEmpty())
        box.setInformativeText(message);
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

namespace {
// Checks a text field once the person has left it (Tab, a click elsewhere), as the platform's
// formatters do: a rejected entry shows its message and the field takes the focus back. The check
// waits until the mouse button is up, so that a click on Cancel cancels rather than complains, and
// while another window is modal over the field.
class LeaveCheck : public QObject {
public:
    explicit LeaveCheck(QLineEdit* edit) : QObject(edit), m_edit(edit), m_control(ownerOf(edit)) {
        setObjectName(QStringLiteral("twLeaveCheck"));
        // An editable combo box holds the focus itself and hands it to its line edit directly.
        m_control->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::FocusOut) {
            const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
            if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
                QTimer::singleShot(0, this, [this] { check(); });
        }
        return false;
    }

private:
    void check() {
        if (!m_edit || !m_control || m_control->hasFocus() || m_edit->hasFocus() || !m_edit->isVisible() ||
            !m_edit->isModified())
            return;
        const QWidget* modal = QApplication::activeModalWidget();
        if (QGuiApplication::mouseButtons() != Qt::NoButton || (modal && modal != m_edit->window())) {
            QTimer::singleShot(50, this, [this] { check(); });
            return;
        }
        endEditingOf(m_edit);
    }

    QPointer<QLineEdit> m_edit;
    QPointer<QWidget> m_control;
};
} // namespace

void TwCheckWhenLeft(QLineEdit* edit) {
    if (edit && !edit->findChild<LeaveCheck*>(QStringLiteral("twLeaveCheck"), Qt::FindDirectChildrenOnly))
        new LeaveCheck(edit);
}

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
