// Bitmaps in memory and as files: the layout of each depth, the header and palettes, the sizes that
// leave room to grow, the byte-row copies, BMP files Qt's reader opens with the right pixels, the
// bitmap-file bytes of a prescan image, and the refusal of headers that do not fit their buffer.
#include "ImageShared.h"
#include "TestSupport.h"

class TestImageShared : public QObject {
    Q_OBJECT

    using Bytes = std::vector<unsigned char>;

    // A bitmap made the way a data source makes one, its rows zero.
    static Bytes makeDIB(int width, int height, int bitCount, int dpi = 300) {
        auto layout = TwDibLayoutFor(width, height, bitCount);
        if (!layout)
            return {};
        Bytes dib(layout->totalSize(), 0);
        SetDIBHeader(dib.data(), width, height, 0, dpi, std::uint16_t(bitCount));
        return dib;
    }

    static TwBitmapInfoHeader headerOf(const Bytes& dib) {
        TwBitmapInfoHeader header;
        std::memcpy(&header, dib.data(), sizeof header);
        return header;
    }

    static inline std::vector<unsigned> s_sleeps;
    static void recordSleep(unsigned seconds) { s_sleeps.push_back(seconds); }

    enum CopyFunction {
        kByteCopy,
        kByteCopyReverse,
        kByteCopyBitRev,
        kByteCopyBitRevReverse,
        kByteCopySwapRGB,
        kByteSwapRGB,
        kByteSwapRGBLines,
        kByteCopy1bppTo8bpp,
    };

