#include "TwPageFinder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

// A picture as rows of three channels (any order) or of grey levels.
struct PixelRows {
    QImage image; // kept so that the rows stay valid
    int channels = 1;
    int bytesPerPixel = 1;
};

PixelRows readableRows(const QImage& image) {
    switch (image.format()) {
    case QImage::Format_Grayscale8:
        return {image, 1, 1};
    case QImage::Format_BGR888:
    case QImage::Format_RGB888:
        return {image, 3, 3};
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        return {image, 3, 4};
    case QImage::Format_Indexed8: {
        // A grey palette is read as grey; any other palette as colours.
        bool grey = true;
        for (QRgb c : image.colorTable())
            grey = grey && qRed(c) == qGreen(c) && qGreen(c) == qBlue(c);
        return grey ? PixelRows{image.convertToFormat(QImage::Format_Grayscale8), 1, 1}
                    : PixelRows{image.convertToFormat(QImage::Format_RGB32), 3, 4};
    }
    default:
        return {image.convertToFormat(QImage::Format_RGB32), 3, 4};
    }
}

struct Background {
    std::array<int, 3> colour{};
    int threshold = 0; // a channel that differs by more than this is not background
};

// The level most of the frame of outermost pixels shows, per channel, and the noise around it.
Background backgroundOf(const PixelRows& rows, int step) {
    const QImage& image = rows.image;
    const int w = image.width(), h = image.height();
    std::vector<const std::uint8_t*> frame;
    auto addPixel = [&](int x, int y) {
        frame.push_back(image.constScanLine(y) + x * rows.bytesPerPixel);
    };
    for (int x = 0; x < w; x += step) {
        addPixel(x, 0);
        addPixel(x, h - 1);
    }
    for (int y = 0; y < h; y += step) {
        addPixel(0, y);
        addPixel(w - 1, y);
    }
    auto grey = [&](const std::uint8_t* p) {
        return rows.channels == 1 ? p[0] : (p[0] + 2 * p[1] + p[2]) / 4;
    };
    // The most common grey level, over a window of 17 levels so that noise does not split it.
    std::array<int, 256> histogram{};
    for (const std::uint8_t* p : frame)
        ++histogram[std::size_t(grey(p))];
    int mode = 0, best = -1;
    for (int level = 0; level < 256; ++level) {
        int sum = 0;
        for (int k = std::max(0, level - 8); k <= std::min(255, level + 8); ++k)
            sum += histogram[std::size_t(k)];
        if (sum > best)
            best = sum, mode = level;
    }
    // Mean and spread of the frame pixels near that level.
    Background background;
    std::array<double, 3> sum{}, squares{};
    int count = 0;
    for (const std::uint8_t* p : frame) {
        if (std::abs(grey(p) - mode) > 24)
            continue;
        ++count;
        for (int c = 0; c < rows.channels; ++c) {
            sum[std::size_t(c)] += p[c];
            squares[std::size_t(c)] += double(p[c]) * p[c];
        }
    }
    double spread = 0;
    for (int c = 0; c < rows.channels; ++c) {
        const double mean = sum[std::size_t(c)] / count;
        background.colour[std::size_t(c)] = int(std::lround(mean));
        spread = std::max(spread, std::sqrt(std::max(0.0, squares[std::size_t(c)] / count - mean * mean)));
    }
    background.threshold = std::clamp(int(std::lround(4 * spread)) + 16, 32, 96);
    return background;
}

// The first and last index of the runs of at least run marked entries; nothing without such a run.
std::optional<std::pair<int, int>> markedSpan(const std::vector<int>& counts, int least, int run) {
    const int n = int(counts.size());
    int first = -1, last = -1, length = 0;
    for (int i = 0; i < n; ++i) {
        length = counts[std::size_t(i)] >= least ? length + 1 : 0;
        if (length == run) {
            if (first < 0)
                first = i - run + 1;
            last = i;
        } else if (length > run) {
            last = i;
        }
    }
    if (first < 0)
        return std::nullopt;
    return std::make_pair(first, last);
}

} // namespace

std::optional<QRect> TwFindPageInImage(const QImage& image, double pixelsPerMillimetre) {
    if (image.isNull() || image.width() < 2 || image.height() < 2)
        return std::nullopt;
    const PixelRows rows = readableRows(image);
    if (rows.image.isNull())
        return std::nullopt;
    // A quarter of a millimetre at most between the pixels looked at.
    const int step = pixelsPerMillimetre > 0 ? std::max(1, int(pixelsPerMillimetre / 4)) : 1;
    const Background background = backgroundOf(rows, step);

    const int w = rows.image.width(), h = rows.image.height();
    const int columnsLooked = (w + step - 1) / step, rowsLooked = (h + step - 1) / step;
    std::vector<int> rowCounts(std::size_t(rowsLooked), 0), columnCounts(std::size_t(columnsLooked), 0);
    const int bpp = rows.bytesPerPixel, t = background.threshold;
    const int b0 = background.colour[0], b1 = background.colour[1], b2 = background.colour[2];
    for (int ry = 0; ry < rowsLooked; ++ry) {
        const std::uint8_t* line = rows.image.constScanLine(ry * step);
        int count = 0;
        if (rows.channels == 1) {
            for (int rx = 0; rx < columnsLooked; ++rx) {
                const bool differs = std::abs(line[rx * step] - b0) > t;
                count += differs;
                columnCounts[std::size_t(rx)] += differs;
            }
        } else {
            for (int rx = 0; rx < columnsLooked; ++rx) {
                const std::uint8_t* p = line + rx * step * bpp;
                const bool differs =
                    std::abs(p[0] - b0) > t || std::abs(p[1] - b1) > t || std::abs(p[2] - b2) > t;
                count += differs;
                columnCounts[std::size_t(rx)] += differs;
            }
        }
        rowCounts[std::size_t(ry)] = count;
    }
    // A row (column) holds the document when one in a hundred of its pixels differ (at least three),
    // in a run of a millimetre's rows: noise and dust make lone rows, never such runs.
    const int run = std::max(2, int(std::lround(pixelsPerMillimetre / step)));
    const auto across = markedSpan(columnCounts, std::max(3, rowsLooked / 100), run);
    const auto down = markedSpan(rowCounts, std::max(3, columnsLooked / 100), run);
    if (!across || !down)
        return std::nullopt;
    const int left = across->first * step, right = std::min(w, across->second * step + step);
    const int top = down->first * step, bottom = std::min(h, down->second * step + step);
    return QRect(QPoint(left, top), QPoint(right - 1, bottom - 1));
}
