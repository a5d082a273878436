#include "TwBindingAdapters.h"

#include "TwBindingWidgets.h"
#include "TwBoundControl.h"
#include "TwEditCommit.h"
#include "TwElidedText.h"
#include "TwFormatter.h"
#include "TwRangeHelpers.h"
#include "TwValue.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMetaProperty>
#include <QRadioButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QTabBar>
#include <QTableWidget>

#include <cmath>

namespace {

constexpr unsigned bit(TwBindingKind kind) {
    return 1u << unsigned(kind);
}

QString textOf(const TwValue& value) {
    return QString::fromStdString(value.stringValue());
}

// What a text field shows for a value: through its formatter when it has one.
QString displayText(const QObject* control, const TwValue& value) {
    if (const TwFormatter* f = TwFormatterOfControl(control))
        return f->stringForObjectValue(value);
    return textOf(value);
}

// The title of a choice entry: its "display" when it is a dictionary that has one.
QString entryTitle(const QObject* control, const TwValue& entry) {
    if (const TwDictionary* d = entry.dict()) {
        TwValue display = d->value("display");
        return display.isNull() ? QString::fromStdString(entry.description()) : textOf(display);
    }
    return entry.isNumber() ? displayText(control, entry) : textOf(entry);
}

// A typed entry as the value to write: parsed by the formatter, or the text itself.
bool parseEntry(const QObject* control, const QString& text, TwValue* value) {
    if (const TwFormatter* f = TwFormatterOfControl(control))
        return f->getObjectValue(value, text, nullptr);
    *value = TwValue(text.toStdString());
    return true;
}

// A checked state written in the type the model already holds.
TwValue checkedValue(const TwValue& old, bool checked) {
    return old.isBoolean() ? TwValue(checked) : TwValue(checked ? 1 : 0);
}

// A real value from an integer control: an integer when the control is not scaled.
TwValue scaledValue(const QWidget* control, int position) {
    double scale = TwValueScale(control);
    if (scale == 1.0)
        return TwValue(position);
    return TwValue(position / scale);
}

// The array items of a list value; empty for anything else.
TwArray itemsOf(const TwValue& list) {
    return list.list() ? *list.list() : TwArray();
}

// ---- Combo box, not editable: a pop-up of choices ------------------------------------------------

class PopUpAdapter : public TwControlAdapter {
public:
    PopUpAdapter()
        : TwControlAdapter({TwBindingKind::Content, TwBindingKind::ContentValues,
                            TwBindingKind::ContentObjects, TwBindingKind::SelectedObject,
                            TwBindingKind::SelectedIndex, TwBindingKind::SelectedTag}) {}
    const char* name() const override { return "pop-up"; }

    // The objects the items stand for: content objects, else the content entries.
    static TwValue objects(const TwBoundControl& state) {
        if (state.isBound(TwBindingKind::ContentObjects))
            return state.value(TwBindingKind::ContentObjects);
        return state.value(TwBindingKind::Content);
    }

    void show(QObject* control, TwBindingKind kind, const TwBoundControl& state) const override {
        auto* combo = static_cast<QComboBox*>(control);
        if (kind == TwBindingKind::Content || kind == TwBindingKind::ContentValues ||
            kind == TwBindingKind::ContentObjects)
            rebuild(combo, state);
        select(combo, state);
    }

    static void rebuild(QComboBox* combo, const TwBoundControl& state) {
        QStringList titles;
        if (state.isBound(TwBindingKind::ContentValues)) {
            for (const TwValue& v : itemsOf(state.value(TwBindingKind::ContentValues)))
                titles << entryTitle(combo, v);
        } else if (state.isBound(TwBindingKind::Content)) {
            for (const TwValue& v : itemsOf(state.value(TwBindingKind::Content)))
                titles << entryTitle(combo, v);
        } else {
            return; // items from the form stay
        }
        QStringList present;
        for (int i = 0; i < combo->count(); ++i)
            present << combo->itemText(i);
        if (present != titles) {
            combo->clear();
            combo->addItems(titles);
        }
    }

