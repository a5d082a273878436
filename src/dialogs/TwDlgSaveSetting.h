// The name dialog: asks for the name under which a setting (type 0) or a custom gamma (type 1) is
// saved, offering the existing names to pick from. OK checks the name and stays open, with a
// message, until it is acceptable:
// - blank names and names longer than the type allows (50 for settings, 32 for gammas, counted on
//   the text without surrounding blanks) are refused;
// - a setting name may not be the untitled setting's name in any letter case, and an existing one
//   in any letter case is replaced only after a question;
// - a gamma name that is in the list is replaced only after a question, and only when the caller
//   asked for the check (setCheckOverwrite); gamma names compare exactly.
// An accepted name is the text as typed, letter case and all, without surrounding blanks.
#pragma once

#include "TwPanel.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>

class QComboBox;
class QLabel;
class QPushButton;
namespace Ui {
class TwDlgSaveSetting;
}

class TwDlgSaveSetting : public TwPanel {
    Q_OBJECT
public:
    enum Type : std::uint32_t { SettingName = 0, GammaName = 1 };

    explicit TwDlgSaveSetting(QWidget* parent = nullptr);
    ~TwDlgSaveSetting() override;

    // Type 0: a setting, longest name 50; type 1: a custom gamma, longest name 32; other types:
    // no title and prompt, the longest name as it was. Texts come from the string tables.
    void setType(std::uint32_t type);
    std::uint32_t type() const { return m_type; }
    // For gamma names: ask before a name of the list is replaced.
    void setCheckOverwrite(bool check) { m_checkOverwrite = check; }
    bool checkOverwrite() const { return m_checkOverwrite; }
    std::uint32_t maxNameLength() const { return max_namelength; }

    // The existing names offered in the combo box.
    void setNameList(const QStringList& names);
    QStringList nameList();
    // The name in the combo box; after acceptance the checked name.
    void setName(const QString& name);
    QString name();

    void bindControlAll() override;

    // The settings the user saves by name. saveSetting asks a name and stores the current setting
    // under it (refused with a message for a blank name, or a new one past the 50 saved);
    // deleteSetting deletes the current saved setting after asking (the temporary one is refused).
    static constexpr int kMaxProfiles = 50;
    void saveSetting();
    void deleteSetting();

    QLabel* labTitle() const;
    QComboBox* cmbNames() const;
    QPushButton* btnOK() const;
    QPushButton* btnCancel() const;

public slots:
    // Accepts (returnCode 1, closed) when the name passes the checks; otherwise says why and stays.
    void onOK();
    void onCancel();

private:
    bool settingNameAccepted(const QString& text);
    bool gammaNameAccepted(const QString& text);
    // The string-table format of the key filled with one argument.
    QString formatted(const char* key, const QString& argument) const;

    std::unique_ptr<Ui::TwDlgSaveSetting> ui;
    std::uint32_t m_type = SettingName;
    bool m_checkOverwrite = false;
    std::uint32_t max_namelength = 32;
};
