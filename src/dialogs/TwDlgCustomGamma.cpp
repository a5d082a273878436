#include "TwDlgCustomGamma.h"

#include "TwStrings.h"

#include "OrvaDebug.h"
#include "TwDlgSaveSetting.h"
#include "TwEditCommit.h"
#include "TwFormPreparation.h"
#include "TwGammaViews.h"
#include "TwPanelHost.h"
#include "TwRangeHelpers.h"
#include "TwResponderBinding.h"
#include "TwainDialogData.h"
#include "ui_TwDlgCustomGamma.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace {
constexpr const char* kChannels[] = {"Red", "Green", "Blue"};
// What a load announces, in this order.
constexpr const char* kLoadedKeys[] = {"fGammaRed",  "fGammaGreen", "fGammaBlue",
                                       "nClipBlack", "nClipWhite",  "RGBLink"};
// The keys the dialog reacts to.
constexpr const char* kObservedKeys[] = {"currentGammaName", "nGammaRed",   "nGammaGreen", "nGammaBlue",
                                         "fGammaRed",        "fGammaGreen", "fGammaBlue",  "RGBLink",
                                         "nClipBlack",       "nClipWhite"};
// A change beyond this is a new gamma.
constexpr double kGammaEpsilon = 0.001;

bool isBlank(const QString& text) {
    return text.trimmed().isEmpty();
}

bool startsWith(std::string_view s, std::string_view prefix) {
    return s.substr(0, prefix.size()) == prefix;
}

// A stored gamma, limited to the range; a record without a number gives 1.0 (logged).
double gammaOf(const TwDictionary& record, const char* key) {
    const TwValue v = record.value(key);
    if (!v.isNumber() && !v.isString()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: the preset has no %s; 1.0 is used\n",
                "TwDlgCustomGamma::setDataFromSetting", key);
        return 1.0;
    }
    const double g = v.doubleValue();
    return std::isnan(g) ? 1.0 : std::clamp(g, kTwGammaMin, kTwGammaMax);
}

// A stored clip point as an unsigned byte; a record without one gives the fallback.
int clipOf(const TwDictionary& record, const char* key, int fallback) {
    const TwValue v = record.value(key);
    if (!v.isNumber() && !v.isString())
        return fallback;
    return int(std::uint8_t(v.longLongValue()));
}
} // namespace

TwDlgCustomGamma::TwDlgCustomGamma(QWidget* parent)
    : TwPanel(parent), ui(std::make_unique<Ui::TwDlgCustomGamma>()) {
    const std::pair<const char*, TwValue> start[] = {
        {"nGammaRed", 40},   {"nGammaGreen", 40},      {"nGammaBlue", 40},
        {"fGammaRed", 1.0},  {"fGammaGreen", 1.0},     {"fGammaBlue", 1.0},
        {"RGBLink", false},  {"enableGB", true},       {"nClipBlack", 0},
        {"nClipWhite", 255}, {"currentGammaName", ""}, {"gammaNames", TwValue::array()}};
    for (const auto& [key, value] : start)
        ownValues().setValueForKeyPathWithoutNotification(value, key);
    ui->setupUi(this);
    TwPrepareForm(this);
    ui->cmbSettingName->setCompleter(nullptr);
    for (const char* channel : kChannels) {
        SetSliderRange(slider((std::string("sldGamma") + channel).c_str()), 0, kTwGammaSliderMax, 0);
        SetTextRange(field((std::string("txtGamma") + channel).c_str()), 20, 500, 2);
    }
    SetTextRange(ui->txtClipBlack, ui->sldClipBlack->minimum(), ui->sldClipBlack->maximum(), 0);
    SetTextRange(ui->txtClipWhite, ui->sldClipWhite->minimum(), ui->sldClipWhite->maximum(), 0);
    m_tables.red = m_tables.green = m_tables.blue = TwIdentityGammaTable();
    ui->viewGamma->setTables(&m_tables);
    ui->viewSample->setTables(&m_tables);
    connectActions(this);
}