    static void select(QComboBox* combo, const TwBoundControl& state) {
        int index = -1;
        if (state.isBound(TwBindingKind::SelectedObject)) {
            TwValue wanted = state.value(TwBindingKind::SelectedObject);
            TwValue list = objects(state);
            if (list.list()) {
                const TwArray& items = *list.list();
                for (std::size_t i = 0; i < items.size() && i < std::size_t(combo->count()); ++i)
                    if (items[i].isEqual(wanted)) {
                        index = int(i);
                        break;
                    }
            } else {
                index = combo->findText(textOf(wanted));
            }
        } else if (state.isBound(TwBindingKind::SelectedIndex)) {
            TwValue v = state.value(TwBindingKind::SelectedIndex);
            index = v.isNumber() && v.longLongValue() < combo->count() ? int(v.longLongValue()) : -1;
        } else if (state.isBound(TwBindingKind::SelectedTag)) {
            index = combo->findData(int(state.value(TwBindingKind::SelectedTag).longLongValue()));
        } else {
            return;
        }
        combo->setCurrentIndex(index < 0 ? -1 : index);
    }

    void connectEdits(QObject* control, TwBoundControl& state) const override {
        auto* combo = static_cast<QComboBox*>(control);
        QObject::connect(combo, &QComboBox::activated, &state, [combo, &state](int index) {
            if (index < 0)
                return;
            if (state.isBound(TwBindingKind::SelectedObject)) {
                TwValue list = objects(state);
                if (list.list() && std::size_t(index) < list.list()->size())
                    state.userEdited(TwBindingKind::SelectedObject, (*list.list())[std::size_t(index)]);
                else if (!list.list())
                    state.userEdited(TwBindingKind::SelectedObject,
                                     TwValue(combo->itemText(index).toStdString()));
            }
            if (state.isBound(TwBindingKind::SelectedIndex))
                state.userEdited(TwBindingKind::SelectedIndex, TwValue(index));
            if (state.isBound(TwBindingKind::SelectedTag))
                state.userEdited(TwBindingKind::SelectedTag, TwValue(combo->itemData(index).toInt()));
        });
    }
};

// ---- Text entry shared by the line edit and the editable combo box -------------------------------

// Writes the typed text when the binding updates continuously and the formatter accepts it.
void typed(QObject* control, TwBoundControl& state, const QString& text) {
    const TwBindingOptions* options = state.options(TwBindingKind::Value);
    if (!options || !options->continuouslyUpdatesValue)
        return;
    TwValue value;
    if (parseEntry(control, text, &value))
        state.userEdited(TwBindingKind::Value, value);
}

// Ends an entry: writes it unless the model holds it already. False when the formatter rejects it.
bool commitText(QObject* control, QLineEdit* edit, TwBoundControl& state) {
    if (!edit || !edit->isModified())
        return true;
    TwValue value;
    if (!parseEntry(control, edit->text(), &value))
        return false;
    const TwBindingOptions* options = state.options(TwBindingKind::Value);
    bool written = options && options->continuouslyUpdatesValue;
    if (state.isBound(TwBindingKind::Value) &&
        (!written || !state.value(TwBindingKind::Value).isEqual(value)))
        state.userEdited(TwBindingKind::Value, value);
    edit->setModified(false);
    return true;
}

void showText(QObject* control, QLineEdit* edit, const TwBoundControl& state) {
    QString text = displayText(control, state.value(TwBindingKind::Value));
    if (edit->text() != text)
        edit->setText(text); // also clears the modified flag
    else
        edit->setModified(false);
}

class LineEditAdapter : public TwControlAdapter {
public:
    LineEditAdapter() : TwControlAdapter({TwBindingKind::Value, TwBindingKind::Editable}) {}
    const char* name() const override { return "text field"; }

    void show(QObject* control, TwBindingKind, const TwBoundControl& state) const override {
        auto* edit = static_cast<QLineEdit*>(control);
        const_cast<TwBoundControl&>(state).refreshOnFormatterChange(
            const_cast<QValidator*>(edit->validator()));
        showText(control, edit, state);
    }

    void connectEdits(QObject* control, TwBoundControl& state) const override {
        auto* edit = static_cast<QLineEdit*>(control);
        QObject::connect(edit, &QLineEdit::textEdited, &state,
                         [edit, &state](const QString& text) { typed(edit, state, text); });
        // Return or leaving the field with an acceptable entry ends editing; leaving it with a
        // rejected one shows the reason.
        QObject::connect(edit, &QLineEdit::editingFinished, &state, [edit] {
            if (TwBoundControl::commitEditing(edit))
                TwBoundControl::refresh(edit);
        });
        TwCheckWhenLeft(edit);
    }

