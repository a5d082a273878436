// The forms of the settings dialog against the outlets, actions and identifiers the tab and panel
// code binds by name, and against the layout rules: every input reachable and named, labels never
// clipped (also with a doubled font).
//
// VMX_FORM_SHOTS=<dir> saves a picture of every form at both font sizes.

#include "TwFormCatalog.h"
#include "TwKeyboard.h"
#include "WidgetTestSupport.h"

namespace {

// A form's outlets, one line per kind ("kind: name name/segments ..."), and its push buttons with
// their actions ("button=action" or "button=action/tag").
struct FormContract {
    QString className;
    QString identifier; // empty for the main panel
    QString outlets;
    QString actions;
};

QString areaOutlets() {
    QStringList fields, checks, steppers;
    for (const char* side : {"Front", "Back"})
        for (int n = 1; n <= 3; ++n) {
            checks << QStringLiteral("btn%1Area%2").arg(side).arg(n);
            steppers << QStringLiteral("stp%1Brightness%2").arg(side).arg(n);
            for (const char* field : {"X", "Y", "Width", "Length", "Brightness"})
                fields << QStringLiteral("txt%1%2%3").arg(side, field).arg(n);
        }
    return QStringLiteral("popup: cmbUnit cmbFrontHalftone cmbBackHalftone\ntable: tblSide\nbox: boxSubArea\n"
                          "field: txtFrontX txtBackX txtY txtWidth txtLength %1\ncheck: %2\nstepper: %3")
        .arg(fields.join(' '), checks.join(' '), steppers.join(' '));
}

const QString kCleanup = QStringLiteral(" btnBorderRemoval btnRemoveShadow btnHoleRemoval btnMirror");
const QString kSide = QStringLiteral("radio: rdoSide/3\ntext: txtSide\nbox: boxSide\n");
const QString kLevels =
    QStringLiteral("field: txtBrightness txtContrast\nslider: sldBrightness sldContrast\n");

const QList<FormContract>& contracts() {
    static const QList<FormContract> list{
        {"TwainViewBasic", "Basic", R"(popup: cmbPaperSource cmbPaperSize cmbImageType
combo: cmbResolution
push: btnCustom
check: btnLandscape btnDeskew btnAutoCrop)",
         "btnCustom=onCustomPaperSize"},
        {"TwainViewCommon", "Common", R"(field: txtPixelRation
slider: sldPixelRation
text: txtPixelRationMin txtPixelRationMax txtDPI txtGrayColor txtBackgroundColor
popup: cmbRateBinaryImage cmbBackgroundColor
box: boxDistinctionResolution
check: btnAutoCrop btnSelectMaxPaperSize btnDeskew btnSmoothing btnIgnorePaperColor btnMargin btnFitToPage
check: btnLengthControl)" + kCleanup,
         ""},
        {"TwainViewLayout", "Layout", R"(radio: rdoRotate/4 rdoDuplex/2
check: btnDoubleExposure btnPageSeparation btnBlankPageRemoval btnShowResult
push: btnDoubleExposureCfg btnPageSeparationCfg
image: imgDoubleExposure imgPageSeparation
field: txtPixelRation
slider: sldPixelRation
text: txtPixelRationMin txtPixelRationMax)",
         "btnDoubleExposureCfg=onDoubleExposure btnPageSeparationCfg=onPageSeparetion"},
        {"TwainViewBinaryImage", "BinaryImage",
         kSide + kLevels + R"(push: btnGamma
popup: cmbHalftone cmbEmpasis cmbGamma cmbDrop cmbDynamicThreshold cmbNoiseReductionSize
popup: cmbNoiseReductionType cmbWhiteLevel
check: btnDynamicThreshold btnInvert btnAutoSeparation)" +
             kCleanup,
         "btnGamma=onCustomGamma/0"},
        {"TwainViewGrayImage", "GrayImage", kSide + kLevels + R"(push: btnGamma
popup: cmbEmpasis cmbGamma cmbDrop cmbWhiteLevel
check: btnHighSpeed)" + kCleanup,
         "btnGamma=onCustomGamma/1"},
        {"TwainViewColorImage", "ColorImage",
         kSide + kLevels + R"(push: btnGamma
field: txtChroma
slider: sldChroma
popup: cmbEmpasis cmbGamma cmbColorMatching
check: btnHighSpeed btnSmooth btnBackgroundRemoval)" +
             kCleanup,
         "btnGamma=onCustomGamma/2"},
        {"TwainViewFeed", "Feed", R"(popup: cmbManualFeed cmbSensitivity cmbNoLookAhead
field: txtTimeOut txtPage
check: btnTimeOutUnlimited btnDetectDoubleFeed
radio: rdoPage/2)",
         ""},
        {"TwainViewArea", "Area", areaOutlets(), ""},
        {"TwainViewControlSheet", "ControlSheet", "check: btnDetectSeparationSheet btnSkipSeparationSheet",
         ""},
        {"TwainViewImprinter", "Imprinter", "", ""},
        {"TwainViewPatchCode", "PatchCode", "", ""},
        {"TwDlgMain", "", R"(combo: cmbSettingNames
tabs: tableMain
push: btnOK btnSave btnDelete btnStart btnDefault btnPrescan btnCancel btnHelp btnAbout btnCustomize)",
         "btnOK=onOK btnCancel=onCancel btnStart=onStart btnPrescan=onPrescan btnDefault=onDefault "
         "btnSave=onSaveSetting btnDelete=onDeleteSetting btnHelp=onHelp btnAbout=onAbout "
         "btnCustomize=onCustomize"},
        {"TwDlgSaveSetting", "", "text: labTitle\ncombo: cmbNames\npush: btnOK btnCancel",
         "btnOK=onOK btnCancel=onCancel"},
        {"TwDlgPaperSize", "", R"(tableview: tblPaperSize
field: txtName txtWidth txtLength
popup: cmbUnit
text: labMutil labADFMinWidth labADFMinLength labADFMaxWidth labADFMaxLength
text: labFlatMinWidth labFlatMinLength labFlatMaxWidth labFlatMaxLength
push: btnSave btnDelete btnHelp btnClose)",
         "btnSave=onSave btnDelete=onDelete btnHelp=onHelp btnClose=onClose"},
        {"TwDlgCustomGamma", "", R"(combo: cmbSettingName
push: btnSaveAs btnDelete btnClose
slider: sldGammaRed sldGammaGreen sldGammaBlue sldClipBlack sldClipWhite
field: txtGammaRed txtGammaGreen txtGammaBlue txtClipBlack txtClipWhite
check: btnRGBLink
text: labGammaRed labGammaGreen labGammaBlue labGammaMin labGammaMid labGammaMax
curves: viewGamma
sample: viewSample)",
         "btnSaveAs=onSaveAs btnDelete=onDelete btnClose=onClose"},
        {"TwDlgAbout", "",
         "text: txtDriverVersion txtDriverVerInfo txtScannerProduct txtScannerVersion txtScannerInterface "
         "txtCopyright\npush: btnOK",
         "btnOK=onOK"},
        {"TwDlgScanning", "", "push: btnStop", "btnStop=onScanCancel"},
        {"TwDlgDoubleExposure", "",
         "radio: rdoDoubleExposure/4\npopup: cmbPaperSize\npush: btnOK btnCancel btnHelp",
         "btnOK=onOK btnCancel=onCancel btnHelp=onHelp"},
        {"TwDlgPageSeparation", "", "radio: rdoPageSeparation/4\npush: btnOK btnCancel btnHelp",
         "btnOK=onOK btnCancel=onCancel btnHelp=onHelp"},
        {"TwDlgCustom", "",
         "popup: cmbUnit\nbox: boxRemoval boxShadow\nfield: txtRemovalLeft txtRemovalTop txtRemovalRight "
         "txtRemovalBottom txtShadowLeft txtShadowTop txtShadowRight txtShadowBottom\npush: btnOK btnCancel "
         "btnHelp",
         "btnOK=onOK btnCancel=onCancel btnHelp=onHelp"},
    };
    return list;
}

