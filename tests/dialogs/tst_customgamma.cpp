// The custom gamma editor: the tone tables, the slider and gamma scales, the link, converting the
// sample picture (and refusing bitmaps it must not touch), the curves, loading presets, saving
// them under names with the limit of 50, deleting, and what the tab's gamma becomes.
#include "ChangeRecorder.h"
#include "ImageShared.h"
#include "SampleFixture.h"
#include "TwGammaTable.h"
#include "TwGammaViews.h"

#include <numeric>

using Levels = QList<int>;
using Bytes = QByteArray;

class TestCustomGamma : public QObject {
    Q_OBJECT

    static TwGammaTable tableOf(std::uint8_t black, std::uint8_t white, double gamma) {
        TwGammaTable t;
        makeGammaData(t, black, white, gamma);
        return t;
    }

    // A BMP file: 14-byte file header, 40-byte info header claiming width x height at bitCount, a
    // palette for 8 bits, rows of the given bytes; extra bytes are added after the rows.
    static Bytes bmpFile(int width, int height, int bitCount, const Bytes& rows, int extra = 0) {
        const TwBitmapInfoHeader info{40, width, height, 1, std::uint16_t(bitCount)};
        const Bytes palette = bitCount <= 8 ? Bytes(4 << bitCount, '\x7f') : Bytes();
        return "BM" + Bytes(12, '\0') + Bytes(reinterpret_cast<const char*>(&info), sizeof info) + palette +
               rows + Bytes(extra, '\0');
    }

    // Tables that tell the channels apart: red inverts, green adds one, blue is constant 7.
    static TwGammaTables markingTables() {
        TwGammaTables t;
        for (int i = 0; i < 256; ++i) {
            t.red[std::size_t(i)] = std::uint8_t(255 - i);
            t.green[std::size_t(i)] = std::uint8_t((i + 1) & 0xFF);
            t.blue[std::size_t(i)] = 7;
        }
        return t;
    }

    SampleScanner scanner;

    // What the name dialog that the action opens offered, proposed and whether it asks before
    // overwriting; it is given the name (none: the one proposed) and accepted or cancelled.
    struct NameAsked {
        QStringList offered;
        QString proposed;
        bool checksOverwrite = false;
    };
    template <class Action>
    static NameAsked askedName(Action action, const QString& name, bool accept = true) {
        NameAsked asked;
        auto timer = whenModal<TwDlgSaveSetting>([&](TwDlgSaveSetting* n) {
            asked = {n->nameList(), n->name(), n->checkOverwrite()};
            if (!name.isEmpty())
                n->setName(name);
            accept ? n->onOK() : n->onCancel();
        });
        action();
        return asked;
    }

    static TwValue value(TwDlgCustomGamma* d, const char* key) { return d->ownValues().valueForKeyPath(key); }
    static void setValue(TwDlgCustomGamma* d, const char* key, const TwValue& v) {
        d->ownValues().setValueForKeyPath(v, key);
    }
    // The editor of the facade for the kind, opened on the preset of that name.
    static TwDlgCustomGamma* gammaDialog(VmxUIControllerImpl& ui, bool color,
                                         const std::optional<QString>& name = std::nullopt) {
        auto* dialog = ui.controller()->panel<TwDlgCustomGamma>();
        dialog->setIsColor(color);
        dialog->setCurrentGammaName(name);
        return dialog;
    }
    static void enter(QLineEdit* field, const QString& text) {
        retype(field, text);
        QTest::keyClick(field, Qt::Key_Return);
    }
    static QByteArray bytes(const std::uint8_t* table) {
        return QByteArray(reinterpret_cast<const char*>(table), 256);
    }
    static TwValue colorPreset(double r, double g, double b, bool link, int black, int white) {
        return dict({{"Red", r},
                     {"Green", g},
                     {"Blue", b},
                     {"RGBLink", link},
                     {"ClipBlack", black},
                     {"ClipWhite", white}});
    }

private slots:
    void init() { QVERIFY2(scanner.reset(), scanner.error.c_str()); }