TwDlgCustomGamma::~TwDlgCustomGamma() {
    unbindControlAll();
}

void TwDlgCustomGamma::setCurrentGammaName(const std::optional<QString>& name) {
    ownValues().setValueForKeyPath(name ? name->toStdString() : std::string(), "currentGammaName");
}

std::optional<QString> TwDlgCustomGamma::currentGammaName() {
    const TwValue name = ownValues().valueForKeyPath("currentGammaName");
    if (!name.isString() || name.str()->empty())
        return std::nullopt;
    return QString::fromStdString(*name.str());
}

// ---- Running -----------------------------------------------------------------------------------

void TwDlgCustomGamma::editGammaOf(int kind) {
    static const char* const keyPaths[] = {"temp.BinaryImage.Gamma", "temp.GrayImage.Gamma",
                                           "temp.ColorImage.Gamma"};
    TwainDialogData* model = dialogData();
    if (kind < 0 || kind > 2 || !model)
        return;
    const std::string keyPath = keyPaths[kind];
    setIsColor(kind == 2);
    const TwValue current = model->valueForKeyPath(keyPath);
    setCurrentGammaName(current.isString() ? std::optional<QString>(QString::fromStdString(*current.str()))
                                           : std::nullopt);
    center();
    runModal();
    if (auto name = currentGammaName()) {
        model->willChangeValueForKey(keyPath);
        model->setValueForKeyPath(TwValue(name->toStdString()), keyPath);
        model->didChangeValueForKey(keyPath);
        model->validateGammaValues();
    }
}

int TwDlgCustomGamma::runModal() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "TwDlgCustomGamma::runModal", m_isColor ? "color" : "gray");
    ui->labGammaRed->setText(localizedString(QLatin1String(m_isColor ? "IDS_TITLE_RED" : "IDS_TITLE_BLACK")));
    for (QWidget* w : std::initializer_list<QWidget*>{ui->labGammaGreen, ui->sldGammaGreen, ui->txtGammaGreen,
                                                      ui->labGammaBlue, ui->sldGammaBlue, ui->txtGammaBlue,
                                                      ui->btnRGBLink})
        w->setVisible(m_isColor);
    ui->viewSample->setMonochrome(!m_isColor);
    const int result = TwPanel::runModal();
    if (auto name = currentGammaName(); name && isBlank(*name))
        setCurrentGammaName(std::nullopt);
    return result;
}

void TwDlgCustomGamma::reloadGammaNames() {
    auto names = TwValue::array();
    if (TwainDialogData* model = dialogData())
        for (const std::string& name : model->customGammaNamesWithColor(m_isColor))
            names.list()->push_back(name);
    // The list is never empty: a single blank stands for none.
    if (names.list()->empty())
        names.list()->push_back(" ");
    ownValues().setValueForKeyPath(names, "gammaNames");
}

void TwDlgCustomGamma::bindControlAll() {
    TwPanel::bindControlAll();
    reloadGammaNames();
    TwResponderBinding* binding = responderBinding();
    // A name is taken when picked or when its typing ends, not at every keystroke.
    const TwBindingOptions onEndEditing{false};
    binding->bindContentValues(ui->cmbSettingName, &ownValues(), "gammaNames");
    binding->bind("value", ui->cmbSettingName, &ownValues(), "currentGammaName", onEndEditing);
    for (const char* channel : kChannels) {
        const std::string name(channel);
        binding->bindValue(slider(("sldGamma" + name).c_str()), &ownValues(), "nGamma" + name);
        binding->bind("value", field(("txtGamma" + name).c_str()), &ownValues(), "fGamma" + name,
                      onEndEditing);
    }
    binding->bindValue(ui->btnRGBLink, &ownValues(), "RGBLink");
    for (QWidget* w : std::initializer_list<QWidget*>{ui->labGammaGreen, ui->sldGammaGreen, ui->txtGammaGreen,
                                                      ui->labGammaBlue, ui->sldGammaBlue, ui->txtGammaBlue})
        binding->bindEnabled(w, &ownValues(), "enableGB");
    binding->bindValue(ui->sldClipBlack, &ownValues(), "nClipBlack");
    binding->bind("value", ui->txtClipBlack, &ownValues(), "nClipBlack", onEndEditing);
    binding->bindValue(ui->sldClipWhite, &ownValues(), "nClipWhite");
    binding->bind("value", ui->txtClipWhite, &ownValues(), "nClipWhite", onEndEditing);
    for (const char* key : kObservedKeys)
        binding->addResponderObserver(&ownValues(), key);

    const std::optional<QString> name = currentGammaName();
    setDataFromSetting(name.value_or(QString()), true);
    makeTables();
    redisplay();
    RefreshBtnDeleteStatus();
    m_isChanged = false;
}

