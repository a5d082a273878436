#include "TwPanel.h"

#include "OrvaDebug.h"
#include "TwBundle.h"
#include "TwMessageBox.h"
#include "TwPanelHost.h"
#include "TwResponderBinding.h"
#include "TwStrings.h"
#include "TwainDialogData.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScreen>

#include <algorithm>

namespace {
constexpr const char* kConnectedProperty = "twActionConnected";
} // namespace

TwPanel::TwPanel(QWidget* parent) : QDialog(parent) {}

TwPanel::~TwPanel() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "TwPanel::dealloc", className());
    unbindControlAll();
}

const char* TwPanel::className() const {
    return metaObject()->className();
}

void TwPanel::setPanelHost(TwPanelHost* host) {
    m_host = host;
    TwainDialogData* model = dialogData();
    const TwBundle* bundle = model ? model->bundleDS().get() : nullptr;
    for (auto* button : findChildren<QPushButton*>()) {
        const QString key = button->property("textKey").toString();
        if (key.isEmpty())
            continue;
        auto text = TwLookupString(bundle, key.toStdString());
        if (text && !text->empty())
            button->setText(QString::fromStdString(*text));
    }
}

TwainDialogData* TwPanel::dialogData() const {
    return m_host ? m_host->dialogData() : nullptr;
}

int TwPanel::runModal() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "TwPanel::runModal", className());
    m_isRunModul = true;
    m_returnCode = 0;
    if (m_host)
        m_host->closePreview();
    bindControlAll();
    int result = exec();
    // A run ended by hiding the panel never passed through windowWillClose.
    if (m_isRunModul) {
        m_isRunModul = false;
        result = m_returnCode;
    }
    unbindControlAll();
    OrvaLog(kOrvaLogTrace, "LEAVE: %s(%s), return %d\n", "TwPanel::runModal", className(), result);
    return result;
}

void TwPanel::showWindow() {
    if (isVisible())
        return;
    bindControlAll();
    show();
    raise();
    if (!testAttribute(Qt::WA_ShowWithoutActivating))
        activateWindow();
}

void TwPanel::bindControlAll() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "TwPanel::bindControlAll", className());
    // The old binding object undoes what it made as it goes.
    m_responderBinding = std::make_unique<TwResponderBinding>(this);
}

void TwPanel::unbindControlAll() {
    if (!m_responderBinding)
        return;
    m_responderBinding->unbindAll();
    m_responderBinding->removeObserverAll();
}

bool TwPanel::windowShouldClose() {
    return true;
}

void TwPanel::windowWillClose() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "TwPanel::windowWillClose", className());
    if (m_isRunModul) {
        m_isRunModul = false;
        QDialog::done(m_returnCode);
    }
    unbindControlAll();
}

bool TwPanel::askShouldClose() {
    QScopedValueRollback asking(m_asking, true);
    return windowShouldClose();
}

void TwPanel::performClose() {
    if (!m_asking && askShouldClose())
        close();
}

void TwPanel::closePanel() {
    if (!isVisible() && !m_isRunModul) {
        unbindControlAll();
        return;
    }
    windowWillClose();
    hide();
}

void TwPanel::reject() {
    performClose();
}

void TwPanel::closeEvent(QCloseEvent* event) {
    // The window system's close box asks first; close() from code does not.
    if (event->spontaneous() && !m_asking && !askShouldClose()) {
        event->ignore();
        return;
    }
    windowWillClose();
    event->accept();
}

void TwPanel::center() {
    QWidget* main = m_host ? m_host->mainWindow() : nullptr;
    QRect client = geometry();
    if (main && main != this && main->isVisible())
        client.moveCenter(main->geometry().center());
    else if (QScreen* s = screen())
        client.moveCenter(s->availableGeometry().center());
    setGeometry(client);
    TwKeepOnScreen(this);
}

QString TwPanel::localizedString(const QString& key) const {
    if (m_host)
        return m_host->localizedString(key);
    return QString::fromStdString(TwLocalizedString(nullptr, key.toStdString()));
}

int TwPanel::showMessageBox(const QString& message, std::uint32_t messageType) {
    if (m_host)
        return m_host->showMessageBox(message, QString(), messageType);
    auto setup = TwMessageBoxSetupFor(QString(), message, messageType, false, [](const char* key) {
        return QString::fromStdString(TwLocalizedStringNoEmpty(nullptr, key));
    });
    return TwRunMessageBox(setup, this);
}

void TwPanel::connectActions(QWidget* root) {
    if (!root)
        return;
    auto buttons = root->findChildren<QAbstractButton*>();
    if (auto* self = qobject_cast<QAbstractButton*>(root))
        buttons.prepend(self);
    for (QAbstractButton* button : buttons) {
        const QString action = button->property("action").toString();
        // A panel made over this one (a window of its own) connects its own buttons.
        if (action.isEmpty() || button->property(kConnectedProperty).toBool() || button->window() != window())
            continue;
        button->setProperty(kConnectedProperty, true);
        connect(button, &QAbstractButton::clicked, this, [this, button, action] {
            const QByteArray slot = action.toLatin1();
            if (metaObject()->indexOfMethod(QByteArray(slot + "()").constData()) >= 0) {
                QMetaObject::invokeMethod(this, slot.constData());
                return;
            }
            if (m_host)
                m_host->performAction(action, button);
            else
                OrvaLog(kOrvaLogError, "ERROR: %s(%s): no controller for %s\n", "TwPanel::connectActions",
                        className(), slot.constData());
        });
    }
}

void TwPanel::placeBeside(QWidget* other, int gap, Level level, const QRect& keepClear, bool mayMoveOther) {
    if (!other)
        return;
    const QScreen* s = other->screen();
    const auto placed = TwPlacement::beside(TwPlacement::frameOf(other->geometry(), TwFrameMarginsOf(other)),
                                            keepClear, geometry(), TwFrameMarginsOf(this), minimumSize(),
                                            s ? s->availableGeometry() : QRect(), gap, level, mayMoveOther);
    if (placed.anchorShift != 0)
        other->move(other->pos() + QPoint(placed.anchorShift, 0));
    setGeometry(placed.client);
}

void TwPanel::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    TwKeepOnScreen(this);
}

void TwPanel::observeValueForKeyPath(const std::string&, TwObservable*, const TwKeyValueChange&, void*) {}