    // ---- Tables and scales ----

    void toneTables_data() {
        columns<int, int, double, Levels, Levels>("black", "white", "gamma", "levels", "expected");
        Levels all(256);
        std::iota(all.begin(), all.end(), 0);
        row("neutral: the identity", 0, 255, 1.0, all, all);
        row("clip points equal", 10, 10, 1.0, Levels{0, 9, 10, 11, 255}, Levels{0, 0, 0, 255, 255});
        row("gamma 2 brightens", 0, 255, 2.0, Levels{0, 64, 128, 255}, Levels{0, 127, 180, 255});
        row("gamma 0.5 darkens", 0, 255, 0.5, Levels{0, 128, 255}, Levels{0, 64, 255});
        row("clipped ends", 50, 200, 1.0, Levels{0, 50, 125, 199, 200, 255},
            Levels{0, 0, 127, 253, 255, 255});
        row("white below black", 200, 100, 1.0, Levels{0, 150, 200, 201, 255}, Levels{0, 0, 0, 0, 0});
    }
    void toneTables() {
        auto [black, white, gamma, levels, expected] =
            fetch<int, int, double, Levels, Levels>("black", "white", "gamma", "levels", "expected");
        const TwGammaTable t = tableOf(std::uint8_t(black), std::uint8_t(white), gamma);
        QCOMPARE(mapped(levels, [&](int level) { return int(t[std::size_t(level)]); }), expected);
    }

    void slidersAndGammas_data() {
        columns<int, double, bool>("position", "gamma", "bothWays");
        row("0", 0, 0.2, true);
        row("39", 39, 0.98, true);
        row("40", 40, 1.0, true);
        row("41", 41, 1.1, true);
        row("80", 80, 5.0, true);
        row("7.0 typed", 80, 7.0, false);
        row("0.1 typed", 0, 0.1, false);
        row("near 1.0", 40, 1.0009, false);
        row("1.23 typed", 42, 1.23, false);
        row("1.26 typed", 43, 1.26, false);
        row("0.5 typed", 15, 0.5, false);
    }
    void slidersAndGammas() {
        auto [position, gamma, bothWays] = fetch<int, double, bool>("position", "gamma", "bothWays");
        QCOMPARE(TwSliderPositionFromGamma(gamma), position);
        if (bothWays)
            QCOMPARE(TwGammaFromSliderPosition(position), gamma);
    }

    // ---- Converting a picture ----

    // 24-bit pixels go through blue, green, red; 8-bit ones through blue; the row padding, the
    // palette and anything after the rows are left alone; other depths and lying headers are
    // not touched at all.
    void convertingAPicture_data() {
        columns<Bytes, bool, Bytes>("file", "converted", "expected");
        // Two rows of one 24-bit pixel (B, G, R) and a padding byte 0xEE.
        const Bytes rows24("\x10\x20\x30\xee\x00\xff\x80\xee", 8);
        const Bytes done24("\x07\x21\xcf\xee\x07\x00\x7f\xee", 8);
        row("24 bits", bmpFile(1, 2, 24, rows24, 3), true, bmpFile(1, 2, 24, done24, 3));
        const Bytes rows8("\x00\x05\xff\xee", 4);
        row("8 bits", bmpFile(3, 1, 8, rows8), true, bmpFile(3, 1, 8, Bytes("\x07\x07\x07\xee", 4)));
        const Bytes rows1("\xa5\xee\xee\xee", 4);
        row("1 bit", bmpFile(8, 1, 1, rows1), false, bmpFile(8, 1, 1, rows1));
        const Bytes rows32(8, '\x40');
        row("32 bits", bmpFile(2, 1, 32, rows32), false, bmpFile(2, 1, 32, rows32));
        // Claims 100 rows where there are two.
        row("lying height", bmpFile(1, 100, 24, rows24), false, bmpFile(1, 100, 24, rows24));
        Bytes negative = bmpFile(1, 2, 24, rows24);
        const std::int32_t up = -2;
        std::memcpy(negative.data() + 14 + 8, &up, 4);
        row("top-down height", negative, false, negative);
        const Bytes cut = bmpFile(1, 2, 24, rows24).left(60);
        row("cut short", cut, false, cut);
        row("file header only", Bytes(14, 'B'), false, Bytes(14, 'B'));
        row("empty", Bytes(), false, Bytes());
    }
    void convertingAPicture() {
        auto [file, converted, expected] = fetch<Bytes, bool, Bytes>("file", "converted", "expected");
        // Exactly the file's bytes on the heap, so that reading or writing past them shows.
        std::vector<unsigned char> buffer(file.begin(), file.end());
        QCOMPARE(gammaConvert(buffer.empty() ? nullptr : buffer.data(), buffer.size(), markingTables()),
                 converted);
        QCOMPARE(Bytes(reinterpret_cast<const char*>(buffer.data()), qsizetype(buffer.size())), expected);
    }

