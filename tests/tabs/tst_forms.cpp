// The forms of the settings dialog against the outlets, actions and identifiers the tab and panel
// code binds by name, and against the layout rules: every input reachable and named, labels never
// clipped (also with a doubled font), hidden rows leaving no gap.
//
// VMX_FORM_SHOTS=<dir> saves a picture of every form at both font sizes.

#include "TwFormCatalog.h"

#include <QtTest>
#include <QtWidgets>

#include <memory>
#include <string>
#include <vector>

namespace {

enum class Kind { Popup, Combo, Field, Text, Slider, Stepper, Check, Push, Radio, Box, Image, Table, Tabs };

struct Outlet {
    QString name;
    Kind kind;
    int segments = 0; // buttons of a radio group
};

struct Action {
    QString button;
    QString action;
    int tag = -1; // -1: no tag expected
};

// Rows restacked by the tab code: each row is the widgets that share it.
using Restack = QList<QStringList>;

struct FormContract {
    QString className;
    QString identifier; // empty for the main panel
    QList<Outlet> outlets;
    QList<Action> actions;
    QList<Restack> restacks;
};

Outlet o(const char* name, Kind kind, int segments = 0) {
    return {QString::fromLatin1(name), kind, segments};
}

Restack rows(std::initializer_list<QStringList> list) {
    return Restack(list);
}

QList<Outlet> checks(std::initializer_list<const char*> names) {
    QList<Outlet> list;
    for (const char* n : names)
        list << o(n, Kind::Check);
    return list;
}

const QStringList kCleanup{"btnBorderRemoval", "btnRemoveShadow", "btnHoleRemoval", "btnMirror"};

Restack single(const QStringList& names) {
    Restack r;
    for (const QString& n : names)
        r << QStringList{n};
    return r;
}

QList<Outlet> areaOutlets() {
    QList<Outlet> list{o("cmbUnit", Kind::Popup), o("txtFrontX", Kind::Field), o("txtBackX", Kind::Field),
                       o("txtY", Kind::Field),    o("txtWidth", Kind::Field),  o("txtLength", Kind::Field),
                       o("tblSide", Kind::Table), o("boxSubArea", Kind::Box)};
    for (const char* side : {"Front", "Back"}) {
        list << Outlet{QStringLiteral("cmb%1Halftone").arg(side), Kind::Popup};
        for (int n = 1; n <= 3; ++n) {
            list << Outlet{QStringLiteral("btn%1Area%2").arg(side).arg(n), Kind::Check};
            for (const char* field : {"X", "Y", "Width", "Length", "Brightness"})
                list << Outlet{QStringLiteral("txt%1%2%3").arg(side, field).arg(n), Kind::Field};
            list << Outlet{QStringLiteral("stp%1Brightness%2").arg(side).arg(n), Kind::Stepper};
        }
    }
    return list;
}

const QList<FormContract>& contracts() {
    static const QList<FormContract> list{
        {"TwainViewBasic",
         "Basic",
         {o("cmbPaperSource", Kind::Popup), o("cmbPaperSize", Kind::Popup), o("cmbImageType", Kind::Popup),
          o("cmbResolution", Kind::Combo), o("btnCustom", Kind::Push), o("btnLandscape", Kind::Check),
          o("btnDeskew", Kind::Check), o("btnAutoCrop", Kind::Check)},
         {{"btnCustom", "onCustomPaperSize"}},
         {}},
        {"TwainViewCommon",
         "Common",
         checks({"btnAutoCrop", "btnSelectMaxPaperSize", "btnDeskew", "btnSmoothing", "btnIgnorePaperColor",
                 "btnMargin", "btnFitToPage", "btnLengthControl", "btnBorderRemoval", "btnRemoveShadow",
                 "btnHoleRemoval", "btnMirror"}) +
             QList<Outlet>{o("txtPixelRation", Kind::Field), o("sldPixelRation", Kind::Slider),
                           o("txtPixelRationMin", Kind::Text), o("txtPixelRationMax", Kind::Text),
                           o("cmbRateBinaryImage", Kind::Popup), o("boxDistinctionResolution", Kind::Box),
                           o("txtDPI", Kind::Text), o("txtGrayColor", Kind::Text),
                           o("cmbBackgroundColor", Kind::Popup), o("txtBackgroundColor", Kind::Text)},
         {},
         {single(kCleanup), rows({{"btnMargin"},
                                  {"btnFitToPage"},
                                  {"btnLengthControl"},
                                  {"txtBackgroundColor", "cmbBackgroundColor"}})}},
        {"TwainViewLayout",
         "Layout",
         {o("rdoRotate", Kind::Radio, 4), o("rdoDuplex", Kind::Radio, 2), o("btnDoubleExposure", Kind::Check),
          o("btnDoubleExposureCfg", Kind::Push), o("imgDoubleExposure", Kind::Image),
          o("btnPageSeparation", Kind::Check), o("btnPageSeparationCfg", Kind::Push),
          o("imgPageSeparation", Kind::Image), o("btnBlankPageRemoval", Kind::Check),
          o("txtPixelRation", Kind::Field), o("sldPixelRation", Kind::Slider),
          o("txtPixelRationMin", Kind::Text), o("txtPixelRationMax", Kind::Text),
          o("btnShowResult", Kind::Check)},
         {{"btnDoubleExposureCfg", "onDoubleExposure"}, {"btnPageSeparationCfg", "onPageSeparetion"}},
         {}},
        {"TwainViewBinaryImage",
         "BinaryImage",
         QList<Outlet>{o("rdoSide", Kind::Radio, 3), o("txtSide", Kind::Text), o("boxSide", Kind::Box),
                       o("cmbHalftone", Kind::Popup), o("txtBrightness", Kind::Field),
                       o("sldBrightness", Kind::Slider), o("txtContrast", Kind::Field),
                       o("sldContrast", Kind::Slider), o("cmbEmpasis", Kind::Popup),
                       o("cmbGamma", Kind::Popup), o("btnGamma", Kind::Push), o("cmbDrop", Kind::Popup),
                       o("btnDynamicThreshold", Kind::Check), o("cmbDynamicThreshold", Kind::Popup),
                       o("cmbNoiseReductionSize", Kind::Popup), o("cmbNoiseReductionType", Kind::Popup),
                       o("cmbWhiteLevel", Kind::Popup)} +
             checks({"btnBorderRemoval", "btnRemoveShadow", "btnHoleRemoval", "btnMirror", "btnInvert",
                     "btnAutoSeparation"}),
         {{"btnGamma", "onCustomGamma", 0}},
         {single(kCleanup + QStringList{"btnInvert", "btnAutoSeparation"})}},
        {"TwainViewGrayImage",
         "GrayImage",
         QList<Outlet>{o("rdoSide", Kind::Radio, 3), o("txtSide", Kind::Text), o("boxSide", Kind::Box),
                       o("txtBrightness", Kind::Field), o("sldBrightness", Kind::Slider),
                       o("txtContrast", Kind::Field), o("sldContrast", Kind::Slider),
                       o("cmbEmpasis", Kind::Popup), o("cmbGamma", Kind::Popup), o("btnGamma", Kind::Push),
                       o("cmbDrop", Kind::Popup), o("btnHighSpeed", Kind::Check),
                       o("cmbWhiteLevel", Kind::Popup)} +
             checks({"btnBorderRemoval", "btnRemoveShadow", "btnHoleRemoval", "btnMirror"}),
         {{"btnGamma", "onCustomGamma", 1}},
         {single(kCleanup)}},
        {"TwainViewColorImage",
         "ColorImage",
         QList<Outlet>{o("rdoSide", Kind::Radio, 3), o("txtSide", Kind::Text), o("boxSide", Kind::Box),
                       o("txtBrightness", Kind::Field), o("sldBrightness", Kind::Slider),
                       o("txtContrast", Kind::Field), o("sldContrast", Kind::Slider),
                       o("txtChroma", Kind::Field), o("sldChroma", Kind::Slider),
                       o("cmbEmpasis", Kind::Popup), o("cmbGamma", Kind::Popup), o("btnGamma", Kind::Push),
                       o("btnHighSpeed", Kind::Check), o("cmbColorMatching", Kind::Popup)} +
             checks({"btnBorderRemoval", "btnRemoveShadow", "btnHoleRemoval", "btnMirror", "btnSmooth",
                     "btnBackgroundRemoval"}),
         {{"btnGamma", "onCustomGamma", 2}},
         {single(kCleanup + QStringList{"btnSmooth", "btnBackgroundRemoval"})}},
        {"TwainViewFeed",
         "Feed",
         {o("cmbManualFeed", Kind::Popup), o("txtTimeOut", Kind::Field),
          o("btnTimeOutUnlimited", Kind::Check), o("btnDetectDoubleFeed", Kind::Check),
          o("cmbSensitivity", Kind::Popup), o("rdoPage", Kind::Radio, 2), o("txtPage", Kind::Field),
          o("cmbNoLookAhead", Kind::Popup)},
         {},
         {}},
        {"TwainViewArea", "Area", areaOutlets(), {}, {}},
        {"TwainViewControlSheet",
         "ControlSheet",
         checks({"btnDetectSeparationSheet", "btnSkipSeparationSheet"}),
         {},
         {single({"btnDetectSeparationSheet", "btnSkipSeparationSheet"})}},
        {"TwainViewImprinter", "Imprinter", {}, {}, {}},
        {"TwainViewPatchCode", "PatchCode", {}, {}, {}},
        {"TwDlgMain",
         "",
         {o("cmbSettingNames", Kind::Combo), o("btnOK", Kind::Push), o("btnSave", Kind::Push),
          o("btnDelete", Kind::Push), o("btnStart", Kind::Push), o("btnDefault", Kind::Push),
          o("btnPrescan", Kind::Push), o("tableMain", Kind::Tabs), o("btnCancel", Kind::Push),
          o("btnHelp", Kind::Push), o("btnAbout", Kind::Push), o("btnCustomize", Kind::Push)},
         {{"btnOK", "onOK"},
          {"btnCancel", "onCancel"},
          {"btnStart", "onStart"},
          {"btnPrescan", "onPrescan"},
          {"btnDefault", "onDefault"},
          {"btnSave", "onSaveSetting"},
          {"btnDelete", "onDeleteSetting"},
          {"btnHelp", "onHelp"},
          {"btnAbout", "onAbout"},
          {"btnCustomize", "onCustomize"}},
         {}},
    };
    return list;
}

const char* kindName(Kind kind) {
    switch (kind) {
    case Kind::Popup:
        return "pop-up";
    case Kind::Combo:
        return "combo box";
    case Kind::Field:
        return "text field";
    case Kind::Text:
        return "label";
    case Kind::Slider:
        return "slider";
    case Kind::Stepper:
        return "stepper";
    case Kind::Check:
        return "check box";
    case Kind::Push:
        return "push button";
    case Kind::Radio:
        return "radio group";
    case Kind::Box:
        return "group box";
    case Kind::Image:
        return "image view";
    case Kind::Table:
        return "table";
    case Kind::Tabs:
        return "tab view";
    }
    return "?";
}

// Why the widget is not of the kind, or empty.
QString kindMismatch(QWidget* w, const Outlet& outlet) {
    auto combo = qobject_cast<QComboBox*>(w);
    auto label = qobject_cast<QLabel*>(w);
    auto slider = qobject_cast<QSlider*>(w);
    switch (outlet.kind) {
    case Kind::Popup:
        return combo && !combo->isEditable() ? QString() : QStringLiteral("not a non-editable QComboBox");
    case Kind::Combo:
        return combo && combo->isEditable() ? QString() : QStringLiteral("not an editable QComboBox");
    case Kind::Field:
        return qobject_cast<QLineEdit*>(w) ? QString() : QStringLiteral("not a QLineEdit");
    case Kind::Text:
        return label && !label->text().isEmpty() ? QString() : QStringLiteral("not a QLabel with a text");
    case Kind::Slider:
        return slider && slider->orientation() == Qt::Horizontal ? QString()
                                                                 : QStringLiteral("not a horizontal QSlider");
    case Kind::Stepper:
        return qobject_cast<QAbstractSpinBox*>(w) ? QString() : QStringLiteral("not a spin box");
    case Kind::Check:
        return qobject_cast<QCheckBox*>(w) ? QString() : QStringLiteral("not a QCheckBox");
    case Kind::Push:
        return qobject_cast<QPushButton*>(w) ? QString() : QStringLiteral("not a QPushButton");
    case Kind::Radio: {
        if (!w->inherits("TwSegmentedControl"))
            return QStringLiteral("not a TwSegmentedControl");
        const auto buttons = w->findChildren<QAbstractButton*>();
        if (buttons.size() != outlet.segments)
            return QStringLiteral("holds %1 buttons, expected %2").arg(buttons.size()).arg(outlet.segments);
        for (int i = 0; i < outlet.segments; ++i) {
            auto* b = w->findChild<QRadioButton*>(QStringLiteral("%1_%2").arg(outlet.name).arg(i));
            if (!b || b->text().isEmpty())
                return QStringLiteral("no radio button %1_%2 with a text").arg(outlet.name).arg(i);
        }
        return QString();
    }
    case Kind::Box:
        return qobject_cast<QGroupBox*>(w) ? QString() : QStringLiteral("not a QGroupBox");
    case Kind::Image:
        return label && w->inherits("TwImageView") && label->text().isEmpty()
                   ? QString()
                   : QStringLiteral("not a TwImageView without text");
    case Kind::Table:
        return qobject_cast<QTableWidget*>(w) ? QString() : QStringLiteral("not a QTableWidget");
    case Kind::Tabs:
        return qobject_cast<QTabWidget*>(w) ? QString() : QStringLiteral("not a QTabWidget");
    }
    return QStringLiteral("unknown kind");
}

// Widgets the form itself made: Qt's own inner parts (a spin box's line edit, a table's
// viewport, a tab bar's buttons) carry no name or a "qt_" one, or sit inside such a control.
bool isFormWidget(const QWidget* w) {
    const QString name = w->objectName();
    if (name.isEmpty() || name.startsWith(QLatin1String("qt_")))
        return false;
    for (const QWidget* p = w->parentWidget(); p; p = p->parentWidget())
        if (qobject_cast<const QTabBar*>(p) || qobject_cast<const QComboBox*>(p) ||
            qobject_cast<const QAbstractSpinBox*>(p) || qobject_cast<const QAbstractItemView*>(p))
            return false;
    return true;
}

bool isRadioGroup(const QWidget* w) {
    return w->objectName().startsWith(QLatin1String("rdo")) && !qobject_cast<const QAbstractButton*>(w);
}

// The controls a user edits or presses; a radio group counts once, as its container.
bool isInput(const QWidget* w) {
    if (!isFormWidget(w))
        return false;
    if (isRadioGroup(w))
        return true;
    if (qobject_cast<const QRadioButton*>(w))
        return false;
    return qobject_cast<const QComboBox*>(w) || qobject_cast<const QLineEdit*>(w) ||
           qobject_cast<const QAbstractSlider*>(w) || qobject_cast<const QAbstractSpinBox*>(w) ||
           qobject_cast<const QAbstractButton*>(w) || qobject_cast<const QAbstractItemView*>(w) ||
           qobject_cast<const QTabWidget*>(w);
}

QList<QWidget*> inputs(QWidget* form) {
    QList<QWidget*> list;
    const auto all = form->findChildren<QWidget*>();
    for (QWidget* w : all)
        if (isInput(w))
            list << w;
    return list;
}

std::unique_ptr<QWidget> make(const QString& className) {
    return std::unique_ptr<QWidget>(TwFormCatalog::create(className));
}

void settle(QWidget* form) {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    if (form->layout())
        form->layout()->activate();
}

// Shows the form at its size hint with the application font scaled.
void showAtSizeHint(QWidget* form, qreal scale) {
    QFont font = QApplication::font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * scale);
    else
        font.setPixelSize(qRound(font.pixelSize() * scale));
    form->setFont(font);
    form->show();
    QVERIFY(QTest::qWaitForWindowExposed(form));
    settle(form);
    form->resize(form->sizeHint());
    settle(form);
}

