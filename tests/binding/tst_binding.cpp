// The binding layer. The responder binding: the core bind with its missing-key refusal and
// numbered names, the content, value and model-definition conventions, pair lists, observations,
// enabling a view tree, and tear-down that leaves neither observers nor bindings behind. Each
// control class both ways: a model change shows on the control without being written back, and a
// user action writes the model once with the value the control stands for. Ending the editing of a
// window: a rejected entry refuses with the range message and keeps the focus; accepted entries
// are written and shown with their pattern. The number and text formatters and the range helpers:
// bounds, patterns and messages for 0, 1, 2 and negative places, parsing and partial entries, the
// length limit, and the scaled ranges of sliders and steppers. Whole tabs bound, unbound and bound
// again are in the form tests.
#include "ChangeRecorder.h"
#include "TwObservableValues.h"
#include "WidgetTestSupport.h"

#include <stdexcept>

using Names = std::vector<std::string>;

// A widget the class table does not know: found through its USER property.
class ColourPicker : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString colour READ colour WRITE setColour NOTIFY colourChanged USER true)
public:
    QString colour() const { return m_colour; }
    void setColour(const QString& c) {
        if (c == refused)
            throw std::invalid_argument("no colour " + c.toStdString());
        if (c == m_colour)
            return;
        m_colour = c;
        emit colourChanged();
    }
    // What a user pick does.
    void pick(const QString& c) { setColour(c); }
    QString refused; // a colour the picker throws at
signals:
    void colourChanged();

private:
    QString m_colour;
};

// An object that is no widget: bound through its properties by name.
class Gauge : public QObject {
    Q_OBJECT
    Q_PROPERTY(double value MEMBER value)
    Q_PROPERTY(bool enabled MEMBER enabled)
public:
    double value = 0;
    bool enabled = true;
};

class TestBinding : public QObject {
    Q_OBJECT

    TwainDialogData model;
    std::unique_ptr<TwResponderBinding> rb;
    std::unique_ptr<QWidget> window;
    using Alerts = QList<std::pair<QWidget*, QString>>;
    Alerts alerts; // the field and the message of each refusal
    QLineEdit* ratio = nullptr;
    QLineEdit* name = nullptr;

    // Two bound fields of a panel: a ratio of 10.0 to 356.0 and a name.
    void addRatioAndName() {
        ratio = bound(ranged(new QLineEdit, 100, 3560, 1), "Data.Ratio", 12);
        name = bound(new QLineEdit, "Data.Name", "scan");
    }

    // The control shown in the window.
    template <class W> W* placed(W* control) {
        control->setParent(window.get());
        control->show();
        return control;
    }
    // A field (or editable combo box) that takes numbers of the range.
    template <class W> static W* ranged(W* control, int minimum, int maximum, int places) {
        if constexpr (std::is_same_v<W, QComboBox>)
            control->setEditable(true);
        SetTextRange(control, minimum, maximum, places);
        return control;
    }
    // Gives the key path its first value, puts the control in the window and binds its value.
    template <class W> W* bound(W* control, const char* keyPath, const TwValue& value) {
        model.setValueForKeyPath(value, keyPath);
        rb->bindValue(placed(control), &model, keyPath);
        return control;
    }

    static std::unique_ptr<TwainNumberFormatter> formatter(int minimum, int maximum, int places) {
        return std::unique_ptr<TwainNumberFormatter>(CreateTextRangeFormatter(minimum, maximum, places));
    }

    static Names names(const QObject* control) { return TwBoundControl::bindingNames(control); }

    static Names recordNames(const TwResponderBinding& rb) {
        Names out;
        for (auto& r : rb.bindings())
            out.push_back(r.name());
        return out;
    }

    static std::string keyPathOf(const QObject* control, const char* name) {
        auto info = TwBoundControl::infoForBinding(control, name);
        return info ? info->keyPath : std::string("(unbound)");
    }

private slots:
    void init() {
        rb = std::make_unique<TwResponderBinding>();
        window = std::make_unique<QWidget>();
        window->resize(400, 300);
        window->show(); // clicks need laid out, visible buttons
        alerts.clear();
        TwSetFormatterAlert([this](QWidget* field, const QString& message) {
            alerts.push_back({field, message});
        });
        // This module's own bundle as the build lays it out.
        TwBundle::setModuleBundlePath(VMX_BUNDLE_DIR);
        qputenv("LANGUAGE", "en");
    }
    void cleanup() {
        rb.reset();
        window.reset();
        TwSetFormatterAlert({});
        TwBundle::setModuleBundlePath("");
        QCOMPARE(model.observationCount(), std::size_t(0));
    }

    // ---- names ----

    // Numbers only on the combined kinds, from 2 on, without sign or leading zero.
    void bindingNames() {
        // A name and the plain name of its kind, or nothing after the colon for no kind.
        const QString table =
            "value:value enabled:enabled enabled2:enabled hidden10:hidden editable3:editable "
            "enabled1: enabled02: enabled2x: value2: :";
        for (const QString& row : table.split(' ')) {
            auto found = TwBindingKindForName(row.section(':', 0, 0).toStdString());
            QVERIFY2(QString(found ? TwBindingKindName(*found) : "") == row.section(':', 1), qPrintable(row));
        }
    }

    // ---- core bind ----

    // A key path without a value (or no model), a binding the class does not offer, an unknown
    // binding name and no control: each binds nothing, leaves the control as it is and is logged.
    void refusedBindingsBindNothingAndAreLogged() {
        LogCapture log;
        TwainDialogData model;
        model.setValueForKeyPath("x", "Data.Title");
        ChangeRecorder responder;
        TwResponderBinding rb(&responder), anonymous;
        QLineEdit edit("as loaded");
        QGroupBox box;
        rb.bindValue(&edit, &model, "Data.Missing");
        rb.bindValue(&edit, nullptr, "Data.Name");
        anonymous.bind(kTwTitleBinding, &edit, &model, "Data.Title");
        rb.bind(kTwEnabledBinding, &box, &model, "Data.Title"); // a box has no enabled binding
        rb.bind("colour", &edit, &model, "Data.Title");
        rb.bind(kTwValueBinding, nullptr, &model, "Data.Title");
        QVERIFY(rb.bindings().empty() && anonymous.bindings().empty());
        QVERIFY(names(&edit).empty() && names(&box).empty());
        QCOMPARE(model.observationCount(), std::size_t(0));
        QCOMPARE(edit.text(), QString("as loaded"));
        for (const char* line :
             {"ERROR: TwResponderBinding::bind(ChangeRecorder): TwainDialogData is not found "
              "KeyPath:Data.Missing\n",
              "(null) is not found KeyPath:Data.Name",
              "ERROR: TwResponderBinding::bind((null)): bind title withKeyPath:Data.Title, QLineEdit offers "
              "no "
              "binding title\n",
              "QGroupBox offers no binding enabled", "no binding is named colour", "no control"})
            QVERIFY2(log.count(line) == 1, line);
    }