    bool commitEditing(QObject* control, TwBoundControl& state) const override {
        return commitText(control, static_cast<QLineEdit*>(control), state);
    }

    void setEditable(QObject* control, bool editable) const override {
        static_cast<QLineEdit*>(control)->setReadOnly(!editable);
    }
};

// ---- Combo box, editable: free text with a list of suggestions -----------------------------------

class ComboBoxAdapter : public TwControlAdapter {
public:
    ComboBoxAdapter()
        : TwControlAdapter({TwBindingKind::Content, TwBindingKind::ContentValues, TwBindingKind::Value,
                            TwBindingKind::Editable}) {}
    const char* name() const override { return "combo box"; }

    void show(QObject* control, TwBindingKind kind, const TwBoundControl& state) const override {
        auto* combo = static_cast<QComboBox*>(control);
        if (kind == TwBindingKind::Content || kind == TwBindingKind::ContentValues) {
            TwBindingKind source = state.isBound(TwBindingKind::ContentValues) ? TwBindingKind::ContentValues
                                                                               : TwBindingKind::Content;
            QStringList titles;
            for (const TwValue& v : itemsOf(state.value(source)))
                titles << entryTitle(combo, v);
            combo->clear(); // clearing may change the text: shown again below
            combo->addItems(titles);
        }
        if (QLineEdit* edit = combo->lineEdit()) {
            const_cast<TwBoundControl&>(state).refreshOnFormatterChange(
                const_cast<QValidator*>(edit->validator()));
            if (state.isBound(TwBindingKind::Value))
                showText(combo, edit, state);
        }
    }

    void connectEdits(QObject* control, TwBoundControl& state) const override {
        auto* combo = static_cast<QComboBox*>(control);
        combo->setInsertPolicy(QComboBox::NoInsert);
        if (QLineEdit* edit = combo->lineEdit()) {
            QObject::connect(edit, &QLineEdit::textEdited, &state,
                             [combo, &state](const QString& text) { typed(combo, state, text); });
            QObject::connect(edit, &QLineEdit::editingFinished, &state, [combo] {
                if (TwBoundControl::commitEditing(combo))
                    TwBoundControl::refresh(combo);
            });
            TwCheckWhenLeft(edit);
        }
        // Picking from the list is a whole entry at once.
        QObject::connect(combo, &QComboBox::activated, &state, [combo, &state](int index) {
            TwValue value;
            if (index >= 0 && parseEntry(combo, combo->itemText(index), &value))
                state.userEdited(TwBindingKind::Value, value);
            if (combo->lineEdit())
                combo->lineEdit()->setModified(false);
        });
    }

    bool commitEditing(QObject* control, TwBoundControl& state) const override {
        auto* combo = static_cast<QComboBox*>(control);
        return commitText(combo, combo->lineEdit(), state);
    }

    void setEditable(QObject* control, bool editable) const override {
        if (QLineEdit* edit = static_cast<QComboBox*>(control)->lineEdit())
            edit->setReadOnly(!editable);
    }
};

// ---- Read-only label and image view ---------------------------------------------------------------

// A label shows a supplied text, which may be of any length: elided within its place.
class LabelAdapter : public TwControlAdapter {
public:
    LabelAdapter() : TwControlAdapter({TwBindingKind::Value}) {}
    const char* name() const override { return "label"; }
    void show(QObject* control, TwBindingKind, const TwBoundControl& state) const override {
        TwElidedText::setText(static_cast<QLabel*>(control), textOf(state.value(TwBindingKind::Value)));
    }
};

class ImageViewAdapter : public TwControlAdapter {
public:
    ImageViewAdapter() : TwControlAdapter({TwBindingKind::ValuePath}) {}
    const char* name() const override { return "image view"; }
    void show(QObject* control, TwBindingKind, const TwBoundControl& state) const override {
        static_cast<TwImageView*>(control)->setImagePath(textOf(state.value(TwBindingKind::ValuePath)));
    }
};

// ---- Buttons --------------------------------------------------------------------------------------

class ButtonAdapter : public TwControlAdapter {
public:
    ButtonAdapter(const char* name, bool checkBox)
        : TwControlAdapter({TwBindingKind::Value, TwBindingKind::Title}), m_name(name), m_checkBox(checkBox) {
    }
    const char* name() const override { return m_name; }