// Why the widget is not of the kind, or empty.
QString kindMismatch(QWidget* w, const QString& kind, int segments) {
    auto combo = qobject_cast<QComboBox*>(w);
    auto label = qobject_cast<QLabel*>(w);
    auto slider = qobject_cast<QSlider*>(w);
    const QHash<QString, bool> ok{
        {"popup", combo && !combo->isEditable()},
        {"combo", combo && combo->isEditable()},
        {"field", qobject_cast<QLineEdit*>(w) != nullptr},
        {"text", label && !label->text().isEmpty()},
        {"slider", slider && slider->orientation() == Qt::Horizontal},
        {"stepper", qobject_cast<QAbstractSpinBox*>(w) != nullptr},
        {"check", qobject_cast<QCheckBox*>(w) != nullptr},
        {"push", qobject_cast<QPushButton*>(w) != nullptr},
        {"box", qobject_cast<QGroupBox*>(w) != nullptr},
        {"image", label && w->inherits("TwImageView") && label->text().isEmpty()},
        {"table", qobject_cast<QTableWidget*>(w) != nullptr},
        {"tableview", qobject_cast<QTableView*>(w) && !qobject_cast<QTableWidget*>(w)},
        {"curves", w->inherits("TwGammaTableView")},
        {"sample", w->inherits("TwGammaSampleView")},
        {"tabs", qobject_cast<QTabWidget*>(w) != nullptr},
    };
    if (kind != QLatin1String("radio"))
        return ok.value(kind) ? QString() : QStringLiteral("not a %1").arg(kind);
    if (!w->inherits("TwSegmentedControl") || w->findChildren<QAbstractButton*>().size() != segments)
        return QStringLiteral("not a TwSegmentedControl of %1 buttons").arg(segments);
    for (int i = 0; i < segments; ++i) {
        auto* b = w->findChild<QRadioButton*>(QStringLiteral("%1_%2").arg(w->objectName()).arg(i));
        if (!b || b->text().isEmpty())
            return QStringLiteral("no radio button %1 with a text").arg(i);
    }
    return QString();
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
    const QString dir = qEnvironmentVariable("VMX_FORM_SHOTS");
    if (!dir.isEmpty() && QDir().mkpath(dir))
        form->grab().save(
            QDir(dir).filePath(QStringLiteral("%1@%2x.png").arg(form->objectName()).arg(scale)));
}

