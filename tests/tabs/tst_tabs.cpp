// The setting tabs bound to the sample scanner: every control shows the key paths its tab lists,
// edits reach the model, the model's rules and the scanner's control definitions enable and hide
// controls, and binding, unbinding and binding again leave nothing behind.
//
// VMX_TAB_SHOTS=<dir> saves a picture of every tab bound to the sample model.

#include "TabTestSupport.h"
#include "TwFormCatalog.h"
#include "TwResponderBinding.h"
#include "TwainNumberFormatter.h"
#include "TwainView.h"
#include "TwainViewBasic.h"
#include "TwainViewCommon.h"
#include "TwainViewLayout.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTabWidget>
#include <QtTest>

#include "TwBindingWidgets.h"

using namespace tabtest;

namespace {

// One binding a tab must make: control, binding name (a numbered kind matches any number) and key.
struct Expected {
    const char* control;
    const char* binding;
    const char* key;
};
using ExpectedList = std::vector<Expected>;

// The model-definition names of a tab, each with the controls that follow it.
struct Def {
    const char* name;
    std::vector<const char*> controls;
};
using DefList = std::vector<Def>;

struct TabCase {
    const char* className;
    const char* identifier;
    ExpectedList bindings;
    DefList defs;
};

const std::vector<TabCase>& tabCases() {
    static const std::vector<TabCase> cases{
        {"TwainViewBasic",
         "Basic",
         {
             {"cmbPaperSource", "content", "content.PaperSource"},
             {"cmbPaperSource", "selectedObject", "Data.PaperSource"},
             {"cmbPaperSize", "content", "content.PaperSizeAll"},
             {"cmbPaperSize", "enabled", "enable.PaperSize"},
             {"cmbPaperSize", "selectedObject", "Data.PaperSize"},
             {"btnCustom", "enabled", "enable.PaperSize"},
             {"cmbImageType", "content", "content.ImageType"},
             {"cmbImageType", "selectedObject", "Data.ImageType"},
             {"cmbResolution", "content", "content.Resolution"},
             {"cmbResolution", "contentValues", "content.Resolution.value"},
             {"cmbResolution", "value", "Data.Resolution"},
             {"btnLandscape", "enabled", "enable.Landscape"},
             {"btnLandscape", "value", "Data.Landscape"},
             {"btnAutoCrop", "enabled", "enable.AutoCrop"},
             {"btnAutoCrop", "value", "Data.AutoCrop.Enable"},
             {"btnDeskew", "enabled", "enable.Deskew"},
             {"btnDeskew", "value", "Data.Deskew.Enable"},
         },
         {{"PaperSource", {"cmbPaperSource"}},
          {"PaperSize", {"cmbPaperSize"}},
          {"CustomPaperSize", {"btnCustom"}},
          {"ImageType", {"cmbImageType"}},
          {"Resolution", {"cmbResolution"}},
          {"Landscape", {"btnLandscape"}},
          {"AutoCrop", {"btnAutoCrop"}},
          {"Deskew", {"btnDeskew"}}}},
        {"TwainViewCommon",
         "Common",
         {
             {"btnAutoCrop", "enabled", "enable.AutoCrop"},
             {"btnSelectMaxPaperSize", "enabled", "enable.AutoCrop"},
             {"btnSelectMaxPaperSize", "enabled", "Data.AutoCrop.Enable"},
             {"btnSelectMaxPaperSize", "value", "Data.AutoCrop.MaxSize"},
             {"btnDeskew", "enabled", "enable.Deskew"},
             {"btnDeskew", "value", "Data.Deskew.Enable"},
             {"btnSmoothing", "enabled", "enable.Deskew"},
             {"btnSmoothing", "enabled", "Data.Deskew.Enable"},
             {"btnSmoothing", "value", "Data.Deskew.Smoothing"},
             {"txtPixelRation", "enabled", "enable.AutoDistinction"},
             {"txtPixelRation", "value", "Data.AutoDistinction.ColorPixelRation"},
             {"sldPixelRation", "enabled", "enable.AutoDistinction"},
             {"sldPixelRation", "value", "Data.AutoDistinction.ColorPixelRation"},
             {"btnIgnorePaperColor", "enabled", "enable.AutoDistinction"},
             {"btnIgnorePaperColor", "value", "Data.AutoDistinction.IgnorePaperColor"},
             {"cmbRateBinaryImage", "content", "content.RateImageAvail"},
             {"cmbRateBinaryImage", "enabled", "enable.AutoDistinctionResolution"},
             {"cmbRateBinaryImage", "selectedObject", "Data.AutoDistinction.RateBinaryImage"},
             {"boxDistinctionResolution", "title", "temp.Distinction"},
             {"txtDPI", "enabled", "enable.AutoDistinctionResolution"},
             {"txtDPI", "value", "temp.GrayDPI"},
             {"txtGrayColor", "value", "temp.GrayColor"},
             {"btnMargin", "enabled", "enable.Margin"},
             {"btnMargin", "value", "Data.Margin"},
             {"btnFitToPage", "enabled", "enable.FitToPage"},
             {"btnFitToPage", "value", "Data.FitToPage"},
             {"btnLengthControl", "enabled", "enable.LengthControl"},
             {"btnLengthControl", "value", "Data.LengthControl"},
             {"cmbBackgroundColor", "selectedIndex", "Data.BackgroundColor"},
             {"btnBorderRemoval", "value", "Data.Image.BorderRemoval"},
             {"btnRemoveShadow", "value", "Data.Image.RemoveShadow"},
             {"btnHoleRemoval", "value", "Data.Image.HoleRemoval"},
             {"btnMirror", "value", "Data.Image.Mirror"},
         },
         {{"AutoCrop", {"btnAutoCrop"}},
          {"AutoCropMaxSize", {"btnSelectMaxPaperSize"}},
          {"Deskew", {"btnDeskew"}},
          {"DeskewSmoothing", {"btnSmoothing"}},
          {"AutoDistinction", {"txtPixelRation", "sldPixelRation"}},
          {"AutoDistinctionIgnoreColor", {"btnIgnorePaperColor"}},
          {"RateBinaryImage", {"cmbRateBinaryImage", "boxDistinctionResolution", "txtDPI", "txtGrayColor"}},
          {"Margin", {"btnMargin"}},
          {"FitToPage", {"btnFitToPage"}},
          {"LengthControl", {"btnLengthControl"}},
          {"BackgroundColor", {"cmbBackgroundColor", "txtBackgroundColor"}},
          {"BorderRemoval", {"btnBorderRemoval"}},
          {"RemoveShadow", {"btnRemoveShadow"}},
          {"HoleRemoval", {"btnHoleRemoval"}},
          {"Mirror", {"btnMirror"}}}},
        {"TwainViewLayout",
         "Layout",
         {
             {"rdoRotate", "selectedIndex", "Data.Layout.Rotate"},
             {"rdoDuplex", "enabled", "enable.Duplex"},
             {"rdoDuplex", "selectedIndex", "Data.Layout.DuplexType"},
             {"btnDoubleExposure", "enabled", "enable.Layout.DoubleExposure.Enable"},
             {"btnDoubleExposure", "value", "Data.Layout.DoubleExposure.Enable"},
             {"btnDoubleExposureCfg", "enabled", "enable.Layout.DoubleExposure.Enable"},
             {"btnDoubleExposureCfg", "enabled", "Data.Layout.DoubleExposure.Enable"},
             {"imgDoubleExposure", "valuePath", "image.DoubleExposure"},
             {"btnPageSeparation", "enabled", "enable.Layout.PageSeparation"},
             {"btnPageSeparation", "value", "Data.Layout.PageSeparation.Enable"},
             {"btnPageSeparationCfg", "enabled", "enable.Layout.PageSeparation"},
             {"btnPageSeparationCfg", "enabled", "Data.Layout.PageSeparation.Enable"},
             {"imgPageSeparation", "valuePath", "image.PageSeparation"},
             {"btnBlankPageRemoval", "enabled", "enable.BlankPageRemoval"},
             {"btnBlankPageRemoval", "value", "Data.Layout.BlankPageRemoval.Eanble"},
             {"txtPixelRation", "enabled", "enable.BlankPageRemoval"},
             {"txtPixelRation", "enabled", "Data.Layout.BlankPageRemoval.Eanble"},
             {"txtPixelRation", "value", "Data.Layout.BlankPageRemoval.Ratio"},
             {"sldPixelRation", "enabled", "enable.BlankPageRemoval"},
             {"sldPixelRation", "enabled", "Data.Layout.BlankPageRemoval.Eanble"},
             {"sldPixelRation", "value", "Data.Layout.BlankPageRemoval.Ratio"},
             {"btnShowResult", "enabled", "enable.BlankPageRemoval"},
             {"btnShowResult", "enabled", "Data.Layout.BlankPageRemoval.Eanble"},
             {"btnShowResult", "value", "Data.Layout.BlankPageRemoval.ShowResult"},
         },
         {{"Rotate", {"rdoRotate"}},
          {"DuplexType", {"rdoDuplex"}},
          {"DoubleExposure", {"btnDoubleExposure", "imgDoubleExposure"}},
          {"PageSeparation", {"btnPageSeparation", "imgPageSeparation"}},
          {"BlankPageRemoval", {"btnBlankPageRemoval"}},
          {"BlankPageRemovalRatio", {"txtPixelRation", "sldPixelRation"}},
          {"BlankPageRemovalResult", {"btnShowResult"}}}},
        {"TwainViewBinaryImage",
         "BinaryImage",
         {
             {"rdoSide", "enabled", "enable.Duplex"},
             {"rdoSide", "selectedIndex", "temp.BinaryImageSide"},
             {"txtSide", "value", "temp.BinaryImageSideText"},
             {"boxSide", "title", "temp.BinaryImageSideText"},
             {"cmbHalftone", "content", "content.Halftone"},
             {"cmbHalftone", "enabled", "enable.BinaryImage.Halftone"},
             {"cmbHalftone", "selectedObject", "temp.BinaryImage.Halftone"},
             {"txtBrightness", "enabled", "enable.BinaryImage.Brightness"},
             {"txtBrightness", "value", "temp.BinaryImage.Brightness"},
             {"sldBrightness", "enabled", "enable.BinaryImage.Brightness"},
             {"sldBrightness", "value", "temp.BinaryImage.Brightness"},
             {"txtContrast", "enabled", "enable.BinaryImage.Contrast"},
             {"txtContrast", "value", "temp.BinaryImage.Contrast"},
             {"sldContrast", "enabled", "enable.BinaryImage.Contrast"},
             {"sldContrast", "value", "temp.BinaryImage.Contrast"},
             {"cmbEmpasis", "content", "content.Emphasis"},
             {"cmbEmpasis", "enabled", "enable.BinaryImage.Empasis"},
             {"cmbEmpasis", "selectedObject", "temp.BinaryImage.Empasis"},
             {"cmbGamma", "content", "content.Gray.Gamma"},
             {"cmbGamma", "enabled", "enable.BinaryImage.Gamma"},
             {"cmbGamma", "selectedObject", "temp.BinaryImage.Gamma"},
             {"btnGamma", "enabled", "enable.BinaryImage.Gamma"},
             {"cmbDrop", "content", "content.DropOut"},
             {"cmbDrop", "enabled", "enable.BinaryImage.Drop"},
             {"cmbDrop", "selectedObject", "temp.BinaryImage.Drop"},
             {"btnDynamicThreshold", "value", "Data.BinaryImage.DynamicThresholdEnable"},
             {"cmbDynamicThreshold", "content", "content.DynamicThres"},
             {"cmbDynamicThreshold", "enabled", "Data.BinaryImage.DynamicThresholdEnable"},
             {"cmbDynamicThreshold", "selectedObject", "Data.BinaryImage.DynamicThresholdMode"},
             {"cmbNoiseReductionSize", "content", "content.NoiseSize"},
             {"cmbNoiseReductionSize", "enabled", "enable.BinaryImage.NoiseReductionSize"},
             {"cmbNoiseReductionSize", "selectedObject", "Data.BinaryImage.NoiseReductionSize"},
             {"cmbNoiseReductionType", "content", "content.NoiseMode"},
             {"cmbNoiseReductionType", "enabled", "enable.BinaryImage.NoiseReductionType"},
             {"cmbNoiseReductionType", "selectedObject", "Data.BinaryImage.NoiseReductionType"},
             {"cmbWhiteLevel", "content", "content.WhiteLevel"},
             {"cmbWhiteLevel", "enabled", "enable.Image.WhiteLevel"},
             {"cmbWhiteLevel", "selectedObject", "Data.Image.WhiteLevel"},
             {"btnBorderRemoval", "value", "Data.Image.BorderRemoval"},
             {"btnRemoveShadow", "value", "Data.Image.RemoveShadow"},
             {"btnHoleRemoval", "value", "Data.Image.HoleRemoval"},
             {"btnMirror", "value", "Data.Image.Mirror"},
             {"btnInvert", "value", "Data.Image.Invert"},
             {"btnAutoSeparation", "enabled", "enable.Image.AutoSeparation"},
             {"btnAutoSeparation", "value", "Data.Image.AutoSeparation"},
             {"cmbHalftone", "enabled", "enable.BinaryImage.All"},
             {"rdoSide", "enabled", "enable.BinaryImage.All"},
             {"btnMirror", "enabled", "enable.BinaryImage.All"},
         },
         {{"Halftone", {"cmbHalftone"}},
          {"Brightness", {"txtBrightness", "sldBrightness"}},
          {"Contrast", {"txtContrast", "sldContrast"}},
          {"Empasis", {"cmbEmpasis"}},
          {"Gamma", {"cmbGamma"}},
          {"GammaCustom", {"btnGamma"}},
          {"Drop", {"cmbDrop"}},
          {"DynamicThreshold", {"btnDynamicThreshold"}},
          {"DynamicThresholdMode", {"cmbDynamicThreshold"}},
          {"NoiseReduction", {"cmbNoiseReductionSize"}},
          {"NoiseReductionType", {"cmbNoiseReductionType"}},
          {"WhiteLevel", {"cmbWhiteLevel"}},
          {"BorderRemoval", {"btnBorderRemoval"}},
          {"RemoveShadow", {"btnRemoveShadow"}},
          {"HoleRemoval", {"btnHoleRemoval"}},
          {"Mirror", {"btnMirror"}},
          {"Invert", {"btnInvert"}},
          {"AutoSeparation", {"btnAutoSeparation"}}}},
        {"TwainViewGrayImage",
         "GrayImage",
         {
             {"rdoSide", "enabled", "enable.Duplex"},
             {"rdoSide", "selectedIndex", "temp.GrayImageSide"},
             {"txtSide", "value", "temp.GrayImageSideText"},
             {"boxSide", "title", "temp.GrayImageSideText"},
             {"txtBrightness", "value", "temp.GrayImage.Brightness"},
             {"sldBrightness", "value", "temp.GrayImage.Brightness"},
             {"txtContrast", "value", "temp.GrayImage.Contrast"},
             {"sldContrast", "value", "temp.GrayImage.Contrast"},
             {"cmbEmpasis", "content", "content.Emphasis"},
             {"cmbEmpasis", "selectedObject", "temp.GrayImage.Empasis"},
             {"cmbGamma", "content", "content.Gray.Gamma"},
             {"cmbGamma", "enabled", "enable.GrayImage.Gamma"},
             {"cmbGamma", "selectedObject", "temp.GrayImage.Gamma"},
             {"btnGamma", "enabled", "enable.GrayImage.Gamma"},
             {"cmbDrop", "content", "content.FrontLamp"},
             {"cmbDrop", "enabled", "enable.GrayImage.Drop"},
             {"cmbDrop", "selectedObject", "temp.GrayImage.Drop"},
             {"btnHighSpeed", "value", "Data.Image.HighSpeed"},
             {"cmbWhiteLevel", "content", "content.WhiteLevel"},
             {"cmbWhiteLevel", "enabled", "enable.Image.WhiteLevel"},
             {"cmbWhiteLevel", "selectedObject", "Data.Image.WhiteLevel"},
             {"btnBorderRemoval", "value", "Data.Image.BorderRemoval"},
             {"btnRemoveShadow", "value", "Data.Image.RemoveShadow"},
             {"btnHoleRemoval", "value", "Data.Image.HoleRemoval"},
             {"btnMirror", "value", "Data.Image.Mirror"},
             {"txtBrightness", "enabled", "enable.GrayImage.All"},
             {"btnHighSpeed", "enabled", "enable.GrayImage.All"},
         },
         {{"Brightness", {"txtBrightness", "sldBrightness"}},
          {"Contrast", {"txtContrast", "sldContrast"}},
          {"Empasis", {"cmbEmpasis"}},
          {"Gamma", {"cmbGamma"}},
          {"GammaCustom", {"btnGamma"}},
          {"Drop", {"cmbDrop"}},
          {"HighSpeed", {"btnHighSpeed"}},
          {"WhiteLevel", {"cmbWhiteLevel"}},
          {"BorderRemoval", {"btnBorderRemoval"}},
          {"RemoveShadow", {"btnRemoveShadow"}},
          {"HoleRemoval", {"btnHoleRemoval"}},
          {"Mirror", {"btnMirror"}}}},
        {"TwainViewColorImage",
         "ColorImage",
         {
             {"rdoSide", "enabled", "enable.Duplex"},
             {"rdoSide", "selectedIndex", "temp.ColorImageSide"},
             {"txtSide", "value", "temp.ColorImageSideText"},
             {"boxSide", "title", "temp.ColorImageSideText"},
             {"txtBrightness", "value", "temp.ColorImage.Brightness"},
             {"sldBrightness", "value", "temp.ColorImage.Brightness"},
             {"txtContrast", "value", "temp.ColorImage.Contrast"},
             {"sldContrast", "value", "temp.ColorImage.Contrast"},
             {"txtChroma", "enabled", "enable.ColorImage.Chroma"},
             {"txtChroma", "value", "temp.ColorImage.Chroma"},
             {"sldChroma", "enabled", "enable.ColorImage.Chroma"},
             {"sldChroma", "value", "temp.ColorImage.Chroma"},
             {"cmbEmpasis", "content", "content.Emphasis"},
             {"cmbEmpasis", "selectedObject", "temp.ColorImage.Empasis"},
             {"cmbGamma", "content", "content.Color.Gamma"},
             {"cmbGamma", "enabled", "enable.ColorImage.Gamma"},
             {"cmbGamma", "selectedObject", "temp.ColorImage.Gamma"},
             {"btnGamma", "enabled", "enable.ColorImage.Gamma"},
             {"btnHighSpeed", "value", "Data.Image.HighSpeed"},
             {"cmbColorMatching", "content", "content.ColorMatch"},
             {"cmbColorMatching", "selectedObject", "Data.ColorImage.ColorMatching"},
             {"btnBorderRemoval", "value", "Data.Image.BorderRemoval"},
             {"btnRemoveShadow", "value", "Data.Image.RemoveShadow"},
             {"btnHoleRemoval", "value", "Data.Image.HoleRemoval"},
             {"btnMirror", "value", "Data.Image.Mirror"},
             {"btnSmooth", "value", "Data.Image.SmoothBackground"},
             {"btnBackgroundRemoval", "value", "Data.Image.BackgroundRemoval"},
             {"cmbColorMatching", "enabled", "enable.ColorImage.All"},
         },
         {{"Brightness", {"txtBrightness", "sldBrightness"}},
          {"Contrast", {"txtContrast", "sldContrast"}},
          {"Chroma", {"txtChroma", "sldChroma"}},
          {"Empasis", {"cmbEmpasis"}},
          {"Gamma", {"cmbGamma"}},
          {"GammaCustom", {"btnGamma"}},
          {"HighSpeed", {"btnHighSpeed"}},
          {"ColorMatching", {"cmbColorMatching"}},
          {"BorderRemoval", {"btnBorderRemoval"}},
          {"RemoveShadow", {"btnRemoveShadow"}},
          {"HoleRemoval", {"btnHoleRemoval"}},
          {"Mirror", {"btnMirror"}},
          {"Smooth", {"btnSmooth"}},
          {"BackgroundRemoval", {"btnBackgroundRemoval"}}}},
        {"TwainViewFeed",
         "Feed",
         {
             {"cmbManualFeed", "content", "content.ManualFeed"},
             {"cmbManualFeed", "selectedObject", "Data.Feed.ManualFeedMode"},
             {"txtTimeOut", "enabled", "enable.Feed.ManualFeedTimeOut"},
             {"txtTimeOut", "value", "Data.Feed.ManualFeedTimeOut"},
             {"btnTimeOutUnlimited", "enabled", "enable.Feed.ManualFeedUnlimited"},
             {"btnTimeOutUnlimited", "value", "Data.Feed.ManualFeedUnlimited"},
             {"btnDetectDoubleFeed", "enabled", "enable.Feed.DoubleFeed"},
             {"btnDetectDoubleFeed", "value", "Data.Feed.DetectDoubleFeedEnable"},
             {"cmbSensitivity", "content", "content.DoubleFeedSense"},
             {"cmbSensitivity", "enabled", "enable.Feed.DoubleFeedSensitivity"},
             {"cmbSensitivity", "selectedObject", "Data.Feed.DetectDoubleFeedSensitivity"},
             {"rdoPage", "enabled", "enable.Feed.FeedPageMode"},
             {"rdoPage", "selectedIndex", "Data.Feed.FeedPageMode"},
             {"txtPage", "enabled", "enable.Feed.FeedPage"},
             {"txtPage", "value", "Data.Feed.FeedPageNumber"},
             {"cmbNoLookAhead", "enabled", "enable.Feed.NoLookAhead"},
             {"cmbNoLookAhead", "selectedIndex", "Data.Feed.NoLookAhead"},
         },
         {{"ManualFeed", {"cmbManualFeed"}},
          {"ManualFeedTimeOut", {"txtTimeOut"}},
          {"ManualFeedUnlimited", {"btnTimeOutUnlimited"}},
          {"DetectDoubleFeed", {"btnDetectDoubleFeed"}},
          {"DetectDoubleFeedSensitivity", {"cmbSensitivity"}},
          {"FeedPageMode", {"rdoPage"}},
          {"FeedPageNumber", {"txtPage"}},
          {"NoLookAhead", {"cmbNoLookAhead"}}}},
        {"TwainViewArea",
         "Area",
         {
             {"cmbUnit", "content", "content.Unit"},
             {"cmbUnit", "selectedObject", "Data.Area.Unit"},
             {"txtFrontX", "value", "temp.Area.Front.X"},
             {"txtBackX", "value", "temp.Area.Back.X"},
             {"txtBackX", "enabled", "enable.Duplex"},
             {"txtBackX", "enabled", "enable.Area.Front"},
             {"txtY", "value", "temp.Area.Y"},
             {"txtWidth", "value", "temp.Area.Width"},
             {"txtLength", "value", "temp.Area.Length"},
             {"tblSide", "value", "temp.Area.Side"},
             {"tblSide", "enabled", "enable.Duplex"},
             {"cmbFrontHalftone", "content", "content.FrontHalftone"},
             {"cmbFrontHalftone", "selectedObject", "Data.Area.Front.Halftone"},
             {"cmbFrontHalftone", "hidden", "hidden.Area.Front"},
             {"cmbFrontHalftone", "enabled", "enable.Area.Halftone"},
             {"cmbBackHalftone", "content", "content.BackHalftone"},
             {"cmbBackHalftone", "selectedObject", "Data.Area.Back.Halftone"},
             {"cmbBackHalftone", "hidden", "hidden.Area.Back"},
             {"cmbBackHalftone", "enabled", "enable.Duplex"},
             {"btnFrontArea2", "value", "Data.Area.Front.L2.Enable"},
             {"txtFrontX2", "value", "temp.Area.Front.L2.X"},
             {"txtFrontX2", "enabled", "Data.Area.Front.L2.Enable"},
             {"txtFrontX2", "enabled", "enable.Area.SubArea"},
             {"txtBackLength3", "value", "temp.Area.Back.L3.Length"},
             {"txtBackLength3", "enabled", "Data.Area.Back.L3.Enable"},
             {"txtBackLength3", "hidden", "hidden.Area.Back"},
             {"txtBackBrightness1", "value", "Data.Area.Back.L1.Brightness"},
             {"stpBackBrightness1", "value", "Data.Area.Back.L1.Brightness"},
             {"stpBackBrightness1", "enabled", "enable.Area.Brightness.Back"},
             {"txtFrontBrightness3", "enabled", "enable.Area.Brightness.Front"},
         },
         {}},
        {"TwainViewControlSheet",
         "ControlSheet",
         {
             {"btnDetectSeparationSheet", "enabled", "enable.Feed.DetectSeparationSheet"},
             {"btnDetectSeparationSheet", "value", "Data.Feed.DetectSeparationSheetEnable"},
             {"btnSkipSeparationSheet", "enabled", "enable.Feed.DetectSeparationSheetSkip"},
             {"btnSkipSeparationSheet", "value", "Data.Feed.DetectSeparationSheetSkip"},
         },
         {{"DetectSeparationSheet", {"btnDetectSeparationSheet"}},
          {"DetectSeparationSheetSkip", {"btnSkipSeparationSheet"}}}},
        {"TwainViewImprinter", "Imprinter", {}, {}},
        {"TwainViewPatchCode", "PatchCode", {}, {}},
    };
    return cases;
}

const TabCase* tabCase(const QString& className) {
    for (const TabCase& c : tabCases())
        if (className == QLatin1String(c.className))
            return &c;
    return nullptr;
}

// True when the control carries a binding of the name's kind to the key path.
bool hasBinding(const QObject* control, const char* binding, const std::string& keyPath) {
    const auto wanted = TwBindingKindForName(binding);
    for (const std::string& name : TwBoundControl::bindingNames(control)) {
        auto info = TwBoundControl::infoForBinding(control, name);
        if (info && TwBindingKindForName(name) == wanted && info->keyPath == keyPath)
            return true;
    }
    return false;
}

// The sample's model definition with a control definition for every name a tab uses, so that every
// model-definition binding can be made.
TwValue modelDefRootWithEveryControl() {
    std::string error;
    TwValue root = TwPlistReadFile(kBundle + "/Contents/Resources/ModelDef.plist", &error);
    TwValue uiControl = root.dict()->value("UIControl");
    for (const TabCase& c : tabCases()) {
        if (c.defs.empty())
            continue;
        TwValue dialog = uiControl.dict()->value(c.identifier);
        if (!dialog.isDictionary()) {
            dialog = TwValue::dictionary();
            uiControl.dict()->set(c.identifier, dialog);
        }
        for (const Def& d : c.defs)
            if (!dialog.dict()->contains(d.name))
                dialog.dict()->set(d.name, TwValue::dictionary({{"enabled", true}, {"hidden", false}}));
    }
    return root;
}

} // namespace