    void show(QObject* control, TwBindingKind kind, const TwBoundControl& state) const override {
        auto* button = static_cast<QAbstractButton*>(control);
        if (kind == TwBindingKind::Title)
            button->setText(textOf(state.value(kind)));
        else if (m_checkBox || button->isCheckable())
            button->setChecked(state.value(kind).boolValue());
    }

    void connectEdits(QObject* control, TwBoundControl& state) const override {
        auto* button = static_cast<QAbstractButton*>(control);
        QObject::connect(button, &QAbstractButton::clicked, &state, [button, &state](bool checked) {
            if (button->isCheckable())
                state.userEdited(TwBindingKind::Value,
                                 checkedValue(state.value(TwBindingKind::Value), checked));
        });
    }

private:
    const char* m_name;
    bool m_checkBox;
};

// ---- Radio group or segmented control -------------------------------------------------------------

class SegmentedAdapter : public TwControlAdapter {
public:
    SegmentedAdapter() : TwControlAdapter({TwBindingKind::SelectedIndex, TwBindingKind::SelectedTag}) {}
    const char* name() const override { return "radio group"; }

    void show(QObject* control, TwBindingKind kind, const TwBoundControl& state) const override {
        auto* group = static_cast<TwSegmentedControl*>(control);
        TwValue v = state.value(kind);
        if (kind == TwBindingKind::SelectedTag) {
            if (!v.isNumber() || !group->setSelectedTag(int(v.longLongValue())))
                group->setSelectedIndex(-1);
        } else {
            group->setSelectedIndex(v.isNumber() ? int(v.longLongValue()) : -1);
        }
    }

    void connectEdits(QObject* control, TwBoundControl& state) const override {
        auto* group = static_cast<TwSegmentedControl*>(control);
        QObject::connect(group, &TwSegmentedControl::segmentClicked, &state, [group, &state](int index) {
            if (state.isBound(TwBindingKind::SelectedIndex))
                state.userEdited(TwBindingKind::SelectedIndex, TwValue(index));
            if (state.isBound(TwBindingKind::SelectedTag))
                state.userEdited(TwBindingKind::SelectedTag, TwValue(group->selectedTag()));
        });
    }
};

// ---- Group box: a title, and hidden; it is no control, so it has no enable binding -----------------

// The title, a supplied text, is elided to what the box holds.
class GroupBoxAdapter : public TwControlAdapter {
public:
    GroupBoxAdapter() : TwControlAdapter({TwBindingKind::Title}) {}
    const char* name() const override { return "group box"; }
    bool supports(const QObject*, TwBindingKind kind) const override {
        return kind == TwBindingKind::Title || kind == TwBindingKind::Hidden;
    }
    void show(QObject* control, TwBindingKind kind, const TwBoundControl& state) const override {
        TwElidedText::setTitle(static_cast<QGroupBox*>(control), textOf(state.value(kind)));
    }
};

// ---- Slider and stepper: real values on integer positions ------------------------------------------

class SliderAdapter : public TwControlAdapter {
public:
    SliderAdapter() : TwControlAdapter({TwBindingKind::Value}) {}
    const char* name() const override { return "slider"; }

    void show(QObject* control, TwBindingKind kind, const TwBoundControl& state) const override {
        TwSetScaledValue(static_cast<QWidget*>(control), state.value(kind).doubleValue());
    }

    void connectEdits(QObject* control, TwBoundControl& state) const override {
        auto* slider = static_cast<QAbstractSlider*>(control);
        // Dragging: each position while tracking.
        QObject::connect(slider, &QAbstractSlider::sliderMoved, &state, [slider, &state](int position) {
            if (slider->hasTracking())
                state.userEdited(TwBindingKind::Value, scaledValue(slider, position));
        });
        // Keys, wheel, page clicks and the release of an untracked drag. The position is already
        // the new one; the value follows right after.
        QObject::connect(slider, &QAbstractSlider::actionTriggered, &state, [slider, &state](int action) {
            if (action == QAbstractSlider::SliderNoAction || slider->isSliderDown())
                return;
            state.userEdited(TwBindingKind::Value, scaledValue(slider, slider->sliderPosition()));
        });
    }
};

class StepperAdapter : public TwControlAdapter {
public:
    StepperAdapter() : TwControlAdapter({TwBindingKind::Value, TwBindingKind::Editable}) {}
    const char* name() const override { return "stepper"; }

