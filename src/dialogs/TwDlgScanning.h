// The scanning progress panel: a determinate bar and a Stop button that cancels the scan (the
// controller's onScanCancel, event 4).
#pragma once

#include "TwPanel.h"

#include <cstdint>
#include <memory>

class QProgressBar;
class QPushButton;
namespace Ui {
class TwDlgScanning;
}

class TwDlgScanning : public TwPanel {
    Q_OBJECT
public:
    explicit TwDlgScanning(QWidget* parent = nullptr);
    ~TwDlgScanning() override;

    QPushButton* btnStop() const;
    QProgressBar* progressIndicator() const;

    void setStopButtonHidden(bool hidden);
    // The maximum first, then the value. A maximum of 0 shows an empty bar, never a busy one.
    void setProgressValue(std::uint32_t value, std::uint32_t max);
    void startAnimation();
    void stopAnimation();
    bool isAnimating() const { return m_animating; }

private:
    std::unique_ptr<Ui::TwDlgScanning> ui;
    bool m_animating = false;
};
