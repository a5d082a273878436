// Whether a window's texts fit: each visible label, button, check box, radio button, group title and
// tab shows its whole text in the room its widget has, no two visible text widgets of one parent
// overlap, and the window lies on its screen. A text elided on purpose (the model's or the data
// source's, TwElidedText) fits by construction and carries its whole text as a tool tip.
#pragma once

#include "TwElidedText.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QStyle>
#include <QTabBar>
#include <QTextDocument>
#include <QToolButton>
#include <QWidget>

namespace layoutfit {

inline QString shown(QString text) {
    return text.replace("&&", "\x01").remove('&').replace('\x01', '&');
}
inline int widest(const QFontMetrics& fm, const QString& text) {
    int w = 0;
    for (const QString& line : text.split('\n'))
        w = std::max(w, fm.horizontalAdvance(line));
    return w;
}
inline QString describe(const QWidget* w, const QString& text, int need, int has) {
    return QString("%1 %2 \"%3\": needs %4, has %5")
        .arg(w->metaObject()->className(), w->objectName(), text)
        .arg(need)
        .arg(has);
}

} // namespace layoutfit

// What does not fit in the window, one line each; empty when everything does.
inline QStringList unfitTexts(QWidget* window) {
    using namespace layoutfit;
    QStringList problems;
    QList<QWidget*> texts;
    for (QWidget* w : window->findChildren<QWidget*>()) {
        if (!w->isVisibleTo(window) || w->width() <= 0)
            continue;
        const QFontMetrics fm(w->font());
        if (auto* label = qobject_cast<QLabel*>(w)) {
            if (label->text().isEmpty() || Qt::mightBeRichText(label->text()))
                continue;
            texts << w;
            const QString text = label->buddy() ? shown(label->text()) : label->text();
            if (TwElidedText::fullText(label) != label->text() &&
                label->toolTip() != TwElidedText::fullText(label))
                problems << describe(w, text, 0, 0) + " is elided without its whole text as a tool tip";
            const int room =
                label->contentsRect().width() - 2 * label->margin() - std::max(0, label->indent());
            if (label->wordWrap()) {
                const int need = label->heightForWidth(label->width());
                if (need > label->height() + 1)
                    problems << describe(w, text, need, label->height()) + " (height)";
            } else if (widest(fm, text) > room + 1) {
                problems << describe(w, text, widest(fm, text), room);
            }
        } else if (auto* button = qobject_cast<QAbstractButton*>(w)) {
            if (button->text().isEmpty())
                continue;
            texts << w;
            const QString text = shown(button->text());
            // A push button draws its text inside its frame (its hint adds margins and a smallest
            // width of the style's own). Check boxes, radio buttons and tool buttons need their
            // whole hint: indicator, spacing and text.
            const int need =
                qobject_cast<QPushButton*>(w)
                    ? widest(fm, text) + 2 * w->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, w)
                    : button->sizeHint().width();
            if (need > button->width() + 1)
                problems << describe(w, text, need, button->width());
        } else if (auto* box = qobject_cast<QGroupBox*>(w)) {
            if (box->title().isEmpty())
                continue;
            const int need = fm.horizontalAdvance(shown(box->title())) + 16 +
                             (box->isCheckable() ? w->style()->pixelMetric(QStyle::PM_IndicatorWidth) : 0);
            if (need > box->width() + 1)
                problems << describe(w, box->title(), need, box->width());
        } else if (auto* tabs = qobject_cast<QTabBar*>(w)) {
            for (int i = 0; i < tabs->count(); ++i) {
                if (!tabs->isTabVisible(i))
                    continue;
                const QRect r = tabs->tabRect(i);
                const int need = fm.horizontalAdvance(shown(tabs->tabText(i))) +
                                 w->style()->pixelMetric(QStyle::PM_TabBarTabHSpace, nullptr, w);
                if (r.width() + 1 < need || r.right() > tabs->width())
                    problems << describe(w, tabs->tabText(i), need, r.width()) + " (tab; all tabs must show)";
            }
        }
    }
    // Text widgets of one parent side by side, never over each other.
    for (int i = 0; i < texts.size(); ++i)
        for (int j = i + 1; j < texts.size(); ++j)
            if (texts[i]->parentWidget() == texts[j]->parentWidget() &&
                texts[i]
                    ->geometry()
                    .adjusted(1, 1, -1, -1)
                    .intersects(texts[j]->geometry().adjusted(1, 1, -1, -1)))
                problems << QString("%1 and %2 overlap").arg(texts[i]->objectName(), texts[j]->objectName());
    if (QScreen* screen = window->screen();
        screen && window->isWindow() && !screen->availableGeometry().contains(window->frameGeometry()))
        problems << QString("%1 leaves its screen").arg(window->objectName());
    return problems;
}
