#include "TwKeyboard.h"

#include "TwBoundControl.h"

#include <QAbstractSpinBox>
#include <QBoxLayout>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>

#include <algorithm>
#include <tuple>

namespace {

void collect(QWidget* widget, QList<QWidget*>& out, bool isRoot);

// The widgets a layout holds, in the order they are seen.
void layoutWidgets(QLayout* layout, QList<QWidget*>& out) {
    struct Cell {
        int row, column, index;
        QLayoutItem* item;
    };
    QList<Cell> cells;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem* item = layout->itemAt(i);
        int row = 0, column = i;
        if (auto* grid = qobject_cast<QGridLayout*>(layout)) {
            int rowSpan = 0, columnSpan = 0;
            grid->getItemPosition(i, &row, &column, &rowSpan, &columnSpan);
        } else if (auto* form = qobject_cast<QFormLayout*>(layout)) {
            QFormLayout::ItemRole role;
            form->getItemPosition(i, &row, &role);
            column = role == QFormLayout::LabelRole ? 0 : 1;
        } else if (auto* box = qobject_cast<QBoxLayout*>(layout)) {
            const auto direction = box->direction();
            if (direction == QBoxLayout::RightToLeft || direction == QBoxLayout::BottomToTop)
                column = layout->count() - 1 - i;
        }
        cells.push_back({row, column, i, item});
    }
    std::stable_sort(cells.begin(), cells.end(), [](const Cell& a, const Cell& b) {
        return std::tie(a.row, a.column, a.index) < std::tie(b.row, b.column, b.index);
    });
    for (const Cell& cell : cells) {
        if (QWidget* w = cell.item->widget())
            out.push_back(w);
        else if (QLayout* inner = cell.item->layout())
            layoutWidgets(inner, out);
    }
}

void collect(QWidget* widget, QList<QWidget*>& out, bool isRoot) {
    if (!isRoot && widget->isWindow())
        return; // a window of its own has its own order
    const bool stop = !isRoot && (widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
    if (auto* tabs = qobject_cast<QTabWidget*>(widget)) {
        collect(tabs->tabBar(), out, false);
        for (int i = 0; i < tabs->count(); ++i)
            collect(tabs->widget(i), out, false);
        return;
    }
    if (auto* stack = qobject_cast<QStackedWidget*>(widget)) {
        for (int i = 0; i < stack->count(); ++i)
            collect(stack->widget(i), out, false);
        return;
    }
    if (auto* area = qobject_cast<QScrollArea*>(widget)) {
        if (stop)
            out.push_back(widget);
        if (area->widget())
            collect(area->widget(), out, false);
        return;
    }
    if (stop) {
        out.push_back(widget);
        if (!qobject_cast<QGroupBox*>(widget))
            return; // a control's own parts (a combo box's field, a spin box's) are not stops
    }
    QList<QWidget*> children;
    if (widget->layout())
        layoutWidgets(widget->layout(), children);
    // Children no layout places, by where they stand.
    QList<QWidget*> loose;
    for (QWidget* child : widget->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (!children.contains(child))
            loose.push_back(child);
    std::stable_sort(loose.begin(), loose.end(), [](const QWidget* a, const QWidget* b) {
        return std::make_pair(a->y(), a->x()) < std::make_pair(b->y(), b->x());
    });
    for (QWidget* child : children + loose)
        collect(child, out, false);
}

// Up and Down in the field press the stepper's arrows.
class StepKeys : public QObject {
public:
    StepKeys(QLineEdit* field, QAbstractSpinBox* stepper)
        : QObject(field), m_field(field), m_stepper(stepper) {
        setObjectName(QStringLiteral("twStepKeys"));
        field->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::KeyPress || !m_stepper)
            return false;
        auto* key = static_cast<QKeyEvent*>(event);
        if ((key->key() != Qt::Key_Up && key->key() != Qt::Key_Down) || key->modifiers() != Qt::NoModifier)
            return false;
        // A typed entry counts first; a rejected one stays for correction.
        if (m_stepper->isEnabled() && TwBoundControl::commitEditing(m_field))
            m_stepper->stepBy(key->key() == Qt::Key_Up ? 1 : -1);
        return true;
    }

private:
    QLineEdit* m_field;
    QPointer<QAbstractSpinBox> m_stepper;
};

// A control and those of its own parts that take the focus (an editable combo box's field), which
// must move with it through the chain: Qt moves only the widget named, and a part left behind
// would lead Tab back to where the control once stood.
QList<QWidget*> withParts(QWidget* control) {
    QList<QWidget*> chain{control};
    // A widget that hands its focus to this control (a tab view to its bar) stands just before it.
    if (QWidget* holder = control->parentWidget(); holder && holder->focusProxy() == control)
        chain.prepend(holder);
    if (control->focusProxy() || qobject_cast<QGroupBox*>(control))
        return chain; // Qt follows a proxy itself; a group box's contents are stops of their own
    for (QWidget* part : control->findChildren<QWidget*>())
        if (part->focusPolicy() != Qt::NoFocus && part->window() == control->window())
            chain.push_back(part);
    return chain;
}

} // namespace

QList<QWidget*> TwVisualTabOrder(QWidget* root) {
    QList<QWidget*> out;
    if (root)
        collect(root, out, true);
    return out;
}

void TwSetVisualTabOrder(QWidget* root) {
    QList<QWidget*> chain;
    for (QWidget* control : TwVisualTabOrder(root))
        chain += withParts(control);
    for (qsizetype i = 1; i < chain.size(); ++i)
        QWidget::setTabOrder(chain[i - 1], chain[i]);
    // And from the last round to the first, past whatever else the window holds.
    if (chain.size() > 1)
        QWidget::setTabOrder(chain.last(), chain.first());
}

void TwStepFieldWith(QLineEdit* field, QAbstractSpinBox* stepper) {
    if (!field || !stepper || field->findChild<StepKeys*>(QStringLiteral("twStepKeys")))
        return;
    stepper->setFocusPolicy(Qt::NoFocus);
    new StepKeys(field, stepper);
}