    // Several enabled or editable bindings on one control combine by AND, hidden ones by OR. Each
    // takes the first free numbered name; the others decide alone once one is gone, and an unbound
    // control no longer follows.
    void multiValueBindingsCombine_data() {
        // any: OR rather than AND
        columns<QString, bool>("kind", "any");
        row("enabled", "enabled", false);
        row("hidden", "hidden", true);
        row("editable", "editable", false);
    }
    void multiValueBindingsCombine() {
        auto [kind, any] = fetch<QString, bool>("kind", "any");
        const std::string k = kind.toStdString();
        const Names keys{"flag.A", "flag.B", "flag.C"};
        TwainDialogData model;
        for (auto& key : keys)
            model.setValueForKeyPath(false, key);
        QWidget window;
        QLineEdit edit(&window);
        auto state = [&] {
            return k == "enabled" ? edit.isEnabled() : k == "hidden" ? edit.isHidden() : !edit.isReadOnly();
        };
        TwResponderBinding rb;
        for (auto& key : keys)
            rb.bind(k, &edit, &model, key);
        QCOMPARE(names(&edit), (Names{k, k + "2", k + "3"}));
        QCOMPARE(recordNames(rb), names(&edit));
        QCOMPARE(keyPathOf(&edit, (k + "2").c_str()), std::string("flag.B"));
        QCOMPARE(model.observationCount(), std::size_t(3));
        for (int bits = 0; bits < 8; ++bits) {
            for (int i = 0; i < 3; ++i)
                model.setValueForKeyPath(bool(bits >> i & 1), keys[i]);
            QCOMPARE(state(), any ? bits != 0 : bits == 7);
        }
        for (int i = 0; i < 3; ++i)
            model.setValueForKeyPath(i == 0 ? any : !any, keys[i]);
        QCOMPARE(state(), any);
        QVERIFY(TwBoundControl::unbind(&edit, k));
        QCOMPARE(state(), !any);
        rb.bind(k, &edit, &model, "flag.A");
        QCOMPARE(names(&edit), (Names{k + "2", k + "3", k}));
        QCOMPARE(state(), any);

        rb.unbindAll();
        QVERIFY(rb.bindings().empty() && names(&edit).empty());
        QCOMPARE(model.observationCount(), std::size_t(0));
        const bool left = state();
        for (auto& key : keys)
            model.setValueForKeyPath(!left, key);
        QCOMPARE(state(), left);
    }

    void sameNameAgainReplaces() {
        TwainDialogData model;
        model.setValueForKeyPath("one", "Data.A");
        model.setValueForKeyPath("two", "Data.B");
        QLineEdit edit;
        TwResponderBinding rb;
        rb.bindValue(&edit, &model, "Data.A");
        rb.bindValue(&edit, &model, "Data.B");
        QCOMPARE(names(&edit), Names{"value"});
        QCOMPARE(keyPathOf(&edit, "value"), std::string("Data.B"));
        QCOMPARE(rb.bindings().size(), std::size_t(2));
        QCOMPARE(model.observationCount(), std::size_t(1));
        model.setValueForKeyPath("changed", "Data.A");
        QCOMPARE(edit.text(), QString("two"));
        rb.unbindAll();
        QVERIFY(rb.bindings().empty());
        QCOMPARE(model.observationCount(), std::size_t(0));
    }

    // ---- conventions ----

    void contentBindings_data() {
        // plainValues: bindContentValues: a list of plain values
        columns<bool, bool, QStringList>("editable", "plainValues", "expected");
        row("combo box", true, false,
            QStringList{"content=content.List", "contentValues=content.List.value"});
        row("pop-up", false, false,
            QStringList{"content=content.List", "contentObjects=content.List.value",
                        "contentValues=content.List.display"});
        row("plain values: the same key twice", true, true,
            QStringList{"content=content.List", "contentValues=content.List"});
    }
    void contentBindings() {
        auto [editable, plainValues] = fetch<bool, bool>("editable", "plainValues");
        TwainDialogData model;
        model.setValueForKeyPath(
            plainValues ? array({"1", "2"}) : array({choice(1, "one"), choice(2, "two")}), "content.List");
        QComboBox combo;
        combo.setEditable(editable);
        TwResponderBinding rb;
        plainValues ? rb.bindContentValues(&combo, &model, "content.List")
                    : rb.bindContent(&combo, &model, "content.List");
        const QStringList made = mapped(names(&combo), [&](const std::string& n) {
            return QString::fromStdString(n + "=" + keyPathOf(&combo, n.c_str()));
        });
        QTEST(made, "expected");
        QCOMPARE(rb.bindings().size(), std::size_t(made.size()));
        QCOMPARE(combo.itemText(1), editable ? QString("2") : QString("two"));
    }

    // A dialog's own values (a name and the names to pick from) bind as the model's do.
    void ownValuesBindLikeTheModel() {
        TwObservableValues values{{"name", "Office"}, {"nameList", array({"Office", "Photos"})}};
        QComboBox names;
        names.setEditable(true);
        TwResponderBinding rb;
        rb.bindContentValues(&names, &values, "nameList");
        rb.bindValue(&names, &values, "name");
        QCOMPARE(names.itemText(1), QString("Photos"));
        QCOMPARE(names.currentText(), QString("Office"));
        // Typing writes as it goes (no formatter: the text itself); new choices keep the text.
        names.lineEdit()->selectAll();
        QTest::keyClicks(names.lineEdit(), "Receipts");
        QCOMPARE(values.valueForKeyPath("name"), TwValue("Receipts"));
        values.setValueForKeyPath(array({"A", "B", "C"}), "nameList");
        QCOMPARE(names.count(), 3);
        QCOMPARE(names.currentText(), QString("Receipts"));

        ChangeRecorder counter(values, {"name"});
        values.changeValue("Receipts", "name"); // equal: nobody is told
        QCOMPARE(counter.count(), 0);
        values.changeValue("Other", "name");
        QCOMPARE(counter.count(), 1);
        values.setValueForKeyPath(1, "name.below"); // a string is in the way: dropped
        QCOMPARE(values.valueForKeyPath("name"), TwValue("Other"));
        rb.unbindAll();
        QCOMPARE(values.observationCount(), std::size_t(1)); // the counter's own
    }

    void controlDefs() {
        LogCapture log;
        TwainDialogData model;
        TestModelDef defs;
        defs.controls = dict({{"View", dict({{"Box", dict({{"enabled", true}, {"hidden", true}})},
                                             {"Button", dict({{"enabled", false}, {"hidden", false}})},
                                             {"Crop", dict({{"hidden", false}})}})}});
        model.setValueForKeyPath(true, "enable.Button");
        QWidget window;
        QGroupBox box(&window);
        QPushButton button(&window);
        QCheckBox crop(&window);
        TwResponderBinding rb;
        TwBindList pairs{"Box", &box, "Button", &button, "Crop", &crop};
        rb.bindControlDefs(pairs, &model, "View"); // no model definition at all
        model.setModelDef(&defs);
        rb.bindControlDefs(pairs, &model, "Feed"); // nothing defined for this dialog
        QVERIFY(rb.bindings().empty());
        QCOMPARE(log.count("is not found"), 0);
        rb.bindEnabled(&button, &model, "enable.Button");
        rb.bindControlDefs(pairs, &model, "View");
        // A box offers no enabled binding; a missing entry is the usual refusal.
        QCOMPARE(names(&box), Names{"hidden"});
        QCOMPARE(keyPathOf(&box, "hidden"), std::string("ModelDef.UIControl.View.Box.hidden"));
        QCOMPARE(names(&button), (Names{"enabled", "enabled2", "hidden"}));
        QCOMPARE(keyPathOf(&button, "enabled2"), std::string("ModelDef.UIControl.View.Button.enabled"));
        QCOMPARE(names(&crop), Names{"hidden"});
        QCOMPARE(log.count("is not found KeyPath:ModelDef.UIControl.View.Crop.enabled"), 1);
        QVERIFY(box.isHidden());
        QVERIFY(!button.isEnabled()); // the model definition disables it, whatever enable.Button says
    }

    // ---- pair lists ----

