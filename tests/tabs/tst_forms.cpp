// The forms of the settings dialog against the outlets, actions and identifiers the tab and panel
// code binds by name, and against the layout rules: every input reachable and named, labels never
// clipped (also with a doubled font). The setting tabs bound to the sample scanner: every control
// shows the key paths its tab lists, edits reach the model, the model's rules and the scanner's
// control definitions enable and hide controls, and binding, unbinding and binding again leave
// nothing behind. The Area tab: the unit changes the pattern and the range of every area field, a
// change recomputes exactly the ranges that depend on it, the two sides share one place and only
// the selected one shows, and a field the model corrected reloads.
//
// VMX_FORM_SHOTS=<dir> saves a picture of every form at both font sizes, VMX_TAB_SHOTS=<dir> one
// of every tab bound to the sample model.

#include "FormCatalog.h"
#include "SampleFixture.h"
#include "TwKeyboard.h"
#include "TwainViewArea.h"
#include "TwainViewBasic.h"

#include <set>

namespace {

// A form's outlets in the order Tab visits them, then the others: "name" of the kind its prefix
// names (sld slider, rdo radio group with "/segments", tbl table, box group box, img image view,
// stp stepper, lab text, cmb pop-up, txt field, btn check box), "kind:name" of another kind, and
// "name=action" or "name=action/tag" for a push button and the action it names; @levels and
// @cleanup stand for the outlets the image tabs share, @Front and @Back for the Area tab's side.
//
// A tab's bindings, one line per control (or comma-separated twins). A key is bound under the kind
// its prefix names (content., enable., hidden.; "!" marks another enabling key), else under the
// value kind of the control (cmb: selectedObject, rdo: selectedIndex, box: title, img: valuePath,
// others: value); "kind:key" names the kind. "#Name" is a model-definition entry: hidden, and
// enabled unless the control is a group box.
struct FormContract {
    QString className;
    QString identifier; // empty for the main panel
    QString outlets;
    std::string bindings = {};
};

const std::string kCleanupBindings = R"(
btnBorderRemoval Data.Image.BorderRemoval #BorderRemoval
btnRemoveShadow Data.Image.RemoveShadow #RemoveShadow
btnHoleRemoval Data.Image.HoleRemoval #HoleRemoval
btnMirror Data.Image.Mirror #Mirror
)";

struct Outlet {
    QString kind, name, extra; // extra: a radio group's segments, a push button's action
};

