#include "TwDlgMain.h"

#include "OrvaDebug.h"
#include "TwFormPreparation.h"
#include "TwKeyboard.h"
#include "TwPanelHost.h"
#include "TwResponderBinding.h"
#include "TwainDialogData.h"
#include "TwainView.h"
#include "ui_TwDlgMain.h"

#include <QAbstractButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include <exception>

namespace {
QString withoutPrefix(const QString& className) {
    return className.startsWith(QLatin1String("TwainView")) ? className.mid(9) : className;
}
} // namespace

const QStringList& TwDlgMain::tabClassNames() {
    static const QStringList names = TwainView::classNames(true);
    return names;
}

TwDlgMain::TwDlgMain(QWidget* parent) : TwPanel(parent), ui(std::make_unique<Ui::TwDlgMain>()) {
    ui->setupUi(this);
    TwPrepareForm(this);
    // Names are picked from the list, not completed as typed; Qt 6.4's completer also keeps a
    // little memory each time the panel is shown.
    ui->cmbSettingNames->setCompleter(nullptr);
    for (const QString& className : tabClassNames()) {
        Tab tab;
        tab.view = TwainView::create(className, this);
        tab.identifier = tab.view ? tab.view->identifier() : withoutPrefix(className);
        if (tab.view) {
            tab.label = tab.view->windowTitle();
            tab.view->hide();
        } else {
            OrvaLog(kOrvaLogError, "TwDlgMain ERROR: no setting view %s\n", className.toUtf8().constData());
            tab.label = tab.identifier;
        }
        if (tab.label.isEmpty())
            tab.label = tab.identifier;
        auto* page = new QWidget(this);
        page->setObjectName(QStringLiteral("tab") + tab.identifier);
        page->setProperty("identifier", tab.identifier);
        auto* layout = new QVBoxLayout(page);
        layout->setContentsMargins(0, 0, 0, 0);
        page->hide();
        tab.page = page;
        m_tabs.push_back(tab);
    }
    rebuildTabs();
}

TwDlgMain::~TwDlgMain() {
    unbindViews();
}

QComboBox* TwDlgMain::cmbSettingNames() const {
    return ui->cmbSettingNames;
}
QPushButton* TwDlgMain::btnOK() const {
    return ui->btnOK;
}
QPushButton* TwDlgMain::btnSave() const {
    return ui->btnSave;
}
QPushButton* TwDlgMain::btnDelete() const {
    return ui->btnDelete;
}
QPushButton* TwDlgMain::btnStart() const {
    return ui->btnStart;
}
QPushButton* TwDlgMain::btnDefault() const {
    return ui->btnDefault;
}
QPushButton* TwDlgMain::btnPrescan() const {
    return ui->btnPrescan;
}
QPushButton* TwDlgMain::btnCancel() const {
    return ui->btnCancel;
}
QPushButton* TwDlgMain::btnHelp() const {
    return ui->btnHelp;
}
QPushButton* TwDlgMain::btnAbout() const {
    return ui->btnAbout;
}
QPushButton* TwDlgMain::btnCustomize() const {
    return ui->btnCustomize;
}
QTabWidget* TwDlgMain::tableMain() const {
    return ui->tableMain;
}

QRect TwDlgMain::buttonRow() const {
    QRect row;
    for (const QWidget* button : {static_cast<QWidget*>(ui->btnHelp), static_cast<QWidget*>(ui->btnOK),
                                  static_cast<QWidget*>(ui->btnCancel), static_cast<QWidget*>(ui->btnStart),
                                  static_cast<QWidget*>(ui->btnPrescan)})
        if (button && button->isVisible())
            row |= QRect(button->mapToGlobal(QPoint(0, 0)), button->size());
    return row;
}

TwainView* TwDlgMain::view(const QString& identifier) const {
    for (auto& tab : m_tabs)
        if (tab.identifier == identifier)
            return tab.view;
    return nullptr;
}

QStringList TwDlgMain::tabIdentifiers() const {
    QStringList ids;
    for (int i = 0; i < ui->tableMain->count(); ++i)
        ids << ui->tableMain->widget(i)->property("identifier").toString();
    return ids;
}