    // An odd last key, absent controls and objects that are no widgets are skipped without a word;
    // a control in two pairs gets both bindings.
    void pairListsSkipWhatDoesNotFit() {
        LogCapture log;
        TwainDialogData model;
        for (const char* key : {"Data.A", "Data.B", "Data.C"})
            model.setValueForKeyPath("text", key);
        QWidget window;
        QLineEdit a(&window), b(&window), c(&window);
        QObject notAWidget;
        QLineEdit* absent = nullptr;
        TwResponderBinding rb;
        rb.bindValues({"Data.A", &a, "Data.B", &b, "Data.C"}, &model);
        QCOMPARE(recordNames(rb), (Names{"value", "value"}));
        QVERIFY(names(&c).empty());
        rb.unbindAll();
        rb.bindValues({"Data.A", absent, "Data.B", &notAWidget, &c, "Data.C", nullptr, &c, "Data.C", &c},
                      &model);
        QCOMPARE(names(&c), Names{"value"});
        QCOMPARE(keyPathOf(&c, "value"), std::string("Data.C"));
        rb.bindEnableds({"Data.A", &a, "Data.B"}, &model);
        QCOMPARE(names(&a), Names{"enabled"});
        rb.bindEnableds({"Data.A", &b, "Data.B", &b}, &model);
        QCOMPARE(names(&b), (Names{"enabled", "enabled2"}));
        rb.bindContents({"Data.A"}, &model);
        rb.bindContents({}, &model);
        QCOMPARE(rb.bindings().size(), std::size_t(4));
        // A list of responders: the widgets among them.
        rb.bind(kTwHiddenBinding, std::vector<QObject*>{&a, nullptr, &notAWidget, &c}, &model, "Data.A");
        QCOMPARE(names(&c), (Names{"value", "hidden"}));
        QCOMPARE(rb.bindings().size(), std::size_t(6));
        QCOMPARE(log.count("ERROR"), 0);
    }

    // ---- observation ----

    // Once per object and key path, undone only by what registered it; a single key path hears the
    // new value only, a key path array new and old, and skips what is no string.
    void observationsAreRegisteredOnce() {
        TwainDialogData model, other;
        model.setValueForKeyPath(1, "Data.B");
        ChangeRecorder responder;
        TwResponderBinding rb(&responder), noResponder;
        rb.addResponderObserver(nullptr, "Data.A");
        noResponder.addResponderObserver(&model, "Data.A");
        QVERIFY(rb.observations().empty() && noResponder.observations().empty());
        rb.addResponderObserver(&model, "Data.A");
        rb.addResponderObserver(&model, "Data.A");
        rb.addResponderObserver(&model, "Data.A", kTwObserveNew | kTwObserveOld);
        QCOMPARE(model.observationCount(&responder), std::size_t(1));
        QCOMPARE(rb.observations().at("Data.A").size(), std::size_t(1));
        model.setValueForKeyPath(1, "Data.A");
        model.setValueForKeyPath(2, "Data.A");
        QCOMPARE(responder.seen.size(), std::size_t(2));
        QCOMPARE(responder.seen.back().newValue, TwValue(2));
        QVERIFY(responder.seen.back().oldValue.isNull());

        rb.removeResponderObserver(&model, "Data.B");
        rb.removeResponderObserver(&other, "Data.A");
        QCOMPARE(model.observationCount(&responder), std::size_t(1));
        rb.removeResponderObserver(&model, "Data.A");
        rb.removeResponderObserver(&model, "Data.A");
        QCOMPARE(model.observationCount(), std::size_t(0));

        rb.addResponderObserverForKeyPathArray(&model, array({"Data.B", 7, TwValue(), "Data.C", "Data.B"}));
        rb.addResponderObserverForKeyPathArray(&model, TwValue("not an array"));
        QCOMPARE(model.observationCount(&responder), std::size_t(2));
        model.setValueForKeyPath(5, "Data.B");
        QCOMPARE(responder.seen.back().oldValue, TwValue(1));
        QCOMPARE(responder.seen.back().newValue, TwValue(5));
        rb.removeObserverAll();
        QCOMPARE(model.observationCount(&responder), std::size_t(0));
        QVERIFY(rb.observations().empty());
    }

    // ---- a view tree ----

    void subviewsFollowOneEnableKey() {
        TwainDialogData model;
        model.setValueForKeyPath(true, "enable.All");
        model.setValueForKeyPath(true, "enable.Own");
        QWidget tab;
        auto* box = new QGroupBox(&tab);
        auto* edit = new QLineEdit(box);
        auto* inner = new QWidget(box);
        auto* slider = new QSlider(inner);
        auto* combo = new QComboBox(&tab);
        combo->setEditable(true);
        auto* list = new QListWidget(&tab);
        auto* group = new TwSegmentedControl(&tab);
        auto* radio = new QRadioButton(group);
        auto* label = new QLabel(&tab);
        TwResponderBinding rb;
        rb.bindEnabled(edit, &model, "enable.Own");
        rb.bindSubviewsEnabled(&tab, &model, "enable.All");
        for (QWidget* w : std::initializer_list<QWidget*>{combo, list, group, label, slider})
            QVERIFY2(names(w) == Names{"enabled"}, w->metaObject()->className());
        QCOMPARE(names(edit), (Names{"enabled", "enabled2"}));
        // Containers, and the inner widgets of controls, get nothing.
        for (QWidget* w : std::initializer_list<QWidget*>{box, inner, combo->lineEdit(), radio,
                                                          list->verticalScrollBar(), list->viewport()})
            QVERIFY2(names(w).empty(), w->metaObject()->className());
        model.setValueForKeyPath(false, "enable.All");
        for (QWidget* w : std::initializer_list<QWidget*>{combo, list, group, label, slider, edit})
            QVERIFY(!w->isEnabled());
        model.setValueForKeyPath(true, "enable.All");
        QVERIFY(slider->isEnabled() && edit->isEnabled());
        rb.bindSubviewsEnabled(nullptr, &model, "enable.All");
    }

    // ---- tear-down ----

    void destructionEndsObservationsAndBindings() {
        TwainDialogData model;
        model.setValueForKeyPath("x", "Data.A");
        ChangeRecorder responder;
        QLineEdit edit;
        auto rb = std::make_unique<TwResponderBinding>(&responder);
        rb->addResponderObserver(&model, "Data.A");
        rb->bindValue(&edit, &model, "Data.A");
        QCOMPARE(model.observationCount(), std::size_t(2));
        rb.reset();
        QCOMPARE(model.observationCount(), std::size_t(0));
        QVERIFY(names(&edit).empty());
    }

    void unbindAllUndoesTheLatestFirstAndSkipsGoneControls() {
        // Removing the latest of two enabled bindings first leaves the earlier one deciding, and the
        // last removal leaves the state as it is: the order shows in the final state.
        TwainDialogData model;
        model.setValueForKeyPath(true, "enable.Early");
        model.setValueForKeyPath(false, "enable.Late");
        QPushButton button;
        auto* gone = new QLineEdit;
        TwResponderBinding rb;
        rb.bindEnabled(&button, &model, "enable.Early");
        rb.bindEnabled(gone, &model, "enable.Early");
        rb.bindEnabled(&button, &model, "enable.Late");
        QVERIFY(!button.isEnabled());
        delete gone; // its bindings go with it
        QCOMPARE(model.observationCount(), std::size_t(2));
        rb.unbindAll();
        QVERIFY(button.isEnabled());
        QVERIFY(rb.bindings().empty());
        QCOMPARE(model.observationCount(), std::size_t(0));
    }

    void unbindFromInsideAChange() {
        // A responder that tears everything down when told of a change, while the control's own
        // binding is being told of the same change.
        ChangeRecorder teardown;
        TwainDialogData model;
        model.setValueForKeyPath("a", "Data.A");
        TwResponderBinding rb(&teardown);
        teardown.onChange = [&](const std::string&) {
            rb.unbindAll();
        };
        QLineEdit first, second;
        rb.bindValue(&first, &model, "Data.A");
        rb.addResponderObserver(&model, "Data.A");
        rb.bindValue(&second, &model, "Data.A");
        model.setValueForKeyPath("b", "Data.A");
        QCOMPARE(first.text(), QString("b"));
        QVERIFY(rb.bindings().empty());
        rb.removeObserverAll();
        QCOMPARE(model.observationCount(), std::size_t(0));
    }