class TestTabs : public QObject {
    Q_OBJECT
    Sample sample;

    void addTabRows() {
        QTest::addColumn<QString>("className");
        for (const QString& name : TwainView::classNames())
            QTest::newRow(qPrintable(name)) << name;
    }

private slots:
    void initTestCase() {
        std::string error;
        QVERIFY2(sample.read(&error), error.c_str());
    }
    void init() { sample.freshPreferences(); }
    void cleanupTestCase() { OrvaSetLogPaths(nullptr, nullptr); }

    // ---- Making ----

    void everyTabIsMadeByItsClassName_data() { addTabRows(); }
    void everyTabIsMadeByItsClassName() {
        QFETCH(QString, className);
        std::unique_ptr<TwainView> tab(TwainView::create(className));
        QVERIFY(tab);
        QCOMPARE(QString::fromLatin1(tab->metaObject()->className()), className);
        const TabCase* c = tabCase(className);
        QVERIFY2(c, "every tab has a case here");
        QCOMPARE(tab->identifier(), QString::fromLatin1(c->identifier));
        QVERIFY(!tab->bindObject());
        QVERIFY(!tab->responderBinding());
    }

    void theCatalogAndTheTabsNameTheSameForms() {
        QCOMPARE(TwainView::classNames().size(), qsizetype(tabCases().size()));
        for (const QString& name : TwainView::classNames())
            QVERIFY2(TwFormCatalog::classNames().contains(name), qPrintable(name));
    }

