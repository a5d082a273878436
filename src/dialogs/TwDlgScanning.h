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

    // Shows the panel animating: over a visible main window a sheet, modal for that window only,
    // with Stop unless stopHidden; without one a window of its own, without Stop. Placed by us
    // every time: left to the window system, a first appearance before the frame is known lands
    // a title bar higher than the later ones.
    void showOver(QWidget* mainWindow, bool stopHidden);
    // The data source's progress record of 32-bit values: maximum at byte 4, value at byte 8;
    // none shows 0 of 100.
    void setProgressRecord(const void* record);

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