    // ---- Formatters and ranges ----

    // ---- number formatter set-up ----

    // Pattern, bounds and message; whether fractions are allowed, and how many, the parsing and
    // partial cases show.
    void rangeSetUp_data() {
        columns<int, int, int, QString, double, double, QString>("minimum", "maximum", "places", "pattern",
                                                                 "low", "high", "message");
        row("no places", 1, 300, 0, "0", 1.0, 300.0, "Enter a number from 1 to 300.");
        row("one place", 100, 3560, 1, "0.0", 10.0, 356.0, "Enter a number from 10.0 to 356.0.");
        row("two places", 1, 500, 2, "0.00", 0.01, 5.0, "Enter a number from 0.01 to 5.00.");
        row("negative places", 5, 50, -2, "0", 5.0, 50.0, "Enter a number from 5 to 50.");
        row("negative bounds", -250, 250, 1, "0.0", -25.0, 25.0, "Enter a number from -25.0 to 25.0.");
        row("empty range", 0, 0, 0, "0", 0.0, 0.0, "Enter a number from 0 to 0.");
    }
    void rangeSetUp() {
        auto [minimum, maximum, places] = fetch<int, int, int>("minimum", "maximum", "places");
        // Set up over one made for another range: every part is replaced.
        auto f = formatter(-7, 7, places > 0 ? 0 : 1);
        SetTextRangeFormatter(f.get(), minimum, maximum, places);
        QTEST(f->format(), "pattern");
        QVERIFY(f->minimum() && f->maximum());
        QTEST(*f->minimum(), "low");
        QTEST(*f->maximum(), "high");
        QTEST(f->errorString(), "message");
    }

    // ---- parsing ----

    void parsing_data() {
        columns<int, QString, bool, double>("places", "text", "accepted", "value");
        // 100..3560 with the given places: 10.0..356.0 (1), 1.00..35.60 (2), 100..3560 (0).
        row("1: inside", 1, "12.5", true, 12.5);
        row("1: upper bound", 1, "356", true, 356.0);
        row("1: above", 1, "400", false, 0.0);
        row("1: just above", 1, "356.1", false, 0.0);
        row("1: blanks around", 1, " 20 ", true, 20.0);
        row("1: rounded to the place", 1, "20.26", true, 20.3);
        row("1: letters", 1, "12a", false, 0.0);
        row("1: exponent", 1, "1e2", false, 0.0);
        row("1: empty", 1, "", false, 0.0);
        row("1: leading point", 1, ".5", false, 0.0);
        row("0: integer", 0, "3000", true, 3000.0);
        row("0: fraction refused", 0, "150.5", false, 0.0);
        row("-2: no places either", -2, "150.5", false, 0.0);
        row("-2: integer", -2, "150", true, 150.0);
        row("2: hundredths", 2, "1.01", true, 1.01);
        row("2: upper bound", 2, "35.6", true, 35.6);
        row("2: below", 2, "0.99", false, 0.0);
    }
    void parsing() {
        auto [places, text, accepted, value] =
            fetch<int, QString, bool, double>("places", "text", "accepted", "value");
        auto f = formatter(100, 3560, places);
        TwValue parsed;
        QString error;
        QCOMPARE(f->getObjectValue(&parsed, text, &error), accepted);
        // A rejection describes the range; an accepted number is whole exactly when there are no places.
        QCOMPARE(error, accepted ? QString() : f->errorString());
        QCOMPARE(parsed.doubleValue(), value);
        QCOMPARE(parsed.isInteger(), accepted && places <= 0);
        QCOMPARE(parsed.isReal(), accepted && places > 0);
    }

    // Numbers show with the user's language's decimal separator and are taken typed with either;
    // the range in the rejection shows the same way.
    void numbersInTheUsersLanguage_data() {
        columns<QByteArray, QString>("language", "separator");
        row("English", QByteArray("en_US.UTF-8"), ".");
        row("German", QByteArray("de_DE.UTF-8"), ",");
        row("French", QByteArray("fr"), ",");
        row("Japanese", QByteArray("ja_JP"), ".");
    }
    void numbersInTheUsersLanguage() {
        auto [language, separator] = fetch<QByteArray, QString>("language", "separator");
        UserLanguage user(language.constData());
        auto f = formatter(100, 3560, 1);
        QCOMPARE(f->stringFromNumber(12.5), "12" + separator + "5");
        QCOMPARE(f->stringFromNumber(-0.01), "0" + separator + "0");
        QCOMPARE(TwDecimalText(0.5, 2), "0" + separator + "50");
        for (const QString& typed : {QString("12,5"), QString("12.5"), QString(" 12,46 ")}) {
            TwValue parsed;
            QString error;
            QVERIFY2(f->getObjectValue(&parsed, typed, &error), qPrintable(typed));
            QCOMPARE(parsed.doubleValue(), 12.5); // 12.46 to the field's one place
            QVERIFY(f->isPartialStringValid(typed.trimmed().left(3)));
        }
        QVERIFY2(f->errorString().contains("10" + separator + "0") &&
                     f->errorString().contains("356" + separator + "0"),
                 qPrintable(f->errorString()));
        QVERIFY(!formatter(100, 3560, 0)->isPartialStringValid("12,5"));
    }

    // ---- the message text from the bundles ----

    // The range message comes from this module's table in the user's language, else the default.
    void rangeMessage() {
        // Language (none: no bundle at all), the table's text (none: no table), the message (in
        // German with German numbers).
        const char* cases[][3] = {{"de", "Erlaubt: %@ bis %@", "Erlaubt: 0,01 bis 5,00"},
                                  {"en", "From %2$@ down to %1$@ (100%%)", "From 5.00 down to 0.01 (100%)"},
                                  {"en", "", "Must in 0.01 - 5.00"},
                                  {"", "", "Must in 0.01 - 5.00"}};
        for (auto& [lang, text, message] : cases) {
            QTemporaryDir dir;
            QVERIFY(QDir().mkpath(dir.path() + "/Own.bundle/Contents/Resources/" + lang + ".lproj"));
            if (*text)
                writeStrings(dir.path() + "/Own.bundle", dict({{"IDS_MSG_INPUT_NUMER_RANGE", text}}), lang);
            TwBundle::setModuleBundlePath(*lang ? (dir.path() + "/Own.bundle").toStdString() : "");
            qputenv("LANGUAGE", lang);
            QCOMPARE(formatter(1, 500, 2)->errorString(), QString(message));
        }
    }

    // ---- display ----

    void display_data() {
        columns<int, TwValue, QString>("places", "value", "text");
        row("0: rounds", 0, TwValue(12.6), "13");
        row("0: integer", 0, TwValue(300), "300");
        row("1: integer padded", 1, TwValue(12), "12.0");
        row("1: real", 1, TwValue(356.04), "356.0");
        row("2: no minus zero", 2, TwValue(-0.001), "0.00");
        row("2: negative", 2, TwValue(-1.5), "-1.50");
        row("2: string number", 2, TwValue("12.5"), "12.50");
        row("2: null is the nil symbol", 2, TwValue(), "");
        row("1: array is the nil symbol", 1, array({1}), "");
    }
    void display() {
        auto [places, value] = fetch<int, TwValue>("places", "value");
        QTEST(formatter(-100000, 100000, places)->stringForObjectValue(value), "text");
    }

