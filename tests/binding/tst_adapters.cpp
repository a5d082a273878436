// Each control class both ways: a model change shows on the control without being written back,
// and a user action writes the model once with the value the control stands for. Ending the
// editing of a window: a rejected entry refuses with the range message and keeps the focus;
// accepted entries are written and shown with their pattern.
#include "WidgetTestSupport.h"

#include <stdexcept>

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

class TestAdapters : public QObject {
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
    }
    void cleanup() {
        rb.reset();
        window.reset();
        TwSetFormatterAlert({});
        QCOMPARE(model.observationCount(), std::size_t(0));
    }

    // ---- pop-up ----

    void popUpFollowsChoicesAndSelection() {
        model.setValueForKeyPath(
            TwValue::array({choice(0, "ADF Front"), choice(2, "Flatbed"), choice(5, "Passport")}),
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
        model.setValueForKeyPath(TwValue::array({choice(2, "Flatbed"), choice(3, "Auto")}),
                                 "content.PaperSource");
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
        QCOMPARE(valuesAt(model, {"Data.Index", "Data.Tag"}), TwValue::array({2, 10}));
        model.setValueForKeyPath(7, "Data.Index");
        QCOMPARE(byIndex->currentIndex(), -1);
    }

    // ---- editable combo box ----

    void comboBoxTypesThroughItsFormatter() {
        model.setValueForKeyPath(TwValue::array({choice(150, "150 dpi"), choice(300, "300 dpi")}),
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

    void textFieldWithoutContinuousUpdatesWritesAtTheEnd() {
        model.setValueForKeyPath("old", "Data.Name");
        auto* edit = new QLineEdit(window.get());
        rb->bind(kTwValueBinding, edit, &model, "Data.Name", TwBindingOptions{});
        QTest::keyClicks(edit, "er");
        QCOMPARE(model.valueForKeyPath("Data.Name"), TwValue("old"));
        QTest::keyClick(edit, Qt::Key_Return);
        QCOMPARE(model.valueForKeyPath("Data.Name"), TwValue("older"));
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

    void imageViewShowsThePictureAtThePath() {
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
    }

    void labelAndGroupBoxShowTheValue() {
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
        QCOMPARE(valuesAt(model, {"Data.Layout.Rotate", "Data.Feed.Mode"}), TwValue::array({0, 30}));
        QCOMPARE(writes.count(), 1);
        // A value no button stands for selects none.
        model.setValueForKeyPath(9, "Data.Layout.Rotate");
        model.setValueForKeyPath(25, "Data.Feed.Mode");
        QCOMPARE(byIndex->selectedIndex(), -1);
        QCOMPARE(byTag->selectedIndex(), -1);
        QCOMPARE(writes.count(), 2);
    }

    // ---- slider and stepper ----

    void sliderScalesRealValues() {
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
    }

    void untrackedSliderWritesOnRelease() {
        auto* slider = new QSlider(Qt::Horizontal);
        SetSliderRange(slider, 1, 255, 0);
        slider->setTracking(false);
        bound(slider, "Data.Brightness", 10);
        ChangeRecorder writes(model, {"Data.Brightness"});
        slider->setSliderDown(true);
        slider->setSliderPosition(100);
        slider->setSliderPosition(120);
        QCOMPARE(writes.count(), 0);
        slider->setSliderDown(false);
        QCOMPARE(writes.count(), 1);
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
        model.setValueForKeyPath(TwValue::array({"Gamma 1", "Gamma 2", "Gamma 3"}), "content.Gammas");
        model.setValueForKeyPath(2, "Data.GammaIndex");
        auto* list = new QListWidget(window.get());
        rb->bindContentValues(list, &model, "content.Gammas");
        rb->bindSelectedIndex(list, &model, "Data.GammaIndex");
        QCOMPARE(list->count(), 3);
        QCOMPARE(list->currentRow(), 2);
        list->setCurrentRow(0); // the selection model reports it like a click
        QCOMPARE(model.valueForKeyPath("Data.GammaIndex"), TwValue(0));
        model.setValueForKeyPath(TwValue::array({"Gamma 1", "Gamma 2"}), "content.Gammas");
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
        QCOMPARE(alerts, (Alerts{{ratio, "Must in 10.0 - 356.0"}}));
        QCOMPARE(window->focusWidget(), ratio);
        QCOMPARE(ratio->selectedText(), QString("400")); // the user's text stays until corrected

        QTest::keyClicks(ratio, "35");
        QVERIFY(TwEndEditing(window.get()));
        QCOMPARE(alerts.size(), 1);
        QCOMPARE(model.valueForKeyPath("Data.Ratio"), TwValue(35.0));
        QCOMPARE(ratio->text(), QString("35.0"));
        QVERIFY(!ratio->isModified());
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
        QVERIFY(TwEndEditing(window.get()) && alerts.isEmpty());
    }

    void endingWritesEntriesNotYetWritten() {
        model.setValueForKeyPath("a", "Data.Late");
        auto* late = placed(new QLineEdit);
        rb->bind(kTwValueBinding, late, &model, "Data.Late", TwBindingOptions{});
        late->setFocus();
        QTest::keyClicks(late, "bc");
        QCOMPARE(model.valueForKeyPath("Data.Late"), TwValue("a"));
        QVERIFY(TwEndEditing(window.get()));
        QCOMPARE(model.valueForKeyPath("Data.Late"), TwValue("abc"));
        QVERIFY(TwEndEditing(nullptr)); // no window: nothing to end
    }

    void formatterWithoutMessageUsesTheDefaultText() {
        auto* plain = placed(new QLineEdit);
        auto* bare = new TwainNumberFormatter(plain);
        bare->setMaximum(5.0);
        plain->setValidator(bare);
        QTest::keyClicks(plain, "7");
        QVERIFY(!TwEndEditing(window.get()));
        QCOMPARE(alerts, (Alerts{{plain, TwFormatterDefaultMessage()}}));
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

    void comboBoxEntryIsCheckedToo() {
        auto* combo = bound(ranged(new QComboBox, 50, 600, 0), "Data.Resolution", 300);
        combo->lineEdit()->selectAll();
        QTest::keyClicks(combo->lineEdit(), "9000");
        QVERIFY(!TwEndEditing(window.get()));
        QCOMPARE(alerts, (Alerts{{combo, "Must in 50 - 600"}}));
        QVERIFY(window->focusWidget() == combo || window->focusWidget() == combo->lineEdit());
    }
};

QTEST_MAIN(TestAdapters)
#include "tst_adapters.moc"