void saveShot(QWidget* form, const QString& tag) {
    const QString dir = qEnvironmentVariable("VMX_FORM_SHOTS");
    if (dir.isEmpty())
        return;
    QDir().mkpath(dir);
    const QString path =
        QDir(dir).filePath(form->objectName() + QLatin1Char('@') + tag + QStringLiteral(".png"));
    if (!form->grab().save(path))
        qWarning("could not save %s", qPrintable(path));
}

// The Area tab's back-side controls share the place of their front twins; only one side shows.
void showAreaSide(QWidget* form, bool back) {
    const auto all = form->findChildren<QWidget*>();
    for (QWidget* w : all) {
        const QString name = w->objectName();
        if (name.size() > 3 && name.mid(3).startsWith(QLatin1String("Front")) &&
            name != QLatin1String("txtFrontX"))
            w->setVisible(!back);
        else if (name.size() > 3 && name.mid(3).startsWith(QLatin1String("Back")) &&
                 name != QLatin1String("txtBackX"))
            w->setVisible(back);
    }
}

QString mnemonic(const QString& text) {
    for (int i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != QLatin1Char('&'))
            continue;
        if (text[i + 1] == QLatin1Char('&')) {
            ++i;
            continue;
        }
        return text.mid(i + 1, 1).toLower();
    }
    return QString();
}

