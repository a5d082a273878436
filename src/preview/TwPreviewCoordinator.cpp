#include "TwPreviewCoordinator.h"

#include "ImageShared.h"
#include "OrvaDebug.h"
#include "TwDlgMain.h"
#include "TwDlgPreview.h"
#include "TwPanelHost.h"
#include "TwainDialogData.h"

#include <QSizeF>
#include <QTimer>

#include <optional>
#include <utility>

namespace {
constexpr int kSessionPoll = 200;        // ms
constexpr int kPreviewGap = 10;          // points between the dialog and the preview
constexpr int kContinueScanPageGap = 10; // points between a continue-scan question and its page

// Width and height in millimetres from a bitmap header, or nothing when the header is missing,
// short or has no resolution.
std::optional<QSizeF> bitmapSizeMillimetres(const void* bitmap, std::uint32_t length) {
    auto size = GetDIBSizeMillimetres(bitmap, length);
    return size ? std::optional<QSizeF>(QSizeF(size->first, size->second)) : std::nullopt;
}
} // namespace

TwPreviewCoordinator::TwPreviewCoordinator(TwPanelHost* host, Rescan rescan)
    : m_host(host), m_rescan(std::move(rescan)), m_sessionTimer(new QTimer(this)) {
    m_sessionTimer->setInterval(kSessionPoll);
    connect(m_sessionTimer, &QTimer::timeout, this, [this] { watchSession(); });
}

TwPreviewCoordinator::~TwPreviewCoordinator() {
    // The windows belong to the dialog and to the question; they go with those.
    if (m_preview)
        m_preview->unbindControlAll();
    closeContinueScanPage();
}

QWidget* TwPreviewCoordinator::previewWindow() const {
    return m_preview;
}

QWidget* TwPreviewCoordinator::continueScanPage() const {
    return m_continueScanPage;
}

TwPreviewPanel* TwPreviewCoordinator::preview() {
    QWidget* main = m_host ? m_host->mainWindow() : nullptr;
    if (!m_preview && main) {
        m_preview = new TwDlgPreview(main);
        m_preview->setPanelHost(m_host);
        m_preview->setRescanHandler([this] { rescan(); });
    }
    return m_preview;
}

void TwPreviewCoordinator::showPrescan(TwPreviewRecord& record, bool modalDialog) {
    if (!record.front.pDIB) {
        OrvaLog(kOrvaLogDebug, "\t%s: no front image\n", "TwPreviewCoordinator::showPrescan");
        setPreviewImages(record, true); // a back image alone is still ours to free
        return;
    }
    const auto size = bitmapSizeMillimetres(record.front.pDIB, record.front.imageLength);
    if (!size)
        OrvaLog(kOrvaLogError, "ERROR: %s: the front image has no size; the paper size stands for it\n",
                "TwPreviewCoordinator::showPrescan");
    setPreviewImages(record, true);
    TwPreviewPanel* window = m_preview;
    if (!window)
        return;
    placePreview();
    window->setSizeFromScanImage(size.value_or(QSizeF()));
    window->setIsModal(modalDialog);
    window->setDisplayOnly(false);
    window->showWindow();
    placePreview(); // again, now that the window system has given it a frame
    if (modalDialog) {
        // The dialog is application-modal; the preview, a window of the dialog's, is not blocked
        // by it, so both take input until the preview closes.
        m_session = true;
        OrvaLog(kOrvaLogDebug, "\t%s: prescan session begun\n", "TwPreviewCoordinator::showPrescan");
        m_sessionTimer->start();
    }
}

void TwPreviewCoordinator::placePreview() {
    auto* main = m_host ? qobject_cast<TwDlgMain*>(m_host->mainWindow()) : nullptr;
    if (!main || !m_preview)
        return;
    // Beside the dialog's right edge, bottoms level; where the screen is too small for both, never
    // over the dialog's bottom buttons.
    m_preview->placeBeside(main, kPreviewGap, TwPanel::Level::Bottoms, main->buttonRow(), true);
}