    // The module's sample is a 24-bit picture that the tables change, grey for monochrome presets.
    void theSamplePicture() {
        TwGammaSampleView view;
        const Bytes original = view.sampleBytes();
        QVERIFY(original.size() > 54);
        QCOMPARE(int(original[28]), 24);
        TwGammaTables identity{TwIdentityGammaTable(), TwIdentityGammaTable(), TwIdentityGammaTable()};
        view.setTables(&identity);
        const QImage plain = view.convertedImage();
        QCOMPARE(plain, QImage::fromData(original, "BMP"));
        const TwGammaTables marking = markingTables();
        view.setTables(&marking);
        const QImage marked = view.convertedImage();
        const QPoint p(plain.width() / 3, plain.height() / 3);
        QCOMPARE(qRed(marked.pixel(p)), 255 - qRed(plain.pixel(p)));
        QCOMPARE(qBlue(marked.pixel(p)), 7);
        QCOMPARE(view.sampleBytes(), original); // converted on a copy
        view.setMonochrome(true);
        QVERIFY(view.convertedImage().isGrayscale());
        QVERIFY(!view.loadSample(u"/nonexistent/sample.bmp"_s));
        QVERIFY(view.convertedImage().isNull());
    }

    // Where the three curves coincide they add up to grey or white; apart, each keeps its colour.
    void theCurvesAddUp() {
        TwGammaTableView view;
        TwGammaTables tables{TwIdentityGammaTable(), TwIdentityGammaTable(), TwIdentityGammaTable()};
        view.setTables(&tables);
        const QSize size(260, 260);
        // The lit pixels of the column of input level 128.
        auto lit = [&](const QImage& image) {
            QList<QRgb> pixels;
            for (int y = 0; y < image.height(); ++y)
                if (image.pixel(130, y) != qRgb(0, 0, 0))
                    pixels << image.pixel(130, y);
            return pixels;
        };
        QImage image = view.render(size);
        QCOMPARE(image.pixel(0, 0), qRgb(0, 0, 0));
        const QList<QRgb> together = lit(image);
        QVERIFY(!together.isEmpty());
        for (QRgb p : together)
            QVERIFY(qRed(p) == qGreen(p) && qGreen(p) == qBlue(p));
        QVERIFY(std::any_of(together.begin(), together.end(), [](QRgb p) { return qRed(p) > 100; }));

        makeGammaData(tables.red, 0, 255, 0.2); // red far below green and blue
        image = view.render(size);
        bool red = false, cyan = false;
        for (QRgb p : lit(image)) {
            red = red || (qRed(p) > 100 && qGreen(p) == 0 && qBlue(p) == 0);
            cyan = cyan || (qRed(p) == 0 && qGreen(p) > 100 && qGreen(p) == qBlue(p));
        }
        QVERIFY(red && cyan);
    }

