// The responder binding: the core bind with its missing-key refusal and numbered names, the
// content, value and model-definition conventions, pair lists, observations, enabling a view
// tree, and tear-down that leaves neither observers nor bindings behind. Whole tabs bound, unbound
// and bound again, and the value binding each class of control gets, are in the tab tests. The
// number and text formatters and the range helpers: bounds, patterns and messages for 0, 1, 2 and
// negative places, parsing and partial entries, the length limit, and the scaled ranges of sliders
// and steppers.
#include "TwBundle.h"
#include "TwObservableValues.h"
#include "WidgetTestSupport.h"

using Names = std::vector<std::string>;

class TestResponderBinding : public QObject {
    Q_OBJECT

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
        QCOMPARE(log.count("ERROR: TwResponderBinding::bind(ChangeRecorder): TwainDialogData is not found "
                           "KeyPath:Data.Missing\n"),
                 1);
        QCOMPARE(log.count("(null) is not found KeyPath:Data.Name"), 1);
        QCOMPARE(log.count("ERROR: TwResponderBinding::bind((null)): bind title withKeyPath:Data.Title, "
                           "QLineEdit offers no binding title\n"),
                 1);
        QCOMPARE(log.count("QGroupBox offers no binding enabled"), 1);
        QCOMPARE(log.count("no binding is named colour"), 1);
        QCOMPARE(log.count("no control"), 1);
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
        model.setValueForKeyPath(plainValues ? TwValue::array({"1", "2"})
                                             : TwValue::array({choice(1, "one"), choice(2, "two")}),
                                 "content.List");
        QComboBox combo;
        combo.setEditable(editable);
        TwResponderBinding rb;
        plainValues ? rb.bindContentValues(&combo, &model, "content.List")
                    : rb.bindContent(&combo, &model, "content.List");
        QStringList made;
        for (auto& n : names(&combo))
            made << QString::fromStdString(n + "=" + keyPathOf(&combo, n.c_str()));
        QTEST(made, "expected");
        QCOMPARE(rb.bindings().size(), std::size_t(made.size()));
        QCOMPARE(combo.itemText(1), editable ? QString("2") : QString("two"));
    }

    // A dialog's own values (a name and the names to pick from) bind as the model's do.
    void ownValuesBindLikeTheModel() {
        TwObservableValues values{{"name", "Office"}, {"nameList", TwValue::array({"Office", "Photos"})}};
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
        values.setValueForKeyPath(TwValue::array({"A", "B", "C"}), "nameList");
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
        defs.controls = TwValue::dictionary(
            {{"View",
              TwValue::dictionary({{"Box", TwValue::dictionary({{"enabled", true}, {"hidden", true}})},
                                   {"Button", TwValue::dictionary({{"enabled", false}, {"hidden", false}})},
                                   {"Crop", TwValue::dictionary({{"hidden", false}})}})}});
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

        rb.addResponderObserverForKeyPathArray(&model,
                                               TwValue::array({"Data.B", 7, TwValue(), "Data.C", "Data.B"}));
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
        QVERIFY(button.isEnabled() && rb.bindings().empty());
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

    void init() {
        // This module's own bundle as the build lays it out.
        TwBundle::setModuleBundlePath(VMX_BUNDLE_DIR);
        qputenv("LANGUAGE", "en");
    }
    void cleanup() { TwBundle::setModuleBundlePath(""); }

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

    // ---- the message text from the bundles ----

    // The range message comes from this module's table in the user's language, else the default.
    void rangeMessage() {
        // Language (none: no bundle at all), the table's text (none: no table), the message.
        const char* cases[][3] = {{"de", "Erlaubt: %@ bis %@", "Erlaubt: 0.01 bis 5.00"},
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
        row("1: array is the nil symbol", 1, TwValue::array({1}), "");
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
};

QTEST_MAIN(TestResponderBinding)
#include "tst_responderbinding.moc"