QList<Outlet> outletsOf(const FormContract& contract) {
    static const QList<std::pair<QString, QString>> prefixes{
        {"sld", "slider"},  {"rdo", "radio"}, {"tbl", "table"}, {"box", "box"},   {"img", "image"},
        {"stp", "stepper"}, {"lab", "text"},  {"cmb", "popup"}, {"txt", "field"}, {"btn", "check"}};
    QList<Outlet> out;
    QString outlets = QString(contract.outlets)
                          .replace("@levels", "sldBrightness txtBrightness sldContrast txtContrast")
                          .replace("@cleanup", "btnBorderRemoval btnRemoveShadow btnHoleRemoval btnMirror");
    for (QString side : {"Front", "Back"}) { // the Area tab's three sub-areas and halftone of a side
        QString rows;
        for (QString n : {"1", "2", "3"})
            rows += u"btn%1Area%2 txt%1X%2 txt%1Y%2 txt%1Width%2 txt%1Length%2 txt%1Brightness%2 "
                    "stp%1Brightness%2 "_s.arg(side, n);
        outlets.replace('@' + side, rows + "cmb" + side + "Halftone");
    }
    for (QString token : outlets.split(' ', Qt::SkipEmptyParts)) {
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

const QList<FormContract>& contracts() {
    static const QList<FormContract> list{
        {"TwainViewBasic", "Basic",
         "cmbPaperSource cmbPaperSize btnCustom=onCustomPaperSize btnLandscape cmbImageType "
         "combo:cmbResolution btnAutoCrop btnDeskew",
         R"(
cmbPaperSource content.PaperSource Data.PaperSource #PaperSource
cmbPaperSize content.PaperSizeAll enable.PaperSize Data.PaperSize #PaperSize
btnCustom enable.PaperSize #CustomPaperSize
cmbImageType content.ImageType Data.ImageType #ImageType
cmbResolution content.Resolution contentValues:content.Resolution.value value:Data.Resolution #Resolution
btnLandscape enable.Landscape Data.Landscape #Landscape
btnAutoCrop enable.AutoCrop Data.AutoCrop.Enable #AutoCrop
btnDeskew enable.Deskew Data.Deskew.Enable #Deskew
)"},
        {"TwainViewCommon", "Common",
         "btnAutoCrop btnSelectMaxPaperSize btnDeskew btnSmoothing btnMargin btnFitToPage btnLengthControl "
         "cmbBackgroundColor sldPixelRation txtPixelRation btnIgnorePaperColor cmbRateBinaryImage @cleanup "
         "text:txtPixelRationMin text:txtPixelRationMax text:txtDPI text:txtGrayColor "
         "text:txtBackgroundColor boxDistinctionResolution",
         R"(
btnAutoCrop enable.AutoCrop Data.AutoCrop.Enable #AutoCrop
btnSelectMaxPaperSize enable.AutoCrop !Data.AutoCrop.Enable Data.AutoCrop.MaxSize #AutoCropMaxSize
btnDeskew enable.Deskew Data.Deskew.Enable #Deskew
btnSmoothing enable.Deskew !Data.Deskew.Enable Data.Deskew.Smoothing #DeskewSmoothing
txtPixelRation,sldPixelRation enable.AutoDistinction Data.AutoDistinction.ColorPixelRation #AutoDistinction
btnIgnorePaperColor enable.AutoDistinction Data.AutoDistinction.IgnorePaperColor #AutoDistinctionIgnoreColor
cmbRateBinaryImage content.RateImageAvail enable.AutoDistinctionResolution #RateBinaryImage Data.AutoDistinction.RateBinaryImage
boxDistinctionResolution temp.Distinction #RateBinaryImage
txtDPI enable.AutoDistinctionResolution temp.GrayDPI #RateBinaryImage
txtGrayColor temp.GrayColor #RateBinaryImage
btnMargin enable.Margin Data.Margin #Margin
btnFitToPage enable.FitToPage Data.FitToPage #FitToPage
btnLengthControl enable.LengthControl Data.LengthControl #LengthControl
cmbBackgroundColor selectedIndex:Data.BackgroundColor #BackgroundColor
txtBackgroundColor #BackgroundColor
)" + kCleanupBindings},
        {"TwainViewLayout", "Layout",
         "rdoRotate/4 rdoDuplex/2 btnDoubleExposure btnDoubleExposureCfg=onDoubleExposure "
         "btnPageSeparation btnPageSeparationCfg=onPageSeparetion btnBlankPageRemoval sldPixelRation "
         "txtPixelRation btnShowResult imgDoubleExposure imgPageSeparation text:txtPixelRationMin "
         "text:txtPixelRationMax",
         R"(
rdoRotate Data.Layout.Rotate #Rotate
rdoDuplex enable.Duplex Data.Layout.DuplexType #DuplexType
btnDoubleExposure enable.Layout.DoubleExposure.Enable Data.Layout.DoubleExposure.Enable #DoubleExposure
btnDoubleExposureCfg enable.Layout.DoubleExposure.Enable !Data.Layout.DoubleExposure.Enable
imgDoubleExposure image.DoubleExposure #DoubleExposure
btnPageSeparation enable.Layout.PageSeparation Data.Layout.PageSeparation.Enable #PageSeparation
btnPageSeparationCfg enable.Layout.PageSeparation !Data.Layout.PageSeparation.Enable
imgPageSeparation image.PageSeparation #PageSeparation
btnBlankPageRemoval enable.BlankPageRemoval Data.Layout.BlankPageRemoval.Eanble #BlankPageRemoval
txtPixelRation,sldPixelRation,btnShowResult enable.BlankPageRemoval !Data.Layout.BlankPageRemoval.Eanble
txtPixelRation,sldPixelRation Data.Layout.BlankPageRemoval.Ratio #BlankPageRemovalRatio
btnShowResult Data.Layout.BlankPageRemoval.ShowResult #BlankPageRemovalResult
)"},
        {"TwainViewBinaryImage", "BinaryImage",
         "rdoSide/3 cmbHalftone @levels cmbEmpasis cmbGamma btnGamma=onCustomGamma/0 cmbDrop "
         "btnDynamicThreshold cmbDynamicThreshold cmbNoiseReductionSize cmbNoiseReductionType "
         "cmbWhiteLevel @cleanup btnInvert btnAutoSeparation text:txtSide boxSide",
         R"(
rdoSide enable.Duplex enable.BinaryImage.All temp.BinaryImageSide
txtSide,boxSide temp.BinaryImageSideText
cmbHalftone content.Halftone enable.BinaryImage.Halftone enable.BinaryImage.All temp.BinaryImage.Halftone #Halftone
txtBrightness,sldBrightness enable.BinaryImage.Brightness temp.BinaryImage.Brightness #Brightness
txtContrast,sldContrast enable.BinaryImage.Contrast temp.BinaryImage.Contrast #Contrast
cmbEmpasis content.Emphasis enable.BinaryImage.Empasis temp.BinaryImage.Empasis #Empasis
cmbGamma content.Gray.Gamma enable.BinaryImage.Gamma temp.BinaryImage.Gamma #Gamma
btnGamma enable.BinaryImage.Gamma #GammaCustom
cmbDrop content.DropOut enable.BinaryImage.Drop temp.BinaryImage.Drop #Drop
btnDynamicThreshold Data.BinaryImage.DynamicThresholdEnable #DynamicThreshold
cmbDynamicThreshold content.DynamicThres !Data.BinaryImage.DynamicThresholdEnable #DynamicThresholdMode Data.BinaryImage.DynamicThresholdMode
cmbNoiseReductionSize content.NoiseSize enable.BinaryImage.NoiseReductionSize #NoiseReduction Data.BinaryImage.NoiseReductionSize
cmbNoiseReductionType content.NoiseMode enable.BinaryImage.NoiseReductionType #NoiseReductionType Data.BinaryImage.NoiseReductionType
cmbWhiteLevel content.WhiteLevel enable.Image.WhiteLevel Data.Image.WhiteLevel #WhiteLevel
btnMirror enable.BinaryImage.All
btnInvert Data.Image.Invert #Invert
btnAutoSeparation enable.Image.AutoSeparation Data.Image.AutoSeparation #AutoSeparation
)" + kCleanupBindings},
        {"TwainViewGrayImage", "GrayImage",
         "rdoSide/3 @levels cmbEmpasis cmbGamma btnGamma=onCustomGamma/1 cmbDrop btnHighSpeed "
         "cmbWhiteLevel @cleanup text:txtSide boxSide",
         R"(
rdoSide enable.Duplex temp.GrayImageSide
txtSide,boxSide temp.GrayImageSideText
txtBrightness,sldBrightness temp.GrayImage.Brightness #Brightness
txtBrightness enable.GrayImage.All
txtContrast,sldContrast temp.GrayImage.Contrast #Contrast
cmbEmpasis content.Emphasis temp.GrayImage.Empasis #Empasis
cmbGamma content.Gray.Gamma enable.GrayImage.Gamma temp.GrayImage.Gamma #Gamma
btnGamma enable.GrayImage.Gamma #GammaCustom
cmbDrop content.FrontLamp enable.GrayImage.Drop temp.GrayImage.Drop #Drop
btnHighSpeed enable.GrayImage.All Data.Image.HighSpeed #HighSpeed
cmbWhiteLevel content.WhiteLevel enable.Image.WhiteLevel Data.Image.WhiteLevel #WhiteLevel
)" + kCleanupBindings},
        {"TwainViewColorImage", "ColorImage",
         "rdoSide/3 @levels sldChroma txtChroma cmbEmpasis cmbGamma btnGamma=onCustomGamma/2 "
         "cmbColorMatching btnHighSpeed @cleanup btnSmooth btnBackgroundRemoval text:txtSide boxSide",
         R"(
rdoSide enable.Duplex temp.ColorImageSide
txtSide,boxSide temp.ColorImageSideText
txtBrightness,sldBrightness temp.ColorImage.Brightness #Brightness
txtContrast,sldContrast temp.ColorImage.Contrast #Contrast
txtChroma,sldChroma enable.ColorImage.Chroma temp.ColorImage.Chroma #Chroma
cmbEmpasis content.Emphasis temp.ColorImage.Empasis #Empasis
cmbGamma content.Color.Gamma enable.ColorImage.Gamma temp.ColorImage.Gamma #Gamma
btnGamma enable.ColorImage.Gamma #GammaCustom
btnHighSpeed Data.Image.HighSpeed #HighSpeed
cmbColorMatching content.ColorMatch enable.ColorImage.All Data.ColorImage.ColorMatching #ColorMatching
btnSmooth Data.Image.SmoothBackground #Smooth
btnBackgroundRemoval Data.Image.BackgroundRemoval #BackgroundRemoval
)" + kCleanupBindings},
        {"TwainViewFeed", "Feed",
         "cmbManualFeed txtTimeOut btnTimeOutUnlimited btnDetectDoubleFeed cmbSensitivity rdoPage/2 "
         "txtPage cmbNoLookAhead",
         R"(
cmbManualFeed content.ManualFeed Data.Feed.ManualFeedMode #ManualFeed
txtTimeOut enable.Feed.ManualFeedTimeOut Data.Feed.ManualFeedTimeOut #ManualFeedTimeOut
btnTimeOutUnlimited enable.Feed.ManualFeedUnlimited Data.Feed.ManualFeedUnlimited #ManualFeedUnlimited
btnDetectDoubleFeed enable.Feed.DoubleFeed Data.Feed.DetectDoubleFeedEnable #DetectDoubleFeed
cmbSensitivity content.DoubleFeedSense enable.Feed.DoubleFeedSensitivity #DetectDoubleFeedSensitivity Data.Feed.DetectDoubleFeedSensitivity
rdoPage enable.Feed.FeedPageMode Data.Feed.FeedPageMode #FeedPageMode
txtPage enable.Feed.FeedPage Data.Feed.FeedPageNumber #FeedPageNumber
cmbNoLookAhead enable.Feed.NoLookAhead selectedIndex:Data.Feed.NoLookAhead #NoLookAhead
)"},
        {"TwainViewArea", "Area",
         "cmbUnit txtFrontX txtWidth txtBackX txtLength txtY tblSide @Front @Back boxSubArea", R"(
txtBackX enable.Duplex enable.Area.Front temp.Area.Back.X
tblSide enable.Duplex enable.Area.Front temp.Area.Side
btnFrontArea2 enable.Area.Front Data.Area.Front.L2.Enable
stpFrontBrightness2 !Data.Area.Front.L2.Enable enable.Area.Brightness.Front Data.Area.Front.L2.Brightness
cmbFrontHalftone content.FrontHalftone hidden.Area.Front enable.Area.Halftone Data.Area.Front.Halftone
cmbBackHalftone content.BackHalftone hidden.Area.Back enable.Duplex Data.Area.Back.Halftone
txtFrontX2 !Data.Area.Front.L2.Enable enable.Area.SubArea temp.Area.Front.L2.X
txtBackLength3 !Data.Area.Back.L3.Enable hidden.Area.Back temp.Area.Back.L3.Length
stpBackBrightness1 enable.Area.Brightness.Back Data.Area.Back.L1.Brightness
txtFrontBrightness3 enable.Area.Brightness.Front
)"},
        {"TwainViewControlSheet", "ControlSheet", "btnDetectSeparationSheet btnSkipSeparationSheet", R"(
btnDetectSeparationSheet enable.Feed.DetectSeparationSheet Data.Feed.DetectSeparationSheetEnable #DetectSeparationSheet
btnSkipSeparationSheet enable.Feed.DetectSeparationSheetSkip Data.Feed.DetectSeparationSheetSkip #DetectSeparationSheetSkip
)"},
        {"TwainViewImprinter", "Imprinter", ""},
        {"TwainViewPatchCode", "PatchCode", ""},
        {"TwDlgMain", "",
         "combo:cmbSettingNames btnSave=onSaveSetting btnDelete=onDeleteSetting tabs:tableMain "
         "btnHelp=onHelp btnAbout=onAbout btnCustomize=onCustomize btnDefault=onDefault "
         "btnPrescan=onPrescan btnStart=onStart btnCancel=onCancel btnOK=onOK"},
        {"TwDlgSaveSetting", "", "combo:cmbNames btnCancel=onCancel btnOK=onOK labTitle"},
        {"TwDlgPaperSize", "",
         "tableview:tblPaperSize txtName txtWidth txtLength cmbUnit btnSave=onSave btnDelete=onDelete "
         "btnHelp=onHelp btnClose=onClose labMutil labADFMinWidth labADFMinLength labADFMaxWidth "
         "labADFMaxLength labFlatMinWidth labFlatMinLength labFlatMaxWidth labFlatMaxLength"},
        {"TwDlgCustomGamma", "",
         "combo:cmbSettingName btnSaveAs=onSaveAs btnDelete=onDelete sldGammaRed txtGammaRed sldGammaGreen "
         "txtGammaGreen sldGammaBlue txtGammaBlue btnRGBLink sldClipBlack txtClipBlack sldClipWhite "
         "txtClipWhite btnClose=onClose labGammaRed labGammaGreen labGammaBlue labGammaMin labGammaMid "
         "labGammaMax curves:viewGamma sample:viewSample"},
        {"TwDlgAbout", "",
         "btnOK=onOK text:txtDriverVersion text:txtDriverVerInfo text:txtScannerProduct "
         "text:txtScannerVersion text:txtScannerInterface text:txtCopyright"},
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
    return isFormWidget(w) &&
           (isRadioGroup(w) ||
            (!qobject_cast<const QRadioButton*>(w) &&
             (qobject_cast<const QComboBox*>(w) || qobject_cast<const QLineEdit*>(w) ||
              qobject_cast<const QAbstractSlider*>(w) || qobject_cast<const QAbstractSpinBox*>(w) ||
              qobject_cast<const QAbstractButton*>(w) || qobject_cast<const QAbstractItemView*>(w) ||
              qobject_cast<const QTabWidget*>(w))));
}

QList<QWidget*> inputs(QWidget* form) {
    QList<QWidget*> list = form->findChildren<QWidget*>();
    list.removeIf([](QWidget* w) { return !isInput(w); });
    return list;
}

std::unique_ptr<QWidget> make(const QString& className) {
    return std::unique_ptr<QWidget>(FormCatalog::create(className));
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

// A tab of the class, bound to the model when one is given.
std::unique_ptr<TwainView> makeTab(const char* className, TwainDialogData* model = nullptr) {
    std::unique_ptr<TwainView> tab(TwainView::create(QString::fromLatin1(className)));
    if (tab && model)
        tab->bindControlsToObject(model);
    return tab;
}

// Every control below the widget that carries at least one binding.
int boundControlCount(const QWidget* root) {
    return int(std::ranges::count_if(root->findChildren<QObject*>(),
                                     [](QObject* o) { return !TwBoundControl::bindingNames(o).empty(); }));
}

// One expected binding, from a table line.
struct Expected {
    QString control;
    std::string kind;
    std::string key;
};

std::vector<Expected> expectedBindings(const FormContract& c) {
    std::vector<Expected> out;
    const std::string prefix = "ModelDef.UIControl." + c.identifier.toStdString() + ".";
    for (const QString& line : QString::fromStdString(c.bindings).split('\n', Qt::SkipEmptyParts)) {
        QStringList tokens = line.split(' ', Qt::SkipEmptyParts);
        for (const QString& control : tokens.takeFirst().split(',')) {
            const QString stem = control.left(3);
            const char* valueKind = stem == u"cmb"_s   ? "selectedObject"
                                    : stem == u"rdo"_s ? "selectedIndex"
                                    : stem == u"box"_s ? "title"
                                    : stem == u"img"_s ? "valuePath"
                                                       : "value";
            for (const QString& token : tokens) {
                const std::string key = token.toStdString();
                if (key[0] == '#') {
                    out.push_back({control, "hidden", prefix + key.substr(1) + ".hidden"});
                    if (stem != u"box"_s)
                        out.push_back({control, "enabled", prefix + key.substr(1) + ".enabled"});
                } else if (key[0] == '!') {
                    out.push_back({control, "enabled", key.substr(1)});
                } else if (auto colon = key.find(':'); colon != std::string::npos) {
                    out.push_back({control, key.substr(0, colon), key.substr(colon + 1)});
                } else {
                    const char* kind = key.starts_with("content.")  ? "content"
                                       : key.starts_with("enable.") ? "enabled"
                                       : key.starts_with("hidden.") ? "hidden"
                                                                    : valueKind;
                    out.push_back({control, kind, key});
                }
            }
        }
    }
    return out;
}

// True when the control carries a binding of the name's kind to the key path.
bool hasBinding(const QObject* control, const std::string& binding, const std::string& keyPath) {
    const auto wanted = TwBindingKindForName(binding);
    for (const std::string& name : TwBoundControl::bindingNames(control)) {
        auto info = TwBoundControl::infoForBinding(control, name);
        if (info && TwBindingKindForName(name) == wanted && info->keyPath == keyPath)
            return true;
    }
    return false;
}

// The sample's model definition with an entry for every "#Name" of the tables, so that every
// model-definition binding can be made.
TwValue modelDefRootWithEveryControl(TwValue root) {
    TwValue uiControl = root.dict()->value("UIControl");
    for (const FormContract& c : contracts()) {
        const std::string id = c.identifier.toStdString(), prefix = "ModelDef.UIControl." + id + ".";
        if (id.empty())
            continue;
        if (!uiControl.dict()->value(id).isDictionary())
            uiControl.dict()->set(id, dict());
        TwValue dialog = uiControl.dict()->value(id);
        for (const Expected& e : expectedBindings(c)) {
            if (!e.key.starts_with(prefix))
                continue;
            const std::string name = e.key.substr(prefix.size(), e.key.rfind('.') - prefix.size());
            if (!dialog.dict()->contains(name))
                dialog.dict()->set(name, dict({{"enabled", true}, {"hidden", false}}));
        }
    }
    return root;
}

const TwainNumberFormatter* formatterOf(const QLineEdit* field) {
    return qobject_cast<const TwainNumberFormatter*>(field->validator());
}

// A widget's property as text, and the words the tab rows add: "hidden", "picture" (the file
// an image view shows, empty for none) and "range" (a field's "minimum-maximum").
QString shownProperty(QWidget* w, const QString& property) {
    if (property == "hidden")
        return QVariant(w->isHidden()).toString();
    if (auto* view = qobject_cast<TwImageView*>(w); view && property == "picture")
        return view->hasImage() ? QFileInfo(view->imagePath()).fileName() : QString();
    auto* combo = qobject_cast<QComboBox*>(w);
    auto* edit = combo ? combo->lineEdit() : qobject_cast<QLineEdit*>(w);
    auto* formatter = edit ? qobject_cast<const TwainNumberFormatter*>(edit->validator()) : nullptr;
    if (formatter && property == "range")
        return u"%1-%2"_s.arg(formatter->minimum().value_or(-1)).arg(formatter->maximum().value_or(-1));
    return w->property(qPrintable(property)).toString();
}

} // namespace

class TestForms : public QObject {
    Q_OBJECT
    SampleScanner sample;

    struct Bound {
        Facade ui;
        std::unique_ptr<TwainViewArea> tab;
        TwainDialogData* model() const { return ui->model().get(); }
        QLineEdit* field(const char* name) const { return child<QLineEdit>(tab.get(), name); }
        double maximum(const char* keyPath) const {
            return tab->formatterForKeyPath(keyPath)->maximum().value_or(-1);
        }
    };

    Bound bound(const TwValue& values = TwValue()) {
        Bound b;
        b.ui = sample.load({.values = values});
        b.tab = std::make_unique<TwainViewArea>();
        b.tab->bindControlsToObject(b.model());
        return b;
    }

    // Chooses a unit the way the user does.
    static void chooseUnit(TwainViewArea* tab, int index) { choose(child<QComboBox>(tab, "cmbUnit"), index); }

private slots:
    void initTestCase() {
        static QtMessageHandler previous = nullptr;
        previous = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext& context, const QString& text) {
                if (!text.contains(u"propagateSizeHints"_s))
                    previous(type, context, text);
            });
    }

    // Every form has a contract, and every tab class one with an identifier. An unknown class is
    // refused (a tab's with a log line), and a tab given no model binds nothing and says so.
    void theCatalogNamesEveryFormOnce() {
        QStringList expected, names = FormCatalog::classNames(), tabs, tabNames = TwainView::classNames();
        for (const FormContract& contract : contracts())
            (contract.identifier.isEmpty() ? expected : tabs) << contract.className;
        expected += tabs;
        for (QStringList* list : {&names, &expected, &tabs, &tabNames})
            list->sort();
        QCOMPARE(names, expected);
        QCOMPARE(tabNames, tabs);
        sample.captureLog();
        QVERIFY(!FormCatalog::create(u"TwainViewNothing"_s) && !TwainView::create(u"TwainViewNothing"_s));
        QVERIFY(sample.logText().contains(u"no tab of class TwainViewNothing"_s));
        auto tab = makeTab("TwainViewArea");
        tab->bindControlsToObject(nullptr);
        QVERIFY(!tab->bindObject());
        QCOMPARE(boundControlCount(tab.get()), 0);
        QVERIFY(sample.logText().contains(u"no model to bind to"_s));
    }

    // The form is made under its parent with its identifier, every outlet is there once with its
    // kind, names are unique, every push button names its action (and tag), every input has an
    // accessible name and every mnemonic is distinct and leads to a control.
    void formMatchesItsContract_data() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < contracts().size(); ++i)
            row(qPrintable(contracts()[i].className), i);
    }
    void formMatchesItsContract() {
        QFETCH(int, index);
        const FormContract& contract = contracts()[index];
        QWidget parent;
        QWidget* form = FormCatalog::create(contract.className, &parent);
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
                    QWidget* page = FormCatalog::create(contract.className);
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

    // ---- The tabs bound to the sample scanner ----

    void init() { QVERIFY2(sample.reset(), sample.error.c_str()); }

    // On the sample model no key path is missing. Binding twice replaces, unbinding removes every
    // observation, binding again makes as many, none of it edits the settings, and a tab that goes
    // away while bound takes its bindings with it. With a definition for every control, each tab
    // makes the bindings its table lists.
    void everyTabMakesItsBindings_data() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < contracts().size(); ++i)
            if (!contracts()[i].identifier.isEmpty())
                row(qPrintable(contracts()[i].className), i);
    }
    void everyTabMakesItsBindings() {
        QFETCH(int, index);
        const FormContract& c = contracts()[index];
        SampleModelDef def(modelDefRootWithEveryControl(sample.definition.deepCopy()));
        auto full = sample.load({.modelDef = &def});
        auto ui = sample.load();
        TwainDialogData* model = ui->model().get();
        const TwValue data = ui->dataForKeyPath("Data").deepCopy();
        const std::size_t before = model->observationCount(), fullBefore = full->model()->observationCount();
        auto tab = makeTab(qPrintable(c.className));
        QCOMPARE(tab->identifier(), c.identifier);
        sample.captureLog();
        tab->bindControlsToObject(model);
        QVERIFY2(!sample.logText().contains(u"ERROR"_s), qPrintable(sample.logText()));
        const std::size_t bound = model->observationCount();
        const int controls = boundControlCount(tab.get());
        QCOMPARE(controls > 0, !c.bindings.empty());
        QCOMPARE(bound > before, controls > 0);
        tab->bindControlsToObject(model);
        QCOMPARE(model->observationCount(), bound);
        tab->unbindControls();
        QCOMPARE(model->observationCount(), before);
        QCOMPARE(boundControlCount(tab.get()), 0);
        QVERIFY(!tab->bindObject());
        tab->bindControlsToObject(model);
        QCOMPARE(model->observationCount(), bound);
        QCOMPARE(boundControlCount(tab.get()), controls);
        QVERIFY(ui->dataForKeyPath("Data").isEqual(data));

        tab->bindControlsToObject(full->model().get());
        QCOMPARE(model->observationCount(), before);
        QVERIFY2(!sample.logText().contains(u"is not found KeyPath"_s), qPrintable(sample.logText()));
        for (const Expected& e : expectedBindings(c)) {
            QObject* control = tab->findChild<QObject*>(e.control);
            QVERIFY2(control, qPrintable(e.control));
            QVERIFY2(hasBinding(control, e.kind, e.key),
                     qPrintable(u"%1 %2 %3"_s.arg(e.control, e.kind.c_str(), e.key.c_str())));
        }
        tab.reset();
        QCOMPARE(full->model()->observationCount(), fullBefore);
    }

    void aTabTakenOutOfItsWindowUnbindsAndCanBindAgain() {
        auto ui = sample.load();
        TwainDialogData* model = ui->model().get();
        const std::size_t before = model->observationCount();
        QTabWidget window;
        TwainView* tab = makeTab("TwainViewFeed").release();
        window.addTab(tab, tab->windowTitle());
        tab->bindControlsToObject(model);
        window.removeTab(0);
        tab->setParent(nullptr);
        QVERIFY(!tab->bindObject());
        QCOMPARE(model->observationCount(), before);

        tab->bindControlsToObject(model);
        set(*ui, "Data.Feed.FeedPageNumber", TwValue(12));
        QCOMPARE(child<QLineEdit>(tab, "txtPage")->text(), u"12"_s);
        delete tab;
        QCOMPARE(model->observationCount(), before);
    }

    // ---- Edits and rules ----

    // What a tab (TwainView + name) shows for the settings given (key paths, set in turn):
    // "control.property=text" separated by ";" (the words of shownProperty) or "@key.path=text" for
    // the setting itself. The rules are the sample's; how each class of control writes its value
    // back is the binding tests' part.
    void theTabsShowTheModel_data() {
        columns<QString, QString, QString>("tab", "values", "shown");
        // The sample lists resolutions from 150 to 600: the field takes 100 to 600.
        row("basic", "Basic", "",
            "cmbImageType.currentText=Black & White;cmbResolution.currentText=300;"
            "cmbResolution.range=100-600");
        const QString levels = ";txtBrightness.range=1-255;sldBrightness.maximum=255;txtContrast.range=1-255;"
                               "sldContrast.maximum=255";
        row("binary on", "BinaryImage", "", "cmbHalftone.enabled=true;btnMirror.enabled=true" + levels);
        row("gray off", "GrayImage", "", "txtBrightness.enabled=false;rdoSide.enabled=false" + levels);
        row("colour", "ColorImage", "", levels.mid(1));
        row("gray: binary off", "BinaryImage", "Data.ImageType=1",
            "cmbHalftone.enabled=false;btnMirror.enabled=false;sldBrightness.enabled=false");
        row("gray: gray on", "GrayImage", "Data.ImageType=1", "txtBrightness.enabled=true");
        row("automatic: binary on", "BinaryImage", "Data.ImageType=22", "cmbHalftone.enabled=true");
        row("automatic: gray on", "GrayImage", "Data.ImageType=22", "txtBrightness.enabled=true");
        row("gray duplex", "GrayImage", "Data.ImageType=1 Data.PaperSource=1", "rdoSide.enabled=true");
        // Back side chosen: its brightness edits the back only.
        row("gray back", "GrayImage",
            "Data.ImageType=1 Data.PaperSource=1 temp.GrayImageSide=1 temp.GrayImage.Brightness=129",
            "boxSide.title=Back;txtBrightness.text=129;@Data.GrayImage.Back.Brightness=129;"
            "@Data.GrayImage.Front.Brightness=128");
        row("feed", "Feed", "",
            "txtTimeOut.enabled=false;txtPage.enabled=false;cmbNoLookAhead.currentText=On;"
            "txtTimeOut.range=1-300;txtPage.range=1-254");
        row("manual feed", "Feed", "Data.Feed.ManualFeedMode=1",
            "txtTimeOut.enabled=true;cmbNoLookAhead.enabled=false");
        row("unlimited wait", "Feed", "Data.Feed.ManualFeedMode=1 Data.Feed.ManualFeedUnlimited=true",
            "txtTimeOut.enabled=false");
        row("page count", "Feed", "Data.Feed.FeedPageMode=1", "txtPage.enabled=true");
        row("no look-ahead", "Feed", "Data.Feed.NoLookAhead=true", "cmbNoLookAhead.currentText=Off");
        // The sample hides and disables fit-to-page.
        row("common", "Common", "",
            "btnFitToPage.hidden=true;btnFitToPage.enabled=false;btnMargin.hidden=false;"
            "txtPixelRation.range=0.01-50;sldPixelRation.maximum=5000;txtPixelRationMax.text=50.00");
        row("colour and gray", "Common", "Data.ImageType=23",
            "boxDistinctionResolution.title=Multi-Resolution Output;txtGrayColor.text=Color");
        row("gray and binary", "Common", "Data.ImageType=22", "txtGrayColor.text=Gray");
        row("automatic", "Common", "Data.ImageType=2",
            "boxDistinctionResolution.title=Automatic Distinction Resolution");
        row("layout", "Layout", "",
            "imgDoubleExposure.picture=LeftRightMk2.ico;imgPageSeparation.picture=DLeftRightMk2.ico;"
            "txtPixelRation.range=0.01-5;sldPixelRation.maximum=500;txtPixelRationMax.text=5.00");
        row("bottom to top", "Layout", "Data.Layout.DoubleExposure.PageOrder=3",
            "imgDoubleExposure.picture=BottomTopMk2.ico");
        row("right to left", "Layout", "Data.Layout.PageSeparation.PageOrder=1",
            "imgPageSeparation.picture=DRightLeftMk2.ico");
        row("no such order", "Layout", "Data.Layout.DoubleExposure.PageOrder=4",
            "imgDoubleExposure.picture=;imgPageSeparation.picture=DLeftRightMk2.ico");
        // The Area tab works on a copy of the area in the user's unit, front first. Ranges from
        // the paper: X up to 210 - 10, width 10 up to 210 - X; the back sub-areas share the
        // front's X and Y ranges, and follow the paper in its orientation.
        row("area", "Area", "",
            "@temp.Area.Side=0;txtBackX1.hidden=true;txtWidth.text=210.0;txtFrontY2.text=40.0;"
            "txtFrontBrightness1.text=128;cmbUnit.currentText=Millimeters;txtFrontX.range=0-200;"
            "txtWidth.range=10-210;txtFrontX1.range=0-208;txtFrontWidth1.range=2-200");
        row("A5", "Area", "Data.PaperSize=5",
            "txtWidth.range=10-148;txtBackX2.range=0-146;@enable.Landscape=1");
        row("A5 turned", "Area", "Data.PaperSize=5 Data.Landscape=true",
            "txtWidth.range=10-210;txtFrontY1.range=0-146;txtBackY3.range=0-146");
        row("sub-area on", "Area", "Data.Area.Front.L2.Enable=true Data.Area.Front.L2.Brightness=129",
            "txtFrontX2.enabled=true;txtFrontX3.enabled=false;txtFrontBrightness2.text=129;"
            "stpFrontBrightness2.value=129");
        // Automatic crop turns the whole area off.
        row("automatic crop", "Area", "Data.Area.Front.L2.Enable=true Data.AutoCrop.Enable=true",
            "txtWidth.enabled=false;txtFrontX2.enabled=false;cmbUnit.enabled=false");
    }
    void theTabsShowTheModel() {
        auto [tabName, values, shown] = fetch<QString, QString, QString>("tab", "values", "shown");
        auto ui = sample.load();
        auto tab = makeTab(qPrintable("TwainView" + tabName), ui->model().get());
        set(*ui, values);
        for (const QString& item : shown.split(';')) {
            const QString what = item.section('=', 0, 0), expected = item.section('=', 1);
            QString actual;
            if (what.startsWith('@')) {
                actual = QString::fromStdString(ui->dataForKeyPath(what.mid(1).toStdString()).stringValue());
            } else {
                QWidget* w = child(tab.get(), qPrintable(what.section('.', 0, 0)));
                QVERIFY2(w, qPrintable(what));
                actual = shownProperty(w, what.section('.', 1));
            }
            QVERIFY2(actual == expected, qPrintable(u"%1 is %2"_s.arg(item, actual)));
        }
    }

    // A definition that hides the page number hides it and the label that follows it, until it says
    // otherwise. (That a definition's "enabled" wins over the rules is the binding tests' part.)
    void theScannersControlDefinitionsHide() {
        TwValue root = modelDefRootWithEveryControl(sample.definition.deepCopy());
        TwValue feedDefs = root.dict()->value("UIControl").dict()->value("Feed");
        feedDefs.dict()->set("FeedPageNumber", dict({{"enabled", true}, {"hidden", true}}));
        SampleModelDef def(root);
        auto custom = sample.load({.modelDef = &def});
        auto feed = makeTab("TwainViewFeed", custom->model().get());
        QVERIFY(child(feed.get(), "txtPage")->isHidden());
        QVERIFY(child(feed.get(), "labPageUnit")->isHidden());
        QVERIFY(!child(feed.get(), "rdoPage")->isHidden());

        feed->unbindControls();
        feedDefs.dict()->set("FeedPageNumber", dict({{"enabled", true}, {"hidden", false}}));
        feed->bindControlsToObject(custom->model().get());
        QVERIFY(!child(feed.get(), "txtPage")->isHidden());
        QVERIFY(!child(feed.get(), "labPageUnit")->isHidden());
    }

    // The labels of a row and the scale at a slider's ends grey with the slider they belong to.
    void labelsGreyWithTheirControl() {
        auto ui = sample.load();
        auto layout = makeTab("TwainViewLayout", ui->model().get());
        const QStringList followers{"labPixelRation", "txtPixelRationMin", "txtPixelRationMax",
                                    "labPixelRationUnit"};
        for (bool on : {false, true, false}) {
            set(*ui, "Data.Layout.BlankPageRemoval.Eanble", TwValue(on));
            QCOMPARE(child(layout.get(), "sldPixelRation")->isEnabled(), on);
            for (const QString& name : followers)
                QVERIFY2(child(layout.get(), qPrintable(name))->isEnabled() == on, qPrintable(name));
        }
    }

    // ---- What some tabs add ----

    void theResolutionFieldsLowerBoundFoldsTheList() {
        auto list = [](std::initializer_list<TwValue> items) {
            return array(items);
        };
        QCOMPARE(TwainViewBasic::resolutionMinimum(list({50, 150, 1200})), 1200);
        QCOMPARE(TwainViewBasic::resolutionMinimum(list({150, 300})), 100);
        QCOMPARE(TwainViewBasic::resolutionMinimum(TwValue()), 100);
        QCOMPARE(TwainViewBasic::resolutionMinimum(list({"75", 80, dict(), 90})), 80);
    }

    // No control of a bound tab is cut off at the tab's edge.
    void everyBoundTabShowsAllItsControls() {
        const QString dir = qEnvironmentVariable("VMX_TAB_SHOTS");
        auto ui = sample.load();
        set(*ui, "Data.PaperSource", TwValue(1));
        for (const QString& name : TwainView::classNames()) {
            auto tab = makeTab(qPrintable(name), ui->model().get());
            tab->resize(tab->sizeHint().expandedTo(QSize(560, 420)));
            tab->show();
            QVERIFY(QTest::qWaitForWindowExposed(tab.get()));
            if (!dir.isEmpty())
                QVERIFY(tab->grab().save(QDir(dir).filePath(name + u".png"_s)));
            if (name == u"TwainViewCommon"_s) {
                // The layout closes the gap of a row the scanner model hides.
                auto* margin = child(tab.get(), "btnMargin");
                QVERIFY(child(tab.get(), "btnFitToPage")->isHidden());
                QVERIFY(child(tab.get(), "btnLengthControl")->y() - margin->y() < 2 * margin->height());
            }
            const auto widgets = tab->findChildren<QWidget*>();
            for (QWidget* w : widgets) {
                if (!w->isVisible() || w->objectName().isEmpty() || w->objectName().startsWith(u"qt_"_s))
                    continue;
                const QRect r(w->mapTo(tab.get(), QPoint(0, 0)), w->size());
                QVERIFY2(tab->rect().contains(r), qPrintable(name + '.' + w->objectName()));
            }
        }
    }

    // ---- The Area tab ----

    // Millimetre ranges to the unit's integer steps, rounded half up: hundredths of an inch,
    // tenths of a millimetre; no range for an unknown unit or one too large.
    void theUnitsIntegerRangesRoundHalfUp_data() {
        // range: minimum, maximum, places; empty: none
        columns<double, double, int, QList<int>>("from", "length", "unit", "range");
        row("A4 width in inches", 0.0, 210.0, 0, QList<int>{0, 827, 2});
        row("one inch", 25.4, 25.4, 0, QList<int>{100, 200, 2});
        row("millimetres", 10.0, 200.0, 1, QList<int>{100, 2100, 1});
        row("unknown unit", 0.0, 210.0, 2, QList<int>{});
        row("too large", 0.0, 1e300, 1, QList<int>{});
    }
    void theUnitsIntegerRangesRoundHalfUp() {
        auto [from, length, unit, range] =
            fetch<double, double, int, QList<int>>("from", "length", "unit", "range");
        auto r = TwainViewArea::rangeForUnit({from, length}, unit);
        QCOMPARE(bool(r), !range.isEmpty());
        if (r)
            QCOMPARE((QList<int>{r->minimum, r->maximum, r->places}), range);
    }

    void switchingTheUnitReformatsEveryField() {
        Bound b = bound();
        // 25.4 mm typed as the first sub-area's width, once the sub-area is on.
        QTest::mouseClick(child<QCheckBox>(b.tab.get(), "btnFrontArea1"), Qt::LeftButton);
        QLineEdit* width1 = b.field("txtFrontWidth1");
        width1->selectAll();
        QTest::keyClicks(width1, "25.4");
        QCOMPARE(b.model()->valueForKeyPath("Data.Area.Measure.Front.L1.Width").doubleValue(), 25.4);

        QList<QSignalSpy*> spies;
        for (QLineEdit* field : b.tab->formatTexts())
            spies << new QSignalSpy(const_cast<QValidator*>(field->validator()), &QValidator::changed);
        chooseUnit(b.tab.get(), 0);
        QCOMPARE(b.model()->valueForKeyPath("Data.Area.Unit"), TwValue(0));
        QCOMPARE(width1->text(), u"1.00"_s);
        QCOMPARE(b.field("txtWidth")->text(), u"8.27"_s);
        for (QLineEdit* field : b.tab->formatTexts()) {
            QCOMPARE(formatterOf(field)->format(), u"0.00"_s);
            QVERIFY2(!field->text().isEmpty(), qPrintable(field->objectName()));
        }
        for (QSignalSpy* spy : spies)
            QVERIFY(spy->count() > 0);
        QCOMPARE(formatterOf(b.field("txtFrontBrightness1"))->format(), u"0"_s);
        QCOMPARE(b.maximum("temp.Area.Width"), 8.27);
        QCOMPARE(b.tab->formatterForKeyPath("temp.Area.Width")->errorString(),
                 u"Enter a number from 0.39 to 8.27."_s);

        // The same unit again changes nothing.
        for (QSignalSpy* spy : spies)
            spy->clear();
        chooseUnit(b.tab.get(), 0);
        for (QSignalSpy* spy : spies)
            QCOMPARE(spy->count(), 0);
        qDeleteAll(spies);

        // And back: millimetres with one place.
        chooseUnit(b.tab.get(), 1);
        QCOMPARE(width1->text(), u"25.4"_s);
        QCOMPARE(formatterOf(b.field("txtLength"))->format(), u"0.0"_s);
        QCOMPARE(b.maximum("temp.Area.Width"), 210.0);
    }

    void aChangeRecomputesOnlyTheRangeThatDependsOnIt() {
        Bound b = bound();
        std::map<std::string, std::unique_ptr<QSignalSpy>> spies;
        std::vector<std::string> keys{"temp.Area.Front.X", "temp.Area.Y",          "temp.Area.Width",
                                      "temp.Area.Length",  "temp.Area.Front.L1.X", "temp.Area.Front.L1.Y"};
        for (const char* side : {"Front", "Back"})
            for (const char* item : {"Width", "Length"})
                for (int n = 1; n <= 3; ++n)
                    keys.push_back(std::string("temp.Area.") + side + ".L" + std::to_string(n) + "." + item);
        for (const std::string& key : keys)
            spies[key] = std::make_unique<QSignalSpy>(b.tab->formatterForKeyPath(key), &QValidator::changed);
        auto changed = [&] {
            std::set<std::string> out;
            for (auto& [key, spy] : spies)
                if (spy->count() > 0)
                    out.insert(key);
            for (auto& [key, spy] : spies)
                spy->clear();
            return out;
        };

        set(*b.ui, "temp.Area.Back.L2.X", TwValue(20.0));
        QCOMPARE(changed(), std::set<std::string>{"temp.Area.Back.L2.Width"});
        QCOMPARE(b.maximum("temp.Area.Back.L2.Width"), 190.0);
        set(*b.ui, "temp.Area.Y", TwValue(50.0));
        QCOMPARE(changed(), std::set<std::string>{"temp.Area.Length"});
        QCOMPARE(b.maximum("temp.Area.Length"), 247.0);
        // A new paper recomputes them all.
        set(*b.ui, "Data.PaperSize", TwValue(5)); // A5
        QCOMPARE(changed().size(), keys.size());
        QCOMPARE(b.maximum("temp.Area.Front.L1.X"), 146.0);
    }

    void theSideSwitchSwapsTheSubAreaControlsInOnePlace() {
        Bound b = bound();
        TwainViewArea* tab = b.tab.get();
        tab->resize(tab->sizeHint());
        tab->show();
        QVERIFY(QTest::qWaitForWindowExposed(tab));
        auto* side = child<QTableWidget>(tab, "tblSide");
        QVERIFY(!side->isEnabled()); // one-sided paper source

        set(*b.ui, "Data.PaperSource", TwValue(1));
        QVERIFY(side->isEnabled());
        const QList<QWidget*> front = tab->sideControls(0);
        const QList<QWidget*> back = tab->sideControls(1);
        QCOMPARE(front.size(), qsizetype(22));
        QCOMPARE(back.size(), front.size());
        QList<QRect> frontPlaces;
        for (QWidget* w : front)
            frontPlaces << w->geometry();

        // The user picks the back row.
        QTest::mouseClick(side->viewport(), Qt::LeftButton, {},
                          side->visualItemRect(side->item(1, 0)).center());
        QCOMPARE(b.model()->valueForKeyPath("temp.Area.Side"), TwValue(1));
        QApplication::processEvents();
        tab->layout()->activate();
        for (qsizetype i = 0; i < front.size(); ++i) {
            QVERIFY2(front[i]->isHidden(), qPrintable(front[i]->objectName()));
            QVERIFY2(!back[i]->isHidden(), qPrintable(back[i]->objectName()));
            QCOMPARE(back[i]->geometry(), frontPlaces[i]);
        }
        QVERIFY(child(tab, "btnBackArea2")->isEnabled());
        QVERIFY(!child(tab, "stpBackBrightness2")->isEnabled()); // its sub-area is off

        // Without duplex only the front remains.
        set(*b.ui, "Data.PaperSource", TwValue(0));
        QCOMPARE(b.model()->valueForKeyPath("temp.Area.Side"), TwValue(0));
        for (qsizetype i = 0; i < front.size(); ++i) {
            QVERIFY(!front[i]->isHidden());
            QVERIFY2(back[i]->isHidden() && !back[i]->isEnabled(), qPrintable(back[i]->objectName()));
        }
        QVERIFY(!b.field("txtBackX")->isEnabled());

        // Every binding starts on the front, whatever was shown before.
        set(*b.ui, "Data.PaperSource", TwValue(1));
        set(*b.ui, "temp.Area.Side", TwValue(1));
        tab->unbindControls();
        tab->bindControlsToObject(b.model());
        QCOMPARE(b.model()->valueForKeyPath("temp.Area.Side"), TwValue(0));
        QVERIFY(!front[3]->isHidden());
    }

    void aCorrectedFieldReloadsWhenTheModelAsks() {
        Bound b = bound();
        QLineEdit* width = b.field("txtWidth");
        // The same field asked twice in a row reloads both times; a key no field shows is ignored,
        // asked once or again.
        for (int i = 0; i < 2; ++i) {
            width->setText(u"99.9"_s);
            b.model()->TextEditRefresh(TwValue(), "temp.Area.Width");
            QCOMPARE(width->text(), u"210.0"_s);
        }
        b.model()->TextEditRefresh(TwValue(), "temp.Area.Nothing");
        width->setText(u"99.9"_s);
        b.model()->TextEditRefresh(TwValue(), "temp.Area.Nothing");
        QCOMPARE(width->text(), u"99.9"_s);

        // In inches through the inch pattern.
        chooseUnit(b.tab.get(), 0);
        QLineEdit* y = b.field("txtY");
        y->setText(u"3"_s);
        b.model()->TextEditRefresh(TwValue(), "temp.Area.Y");
        QCOMPARE(y->text(), u"0.00"_s);

        // Typed past the paper: the model keeps the X and the width gives way.
        chooseUnit(b.tab.get(), 1);
        QLineEdit* x = b.field("txtFrontX");
        x->selectAll();
        QTest::keyClicks(x, "100");
        QCOMPARE(b.model()->valueForKeyPath("Data.Area.Measure.Width").doubleValue(), 110.0);
        QCOMPARE(width->text(), u"110.0"_s);
        QCOMPARE(b.maximum("temp.Area.Width"), 110.0);
    }

    // Up and Down in a field with a stepper step the value as the stepper's arrows do; a typed
    // entry counts first, and the stepper itself is no Tab stop.
    void upAndDownInAFieldStepItsValue() {
        Bound b = bound();
        TwainViewArea* tab = b.tab.get();
        set(*b.ui, "Data.Area.Front.L1.Enable", TwValue(true));
        tab->show();
        QVERIFY(QTest::qWaitForWindowExposed(tab));
        QLineEdit* field = b.field("txtFrontBrightness1");
        auto* stepper = child<QAbstractSpinBox>(tab, "stpFrontBrightness1");
        QVERIFY(field->isEnabled() && stepper->isEnabled());
        QCOMPARE(stepper->focusPolicy(), Qt::NoFocus);
        const char* key = "Data.Area.Front.L1.Brightness";
        const int start = b.model()->valueForKeyPath(key).intValue();

        field->setFocus();
        QTest::keyClick(field, Qt::Key_Up);
        QCOMPARE(b.model()->valueForKeyPath(key).intValue(), start + 1);
        QCOMPARE(field->text(), QString::number(start + 1));
        QTest::keyClick(field, Qt::Key_Down);
        QTest::keyClick(field, Qt::Key_Down);
        QCOMPARE(b.model()->valueForKeyPath(key).intValue(), start - 1);

        field->selectAll();
        QTest::keyClicks(field, "200");
        QTest::keyClick(field, Qt::Key_Down);
        QCOMPARE(b.model()->valueForKeyPath(key).intValue(), 199);
        QCOMPARE(field->text(), u"199"_s);
        QVERIFY(field->hasFocus());
    }

    void aModelWithoutAnAreaLeavesTheFieldsUnbound() {
        TwValue values = sample.capabilities.deepCopy();
        values.dict()->value("Data").dict()->set("Area", TwValue());
        if (TwValue defaults = values.dict()->value("Default"); defaults.isDictionary())
            defaults.dict()->set("Area", TwValue());
        Bound b = bound(values);
        QVERIFY(!TwBoundControl::infoForBinding(b.field("txtWidth"), "value"));
        QVERIFY(sample.logText().contains(u"is not found KeyPath:temp.Area.Width"_s));
        // Still a working tab: the side switch and the unbinding.
        set(*b.ui, "Data.PaperSource", TwValue(1));
        set(*b.ui, "temp.Area.Side", TwValue(1));
        QVERIFY(child(b.tab.get(), "txtFrontX1")->isHidden());
        b.tab->unbindControls();
        QCOMPARE(b.model()->observationCount(b.tab.get()), std::size_t(0));
    }

private:
    // Texts, buttons, pop-ups, group titles and fields at their size; nothing sticks out of its
    // parent or overlaps a sibling.
    void checkFits(QWidget* form) {
        QStringList faults;
        for (QWidget* w : form->findChildren<QWidget*>()) {
            if (!isFormWidget(w) || !w->isVisibleTo(form))
                continue;
            const QSize hint = w->sizeHint();
            const QString name = w->objectName();
            auto* label = qobject_cast<QLabel*>(w);
            auto* button = qobject_cast<QAbstractButton*>(w);
            if ((label && !label->text().isEmpty()) || (button && !button->text().isEmpty())) {
                if (w->width() < hint.width() || w->height() < hint.height())
                    faults << name + " clipped: " + QDebug::toString(w->size()) + " < " +
                                  QDebug::toString(hint);
            } else if (qobject_cast<QComboBox*>(w)) {
                if (w->width() < hint.width())
                    faults << name + " squeezed: " + QDebug::toString(w->size()) + " < " +
                                  QDebug::toString(hint);
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
                    faults << name + " shows " + QDebug::toString(text.size()) + " of " +
                                  QString::number(need) + " px";
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