    void displayWithoutPatternTrimsZeros() {
        TwainNumberFormatter f;
        QCOMPARE(f.stringFromNumber(2.5), QString("2.5"));
        QCOMPARE(f.stringFromNumber(2.0), QString("2"));
        QCOMPARE(f.stringFromNumber(2.12345), QString("2.123"));
    }

    // ---- partial entries (as typed into a field) ----

    void partial_data() {
        columns<int, QString, int>("places", "text", "state");
        const int invalid = QValidator::Invalid, intermediate = QValidator::Intermediate,
                  acceptable = QValidator::Acceptable;
        row("1: acceptable", 1, "12.5", acceptable);
        row("1: trailing point", 1, "12.", acceptable);
        row("1: out of range may still grow", 1, "4", intermediate);
        row("1: sign", 1, "-", intermediate);
        row("1: empty", 1, "", intermediate);
        row("1: letter", 1, "12a", invalid);
        row("1: second place", 1, "12.55", invalid);
        row("1: two points", 1, "1.2.3", invalid);
        row("0: point", 0, "12.", invalid);
        row("2: second place", 2, "1.25", acceptable);
    }
    void partial() {
        auto [places, text] = fetch<int, QString>("places", "text");
        auto f = formatter(100, 3560, places);
        int pos = int(text.size());
        QTEST(int(f->validate(text, pos)), "state");
    }

    // ---- text formatter ----

    // The limit counts UTF-16 units as the platform does; a negative limit is none.
    void textFormatterLimit_data() {
        columns<int, QString, bool>("limit", "text", "accepted");
        row("default, long", INT32_MAX, QString(100000, 'x'), true);
        row("64 of 64", 64, QString(64, 'x'), true);
        row("65 of 64", 64, QString(65, 'x'), false);
        row("zero limit", 0, "x", false);
        row("negative limit accepts all", -1, QString(100000, 'x'), true);
        row("emoji is two units: 4 of 3", 3, QString::fromUtf8("ab\xF0\x9F\x98\x80"), false);
        row("emoji is two units: 4 of 4", 4, QString::fromUtf8("ab\xF0\x9F\x98\x80"), true);
    }
    void textFormatterLimit() {
        auto [limit, text, accepted] = fetch<int, QString, bool>("limit", "text", "accepted");
        TwainTextFormatter f;
        if (limit != INT32_MAX)
            f.setMaximumLength(limit);
        QCOMPARE(f.maximumLength(), limit);
        QCOMPARE(f.isPartialStringValid(text), accepted);
        int pos = 0;
        QCOMPARE(f.validate(text, pos), accepted ? QValidator::Acceptable : QValidator::Invalid);
        // Any text is its own value.
        TwValue value;
        QString error = "untouched";
        QVERIFY(f.getObjectValue(&value, text, &error));
        QCOMPARE(error, QString("untouched"));
        QCOMPARE(QString::fromStdString(value.stringValue()), text);
        QCOMPARE(f.stringForObjectValue(TwValue(12)), QString("12"));
    }

    // ---- fields, sliders, steppers ----

    // A line edit or an editable combo box gets a formatter of its own, replacing the one it made
    // before; anything else is refused with a log line.
    void setTextRangeInstallsOwnFormatter() {
        QLineEdit edit;
        SetTextRange(&edit, 1, 255, 0);
        QPointer<const QValidator> first = edit.validator();
        auto* f = qobject_cast<const TwainNumberFormatter*>(first.data());
        QVERIFY(f);
        QCOMPARE(f->parent(), &edit);
        QCOMPARE(f->errorString(), QString("Enter a number from 1 to 255."));
        SetTextRange(&edit, 0, 2100, 1);
        auto* second = qobject_cast<const TwainNumberFormatter*>(edit.validator());
        QVERIFY(second && second != f);
        QCOMPARE(second->format(), QString("0.0"));
        QVERIFY(first.isNull());

        QComboBox combo, popUp;
        combo.setEditable(true);
        SetTextRange(&combo, 50, 600, 0);
        QVERIFY(qobject_cast<const TwainNumberFormatter*>(combo.lineEdit()->validator()));
        LogCapture log;
        QLabel label;
        SetTextRange(&label, 1, 2, 0);
        SetTextRange(nullptr, 1, 2, 0);
        SetTextRange(&popUp, 1, 2, 0);
        QCOMPARE(log.count("SetTextRange: QLabel has no editable text"), 1);
        QCOMPARE(log.count("has no editable text"), 3);
    }

    void sliderRange_data() {
        columns<int, int, int, double, double>("minimum", "maximum", "places", "low", "high");
        row("0 places", 1, 255, 0, 1.0, 255.0);
        row("1 place", 100, 3560, 1, 10.0, 356.0);
        row("2 places", 1, 5000, 2, 0.01, 50.0);
        row("negative places", 1, 500, -1, 1.0, 500.0);
    }
    void sliderRange() {
        auto [minimum, maximum, places] = fetch<int, int, int>("minimum", "maximum", "places");
        QSlider slider;
        SetSliderRange(&slider, minimum, maximum, places);
        QTEST(slider.minimum() / TwValueScale(&slider), "low");
        QTEST(slider.maximum() / TwValueScale(&slider), "high");
        // The alternate increment stays 1.0 in real units whatever the places.
        QCOMPARE(TwAltIncrementValue(&slider), 1.0);
        QCOMPARE(slider.pageStep() / TwValueScale(&slider), 1.0);
        QFETCH(double, high);
        TwSetScaledValue(&slider, high);
        QCOMPARE(TwScaledValue(&slider), high);
        TwSetScaledValue(&slider, high * 10);
        QCOMPARE(TwScaledValue(&slider), high); // clamped
    }

    void stepperRange() {
        QDoubleSpinBox real;
        SetStepperRange(&real, 0, 100, 1, 5);
        QCOMPARE(real.maximum(), 10.0);
        real.setValue(2.0);
        real.stepUp();
        QCOMPARE(TwScaledValue(&real), 2.5);

        QSpinBox whole;
        SetStepperRange(&whole, 0, 100, 1, 5);
        QCOMPARE(whole.maximum() / TwValueScale(&whole), 10.0);
        TwSetScaledValue(&whole, 2.0);
        whole.stepUp();
        QCOMPARE(TwScaledValue(&whole), 2.5);

        // Negative places divide nothing; the brightness steppers use 1..255 step 1.
        QDoubleSpinBox plain;
        SetStepperRange(&plain, 1, 255, -2, 3);
        QCOMPARE(plain.maximum(), 255.0);
        QCOMPARE(plain.singleStep(), 3.0);
    }

    // ---- Each control class both ways ----

    // ---- pop-up ----

    void popUpFollowsChoicesAndSelection() {
        model.setValueForKeyPath(array({choice(0, "ADF Front"), choice(2, "Flatbed"), choice(5, "Passport")}),
                                 "content.PaperSource");
        model.setValueForKeyPath(2, "Data.PaperSource");
        auto* combo = new QComboBox(window.get());
        ChangeRecorder writes(model, {"Data.PaperSource"});
        rb->bindContent(combo, &model, "content.PaperSource");
        rb->bindValue(combo, &model, "Data.PaperSource");
        QCOMPARE(combo->itemText(2), QString("Passport"));
        QCOMPARE(combo->currentIndex(), 1);
        QCOMPARE(writes.count(), 0);

        model.setValueForKeyPath(5, "Data.PaperSource");
        QCOMPARE(combo->currentIndex(), 2);
        QCOMPARE(writes.count(), 1); // the model's own write, no echo

        // A user picks with the keyboard: the entry's value is written, once.
        QTest::keyClick(combo, Qt::Key_Up);
        QCOMPARE(writes.count(), 2);
        QCOMPARE(model.valueForKeyPath("Data.PaperSource"), TwValue(2));

        // New choices: the selection follows the value; a value not among them selects nothing.
        model.setValueForKeyPath(array({choice(2, "Flatbed"), choice(3, "Auto")}), "content.PaperSource");
        QCOMPARE(combo->currentIndex(), 0);
        model.setValueForKeyPath(9, "Data.PaperSource");
        QCOMPARE(combo->currentIndex(), -1);
        QCOMPARE(writes.count(), 3);
    }