void TwDlgMain::rebuildTabs() {
    QTabWidget* tabs = ui->tableMain;
    tabs->blockSignals(true);
    while (tabs->count() > 0)
        tabs->removeTab(0);
    for (auto& tab : m_tabs) {
        if (!tab.page)
            continue;
        tabs->addTab(tab.page, tab.label);
    }
    tabs->blockSignals(false);
}

void TwDlgMain::unbindViews() {
    for (auto& tab : m_tabs) {
        if (!tab.view)
            continue;
        try {
            tab.view->unbindControls();
        } catch (const std::exception& e) {
            OrvaLog(kOrvaLogError, "TwDlgMain::unbindControlAll ERROR: %s: %s\n",
                    tab.view->metaObject()->className(), e.what());
        } catch (...) {
            OrvaLog(kOrvaLogError, "TwDlgMain::unbindControlAll ERROR: %s: unknown exception\n",
                    tab.view->metaObject()->className());
        }
    }
}

void TwDlgMain::bindControlAll() {
    TwPanel::bindControlAll();
    TwainDialogData* model = dialogData();
    if (!model) {
        OrvaLog(kOrvaLogError, "TwDlgMain::bindControlAll ERROR: no model to bind to\n");
        return;
    }
    responderBinding()->bindContentValues(ui->cmbSettingNames, model, "profiles.content");
    // A name is picked, or typed and ended with Return or by leaving the box: a setting is not
    // selected letter by letter as its name is typed.
    responderBinding()->bind(kTwValueBinding, ui->cmbSettingNames, model, "profiles.name",
                             TwBindingOptions{.continuouslyUpdatesValue = false});

    unbindViews();
    // Every tab the form offers, each with its own label again, before the model decides.
    rebuildTabs();
    ui->tableMain->setCurrentIndex(0);

    for (auto& tab : m_tabs) {
        try {
            TwValue def =
                model->valueForKeyPath("ModelDef.UIControl.MainDialog." + tab.identifier.toStdString());
            auto* entries = def.dict();
            TwValue hiddenValue = entries ? entries->value("hidden") : TwValue();
            bool hidden = hiddenValue.isNumber() && hiddenValue.boolValue();
            if (tab.view && tab.page && !hidden) {
                TwValue text = entries ? entries->value("localizedText") : TwValue();
                if (text.isString() && !text.str()->empty())
                    ui->tableMain->setTabText(ui->tableMain->indexOf(tab.page),
                                              QString::fromStdString(*text.str()));
                if (tab.view->parentWidget() != tab.page) {
                    tab.view->setParent(tab.page);
                    tab.page->layout()->addWidget(tab.view);
                }
                tab.view->show();
                tab.view->bindControlsToObject(model);
                connectActions(tab.view);
            } else {
                OrvaLog(kOrvaLogDebug, "\tTwDlgMain::bindControlAll: tab %s removed\n",
                        tab.identifier.toUtf8().constData());
                int index = tab.page ? ui->tableMain->indexOf(tab.page) : -1;
                if (index >= 0)
                    ui->tableMain->removeTab(index);
                if (tab.page)
                    tab.page->hide();
            }
        } catch (const std::exception& e) {
            OrvaLog(kOrvaLogError, "%s ERROR: %s\n", "TwDlgMain::bindControlAll", e.what());
        } catch (...) {
            OrvaLog(kOrvaLogError, "%s ERROR: %s\n", "TwDlgMain::bindControlAll", "unknown exception");
        }
    }
    connectActions(this);
    // The tabs are in place: Tab goes from the setting row to the tab bar, through the tab shown,
    // to the buttons.
    TwSetVisualTabOrder(this);
}

void TwDlgMain::unbindControlAll() {
    unbindViews();
    TwPanel::unbindControlAll();
}

bool TwDlgMain::windowShouldClose() {
    // The close box is Cancel; the window goes only when the data source hides the dialog.
    if (TwPanelHost* host = panelHost()) {
        host->performAction(QStringLiteral("onCancel"), this);
        return false;
    }
    return true;
}

void TwDlgMain::setUIOnly(bool flag) {
    ui->btnOK->setEnabled(flag);
    ui->btnStart->setEnabled(!flag);
}

void TwDlgMain::setTitle(const QString& title) {
    setWindowTitle(title);
}