QRect rectIn(QWidget* w, QWidget* form) {
    return QRect(w->mapTo(form, QPoint(0, 0)), w->size());
}

// A label that stays when the control of its row goes: one the scanner model never hides.
bool isPlainLabel(const QWidget* w) {
    return qobject_cast<const QLabel*>(w) && w->objectName().startsWith(QLatin1String("lab"));
}

void widgetsOf(QLayoutItem* item, QWidgetList* out) {
    if (QWidget* w = item->widget())
        out->append(w);
    else if (QLayout* l = item->layout())
        for (int i = 0; i < l->count(); ++i)
            widgetsOf(l->itemAt(i), out);
}

struct GridRow {
    QList<QLayoutItem*> items;
    bool spansRows = false;
};

QMap<int, GridRow> gridRows(QGridLayout* grid) {
    QMap<int, GridRow> rows;
    for (int i = 0; i < grid->count(); ++i) {
        int row, column, rowSpan, columnSpan;
        grid->getItemPosition(i, &row, &column, &rowSpan, &columnSpan);
        for (int r = row; r < row + rowSpan; ++r) {
            rows[r].items << grid->itemAt(i);
            rows[r].spansRows = rows[r].spansRows || rowSpan > 1;
        }
    }
    return rows;
}

// Top of a grid row in the form's coordinates, or -1 when nothing of it shows.
int rowTop(const GridRow& row, QWidget* parent, QWidget* form) {
    int top = -1;
    for (QLayoutItem* item : row.items) {
        if (item->isEmpty())
            continue;
        const int y = parent->mapTo(form, item->geometry().topLeft()).y();
        top = top < 0 ? y : qMin(top, y);
    }
    return top;
}

} // namespace