    static QByteArray palette2(QColor clear, QColor set) {
        const char entries[8] = {char(clear.blue()), char(clear.green()), char(clear.red()), 0,
                                 char(set.blue()),   char(set.green()),   char(set.red()),   0};
        return QByteArray(entries, 8);
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<LogCapture> m_log;
    QByteArray logText() const { return m_log->text().toUtf8(); }

private slots:
    void init() {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_log = std::make_unique<LogCapture>();
    }
    void cleanup() {
        m_log.reset();
        SetDIBAllocSleep(nullptr);
        m_dir.reset();
    }

    // ---- Layout and header ----

    void eachDepthHasItsHeaderPaletteAndStride_data() {
        columns<int, int, int, int, uint, uint>("bits", "width", "dpi", "perMetre", "headerSize", "stride");
        row("1 bit at 200 dpi", 1, 33, 200, 7874, 48u, 8u);
        row("4 bits", 4, 3, 300, 11811, 104u, 4u);
        row("8 bits at 100 dpi", 8, 5, 100, 3937, 1064u, 8u);
        row("24 bits, width 1", 24, 1, 300, 11811, 40u, 4u);
        row("24 bits, width 3", 24, 3, 300, 11811, 40u, 12u);
        row("32 bits", 32, 3, 300, 11811, 40u, 12u);
    }
    void eachDepthHasItsHeaderPaletteAndStride() {
        auto [bits, width, dpi, perMetre, headerSize, stride] =
            fetch<int, int, int, int, uint, uint>("bits", "width", "dpi", "perMetre", "headerSize", "stride");
        const int height = 7;
        const auto layout = TwDibLayoutFor(width, height, bits);
        QCOMPARE(layout->stride, stride);
        QCOMPARE(layout->totalSize(), std::size_t(headerSize + stride * height));
        Bytes dib(layout->totalSize(), 0xAB);
        SetDIBHeader(dib.data(), width, height, 12345, dpi, std::uint16_t(bits));
        const TwBitmapInfoHeader h = headerOf(dib);
        QCOMPARE((QList<qint64>{h.biSize, h.biWidth, h.biHeight, h.biPlanes, h.biBitCount, h.biXPelsPerMeter,
                                h.biYPelsPerMeter}),
                 (QList<qint64>{40, width, height, 1, bits, perMetre, perMetre}));
        QCOMPARE(h.biCompression + h.biSizeImage + h.biClrUsed + h.biClrImportant, 0u);
        const int entries = bits <= 8 ? 1 << bits : 0;
        for (int i = 0; i < entries; ++i) {
            const int grey = bits == 1 ? (i == 0 ? 255 : 0) : i * 255 / (entries - 1);
            const unsigned char* e = dib.data() + 40 + 4 * i;
            QCOMPARE(QList<int>({e[0], e[1], e[2], e[3]}), QList<int>({grey, grey, grey, 0}));
        }
        QCOMPARE(dib[40 + 4 * entries], 0xAB); // nothing written past the palette

        QCOMPARE(GetDIBHeaderSize(dib.data(), dib.size()), headerSize);
        QCOMPARE(FindDIBBits(dib.data(), dib.size()), dib.data() + headerSize);
        QCOMPARE(GetDIBSize(dib.data(), dib.size()), headerSize + stride * height);
        // Null is no bitmap, not a broken one.
        QCOMPARE(GetDIBHeaderSize(nullptr, 100), 0u);
        QCOMPARE(FindDIBBits(static_cast<const void*>(nullptr), 100), nullptr);
        QCOMPARE(GetDIBSize(nullptr, 100), 0u);
        QVERIFY(logText().isEmpty());
    }

    // ---- Sizes and allocation ----

    void getDIBSizeDirectLeavesRoomToGrow_data() {
        columns<uint, int, int, uint>("bits", "width", "height", "size");
        row("1 bit: four packed rows each, 1 % more rows", 1u, 33, 100, 48u + 101u * 32u);
        row("24 bits", 24u, 10, 250, 40u + 252u * 32u);
        row("only the low byte of the bit count", 0x118u, 10, 250, 40u + 252u * 32u);
        row("8 bits, fewer than 100 rows", 8u, 10, 99, 1064u + 99u * 12u);
        row("negative width", 24u, -10, 10, 0u);
        row("beyond 32 bits", 32u, 65535, 65535, 0u);
    }
    void getDIBSizeDirectLeavesRoomToGrow() {
        auto [bits, width, height, size] = fetch<uint, int, int, uint>("bits", "width", "height", "size");
        QCOMPARE(GetDIBSizeDirect(bits, width, height), size);
        void* block = AllocDIBMemory(bits, width, height);
        QCOMPARE(block != nullptr, size != 0);
        std::free(block);
    }

    // The waiting allocation tries 64 times, sleeping 5 s after each failure; a handle's block is
    // zero-filled.
    void allocationRetriesAndHandles() {
        s_sleeps.clear();
        SetDIBAllocSleep(&recordSleep);
        void* block = AllocDIBMemoryWait(24, 100, 100);
        QVERIFY(block && s_sleeps.empty());
        std::free(block);
        QCOMPARE(AllocDIBMemoryWait(32, 65535, 65535), nullptr);
        QCOMPARE(s_sleeps, std::vector<unsigned>(64, 5u));

        TwHandle handle = TwMemAlloc(64);
        QVERIFY(handle && *handle);
        QCOMPARE(QByteArray(static_cast<const char*>(*handle), 64), QByteArray(64, '\0'));
        TwMemFree(handle);
        TwMemFree(nullptr);
    }

    // Width and height from the pixels per metre, tenths of a millimetre rounded.
    void sizeInMillimetres_data() {
        // size: invalid: no size
        columns<int, int, int, QSizeF>("width", "height", "dpi", "size");
        row("2 px at 300 dpi", 2, 2, 300, QSizeF(0.2, 0.2));
        row("A4 at 100 dpi", 827, 1169, 100, QSizeF(210.1, 296.9));
        row("no resolution", 2, 2, 0, QSizeF());
    }
    void sizeInMillimetres() {
        auto [width, height, dpi] = fetch<int, int, int>("width", "height", "dpi");
        Bytes dib = makeDIB(width, height, 8, dpi);
        auto size = GetDIBSizeMillimetres(dib.data(), dib.size());
        QTEST(size ? QSizeF(size->first, size->second) : QSizeF(), "size");
    }

    // ---- Byte rows ----

    void copyFamily_data() {
        columns<int, QByteArray, int, QByteArray>("function", "source", "count", "palette");
        // The destination starts as 0xEE bytes (as many as expected), or as the source when the
        // function works in place; for lines, count is the line length and there are two lines.
        QTest::addColumn<QByteArray>("expected");
        const QByteArray none;
        row("copy", int(kByteCopy), QByteArray("\x01\x02\x03\x04", 4), 3, none,
            QByteArray("\x01\x02\x03\xEE", 4));
        row("inverted", int(kByteCopyReverse), QByteArray("\x00\xFF\x0F", 3), 3, none,
            QByteArray("\xFF\x00\xF0\xEE", 4));
        row("bit order reversed", int(kByteCopyBitRev), QByteArray("\x01\x80\x0F\xA0", 4), 4, none,
            QByteArray("\x80\x01\xF0\x05\xEE", 5));
        row("bit order reversed and inverted", int(kByteCopyBitRevReverse), QByteArray("\x01\x0F", 2), 2,
            none, QByteArray("\x7F\x0F\xEE", 3));
        row("RGB swapped, whole pixels only", int(kByteCopySwapRGB), QByteArray("abcdefg"), 7, none,
            QByteArray("cbafed\xEE\xEE"));
        row("RGB swapped, less than a pixel", int(kByteCopySwapRGB), QByteArray("ab"), 2, none,
            QByteArray("\xEE\xEE\xEE"));
        row("RGB swapped in place", int(kByteSwapRGB), QByteArray("abcdefgh"), 6, none,
            QByteArray("cbafedgh"));
        row("RGB swapped in lines of 7 bytes", int(kByteSwapRGBLines), QByteArray("abcdefgABCDEFGx"), 7, none,
            QByteArray("cbafedgCBAFEDGx"));
        row("1 bit to grey, white and black", int(kByteCopy1bppTo8bpp), QByteArray("\xA5\x80", 2), 9,
            palette2(Qt::white, Qt::black), QByteArray("\x00\xFF\x00\xFF\xFF\x00\xFF\x00\x00\xEE", 10));
        // The grey weights: 0.299 of red, 0.587 of green, 0.114 of blue.
        row("1 bit to grey, red and green", int(kByteCopy1bppTo8bpp), QByteArray("\x40", 1), 3,
            palette2(Qt::red, Qt::green), QByteArray("\x4C\x96\x4C\xEE", 4));
        row("1 bit to grey, blue and grey", int(kByteCopy1bppTo8bpp), QByteArray("\x80", 1), 2,
            palette2(Qt::blue, QColor(100, 150, 200)), QByteArray("\x8D\x1D\xEE", 3));
    }
    void copyFamily() {
        auto [function, source, count, palette, expected] =
            fetch<int, QByteArray, int, QByteArray, QByteArray>("function", "source", "count", "palette",
                                                                "expected");
        const auto* src = reinterpret_cast<const std::uint8_t*>(source.constData());
        const bool inPlace = function == kByteSwapRGB || function == kByteSwapRGBLines;
        QByteArray out = inPlace ? source : QByteArray(expected.size(), '\xEE');
        auto* dst = reinterpret_cast<std::uint8_t*>(out.data());
        const auto n = std::size_t(count);
        TwRGBQuad entries[2] = {};
        std::memcpy(entries, palette.constData(), std::size_t(palette.size()));
        const std::function<void()> run[] = {
            [&] { ByteCopy(src, dst, n); },        [&] { ByteCopyReverse(src, dst, n); },
            [&] { ByteCopyBitRev(src, dst, n); },  [&] { ByteCopyBitRevReverse(src, dst, n); },
            [&] { ByteCopySwapRGB(src, dst, n); }, [&] { ByteSwapRGB(dst, n); },
            [&] { ByteSwapRGBLines(dst, n, 2); },  [&] { ByteCopy1bppTo8bpp(src, dst, n, entries); },
        };
        run[function]();
        QCOMPARE(out.toHex(' '), expected.toHex(' '));
    }

    // ---- Files ----

    // Top-down rows in memory become a bottom-up file that Qt's reader shows the right way up.
    void saveBMPWritesAFileQtReads_data() {
        columns<int, bool>("bits", "swap");
        row("1 bit", 1, false);
        row("4 bits", 4, false);
        row("8 bits", 8, false);
        row("24 bits", 24, false);
        row("24 bits, RGB in memory", 24, true);
        row("32 bits", 32, false);
        row("8 bits, swap ignored", 8, true);
    }
    void saveBMPWritesAFileQtReads() {
        auto [bits, swap] = fetch<int, bool>("bits", "swap");
        const int width = 5, height = 3;
        Bytes dib = makeDIB(width, height, bits);
        const auto layout = *TwDibLayoutFor(width, height, bits);
        auto expected = [&](int x, int y) -> QRgb {
            switch (bits) {
            case 1:
                return (x + y) % 2 ? qRgb(0, 0, 0) : qRgb(255, 255, 255);
            case 4:
                return qRgb((x + 5 * y) % 16 * 17, (x + 5 * y) % 16 * 17, (x + 5 * y) % 16 * 17);
            case 8:
                return qRgb(x * 40 + y * 7, x * 40 + y * 7, x * 40 + y * 7);
            default:
                return qRgb(200, y * 80, x * 50);
            }
        };
        for (int y = 0; y < height; ++y) {
            unsigned char* row = dib.data() + layout.headerSize + y * layout.stride;
            for (int x = 0; x < width; ++x) {
                const QRgb c = expected(x, y);
                switch (bits) {
                case 1:
                    if ((x + y) % 2)
                        row[x / 8] |= std::uint8_t(0x80 >> (x % 8));
                    break;
                case 4:
                    row[x / 2] |= std::uint8_t(((x + 5 * y) % 16) << (x % 2 ? 0 : 4));
                    break;
                case 8:
                    row[x] = std::uint8_t(qRed(c));
                    break;
                default: {
                    unsigned char* p = row + x * (bits / 8);
                    p[0] = std::uint8_t(swap ? qRed(c) : qBlue(c));
                    p[1] = std::uint8_t(qGreen(c));
                    p[2] = std::uint8_t(swap ? qBlue(c) : qRed(c));
                }
                }
            }
        }
        const QString path = m_dir->filePath("image.bmp");
        SaveBMP(dib.data(), dib.size(), QFile::encodeName(path).constData(), swap);
        QCOMPARE(QFileInfo(path).size(), qint64(14 + dib.size()));
        QImage image(path, "BMP");
        QCOMPARE(image.size(), QSize(width, height));
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                QCOMPARE(image.pixel(x, y), expected(x, y));
        QVERIFY(logText().contains("Save Image: '" + QFile::encodeName(path) + "'"));
    }

    void saveProcessBMPWritesUnderPictures() {
        const QByteArray oldHome = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(m_dir->path()));
        Bytes dib = makeDIB(4, 2, 8);
        SaveProcessBMP(dib.data(), dib.size(), 3, 0x1f, 2, 0);
        QVERIFY(logText().contains("EERROR: Save Image: " + QFile::encodeName(m_dir->path()) +
                                   "/Pictures/Page3_1f_2.bmp"));
        QVERIFY(QDir(m_dir->path()).mkdir("Pictures"));
        SaveProcessBMP(dib.data(), dib.size(), 3, 0x1f, 2, 0);
        qputenv("HOME", oldHome);
        QCOMPARE(QImage(m_dir->filePath("Pictures/Page3_1f_2.bmp"), "BMP").size(), QSize(4, 2));
    }