// ---- Reactions ---------------------------------------------------------------------------------

void TwDlgCustomGamma::observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                              const TwKeyValueChange&, void*) {
    if (object != &ownValues())
        return;
    m_isChanged = true;
    if (keyPath == "currentGammaName") {
        const QString name = currentGammaName().value_or(QString());
        TwValue names = ownValues().valueForKeyPath("gammaNames");
        if (!isBlank(name) && names.list() && names.list()->size() > 2 &&
            names.list()->front().isEqual(TwValue(" "))) {
            TwValue rest = names.deepCopy();
            rest.list()->erase(rest.list()->begin());
            ownValues().setValueForKeyPath(rest, "gammaNames");
        }
        setDataFromSetting(name, false);
        // Picking a preset is no edit.
        m_isChanged = false;
        return;
    }
    if (startsWith(keyPath, "nGamma")) {
        const std::string channel = keyPath.substr(6);
        const double gamma = TwGammaFromSliderPosition(ownValues().valueForKeyPath(keyPath).intValue());
        const std::string gammaKey = "fGamma" + channel;
        if (std::fabs(gamma - ownValues().valueForKeyPath(gammaKey).doubleValue()) > kGammaEpsilon)
            ownValues().setValueForKeyPath(gamma, gammaKey);
        return;
    }
    if (startsWith(keyPath, "fGamma")) {
        const std::string sliderKey = "nGamma" + keyPath.substr(6);
        const int position = TwSliderPositionFromGamma(ownValues().valueForKeyPath(keyPath).doubleValue());
        if (position != ownValues().valueForKeyPath(sliderKey).intValue())
            ownValues().setValueForKeyPath(position, sliderKey);
        if (keyPath == "fGammaRed" && ownValues().valueForKeyPath("RGBLink").boolValue())
            copyRedToGreenAndBlue();
    } else if (keyPath == "RGBLink") {
        const bool linked = ownValues().valueForKeyPath("RGBLink").boolValue();
        ownValues().changeValue(!linked, "enableGB");
        if (linked)
            copyRedToGreenAndBlue();
    } else if (keyPath != "nClipBlack" && keyPath != "nClipWhite") {
        return;
    }
    makeTables();
    redisplay();
}

void TwDlgCustomGamma::copyRedToGreenAndBlue() {
    const TwValue red = ownValues().valueForKeyPath("nGammaRed");
    for (const char* key : {"nGammaGreen", "nGammaBlue"}) {
        ownValues().willChangeValueForKey(key);
        ownValues().setValueForKeyPathWithoutNotification(red, key);
        ownValues().didChangeValueForKey(key);
    }
}

void TwDlgCustomGamma::makeTables() {
    // Only the low byte of a clip point reaches the tables.
    const auto black = std::uint8_t(ownValues().valueForKeyPath("nClipBlack").longLongValue());
    const auto white = std::uint8_t(ownValues().valueForKeyPath("nClipWhite").longLongValue());
    makeGammaData(m_tables.red, black, white, ownValues().valueForKeyPath("fGammaRed").doubleValue());
    if (m_isColor) {
        makeGammaData(m_tables.green, black, white, ownValues().valueForKeyPath("fGammaGreen").doubleValue());
        makeGammaData(m_tables.blue, black, white, ownValues().valueForKeyPath("fGammaBlue").doubleValue());
    } else {
        m_tables.green = m_tables.blue = m_tables.red;
    }
}

