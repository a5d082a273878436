// Helpers for the dialog tests: answering modal windows that a call opens, and the sample scanner
// loaded through the facade.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

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

// The button of a message box whose text is the title.
inline QAbstractButton* buttonTitled(QMessageBox* box, const QString& title) {
    for (auto* b : box->buttons())
        if (b->text() == title)
            return b;
    return nullptr;
}
