// The scanning progress panel: a determinate bar and a Stop button that cancels the scan.
#pragma once

#include "TwPanel.h"

#include <cstdint>

class QProgressBar;
class QPushButton;

class TwDlgScanning : public TwPanel {
    Q_OBJECT
public:
    explicit TwDlgScanning(QWidget* parent = nullptr);

    QPushButton* btnStop() const { return m_btnStop; }
    QProgressBar* progressIndicator() const { return m_progressIndicator; }

    void setStopButtonHidden(bool hidden);
    // The maximum first, then the value. A maximum of 0 shows an empty bar, never a busy one.
    void setProgressValue(std::uint32_t value, std::uint32_t max);
    void startAnimation();
    void stopAnimation();
    bool isAnimating() const { return m_animating; }

private:
    QPushButton* m_btnStop;
    QProgressBar* m_progressIndicator;
    bool m_animating = false;
};