void TwDlgCustomGamma::redisplay() {
    ui->viewGamma->update();
    ui->viewSample->update();
}

void TwDlgCustomGamma::setDataFromSetting(const QString& name, bool isInit) {
    TwainDialogData* model = dialogData();
    const TwValue record =
        model && !name.isEmpty() ? model->customGamme(name.toStdString(), m_isColor) : TwValue();
    for (const char* key : kLoadedKeys)
        ownValues().willChangeValueForKey(key);
    const auto set = [this](const TwValue& v, const char* key) {
        ownValues().setValueForKeyPathWithoutNotification(v, key);
    };
    if (const TwDictionary* d = record.dict()) {
        if (m_isColor) {
            set(gammaOf(*d, "Red"), "fGammaRed");
            set(gammaOf(*d, "Green"), "fGammaGreen");
            set(gammaOf(*d, "Blue"), "fGammaBlue");
            set(d->value("RGBLink").boolValue(), "RGBLink");
        } else {
            const double black = gammaOf(*d, "Black");
            set(black, "fGammaRed");
            set(black, "fGammaGreen");
            set(black, "fGammaBlue");
            set(true, "RGBLink");
        }
        set(clipOf(*d, "ClipBlack", 0), "nClipBlack");
        set(clipOf(*d, "ClipWhite", 255), "nClipWhite");
    } else if (isInit) {
        for (const char* key : {"fGammaRed", "fGammaGreen", "fGammaBlue"})
            set(1.0, key);
        set(!m_isColor, "RGBLink");
        set(0, "nClipBlack");
        set(255, "nClipWhite");
    } else if (!record.isNull()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: the preset %s is no dictionary; nothing is loaded\n",
                "TwDlgCustomGamma::setDataFromSetting", name.toUtf8().constData());
    }
    for (const char* key : kLoadedKeys)
        ownValues().didChangeValueForKey(key);
}

TwValue TwDlgCustomGamma::presetRecord() {
    const auto gamma = [this](const char* key) {
        return float(ownValues().valueForKeyPath(key).doubleValue());
    };
    const long long black = ownValues().valueForKeyPath("nClipBlack").longLongValue();
    const long long white = ownValues().valueForKeyPath("nClipWhite").longLongValue();
    if (m_isColor)
        return TwValue::dictionary({{"Red", gamma("fGammaRed")},
                                    {"Green", gamma("fGammaGreen")},
                                    {"Blue", gamma("fGammaBlue")},
                                    {"RGBLink", ownValues().valueForKeyPath("RGBLink").boolValue()},
                                    {"ClipBlack", black},
                                    {"ClipWhite", white}});
    return TwValue::dictionary({{"Black", gamma("fGammaRed")}, {"ClipBlack", black}, {"ClipWhite", white}});
}

// ---- Actions -----------------------------------------------------------------------------------

void TwDlgCustomGamma::saveGamma(bool inPlace) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%d)\n", "TwDlgCustomGamma::saveGamma", int(inPlace));
    TwainDialogData* model = dialogData();
    if (!model)
        return;
    QStringList names;
    for (const std::string& n : model->customGammaNamesWithColor(m_isColor))
        names << QString::fromStdString(n);
    const QString proposed = inPlace ? currentGammaName().value_or(QString()).trimmed() : QString();
    if (!m_nameDialog) {
        m_nameDialog = new TwDlgSaveSetting(this);
        m_nameDialog->setPanelHost(panelHost());
    }
    TwDlgSaveSetting* nameDialog = m_nameDialog;
    nameDialog->setType(TwDlgSaveSetting::GammaName);
    nameDialog->setCheckOverwrite(!inPlace);
    nameDialog->setNameList(names);
    nameDialog->setName(proposed);
    if (nameDialog->runModal() != 1)
        return;
    const QString name = nameDialog->name().trimmed();
    const std::string key = name.toStdString();
    if (model->customGamme(key, m_isColor).isNull() && int(names.size()) >= kMaxPresets) {
        showMessageBox(localizedString(QStringLiteral("IDS_ERR_OVERSAVESETTINGS")), 0x20001);
        return;
    }
    model->setCustomGamme(key, m_isColor, presetRecord());
    model->saveCustomGamma();
    reloadGammaNames();
    ownValues().setValueForKeyPath(key, "currentGammaName");
    m_isChanged = false;
}

