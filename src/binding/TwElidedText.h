// Texts the model or the data source supplies, shown on a label or as a group box's title within
// the width their layout gives them. Such a text may be of any length, so it never sizes the
// window: a label asks its layout for a few characters' width and shows what fits in the width it
// is given; a title is never wider than what the box holds. A text that does not fit is elided at
// the end, and the whole of it becomes the widget's tool tip.
#pragma once

#include <QObject>
#include <QString>

class QEvent;
class QGroupBox;
class QLabel;
class QWidget;

class TwElidedText : public QObject {
public:
    // Up to this many average characters of a label's text are room its layout must give.
    static constexpr int kReservedChars = 12;

    static void setText(QLabel* label, const QString& text);
    static void setTitle(QGroupBox* box, const QString& title);
    // The text last given, whether shown whole or elided; the widget's own text for one never
    // given a text here.
    static QString fullText(const QWidget* widget);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit TwElidedText(QWidget* widget);
    static TwElidedText* of(const QWidget* widget);
    static TwElidedText* ensure(QWidget* widget);
    void setFullText(const QString& text);
    // The width of the text a label shows at least, when its text is as wide.
    int reservedWidth(const QLabel* label) const;
    // Asks that room of the label's layout.
    void reserve();
    // The text shown in the width the widget has now.
    void elide();

    QWidget* m_widget;
    QString m_text;
};
