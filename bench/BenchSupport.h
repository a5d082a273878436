// What the widget benchmarks share: the platform they run on and how a figure is taken from many
// measurements.
#pragma once

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