    void anUnknownClassIsRefusedWithALogLine() {
        sample.captureLog();
        QVERIFY(!TwainView::create(QStringLiteral("TwainViewNothing")));
        QVERIFY(!TwainView::create(QString()));
        QVERIFY(sample.logText().contains(QStringLiteral("no tab of class TwainViewNothing")));
    }

    // ---- Binding ----

    void everyTabBindsWithoutAMissingKeyPath_data() { addTabRows(); }
    void everyTabBindsWithoutAMissingKeyPath() {
        QFETCH(QString, className);
        auto ui = sample.load();
        std::unique_ptr<TwainView> tab(TwainView::create(className));
        sample.clearLog();
        tab->bindControlsToObject(ui->model().get());
        const QString log = sample.logText();
        QVERIFY2(!log.contains(QStringLiteral("is not found KeyPath")), qPrintable(log));
        QVERIFY2(!log.contains(QStringLiteral("ERROR")), qPrintable(log));
        QCOMPARE(tab->bindObject(), ui->model().get());
        QVERIFY(tab->responderBinding());
        if (tabCase(className)->bindings.empty())
            QCOMPARE(boundControlCount(tab.get()), 0);
        else
            QVERIFY(boundControlCount(tab.get()) > 0);
    }

    void everyTabMakesTheBindingsItLists_data() { addTabRows(); }
    void everyTabMakesTheBindingsItLists() {
        QFETCH(QString, className);
        // A definition for every control, so that the model-definition bindings are made too.
        SampleModelDef def(modelDefRootWithEveryControl());
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->initWithDSBundle(kBundle);
        sample.captureLog();
        ui->setModelDef(&def);
        ui->setDataWithDictionary(sample.capabilities.deepCopy(), 0);
        std::unique_ptr<TwainView> tab(TwainView::create(className));
        tab->bindControlsToObject(ui->model().get());
        QVERIFY2(!sample.logText().contains(QStringLiteral("is not found KeyPath")),
                 qPrintable(sample.logText()));

        const TabCase* c = tabCase(className);
        for (const Expected& e : c->bindings) {
            QObject* control = tab->findChild<QObject*>(QString::fromLatin1(e.control));
            QVERIFY2(control, e.control);
            QVERIFY2(hasBinding(control, e.binding, e.key),
                     qPrintable(QStringLiteral("%1 %2 %3").arg(e.control, e.binding, e.key)));
        }
        const std::string prefix = std::string("ModelDef.UIControl.") + c->identifier + ".";
        for (const Def& d : c->defs) {
            for (const char* name : d.controls) {
                QObject* control = tab->findChild<QObject*>(QString::fromLatin1(name));
                QVERIFY2(control, name);
                QVERIFY2(hasBinding(control, "hidden", prefix + d.name + ".hidden"), name);
                // A group box follows only the hidden definition.
                const bool isBox = qobject_cast<QGroupBox*>(control);
                QCOMPARE(hasBinding(control, "enabled", prefix + d.name + ".enabled"), !isBox);
            }
        }
    }