    // ---- The dialog ----

    // Sliders write gammas and typed gammas move sliders; a gamma out of range ends at the end of
    // the scale; the tables follow every change, the clip points too.
    void slidersFieldsAndTables() {
        auto ui = scanner.load();
        runWith(gammaDialog(*ui, true), [&](TwDlgCustomGamma* d) {
            QSlider* red = d->slider("sldGammaRed");
            QCOMPARE(red->value(), 40);
            red->triggerAction(QAbstractSlider::SliderSingleStepSub);
            QCOMPARE(value(d, "fGammaRed").doubleValue(), 0.98);
            QCOMPARE(d->field("txtGammaRed")->text(), u"0.98"_s);
            QCOMPARE(int(d->gammaDataR()[128]), int(tableOf(0, 255, 0.98)[128]));
            QCOMPARE(int(d->gammaDataG()[128]), 128);

            enter(d->field("txtGammaBlue"), u"1.1"_s);
            QCOMPARE(d->slider("sldGammaBlue")->value(), 41);
            QCOMPARE(int(d->gammaDataB()[64]), int(tableOf(0, 255, 1.1)[64]));
            enter(d->field("txtGammaBlue"), u"7.0"_s); // refused by the field's range
            QCOMPARE(value(d, "fGammaBlue").doubleValue(), 1.1);

            setValue(d, "fGammaGreen", 7.0);
            QCOMPARE(d->slider("sldGammaGreen")->value(), 80);
            QCOMPARE(value(d, "fGammaGreen").doubleValue(), 5.0);
            setValue(d, "fGammaGreen", 0.1);
            QCOMPARE(value(d, "nGammaGreen").intValue(), 0);
            QCOMPARE(value(d, "fGammaGreen").doubleValue(), 0.2);

            enter(d->field("txtClipBlack"), u"30"_s);
            QCOMPARE(d->findChild<QSlider*>(u"sldClipBlack"_s)->value(), 30);
            QCOMPARE(int(d->gammaDataR()[30]), 0);
            QCOMPARE(int(d->gammaDataG()[31]), int(tableOf(30, 255, 0.2)[31]));
            QVERIFY(d->isChanged());
        });
    }

    // With the link on, red's slider moves green and blue and their controls are off; with it
    // off again they are on and keep their values.
    void theLink() {
        auto ui = scanner.load();
        runWith(gammaDialog(*ui, true), [&](TwDlgCustomGamma* d) {
            QSlider* green = d->slider("sldGammaGreen");
            green->triggerAction(QAbstractSlider::SliderPageStepAdd);
            QVERIFY(green->isEnabled());
            d->btnRGBLink()->click();
            QVERIFY(value(d, "RGBLink").boolValue());
            QVERIFY(!green->isEnabled() && !d->field("txtGammaBlue")->isEnabled());
            QCOMPARE(green->value(), 40); // red's
            d->slider("sldGammaRed")->triggerAction(QAbstractSlider::SliderSingleStepAdd);
            QCOMPARE(value(d, "nGammaGreen").intValue(), 41);
            QCOMPARE(value(d, "nGammaBlue").intValue(), 41);
            QCOMPARE(value(d, "fGammaBlue").doubleValue(), 1.1);
            QCOMPARE(bytes(d->gammaDataB()), bytes(d->gammaDataR()));
            d->btnRGBLink()->click();
            QVERIFY(green->isEnabled() && d->field("txtGammaBlue")->isEnabled());
            QCOMPARE(green->value(), 41);
        });
    }

