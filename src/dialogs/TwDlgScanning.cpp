#include "TwDlgScanning.h"

#include "TwFormPreparation.h"
#include "ui_TwDlgScanning.h"

#include <QProgressBar>
#include <QPushButton>

#include <algorithm>
#include <cstring>
#include <limits>

TwDlgScanning::TwDlgScanning(QWidget* parent) : TwPanel(parent), ui(std::make_unique<Ui::TwDlgScanning>()) {
    ui->setupUi(this);
    TwPrepareForm(this);
    connectActions(this);
    setProgressValue(0, 100);
}

TwDlgScanning::~TwDlgScanning() = default;

QPushButton* TwDlgScanning::btnStop() const {
    return ui->btnStop;
}

QProgressBar* TwDlgScanning::progressIndicator() const {
    return ui->progressIndicator;
}

void TwDlgScanning::setStopButtonHidden(bool hidden) {
    ui->btnStop->setHidden(hidden);
}

void TwDlgScanning::setProgressValue(std::uint32_t value, std::uint32_t max) {
    if (max == 0) {
        ui->progressIndicator->setRange(0, 1);
        ui->progressIndicator->setValue(0);
        return;
    }
    // QProgressBar counts in int: scale both down alike when the maximum does not fit.
    std::uint32_t divisor = 1;
    while (max / divisor > std::uint32_t(std::numeric_limits<int>::max()))
        divisor *= 2;
    ui->progressIndicator->setRange(0, int(max / divisor));
    ui->progressIndicator->setValue(int(std::min(value, max) / divisor));
}

void TwDlgScanning::startAnimation() {
    m_animating = true;
    if (ui->progressIndicator->maximum() == 0)
        ui->progressIndicator->setRange(0, 1);
}

void TwDlgScanning::stopAnimation() {
    m_animating = false;
}

void TwDlgScanning::showOver(QWidget* mainWindow, bool stopHidden) {
    const bool sheet = mainWindow && mainWindow->isVisible();
    setStopButtonHidden(!sheet || stopHidden);
    if (parentWidget() != (sheet ? mainWindow : nullptr))
        setParent(sheet ? mainWindow : nullptr, Qt::Dialog);
    setWindowModality(sheet ? Qt::WindowModal : Qt::NonModal);
    adjustSize();
    center();
    show();
    raise();
    startAnimation();
}

void TwDlgScanning::setProgressRecord(const void* record) {
    if (!record) {
        setProgressValue(0, 100);
        return;
    }
    std::uint32_t max, value;
    std::memcpy(&max, static_cast<const unsigned char*>(record) + 4, sizeof max);
    std::memcpy(&value, static_cast<const unsigned char*>(record) + 8, sizeof value);
    setProgressValue(value, max);
}