    void bindUnbindAndRebindLeaveNothingBehind_data() { addTabRows(); }
    void bindUnbindAndRebindLeaveNothingBehind() {
        QFETCH(QString, className);
        auto ui = sample.load();
        TwainDialogData* model = ui->model().get();
        const std::size_t before = model->observationCount();
        std::unique_ptr<TwainView> tab(TwainView::create(className));

        tab->bindControlsToObject(model);
        const std::size_t bound = model->observationCount();
        const int controls = boundControlCount(tab.get());
        const std::size_t records = tab->responderBinding()->bindings().size();
        QCOMPARE(bound > before, controls > 0);

        tab->unbindControls();
        QCOMPARE(model->observationCount(), before);
        QCOMPARE(model->observationCount(tab.get()), std::size_t(0));
        QCOMPARE(boundControlCount(tab.get()), 0);
        QVERIFY(!tab->bindObject());
        QVERIFY(!tab->responderBinding());

        tab->bindControlsToObject(model);
        QCOMPARE(model->observationCount(), bound);
        QCOMPARE(boundControlCount(tab.get()), controls);
        QCOMPARE(tab->responderBinding()->bindings().size(), records);
        // Binding again while bound replaces everything instead of adding to it.
        tab->bindControlsToObject(model);
        QCOMPARE(model->observationCount(), bound);
        QCOMPARE(tab->responderBinding()->bindings().size(), records);

        // A tab that goes away while bound takes its bindings with it.
        tab.reset();
        QCOMPARE(model->observationCount(), before);
    }