    void popUpBySelectedIndexAndTag() {
        model.setValueForKeyPath(1, "Data.Index");
        model.setValueForKeyPath(30, "Data.Tag");
        auto* byIndex = new QComboBox(window.get());
        auto* byTag = new QComboBox(window.get());
        for (int i = 0; i < 3; ++i) {
            byIndex->addItem(QString::number(i));
            byTag->addItem(QString::number(i), 10 * i + 10);
        }
        rb->bindSelectedIndex(byIndex, &model, "Data.Index");
        rb->bind(kTwSelectedTagBinding, byTag, &model, "Data.Tag");
        QCOMPARE(byIndex->currentIndex(), 1);
        QCOMPARE(byTag->currentIndex(), 2);
        emit byIndex->activated(2);
        emit byTag->activated(0);
        QCOMPARE(valuesAt(model, {"Data.Index", "Data.Tag"}), array({2, 10}));
        model.setValueForKeyPath(7, "Data.Index");
        QCOMPARE(byIndex->currentIndex(), -1);
    }

    // ---- editable combo box ----

    void comboBoxTypesThroughItsFormatter() {
        model.setValueForKeyPath(array({choice(150, "150 dpi"), choice(300, "300 dpi")}),
                                 "content.Resolution");
        auto* combo = ranged(new QComboBox, 50, 600, 0);
        rb->bindContent(combo, &model, "content.Resolution");
        bound(combo, "Data.Resolution", 300);
        ChangeRecorder writes(model, {"Data.Resolution"});
        QCOMPARE(combo->itemText(0), QString("150")); // the values, not the titles
        QCOMPARE(combo->currentText(), QString("300"));

        combo->lineEdit()->clear();
        QTest::keyClicks(combo->lineEdit(), "200");
        // "2" and "20" are below the range and not written; "200" is, as a whole number.
        QCOMPARE(writes.count(), 1);
        QCOMPARE(model.valueForKeyPath("Data.Resolution"), TwValue(200));
        QVERIFY(model.valueForKeyPath("Data.Resolution").isInteger());

        model.setValueForKeyPath(600, "Data.Resolution");
        QCOMPARE(combo->currentText(), QString("600"));
        QCOMPARE(writes.count(), 2);
    }

    // ---- text field ----

    void textFieldShowsWhatTheModelKeeps() {
        auto* edit = bound(new QLineEdit, "Data.Code", "");
        ChangeRecorder upper(model, {"Data.Code"}); // a rule of the model that corrects what is written
        upper.onChange = [&](const std::string& keyPath) {
            const QString text = QString::fromStdString(upper.last().stringValue());
            if (text != text.toUpper())
                model.setValueForKeyPath(text.toUpper().toStdString(), keyPath);
        };
        QTest::keyClicks(edit, "ab");
        QCOMPARE(model.valueForKeyPath("Data.Code"), TwValue("AB"));
        QCOMPARE(edit->text(), QString("AB"));
    }

    // Each keystroke that makes an accepted number writes it; a model change shows without an echo
    // and leaves the field unmodified.
    void numberFieldWritesOnlyAcceptedEntries() {
        auto* edit = bound(ranged(new QLineEdit, 100, 3560, 1), "Data.Ratio", 12);
        ChangeRecorder writes(model, {"Data.Ratio"});
        QCOMPARE(edit->text(), QString("12.0"));
        edit->selectAll();
        QTest::keyClicks(edit, "400");
        // "4" is below the range, "40" inside, "400" above: only 40 was written.
        QCOMPARE(writes.count(), 1);
        QCOMPARE(edit->text(), QString("400"));
        QCOMPARE(model.valueForKeyPath("Data.Ratio"), TwValue(40.0));
        QTest::keyClick(edit, Qt::Key_Return); // a rejected entry does not end
        QCOMPARE(edit->text(), QString("400"));
        QTest::keyClick(edit, Qt::Key_Backspace); // "40": written again
        QTest::keyClick(edit, Qt::Key_Backspace); // "4": below
        QTest::keyClicks(edit, "2");
        QCOMPARE(model.valueForKeyPath("Data.Ratio"), TwValue(42.0));
        QCOMPARE(writes.count(), 3);
        // Return ends the entry: shown with the pattern, nothing written again.
        QTest::keyClick(edit, Qt::Key_Return);
        QCOMPARE(edit->text(), QString("42.0"));
        QCOMPARE(writes.count(), 3);
        model.setValueForKeyPath(15, "Data.Ratio");
        QCOMPARE(edit->text(), QString("15.0"));
        QCOMPARE(writes.count(), 4);
        QVERIFY(!edit->isModified());
        // A new range reformats the field.
        SetTextRange(edit, 0, 1000, 2);
        QCOMPARE(edit->text(), QString("15.00"));
    }

    void sharedFormatterChangeReformatsItsFields() {
        TwainNumberFormatter* shared = CreateTextRangeFormatter(0, 2100, 1, window.get());
        auto* width = new QLineEdit;
        auto* length = new QLineEdit;
        width->setValidator(shared);
        length->setValidator(shared);
        bound(width, "temp.Area.Width", 25.4);
        bound(length, "temp.Area.Length", 10);
        QCOMPARE(width->text(), QString("25.4"));
        SetTextRangeFormatter(shared, 0, 827, 2);
        QCOMPARE(width->text(), QString("25.40"));
        QCOMPARE(length->text(), QString("10.00"));
    }

    // ---- label, image view, group box ----