void TwPreviewCoordinator::closePreview() {
    if (!m_preview || !m_preview->isVisible())
        return;
    OrvaLog(kOrvaLogDebug, "%s: [dlgPreview close]\n", "TwPreviewCoordinator::closePreview");
    m_preview->closePanel();
    if (m_session)
        watchSession();
}

void TwPreviewCoordinator::watchSession() {
    if (!m_session) {
        m_sessionTimer->stop();
        return;
    }
    if (m_preview && m_preview->isVisible())
        return; // the session goes on
    m_session = false;
    m_sessionTimer->stop();
    OrvaLog(kOrvaLogDebug, "\t%s: prescan session ended\n", "TwPreviewCoordinator::watchSession");
}

void TwPreviewCoordinator::setPreviewImages(TwPreviewRecord& record, bool take) {
    handOver(preview(), record, take);
}

void TwPreviewCoordinator::handOver(TwPreviewPanel* window, TwPreviewRecord& record, bool take) {
    std::array<TwOwnedDIB, 2> pages = TwTakePreviewPages(&record, take);
    OrvaLog(kOrvaLogDebug, "\t%s: ratios front %.3f/%.3f/%.3f back %.3f/%.3f/%.3f\n",
            "TwPreviewCoordinator::setPreviewImages", record.front.colorRatio, record.front.whiteRatio,
            record.front.blackRatio, record.back.colorRatio, record.back.whiteRatio, record.back.blackRatio);
    if (!window)
        return;
    window->setColorRatioFront(record.front.colorRatio);
    window->setWhiteRatioFront(record.front.whiteRatio);
    window->setBlackRatioFront(record.front.blackRatio);
    window->setColorRatioBack(record.back.colorRatio);
    window->setWhiteRatioBack(record.back.whiteRatio);
    window->setBlackRatioBack(record.back.blackRatio);
    window->setPrescanImage(std::move(pages[0]), std::move(pages[1]));
}

void TwPreviewCoordinator::rescan() {
    TwPreviewRecord record{};
    // Only a rescan the data source answered with 0 hands its pages over.
    if (m_rescan && m_rescan(record))
        setPreviewImages(record, true);
}

void TwPreviewCoordinator::showContinueScanPage(TwPreviewRecord& record, QWidget* question) {
    closeContinueScanPage();
    if (!record.front.pDIB) {
        OrvaLog(kOrvaLogError, "ERROR: pDIB = NULL\n");
        TwReleasePreviewPages(&record);
        return;
    }
    const auto layout = TwDibLayoutOf(record.front.pDIB, record.front.imageLength,
                                      "TwPreviewCoordinator::showContinueScanPage");
    if (!layout || !question) {
        TwReleasePreviewPages(&record); // refused, logged: only the question shows
        return;
    }
    // A preview window of the question's own: shown with it, taking input while it runs (a window
    // of a modal window is not blocked by it), and gone with it. The prescan preview stays as it is.
    auto* page = new TwDlgPreview(question);
    page->setPanelHost(m_host);
    // A page that does not say its resolution is shown as if scanned at 100 dpi.
    const auto size = bitmapSizeMillimetres(record.front.pDIB, record.front.imageLength);
    page->setSizeFromScanImage(
        size.value_or(QSizeF(layout->width, layout->height) * (kTwMillimetresPerInch / 100.0)));
    page->setIsModal(false);
    page->setDisplayOnly(true);
    // The question is what the person answers: the page beside it never takes the keyboard.
    page->setAttribute(Qt::WA_ShowWithoutActivating);
    page->setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    handOver(page, record, true);
    page->showWindow();
    page->placeBeside(question, kContinueScanPageGap, TwPanel::Level::Tops);
    m_continueScanPage = page;
    question->activateWindow();
}

void TwPreviewCoordinator::closeContinueScanPage() {
    if (m_continueScanPage)
        m_continueScanPage->closePanel();
    m_continueScanPage = nullptr;
}