    void show(QObject* control, TwBindingKind kind, const TwBoundControl& state) const override {
        TwSetScaledValue(static_cast<QWidget*>(control), state.value(kind).doubleValue());
    }

    // A spin box has no signal of its own for user changes; values the bindings show are told
    // apart by the set's showing flag.
    void connectEdits(QObject* control, TwBoundControl& state) const override {
        if (auto* real = qobject_cast<QDoubleSpinBox*>(control))
            QObject::connect(real, &QDoubleSpinBox::valueChanged, &state,
                             [&state](double v) { state.userEdited(TwBindingKind::Value, TwValue(v)); });
        else if (auto* whole = qobject_cast<QSpinBox*>(control))
            QObject::connect(whole, &QSpinBox::valueChanged, &state, [whole, &state](int v) {
                state.userEdited(TwBindingKind::Value, scaledValue(whole, v));
            });
    }

    void setEditable(QObject* control, bool editable) const override {
        static_cast<QAbstractSpinBox*>(control)->setReadOnly(!editable);
    }
};

// ---- Table or list: the selected row ---------------------------------------------------------------

class ItemViewAdapter : public TwControlAdapter {
public:
    ItemViewAdapter() : TwControlAdapter({TwBindingKind::SelectedIndex, TwBindingKind::Value}) {}
    const char* name() const override { return "table"; }

    bool supports(const QObject* control, TwBindingKind kind) const override {
        // Rows can be made only where the view owns its items.
        if (kind == TwBindingKind::Content || kind == TwBindingKind::ContentValues)
            return qobject_cast<const QListWidget*>(control) || qobject_cast<const QTableWidget*>(control);
        return TwControlAdapter::supports(control, kind);
    }

    void show(QObject* control, TwBindingKind kind, const TwBoundControl& state) const override {
        auto* view = static_cast<QAbstractItemView*>(control);
        if (kind == TwBindingKind::Content || kind == TwBindingKind::ContentValues) {
            rebuild(view, state);
            for (TwBindingKind k : {TwBindingKind::SelectedIndex, TwBindingKind::Value})
                if (state.isBound(k))
                    select(view, state.value(k));
            return;
        }
        select(view, state.value(kind));
    }

    static void rebuild(QAbstractItemView* view, const TwBoundControl& state) {
        TwBindingKind source = state.isBound(TwBindingKind::ContentValues) ? TwBindingKind::ContentValues
                                                                           : TwBindingKind::Content;
        QStringList titles;
        for (const TwValue& v : itemsOf(state.value(source)))
            titles << entryTitle(view, v);
        if (auto* list = qobject_cast<QListWidget*>(view)) {
            list->clear();
            list->addItems(titles);
        } else if (auto* table = qobject_cast<QTableWidget*>(view)) {
            table->setRowCount(int(titles.size()));
            if (table->columnCount() == 0)
                table->setColumnCount(1);
            for (int row = 0; row < titles.size(); ++row)
                table->setItem(row, 0, new QTableWidgetItem(titles[row]));
        }
    }

    static void select(QAbstractItemView* view, const TwValue& v) {
        QAbstractItemModel* model = view->model();
        QItemSelectionModel* selection = view->selectionModel();
        if (!model || !selection)
            return;
        long long row = v.isNumber() ? v.longLongValue() : -1;
        if (row >= 0 && row < model->rowCount()) {
            selection->setCurrentIndex(model->index(int(row), 0),
                                       QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        } else {
            selection->clearSelection();
            selection->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
        }
    }

    // Selection changes are told apart from the bindings' own by the showing flag. A view must
    // have its item model before it is bound.
    void connectEdits(QObject* control, TwBoundControl& state) const override {
        auto* view = static_cast<QAbstractItemView*>(control);
        if (!view->selectionModel())
            return;
        QObject::connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, &state,
                         [&state](const QModelIndex& current) {
                             TwValue row(current.isValid() ? current.row() : -1);
                             for (TwBindingKind k : {TwBindingKind::SelectedIndex, TwBindingKind::Value})
                                 if (state.isBound(k))
                                     state.userEdited(k, row);
                         });
    }
};

// ---- Any other widget with a USER property, like QDataWidgetMapper finds one -----------------------

class UserPropertyAdapter : public TwControlAdapter {
public:
    UserPropertyAdapter() : TwControlAdapter({TwBindingKind::Value}) {}
    const char* name() const override { return "user property"; }

