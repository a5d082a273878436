// Everything between a prescan's result and the preview windows: the pages taken over from the
// data source's record, the preview window made on first use and placed beside the settings
// dialog, the prescan session of a modal dialog (both windows take input while the preview is up),
// the rescans the preview asks for, and the display-only page beside a continue-scan question.
#pragma once

#include "TwPreviewService.h"

#include <QObject>
#include <QPointer>
#include <functional>

class QTimer;
class TwPanelHost;
class TwPreviewPanel;

class TwPreviewCoordinator : public QObject, public TwPreviewService {
    Q_OBJECT
public:
    // Asks the data source for a new prescan into the record; false when it gave none.
    using Rescan = std::function<bool(TwPreviewRecord& record)>;
    TwPreviewCoordinator(TwPanelHost* host, Rescan rescan);
    ~TwPreviewCoordinator() override;

    void showPrescan(TwPreviewRecord& record, bool modalDialog) override;
    void closePreview() override;
    QWidget* previewWindow() const override;
    bool hasPrescanSession() const override { return m_session; }
    void showContinueScanPage(TwPreviewRecord& record, QWidget* question) override;
    void closeContinueScanPage() override;
    QWidget* continueScanPage() const override;

    // A new prescan of the current setting, its pages to the preview window.
    void rescan();
    // Pages and ratios of a record to the preview window (made when needed): taken over, or copied
    // when the record's owner keeps them.
    void setPreviewImages(TwPreviewRecord& record, bool take);

private:
    TwPreviewPanel* preview();
    void handOver(TwPreviewPanel* window, TwPreviewRecord& record, bool take);
    void placePreview();
    // Every 0.2 s while a session runs: ends it once the preview has closed.
    void watchSession();

    TwPanelHost* m_host;
    Rescan m_rescan;
    QPointer<TwPreviewPanel> m_preview;
    QPointer<TwPreviewPanel> m_continueScanPage;
    QTimer* m_sessionTimer;
    bool m_session = false;
};