    void imageViewLabelAndGroupBoxShowTheValue() {
        QTemporaryDir dir;
        QString path = dir.path() + "/LeftRightMk2.png";
        QImage picture(8, 8, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QVERIFY(picture.save(path));
        auto* view = bound(new TwImageView, "image.DoubleExposure", "");
        QVERIFY(!view->hasImage());
        model.setValueForKeyPath(path.toStdString(), "image.DoubleExposure");
        QCOMPARE(view->imagePath(), path);
        QVERIFY(view->hasImage());
        model.setValueForKeyPath((dir.path() + "/missing.png").toStdString(), "image.DoubleExposure");
        QVERIFY(!view->hasImage());
        auto* box = bound(new QGroupBox, "temp.Distinction", "Auto resolution");
        auto* label = bound(new QLabel, "temp.Distinction", "Auto resolution");
        QCOMPARE(box->title(), QString("Auto resolution"));
        model.setValueForKeyPath(12, "temp.Distinction");
        QCOMPARE(box->title(), QString("12"));
        QCOMPARE(label->text(), QString("12"));
    }

    // ---- buttons ----

    void checkBoxKeepsTheModelsType_data() {
        QTest::addColumn<bool>("boolean");
        row("integer", false);
        row("boolean", true);
    }
    void checkBoxKeepsTheModelsType() {
        QFETCH(bool, boolean);
        auto* check =
            bound(new QCheckBox("Deskew"), "Data.Deskew.Enable", boolean ? TwValue(true) : TwValue(1));
        check->adjustSize(); // a click must land on the box or its text
        ChangeRecorder writes(model, {"Data.Deskew.Enable"});
        QVERIFY(check->isChecked());
        QTest::mouseClick(check, Qt::LeftButton);
        TwValue stored = model.valueForKeyPath("Data.Deskew.Enable");
        QCOMPARE(stored.isBoolean(), boolean);
        QCOMPARE(stored.boolValue(), false);
        QCOMPARE(writes.count(), 1);
        model.setValueForKeyPath(true, "Data.Deskew.Enable");
        QVERIFY(check->isChecked());
        QCOMPARE(writes.count(), 2);
    }

    void pushButtonTitleAndCheckedState() {
        model.setValueForKeyPath("Custom...", "temp.Title");
        auto* push = bound(new QPushButton, "Data.Pressed", 0);
        auto* toggle = new QPushButton;
        toggle->setCheckable(true);
        bound(toggle, "Data.Pressed", 0);
        rb->bind(kTwTitleBinding, push, &model, "temp.Title");
        QCOMPARE(push->text(), QString("Custom..."));
        QTest::mouseClick(push, Qt::LeftButton); // a plain button stands for no value
        QCOMPARE(model.valueForKeyPath("Data.Pressed"), TwValue(0));
        QTest::mouseClick(toggle, Qt::LeftButton);
        QCOMPARE(model.valueForKeyPath("Data.Pressed"), TwValue(1));
        QVERIFY(toggle->isChecked());
    }

    // ---- radio group ----

    void radioGroupByIndexAndTag() {
        model.setValueForKeyPath(20, "Data.Feed.Mode");
        auto* byIndex = new TwSegmentedControl;
        auto* byTag = new TwSegmentedControl(window.get());
        QList<QRadioButton*> radios;
        QList<QPushButton*> segments;
        for (int i = 0; i < 3; ++i) {
            radios << new QRadioButton(QString::number(i * 90), byIndex);
            radios.back()->adjustSize();
            segments << new QPushButton(QString::number(i * 10 + 10), byTag);
            segments.back()->setProperty("tag", i * 10 + 10);
        }
        bound(byIndex, "Data.Layout.Rotate", 2);
        ChangeRecorder writes(model, {"Data.Layout.Rotate"});
        rb->bind(kTwSelectedTagBinding, byTag, &model, "Data.Feed.Mode");
        QCOMPARE(byIndex->selectedIndex(), 2);
        QVERIFY(radios[2]->isChecked());
        QCOMPARE(byTag->selectedIndex(), 1);
        QTest::mouseClick(radios[0], Qt::LeftButton);
        QTest::mouseClick(segments[2], Qt::LeftButton);
        QCOMPARE(valuesAt(model, {"Data.Layout.Rotate", "Data.Feed.Mode"}), array({0, 30}));
        QCOMPARE(writes.count(), 1);
        // A value no button stands for selects none.
        model.setValueForKeyPath(9, "Data.Layout.Rotate");
        model.setValueForKeyPath(25, "Data.Feed.Mode");
        QCOMPARE(byIndex->selectedIndex(), -1);
        QCOMPARE(byTag->selectedIndex(), -1);
        QCOMPARE(writes.count(), 2);
    }

    // ---- slider and stepper ----

    void slidersWriteScaledValuesAsTheyTrack() {
        model.setValueForKeyPath(2.5, "Data.Ratio");
        auto* slider = new QSlider(Qt::Horizontal, window.get());
        SetSliderRange(slider, 1, 500, 2);
        ChangeRecorder writes(model, {"Data.Ratio"});
        rb->bindValue(slider, &model, "Data.Ratio");
        QCOMPARE(slider->value(), 250);
        QCOMPARE(writes.count(), 0);

        QTest::keyClick(slider, Qt::Key_Right);
        QCOMPARE(writes.count(), 1);
        QCOMPARE(model.valueForKeyPath("Data.Ratio").doubleValue(), 2.51);
        QTest::keyClick(slider, Qt::Key_PageUp); // the alternate increment: 1.0
        QCOMPARE(model.valueForKeyPath("Data.Ratio").doubleValue(), 3.51);

        // Dragging writes each position.
        slider->setSliderDown(true);
        slider->setSliderPosition(300);
        slider->setSliderPosition(320);
        slider->setSliderDown(false);
        QCOMPARE(model.valueForKeyPath("Data.Ratio").doubleValue(), 3.2);
        QCOMPARE(writes.count(), 4);

        model.setValueForKeyPath(4.0, "Data.Ratio");
        QCOMPARE(slider->value(), 400);
        // A value set by code is no user action.
        slider->setValue(100);
        QCOMPARE(model.valueForKeyPath("Data.Ratio").doubleValue(), 4.0);
        // Without tracking the position is written once, on release.
        auto* untracked = new QSlider(Qt::Horizontal);
        SetSliderRange(untracked, 1, 255, 0);
        untracked->setTracking(false);
        bound(untracked, "Data.Brightness", 10);
        ChangeRecorder released(model, {"Data.Brightness"});
        untracked->setSliderDown(true);
        untracked->setSliderPosition(100);
        untracked->setSliderPosition(120);
        QCOMPARE(released.count(), 0);
        untracked->setSliderDown(false);
        QCOMPARE(released.count(), 1);
        QCOMPARE(model.valueForKeyPath("Data.Brightness"), TwValue(120));
        QVERIFY(model.valueForKeyPath("Data.Brightness").isInteger());
    }

    void stepperWritesScaledSteps() {
        auto* real = new QDoubleSpinBox;
        auto* whole = new QSpinBox;
        SetStepperRange(real, 0, 100, 1, 5);
        SetStepperRange(whole, 1, 255, 0, 1);
        ChangeRecorder writes(model, {"Data.Step"});
        bound(real, "Data.Step", 5.0);
        bound(whole, "Data.Area.Front.L1.Brightness", 100);
        QCOMPARE(whole->value(), 100);
        QCOMPARE(writes.count(), 1); // the first value only
        real->stepUp();
        QCOMPARE(model.valueForKeyPath("Data.Step").doubleValue(), 5.5);
        whole->stepDown();
        QCOMPARE(model.valueForKeyPath("Data.Area.Front.L1.Brightness"), TwValue(99));
        model.setValueForKeyPath(7.5, "Data.Step");
        QCOMPARE(real->value(), 7.5);
        QCOMPARE(writes.count(), 3);
    }

    // ---- table and list ----

    void tableSelectsTheRow() {
        auto* table = new QTableWidget(2, 1);
        table->setItem(0, 0, new QTableWidgetItem("Front"));
        table->setItem(1, 0, new QTableWidgetItem("Back"));
        ChangeRecorder writes(model, {"temp.Area.Side"});
        bound(table, "temp.Area.Side", 1);
        QCOMPARE(table->currentRow(), 1);
        QCOMPARE(writes.count(), 1); // the first value only
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualItemRect(table->item(0, 0)).center());
        QCOMPARE(model.valueForKeyPath("temp.Area.Side"), TwValue(0));
        QCOMPARE(writes.count(), 2);
        model.setValueForKeyPath(5, "temp.Area.Side");
        QVERIFY(table->selectedItems().isEmpty());
        QCOMPARE(writes.count(), 3);
    }

    void listMakesItsRowsFromContent() {
        model.setValueForKeyPath(array({"Gamma 1", "Gamma 2", "Gamma 3"}), "content.Gammas");
        model.setValueForKeyPath(2, "Data.GammaIndex");
        auto* list = new QListWidget(window.get());
        rb->bindContentValues(list, &model, "content.Gammas");
        rb->bindSelectedIndex(list, &model, "Data.GammaIndex");
        QCOMPARE(list->count(), 3);
        QCOMPARE(list->currentRow(), 2);
        list->setCurrentRow(0); // the selection model reports it like a click
        QCOMPARE(model.valueForKeyPath("Data.GammaIndex"), TwValue(0));
        model.setValueForKeyPath(array({"Gamma 1", "Gamma 2"}), "content.Gammas");
        QCOMPARE(list->count(), 2);
        QCOMPARE(list->currentRow(), 0);
    }