    void show(QObject* control, TwBindingKind kind, const TwBoundControl& state) const override {
        QMetaProperty property = control->metaObject()->userProperty();
        property.write(control, TwValueToVariant(state.value(kind), property.metaType()));
    }

    void connectEdits(QObject* control, TwBoundControl& state) const override {
        QMetaProperty property = control->metaObject()->userProperty();
        if (!property.hasNotifySignal())
            return;
        int slot = state.metaObject()->indexOfSlot("userPropertyChanged()");
        QObject::connect(control, property.notifySignal(), &state, state.metaObject()->method(slot));
    }
};

// ---- Any other widget: enabled and hidden only ----------------------------------------------------

class WidgetAdapter : public TwControlAdapter {
public:
    WidgetAdapter() : TwControlAdapter({}) {}
    const char* name() const override { return "view"; }
    void show(QObject*, TwBindingKind, const TwBoundControl&) const override {}
};

// ---- An object that is no widget: the Qt property named like the binding ---------------------------

class PropertyAdapter : public TwControlAdapter {
public:
    PropertyAdapter() : TwControlAdapter({}) {}
    const char* name() const override { return "object property"; }

    bool supports(const QObject* control, TwBindingKind kind) const override {
        int index = control->metaObject()->indexOfProperty(TwBindingKindName(kind));
        return index >= 0 && control->metaObject()->property(index).isWritable();
    }
    void show(QObject* control, TwBindingKind kind, const TwBoundControl& state) const override {
        write(control, kind, state.value(kind));
    }
    void setEnabled(QObject* control, bool enabled) const override {
        write(control, TwBindingKind::Enabled, TwValue(enabled));
    }
    void setHidden(QObject* control, bool hidden) const override {
        write(control, TwBindingKind::Hidden, TwValue(hidden));
    }
    void setEditable(QObject* control, bool editable) const override {
        write(control, TwBindingKind::Editable, TwValue(editable));
    }

private:
    static void write(QObject* control, TwBindingKind kind, const TwValue& value) {
        int index = control->metaObject()->indexOfProperty(TwBindingKindName(kind));
        if (index < 0)
            return;
        QMetaProperty property = control->metaObject()->property(index);
        property.write(control, TwValueToVariant(value, property.metaType()));
    }
};

} // namespace

// ---- The base -------------------------------------------------------------------------------------

TwControlAdapter::TwControlAdapter(std::initializer_list<TwBindingKind> kinds) {
    for (TwBindingKind k : kinds)
        m_kinds |= bit(k);
}

bool TwControlAdapter::supports(const QObject* control, TwBindingKind kind) const {
    if ((kind == TwBindingKind::Enabled || kind == TwBindingKind::Hidden) && control &&
        control->isWidgetType())
        return true;
    return (m_kinds & bit(kind)) != 0;
}

void TwControlAdapter::connectEdits(QObject*, TwBoundControl&) const {}

bool TwControlAdapter::commitEditing(QObject*, TwBoundControl&) const {
    return true;
}

void TwControlAdapter::setEnabled(QObject* control, bool enabled) const {
    if (auto* w = qobject_cast<QWidget*>(control))
        w->setEnabled(enabled);
}

void TwControlAdapter::setHidden(QObject* control, bool hidden) const {
    auto* w = qobject_cast<QWidget*>(control);
    // A binding never opens a window: a top-level widget is only ever hidden by one.
    if (!w || (w->isWindow() && !hidden))
        return;
    w->setHidden(hidden);
}

void TwControlAdapter::setEditable(QObject*, bool) const {}

// ---- Lookup ---------------------------------------------------------------------------------------