    void bindingATabIsNoEdit_data() { addTabRows(); }
    void bindingATabIsNoEdit() {
        QFETCH(QString, className);
        auto ui = sample.load();
        set(*ui, "profiles.name", TwValue("Factory Default"));
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Factory Default"));
        const TwValue data = ui->dataForKeyPath("Data").deepCopy();
        std::unique_ptr<TwainView> tab(TwainView::create(className));
        tab->bindControlsToObject(ui->model().get());
        tab->unbindControls();
        tab->bindControlsToObject(ui->model().get());
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Factory Default"));
        QVERIFY(ui->dataForKeyPath("Data").isEqual(data));
    }

    void aTabTakenOutOfItsWindowUnbindsAndCanBindAgain() {
        auto ui = sample.load();
        TwainDialogData* model = ui->model().get();
        const std::size_t before = model->observationCount();
        QTabWidget window;
        auto* tab = TwainView::create(QStringLiteral("TwainViewFeed"));
        window.addTab(tab, tab->windowTitle());
        tab->bindControlsToObject(model);
        QVERIFY(model->observationCount() > before);

        window.removeTab(0);
        tab->setParent(nullptr);
        QVERIFY(!tab->bindObject());
        QCOMPARE(model->observationCount(), before);
        QCOMPARE(boundControlCount(tab), 0);

        tab->bindControlsToObject(model);
        QVERIFY(model->observationCount() > before);
        set(*ui, "Data.Feed.FeedPageNumber", TwValue(12));
        QCOMPARE(child<QLineEdit>(tab, "txtPage")->text(), QStringLiteral("12"));
        delete tab;
        QCOMPARE(model->observationCount(), before);
    }

    void aMissingModelIsRefusedWithALogLine() {
        sample.captureLog();
        std::unique_ptr<TwainView> tab(TwainView::create(QStringLiteral("TwainViewArea")));
        tab->bindControlsToObject(nullptr);
        QVERIFY(!tab->bindObject());
        QCOMPARE(boundControlCount(tab.get()), 0);
        QVERIFY(sample.logText().contains(QStringLiteral("no model to bind to")));
        tab->addObserverForKeyPath("Data.Resolution");
        QVERIFY(tab->responderBinding()->observations().empty());
        tab->unbindControls();
    }

    // ---- Edits and rules ----