// The Area tab's back-side controls share the place of their front twins; only one side shows.
void showAreaSide(QWidget* form, bool back) {
    const auto all = form->findChildren<QWidget*>();
    for (QWidget* w : all) {
        const QString name = w->objectName().mid(3);
        if (name.startsWith(QLatin1String("Front")) && name != QLatin1String("FrontX"))
            w->setVisible(!back);
        else if (name.startsWith(QLatin1String("Back")) && name != QLatin1String("BackX"))
            w->setVisible(back);
    }
}

} // namespace

class TestForms : public QObject {
    Q_OBJECT

    void formRows() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < contracts().size(); ++i)
            row(qPrintable(contracts()[i].className), i);
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

    void theCatalogNamesEveryFormOnce() {
        QStringList expected, names = TwFormCatalog::classNames();
        for (const FormContract& contract : contracts())
            expected << contract.className;
        names.sort();
        expected.sort();
        QCOMPARE(names, expected);
        QCOMPARE(TwFormCatalog::create(QStringLiteral("TwainViewNothing")), nullptr);
    }

    // The form is made under its parent with its identifier, every outlet is there once with its
    // kind, names are unique, every push button names its action (and tag), every input has an
    // accessible name and every mnemonic is distinct and leads to a control.
    void formMatchesItsContract_data() { formRows(); }
    void formMatchesItsContract() {
        QFETCH(int, index);
        const FormContract& contract = contracts()[index];
        QWidget parent;
        QWidget* form = TwFormCatalog::create(contract.className, &parent);
        QVERIFY(form && form->layout());
        QCOMPARE(form->parent(), &parent);
        QCOMPARE(form->objectName(), contract.className);
        QCOMPARE(form->property("tabIdentifier").toString(), contract.identifier);
        QCOMPARE(qobject_cast<QDialog*>(form) != nullptr, contract.identifier.isEmpty());

        QStringList faults;
        for (const QString& line : contract.outlets.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
            const QString kind = words.takeFirst().chopped(1);
            for (const QString& word : words) {
                const QString name = word.section(QLatin1Char('/'), 0, 0);
                const auto found = form->findChildren<QWidget*>(name);
                const QString why = found.size() != 1
                                        ? QStringLiteral("%1 widgets").arg(found.size())
                                        : kindMismatch(found.first(), kind, word.section('/', 1).toInt());
                if (!why.isEmpty())
                    faults << name + QStringLiteral(": ") + why;
            }
        }
        QSet<QString> seen;
        for (QWidget* w : form->findChildren<QWidget*>()) {
            if (isFormWidget(w) && seen.contains(w->objectName()))
                faults << QStringLiteral("%1 twice").arg(w->objectName());
            seen.insert(w->objectName());
        }

        QStringList actions = contract.actions.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (QPushButton* b : form->findChildren<QPushButton*>()) {
            QString made = b->objectName() + QLatin1Char('=') + b->property("action").toString();
            if (b->property("tag").isValid())
                made += QLatin1Char('/') + b->property("tag").toString();
            if (!actions.removeOne(made))
                faults << QStringLiteral("unexpected action %1").arg(made);
        }
        if (!actions.isEmpty())
            faults << QStringLiteral("missing actions ") + actions.join(' ');

        // Every input has an accessible name, the buttons of a radio group too.
        for (QWidget* w : inputs(form)) {
            QList<QWidget*> named{w};
            if (isRadioGroup(w))
                for (QAbstractButton* b : w->findChildren<QAbstractButton*>())
                    named << b;
            for (QWidget* n : named)
                if (n->accessibleName().trimmed().isEmpty())
                    faults << n->objectName() + QStringLiteral(" has no accessible name");
        }
        // Every mnemonic leads somewhere and no two share a letter.
        QHash<QKeySequence, QString> used;
        for (QWidget* w : form->findChildren<QWidget*>()) {
            auto* label = qobject_cast<QLabel*>(w);
            auto* button = qobject_cast<QAbstractButton*>(w);
            auto* box = qobject_cast<QGroupBox*>(w);
            const QKeySequence key = QKeySequence::mnemonic(label    ? label->text()
                                                            : button ? button->text()
                                                            : box    ? box->title()
                                                                     : QString());
            if (key.isEmpty())
                continue;
            if (label && !label->buddy())
                faults << QStringLiteral("%1 has a mnemonic but no buddy").arg(w->objectName());
            if (used.contains(key))
                faults << QStringLiteral("%1 on %2 and %3").arg(key.toString(), used[key], w->objectName());
            used.insert(key, w->objectName());
        }
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QStringLiteral("; "))));
    }

    // Tab goes through a form in the order its controls are seen, top to bottom and left to right
    // (a group box's contents where it stands, a radio group once), reaches every input, and comes
    // back round to the first; a stepper is no stop of its own (its field steps with Up and Down).
    void tabFollowsWhatIsSeen_data() {
        columns<QString, QString>("className", "order");
        auto row = [](const char* className, const char* order, const char* name = nullptr) {
            QTest::newRow(name ? name : className) << QString(className) << QString(order);
        };
        row("TwainViewBasic", "cmbPaperSource cmbPaperSize btnCustom btnLandscape cmbImageType cmbResolution "
                              "btnAutoCrop btnDeskew");
        row("TwainViewCommon",
            "btnAutoCrop btnSelectMaxPaperSize btnDeskew btnSmoothing btnMargin btnFitToPage "
            "btnLengthControl cmbBackgroundColor sldPixelRation txtPixelRation "
            "btnIgnorePaperColor cmbRateBinaryImage btnBorderRemoval btnRemoveShadow "
            "btnHoleRemoval btnMirror");
        row("TwainViewLayout",
            "rdoRotate rdoDuplex btnDoubleExposure btnDoubleExposureCfg btnPageSeparation "
            "btnPageSeparationCfg btnBlankPageRemoval sldPixelRation txtPixelRation btnShowResult");
        row("TwainViewBinaryImage",
            "rdoSide cmbHalftone sldBrightness txtBrightness sldContrast txtContrast "
            "cmbEmpasis cmbGamma btnGamma cmbDrop btnDynamicThreshold cmbDynamicThreshold "
            "cmbNoiseReductionSize cmbNoiseReductionType cmbWhiteLevel btnBorderRemoval "
            "btnRemoveShadow btnHoleRemoval btnMirror btnInvert btnAutoSeparation");
        row("TwainViewGrayImage",
            "rdoSide sldBrightness txtBrightness sldContrast txtContrast cmbEmpasis cmbGamma "
            "btnGamma cmbDrop btnHighSpeed cmbWhiteLevel btnBorderRemoval btnRemoveShadow "
            "btnHoleRemoval btnMirror");
        row("TwainViewColorImage",
            "rdoSide sldBrightness txtBrightness sldContrast txtContrast sldChroma txtChroma "
            "cmbEmpasis cmbGamma btnGamma cmbColorMatching btnHighSpeed btnBorderRemoval "
            "btnRemoveShadow btnHoleRemoval btnMirror btnSmooth btnBackgroundRemoval");
        row("TwainViewFeed",
            "cmbManualFeed txtTimeOut btnTimeOutUnlimited btnDetectDoubleFeed cmbSensitivity "
            "rdoPage txtPage cmbNoLookAhead");
        const char* area =
            "cmbUnit txtFrontX txtWidth txtBackX txtLength txtY tblSide btn%1Area1 txt%1X1 txt%1Y1 "
            "txt%1Width1 txt%1Length1 txt%1Brightness1 btn%1Area2 txt%1X2 txt%1Y2 txt%1Width2 "
            "txt%1Length2 txt%1Brightness2 btn%1Area3 txt%1X3 txt%1Y3 txt%1Width3 txt%1Length3 "
            "txt%1Brightness3 cmb%1Halftone";
        for (const char* side : {"Front", "Back"})
            QTest::newRow(qPrintable(QStringLiteral("TwainViewArea, %1").arg(side)))
                << QStringLiteral("TwainViewArea") << QString(area).arg(side);
        row("TwainViewControlSheet", "btnDetectSeparationSheet btnSkipSeparationSheet");
        row("TwDlgMain",
            "cmbSettingNames btnSave btnDelete tableMain pageField btnHelp btnAbout btnCustomize "
            "btnDefault btnPrescan btnStart btnCancel btnOK");
        row("TwDlgSaveSetting", "cmbNames btnCancel btnOK");
        row("TwDlgPaperSize",
            "tblPaperSize txtName txtWidth txtLength cmbUnit btnSave btnDelete btnHelp btnClose");
        row("TwDlgCustomGamma",
            "cmbSettingName btnSaveAs btnDelete sldGammaRed txtGammaRed sldGammaGreen "
            "txtGammaGreen sldGammaBlue txtGammaBlue btnRGBLink sldClipBlack txtClipBlack "
            "sldClipWhite txtClipWhite btnClose");
        row("TwDlgDoubleExposure", "rdoDoubleExposure cmbPaperSize btnHelp btnCancel btnOK");
        row("TwDlgPageSeparation", "rdoPageSeparation btnHelp btnCancel btnOK");
        row("TwDlgCustom",
            "cmbUnit txtRemovalLeft txtRemovalTop txtRemovalRight txtRemovalBottom txtShadowLeft "
            "txtShadowTop txtShadowRight txtShadowBottom btnHelp btnCancel btnOK");
    }
    void tabFollowsWhatIsSeen() {
        auto [className, order] = fetch<QString, QString>("className", "order");
        const QStringList expected = order.split(' ');
        auto form = make(className);
        if (auto* tabs = form->findChild<QTabWidget*>(QStringLiteral("tableMain"))) {
            auto* field = new QLineEdit;
            field->setObjectName(QStringLiteral("pageField"));
            tabs->addTab(field, QStringLiteral("Page"));
            TwSetVisualTabOrder(form.get()); // as the panel does once its pages are in
        }
        if (className == QLatin1String("TwainViewArea"))
            showAreaSide(form.get(), QString(QTest::currentDataTag()).endsWith(QLatin1String("Back")));
        for (const QString& name : expected) // a bare form may start with some of them off
            if (auto* w = form->findChild<QWidget*>(name))
                w->setEnabled(true);
        form->show();
        form->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(form.get()));
        settle(form.get());
        // The control a focused widget belongs to: a radio group for its buttons, a control for
        // its own parts.
        auto stopOf = [&](QWidget* w) {
            while (w && w != form.get() && !isFormWidget(w))
                w = w->parentWidget();
            if (w && qobject_cast<QRadioButton*>(w) && isRadioGroup(w->parentWidget()))
                w = w->parentWidget();
            return w ? w->objectName() : QString();
        };
        auto* first = form->findChild<QWidget*>(expected.first());
        QVERIFY(first);
        if (isRadioGroup(first))
            first = first->findChildren<QRadioButton*>().value(0);
        first->setFocus(Qt::TabFocusReason);
        QStringList seen;
        for (int step = 0; step <= expected.size(); ++step) {
            QWidget* focus = QApplication::focusWidget();
            QVERIFY2(focus, "nothing has the focus");
            seen << stopOf(focus);
            QTest::keyClick(focus, Qt::Key_Tab);
        }
        QCOMPARE(seen.takeLast(), expected.first()); // round to the first
        QCOMPARE(seen, expected);
        for (QWidget* w : inputs(form.get()))
            if (w->isVisibleTo(form.get()) && w->isEnabled() && !qobject_cast<QAbstractSpinBox*>(w))
                QVERIFY2(seen.contains(w->objectName()), qPrintable(w->objectName() + " is never reached"));
    }

    // Every form alone, and the main panel with every tab page in its tab view, at 1x and 2x.
    void layoutFitsItsText_data() {
        columns<int, qreal>("index", "scale");
        for (int i = 0; i < contracts().size(); ++i)
            for (qreal scale : {1.0, 2.0})
                QTest::addRow("%s@%gx", qPrintable(contracts()[i].className), scale) << i << scale;
        for (qreal scale : {1.0, 2.0})
            QTest::addRow("panel with tabs@%gx", scale) << -1 << scale;
    }
    void layoutFitsItsText() {
        auto [index, scale] = fetch<int, qreal>("index", "scale");
        auto form = make(index < 0 ? QStringLiteral("TwDlgMain") : contracts()[index].className);
        auto* tabs = form->findChild<QTabWidget*>(QStringLiteral("tableMain"));
        if (index < 0)
            for (const FormContract& contract : contracts())
                if (!contract.identifier.isEmpty() && contract.identifier != QLatin1String("Imprinter") &&
                    contract.identifier != QLatin1String("PatchCode")) {
                    QWidget* page = TwFormCatalog::create(contract.className);
                    tabs->addTab(page, page->windowTitle());
                }
        showAtSizeHint(form.get(), scale);
        if (QTest::currentTestFailed())
            return;
        for (int i = 0; i < (tabs ? qMax(1, tabs->count()) : 1); ++i) {
            if (tabs && tabs->count()) {
                tabs->setCurrentIndex(i);
                settle(form.get());
            }
            checkFits(form.get());
            if (QTest::currentTestFailed())
                return;
        }
    }

