// The forms of the settings dialog against the outlets, actions and identifiers the tab and panel
// code binds by name, and against the layout rules: every input reachable and named, labels never
// clipped (also with a doubled font).
//
// VMX_FORM_SHOTS=<dir> saves a picture of every form at both font sizes.

#include "TwFormCatalog.h"
#include "TwKeyboard.h"
#include "WidgetTestSupport.h"

namespace {

// A form's outlets in the order Tab visits them, then the others: "name" of the kind its prefix
// names (sld slider, rdo radio group with "/segments", tbl table, box group box, img image view,
// stp stepper, lab text, cmb pop-up, txt field, btn check box), "kind:name" of another kind, and
// "name=action" or "name=action/tag" for a push button and the action it names.
struct FormContract {
    QString className;
    QString identifier; // empty for the main panel
    QString outlets;
};

struct Outlet {
    QString kind, name, extra; // extra: a radio group's segments, a push button's action
};

QList<Outlet> outletsOf(const FormContract& contract) {
    static const QList<std::pair<QString, QString>> prefixes{
        {"sld", "slider"},  {"rdo", "radio"}, {"tbl", "table"}, {"box", "box"},   {"img", "image"},
        {"stp", "stepper"}, {"lab", "text"},  {"cmb", "popup"}, {"txt", "field"}, {"btn", "check"}};
    QList<Outlet> out;
    for (QString token : contract.outlets.split(' ', Qt::SkipEmptyParts)) {
        Outlet o;
        if (token.contains(':'))
            std::tie(o.kind, token) = std::pair(token.section(':', 0, 0), token.section(':', 1));
        const QChar mark = token.contains('=') ? '=' : '/';
        o.name = token.section(mark, 0, 0);
        o.extra = token.section(mark, 1);
        if (mark == '=' && !o.extra.isEmpty())
            o.kind = "push";
        for (auto& [prefix, kind] : prefixes)
            if (o.kind.isEmpty() && o.name.startsWith(prefix))
                o.kind = kind;
        out << o;
    }
    return out;
}

// The Area tab's back-side controls share the place of their front twins; only one side shows.
bool onOtherSide(const QString& name, const QString& side) {
    const QString other = side == "Back" ? "Front" : "Back", rest = name.mid(3);
    return !side.isEmpty() && rest.startsWith(other) && rest != other + "X";
}

// The stops of Tab in order: the inputs of the form (of the side shown, for the Area tab).
QStringList tabStops(const FormContract& contract, const QString& side = {}) {
    static const QStringList inputs{"popup", "combo", "field", "slider",    "check",
                                    "push",  "radio", "table", "tableview", "tabs"};
    QStringList stops;
    for (const Outlet& o : outletsOf(contract))
        if (inputs.contains(o.kind) && !onOtherSide(o.name, side))
            stops << o.name;
    return stops;
}

QString areaOutlets() {
    QString out = "cmbUnit txtFrontX txtWidth txtBackX txtLength txtY tblSide";
    for (const char* side : {"Front", "Back"}) {
        for (int n = 1; n <= 3; ++n)
            out +=
                QStringLiteral(" btn%1Area%2 txt%1X%2 txt%1Y%2 txt%1Width%2 txt%1Length%2 txt%1Brightness%2 "
                               "stp%1Brightness%2")
                    .arg(side)
                    .arg(n);
        out += u" cmb%1Halftone"_s.arg(side);
    }
    return out + " boxSubArea";
}

const QString kCleanup = " btnBorderRemoval btnRemoveShadow btnHoleRemoval btnMirror";
const QString kLevels = "sldBrightness txtBrightness sldContrast txtContrast";

const QList<FormContract>& contracts() {
    static const QList<FormContract> list{
        {"TwainViewBasic", "Basic",
         "cmbPaperSource cmbPaperSize btnCustom=onCustomPaperSize btnLandscape cmbImageType "
         "combo:cmbResolution "
         "btnAutoCrop btnDeskew"},
        {"TwainViewCommon", "Common",
         "btnAutoCrop btnSelectMaxPaperSize btnDeskew btnSmoothing btnMargin btnFitToPage btnLengthControl "
         "cmbBackgroundColor sldPixelRation txtPixelRation btnIgnorePaperColor cmbRateBinaryImage" +
             kCleanup +
             " text:txtPixelRationMin text:txtPixelRationMax text:txtDPI text:txtGrayColor "
             "text:txtBackgroundColor boxDistinctionResolution"},
        {"TwainViewLayout", "Layout",
         "rdoRotate/4 rdoDuplex/2 btnDoubleExposure btnDoubleExposureCfg=onDoubleExposure btnPageSeparation "
         "btnPageSeparationCfg=onPageSeparetion btnBlankPageRemoval sldPixelRation txtPixelRation "
         "btnShowResult "
         "imgDoubleExposure imgPageSeparation text:txtPixelRationMin text:txtPixelRationMax"},
        {"TwainViewBinaryImage", "BinaryImage",
         "rdoSide/3 cmbHalftone " + kLevels +
             " cmbEmpasis cmbGamma btnGamma=onCustomGamma/0 cmbDrop btnDynamicThreshold cmbDynamicThreshold "
             "cmbNoiseReductionSize cmbNoiseReductionType cmbWhiteLevel" +
             kCleanup + " btnInvert btnAutoSeparation text:txtSide boxSide"},
        {"TwainViewGrayImage", "GrayImage",
         "rdoSide/3 " + kLevels +
             " cmbEmpasis cmbGamma btnGamma=onCustomGamma/1 cmbDrop btnHighSpeed cmbWhiteLevel" + kCleanup +
             " text:txtSide boxSide"},
        {"TwainViewColorImage", "ColorImage",
         "rdoSide/3 " + kLevels +
             " sldChroma txtChroma cmbEmpasis cmbGamma btnGamma=onCustomGamma/2 cmbColorMatching "
             "btnHighSpeed" +
             kCleanup + " btnSmooth btnBackgroundRemoval text:txtSide boxSide"},
        {"TwainViewFeed", "Feed",
         "cmbManualFeed txtTimeOut btnTimeOutUnlimited btnDetectDoubleFeed cmbSensitivity rdoPage/2 txtPage "
         "cmbNoLookAhead"},
        {"TwainViewArea", "Area", areaOutlets()},
        {"TwainViewControlSheet", "ControlSheet", "btnDetectSeparationSheet btnSkipSeparationSheet"},
        {"TwainViewImprinter", "Imprinter", ""},
        {"TwainViewPatchCode", "PatchCode", ""},
        {"TwDlgMain", "",
         "combo:cmbSettingNames btnSave=onSaveSetting btnDelete=onDeleteSetting tabs:tableMain "
         "btnHelp=onHelp "
         "btnAbout=onAbout btnCustomize=onCustomize btnDefault=onDefault btnPrescan=onPrescan "
         "btnStart=onStart "
         "btnCancel=onCancel btnOK=onOK"},
        {"TwDlgSaveSetting", "", "combo:cmbNames btnCancel=onCancel btnOK=onOK labTitle"},
        {"TwDlgPaperSize", "",
         "tableview:tblPaperSize txtName txtWidth txtLength cmbUnit btnSave=onSave btnDelete=onDelete "
         "btnHelp=onHelp btnClose=onClose labMutil labADFMinWidth labADFMinLength labADFMaxWidth "
         "labADFMaxLength "
         "labFlatMinWidth labFlatMinLength labFlatMaxWidth labFlatMaxLength"},
        {"TwDlgCustomGamma", "",
         "combo:cmbSettingName btnSaveAs=onSaveAs btnDelete=onDelete sldGammaRed txtGammaRed sldGammaGreen "
         "txtGammaGreen sldGammaBlue txtGammaBlue btnRGBLink sldClipBlack txtClipBlack sldClipWhite "
         "txtClipWhite "
         "btnClose=onClose labGammaRed labGammaGreen labGammaBlue labGammaMin labGammaMid labGammaMax "
         "curves:viewGamma sample:viewSample"},
        {"TwDlgAbout", "",
         "btnOK=onOK text:txtDriverVersion text:txtDriverVerInfo text:txtScannerProduct "
         "text:txtScannerVersion "
         "text:txtScannerInterface text:txtCopyright"},
        {"TwDlgScanning", "", "btnStop=onScanCancel"},
        {"TwDlgDoubleExposure", "",
         "rdoDoubleExposure/4 cmbPaperSize btnHelp=onHelp btnCancel=onCancel btnOK=onOK"},
        {"TwDlgPageSeparation", "", "rdoPageSeparation/4 btnHelp=onHelp btnCancel=onCancel btnOK=onOK"},
        {"TwDlgCustom", "",
         "cmbUnit txtRemovalLeft txtRemovalTop txtRemovalRight txtRemovalBottom txtShadowLeft txtShadowTop "
         "txtShadowRight txtShadowBottom btnHelp=onHelp btnCancel=onCancel btnOK=onOK boxRemoval boxShadow"},
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
    if (kind != u"radio"_s)
        return ok.value(kind) ? QString() : u"not a %1"_s.arg(kind);
    if (!w->inherits("TwSegmentedControl") || w->findChildren<QAbstractButton*>().size() != segments)
        return u"not a TwSegmentedControl of %1 buttons"_s.arg(segments);
    for (int i = 0; i < segments; ++i) {
        auto* b = w->findChild<QRadioButton*>(u"%1_%2"_s.arg(w->objectName()).arg(i));
        if (!b || b->text().isEmpty())
            return u"no radio button %1 with a text"_s.arg(i);
    }
    return QString();
}

// Widgets the form itself made: Qt's own inner parts (a spin box's line edit, a table's
// viewport, a tab bar's buttons) carry no name or a "qt_" one, or sit inside such a control.
bool isFormWidget(const QWidget* w) {
    const QString name = w->objectName();
    if (name.isEmpty() || name.startsWith(u"qt_"_s))
        return false;
    for (const QWidget* p = w->parentWidget(); p; p = p->parentWidget())
        if (qobject_cast<const QTabBar*>(p) || qobject_cast<const QComboBox*>(p) ||
            qobject_cast<const QAbstractSpinBox*>(p) || qobject_cast<const QAbstractItemView*>(p))
            return false;
    return true;
}

bool isRadioGroup(const QWidget* w) {
    return w->objectName().startsWith(u"rdo"_s) && !qobject_cast<const QAbstractButton*>(w);
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
        form->grab().save(QDir(dir).filePath(u"%1@%2x.png"_s.arg(form->objectName()).arg(scale)));
}

// Shows the Area tab's controls of the side, as the tab does.
void showAreaSide(QWidget* form, const QString& side) {
    for (QWidget* w : form->findChildren<QWidget*>())
        if (onOtherSide(w->objectName(), "Front") || onOtherSide(w->objectName(), "Back"))
            w->setVisible(!onOtherSide(w->objectName(), side));
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
                if (!text.contains(u"propagateSizeHints"_s))
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
        QCOMPARE(TwFormCatalog::create(u"TwainViewNothing"_s), nullptr);
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

        QStringList faults, actions;
        for (const Outlet& o : outletsOf(contract)) {
            const auto found = form->findChildren<QWidget*>(o.name);
            const QString why = found.size() != 1 ? u"%1 widgets"_s.arg(found.size())
                                                  : kindMismatch(found.first(), o.kind, o.extra.toInt());
            if (!why.isEmpty())
                faults << o.name + u": "_s + why;
            if (o.kind == "push")
                actions << o.name + '=' + o.extra;
        }
        QSet<QString> seen;
        for (QWidget* w : form->findChildren<QWidget*>()) {
            if (isFormWidget(w) && seen.contains(w->objectName()))
                faults << u"%1 twice"_s.arg(w->objectName());
            seen.insert(w->objectName());
        }

        for (QPushButton* b : form->findChildren<QPushButton*>()) {
            QString made = b->objectName() + '=' + b->property("action").toString();
            if (b->property("tag").isValid())
                made += '/' + b->property("tag").toString();
            if (!actions.removeOne(made))
                faults << u"unexpected action %1"_s.arg(made);
        }
        if (!actions.isEmpty())
            faults << u"missing actions "_s + actions.join(' ');

        // Every input has an accessible name, the buttons of a radio group too.
        for (QWidget* w : inputs(form)) {
            QList<QWidget*> named{w};
            if (isRadioGroup(w))
                for (QAbstractButton* b : w->findChildren<QAbstractButton*>())
                    named << b;
            for (QWidget* n : named)
                if (n->accessibleName().trimmed().isEmpty())
                    faults << n->objectName() + u" has no accessible name"_s;
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
                faults << u"%1 has a mnemonic but no buddy"_s.arg(w->objectName());
            if (used.contains(key))
                faults << u"%1 on %2 and %3"_s.arg(key.toString(), used[key], w->objectName());
            used.insert(key, w->objectName());
        }
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u"; "_s)));
    }

    // Tab goes through a form in the order its controls are seen, top to bottom and left to right
    // (a group box's contents where it stands, a radio group once), reaches every input, and comes
    // back round to the first; a stepper is no stop of its own (its field steps with Up and Down).
    void tabFollowsWhatIsSeen_data() {
        columns<int, QString>("index", "side");
        for (int i = 0; i < contracts().size(); ++i)
            if (contracts()[i].identifier == "Area")
                for (const char* side : {"Front", "Back"})
                    QTest::addRow("TwainViewArea, %s", side) << i << QString(side);
            else if (!tabStops(contracts()[i]).isEmpty())
                row(qPrintable(contracts()[i].className), i, QString());
    }
    void tabFollowsWhatIsSeen() {
        auto [index, side] = fetch<int, QString>("index", "side");
        QStringList expected = tabStops(contracts()[index], side);
        auto form = make(contracts()[index].className);
        if (auto* tabs = form->findChild<QTabWidget*>(u"tableMain"_s)) {
            auto* field = new QLineEdit;
            field->setObjectName(u"pageField"_s);
            tabs->addTab(field, u"Page"_s);
            TwSetVisualTabOrder(form.get()); // as the panel does once its pages are in
            expected.insert(expected.indexOf("tableMain") + 1, "pageField");
        }
        if (!side.isEmpty())
            showAreaSide(form.get(), side);
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
        auto form = make(index < 0 ? u"TwDlgMain"_s : contracts()[index].className);
        auto* tabs = form->findChild<QTabWidget*>(u"tableMain"_s);
        if (index < 0)
            for (const FormContract& contract : contracts())
                if (!contract.identifier.isEmpty() && contract.identifier != u"Imprinter"_s &&
                    contract.identifier != u"PatchCode"_s) {
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
            return u"%1x%2"_s.arg(s.width()).arg(s.height());
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
                    faults << u"group %1 narrower than its title"_s.arg(name);
            } else if (auto* edit = qobject_cast<QLineEdit*>(w)) {
                const int digits = edit->property("fieldChars").toInt();
                const int need = edit->fontMetrics().horizontalAdvance(QString(digits, '0'));
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
                faults << u"%1 sticks out of %2"_s.arg(name, parent->objectName());
            if (!parent)
                continue;
            for (QWidget* s : parent->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
                if (s != w && isFormWidget(s) && s->isVisibleTo(form) && s->objectName() < name &&
                    s->geometry().intersects(w->geometry()))
                    faults << u"%1 overlaps %2"_s.arg(name, s->objectName());
        }
        if (!form->rect().contains(form->childrenRect()))
            faults << u"contents exceed the form"_s;
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u"; "_s)));
    }
};

QTEST_MAIN(TestForms)
#include "tst_forms.moc"
