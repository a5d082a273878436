// The responder binding: the core bind with its missing-key refusal and numbered names, the
// content, value and model-definition conventions, pair lists, observations, enabling a view
// tree, and tear-down that leaves neither observers nor bindings behind.
#include "BindingTestSupport.h"
#include "TwBindingWidgets.h"
#include "TwBoundControl.h"
#include "TwObservableValues.h"
#include "TwResponderBinding.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QTableWidget>
#include <QTest>
#include <QVBoxLayout>

#include <functional>
#include <memory>

using Names = std::vector<std::string>;

namespace {
Names names(const QObject* control) {
    return TwBoundControl::bindingNames(control);
}

Names recordNames(const TwResponderBinding& rb) {
    Names out;
    for (auto& r : rb.bindings())
        out.push_back(r.name());
    return out;
}

std::string keyPathOf(const QObject* control, const char* name) {
    auto info = TwBoundControl::infoForBinding(control, name);
    return info ? info->keyPath : std::string("(unbound)");
}

// A panel of many controls of every class, and the lists a tab would make for them.
struct Panel {
    QWidget window;
    QComboBox* cmbSource = new QComboBox(&window);
    QComboBox* cmbResolution = new QComboBox(&window);
    QLineEdit* txtName = new QLineEdit(&window);
    QLabel* txtSide = new QLabel(&window);
    QCheckBox* btnDeskew = new QCheckBox(&window);
    QPushButton* btnCustom = new QPushButton(&window);
    TwSegmentedControl* rdoSide = new TwSegmentedControl(&window);
    QGroupBox* boxSide = new QGroupBox(&window);
    TwImageView* imgOrder = new TwImageView(&window);
    QSlider* sldBrightness = new QSlider(&window);
    QSpinBox* stpBrightness = new QSpinBox(&window);
    QTableWidget* tblSide = new QTableWidget(2, 1, &window);
    QLineEdit* txtInBox = new QLineEdit(boxSide);
    QCheckBox* btnInBox = new QCheckBox(boxSide);

    Panel() {
        cmbResolution->setEditable(true);
        new QRadioButton("Front", rdoSide);
        new QRadioButton("Back", rdoSide);
    }
    std::vector<QObject*> controls() const {
        return {cmbSource, cmbResolution, txtName,       txtSide,       btnDeskew, btnCustom, rdoSide,
                boxSide,   imgOrder,      sldBrightness, stpBrightness, tblSide,   txtInBox,  btnInBox};
    }
    void bind(TwResponderBinding& rb, TwainDialogData& model) {
        rb.bindControlDefs({"Source", cmbSource, "Deskew", btnDeskew, "Side", boxSide, "Custom", btnCustom},
                           &model, "TestView");
        rb.bindContents({"content.Source", cmbSource, "content.Resolution", cmbResolution}, &model);
        rb.bindEnableds({"enable.Deskew", btnDeskew, "enable.Custom", btnCustom, "Data.Deskew", btnCustom,
                         "enable.Side", rdoSide, "enable.Side", tblSide},
                        &model);
        rb.bindValues({"Data.Source",     cmbSource,     "Data.Resolution", cmbResolution,
                       "Data.Name",       txtName,       "temp.SideText",   txtSide,
                       "Data.Deskew",     btnDeskew,     "temp.Side",       rdoSide,
                       "temp.SideText",   boxSide,       "image.Order",     imgOrder,
                       "Data.Brightness", sldBrightness, "Data.Brightness", stpBrightness,
                       "temp.Side",       tblSide},
                      &model);
        rb.bindSubviewsEnabled(boxSide, &model, "enable.All");
        rb.addResponderObserver(&model, "Data.Source");
        rb.addResponderObserverForKeyPathArray(&model, TwValue::array({"Data.Name", "temp.Side"}));
    }
};

void fillModel(TwainDialogData& model) {
    model.setValueForKeyPath(TwValue::array({entry(0, "ADF"), entry(2, "Flatbed")}), "content.Source");
    model.setValueForKeyPath(TwValue::array({entry(150, "150"), entry(300, "300")}), "content.Resolution");
    for (const char* key : {"enable.Deskew", "enable.Custom", "enable.Side", "enable.All", "Data.Deskew"})
        model.setValueForKeyPath(true, key);
    model.setValueForKeyPath(2, "Data.Source");
    model.setValueForKeyPath(300, "Data.Resolution");
    model.setValueForKeyPath("scan", "Data.Name");
    model.setValueForKeyPath("Front", "temp.SideText");
    model.setValueForKeyPath(0, "temp.Side");
    model.setValueForKeyPath("", "image.Order");
    model.setValueForKeyPath(128, "Data.Brightness");
}
} // namespace

