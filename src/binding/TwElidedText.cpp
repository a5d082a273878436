#include "TwElidedText.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>

#include <algorithm>
#include <cmath>

namespace {
constexpr const char* kHelperName = "qt_twelidedtext";

int textWidth(const QFontMetricsF& fm, const QString& text) {
    // One pixel more than the advance, so that a text given its own width is not elided.
    return int(std::ceil(fm.horizontalAdvance(text))) + 1;
}
} // namespace

TwElidedText::TwElidedText(QWidget* widget) : QObject(widget), m_widget(widget) {
    setObjectName(QString::fromLatin1(kHelperName));
    widget->installEventFilter(this);
}

TwElidedText* TwElidedText::of(const QWidget* widget) {
    return widget ? widget->findChild<TwElidedText*>(QString::fromLatin1(kHelperName),
                                                     Qt::FindDirectChildrenOnly)
                  : nullptr;
}

TwElidedText* TwElidedText::ensure(QWidget* widget) {
    if (TwElidedText* helper = of(widget))
        return helper;
    return new TwElidedText(widget);
}

void TwElidedText::setText(QLabel* label, const QString& text) {
    if (label)
        ensure(label)->setFullText(text);
}

void TwElidedText::setTitle(QGroupBox* box, const QString& title) {
    if (box)
        ensure(box)->setFullText(title);
}

QString TwElidedText::fullText(const QWidget* widget) {
    if (TwElidedText* helper = of(widget))
        return helper->m_text;
    if (auto* label = qobject_cast<const QLabel*>(widget))
        return label->text();
    if (auto* box = qobject_cast<const QGroupBox*>(widget))
        return box->title();
    return QString();
}

void TwElidedText::setFullText(const QString& text) {
    m_text = text;
    reserve();
    elide();
}

int TwElidedText::reservedWidth(const QLabel* label) const {
    const QFontMetricsF fm(label->font());
    return std::min(textWidth(fm, m_text), int(std::ceil(fm.averageCharWidth() * kReservedChars)));
}

void TwElidedText::reserve() {
    if (auto* label = qobject_cast<QLabel*>(m_widget)) {
        const QMargins margins = label->contentsMargins();
        label->setMinimumWidth(reservedWidth(label) + margins.left() + margins.right() + 2 * label->margin());
    }
}

void TwElidedText::elide() {
    const QFontMetricsF fm(m_widget->font());
    // A widget no layout has placed yet has no width of its own.
    const bool placed = m_widget->testAttribute(Qt::WA_Resized);
    QString shown = m_text;
    if (auto* label = qobject_cast<QLabel*>(m_widget)) {
        // A label's size hint is the width of the text it shows: never more than it was given.
        const int room = placed ? label->contentsRect().width() - 2 * label->margin() : reservedWidth(label);
        shown = fm.elidedText(m_text, Qt::ElideRight, room);
        label->setText(shown);
    } else if (auto* box = qobject_cast<QGroupBox*>(m_widget)) {
        // No wider than the box's contents ask, nor than the box is.
        int room = box->layout() ? box->layout()->sizeHint().width() : -1;
        if (placed)
            room = room < 0 ? box->contentsRect().width() : std::min(room, box->contentsRect().width());
        if (room >= 0)
            shown = fm.elidedText(m_text, Qt::ElideRight, room - fm.horizontalAdvance(QLatin1Char(' ')));
        box->setTitle(shown);
    }
    m_widget->setToolTip(shown == m_text ? QString() : m_text);
}

bool TwElidedText::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_widget) {
        switch (event->type()) {
        case QEvent::FontChange:
        case QEvent::StyleChange:
            reserve();
            elide();
            break;
        case QEvent::Resize:
        case QEvent::LayoutRequest:
            elide();
            break;
        default:
            break;
        }
    }
    return QObject::eventFilter(watched, event);
}