void TwDlgCustomGamma::onSaveAs() {
    if (!TwEndEditing(this))
        return;
    saveGamma(false);
    RefreshBtnDeleteStatus();
}

bool TwDlgCustomGamma::windowShouldClose() {
    if (!TwEndEditing(this))
        return false;
    if (m_isChanged)
        saveGamma(true);
    return true;
}

void TwDlgCustomGamma::onClose() {
    performClose();
}

void TwDlgCustomGamma::onDelete() {
    const std::optional<QString> name = currentGammaName();
    TwainDialogData* model = dialogData();
    if (!name || isBlank(*name) || !panelHost() || !model)
        return;
    // The first sentence names the preset: in its "%@" where the table gives one, else after it.
    const QString sentence = localizedString(QStringLiteral("IDS_MSG_SETTING"));
    const QString named =
        sentence.contains(QLatin1String("%@"))
            ? QString::fromStdString(TwFormatString(sentence.toStdString(), {name->toStdString()}))
            : sentence + QStringLiteral(" \u201C") + *name + QStringLiteral("\u201D");
    const QString question = named + QLatin1Char('\n') + localizedString(QStringLiteral("IDS_MSG_DELETE"));
    if (panelHost()->showMessageBox(question, windowTitle(), 0x40002) != kVmxAnswerOK)
        return;
    const std::string menuKey = m_isColor ? "content.Color" : "content.Gray";
    model->willChangeValueForKey(menuKey);
    model->deleteCustomGamme(name->toStdString(), m_isColor);
    model->didChangeValueForKey(menuKey);
    reloadGammaNames();
    ownValues().setValueForKeyPath(ownValues().valueForKeyPath("gammaNames").list()->front(),
                                   "currentGammaName");
    RefreshBtnDeleteStatus();
}

void TwDlgCustomGamma::RefreshBtnDeleteStatus() {
    bool any = false;
    if (const TwArray* names = ownValues().valueForKeyPath("gammaNames").list())
        any = std::any_of(names->begin(), names->end(),
                          [](const TwValue& n) { return !isBlank(QString::fromStdString(n.stringValue())); });
    ui->btnDelete->setEnabled(any);
}

// ---- Outlets -----------------------------------------------------------------------------------

QComboBox* TwDlgCustomGamma::cmbSettingName() const {
    return ui->cmbSettingName;
}
QPushButton* TwDlgCustomGamma::btnSaveAs() const {
    return ui->btnSaveAs;
}
QPushButton* TwDlgCustomGamma::btnDelete() const {
    return ui->btnDelete;
}
QPushButton* TwDlgCustomGamma::btnClose() const {
    return ui->btnClose;
}
QCheckBox* TwDlgCustomGamma::btnRGBLink() const {
    return ui->btnRGBLink;
}
QSlider* TwDlgCustomGamma::slider(const char* name) const {
    return findChild<QSlider*>(QString::fromLatin1(name));
}
QLineEdit* TwDlgCustomGamma::field(const char* name) const {
    return findChild<QLineEdit*>(QString::fromLatin1(name));
}
QLabel* TwDlgCustomGamma::labGammaRed() const {
    return ui->labGammaRed;
}
TwGammaTableView* TwDlgCustomGamma::viewGamma() const {
    return ui->viewGamma;
}
TwGammaSampleView* TwDlgCustomGamma::viewSample() const {
    return ui->viewSample;
}
