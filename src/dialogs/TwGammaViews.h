// The two pictures of the custom gamma editor: the tone curves of the three channels, and a sample
// picture shown through them. Both read the editor's tables, which they do not own, and paint
// themselves when asked to update.
#pragma once

#include "TwGammaTable.h"

#include <QByteArray>
#include <QImage>
#include <QWidget>

// The curves on black, red, green and blue, added where they overlap: where all three coincide the
// curve is white. Input levels run left to right, output levels bottom to top.
class TwGammaTableView : public QWidget {
    Q_OBJECT
public:
    explicit TwGammaTableView(QWidget* parent = nullptr);

    // Null draws the black ground only.
    void setTables(const TwGammaTables* tables);
    // The view as it paints itself, at the given size.
    QImage render(const QSize& size) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const TwGammaTables* m_tables = nullptr;
};

// The module's "sample.bmp" converted through the tables at every paint, in grey for monochrome
// presets, within a white frame. A picture that cannot be read leaves the view dark; one of
// another depth than 8 or 24 bits is shown unconverted.
class TwGammaSampleView : public QWidget {
    Q_OBJECT
public:
    explicit TwGammaSampleView(QWidget* parent = nullptr);

    void setTables(const TwGammaTables* tables);
    void setMonochrome(bool monochrome);
    bool isMonochrome() const { return m_monochrome; }

    // Reads a BMP file as the sample; false (logged) when it cannot be read. Without a call the
    // module bundle's resource "sample" of type "bmp" is read when first needed.
    bool loadSample(const QString& path);
    // The bytes of the sample file as read.
    const QByteArray& sampleBytes();
    // The sample through the tables, grey when monochrome; a null image when there is none.
    QImage convertedImage();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void ensureSample();

    const TwGammaTables* m_tables = nullptr;
    QByteArray m_sample;
    bool m_sampleTried = false;
    bool m_monochrome = false;
};
