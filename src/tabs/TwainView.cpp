#include "TwainView.h"

#include "OrvaDebug.h"
#include "TwResponderBinding.h"
#include "TwainDialogData.h"

#include <QEvent>
#include <QLayout>
#include <QVariant>

#include <array>

namespace {

struct TabEntry {
    const char* className;
    TwainView* (*create)(QWidget*);
};

// Tabs in the order the main panel shows them.
const std::array<TabEntry, 0> kTabs{{}};

// True when a layout of the parent places the widget: moving it by hand would be undone.
bool isLaidOut(const QWidget* view) {
    const QWidget* parent = view->parentWidget();
    if (!parent)
        return false;
    const auto layouts = parent->findChildren<QLayout*>();
    for (const QLayout* layout : layouts)
        if (layout->indexOf(const_cast<QWidget*>(view)) >= 0)
            return true;
    return false;
}

} // namespace

TwainView::TwainView(QWidget* parent) : QWidget(parent) {}

TwainView::~TwainView() {
    if (m_responderBinding || m_bindObject)
        unbindControls();
}

TwainView* TwainView::create(const QString& className, QWidget* parent) {
    for (const TabEntry& entry : kTabs)
        if (className == QLatin1String(entry.className))
            return entry.create(parent);
    OrvaLog(kOrvaLogError, "ERROR: %s: no tab of class %s\n", "TwainView::create", qPrintable(className));
    return nullptr;
}

QStringList TwainView::classNames() {
    QStringList names;
    for (const TabEntry& entry : kTabs)
        names << QString::fromLatin1(entry.className);
    return names;
}

QString TwainView::identifier() const {
    return property("tabIdentifier").toString();
}

void TwainView::bindControlsToObject(TwainDialogData* model) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainView::bindControlsToObject");
    // A tab bound again starts from nothing: what the old binding object made goes with it.
    if (m_responderBinding) {
        m_responderBinding->removeObserverAll();
        m_responderBinding->unbindAll();
    }
    m_responderBinding = std::make_unique<TwResponderBinding>(this);
    m_bindObject = model;
    OrvaLog(kOrvaLogTrace, "LEAVE: %s\n", "TwainView::bindControlsToObject");
}

void TwainView::unbindControls() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainView::unbindControls");
    if (m_responderBinding) {
        m_responderBinding->removeObserverAll();
        m_responderBinding->unbindAll();
        m_responderBinding.reset();
    }
    m_bindObject = nullptr;
    OrvaLog(kOrvaLogTrace, "LEAVE: %s\n", "TwainView::unbindControls");
}

TwResponderBinding* TwainView::responderBinding() const {
    return m_responderBinding.get();
}

TwainDialogData* TwainView::bindObject() const {
    return m_bindObject;
}

void TwainView::addObserverForKeyPath(const std::string& keyPath, unsigned options) {
    if (m_bindObject && m_responderBinding)
        m_responderBinding->addResponderObserver(m_bindObject, keyPath, options);
}

void TwainView::addObserverForKeyPath(const std::string& keyPath) {
    if (m_bindObject && m_responderBinding)
        m_responderBinding->addResponderObserver(m_bindObject, keyPath);
}

// Rows in the forms sit in grid and box layouts, which close the gap of a hidden row by
// themselves; only views placed by hand are moved here.
void TwainView::adjustViews(const QList<QWidget*>& views, double top, double lineHeight) {
    double position = top;
    for (QWidget* view : views) {
        if (!view || view->isHidden())
            continue;
        if (!isLaidOut(view))
            view->move(view->x(), qRound(position));
        // Qt's y axis points down: the next line is below.
        position += lineHeight;
    }
}

void TwainView::observeValueForKeyPath(const std::string&, TwainDialogData*, const TwKeyValueChange&, void*) {
}

bool TwainView::event(QEvent* event) {
    if (event->type() == QEvent::ParentAboutToChange && m_responderBinding)
        unbindControls();
    return QWidget::event(event);
}