    // The bitmap file of a prescan image: the pixels start where the bit count says, deliberately
    // without looking at the palette (a 4-bit image keeps 54).
    void bitmapFileBytesGetThePixelOffsetOfTheirDepth_data() {
        columns<int, uint>("bits", "offset");
        row("1 bit", 1, 62u);
        row("4 bits", 4, 54u);
        row("8 bits", 8, 1078u);
        row("24 bits", 24, 54u);
        row("32 bits", 32, 54u);
    }
    void bitmapFileBytesGetThePixelOffsetOfTheirDepth() {
        auto [bits, offset] = fetch<int, uint>("bits", "offset");
        Bytes dib = makeDIB(2, 2, bits);
        dib.resize(dib.size() + 3, 0x5A); // a data source may hand over more than the bitmap
        const auto file = CreateBMPFileHeader(dib.data(), dib.size());
        QVERIFY(file);
        std::uint32_t fileSize = 0, pixels = 0;
        std::memcpy(&fileSize, file->data() + 2, 4);
        std::memcpy(&pixels, file->data() + 10, 4);
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(file->data()), 2), QByteArray("BM"));
        QCOMPARE(fileSize, std::uint32_t(dib.size() + 14));
        QCOMPARE(pixels, offset);
        QVERIFY(!CreateBMPFileHeader(nullptr, 100));
    }

    // ---- Aligning rows ----

    void alignAndUnalignRoundTrip_data() {
        QTest::addColumn<int>("width");
        row("padded rows", 5);
        row("rows without padding", 4);
    }
    void alignAndUnalignRoundTrip() {
        QFETCH(int, width);
        const int height = 3;
        Bytes aligned = makeDIB(width, height, 24);
        const auto layout = *TwDibLayoutFor(width, height, 24);
        const std::size_t packed = std::size_t(width) * 3;
        Bytes rows; // the pixels packed
        for (int y = 0; y < height; ++y)
            for (std::size_t i = 0; i < packed; ++i) {
                const auto value = std::uint8_t(y * 60 + i + 1);
                aligned[layout.headerSize + y * layout.stride + i] = value;
                rows.push_back(value);
            }
        const bool padded = packed < layout.stride;

        Bytes into(rows.size(), 0xEE);
        QVERIFY(unAlignBitmap(aligned.data(), aligned.size(), into.data(), into.size()));
        QCOMPARE(into == rows, padded); // rows without padding are left where they are
        if (padded)
            QVERIFY(!unAlignBitmap(aligned.data(), aligned.size(), into.data(), into.size() - 1));

        Bytes inPlace = aligned;
        QVERIFY(unAlignBitmap(inPlace.data(), inPlace.size()));
        QVERIFY(std::equal(rows.begin(), rows.end(), inPlace.begin() + 40));
        void* again = AlignBitmap(inPlace.data(), 40 + rows.size());
        QVERIFY(again);
        QCOMPARE(GetDIBSize(again, aligned.size()), std::uint32_t(aligned.size()));
        QVERIFY(std::memcmp(again, aligned.data(), aligned.size()) == 0);
        std::free(again);
        QVERIFY(logText().contains("AlignBitmap size=" + QByteArray::number(int(aligned.size())) + " \n"));
    }

    // ---- Headers that do not fit their buffer ----

    void lyingHeadersAreRefused_data() {
        columns<int, uint, int, int, int>("length", "headerSize", "width", "height", "bits");
        row("shorter than a header", 39, 40u, 1, 1, 24);
        row("header size 12", 56, 12u, 2, 2, 24);
        row("header size beyond the buffer", 104, 4000u, 2, 2, 24);
        row("zero width", 1000, 40u, 0, 2, 24);
        row("negative height", 1000, 40u, 2, -2, 24);
        row("huge width", 40 + 1024 + 70000, 40u, 70000, 1, 8);
        row("huge height", 1000, 40u, 1, 65536, 8);
        row("16 bits", 1000, 40u, 2, 2, 16);
        row("bit count 0", 1000, 40u, 2, 2, 0);
        row("palette past the end", 40 + 100, 40u, 1, 1, 8);
        row("rows past the end", 40 + 100, 40u, 10, 10, 24);
        row("last row one byte short", 40 + 36 - 1, 40u, 4, 3, 24);
        // 32768 x 32768 x 4 bytes is 2^32: in 32-bit arithmetic the rows would take no room.
        row("rows overflowing 32 bits", 40 + 64, 40u, 32768, 32768, 32);
    }
    void lyingHeadersAreRefused() {
        auto [length, headerSize, width, height, bits] =
            fetch<int, uint, int, int, int>("length", "headerSize", "width", "height", "bits");
        TwBitmapInfoHeader header{};
        header.biSize = headerSize;
        header.biWidth = width;
        header.biHeight = height;
        header.biPlanes = 1;
        header.biBitCount = std::uint16_t(bits);
        header.biXPelsPerMeter = header.biYPelsPerMeter = 11811;
        // On the heap and exactly as long as said, so that a read past it is caught by the sanitizer.
        Bytes dib(std::size_t(length), 0);
        std::memcpy(dib.data(), &header, std::min(dib.size(), sizeof header));
        const QString path = m_dir->filePath("refused.bmp");

        QCOMPARE(GetDIBHeaderSize(dib.data(), dib.size()), 0u);
        QCOMPARE(FindDIBBits(dib.data(), dib.size()), nullptr);
        QCOMPARE(GetDIBSize(dib.data(), dib.size()), 0u);
        QVERIFY(!GetDIBSizeMillimetres(dib.data(), dib.size()));
        QVERIFY(!CreateBMPFileHeader(dib.data(), dib.size()) && !unAlignBitmap(dib.data(), dib.size()));
        QCOMPARE(AlignBitmap(dib.data(), dib.size()), nullptr);
        SaveBMP(dib.data(), dib.size(), QFile::encodeName(path).constData(), 0);
        QVERIFY(!QFile::exists(path));

        const QByteArray log = logText();
        for (const char* name : {"GetDIBHeaderSize", "FindDIBBits", "GetDIBSize", "GetDIBSizeMillimetres",
                                 "CreateBMPFileHeader", "unAlignBitmap", "AlignBitmap", "SaveBMP"})
            QVERIFY2(log.contains(QByteArray("E\tERROR: ") + name + ": "), name);
    }
};

QTEST_GUILESS_MAIN(TestImageShared)
#include "tst_imageshared.moc"
