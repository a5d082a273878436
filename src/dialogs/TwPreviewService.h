// What the window controller needs of the prescan preview: one entry point that takes a prescan's
// result, and closing. The preview floor implements it (TwPreviewCoordinator) with everything
// between a result and the windows: taking the pages over, the preview window beside the dialog,
// the prescan session of a modal dialog, rescans, and the page beside a continue-scan question.
#pragma once

#include "VmxUI.h"

class QWidget;

class TwPreviewService {
public:
    virtual ~TwPreviewService() = default;

    // The data source's answer to a prescan, taken over: the pages and ratios go to the preview
    // window, shown beside the main window; while it is up, a modal dialog's prescan session lets
    // both windows take input. Without a front page the pages are only freed.
    virtual void showPrescan(TwPreviewRecord& record, bool modalDialog) = 0;
    virtual void closePreview() = 0;
    // The preview window, once a prescan has made it.
    virtual QWidget* previewWindow() const = 0;
    virtual bool hasPrescanSession() const = 0;

    // The page a continue-scan question is about (the record's front page), beside the question
    // and a window of its; every page of the record is freed here.
    virtual void showContinueScanPage(TwPreviewRecord& record, QWidget* question) = 0;
    virtual void closeContinueScanPage() = 0;
    virtual QWidget* continueScanPage() const = 0;
};