    // A preset is loaded when its name is picked, limited to the range, with only the low byte
    // of a clip point; a name without a preset changes nothing; none resets to the defaults, and
    // a monochrome kind shows one channel captioned Black.
    void loadingPresets() {
        auto ui = scanner.load();
        auto* model = ui->model().get();
        model->setCustomGamme("Warm", true, colorPreset(1.5, 1.2, 0.8, false, 260, 240));
        model->setCustomGamme("Wild", true, colorPreset(9.0, 0.01, 1.0, false, 0, 255));
        model->setCustomGamme("Soft", false, dict({{"Black", 0.6}, {"ClipBlack", 5}, {"ClipWhite", 250}}));
        auto* dialog = gammaDialog(*ui, true, u"Warm"_s);
        runWith(dialog, [&](TwDlgCustomGamma* d) {
            QVERIFY(d->labGammaRed()->text() == u"Red"_s && d->slider("sldGammaBlue")->isVisible());
            QCOMPARE(d->cmbSettingName()->count(), 2);
            QCOMPARE(value(d, "fGammaRed").doubleValue(), 1.5);
            QCOMPARE(d->slider("sldGammaGreen")->value(), 42);
            QCOMPARE(value(d, "nClipBlack").intValue(), 4); // 260's low byte
            QCOMPARE(int(d->gammaDataB()[239]), int(tableOf(4, 240, 0.8)[239]));
            QVERIFY(!d->isChanged());

            choose(d->cmbSettingName(), 1);
            QCOMPARE(value(d, "fGammaRed").doubleValue(), 5.0);
            QCOMPARE(value(d, "fGammaGreen").doubleValue(), 0.2);
            QVERIFY(!d->isChanged());
            setValue(d, "currentGammaName", "No such gamma");
            QCOMPARE(value(d, "fGammaRed").doubleValue(), 5.0);
            d->close();
        });
        QCOMPARE(dialog->currentGammaName(), std::optional<QString>(u"No such gamma"_s));

        gammaDialog(*ui, false);
        runWith(dialog, [&](TwDlgCustomGamma* d) {
            QCOMPARE(d->labGammaRed()->text(), u"Gray"_s);
            QVERIFY(!d->slider("sldGammaGreen")->isVisible() && !d->btnRGBLink()->isVisible());
            QCOMPARE(value(d, "fGammaRed").doubleValue(), 1.0);
            QCOMPARE(value(d, "nClipWhite").intValue(), 255);
            QCOMPARE(d->cmbSettingName()->count(), 1);
            setValue(d, "currentGammaName", "Soft");
            QCOMPARE(value(d, "fGammaBlue").doubleValue(), 0.6);
            QVERIFY(value(d, "RGBLink").boolValue());
            QCOMPARE(bytes(d->gammaDataG()), bytes(d->gammaDataR()));
            QVERIFY(d->viewSample()->isMonochrome());
            d->close();
        });
    }

