#include "TwFormPreparation.h"

#include "TwKeyboard.h"

#include <QAbstractSpinBox>
#include <QEvent>
#include <QFontMetrics>
#include <QLineEdit>
#include <QMultiHash>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QStyleOptionSpinBox>
#include <QWidget>

namespace {

// QLineEdit keeps this much space between its frame and the text.
constexpr int kLineEditMargin = 2;

void fitLineEdit(QLineEdit* edit, int digits) {
    const QFontMetrics fm(edit->font());
    const QMargins text = edit->textMargins();
    QStyleOptionFrame opt;
    opt.initFrom(edit);
    opt.lineWidth =
        edit->hasFrame() ? edit->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &opt, edit) : 0;
    opt.state |= QStyle::State_Sunken;
    const QSize contents(fm.horizontalAdvance(QLatin1Char('0')) * digits + 2 * kLineEditMargin + text.left() +
                             text.right(),
                         fm.height());
    edit->setFixedWidth(edit->style()->sizeFromContents(QStyle::CT_LineEdit, &opt, contents, edit).width());
}

// As wide as the arrows and the frame: the text field beside the stepper shows the value.
void fitStepper(QAbstractSpinBox* box) {
    QStyleOptionSpinBox opt;
    opt.initFrom(box);
    opt.rect = QRect(0, 0, 400, box->sizeHint().height());
    opt.frame = box->hasFrame();
    opt.buttonSymbols = box->buttonSymbols();
    opt.subControls = QStyle::SC_SpinBoxFrame | QStyle::SC_SpinBoxUp | QStyle::SC_SpinBoxDown;
    opt.stepEnabled = QAbstractSpinBox::StepUpEnabled | QAbstractSpinBox::StepDownEnabled;
    const QRect edit =
        box->style()->subControlRect(QStyle::CC_SpinBox, &opt, QStyle::SC_SpinBoxEditField, box);
    box->setFixedWidth(opt.rect.width() - edit.width());
}

void fit(QWidget* widget) {
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
        bool ok = false;
        const int digits = edit->property("fieldChars").toInt(&ok);
        if (ok && digits > 0)
            fitLineEdit(edit, digits);
    } else if (auto* box = qobject_cast<QAbstractSpinBox*>(widget)) {
        if (!box->property("stepperFor").toString().isEmpty())
            fitStepper(box);
    }
}

// Sizes fields again when their font or style changes; shows and hides labels with the control
// they follow.
class FormHelper : public QObject {
public:
    explicit FormHelper(QObject* parent) : QObject(parent) { setObjectName(QStringLiteral("twFormHelper")); }

    void follow(QWidget* label, QWidget* control) {
        if (!m_followers.contains(control))
            control->installEventFilter(this);
        m_followers.insert(control, label);
        mirror(control);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::FontChange:
        case QEvent::StyleChange:
        case QEvent::Polish:
            fit(static_cast<QWidget*>(watched));
            break;
        case QEvent::ShowToParent:
        case QEvent::HideToParent:
        case QEvent::EnabledChange:
            mirror(static_cast<QWidget*>(watched));
            break;
        default:
            break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    // The control's labels are shown and greyed as the control is.
    void mirror(QWidget* control) {
        for (auto it = m_followers.constFind(control); it != m_followers.cend() && it.key() == control; ++it)
            if (it.value()) {
                it.value()->setVisible(!control->isHidden());
                it.value()->setEnabled(control->isEnabled());
            }
    }

    QMultiHash<QObject*, QPointer<QWidget>> m_followers;
};

} // namespace

void TwPrepareForm(QWidget* form) {
    if (!form || form->findChild<FormHelper*>(QStringLiteral("twFormHelper"), Qt::FindDirectChildrenOnly))
        return;
    auto* helper = new FormHelper(form);
    const auto widgets = form->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (widget->property("fieldChars").isValid() || widget->property("stepperFor").isValid()) {
            widget->installEventFilter(helper);
            fit(widget);
        }
        if (auto* stepper = qobject_cast<QAbstractSpinBox*>(widget))
            TwStepFieldWith(form->findChild<QLineEdit*>(stepper->property("stepperFor").toString()), stepper);
        const QString followed = widget->property("follows").toString();
        if (followed.isEmpty())
            continue;
        if (auto* control = form->findChild<QWidget*>(followed))
            helper->follow(widget, control);
    }
    TwSetVisualTabOrder(form);
}
