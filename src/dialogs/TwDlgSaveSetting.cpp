#include "TwDlgSaveSetting.h"

#include "OrvaDebug.h"
#include "TwEditCommit.h"
#include "TwFormPreparation.h"
#include "TwResponderBinding.h"
#include "TwStrings.h"
#include "TwainDialogData.h"
#include "VmxUI.h"
#include "ui_TwDlgSaveSetting.h"

#include <QComboBox>

namespace {
constexpr const char* kName = "name";
constexpr const char* kNameList = "nameList";
constexpr std::uint32_t kSettingNameLength = 50;
constexpr std::uint32_t kGammaNameLength = 32;
constexpr std::uint32_t kCautionOK = 0x20001;
constexpr std::uint32_t kQuestionOKCancel = 0x40002;
} // namespace

TwDlgSaveSetting::TwDlgSaveSetting(QWidget* parent)
    : TwPanel(parent), ui(std::make_unique<Ui::TwDlgSaveSetting>()) {
    ui->setupUi(this);
    TwPrepareForm(this);
    // A completer would turn a typed name into the letter case of a listed one.
    ui->cmbNames->setCompleter(nullptr);
    ownValues().setValueForKeyPathWithoutNotification(TwValue(""), kName);
    ownValues().setValueForKeyPathWithoutNotification(TwValue::array(), kNameList);
    connectActions(this);
}

TwDlgSaveSetting::~TwDlgSaveSetting() = default;

QLabel* TwDlgSaveSetting::labTitle() const {
    return ui->labTitle;
}
QComboBox* TwDlgSaveSetting::cmbNames() const {
    return ui->cmbNames;
}
QPushButton* TwDlgSaveSetting::btnOK() const {
    return ui->btnOK;
}
QPushButton* TwDlgSaveSetting::btnCancel() const {
    return ui->btnCancel;
}

void TwDlgSaveSetting::setType(std::uint32_t type) {
    m_type = type;
    const char* caption = nullptr;
    const char* prompt = nullptr;
    if (type == SettingName) {
        caption = "IDS_CAPTION_SAVESETTING";
        prompt = "IDS_TITLE_SETTING_NAME";
        max_namelength = kSettingNameLength;
    } else if (type == GammaName) {
        caption = "IDS_CAPTION_SAVEAS";
        prompt = "IDS_TITLE_GAMMA_NAME";
        max_namelength = kGammaNameLength;
    }
    setWindowTitle(caption ? localizedString(QLatin1String(caption)) : QString());
    ui->labTitle->setText(prompt ? localizedString(QLatin1String(prompt)) : QString());
}

void TwDlgSaveSetting::setNameList(const QStringList& names) {
    auto list = TwValue::array();
    for (const QString& n : names)
        list.list()->push_back(TwValue(n.toStdString()));
    ownValues().setValueForKeyPath(list, kNameList);
}

QStringList TwDlgSaveSetting::nameList() {
    QStringList names;
    if (auto list = ownValues().valueForKeyPath(kNameList).list())
        for (auto& n : *list)
            names << QString::fromStdString(n.stringValue());
    return names;
}

void TwDlgSaveSetting::setName(const QString& name) {
    ownValues().setValueForKeyPath(TwValue(name.toStdString()), kName);
}

QString TwDlgSaveSetting::name() {
    return QString::fromStdString(ownValues().valueForKeyPath(kName).stringValue());
}

void TwDlgSaveSetting::bindControlAll() {
    TwPanel::bindControlAll();
    responderBinding()->bindContentValues(ui->cmbNames, &ownValues(), kNameList);
    responderBinding()->bindValue(ui->cmbNames, &ownValues(), kName);
    ui->cmbNames->setFocus();
}

QString TwDlgSaveSetting::formatted(const char* key, const QString& argument) const {
    return QString::fromStdString(
        TwFormatString(localizedString(QLatin1String(key)).toStdString(), {argument.toStdString()}));
}

