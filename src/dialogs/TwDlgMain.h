// The main settings panel: the setting-name list, the command buttons and the tab view whose pages
// are the setting tabs. Which tabs appear, and under which label, is the scanner model's choice
// ("ModelDef.UIControl.MainDialog.<identifier>": "hidden", "localizedText"), read each time the
// panel is bound; a tab removed at one showing is back for the next one.
#pragma once

#include "TwPanel.h"

#include <QPointer>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class QAbstractButton;
class QComboBox;
class QPushButton;
class QTabWidget;
class TwainView;
namespace Ui {
class TwDlgMain;
}

class TwDlgMain : public TwPanel {
    Q_OBJECT
public:
    explicit TwDlgMain(QWidget* parent = nullptr);
    ~TwDlgMain() override;

    // The setting tabs that take part, in the order they are shown.
    static const QStringList& tabClassNames();

    void bindControlAll() override;
    void unbindControlAll() override;
    bool windowShouldClose() override;
    // Settings-only mode: OK enabled and Scan disabled; otherwise the reverse.
    void setUIOnly(bool flag);
    void setTitle(const QString& title);

    // Outlets.
    QComboBox* cmbSettingNames() const;
    QPushButton* btnOK() const;
    QPushButton* btnSave() const;
    QPushButton* btnDelete() const;
    QPushButton* btnStart() const;
    QPushButton* btnDefault() const;
    QPushButton* btnPrescan() const;
    QPushButton* btnCancel() const;
    QPushButton* btnHelp() const;
    QPushButton* btnAbout() const;
    QPushButton* btnCustomize() const;
    QTabWidget* tableMain() const;
    // Where the bottom row of command buttons is, in screen coordinates.
    QRect buttonRow() const;
    // The setting view of a tab identifier ("Basic", ...), or null.
    TwainView* view(const QString& identifier) const;
    // The identifiers of the tab pages now in the tab view, in order.
    QStringList tabIdentifiers() const;

private:
    struct Tab {
        QString identifier;
        QString label; // the form's own label
        QPointer<QWidget> page;
        QPointer<TwainView> view;
    };
    void rebuildTabs();
    void unbindViews();

    std::unique_ptr<Ui::TwDlgMain> ui;
    std::vector<Tab> m_tabs;
};