    // Delete asks first and, on OK, removes the preset from the model and the menu and selects
    // the first name left; with none left the list holds a blank and Delete is off.
    void deletingPresets() {
        auto ui = scanner.load();
        auto* model = ui->model().get();
        model->setCustomGamme("A", false, dict({{"Black", 0.6}}));
        model->setCustomGamme("B", false, dict({{"Black", 2.0}}));
        auto* dialog = gammaDialog(*ui, false, u"A"_s);
        runWith(dialog, [&](TwDlgCustomGamma* d) {
            scanner.boxAnswer = kVmxAnswerCancel;
            QTest::mouseClick(d->btnDelete(), Qt::LeftButton);
            QCOMPARE(model->customGammaNamesWithColor(false).size(), std::size_t(2));
            QCOMPARE(
                scanner.boxMessages(),
                QStringList{"The gamma setting “A” will be deleted.\nAre you sure you want to delete it?"});
            QCOMPARE(scanner.boxes.back().title, d->windowTitle());
            QCOMPARE(scanner.boxes.back().messageType, 0x40002u);
            scanner.boxAnswer = kVmxAnswerOK;
            QTest::mouseClick(d->btnDelete(), Qt::LeftButton);
            QCOMPARE(model->customGammaNamesWithColor(false), std::vector<std::string>{"B"});
            QCOMPARE(value(d, "currentGammaName"), TwValue("B"));
            QCOMPARE(value(d, "fGammaRed").doubleValue(), 2.0);
            QTest::mouseClick(d->btnDelete(), Qt::LeftButton);
            QCOMPARE(value(d, "gammaNames"), array({" "}));
            QVERIFY(!d->btnDelete()->isEnabled());
            d->close();
        });
        QCOMPARE(dialog->currentGammaName(), std::nullopt); // the blank is none
        QCOMPARE(ui->dataForKeyPath("content.Gray.Gamma").list()->size(),
                 ui->dataForKeyPath("content.Gamma").list()->size());
        QVERIFY(SampleScanner::stored("custom gamma").dict()->value("Gray").list()->empty());
    }
    // Save As asks for a new name (the kind's names offered, nothing proposed, overwriting asked
    // about) and makes the saved preset current; a cancelled name saves nothing; closing with
    // changes proposes the current name and saves over it; a new model reads the presets back;
    // fifty presets of a kind refuse a new name (the other kind counts on its own) but not one
    // saved over.
    void savingPresets() {
        {
            auto ui = scanner.load();
            auto* model = ui->model().get();
            model->setCustomGamme("Old", true, colorPreset(1.0, 1.0, 1.0, false, 0, 255));
            model->setCustomGamme("Grey one", false, dict({{"Black", 0.6}}));
            auto* dialog = gammaDialog(*ui, true, u"Old"_s);
            runWith(dialog, [&](TwDlgCustomGamma* d) {
                d->slider("sldGammaRed")->triggerAction(QAbstractSlider::SliderSingleStepSub);
                setValue(d, "nClipWhite", 200);
                NameAsked asked =
                    askedName([&] { QTest::mouseClick(d->btnSaveAs(), Qt::LeftButton); }, u"  Bright "_s);
                QCOMPARE(asked.offered, QStringList{u"Old"_s});
                QCOMPARE(asked.proposed, QString());
                QVERIFY(asked.checksOverwrite);
                const TwValue saved = model->customGamme("Bright", true);
                QCOMPARE(saved.dict()->value("Red").doubleValue(), double(0.98f));
                QCOMPARE(saved.dict()->value("ClipWhite"), TwValue(200));
                QCOMPARE(saved.dict()->value("RGBLink"), TwValue(false));
                QCOMPARE(value(d, "currentGammaName"), TwValue("Bright"));
                QCOMPARE(d->cmbSettingName()->count(), 2);
                QVERIFY(!d->isChanged());
                QCOMPARE(SampleScanner::stored("custom gamma").dict()->value("Color").list()->size(), 2u);

                askedName([&] { d->onSaveAs(); }, u"Never"_s, false);
                QVERIFY(model->customGamme("Never", true).isNull());

                setValue(d, "fGammaBlue", 2.0);
                QVERIFY(d->isChanged());
                asked = askedName([&] { QTest::mouseClick(d->btnClose(), Qt::LeftButton); }, QString());
                QCOMPARE(asked.proposed, u"Bright"_s);
                QVERIFY(!asked.checksOverwrite);
                QVERIFY(!d->isVisible());
            });
            QCOMPARE(model->customGamme("Bright", true).dict()->value("Blue").doubleValue(), 2.0);
            QCOMPARE(dialog->currentGammaName(), std::optional<QString>(u"Bright"_s));
        }
        auto ui = scanner.load();
        auto* model = ui->model().get();
        QCOMPARE(model->customGammaNamesWithColor(true), (std::vector<std::string>{"Old", "Bright"}));
        QCOMPARE(model->customGamme("Bright", true).dict()->value("ClipWhite"), TwValue(200));
        QVERIFY(model->gammaExist(TwValue("Bright"), ui->dataForKeyPath("content.Color.Gamma")));

        for (int i = 2; i < 50; ++i)
            model->setCustomGamme("G" + std::to_string(i), true, colorPreset(1.0, 1.0, 1.0, false, 0, 255));
        auto* dialog = gammaDialog(*ui, true);
        runWith(dialog, [&](TwDlgCustomGamma* d) {
            setValue(d, "fGammaRed", 3.0);
            askedName([&] { d->onSaveAs(); }, u"One too many"_s);
            QCOMPARE(model->customGammaNamesWithColor(true).size(), std::size_t(50));
            QCOMPARE(
                scanner.boxMessages(),
                QStringList{"No more items can be saved. Delete an item you no longer need and try again."});
            QCOMPARE(scanner.boxes[0].messageType, 0x20001u);
            askedName([&] { d->onSaveAs(); }, u"G7"_s);
            QCOMPARE(scanner.boxes.size(), std::size_t(2)); // the name dialog asks to overwrite
            QCOMPARE(model->customGamme("G7", true).dict()->value("Red").doubleValue(), 3.0);
        });
        dialog->setIsColor(false);
        runWith(dialog, [&](TwDlgCustomGamma* d) { askedName([&] { d->onSaveAs(); }, u"One too many"_s); });
        QCOMPARE(model->customGammaNamesWithColor(false),
                 (std::vector<std::string>{"Grey one", "One too many"}));
    }