    void choosingAnImageTypeWritesItAndSwitchesTheImageTabs() {
        auto ui = sample.load();
        TwainDialogData* model = ui->model().get();
        std::unique_ptr<TwainView> basic(TwainView::create(QStringLiteral("TwainViewBasic")));
        std::unique_ptr<TwainView> binary(TwainView::create(QStringLiteral("TwainViewBinaryImage")));
        std::unique_ptr<TwainView> gray(TwainView::create(QStringLiteral("TwainViewGrayImage")));
        for (TwainView* tab : {basic.get(), binary.get(), gray.get()})
            tab->bindControlsToObject(model);
        auto* imageType = child<QComboBox>(basic.get(), "cmbImageType");
        QCOMPARE(model->valueForKeyPath("Data.ImageType"), TwValue(0));
        QCOMPARE(imageType->currentText(), QStringLiteral("Black & White"));
        QVERIFY(child(binary.get(), "cmbHalftone")->isEnabled());
        QVERIFY(child(binary.get(), "btnMirror")->isEnabled());
        QVERIFY(!child(gray.get(), "txtBrightness")->isEnabled());

        // The user moves one entry down: gray.
        imageType->setFocus();
        QTest::keyClick(imageType, Qt::Key_Down);
        QCOMPARE(model->valueForKeyPath("Data.ImageType"), TwValue(1));
        QVERIFY(!child(binary.get(), "cmbHalftone")->isEnabled());
        QVERIFY(!child(binary.get(), "btnMirror")->isEnabled());
        QVERIFY(!child(binary.get(), "sldBrightness")->isEnabled());
        QVERIFY(child(gray.get(), "txtBrightness")->isEnabled());
        QVERIFY(child(gray.get(), "cmbEmpasis")->isEnabled());

        // Automatic gray/binary turns both on.
        set(*ui, "Data.ImageType", TwValue(22));
        QVERIFY(child(binary.get(), "cmbHalftone")->isEnabled());
        QVERIFY(child(gray.get(), "txtBrightness")->isEnabled());
    }

    void typingAndClickingWriteTheirKeyPaths() {
        auto ui = sample.load();
        TwainDialogData* model = ui->model().get();
        std::unique_ptr<TwainView> feed(TwainView::create(QStringLiteral("TwainViewFeed")));
        feed->bindControlsToObject(model);

        // The manual feed timeout is enabled once manual feeding is on.
        auto* timeOut = child<QLineEdit>(feed.get(), "txtTimeOut");
        QVERIFY(!timeOut->isEnabled());
        set(*ui, "Data.Feed.ManualFeedMode", TwValue(1));
        QVERIFY(timeOut->isEnabled());
        timeOut->selectAll();
        QTest::keyClicks(timeOut, "45");
        QCOMPARE(model->valueForKeyPath("Data.Feed.ManualFeedTimeOut"), TwValue(45));
        // Outside 1 to 300 the field refuses to write.
        timeOut->selectAll();
        QTest::keyClicks(timeOut, "301");
        QCOMPARE(model->valueForKeyPath("Data.Feed.ManualFeedTimeOut"), TwValue(30));

        // Feeding a number of pages: the radio group enables the page field.
        auto* pages = child<QLineEdit>(feed.get(), "txtPage");
        QVERIFY(!pages->isEnabled());
        QTest::mouseClick(child<QRadioButton>(feed.get(), "rdoPage_1"), Qt::LeftButton);
        QCOMPARE(model->valueForKeyPath("Data.Feed.FeedPageMode"), TwValue(1));
        QVERIFY(pages->isEnabled());

        // Look-ahead: the form's two rows stand for the setting's two values.
        auto* lookAhead = child<QComboBox>(feed.get(), "cmbNoLookAhead");
        QCOMPARE(lookAhead->currentText(), QStringLiteral("On"));
        set(*ui, "Data.Feed.NoLookAhead", TwValue(true));
        QCOMPARE(lookAhead->currentText(), QStringLiteral("Off"));
        // Not with manual feeding.
        QVERIFY(!lookAhead->isEnabled());
        set(*ui, "Data.Feed.ManualFeedMode", TwValue(0));
        QVERIFY(lookAhead->isEnabled());
        lookAhead->setFocus();
        QTest::keyClick(lookAhead, Qt::Key_Up);
        QVERIFY(model->valueForKeyPath("Data.Feed.NoLookAhead").isEqual(TwValue(false)));

        set(*ui, "Data.Feed.ManualFeedMode", TwValue(1));
        auto* unlimited = child<QCheckBox>(feed.get(), "btnTimeOutUnlimited");
        QTest::mouseClick(unlimited, Qt::LeftButton);
        QCOMPARE(model->valueForKeyPath("Data.Feed.ManualFeedUnlimited"), TwValue(true));
        QVERIFY(!timeOut->isEnabled());
    }

    void theSideSelectorOfAnImageTabFollowsDuplex() {
        auto ui = sample.load();
        TwainDialogData* model = ui->model().get();
        std::unique_ptr<TwainView> gray(TwainView::create(QStringLiteral("TwainViewGrayImage")));
        gray->bindControlsToObject(model);
        set(*ui, "Data.ImageType", TwValue(1));
        auto* side = child<TwSegmentedControl>(gray.get(), "rdoSide");
        QVERIFY(!side->isEnabled());
        set(*ui, "Data.PaperSource", TwValue(1));
        QVERIFY(side->isEnabled());
        QCOMPARE(side->selectedIndex(), 2);

        QTest::mouseClick(child<QRadioButton>(gray.get(), "rdoSide_1"), Qt::LeftButton);
        QCOMPARE(model->valueForKeyPath("temp.GrayImageSide"), TwValue(1));
        QCOMPARE(child<QLabel>(gray.get(), "txtSide")->text(), QStringLiteral("Back"));
        QCOMPARE(child<QGroupBox>(gray.get(), "boxSide")->title(), QStringLiteral("Back"));

        // The slider edits the back side only.
        auto* brightness = child<QSlider>(gray.get(), "sldBrightness");
        brightness->setFocus();
        QTest::keyClick(brightness, Qt::Key_Right);
        QCOMPARE(model->valueForKeyPath("Data.GrayImage.Back.Brightness"), TwValue(129));
        QCOMPARE(model->valueForKeyPath("Data.GrayImage.Front.Brightness"), TwValue(128));
        QCOMPARE(child<QLineEdit>(gray.get(), "txtBrightness")->text(), QStringLiteral("129"));
    }

