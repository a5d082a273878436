// Each control class both ways: a model change shows on the control without being written back,
// and a user action writes the model once with the value the control stands for.
#include "BindingTestSupport.h"
#include "TwBindingAdapters.h"
#include "TwBindingWidgets.h"
#include "TwBoundControl.h"
#include "TwRangeHelpers.h"
#include "TwResponderBinding.h"
#include "TwainNumberFormatter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

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

private slots:
    void init() {
        rb = std::make_unique<TwResponderBinding>();
        window = std::make_unique<QWidget>();
        window->resize(400, 300);
        window->show(); // clicks need laid out, visible buttons
    }
    void cleanup() {
        rb.reset();
        window.reset();
        QCOMPARE(model.observationCount(), std::size_t(0));
    }

    // ---- pop-up ----

    void popUpFollowsChoicesAndSelection() {
        model.setValueForKeyPath(
            TwValue::array({entry(0, "ADF Front"), entry(2, "Flatbed"), entry(5, "Passport")}),
            "content.PaperSource");
        model.setValueForKeyPath(2, "Data.PaperSource");
        auto* combo = new QComboBox(window.get());
        WriteCounter writes(model, "Data.PaperSource");
        rb->bindContent(combo, &model, "content.PaperSource");
        rb->bindValue(combo, &model, "Data.PaperSource");
        QCOMPARE(combo->itemText(2), QString("Passport"));
        QCOMPARE(combo->currentIndex(), 1);
        QCOMPARE(writes.count, 0);

        model.setValueForKeyPath(5, "Data.PaperSource");
        QCOMPARE(combo->currentIndex(), 2);
        QCOMPARE(writes.count, 1); // the model's own write, no echo

        // A user picks with the keyboard: the entry's value is written, once.
        QTest::keyClick(combo, Qt::Key_Up);
        QCOMPARE(writes.count, 2);
        QCOMPARE(model.valueForKeyPath("Data.PaperSource"), TwValue(2));

        // New choices: the selection follows the value; a value not among them selects nothing.
        model.setValueForKeyPath(TwValue::array({entry(2, "Flatbed"), entry(3, "Auto")}),
                                 "content.PaperSource");
        QCOMPARE(combo->currentIndex(), 0);
        model.setValueForKeyPath(9, "Data.PaperSource");
        QCOMPARE(combo->currentIndex(), -1);
        QCOMPARE(writes.count, 3);
    }

    void popUpBySelectedIndexAndTag() {
        model.setValueForKeyPath(1, "Data.Index");
        model.setValueForKeyPath(30, "Data.Tag");
        auto* byIndex = new QComboBox(window.get());
        byIndex->addItems({"a", "b", "c"});
        auto* byTag = new QComboBox(window.get());
        byTag->addItem("ten", 10);
        byTag->addItem("twenty", 20);
        byTag->addItem("thirty", 30);
        rb->bindSelectedIndex(byIndex, &model, "Data.Index");
        rb->bind(kTwSelectedTagBinding, byTag, &model, "Data.Tag");
        QCOMPARE(byIndex->currentIndex(), 1);
        QCOMPARE(byTag->currentIndex(), 2);
        emit byIndex->activated(2);
        emit byTag->activated(0);
        QCOMPARE(model.valueForKeyPath("Data.Index"), TwValue(2));
        QCOMPARE(model.valueForKeyPath("Data.Tag"), TwValue(10));
        model.setValueForKeyPath(7, "Data.Index");
        QCOMPARE(byIndex->currentIndex(), -1);
    }

    // ---- editable combo box ----

    void comboBoxTypesThroughItsFormatter() {
        model.setValueForKeyPath(TwValue::array({entry(150, "150 dpi"), entry(300, "300 dpi")}),
                                 "content.Resolution");
        model.setValueForKeyPath(300, "Data.Resolution");
        auto* combo = new QComboBox(window.get());
        combo->setEditable(true);
        SetTextRange(combo, 50, 600, 0);
        WriteCounter writes(model, "Data.Resolution");
        rb->bindContent(combo, &model, "content.Resolution");
        rb->bindValue(combo, &model, "Data.Resolution");
        QCOMPARE(combo->itemText(0), QString("150")); // the values, not the titles
        QCOMPARE(combo->currentText(), QString("300"));

        combo->lineEdit()->clear();
        QTest::keyClicks(combo->lineEdit(), "200");
        // "2" and "20" are below the range and not written; "200" is.
        QCOMPARE(writes.count, 1);
        QCOMPARE(model.valueForKeyPath("Data.Resolution"), TwValue(200));
        QVERIFY(model.valueForKeyPath("Data.Resolution").isInteger());

        model.setValueForKeyPath(600, "Data.Resolution");
        QCOMPARE(combo->currentText(), QString("600"));
        QCOMPARE(writes.count, 2);
    }

    void comboBoxWithoutFormatterWritesText() {
        model.setValueForKeyPath(TwValue::array({"Default", "Mine"}), "profiles.content");
        model.setValueForKeyPath("Default", "profiles.name");
        auto* combo = new QComboBox(window.get());
        combo->setEditable(true);
        rb->bindContentValues(combo, &model, "profiles.content");
        rb->bindValue(combo, &model, "profiles.name");
        QCOMPARE(combo->currentText(), QString("Default"));
        QTest::keyClicks(combo->lineEdit(), "X");
        QCOMPARE(model.valueForKeyPath("profiles.name"), TwValue("DefaultX"));
        // New choices keep the text the value gives.
        model.setValueForKeyPath(TwValue::array({"A", "B"}), "profiles.content");
        QCOMPARE(combo->currentText(), QString("DefaultX"));
    }

    // ---- text field ----

    void textFieldWritesAsTyped() {
        model.setValueForKeyPath("", "Data.Name");
        auto* edit = new QLineEdit(window.get());
        WriteCounter writes(model, "Data.Name");
        rb->bindValue(edit, &model, "Data.Name");
        QTest::keyClicks(edit, "abc");
        QCOMPARE(writes.count, 3);
        QCOMPARE(model.valueForKeyPath("Data.Name"), TwValue("abc"));
        model.setValueForKeyPath("xyz", "Data.Name");
        QCOMPARE(edit->text(), QString("xyz"));
        QCOMPARE(writes.count, 4);
        QVERIFY(!edit->isModified());
    }

    void textFieldShowsWhatTheModelKeeps() {
        // A rule of the model that corrects what is written.
        struct Upper : TwKeyValueObserver {
            TwainDialogData* model = nullptr;
            void observeValueForKeyPath(const std::string& keyPath, TwObservable*,
                                        const TwKeyValueChange& change, void*) override {
                QString text = QString::fromStdString(change.newValue.stringValue());
                if (text != text.toUpper())
                    model->setValueForKeyPath(text.toUpper().toStdString(), keyPath);
            }
        } upper;
        upper.model = &model;
        model.setValueForKeyPath("", "Data.Code");
        model.addObserver(&upper, "Data.Code", kTwObserveNew);
        auto* edit = new QLineEdit(window.get());
        rb->bindValue(edit, &model, "Data.Code");
        QTest::keyClicks(edit, "ab");
        QCOMPARE(model.valueForKeyPath("Data.Code"), TwValue("AB"));
        QCOMPARE(edit->text(), QString("AB"));
        model.removeObserver(&upper, "Data.Code");
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

    void numberFieldWritesOnlyAcceptedEntries() {
        model.setValueForKeyPath(12, "Data.Ratio");
        auto* edit = new QLineEdit(window.get());
        SetTextRange(edit, 100, 3560, 1);
        WriteCounter writes(model, "Data.Ratio");
        rb->bindValue(edit, &model, "Data.Ratio");
        QCOMPARE(edit->text(), QString("12.0"));
        edit->selectAll();
        QTest::keyClicks(edit, "400");
        // "4" is below the range, "40" inside, "400" above: only 40 was written.
        QCOMPARE(writes.count, 1);
        QCOMPARE(edit->text(), QString("400"));
        QCOMPARE(model.valueForKeyPath("Data.Ratio"), TwValue(40.0));
        QTest::keyClick(edit, Qt::Key_Return); // a rejected entry does not end
        QCOMPARE(edit->text(), QString("400"));
        QTest::keyClick(edit, Qt::Key_Backspace); // "40": written again
        QTest::keyClick(edit, Qt::Key_Backspace); // "4": below
        QTest::keyClicks(edit, "2");
        QCOMPARE(model.valueForKeyPath("Data.Ratio"), TwValue(42.0));
        QCOMPARE(writes.count, 3);
        // Return ends the entry: shown with the pattern, nothing written again.
        QTest::keyClick(edit, Qt::Key_Return);
        QCOMPARE(edit->text(), QString("42.0"));
        QCOMPARE(writes.count, 3);
        // A new range reformats the field.
        SetTextRange(edit, 0, 1000, 2);
        QCOMPARE(edit->text(), QString("42.00"));
    }

    void sharedFormatterChangeReformatsItsFields() {
        model.setValueForKeyPath(25.4, "temp.Area.Width");
        model.setValueForKeyPath(10, "temp.Area.Length");
        std::unique_ptr<TwainNumberFormatter> shared(CreateTextRangeFormatter(0, 2100, 1));
        auto* width = new QLineEdit(window.get());
        auto* length = new QLineEdit(window.get());
        width->setValidator(shared.get());
        length->setValidator(shared.get());
        rb->bindValues({"temp.Area.Width", width, "temp.Area.Length", length}, &model);
        QCOMPARE(width->text(), QString("25.4"));
        SetTextRangeFormatter(shared.get(), 0, 827, 2);
        QCOMPARE(width->text(), QString("25.40"));
        QCOMPARE(length->text(), QString("10.00"));
        rb->unbindAll();
        width->setValidator(nullptr);
        length->setValidator(nullptr);
    }

    void textFieldEditableCombinesByAnd() {
        model.setValueForKeyPath("", "Data.Name");
        model.setValueForKeyPath(true, "editable.A");
        model.setValueForKeyPath(true, "editable.B");
        auto* edit = new QLineEdit(window.get());
        rb->bindValue(edit, &model, "Data.Name");
        rb->bind(kTwEditableBinding, edit, &model, "editable.A");
        rb->bind(kTwEditableBinding, edit, &model, "editable.B");
        QVERIFY(!edit->isReadOnly());
        model.setValueForKeyPath(false, "editable.B");
        QVERIFY(edit->isReadOnly());
        QTest::keyClicks(edit, "no");
        QCOMPARE(model.valueForKeyPath("Data.Name"), TwValue(""));
    }

    // ---- label, image view, group box ----

    void imageViewShowsThePictureAtThePath() {
        QTemporaryDir dir;
        QString path = dir.path() + "/LeftRightMk2.png";
        QImage picture(8, 8, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QVERIFY(picture.save(path));
        model.setValueForKeyPath("", "image.DoubleExposure");
        auto* view = new TwImageView(window.get());
        rb->bindValue(view, &model, "image.DoubleExposure");
        QVERIFY(!view->hasImage());
        model.setValueForKeyPath(path.toStdString(), "image.DoubleExposure");
        QCOMPARE(view->imagePath(), path);
        QVERIFY(view->hasImage());
        model.setValueForKeyPath((dir.path() + "/missing.png").toStdString(), "image.DoubleExposure");
        QVERIFY(!view->hasImage());
        QVERIFY(!view->hasImage());
    }

    void labelAndGroupBoxShowTheValue() {
        model.setValueForKeyPath("Auto resolution", "temp.Distinction");
        model.setValueForKeyPath(false, "hidden.Box");
        auto* box = new QGroupBox(window.get());
        auto* label = new QLabel(window.get());
        rb->bindValue(box, &model, "temp.Distinction");
        rb->bindValue(label, &model, "temp.Distinction");
        rb->bind(kTwHiddenBinding, box, &model, "hidden.Box");
        QCOMPARE(box->title(), QString("Auto resolution"));
        model.setValueForKeyPath(12, "temp.Distinction");
        QCOMPARE(box->title(), QString("12"));
        QCOMPARE(label->text(), QString("12"));
        model.setValueForKeyPath(true, "hidden.Box");
        QVERIFY(box->isHidden());
    }

    // ---- buttons ----

    void checkBoxKeepsTheModelsType_data() {
        QTest::addColumn<bool>("boolean");
        QTest::newRow("integer") << false;
        QTest::newRow("boolean") << true;
    }
    void checkBoxKeepsTheModelsType() {
        QFETCH(bool, boolean);
        model.setValueForKeyPath(boolean ? TwValue(true) : TwValue(1), "Data.Deskew.Enable");
        auto* check = new QCheckBox("Deskew", window.get());
        check->adjustSize(); // a click must land on the box or its text
        WriteCounter writes(model, "Data.Deskew.Enable");
        rb->bindValue(check, &model, "Data.Deskew.Enable");
        QVERIFY(check->isChecked());
        QTest::mouseClick(check, Qt::LeftButton);
        TwValue stored = model.valueForKeyPath("Data.Deskew.Enable");
        QCOMPARE(stored.isBoolean(), boolean);
        QCOMPARE(stored.boolValue(), false);
        QCOMPARE(writes.count, 1);
        model.setValueForKeyPath(true, "Data.Deskew.Enable");
        QVERIFY(check->isChecked());
        QCOMPARE(writes.count, 2);
    }

    void pushButtonTitleAndCheckedState() {
        model.setValueForKeyPath("Custom...", "temp.Title");
        model.setValueForKeyPath(0, "Data.Pressed");
        auto* push = new QPushButton(window.get());
        auto* toggle = new QPushButton(window.get());
        toggle->setCheckable(true);
        rb->bindValue(push, &model, "Data.Pressed");
        rb->bind(kTwTitleBinding, push, &model, "temp.Title");
        rb->bindValue(toggle, &model, "Data.Pressed");
        QCOMPARE(push->text(), QString("Custom..."));
        QTest::mouseClick(push, Qt::LeftButton); // a plain button stands for no value
        QCOMPARE(model.valueForKeyPath("Data.Pressed"), TwValue(0));
        QTest::mouseClick(toggle, Qt::LeftButton);
        QCOMPARE(model.valueForKeyPath("Data.Pressed"), TwValue(1));
        QVERIFY(toggle->isChecked());
    }

    // ---- radio group ----

    void radioGroupByIndexAndTag() {
        model.setValueForKeyPath(2, "Data.Layout.Rotate");
        model.setValueForKeyPath(20, "Data.Feed.Mode");
        auto* byIndex = new TwSegmentedControl(window.get());
        auto* byTag = new TwSegmentedControl(window.get());
        QList<QRadioButton*> radios;
        QList<QPushButton*> segments;
        for (int i = 0; i < 3; ++i) {
            radios << new QRadioButton(QString::number(i * 90), byIndex);
            radios.back()->adjustSize();
            segments << new QPushButton(QString::number(i * 10 + 10), byTag);
            segments.back()->setProperty("tag", i * 10 + 10);
        }
        WriteCounter writes(model, "Data.Layout.Rotate");
        rb->bindValue(byIndex, &model, "Data.Layout.Rotate");
        rb->bind(kTwSelectedTagBinding, byTag, &model, "Data.Feed.Mode");
        QCOMPARE(byIndex->selectedIndex(), 2);
        QVERIFY(radios[2]->isChecked());
        QCOMPARE(byTag->selectedIndex(), 1);
        QTest::mouseClick(radios[0], Qt::LeftButton);
        QTest::mouseClick(segments[2], Qt::LeftButton);
        QCOMPARE(model.valueForKeyPath("Data.Layout.Rotate"), TwValue(0));
        QCOMPARE(model.valueForKeyPath("Data.Feed.Mode"), TwValue(30));
        QCOMPARE(writes.count, 1);
        // A value no button stands for selects none.
        model.setValueForKeyPath(9, "Data.Layout.Rotate");
        model.setValueForKeyPath(25, "Data.Feed.Mode");
        QCOMPARE(byIndex->selectedIndex(), -1);
        QCOMPARE(byTag->selectedIndex(), -1);
        QCOMPARE(writes.count, 2);
    }

    // ---- slider and stepper ----

    void sliderScalesRealValues() {
        model.setValueForKeyPath(2.5, "Data.Ratio");
        auto* slider = new QSlider(Qt::Horizontal, window.get());
        SetSliderRange(slider, 1, 500, 2);
        WriteCounter writes(model, "Data.Ratio");
        rb->bindValue(slider, &model, "Data.Ratio");
        QCOMPARE(slider->value(), 250);
        QCOMPARE(writes.count, 0);

        QTest::keyClick(slider, Qt::Key_Right);
        QCOMPARE(writes.count, 1);
        QCOMPARE(model.valueForKeyPath("Data.Ratio").doubleValue(), 2.51);
        QTest::keyClick(slider, Qt::Key_PageUp); // the alternate increment: 1.0
        QCOMPARE(model.valueForKeyPath("Data.Ratio").doubleValue(), 3.51);

        // Dragging writes each position.
        slider->setSliderDown(true);
        slider->setSliderPosition(300);
        slider->setSliderPosition(320);
        slider->setSliderDown(false);
        QCOMPARE(model.valueForKeyPath("Data.Ratio").doubleValue(), 3.2);
        QCOMPARE(writes.count, 4);

        model.setValueForKeyPath(4.0, "Data.Ratio");
        QCOMPARE(slider->value(), 400);
        // A value set by code is no user action.
        slider->setValue(100);
        QCOMPARE(model.valueForKeyPath("Data.Ratio").doubleValue(), 4.0);
    }

    void untrackedSliderWritesOnRelease() {
        model.setValueForKeyPath(10, "Data.Brightness");
        auto* slider = new QSlider(Qt::Horizontal, window.get());
        SetSliderRange(slider, 1, 255, 0);
        slider->setTracking(false);
        WriteCounter writes(model, "Data.Brightness");
        rb->bindValue(slider, &model, "Data.Brightness");
        slider->setSliderDown(true);
        slider->setSliderPosition(100);
        slider->setSliderPosition(120);
        QCOMPARE(writes.count, 0);
        slider->setSliderDown(false);
        QCOMPARE(writes.count, 1);
        QCOMPARE(model.valueForKeyPath("Data.Brightness"), TwValue(120));
        QVERIFY(model.valueForKeyPath("Data.Brightness").isInteger());
    }

    void stepperWritesScaledSteps() {
        model.setValueForKeyPath(5.0, "Data.Step");
        model.setValueForKeyPath(100, "Data.Area.Front.L1.Brightness");
        auto* real = new QDoubleSpinBox(window.get());
        auto* whole = new QSpinBox(window.get());
        SetStepperRange(real, 0, 100, 1, 5);
        SetStepperRange(whole, 1, 255, 0, 1);
        WriteCounter writes(model, "Data.Step");
        rb->bindValue(real, &model, "Data.Step");
        rb->bindValue(whole, &model, "Data.Area.Front.L1.Brightness");
        QCOMPARE(whole->value(), 100);
        QCOMPARE(writes.count, 0);
        real->stepUp();
        QCOMPARE(model.valueForKeyPath("Data.Step").doubleValue(), 5.5);
        whole->stepDown();
        QCOMPARE(model.valueForKeyPath("Data.Area.Front.L1.Brightness"), TwValue(99));
        model.setValueForKeyPath(7.5, "Data.Step");
        QCOMPARE(real->value(), 7.5);
        QCOMPARE(writes.count, 2);
    }

    // ---- table and list ----

    void tableSelectsTheRow() {
        model.setValueForKeyPath(1, "temp.Area.Side");
        auto* table = new QTableWidget(2, 1, window.get());
        table->setItem(0, 0, new QTableWidgetItem("Front"));
        table->setItem(1, 0, new QTableWidgetItem("Back"));
        WriteCounter writes(model, "temp.Area.Side");
        rb->bindValue(table, &model, "temp.Area.Side");
        QCOMPARE(table->currentRow(), 1);
        QCOMPARE(writes.count, 0);
        window->show();
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualItemRect(table->item(0, 0)).center());
        QCOMPARE(model.valueForKeyPath("temp.Area.Side"), TwValue(0));
        QCOMPARE(writes.count, 1);
        model.setValueForKeyPath(5, "temp.Area.Side");
        QVERIFY(table->selectedItems().isEmpty());
        QCOMPARE(writes.count, 2);
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
        model.setValueForKeyPath("red", "Data.Colour");
        auto* picker = new ColourPicker;
        picker->setParent(window.get());
        QCOMPARE(TwAdapterForControl(picker)->name(), "user property");
        WriteCounter writes(model, "Data.Colour");
        rb->bindValue(picker, &model, "Data.Colour");
        QCOMPARE(picker->colour(), QString("red"));
        model.setValueForKeyPath("green", "Data.Colour");
        QCOMPARE(picker->colour(), QString("green"));
        QCOMPARE(writes.count, 1);
        picker->pick("blue");
        QCOMPARE(model.valueForKeyPath("Data.Colour"), TwValue("blue"));
        QCOMPARE(writes.count, 2);
    }

    // A control that throws while it is shown a value, or an observer that throws while the
    // user's value is written, leaves the binding as it was: edits are heard, values shown.
    void aThrowLeavesTheBindingWorking() {
        model.setValueForKeyPath("red", "Data.Colour");
        auto* picker = new ColourPicker;
        picker->setParent(window.get());
        rb->bindValue(picker, &model, "Data.Colour");
        picker->refused = "black";
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model.setValueForKeyPath("black", "Data.Colour"));
        picker->pick("blue");
        QCOMPARE(model.valueForKeyPath("Data.Colour"), TwValue("blue"));

        RecordingResponder thrower;
        model.addObserver(&thrower, "Data.Colour", kTwObserveNew);
        thrower.onChange = [] {
            throw std::runtime_error("observer");
        };
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, picker->pick("green"));
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
};

QTEST_MAIN(TestAdapters)
#include "tst_adapters.moc"
