#include "ScanOutput.h"

#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <vector>

namespace {
// The side as a QImage: 1-bit line art with white then black (as SANE sets bits for black), 8-bit
// grey or RGB; 16-bit samples keep their high byte.
QImage imageOf(const SaneImage& image) {
    const QImage::Format format = image.format == SaneFormat::Rgb ? QImage::Format_RGB888
                                  : image.depth == 1              ? QImage::Format_Mono
                                                                  : QImage::Format_Grayscale8;
    QImage out(image.width, image.height, format);
    if (out.isNull())
        return out;
    if (format == QImage::Format_Mono)
        out.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    std::vector<std::uint8_t> scratch;
    for (int y = 0; y < image.height; ++y) {
        const std::uint8_t* line = image.line8(y, scratch);
        if (!line)
            return QImage();
        std::memcpy(out.scanLine(y), line, image.packedLineBytes());
    }
    return out;
}
} // namespace

ScanOutput::ScanOutput(std::string folder) : m_folder(std::move(folder)) {}

ScanOutput::~ScanOutput() {
    finish();
}

std::string ScanOutput::pdfPath() const {
    return (std::filesystem::path(m_folder) / "scan.pdf").string();
}

bool ScanOutput::add(const SaneImage& image, int dpi, int page, bool back, std::string* error) {
    auto fail = [error](const std::string& why) {
        if (error)
            *error = why;
        return false;
    };
    std::error_code ec;
    std::filesystem::create_directories(m_folder, ec);
    const QImage picture = imageOf(image);
    if (picture.isNull() || dpi <= 0)
        return fail("the page has no picture");
    char name[64];
    std::snprintf(name, sizeof name, "page-%03d-%s.png", page, back ? "back" : "front");
    const std::string png = (std::filesystem::path(m_folder) / name).string();
    QImage withResolution = picture;
    const int perMetre = int(dpi / 0.0254 + 0.5);
    withResolution.setDotsPerMeterX(perMetre);
    withResolution.setDotsPerMeterY(perMetre);
    if (!withResolution.save(QString::fromStdString(png), "PNG"))
        return fail("cannot write " + png);

    // The PDF page is the side's size at its resolution.
    const QPageSize size(QSizeF(image.width * 25.4 / dpi, image.height * 25.4 / dpi), QPageSize::Millimeter);
    if (!m_pdf) {
        m_pdf = std::make_unique<QPdfWriter>(QString::fromStdString(pdfPath()));
        m_pdf->setResolution(dpi);
        m_pdf->setPageMargins(QMarginsF());
        m_pdf->setPageSize(size);
        m_pdf->setCreator(QStringLiteral("sampleds"));
        m_painter = std::make_unique<QPainter>();
        if (!m_painter->begin(m_pdf.get())) {
            m_painter.reset();
            m_pdf.reset();
            return fail("cannot write " + pdfPath());
        }
    } else {
        // One scan has one resolution; only the page size may change from side to side.
        m_pdf->setPageSize(size);
        m_pdf->newPage();
    }
    const QRect target(0, 0, m_pdf->width(), m_pdf->height());
    m_painter->drawImage(target, picture);
    ++m_pdfPages;
    return true;
}

int ScanOutput::finish() {
    if (m_painter) {
        m_painter->end();
        m_painter.reset();
    }
    m_pdf.reset();
    return m_pdfPages;
}
