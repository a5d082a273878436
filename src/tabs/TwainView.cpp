#include "TwainView.h"

#include "OrvaDebug.h"
#include "TwFormPreparation.h"
#include "TwSettingTabs.h"
#include "TwStrings.h"
#include "TwainDialogData.h"
#include "TwainViewArea.h"
#include "TwainViewBasic.h"
#include "TwainViewBinaryImage.h"
#include "TwainViewColorImage.h"
#include "TwainViewCommon.h"
#include "TwainViewControlSheet.h"
#include "TwainViewFeed.h"
#include "TwainViewGrayImage.h"
#include "TwainViewImprinter.h"
#include "TwainViewLayout.h"
#include "TwainViewPatchCode.h"

#include <QAbstractButton>
#include <QEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QTableWidget>
#include <QVariant>

namespace {

struct TabEntry {
    const char* className;
    TwainView* (*create)(QWidget*);
};

template <class Tab> TwainView* make(QWidget* parent) {
    return new Tab(parent);
}

#define TW_TAB_MAKER(identifier, inMainPanel) {"TwainView" #identifier, &make<TwainView##identifier>},
const TabEntry kTabs[] = {TW_SETTING_TABS(TW_TAB_MAKER)};
#undef TW_TAB_MAKER

// The text of an "IDS_" key, or a null string when no table has it.
QString localized(TwainDialogData* model, const QString& key) {
    auto text = TwLookupString(model->bundleDS().get(), key.toStdString());
    return text ? QString::fromStdString(*text) : QString();
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

QStringList TwainView::classNames(bool mainPanelOnly) {
    QStringList names;
    for (const TwSettingTab& tab : kTwSettingTabs)
        if (tab.inMainPanel || !mainPanelOnly)
            names << QString::fromLatin1(tab.className);
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
    if (model)
        applyTextKeys();
    else
        OrvaLog(kOrvaLogError, "ERROR: %s(%s): no model to bind to\n", "TwainView::bindControlsToObject",
                metaObject()->className());
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

void TwainView::bindLists(const TwBindList& controlDefs, const TwBindList& contents,
                          const TwBindList& enables, const TwBindList& values) {
    if (!m_bindObject || !m_responderBinding)
        return;
    m_responderBinding->bindControlDefs(controlDefs, m_bindObject, identifier().toStdString());
    m_responderBinding->bindContents(contents, m_bindObject);
    m_responderBinding->bindEnableds(enables, m_bindObject);
    m_responderBinding->bindValues(values, m_bindObject);
}

void TwainView::prepareForm() {
    TwPrepareForm(this);
}

void TwainView::applyTextKeys() {
    const auto widgets = findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        const QString text = localized(m_bindObject, widget->property("textKey").toString());
        if (!text.isNull()) {
            if (auto* button = qobject_cast<QAbstractButton*>(widget))
                button->setText(text);
            else if (auto* box = qobject_cast<QGroupBox*>(widget))
                box->setTitle(text);
            else if (auto* label = qobject_cast<QLabel*>(widget))
                label->setText(text);
        }
        auto* table = qobject_cast<QTableWidget*>(widget);
        if (!table)
            continue;
        const QStringList rowKeys = widget->property("rowTextKeys").toStringList();
        for (int row = 0; row < rowKeys.size() && row < table->rowCount(); ++row) {
            const QString rowText = localized(m_bindObject, rowKeys[row]);
            if (!rowText.isNull() && table->item(row, 0))
                table->item(row, 0)->setText(rowText);
        }
    }
}

void TwainView::observeValueForKeyPath(const std::string&, TwObservable*, const TwKeyValueChange&, void*) {}

bool TwainView::event(QEvent* event) {
    // Qt tells a widget that was never shown only after the change.
    const bool leaving =
        event->type() == QEvent::ParentAboutToChange || event->type() == QEvent::ParentChange;
    if (leaving && m_responderBinding)
        unbindControls();
    return QWidget::event(event);
}