class TestResponderBinding : public QObject {
    Q_OBJECT

private slots:
    // ---- names ----

    void bindingNames_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("known");
        QTest::addColumn<int>("kind");
        QTest::newRow("value") << "value" << true << int(TwBindingKind::Value);
        QTest::newRow("enabled") << "enabled" << true << int(TwBindingKind::Enabled);
        QTest::newRow("enabled2") << "enabled2" << true << int(TwBindingKind::Enabled);
        QTest::newRow("hidden10") << "hidden10" << true << int(TwBindingKind::Hidden);
        QTest::newRow("editable3") << "editable3" << true << int(TwBindingKind::Editable);
        QTest::newRow("enabled1") << "enabled1" << false << 0;
        QTest::newRow("enabled02") << "enabled02" << false << 0;
        QTest::newRow("enabled2x") << "enabled2x" << false << 0;
        QTest::newRow("value2") << "value2" << false << 0;
        QTest::newRow("empty") << "" << false << 0;
    }
    void bindingNames() {
        QFETCH(QString, name);
        QFETCH(bool, known);
        auto kind = TwBindingKindForName(name.toStdString());
        QCOMPARE(kind.has_value(), known);
        if (known)
            QTEST(int(*kind), "kind");
    }

    // ---- core bind ----

    void missingKeyPathBindsNothing() {
        LogCapture log;
        TwainDialogData model;
        RecordingResponder responder;
        TwResponderBinding rb(&responder);
        QLineEdit edit;
        edit.setText("as loaded");
        const std::size_t before = model.observationCount();
        rb.bindValue(&edit, &model, "Data.Missing");
        QVERIFY(rb.bindings().empty());
        QVERIFY(names(&edit).empty());
        QCOMPARE(model.observationCount(), before);
        QCOMPARE(edit.text(), QString("as loaded"));
        QCOMPARE(
            log.count("ERROR: TwResponderBinding::bind(RecordingResponder): TwainDialogData is not found "
                      "KeyPath:Data.Missing\n"),
            1);
        // No model at all is the same refusal.
        rb.bindValue(&edit, nullptr, "Data.Name");
        QCOMPARE(log.count("(null) is not found KeyPath:Data.Name"), 1);
        QVERIFY(rb.bindings().empty());
    }

    void bindingAClassDoesNotOfferIsLogged() {
        LogCapture log;
        TwainDialogData model;
        model.setValueForKeyPath("x", "Data.Title");
        TwResponderBinding rb;
        QLineEdit edit;
        QGroupBox box;
        rb.bind(kTwTitleBinding, &edit, &model, "Data.Title");
        rb.bind(kTwEnabledBinding, &box, &model, "Data.Title"); // a box has no enabled binding
        rb.bind("colour", &edit, &model, "Data.Title");
        rb.bind(kTwValueBinding, nullptr, &model, "Data.Title");
        QVERIFY(rb.bindings().empty());
        QVERIFY(names(&edit).empty() && names(&box).empty());
        QCOMPARE(
            log.count("ERROR: TwResponderBinding::bind((null)): bind title withKeyPath:Data.Title, QLineEdit "
                      "offers no binding title\n"),
            1);
        QCOMPARE(log.count("QGroupBox offers no binding enabled"), 1);
        QCOMPARE(log.count("no binding is named colour"), 1);
        QCOMPARE(log.count("no control"), 1);
    }

    void enabledTwiceGetsNumberedNames() {
        TwainDialogData model;
        model.setValueForKeyPath(true, "enable.A");
        model.setValueForKeyPath(true, "enable.B");
        model.setValueForKeyPath(true, "enable.C");
        const std::size_t before = model.observationCount();
        QWidget window;
        QPushButton button(&window);
        {
            TwResponderBinding rb;
            rb.bindEnabled(&button, &model, "enable.A");
            rb.bindEnabled(&button, &model, "enable.B");
            rb.bind(kTwEnabledBinding, &button, &model, "enable.C");
            QCOMPARE(recordNames(rb), (Names{"enabled", "enabled2", "enabled3"}));
            QCOMPARE(names(&button), (Names{"enabled", "enabled2", "enabled3"}));
            QCOMPARE(keyPathOf(&button, "enabled2"), std::string("enable.B"));
            QCOMPARE(model.observationCount(), before + 3);
            // AND, live.
            QVERIFY(button.isEnabled());
            model.setValueForKeyPath(false, "enable.B");
            QVERIFY(!button.isEnabled());
            model.setValueForKeyPath(false, "enable.A");
            model.setValueForKeyPath(true, "enable.B");
            QVERIFY(!button.isEnabled());
            model.setValueForKeyPath(true, "enable.A");
            QVERIFY(button.isEnabled());
            rb.unbindAll();
            QVERIFY(rb.bindings().empty());
            QVERIFY(names(&button).empty());
            QCOMPARE(model.observationCount(), before);
            // Unbound, the control no longer follows.
            model.setValueForKeyPath(false, "enable.A");
            QVERIFY(button.isEnabled());
        }
    }

    void freedNumberIsTakenAgain() {
        TwainDialogData model;
        model.setValueForKeyPath(true, "enable.A");
        QPushButton button;
        TwResponderBinding rb;
        rb.bindEnabled(&button, &model, "enable.A");
        rb.bindEnabled(&button, &model, "enable.A");
        QVERIFY(TwBoundControl::unbind(&button, "enabled"));
        rb.bindEnabled(&button, &model, "enable.A");
        QCOMPARE(names(&button), (Names{"enabled2", "enabled"}));
        // A remaining enabled binding decides alone once another is gone.
        model.setValueForKeyPath(false, "enable.B");
        rb.bindEnabled(&button, &model, "enable.B");
        QVERIFY(!button.isEnabled());
        QVERIFY(TwBoundControl::unbind(&button, "enabled3"));
        QVERIFY(button.isEnabled());
    }

    void hiddenBindingsCombineByOr() {
        TwainDialogData model;
        for (const char* key : {"hidden.A", "hidden.B", "hidden.C"})
            model.setValueForKeyPath(false, key);
        QWidget window;
        QLineEdit edit(&window);
        TwResponderBinding rb;
        for (const char* key : {"hidden.A", "hidden.B", "hidden.C"})
            rb.bind(kTwHiddenBinding, &edit, &model, key);
        QCOMPARE(names(&edit), (Names{"hidden", "hidden2", "hidden3"}));
        QVERIFY(!edit.isHidden());
        model.setValueForKeyPath(true, "hidden.C");
        QVERIFY(edit.isHidden());
        model.setValueForKeyPath(true, "hidden.A");
        model.setValueForKeyPath(false, "hidden.C");
        QVERIFY(edit.isHidden());
        model.setValueForKeyPath(false, "hidden.A");
        QVERIFY(!edit.isHidden());
    }

    void sameNameAgainReplaces() {
        TwainDialogData model;
        model.setValueForKeyPath("one", "Data.A");
        model.setValueForKeyPath("two", "Data.B");
        const std::size_t before = model.observationCount();
        QLineEdit edit;
        TwResponderBinding rb;
        rb.bindValue(&edit, &model, "Data.A");
        rb.bindValue(&edit, &model, "Data.B");
        QCOMPARE(names(&edit), Names{"value"});
        QCOMPARE(keyPathOf(&edit, "value"), std::string("Data.B"));
        QCOMPARE(rb.bindings().size(), std::size_t(2));
        QCOMPARE(model.observationCount(), before + 1);
        QCOMPARE(edit.text(), QString("two"));
        model.setValueForKeyPath("changed", "Data.A");
        QCOMPARE(edit.text(), QString("two"));
        rb.unbindAll();
        QVERIFY(rb.bindings().empty());
        QCOMPARE(model.observationCount(), before);
    }

    // ---- conventions ----

    void contentBindings_data() {
        QTest::addColumn<bool>("editable");
        QTest::addColumn<bool>("plainValues"); // bindContentValues: a list of plain values
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("combo box") << true << false
                                   << QStringList{"content=content.List", "contentValues=content.List.value"};
        QTest::newRow("pop-up") << false << false
                                << QStringList{"content=content.List", "contentObjects=content.List.value",
                                               "contentValues=content.List.display"};
        QTest::newRow("plain values: the same key twice")
            << true << true << QStringList{"content=content.List", "contentValues=content.List"};
    }
    void contentBindings() {
        QFETCH(bool, editable);
        QFETCH(bool, plainValues);
        TwainDialogData model;
        model.setValueForKeyPath(plainValues ? TwValue::array({"1", "2"})
                                             : TwValue::array({entry(1, "one"), entry(2, "two")}),
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

    void valueBindingFollowsTheClass() {
        // What bindValue binds for each class of control.
        const std::vector<std::pair<std::function<QWidget*()>, std::string>> table{
            {[] { return new QComboBox; }, "selectedObject"},
            {[] {
                 auto* c = new QComboBox;
                 c->setEditable(true);
                 return c;
             },
             "value"},
            {[] { return new TwSegmentedControl; }, "selectedIndex"},
            {[] { return new QGroupBox; }, "title"},
            {[] { return new TwImageView; }, "valuePath"},
            {[] { return new QLineEdit; }, "value"},
            {[] { return new QLabel; }, "value"},
            {[] { return new QCheckBox; }, "value"},
            {[] { return new QSlider; }, "value"},
            {[] { return new QSpinBox; }, "value"},
            {[] { return new QTableWidget(2, 1); }, "value"},
        };
        TwainDialogData model;
        model.setValueForKeyPath(1, "Data.V");
        for (auto& [make, binding] : table) {
            std::unique_ptr<QWidget> w(make());
            TwResponderBinding rb;
            rb.bindValue(w.get(), &model, "Data.V");
            QVERIFY2(names(w.get()) == Names{binding}, w->metaObject()->className());
        }
    }

    // A dialog's own values (a name and the names to pick from) bind as the model's do.
    void ownValuesBindLikeTheModel() {
        TwObservableValues values{{"name", ""}, {"nameList", TwValue::array({"Office", "Photos"})}};
        QComboBox names;
        names.setEditable(true);
        TwResponderBinding rb;
        rb.bindContentValues(&names, &values, "nameList");
        rb.bindValue(&names, &values, "name");
        QCOMPARE(names.count(), 2);
        QCOMPARE(names.itemText(1), QString("Photos"));

        values.setValueForKeyPath("Office", "name");
        QCOMPARE(names.currentText(), QString("Office"));
        names.lineEdit()->selectAll();
        QTest::keyClicks(names.lineEdit(), "Receipts");
        QTest::keyClick(names.lineEdit(), Qt::Key_Return);
        QCOMPARE(values.valueForKeyPath("name").stringValue(), std::string("Receipts"));
        values.setValueForKeyPath(TwValue::array({"A", "B", "C"}), "nameList");
        QCOMPARE(names.count(), 3);

        WriteCounter counter(values, "name");
        values.changeValue("Receipts", "name"); // equal: nobody is told
        QCOMPARE(counter.count, 0);
        values.changeValue("Other", "name");
        QCOMPARE(counter.count, 1);
        values.setValueForKeyPath(1, "name.below"); // a string is in the way: dropped
        QCOMPARE(values.valueForKeyPath("name").stringValue(), std::string("Other"));
        rb.unbindAll();
        QCOMPARE(values.observationCount(), std::size_t(1)); // the counter's own
    }

    void controlDefs() {
        LogCapture log;
        TwainDialogData model;
        ControlDefs defs;
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

    void pairListsSkipWhatDoesNotFit() {
        LogCapture log;
        TwainDialogData model;
        for (const char* key : {"Data.A", "Data.B", "Data.C"})
            model.setValueForKeyPath("text", key);
        QLineEdit a, b, c;
        QObject notAWidget;
        QLineEdit* absent = nullptr;
        TwResponderBinding rb;
        // Odd: the last key has no control and is ignored.
        rb.bindValues({"Data.A", &a, "Data.B", &b, "Data.C"}, &model);
        QCOMPARE(recordNames(rb), (Names{"value", "value"}));
        QVERIFY(names(&c).empty());
        rb.unbindAll();
        // Wrong kinds are skipped without a word.
        rb.bindValues({"Data.A", absent, "Data.B", &notAWidget, &c, "Data.C", nullptr, &c, "Data.C", &c},
                      &model);
        QCOMPARE(names(&c), Names{"value"});
        QCOMPARE(keyPathOf(&c, "value"), std::string("Data.C"));
        QCOMPARE(rb.bindings().size(), std::size_t(1));
        rb.bindEnableds({"Data.A", &a, "Data.B"}, &model);
        QCOMPARE(names(&a), Names{"enabled"});
        // The same control in two pairs gets both bindings.
        rb.bindEnableds({"Data.A", &b, "Data.B", &b}, &model);
        QCOMPARE(names(&b), (Names{"enabled", "enabled2"}));
        rb.bindContents({"Data.A"}, &model);
        rb.bindContents({}, &model);
        QCOMPARE(rb.bindings().size(), std::size_t(4));
        QCOMPARE(log.count("ERROR"), 0);
    }

    void respondersArrayBindsWidgetsOnly() {
        TwainDialogData model;
        model.setValueForKeyPath(true, "hidden.Area.Back");
        QWidget window;
        QLineEdit a(&window), b(&window);
        QObject notAWidget;
        TwResponderBinding rb;
        rb.bind(kTwHiddenBinding, std::vector<QObject*>{&a, nullptr, &notAWidget, &b}, &model,
                "hidden.Area.Back");
        QCOMPARE(recordNames(rb), (Names{"hidden", "hidden"}));
        QVERIFY(a.isHidden() && b.isHidden());
    }

    // ---- observation ----

    void observationsAreRegisteredOnce() {
        TwainDialogData model;
        RecordingResponder responder;
        TwResponderBinding rb(&responder);
        // Without an object, or without a responder, nothing is observed.
        rb.addResponderObserver(nullptr, "Data.A");
        TwResponderBinding noResponder;
        noResponder.addResponderObserver(&model, "Data.A");
        QVERIFY(rb.observations().empty() && noResponder.observations().empty());
        const std::size_t before = model.observationCount();
        QCOMPARE(before, std::size_t(0));
        rb.addResponderObserver(&model, "Data.A");
        rb.addResponderObserver(&model, "Data.A");
        rb.addResponderObserver(&model, "Data.A", kTwObserveNew | kTwObserveOld);
        QCOMPARE(model.observationCount(&responder), std::size_t(1));
        QCOMPARE(rb.observations().at("Data.A").size(), std::size_t(1));
        model.setValueForKeyPath(1, "Data.A");
        model.setValueForKeyPath(2, "Data.A");
        QCOMPARE(responder.calls.size(), std::size_t(2));
        // A single key path: the new value only.
        QCOMPARE(responder.calls.back().change.newValue.intValue(), 2);
        QVERIFY(responder.calls.back().change.oldValue.isNull());

        // Removing what was never registered does nothing.
        rb.removeResponderObserver(&model, "Data.B");
        TwainDialogData other;
        rb.removeResponderObserver(&other, "Data.A");
        QCOMPARE(model.observationCount(&responder), std::size_t(1));
        rb.removeResponderObserver(&model, "Data.A");
        QCOMPARE(model.observationCount(), before);
        rb.removeResponderObserver(&model, "Data.A");
        QCOMPARE(model.observationCount(), before);
    }

    void keyPathArrayObservesNewAndOld() {
        TwainDialogData model;
        model.setValueForKeyPath(1, "Data.A");
        RecordingResponder responder;
        TwResponderBinding rb(&responder);
        rb.addResponderObserverForKeyPathArray(&model,
                                               TwValue::array({"Data.A", 7, TwValue(), "Data.B", "Data.A"}));
        QCOMPARE(model.observationCount(&responder), std::size_t(2));
        model.setValueForKeyPath(5, "Data.A");
        QCOMPARE(responder.calls.size(), std::size_t(1));
        QCOMPARE(responder.calls[0].change.oldValue.intValue(), 1);
        QCOMPARE(responder.calls[0].change.newValue.intValue(), 5);
        rb.addResponderObserverForKeyPathArray(&model, TwValue("not an array"));
        QCOMPARE(model.observationCount(&responder), std::size_t(2));
        rb.removeObserverAll();
        QCOMPARE(model.observationCount(&responder), std::size_t(0));
        QVERIFY(rb.observations().empty());
    }

    void destructionEndsObservationsAndBindings() {
        TwainDialogData model;
        model.setValueForKeyPath("x", "Data.A");
        RecordingResponder responder;
        QLineEdit edit;
        {
            TwResponderBinding rb(&responder);
            rb.addResponderObserver(&model, "Data.A");
            rb.bindValue(&edit, &model, "Data.A");
            QCOMPARE(model.observationCount(), std::size_t(2));
        }
        QCOMPARE(model.observationCount(), std::size_t(0));
        QVERIFY(names(&edit).empty());
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

    // ---- tear-down and binding again ----

    void bindUnbindRebindLeavesNothing() {
        TwainDialogData model;
        ControlDefs defs;
        defs.controls = TwValue::dictionary(
            {{"TestView", TwValue::dictionary({
                              {"Source", TwValue::dictionary({{"enabled", true}, {"hidden", false}})},
                              {"Deskew", TwValue::dictionary({{"enabled", true}, {"hidden", false}})},
                              {"Side", TwValue::dictionary({{"hidden", false}})},
                              {"Custom", TwValue::dictionary({{"enabled", true}, {"hidden", false}})},
                          })}});
        model.setModelDef(&defs);
        fillModel(model);
        const std::size_t baseline = model.observationCount();
        RecordingResponder responder;
        Panel panel;

        auto bound = [&] {
            std::size_t total = 0;
            for (QObject* c : panel.controls())
                total += names(c).size();
            return total;
        };
        auto rb = std::make_unique<TwResponderBinding>(&responder);
        panel.bind(*rb, model);
        const std::size_t bindings = rb->bindings().size();
        QCOMPARE(bound(), bindings);
        QVERIFY(bindings >= 25);
        // One observer per binding, plus the responder's three.
        QCOMPARE(model.observationCount(), baseline + bindings + 3);
        QCOMPARE(model.observationCount(&responder), std::size_t(3));
        QCOMPARE(names(panel.btnCustom), (Names{"enabled", "hidden", "enabled2", "enabled3"}));

        for (int round = 0; round < 3; ++round) {
            rb->removeObserverAll();
            rb->unbindAll();
            QCOMPARE(model.observationCount(), baseline);
            QCOMPARE(bound(), std::size_t(0));
            QVERIFY(rb->bindings().empty());
            // A new binding object, as the owner makes at each bind.
            rb = std::make_unique<TwResponderBinding>(&responder);
            panel.bind(*rb, model);
            QCOMPARE(rb->bindings().size(), bindings);
            QCOMPARE(bound(), bindings);
            QCOMPARE(model.observationCount(), baseline + bindings + 3);
        }
        // Still live after the rounds.
        model.setValueForKeyPath("Back", "temp.SideText");
        QCOMPARE(panel.boxSide->title(), QString("Back"));
        rb.reset();
        QCOMPARE(model.observationCount(), baseline);
        QCOMPARE(bound(), std::size_t(0));
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
        struct Teardown : TwKeyValueObserver {
            TwResponderBinding* rb = nullptr;
            void observeValueForKeyPath(const std::string&, TwObservable*, const TwKeyValueChange&,
                                        void*) override {
                rb->unbindAll();
            }
        } teardown;
        TwainDialogData model;
        model.setValueForKeyPath("a", "Data.A");
        TwResponderBinding rb(&teardown);
        teardown.rb = &rb;
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
};

QTEST_MAIN(TestResponderBinding)
#include "tst_responderbinding.moc"