private:
    // Texts, buttons, pop-ups, group titles and fields at their size; nothing sticks out of its
    // parent or overlaps a sibling.
    void checkFits(QWidget* form) {
        QStringList faults;
        auto size = [](QSize s) {
            return QStringLiteral("%1x%2").arg(s.width()).arg(s.height());
        };
        for (QWidget* w : form->findChildren<QWidget*>()) {
            if (!isFormWidget(w) || !w->isVisibleTo(form))
                continue;
            const QSize hint = w->sizeHint();
            const QString name = w->objectName();
            auto* label = qobject_cast<QLabel*>(w);
            auto* button = qobject_cast<QAbstractButton*>(w);
            if ((label && !label->text().isEmpty()) || (button && !button->text().isEmpty())) {
                if (w->width() < hint.width() || w->height() < hint.height())
                    faults << name + " clipped: " + size(w->size()) + " < " + size(hint);
            } else if (qobject_cast<QComboBox*>(w)) {
                if (w->width() < hint.width())
                    faults << name + " squeezed: " + size(w->size()) + " < " + size(hint);
            } else if (auto* box = qobject_cast<QGroupBox*>(w)) {
                const int title = box->fontMetrics().horizontalAdvance(box->title());
                if (w->width() < box->minimumSizeHint().width() || w->width() < title)
                    faults << QStringLiteral("group %1 narrower than its title").arg(name);
            } else if (auto* edit = qobject_cast<QLineEdit*>(w)) {
                const int digits = edit->property("fieldChars").toInt();
                const int need = edit->fontMetrics().horizontalAdvance(QString(digits, QLatin1Char('0')));
                QStyleOptionFrame opt;
                opt.initFrom(edit);
                opt.lineWidth = edit->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &opt, edit);
                const QRect text = edit->style()->subElementRect(QStyle::SE_LineEditContents, &opt, edit);
                if (text.width() < need)
                    faults << name + " shows " + size(text.size()) + " of " + QString::number(need) + " px";
            }
            QWidget* parent = w->parentWidget();
            if (parent && parent != form->window() && !parent->rect().contains(w->geometry()) &&
                isFormWidget(parent))
                faults << QStringLiteral("%1 sticks out of %2").arg(name, parent->objectName());
            if (!parent)
                continue;
            for (QWidget* s : parent->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
                if (s != w && isFormWidget(s) && s->isVisibleTo(form) && s->objectName() < name &&
                    s->geometry().intersects(w->geometry()))
                    faults << QStringLiteral("%1 overlaps %2").arg(name, s->objectName());
        }
        if (!form->rect().contains(form->childrenRect()))
            faults << QStringLiteral("contents exceed the form");
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QStringLiteral("; "))));
    }
};

QTEST_MAIN(TestForms)
#include "tst_forms.moc"
