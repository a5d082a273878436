#include "TwGammaViews.h"

#include "OrvaDebug.h"
#include "TwBundle.h"

#include <QFile>
#include <QPainter>
#include <QPainterPath>

namespace {
// Where the curves are drawn: the bounds less this on every side.
constexpr int kCurveInset = 2;
constexpr qreal kFrameWidth = 2.0;
const QSize kSampleSize(240, 160);
} // namespace

// ---- Curves ------------------------------------------------------------------------------------

TwGammaTableView::TwGammaTableView(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void TwGammaTableView::setTables(const TwGammaTables* tables) {
    m_tables = tables;
    update();
}

QSize TwGammaTableView::sizeHint() const {
    return {160, 160};
}

QSize TwGammaTableView::minimumSizeHint() const {
    return {96, 96};
}

QImage TwGammaTableView::render(const QSize& size) const {
    // Drawn into an image of its own: additive compositing needs a raster target.
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::black);
    if (!m_tables || size.width() <= 2 * kCurveInset || size.height() <= 2 * kCurveInset)
        return image;
    const QRectF area =
        QRectF(QPointF(0, 0), QSizeF(size)).adjusted(kCurveInset, kCurveInset, -kCurveInset, -kCurveInset);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    const std::pair<const TwGammaTable*, QColor> curves[] = {
        {&m_tables->red, Qt::red}, {&m_tables->green, Qt::green}, {&m_tables->blue, Qt::blue}};
    for (const auto& [table, colour] : curves) {
        QPainterPath path;
        for (int i = 0; i < 256; ++i) {
            const QPointF point(area.left() + i * area.width() / 256.0,
                                area.bottom() - (*table)[std::size_t(i)] * area.height() / 256.0);
            if (i == 0)
                path.moveTo(point);
            else
                path.lineTo(point);
        }
        painter.setPen(QPen(colour, 1.0));
        painter.drawPath(path);
    }
    return image;
}

void TwGammaTableView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.drawImage(rect(), render(size()));
}

// ---- Sample ------------------------------------------------------------------------------------

TwGammaSampleView::TwGammaSampleView(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void TwGammaSampleView::setTables(const TwGammaTables* tables) {
    m_tables = tables;
    update();
}

void TwGammaSampleView::setMonochrome(bool monochrome) {
    m_monochrome = monochrome;
    update();
}

bool TwGammaSampleView::loadSample(const QString& path) {
    m_sampleTried = true;
    m_sample.clear();
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        OrvaLog(kOrvaLogError, "ERROR: %s: no sample picture at '%s'\n", "TwGammaSampleView::loadSample",
                path.toUtf8().constData());
        return false;
    }
    m_sample = file.readAll();
    update();
    return true;
}

void TwGammaSampleView::ensureSample() {
    if (m_sampleTried)
        return;
    auto bundle = TwBundle::moduleBundle();
    loadSample(bundle ? QString::fromStdString(bundle->pathForResource("sample", "bmp")) : QString());
}

const QByteArray& TwGammaSampleView::sampleBytes() {
    ensureSample();
    return m_sample;
}

QImage TwGammaSampleView::convertedImage() {
    ensureSample();
    if (m_sample.isEmpty())
        return {};
    QByteArray copy = m_sample;
    if (m_tables)
        gammaConvert(reinterpret_cast<unsigned char*>(copy.data()), std::size_t(copy.size()), *m_tables);
    QImage image = QImage::fromData(copy, "BMP");
    if (image.isNull())
        return image;
    return m_monochrome ? image.convertToFormat(QImage::Format_Grayscale8) : image;
}

QSize TwGammaSampleView::sizeHint() const {
    return kSampleSize;
}

QSize TwGammaSampleView::minimumSizeHint() const {
    return kSampleSize / 2;
}

void TwGammaSampleView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    const QImage image = convertedImage();
    if (!image.isNull()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(rect(), image);
    }
    painter.setPen(QPen(Qt::white, kFrameWidth));
    painter.drawRect(
        QRectF(rect()).adjusted(kFrameWidth / 2, kFrameWidth / 2, -kFrameWidth / 2, -kFrameWidth / 2));
}