void TwDlgSaveSetting::onOK() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwDlgSaveSetting::onOK");
    if (!TwEndEditing(this))
        return;
    const QString text = ui->cmbNames->currentText().trimmed();
    if (text.isEmpty()) {
        showMessageBox(localizedString(QStringLiteral("IDS_MSG_INPUT_NAME")), kCautionOK);
        return;
    }
    if (std::uint32_t(text.size()) > max_namelength) {
        showMessageBox(formatted("IDS_ERR_MAXNAMEFORMAT", QString::number(max_namelength)), kCautionOK);
        return;
    }
    bool accepted = true;
    if (m_type == SettingName)
        accepted = settingNameAccepted(text);
    else if (m_type == GammaName)
        accepted = gammaNameAccepted(text);
    if (!accepted)
        return;
    // What was checked is what the caller gets.
    ownValues().changeValue(TwValue(text.toStdString()), kName);
    setReturnCode(1);
    close();
}

bool TwDlgSaveSetting::settingNameAccepted(const QString& text) {
    TwainDialogData* model = dialogData();
    if (!model)
        return true;
    const std::string name = text.toStdString();
    TwValue temporary = model->valueForKeyPath("profiles.temporary");
    if (temporary.isString() && TwEqualsIgnoringCase(*temporary.str(), name)) {
        showMessageBox(localizedString(QStringLiteral("IDS_PROFILE_SAVE_SAMASTEMP")), kCautionOK);
        return false;
    }
    // The model replaces a setting whose name differs only in letter case: ask first.
    if (model->IsProfileExist(name))
        return showMessageBox(formatted("IDS_PROFILE_OVERWRITE", text), kQuestionOKCancel) !=
               kVmxAnswerCancel;
    return true;
}

bool TwDlgSaveSetting::gammaNameAccepted(const QString& text) {
    if (!m_checkOverwrite || !nameList().contains(text))
        return true;
    return showMessageBox(formatted("IDS_STR_OVERWRITE", text), kQuestionOKCancel) != kVmxAnswerCancel;
}

void TwDlgSaveSetting::onCancel() {
    if (!TwEndEditing(this))
        return;
    close();
}

void TwDlgSaveSetting::saveSetting() {
    TwainDialogData* model = dialogData();
    if (!model)
        return;
    QStringList names;
    TwValue profiles = model->customProfiles();
    if (auto list = profiles.list()) {
        for (auto& profile : *list) {
            TwValue name = profile.dict() ? profile.dict()->value("ProfileName") : TwValue();
            names << QString::fromStdString(name.isString() ? *name.str() : name.description());
        }
    }
    setType(SettingName);
    setCheckOverwrite(true);
    setNameList(names);
    setName(QString());
    if (runModal() != 1)
        return;
    const QString chosen = name().trimmed();
    if (chosen.isEmpty()) {
        showMessageBox(localizedString(QStringLiteral("IDS_MSG_INPUT_NAME")), 0x20001);
        return;
    }
    if (model->ProfileCount() >= kMaxProfiles && !model->IsProfileExist(chosen.toStdString())) {
        showMessageBox(localizedString(QStringLiteral("IDS_ERR_OVERSAVESETTINGS")), 0x20001);
        return;
    }
    model->AddCustomProfile(chosen.toStdString());
}

void TwDlgSaveSetting::deleteSetting() {
    TwainDialogData* model = dialogData();
    if (!model)
        return;
    TwValue current = model->valueForKeyPath("profiles.name");
    TwValue temporary = model->valueForKeyPath("profiles.temporary");
    if (current.isEqual(temporary)) {
        showMessageBox(localizedString(QStringLiteral("IDS_PROFILE_DEL_TEMP")), 0x20001);
        return;
    }
    if (!current.isString() || !model->IsProfileExist(*current.str())) {
        OrvaLog(kOrvaLogError, "ERROR: %s: '%s' is not a saved setting; nothing to delete\n",
                "TwDlgSaveSetting::deleteSetting", current.description().c_str());
        return;
    }
    const QString text = QString::fromStdString(*current.str());
    if (showMessageBox(formatted("IDS_PROFILE_DEL_CONFIRM", text), 0x40002) == kVmxAnswerCancel)
        return;
    model->deleteCustomProfile(text.toStdString());
}