    // From a tab's Custom... button, with the main dialog modal and modeless: the preset picked
    // becomes the tab's gamma; leaving with no preset leaves the tab's gamma as it was.
    void theTabsGammaBecomesThePreset_data() {
        QTest::addColumn<bool>("modal");
        row("modeless", false);
        row("modal", true);
    }
    void theTabsGammaBecomesThePreset() {
        QFETCH(bool, modal);
        auto ui = scanner.load({.show = true, .modal = modal});
        ui->model()->setCustomGamme("Vivid", true, colorPreset(1.4, 1.2, 1.0, false, 0, 255));
        set(*ui, "Data.ImageType", 2);
        QPushButton* custom = tabChild<QPushButton>(*ui, "ColorImage", "btnGamma");
        QVERIFY(custom->isEnabled());
        const TwValue before = ui->dataForKeyPath("temp.ColorImage.Gamma");
        auto leave = whenModal<TwDlgCustomGamma>([](TwDlgCustomGamma* d) {
            QVERIFY(d->isColor());
            d->onClose();
        });
        QTest::mouseClick(custom, Qt::LeftButton);
        QCOMPARE(ui->dataForKeyPath("temp.ColorImage.Gamma"), before);

        auto pick = whenModal<TwDlgCustomGamma>([](TwDlgCustomGamma* d) {
            choose(d->cmbSettingName(), u"Vivid"_s);
            QCOMPARE(value(d, "fGammaRed").doubleValue(), 1.4);
            d->onClose();
        });
        QTest::mouseClick(custom, Qt::LeftButton);
        QCOMPARE(valuesAt(*ui->model(), {"temp.ColorImage.Gamma", "Data.ColorImage.Front.Gamma"}),
                 array({"Vivid", "Vivid"}));
        QVERIFY(scanner.boxes.empty());
    }
    // VMX_EDITOR_SHOTS=<dir>: the picture of the README, a colour preset with the channels apart.
    void pictureForTheReadme() {
        if (qEnvironmentVariableIsEmpty("VMX_EDITOR_SHOTS"))
            QSKIP("VMX_EDITOR_SHOTS is not set");
        auto ui = scanner.load();
        ui->model()->setCustomGamme("Warm evening", true, colorPreset(1.6, 1.2, 0.8, false, 12, 245));
        ui->model()->setCustomGamme("Cool", true, colorPreset(0.9, 1.0, 1.3, false, 0, 255));
        runWith(gammaDialog(*ui, true, u"Warm evening"_s),
                [&](TwDlgCustomGamma* d) { QVERIFY(saveEditorPicture(d, u"CustomGamma"_s)); });
    }
};

QTEST_MAIN(TestCustomGamma)
#include "tst_customgamma.moc"