    void theScannersControlDefinitionsHideAndDisable() {
        // The sample hides and disables fit-to-page on the Common tab.
        auto ui = sample.load();
        std::unique_ptr<TwainView> common(TwainView::create(QStringLiteral("TwainViewCommon")));
        common->bindControlsToObject(ui->model().get());
        QVERIFY(child(common.get(), "btnFitToPage")->isHidden());
        QVERIFY(!child(common.get(), "btnFitToPage")->isEnabled());
        QVERIFY(!child(common.get(), "btnMargin")->isHidden());
        QCOMPARE(child<QComboBox>(common.get(), "cmbBackgroundColor")->currentText(),
                 QStringLiteral("White"));

        // A definition that disables the timeout wins over its rule; one that hides the page
        // number hides it and the label that follows it.
        TwValue root = modelDefRootWithEveryControl();
        TwValue feedDefs = root.dict()->value("UIControl").dict()->value("Feed");
        feedDefs.dict()->set("ManualFeedTimeOut",
                             TwValue::dictionary({{"enabled", false}, {"hidden", false}}));
        feedDefs.dict()->set("FeedPageNumber", TwValue::dictionary({{"enabled", true}, {"hidden", true}}));
        SampleModelDef def(root);
        auto custom = std::make_unique<VmxUIControllerImpl>();
        custom->initWithDSBundle(kBundle);
        sample.captureLog();
        custom->setModelDef(&def);
        custom->setDataWithDictionary(sample.capabilities.deepCopy(), 0);
        std::unique_ptr<TwainView> feed(TwainView::create(QStringLiteral("TwainViewFeed")));
        feed->bindControlsToObject(custom->model().get());
        set(*custom, "Data.Feed.ManualFeedMode", TwValue(1));
        QCOMPARE(custom->dataForKeyPath("enable.Feed.ManualFeedTimeOut"), TwValue(true));
        QVERIFY(!child(feed.get(), "txtTimeOut")->isEnabled());
        QVERIFY(child(feed.get(), "txtPage")->isHidden());
        QVERIFY(child(feed.get(), "labPageUnit")->isHidden());
        QVERIFY(!child(feed.get(), "rdoPage")->isHidden());

        // Shown again once the definition says so.
        feed->unbindControls();
        feedDefs.dict()->set("FeedPageNumber", TwValue::dictionary({{"enabled", true}, {"hidden", false}}));
        feed->bindControlsToObject(custom->model().get());
        QVERIFY(!child(feed.get(), "txtPage")->isHidden());
        QVERIFY(!child(feed.get(), "labPageUnit")->isHidden());
    }

    // ---- What some tabs add ----

    void theResolutionFieldsLowerBoundFoldsTheList() {
        auto list = [](std::initializer_list<TwValue> items) {
            return TwValue::array(items);
        };
        QCOMPARE(TwainViewBasic::resolutionMinimum(list({50, 150, 1200})), 1200);
        QCOMPARE(TwainViewBasic::resolutionMinimum(list({150, 300})), 100);
        QCOMPARE(TwainViewBasic::resolutionMinimum(list({})), 100);
        QCOMPARE(TwainViewBasic::resolutionMinimum(TwValue()), 100);
        QCOMPARE(TwainViewBasic::resolutionMinimum(list({"75", 80, TwValue::dictionary(), 90})), 80);
        QCOMPARE(TwainViewBasic::resolutionMinimum(list({700, 50})), 50);

        // The sample lists 150 to 600: the field takes 100 to 600.
        auto ui = sample.load();
        std::unique_ptr<TwainView> basic(TwainView::create(QStringLiteral("TwainViewBasic")));
        basic->bindControlsToObject(ui->model().get());
        auto* resolution = child<QComboBox>(basic.get(), "cmbResolution");
        auto* formatter = qobject_cast<const TwainNumberFormatter*>(resolution->lineEdit()->validator());
        QVERIFY(formatter);
        QCOMPARE(formatter->minimum().value_or(-1), 100.0);
        QCOMPARE(formatter->maximum().value_or(-1), 600.0);
        QCOMPARE(resolution->currentText(), QStringLiteral("300"));
        QCOMPARE(resolution->count(), 6);
    }

    void theRangesAreSetUpWhenATabIsMade() {
        std::unique_ptr<TwainView> feed(TwainView::create(QStringLiteral("TwainViewFeed")));
        auto* timeOut = qobject_cast<const TwainNumberFormatter*>(
            child<QLineEdit>(feed.get(), "txtTimeOut")->validator());
        QVERIFY(timeOut);
        QCOMPARE(timeOut->maximum().value_or(-1), 300.0);
        QCOMPARE(timeOut->format(), QStringLiteral("0"));
        auto* page =
            qobject_cast<const TwainNumberFormatter*>(child<QLineEdit>(feed.get(), "txtPage")->validator());
        QCOMPARE(page->minimum().value_or(-1), 1.0);
        QCOMPARE(page->maximum().value_or(-1), 254.0);

        std::unique_ptr<TwainView> common(TwainView::create(QStringLiteral("TwainViewCommon")));
        auto* shared = static_cast<TwainViewCommon*>(common.get())->pixelRationFormatter();
        QCOMPARE(child<QLineEdit>(common.get(), "txtPixelRation")->validator(), shared);
        QCOMPARE(shared->maximum().value_or(-1), 50.0);
        QCOMPARE(child<QLabel>(common.get(), "txtPixelRationMin")->text(), QStringLiteral("0.01"));
        QCOMPARE(child<QLabel>(common.get(), "txtPixelRationMax")->text(), QStringLiteral("50.00"));
        QCOMPARE(child<QSlider>(common.get(), "sldPixelRation")->maximum(), 5000);

        std::unique_ptr<TwainView> layout(TwainView::create(QStringLiteral("TwainViewLayout")));
        auto* ratio = qobject_cast<const TwainNumberFormatter*>(
            child<QLineEdit>(layout.get(), "txtPixelRation")->validator());
        QCOMPARE(ratio->minimum().value_or(-1), 0.01);
        QCOMPARE(ratio->maximum().value_or(-1), 5.0);
        QCOMPARE(child<QLabel>(layout.get(), "txtPixelRationMin")->text(), QStringLiteral("0.01"));
        QCOMPARE(child<QLabel>(layout.get(), "txtPixelRationMax")->text(), QStringLiteral("5.00"));
        QCOMPARE(child<QSlider>(layout.get(), "sldPixelRation")->maximum(), 500);

        for (const char* name : {"TwainViewBinaryImage", "TwainViewGrayImage", "TwainViewColorImage"}) {
            std::unique_ptr<TwainView> image(TwainView::create(QString::fromLatin1(name)));
            auto* contrast = qobject_cast<const TwainNumberFormatter*>(
                child<QLineEdit>(image.get(), "txtContrast")->validator());
            QVERIFY2(contrast, name);
            QCOMPARE(contrast->minimum().value_or(-1), 1.0);
            QCOMPARE(contrast->maximum().value_or(-1), 255.0);
            QCOMPARE(child<QSlider>(image.get(), "sldBrightness")->minimum(), 1);
            QCOMPARE(child<QSlider>(image.get(), "sldBrightness")->maximum(), 255);
        }
    }

    void theCommonTabNamesTheDistinctionByImageType() {
        QCOMPARE(TwainViewCommon::distinctionKey(22), "IDS_STR_MULTIRES_NEW");
        QCOMPARE(TwainViewCommon::distinctionKey(23), "IDS_STR_MULTIRES_NEW");
        QCOMPARE(TwainViewCommon::distinctionKey(21), "IDS_STR_AUTORES_NEW");
        QCOMPARE(TwainViewCommon::distinctionKey(0), "IDS_STR_AUTORES_NEW");
        QCOMPARE(TwainViewCommon::grayColorKey(22), "IDS_STR_GRAY");
        QCOMPARE(TwainViewCommon::grayColorKey(23), "IDS_STR_COLOR");

        auto ui = sample.load();
        std::unique_ptr<TwainView> common(TwainView::create(QStringLiteral("TwainViewCommon")));
        common->bindControlsToObject(ui->model().get());
        auto* box = child<QGroupBox>(common.get(), "boxDistinctionResolution");
        auto* grayColor = child<QLabel>(common.get(), "txtGrayColor");
        set(*ui, "Data.ImageType", TwValue(23));
        QCOMPARE(box->title(), QStringLiteral("Multi-Resolution Output"));
        QCOMPARE(grayColor->text(), QStringLiteral("Color"));
        set(*ui, "Data.ImageType", TwValue(22));
        QCOMPARE(box->title(), QStringLiteral("Multi-Resolution Output"));
        QCOMPARE(grayColor->text(), QStringLiteral("Gray"));
        set(*ui, "Data.ImageType", TwValue(2));
        QCOMPARE(box->title(), QStringLiteral("Automatic Distinction Resolution"));
        QCOMPARE(ui->dataForKeyPath("temp.GrayColor"), TwValue("Color"));
    }