class TestForms : public QObject {
    Q_OBJECT

private:
    void formRows() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < contracts().size(); ++i)
            QTest::newRow(qPrintable(contracts()[i].className)) << i;
    }

private slots:
    void initTestCase() {
        static QtMessageHandler previous = nullptr;
        previous = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext& context, const QString& text) {
                if (!text.contains(QLatin1String("propagateSizeHints")))
                    previous(type, context, text);
            });
    }

    void catalogNamesEveryFormOnce() {
        QStringList expected;
        for (const FormContract& contract : contracts())
            expected << contract.className;
        QStringList names = TwFormCatalog::classNames();
        QCOMPARE(names.size(), expected.size());
        names.sort();
        expected.sort();
        QCOMPARE(names, expected);
    }

    void catalogRefusesUnknownNames() {
        QCOMPARE(TwFormCatalog::create(QStringLiteral("TwainViewNothing")), nullptr);
        QCOMPARE(TwFormCatalog::create(QString()), nullptr);
    }

    void formIsItsClassWithParent_data() { formRows(); }
    void formIsItsClassWithParent() {
        QFETCH(int, index);
        const FormContract& contract = contracts()[index];
        QWidget parent;
        QWidget* form = TwFormCatalog::create(contract.className, &parent);
        QVERIFY(form);
        QCOMPARE(form->parent(), &parent);
        QCOMPARE(form->objectName(), contract.className);
        QVERIFY(form->layout() != nullptr);
        if (contract.identifier.isEmpty()) {
            QVERIFY(qobject_cast<QDialog*>(form));
            // The main panel fills its tab view from the model definition.
            auto* tabs = form->findChild<QTabWidget*>(QStringLiteral("tableMain"));
            QVERIFY(tabs);
            QCOMPARE(tabs->count(), 0);
        } else {
            QCOMPARE(form->property("tabIdentifier").toString(), contract.identifier);
            QVERIFY(!qobject_cast<QDialog*>(form));
        }
    }

    void outletsExistWithTheirKind_data() { formRows(); }
    void outletsExistWithTheirKind() {
        QFETCH(int, index);
        const FormContract& contract = contracts()[index];
        auto form = make(contract.className);
        QStringList faults;
        for (const Outlet& outlet : contract.outlets) {
            const auto found = form->findChildren<QWidget*>(outlet.name);
            if (found.size() != 1) {
                faults << QStringLiteral("%1: %2 widgets").arg(outlet.name).arg(found.size());
                continue;
            }
            const QString why = kindMismatch(found.first(), outlet);
            if (!why.isEmpty())
                faults << QStringLiteral("%1 (%2): %3")
                              .arg(outlet.name, QLatin1String(kindName(outlet.kind)), why);
        }
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QStringLiteral("; "))));
    }

    void objectNamesAreUnique_data() { formRows(); }
    void objectNamesAreUnique() {
        QFETCH(int, index);
        auto form = make(contracts()[index].className);
        QSet<QString> seen;
        QStringList twice;
        const auto all = form->findChildren<QObject*>();
        for (QObject* obj : all) {
            if (!obj->isWidgetType() || !isFormWidget(static_cast<QWidget*>(obj)))
                continue;
            if (seen.contains(obj->objectName()))
                twice << obj->objectName();
            seen.insert(obj->objectName());
        }
        QVERIFY2(twice.isEmpty(), qPrintable(twice.join(QLatin1Char(' '))));
    }

    void buttonsNameTheirActions_data() { formRows(); }
    void buttonsNameTheirActions() {
        QFETCH(int, index);
        const FormContract& contract = contracts()[index];
        auto form = make(contract.className);
        // Every push button says which action it runs.
        const auto buttons = form->findChildren<QPushButton*>();
        QStringList expectedButtons;
        for (const Action& a : contract.actions)
            expectedButtons << a.button;
        for (QPushButton* b : buttons) {
            QVERIFY2(expectedButtons.contains(b->objectName()),
                     qPrintable(b->objectName() + QStringLiteral(" has no expected action")));
        }
        for (const Action& a : contract.actions) {
            auto* b = form->findChild<QPushButton*>(a.button);
            QVERIFY2(b, qPrintable(a.button));
            QCOMPARE(b->property("action").toString(), a.action);
            if (a.tag >= 0) {
                bool ok = false;
                QCOMPARE(b->property("tag").toInt(&ok), a.tag);
                QVERIFY(ok);
            }
        }
    }

    void inputsHaveAccessibleNames_data() { formRows(); }
    void inputsHaveAccessibleNames() {
        QFETCH(int, index);
        auto form = make(contracts()[index].className);
        QStringList unnamed;
        for (QWidget* w : inputs(form.get())) {
            if (w->accessibleName().trimmed().isEmpty())
                unnamed << w->objectName();
            if (isRadioGroup(w)) {
                const auto buttons = w->findChildren<QAbstractButton*>();
                for (QAbstractButton* b : buttons)
                    if (b->accessibleName().trimmed().isEmpty())
                        unnamed << b->objectName();
            }
        }
        QVERIFY2(unnamed.isEmpty(), qPrintable(unnamed.join(QLatin1Char(' '))));
    }

    void labelsHaveBuddiesAndDistinctMnemonics_data() { formRows(); }
    void labelsHaveBuddiesAndDistinctMnemonics() {
        QFETCH(int, index);
        auto form = make(contracts()[index].className);
        QStringList faults;
        // A label in front of a control leads to it.
        const auto forms = form->findChildren<QFormLayout*>();
        for (QFormLayout* layout : forms) {
            for (int row = 0; row < layout->rowCount(); ++row) {
                auto* label =
                    qobject_cast<QLabel*>(layout->itemAt(row, QFormLayout::LabelRole)
                                              ? layout->itemAt(row, QFormLayout::LabelRole)->widget()
                                              : nullptr);
                QLayoutItem* field = layout->itemAt(row, QFormLayout::FieldRole);
                if (!label || !field)
                    continue;
                QWidgetList fieldWidgets;
                if (field->widget())
                    fieldWidgets << field->widget();
                else if (field->layout())
                    for (int i = 0; i < field->layout()->count(); ++i)
                        if (QWidget* w = field->layout()->itemAt(i)->widget())
                            fieldWidgets << w;
                bool hasInput = false;
                for (QWidget* w : fieldWidgets)
                    hasInput = hasInput || isInput(w);
                if (!hasInput)
                    continue;
                QWidget* buddy = label->buddy();
                bool inField = false;
                for (QWidget* w : fieldWidgets)
                    inField = inField || (buddy && (buddy == w || w->isAncestorOf(buddy)));
                if (!inField)
                    faults << QStringLiteral("%1 leads to no control of its row").arg(label->objectName());
            }
        }
        // Mnemonics: every one leads somewhere and no two share a letter.
        QHash<QString, QString> used;
        const auto widgets = form->findChildren<QWidget*>();
        for (QWidget* w : widgets) {
            QString text;
            if (auto* label = qobject_cast<QLabel*>(w)) {
                text = label->text();
                if (!mnemonic(text).isEmpty() && !label->buddy())
                    faults << QStringLiteral("%1 has a mnemonic but no buddy").arg(w->objectName());
            } else if (auto* button = qobject_cast<QAbstractButton*>(w)) {
                text = button->text();
            } else if (auto* box = qobject_cast<QGroupBox*>(w)) {
                text = box->title();
            }
            const QString key = mnemonic(text);
            if (key.isEmpty())
                continue;
            if (used.contains(key))
                faults << QStringLiteral("'%1' on %2 and %3").arg(key, used[key], w->objectName());
            used.insert(key, w->objectName());
        }
        // A label that follows a control names one of the form.
        for (QWidget* w : widgets) {
            const QString followed = w->property("follows").toString();
            if (!followed.isEmpty() && !form->findChild<QWidget*>(followed))
                faults << QStringLiteral("%1 follows no control %2").arg(w->objectName(), followed);
        }
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QStringLiteral("; "))));
    }

    void tabReachesEveryInput_data() { formRows(); }
    void tabReachesEveryInput() {
        QFETCH(int, index);
        const FormContract& contract = contracts()[index];
        auto form = make(contract.className);
        if (auto* tabs = form->findChild<QTabWidget*>(QStringLiteral("tableMain")))
            tabs->addTab(new QLineEdit, QStringLiteral("Page")); // as the panel will
        const bool area = contract.className == QLatin1String("TwainViewArea");
        form->show();
        form->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(form.get()));
        // The Area tab shows one side's sub-areas at a time: try both.
        for (int pass = 0; pass < (area ? 2 : 1); ++pass) {
            if (area)
                showAreaSide(form.get(), pass == 1);
            settle(form.get());
            const QList<QWidget*> wanted = [&] {
                QList<QWidget*> list;
                for (QWidget* w : inputs(form.get()))
                    if (w->isVisibleTo(form.get()) && w->isEnabled())
                        list << w;
                return list;
            }();
            if (wanted.isEmpty())
                continue;
            wanted.first()->setFocus(Qt::OtherFocusReason);
            QSet<QWidget*> reached;
            QList<QWidget*> order;
            for (int step = 0; step < 4 * wanted.size() + 8; ++step) {
                QWidget* focus = QApplication::focusWidget();
                QVERIFY2(focus, qPrintable(QStringLiteral("nothing has the focus after ") +
                                           (order.isEmpty() ? QStringLiteral("start")
                                                            : order.last()->objectName())));
                QWidget* input = focus;
                while (input && input != form.get() && !wanted.contains(input))
                    input = input->parentWidget();
                if (input && input != form.get()) {
                    if (order.isEmpty() || order.last() != input)
                        order << input;
                    reached.insert(input);
                }
                QTest::keyClick(focus, Qt::Key_Tab);
            }
            QStringList missed;
            for (QWidget* w : wanted)
                if (!reached.contains(w))
                    missed << w->objectName();
            QVERIFY2(missed.isEmpty(), qPrintable(QStringLiteral("Tab never reaches: ") + missed.join(' ')));
            // Within one container Tab never goes back: the next control is below the last one
            // (next row) or to its right (along the row, or up to the top of the next column).
            QList<QWidget*> cycle;
            for (QWidget* w : order) {
                if (cycle.contains(w))
                    break;
                cycle << w;
            }
            QStringList backwards;
            for (int i = 0; i + 1 < cycle.size(); ++i) {
                QWidget* a = cycle[i];
                QWidget* b = cycle[i + 1];
                if (a->parentWidget() != b->parentWidget())
                    continue;
                const QRect ra = a->geometry();
                const QRect rb = b->geometry();
                if (rb.top() < ra.center().y() && rb.left() < ra.right())
                    backwards << a->objectName() + QStringLiteral("->") + b->objectName();
            }
            QVERIFY2(backwards.isEmpty(),
                     qPrintable(QStringLiteral("Tab goes back: ") + backwards.join(' ')));
        }
    }

    void layoutFitsItsText_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<qreal>("scale");
        for (int i = 0; i < contracts().size(); ++i) {
            QTest::addRow("%s@1x", qPrintable(contracts()[i].className)) << i << 1.0;
            QTest::addRow("%s@2x", qPrintable(contracts()[i].className)) << i << 2.0;
        }
    }
    void layoutFitsItsText() {
        QFETCH(int, index);
        QFETCH(qreal, scale);
        auto form = make(contracts()[index].className);
        showAtSizeHint(form.get(), scale);
        if (QTest::currentTestFailed())
            return;
        saveShot(form.get(), QStringLiteral("%1x").arg(scale));
        checkFits(form.get());
    }

    // The main panel as the user sees it: every tab page in the tab view.
    void mainPanelWithTabsFits_data() {
        QTest::addColumn<qreal>("scale");
        QTest::newRow("1x") << 1.0;
        QTest::newRow("2x") << 2.0;
    }
    void mainPanelWithTabsFits() {
        QFETCH(qreal, scale);
        auto panel = make(QStringLiteral("TwDlgMain"));
        auto* tabs = panel->findChild<QTabWidget*>(QStringLiteral("tableMain"));
        QVERIFY(tabs);
        QList<QWidget*> pages;
        for (const FormContract& contract : contracts()) {
            if (contract.identifier.isEmpty() || contract.identifier == QLatin1String("Imprinter") ||
                contract.identifier == QLatin1String("PatchCode"))
                continue;
            QWidget* page = TwFormCatalog::create(contract.className);
            tabs->addTab(page, page->windowTitle());
            pages << page;
        }
        showAtSizeHint(panel.get(), scale);
        if (QTest::currentTestFailed())
            return;
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            settle(panel.get());
            checkFits(panel.get());
            if (QTest::currentTestFailed())
                return;
            if (i == 0)
                saveShot(panel.get(), QStringLiteral("tabs-%1x").arg(scale));
        }
    }

    void hiddenRowsLeaveNoGap_data() { formRows(); }
    void hiddenRowsLeaveNoGap() {
        QFETCH(int, index);
        const FormContract& contract = contracts()[index];
        auto form = make(contract.className);
        showAtSizeHint(form.get(), 1.0);
        if (QTest::currentTestFailed())
            return;
        QStringList faults;
        // The rows the tab code restacks: hiding one moves the next up into its place.
        for (const Restack& restack : contract.restacks) {
            for (int i = 0; i + 1 < restack.size(); ++i) {
                auto* here = form->findChild<QWidget*>(restack[i].first());
                auto* next = form->findChild<QWidget*>(restack[i + 1].first());
                QVERIFY2(here && next, qPrintable(restack[i].first()));
                const int top = rectIn(here, form.get()).top();
                const int nextTop = rectIn(next, form.get()).top();
                if (nextTop <= top)
                    faults
                        << QStringLiteral("%1 is not below %2").arg(next->objectName(), here->objectName());
                for (const QString& name : restack[i])
                    form->findChild<QWidget*>(name)->hide();
                settle(form.get());
                if (rectIn(next, form.get()).top() != top)
                    faults << QStringLiteral("hiding %1 leaves %2 at %3, not %4")
                                  .arg(restack[i].join('+'), next->objectName())
                                  .arg(rectIn(next, form.get()).top())
                                  .arg(top);
                for (const QString& name : restack[i])
                    form->findChild<QWidget*>(name)->show();
                settle(form.get());
                if (rectIn(next, form.get()).top() != nextTop)
                    faults << QStringLiteral("%1 does not return").arg(next->objectName());
            }
        }
        // Any row of a grid whose labels follow their controls, as a scanner model hides its
        // controls: the labels go with them and the rows below move up.
        const auto grids = form->findChildren<QGridLayout*>();
        for (QGridLayout* grid : grids) {
            QWidget* parent = grid->parentWidget();
            const QMap<int, GridRow> rows = gridRows(grid);
            const QList<int> numbers = rows.keys();
            for (int k = 0; k + 1 < numbers.size(); ++k) {
                const GridRow& row = rows[numbers[k]];
                const int top = rowTop(row, parent, form.get());
                if (row.spansRows || top < 0)
                    continue;
                int next = k + 1;
                while (next < numbers.size() && rowTop(rows[numbers[next]], parent, form.get()) < 0)
                    ++next;
                if (next == numbers.size() || rows[numbers[next]].spansRows)
                    continue;
                QWidgetList widgets;
                for (QLayoutItem* item : row.items)
                    widgetsOf(item, &widgets);
                bool hideable = !widgets.isEmpty();
                for (QWidget* w : widgets)
                    if (isPlainLabel(w) && !w->property("follows").isValid() && !w->isHidden())
                        hideable = false;
                if (!hideable)
                    continue;
                QWidgetList changed;
                for (QWidget* w : widgets) {
                    if (isPlainLabel(w) || w->isHidden())
                        continue;
                    w->hide();
                    changed << w;
                }
                settle(form.get());
                for (QWidget* w : widgets)
                    if (isPlainLabel(w) && !w->isHidden())
                        faults << QStringLiteral("%1 stays when its control hides").arg(w->objectName());
                const int moved = rowTop(rows[numbers[next]], parent, form.get());
                if (moved != top)
                    faults << QStringLiteral("%1 row %2 hidden: next row at %3, not %4")
                                  .arg(grid->objectName())
                                  .arg(numbers[k])
                                  .arg(moved)
                                  .arg(top);
                for (QWidget* w : changed)
                    w->show();
                settle(form.get());
                for (QWidget* w : widgets)
                    if (isPlainLabel(w) && w->isHidden())
                        faults << QStringLiteral("%1 does not return with its control").arg(w->objectName());
            }
        }
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QStringLiteral("; "))));
    }

