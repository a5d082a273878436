// What the widget benchmarks share: the platform they run on and how a figure is taken from many
// measurements.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QWidget>
#include <QtGlobal>

#include <algorithm>
#include <cstdio>
#include <vector>

// Offscreen unless a display is there, and only Qt's errors printed: the offscreen platform's
// notes about raise() and size hints are no figures. Call before the application is made.
inline void prepareWidgetBenchmark() {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && !qEnvironmentVariableIsSet("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type != QtDebugMsg && type != QtWarningMsg && type != QtInfoMsg)
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });
}

// The value below which the fraction p of the measurements lie (0.5: the median, 1: the largest).
inline double percentile(std::vector<double> values, double p) {
    const std::size_t i = std::min(values.size() - 1, std::size_t(p * double(values.size())));
    std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(i), values.end());
    return values[i];
}

inline double median(std::vector<double> values) {
    return percentile(std::move(values), 0.5);
}

// Processes events until the widget has painted; milliseconds since the clock started, or -1 when
// it did not paint within 5 seconds.
inline double untilPainted(QWidget* widget, const QElapsedTimer& clock) {
    class PaintWatch : public QObject {
    public:
        bool painted = false;
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Paint)
                painted = true;
            return false;
        }
    } watch;
    widget->installEventFilter(&watch);
    while (!watch.painted && clock.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    widget->removeEventFilter(&watch);
    return watch.painted ? double(clock.nsecsElapsed()) / 1e6 : -1;
}