    void theLayoutPicturesFollowThePageOrders() {
        for (int order = 0; order < 4; ++order) {
            QVERIFY(!TwainViewLayout::pageOrderIconPath(order, false).empty());
            QVERIFY(!TwainViewLayout::pageOrderIconPath(order, true).empty());
        }
        QCOMPARE(TwainViewLayout::pageOrderIconName(2, false), "TopBottomMk2");
        QCOMPARE(TwainViewLayout::pageOrderIconName(1, true), "DRightLeftMk2");
        QVERIFY(!TwainViewLayout::pageOrderIconName(4, false));
        QVERIFY(!TwainViewLayout::pageOrderIconName(-1, true));

        auto ui = sample.load();
        std::unique_ptr<TwainView> layout(TwainView::create(QStringLiteral("TwainViewLayout")));
        layout->bindControlsToObject(ui->model().get());
        auto* doubleExposure = child<TwImageView>(layout.get(), "imgDoubleExposure");
        auto* separation = child<TwImageView>(layout.get(), "imgPageSeparation");
        QVERIFY(ui->dataForKeyPath("image.DoubleExposure").stringValue().ends_with("/LeftRightMk2.ico"));
        QVERIFY(doubleExposure->hasImage());
        QVERIFY(separation->imagePath().endsWith(QStringLiteral("/DLeftRightMk2.ico")));
        QVERIFY(separation->hasImage());

        set(*ui, "Data.Layout.DoubleExposure.PageOrder", TwValue(3));
        QVERIFY(doubleExposure->imagePath().endsWith(QStringLiteral("/BottomTopMk2.ico")));
        QVERIFY(doubleExposure->hasImage());
        set(*ui, "Data.Layout.PageSeparation.PageOrder", TwValue(1));
        QVERIFY(separation->imagePath().endsWith(QStringLiteral("/DRightLeftMk2.ico")));
        // An order outside 0 to 3 clears the picture.
        set(*ui, "Data.Layout.DoubleExposure.PageOrder", TwValue(4));
        QVERIFY(ui->dataForKeyPath("image.DoubleExposure").isNull());
        QVERIFY(!doubleExposure->hasImage());
        QVERIFY(separation->hasImage());
    }

    void restackingSkipsHiddenRows() {
        TwainView view;
        QList<QWidget*> rows;
        for (int i = 0; i < 4; ++i) {
            auto* box = new QCheckBox(QStringLiteral("Row %1").arg(i), &view);
            box->move(7, 10 + 40 * i);
            rows << box;
        }
        view.adjustViews(rows, 10, 26.0);
        for (int i = 0; i < 4; ++i)
            QCOMPARE(rows[i]->pos(), QPoint(7, 10 + 26 * i));

        rows[1]->hide();
        view.adjustViews(rows, 10, 26.0);
        QCOMPARE(rows[0]->y(), 10);
        QCOMPARE(rows[2]->y(), 36);
        QCOMPARE(rows[3]->y(), 62);
        QCOMPARE(rows[1]->y(), 36); // a hidden row keeps its place

        // A null entry takes no line either.
        view.adjustViews({rows[0], nullptr, rows[3]}, 100, 20.0);
        QCOMPARE(rows[3]->y(), 120);
    }

    void restackingLeavesRowsOfALayoutAlone() {
        auto ui = sample.load();
        std::unique_ptr<TwainView> common(TwainView::create(QStringLiteral("TwainViewCommon")));
        common->resize(common->sizeHint());
        common->show();
        QVERIFY(QTest::qWaitForWindowExposed(common.get()));
        auto* mirror = child(common.get(), "btnMirror");
        const QPoint before = mirror->pos();
        common->adjustViews({child(common.get(), "btnBorderRemoval"), mirror}, 0, 5.0);
        QCOMPARE(mirror->pos(), before);

        // The layout itself closes the gap of a row the scanner hides.
        common->bindControlsToObject(ui->model().get());
        QApplication::processEvents();
        auto* margin = child(common.get(), "btnMargin");
        auto* length = child(common.get(), "btnLengthControl");
        QVERIFY(child(common.get(), "btnFitToPage")->isHidden());
        QVERIFY(length->y() - margin->y() < 2 * margin->height());
    }

    // ---- Pictures ----

    void picturesOfEveryBoundTab() {
        const QString dir = qEnvironmentVariable("VMX_TAB_SHOTS");
        auto ui = sample.load();
        set(*ui, "Data.PaperSource", TwValue(1));
        for (const QString& name : TwainView::classNames()) {
            std::unique_ptr<TwainView> tab(TwainView::create(name));
            tab->bindControlsToObject(ui->model().get());
            tab->resize(tab->sizeHint().expandedTo(QSize(560, 420)));
            tab->show();
            QVERIFY(QTest::qWaitForWindowExposed(tab.get()));
            const QImage image = tab->grab().toImage();
            QVERIFY2(!image.isNull(), qPrintable(name));
            if (!dir.isEmpty())
                QVERIFY(image.save(QDir(dir).filePath(name + QStringLiteral(".png"))));
            // No control of a bound tab is cut off at the tab's edge.
            const auto widgets = tab->findChildren<QWidget*>();
            for (QWidget* w : widgets) {
                if (!w->isVisible() || w->objectName().isEmpty() ||
                    w->objectName().startsWith(QLatin1String("qt_")))
                    continue;
                const QRect r(w->mapTo(tab.get(), QPoint(0, 0)), w->size());
                QVERIFY2(tab->rect().contains(r), qPrintable(name + QLatin1Char('.') + w->objectName()));
            }
        }

        // The Area tab once more, in inches with the back side shown.
        std::unique_ptr<TwainView> area(TwainView::create(QStringLiteral("TwainViewArea")));
        area->bindControlsToObject(ui->model().get());
        set(*ui, "Data.Area.Unit", TwValue(0));
        set(*ui, "temp.Area.Side", TwValue(1));
        set(*ui, "Data.Area.Back.L2.Enable", TwValue(true));
        area->resize(area->sizeHint());
        area->show();
        QVERIFY(QTest::qWaitForWindowExposed(area.get()));
        QCOMPARE(child<QLineEdit>(area.get(), "txtBackWidth2")->text(), QStringLiteral("1.97"));
        QVERIFY(child(area.get(), "txtBackWidth2")->isVisible());
        QVERIFY(!child(area.get(), "txtFrontWidth2")->isVisible());
        if (!dir.isEmpty())
            QVERIFY(area->grab().save(QDir(dir).filePath(QStringLiteral("TwainViewArea-back-inches.png"))));
    }
};

QTEST_MAIN(TestTabs)
#include "tst_tabs.moc"