private:
    void checkFits(QWidget* form) {
        QStringList faults;
        const auto all = form->findChildren<QWidget*>();
        for (QWidget* w : all) {
            if (!isFormWidget(w) || !w->isVisibleTo(form))
                continue;
            const QSize hint = w->sizeHint();
            const QString name = w->objectName();
            if (auto* label = qobject_cast<QLabel*>(w); label && !label->text().isEmpty()) {
                if (w->width() < hint.width() || w->height() < hint.height())
                    faults << QStringLiteral("label %1 clipped: %2x%3 < %4x%5")
                                  .arg(name)
                                  .arg(w->width())
                                  .arg(w->height())
                                  .arg(hint.width())
                                  .arg(hint.height());
            } else if (auto* button = qobject_cast<QAbstractButton*>(w);
                       button && !button->text().isEmpty()) {
                if (w->width() < hint.width() || w->height() < hint.height())
                    faults << QStringLiteral("button %1 clipped: %2 < %3")
                                  .arg(name)
                                  .arg(w->width())
                                  .arg(hint.width());
            } else if (qobject_cast<QComboBox*>(w)) {
                if (w->width() < hint.width())
                    faults << QStringLiteral("pop-up %1 squeezed: %2 < %3")
                                  .arg(name)
                                  .arg(w->width())
                                  .arg(hint.width());
            } else if (auto* box = qobject_cast<QGroupBox*>(w)) {
                const int title = box->fontMetrics().horizontalAdvance(box->title());
                if (w->width() < box->minimumSizeHint().width() || w->width() < title)
                    faults << QStringLiteral("group %1 narrower than its title").arg(name);
            } else if (auto* edit = qobject_cast<QLineEdit*>(w)) {
                bool ok = false;
                const int digits = edit->property("fieldChars").toInt(&ok);
                const int need =
                    ok ? edit->fontMetrics().horizontalAdvance(QString(digits, QLatin1Char('0'))) : 0;
                QStyleOptionFrame opt;
                opt.initFrom(edit);
                opt.lineWidth = edit->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &opt, edit);
                const QRect text = edit->style()->subElementRect(QStyle::SE_LineEditContents, &opt, edit);
                if (text.width() < need)
                    faults
                        << QStringLiteral("field %1 shows %2 of %3 px").arg(name).arg(text.width()).arg(need);
                // and no wider than its digits ask, with a little room
                const int room = 2 * edit->fontMetrics().horizontalAdvance(QLatin1Char('0'));
                if (ok && text.width() > need + room)
                    faults << QStringLiteral("field %1 is %2 px for %3 px of digits")
                                  .arg(name)
                                  .arg(text.width())
                                  .arg(need);
            }
            // Inside its parent, and clear of its siblings.
            QWidget* parent = w->parentWidget();
            if (parent && parent != form->window() && !parent->rect().contains(w->geometry()) &&
                isFormWidget(parent))
                faults << QStringLiteral("%1 sticks out of %2").arg(name, parent->objectName());
            if (!parent)
                continue;
            const auto siblings = parent->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
            for (QWidget* s : siblings) {
                if (s == w || !isFormWidget(s) || !s->isVisibleTo(form) || s->objectName() > name)
                    continue;
                if (s->geometry().intersects(w->geometry()))
                    faults << QStringLiteral("%1 overlaps %2").arg(name, s->objectName());
            }
        }
        if (!form->rect().contains(form->childrenRect()))
            faults << QStringLiteral("contents exceed the form");
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QStringLiteral("; "))));
    }
};

QTEST_MAIN(TestForms)
#include "tst_forms.moc"