const TwControlAdapter* TwAdapterForControl(const QObject* control) {
    static const PopUpAdapter popUp;
    static const ComboBoxAdapter comboBox;
    static const LineEditAdapter lineEdit;
    static const LabelAdapter label;
    static const ImageViewAdapter imageView;
    static const ButtonAdapter checkBox("check box", true);
    static const ButtonAdapter pushButton("push button", false);
    static const SegmentedAdapter segmented;
    static const GroupBoxAdapter groupBox;
    static const SliderAdapter slider;
    static const StepperAdapter stepper;
    static const ItemViewAdapter itemView;
    static const UserPropertyAdapter userProperty;
    static const WidgetAdapter widget;
    static const PropertyAdapter property;

    if (!control)
        return &property;
    // Most derived classes first.
    if (qobject_cast<const TwImageView*>(control))
        return &imageView;
    if (qobject_cast<const TwSegmentedControl*>(control))
        return &segmented;
    if (auto* combo = qobject_cast<const QComboBox*>(control))
        return combo->isEditable() ? static_cast<const TwControlAdapter*>(&comboBox) : &popUp;
    if (qobject_cast<const QLineEdit*>(control))
        return &lineEdit;
    if (qobject_cast<const QLabel*>(control))
        return &label;
    if (qobject_cast<const QCheckBox*>(control) || qobject_cast<const QRadioButton*>(control))
        return &checkBox;
    if (qobject_cast<const QAbstractButton*>(control))
        return &pushButton;
    if (qobject_cast<const QGroupBox*>(control))
        return &groupBox;
    if (qobject_cast<const QAbstractSlider*>(control))
        return &slider;
    if (qobject_cast<const QDoubleSpinBox*>(control) || qobject_cast<const QSpinBox*>(control))
        return &stepper;
    if (qobject_cast<const QAbstractItemView*>(control))
        return &itemView;
    if (control->metaObject()->userProperty().isValid())
        return &userProperty;
    if (control->isWidgetType())
        return &widget;
    return &property;
}

const TwFormatter* TwFormatterOfControl(const QObject* control) {
    if (auto* edit = qobject_cast<const QLineEdit*>(control))
        return qobject_cast<const TwFormatter*>(edit->validator());
    if (auto* combo = qobject_cast<const QComboBox*>(control))
        return combo->lineEdit() ? qobject_cast<const TwFormatter*>(combo->lineEdit()->validator()) : nullptr;
    return nullptr;
}

bool TwWidgetIsControl(const QWidget* widget) {
    if (!widget)
        return false;
    // Containers: a group box has a USER property (checked) but holds the controls.
    if (qobject_cast<const QScrollArea*>(widget) || qobject_cast<const QGroupBox*>(widget))
        return false;
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QAbstractSlider*>(widget) ||
           qobject_cast<const QAbstractSpinBox*>(widget) || qobject_cast<const QLabel*>(widget) ||
           qobject_cast<const QAbstractScrollArea*>(widget) || qobject_cast<const QTabBar*>(widget) ||
           qobject_cast<const TwSegmentedControl*>(widget) || widget->metaObject()->userProperty().isValid();
}

// ---- Conversions ----------------------------------------------------------------------------------

QVariant TwValueToVariant(const TwValue& value, const QMetaType& type) {
    switch (type.id()) {
    case QMetaType::Bool:
        return value.boolValue();
    case QMetaType::Int:
        return value.intValue();
    case QMetaType::UInt:
        return value.unsignedIntValue();
    case QMetaType::Long:
    case QMetaType::LongLong:
        return qlonglong(value.longLongValue());
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return qulonglong(value.longLongValue());
    case QMetaType::Double:
        return value.doubleValue();
    case QMetaType::Float:
        return value.floatValue();
    case QMetaType::QString:
        return textOf(value);
    case QMetaType::QByteArray:
        if (const TwBytes* bytes = value.data())
            return QByteArray(reinterpret_cast<const char*>(bytes->data()), qsizetype(bytes->size()));
        return QByteArray::fromStdString(value.stringValue());
    default:
        break;
    }
    QVariant natural;
    if (value.isBoolean())
        natural = value.boolValue();
    else if (value.isInteger())
        natural = qlonglong(value.longLongValue());
    else if (value.isReal())
        natural = value.doubleValue();
    else if (value.isString())
        natural = textOf(value);
    if (natural.isValid() && type.isValid() && natural.canConvert(type))
        natural.convert(type);
    return natural;
}

TwValue TwValueFromVariant(const QVariant& variant) {
    switch (variant.typeId()) {
    case QMetaType::Bool:
        return TwValue(variant.toBool());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return TwValue(variant.toLongLong());
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return TwValue(variant.toULongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return TwValue(variant.toDouble());
    case QMetaType::QString:
        return TwValue(variant.toString().toStdString());
    case QMetaType::QByteArray: {
        QByteArray b = variant.toByteArray();
        return TwValue(TwBytes(b.begin(), b.end()));
    }
    default:
        break;
    }
    if (variant.canConvert<QString>())
        return TwValue(variant.toString().toStdString());
    return TwValue();
}
