#include "TwDlgScanning.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

TwDlgScanning::TwDlgScanning(QWidget* parent) : TwPanel(parent) {
    setObjectName(QStringLiteral("TwDlgScanning"));
    setWindowTitle(tr("Scanning"));
    auto* layout = new QVBoxLayout(this);
    auto* label = new QLabel(tr("Scanning..."), this);
    label->setObjectName(QStringLiteral("labScanning"));
    layout->addWidget(label);
    auto* row = new QHBoxLayout;
    m_progressIndicator = new QProgressBar(this);
    m_progressIndicator->setObjectName(QStringLiteral("progressIndicator"));
    m_progressIndicator->setMinimumWidth(260);
    m_progressIndicator->setTextVisible(false);
    row->addWidget(m_progressIndicator, 1);
    m_btnStop = new QPushButton(tr("Stop"), this);
    m_btnStop->setObjectName(QStringLiteral("btnStop"));
    m_btnStop->setAutoDefault(false);
    m_btnStop->setProperty("action", QStringLiteral("onScanCancel"));
    m_btnStop->setProperty("textKey", QStringLiteral("IDS_STOP"));
    row->addWidget(m_btnStop);
    layout->addLayout(row);
    setProgressValue(0, 100);
}

void TwDlgScanning::setStopButtonHidden(bool hidden) {
    m_btnStop->setHidden(hidden);
}

void TwDlgScanning::setProgressValue(std::uint32_t value, std::uint32_t max) {
    if (max == 0) {
        m_progressIndicator->setRange(0, 1);
        m_progressIndicator->setValue(0);
        return;
    }
    // QProgressBar counts in int: scale both down alike when the maximum does not fit.
    std::uint32_t divisor = 1;
    while (max / divisor > std::uint32_t(std::numeric_limits<int>::max()))
        divisor *= 2;
    m_progressIndicator->setRange(0, int(max / divisor));
    m_progressIndicator->setValue(int(std::min(value, max) / divisor));
}

void TwDlgScanning::startAnimation() {
    m_animating = true;
    if (m_progressIndicator->maximum() == 0)
        m_progressIndicator->setRange(0, 1);
}

void TwDlgScanning::stopAnimation() {
    m_animating = false;
}