    // ---- the fallbacks ----

    void userPropertyOfAnUnknownWidget() {
        auto* picker = bound(new ColourPicker, "Data.Colour", "red");
        QCOMPARE(TwAdapterForControl(picker)->name(), "user property");
        ChangeRecorder writes(model, {"Data.Colour"});
        QCOMPARE(picker->colour(), QString("red"));
        model.setValueForKeyPath("green", "Data.Colour");
        QCOMPARE(picker->colour(), QString("green"));
        QCOMPARE(writes.count(), 1);
        picker->pick("blue");
        QCOMPARE(model.valueForKeyPath("Data.Colour"), TwValue("blue"));
        QCOMPARE(writes.count(), 2);

        // A picker that throws while it is shown a value, or an observer that throws while the
        // user's value is written, leaves the binding as it was: edits are heard, values shown.
        picker->refused = "black";
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model.setValueForKeyPath("black", "Data.Colour"));
        picker->pick("cyan");
        QCOMPARE(model.valueForKeyPath("Data.Colour"), TwValue("cyan"));
        ChangeRecorder thrower;
        model.addObserver(&thrower, "Data.Colour", kTwObserveNew);
        thrower.onChange = [](const std::string&) {
            throw std::runtime_error("observer");
        };
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, picker->pick("yellow"));
        model.removeObserver(&thrower, "Data.Colour");
        model.setValueForKeyPath("white", "Data.Colour");
        QCOMPARE(picker->colour(), QString("white"));
    }

    void objectPropertiesByName() {
        LogCapture log;
        model.setValueForKeyPath(3.5, "Data.Level");
        model.setValueForKeyPath(false, "enable.Level");
        Gauge gauge;
        rb->bindValue(&gauge, &model, "Data.Level");
        rb->bindEnabled(&gauge, &model, "enable.Level");
        rb->bind(kTwTitleBinding, &gauge, &model, "Data.Level");
        QCOMPARE(gauge.value, 3.5);
        QVERIFY(!gauge.enabled);
        model.setValueForKeyPath(true, "enable.Level");
        QVERIFY(gauge.enabled);
        QCOMPARE(log.count("Gauge offers no binding title"), 1);
    }

    // ---- ending the editing ----

    void rejectedEntryRefusesAndKeepsTheFocus() {
        addRatioAndName();
        ratio->setFocus();
        ratio->selectAll();
        QTest::keyClicks(ratio, "400");
        name->setFocus(); // the check on leaving waits for the event loop: ending comes first here
        QVERIFY(!TwEndEditing(window.get()));
        QCOMPARE(alerts, (Alerts{{ratio, "Enter a number from 10.0 to 356.0."}}));
        QCOMPARE(window->focusWidget(), ratio);
        QCOMPARE(ratio->selectedText(), QString("400")); // the user's text stays until corrected

        QTest::keyClicks(ratio, "35");
        QVERIFY(TwEndEditing(window.get()));
        QCOMPARE(alerts.size(), 1);
        QCOMPARE(model.valueForKeyPath("Data.Ratio"), TwValue(35.0));
        QCOMPARE(ratio->text(), QString("35.0"));
        QVERIFY(!ratio->isModified());

        // An editable combo box is checked the same way; a formatter without a message of its own
        // refuses with the default text.
        auto* combo = bound(ranged(new QComboBox, 50, 600, 0), "Data.Resolution", 300);
        combo->lineEdit()->selectAll();
        QTest::keyClicks(combo->lineEdit(), "9000");
        QVERIFY(!TwEndEditing(window.get()));
        QCOMPARE(alerts.last(), Alerts::value_type(combo, "Enter a number from 50 to 600."));
        QVERIFY(window->focusWidget() == combo || window->focusWidget() == combo->lineEdit());
        delete combo;
        auto* plain = placed(new QLineEdit);
        auto* bare = new TwainNumberFormatter(plain);
        bare->setMaximum(5.0);
        plain->setValidator(bare);
        QTest::keyClicks(plain, "7");
        QVERIFY(!TwEndEditing(window.get()));
        QCOMPARE(alerts.mid(2), (Alerts{{plain, TwFormatterDefaultMessage()}}));
    }

    // Only what the user typed and can see is checked: a value out of range that the model set, or
    // a rejected entry in a field that was hidden since, never refuses.
    void untouchedAndHiddenFieldsNeverRefuse() {
        addRatioAndName();
        model.setValueForKeyPath(999, "Data.Ratio");
        QCOMPARE(ratio->text(), QString("999.0"));
        auto* hidden = bound(ranged(new QLineEdit, 100, 3560, 1), "Data.Hidden", 12);
        hidden->selectAll();
        QTest::keyClicks(hidden, "400");
        hidden->hide();
        QVERIFY(TwEndEditing(window.get()));
        QVERIFY(alerts.isEmpty());
    }

    // A field without continuous updates writes when its entry ends: by Return, or when the
    // window's editing ends.
    void entriesWithoutContinuousUpdatesWriteAtTheEnd() {
        model.setValueForKeyPath("old", "Data.Name");
        auto* edit = placed(new QLineEdit);
        rb->bind(kTwValueBinding, edit, &model, "Data.Name", TwBindingOptions{});
        edit->setFocus();
        QTest::keyClicks(edit, "er");
        QCOMPARE(model.valueForKeyPath("Data.Name"), TwValue("old"));
        QTest::keyClick(edit, Qt::Key_Return);
        QCOMPARE(model.valueForKeyPath("Data.Name"), TwValue("older"));
        QTest::keyClicks(edit, "s");
        QCOMPARE(model.valueForKeyPath("Data.Name"), TwValue("older"));
        QVERIFY(TwEndEditing(window.get()));
        QCOMPARE(model.valueForKeyPath("Data.Name"), TwValue("olders"));
        QVERIFY(TwEndEditing(nullptr)); // no window: nothing to end
    }

    // An unbound field is shown as its formatter shows the entry; a text limit never refuses.
    void unboundFieldsAreReformatted() {
        auto* free = placed(ranged(new QLineEdit, 0, 500, 2));
        auto* title = placed(new QLineEdit);
        auto* limit = new TwainTextFormatter(title);
        limit->setMaximumLength(4);
        title->setValidator(limit);
        QTest::keyClicks(free, "1.5");
        QTest::keyClicks(title, "abcdef");
        QVERIFY(TwEndEditing(window.get()));
        QCOMPARE(free->text(), QString("1.50"));
        QCOMPARE(title->text(), QString("abcd"));
        QVERIFY(TwBoundControl::bindingNames(free).empty());
    }

    // Leaving a field (Tab, a click elsewhere) checks it at once: a rejected entry shows its
    // message and the field takes the focus back; a window going to the background checks nothing.
    void leavingAFieldChecksIt_data() {
        columns<int, bool>("reason", "checked");
        row("Tab", int(Qt::TabFocusReason), true);
        row("a click", int(Qt::MouseFocusReason), true);
        row("another window", int(Qt::ActiveWindowFocusReason), false);
    }
    void leavingAFieldChecksIt() {
        auto [reason, checked] = fetch<int, bool>("reason", "checked");
        addRatioAndName();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        ratio->setFocus();
        ratio->selectAll();
        QTest::keyClicks(ratio, "400");
        name->setFocus(Qt::FocusReason(reason));
        QTest::qWait(20);
        QCOMPARE(alerts.size(), checked ? 1 : 0);
        QCOMPARE(window->focusWidget(), checked ? static_cast<QWidget*>(ratio) : name);
        QCOMPARE(model.valueForKeyPath("Data.Ratio").doubleValue(), 40.0); // the last accepted entry
    }
};

QTEST_MAIN(TestBinding)
#include "tst_binding.moc"
