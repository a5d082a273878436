// What the widget tests share: Qt Widgets, a control found by name, answering modal windows that a
// call opens, typing as a person types, and the pictures the README shows.
#pragma once

#include "TestSupport.h"
#include "TwBindingAdapters.h"
#include "TwBindingKind.h"
#include "TwBindingWidgets.h"
#include "TwBoundControl.h"
#include "TwEditCommit.h"
#include "TwRangeHelpers.h"
#include "TwResponderBinding.h"
#include "TwainDialogData.h"
#include "TwainNumberFormatter.h"
#include "TwainTextFormatter.h"

#include <QtWidgets>

// The named control below the widget.
template <class T = QWidget> T* child(const QObject* parent, const char* name) {
    return parent->findChild<T*>(QString::fromLatin1(name));
}

// Calls act with the active modal window once one of type W is up (checked every 10 ms, for up to
// five seconds). The timer belongs to the caller's scope.
template <class W> std::unique_ptr<QTimer> whenModal(std::function<void(W*)> act) {
    auto timer = std::make_unique<QTimer>();
    timer->setInterval(10);
    auto* raw = timer.get();
    auto started = std::make_shared<int>(0);
    QObject::connect(raw, &QTimer::timeout, raw, [raw, act, started] {
        if (++*started > 500) {
            raw->stop();
            return;
        }
        auto* w = qobject_cast<W*>(QApplication::activeModalWidget());
        if (!w || !w->isVisible())
            return;
        raw->stop();
        act(w);
    });
    timer->start();
    return timer;
}

// Replaces the field's text as a person types it.
inline void retype(QLineEdit* field, const QString& text) {
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, text);
}

// Picks the entry, by index or by its text, as a person does: selected, then activated.
inline void choose(QComboBox* box, int index) {
    box->setCurrentIndex(index);
    emit box->activated(index);
}
inline void choose(QComboBox* box, const QString& text) {
    choose(box, box->findText(text));
}

// The button of a message box whose text is the title.
inline QAbstractButton* buttonTitled(QMessageBox* box, const QString& title) {
    for (auto* b : box->buttons())
        if (b->text() == title)
            return b;
    return nullptr;
}

// VMX_DIALOG_SHOTS=<dir>: the folder the picture tests save into; empty when they are not wanted.
inline QString dialogShotsFolder() {
    return qEnvironmentVariable("VMX_DIALOG_SHOTS");
}

// Saves one picture of the windows as they stand on the screen, each drawn at its place; the first
// is drawn first. Returns the file, or an empty string when it could not be written.
inline QString saveWindowsPicture(const QString& name, const QList<QWidget*>& windows) {
    QRect bounds;
    for (QWidget* w : windows)
        bounds |= w->geometry();
    const int margin = 8;
    QPixmap picture(bounds.size() + QSize(2 * margin, 2 * margin));
    picture.fill(QColor(0xd8, 0xdc, 0xe0));
    QPainter painter(&picture);
    for (QWidget* w : windows)
        painter.drawPixmap(w->geometry().topLeft() - bounds.topLeft() + QPoint(margin, margin), w->grab());
    painter.end();
    const QString file = QDir(dialogShotsFolder()).filePath(name + u".png"_s);
    return QDir().mkpath(dialogShotsFolder()) && picture.save(file) ? file : QString();
}

// Saves a picture of the panel as it is now into $VMX_EDITOR_SHOTS/<name>.png; false when the
// variable is not set or the picture cannot be written.
inline bool saveEditorPicture(QWidget* panel, const QString& name) {
    const QString dir = qEnvironmentVariable("VMX_EDITOR_SHOTS");
    if (dir.isEmpty() || !QDir().mkpath(dir))
        return false;
    QCoreApplication::processEvents();
    return panel->grab().save(QDir(dir).filePath(name + u".png"_s), "PNG");
}

// Runs the panel modally and calls act once it is up; a panel act leaves open (a failed check
// returns early) is closed, so that the run always ends.
template <class Panel, class Act> int runWith(Panel* panel, Act act) {
    auto timer = whenModal<Panel>([&](Panel* p) {
        act(p);
        if (p->isVisible())
            p->close();
    });
    return panel->runModal();
}
