// The Area tab: the scan area (X per side, Y, width, length) and up to three sub-areas per side,
// each with its rectangle and brightness, plus a halftone per side.
//
// The fields show "temp.Area." working copies in the user's unit (inches with two decimals or
// millimetres with one); the model converts them and keeps them on the paper. Each field's range
// follows the model's limits and is recomputed when a value it depends on changes. Front and back
// sub-area controls share one place; only the selected side shows.
#pragma once

#include "TwainDialogData.h"
#include "TwainView.h"
#include "ui_TwainViewArea.h"

#include <QPointer>

#include <cstdint>
#include <map>
#include <string>

class QLineEdit;
class TwainNumberFormatter;

// A formatter range as SetTextRangeFormatter takes it.
struct TwTextRange {
    int minimum = 0;
    int maximum = 0;
    int places = 0;
};

class TwainViewArea : public TwainView {
    Q_OBJECT
public:
    explicit TwainViewArea(QWidget* parent = nullptr);
    ~TwainViewArea() override;

    void bindControlsToObject(TwainDialogData* model) override;
    void unbindControls() override;
    void observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                const TwKeyValueChange& change, void* context) override;

    // Shows the side in "temp.Area.Side": hides the front sub-area controls for the back (1) and
    // the back ones otherwise.
    void onChangeSideOfObject(TwainDialogData* model);
    // Recomputes the range of every mapped field for the unit.
    void setFormatterForUnitAll(std::int32_t unit);
    // Recomputes one field's range from the model's limits for the key path: inches (0) with two
    // places, millimetres (1) with one. A zero-length range or another unit leaves it alone.
    void setFormatter(TwainNumberFormatter* formatter, const std::string& keyPath, std::int32_t unit);

    // The formatter range in the unit (scaled integers) of a range in millimetres; nothing for a unit
    // other than 0 and 1.
    static std::optional<TwTextRange> rangeForUnit(const TwRange& range, std::int32_t unit);

    // What the tab keeps, for those who look at it from outside.
    TwainNumberFormatter* formatterForKeyPath(const std::string& keyPath) const;
    const QList<QLineEdit*>& formatTexts() const { return arrFormatText; }
    // The 22 sub-area controls of a side (0 front, 1 back): halftone, then per sub-area its
    // check box, X, Y, width, length, brightness field and stepper.
    QList<QWidget*> sideControls(int side) const;

private:
    struct SubArea {
        QCheckBox* area;
        QLineEdit* x;
        QLineEdit* y;
        QLineEdit* width;
        QLineEdit* length;
        QLineEdit* brightness;
        QSpinBox* stepper;
    };
    static constexpr int kSides = 2;
    static constexpr int kSubAreas = 3;

    const SubArea& sub(int side, int n) const { return m_sub[side][n]; }
    TwBindList valuesList() const;
    // Reloads the field of the key path in "temp.TextEditDatakey" from the model.
    void refreshTextField(TwainDialogData* model);
    std::int32_t currentUnit() const;

    Ui::TwainViewArea ui;
    SubArea m_sub[kSides][kSubAreas];

    TwainNumberFormatter* fmtAreaOffsetX = nullptr;
    TwainNumberFormatter* fmtAreaOffsetY = nullptr;
    TwainNumberFormatter* fmtAreaWidth = nullptr;
    TwainNumberFormatter* fmtAreaLength = nullptr;
    TwainNumberFormatter* fmtSubAreaOffsetX = nullptr;
    TwainNumberFormatter* fmtSubAreaOffsetY = nullptr;
    // Per side and sub-area ("Font" is the front, as the names have always been spelt).
    TwainNumberFormatter* fmtSubAreaWidth[kSides][kSubAreas] = {};
    TwainNumberFormatter* fmtSubAreaLength[kSides][kSubAreas] = {};
    TwainNumberFormatter* fmtBright = nullptr;

    // The 29 number fields that change pattern with the unit.
    QList<QLineEdit*> arrFormatText;
    // Key path -> the formatter whose range follows it (18 entries).
    std::map<std::string, TwainNumberFormatter*> _dictFmtMap;
    // Changed key path -> key path whose range depends on it (15 entries).
    std::map<std::string, std::string> _dictEffectedMap;
    // "temp.Area." key path -> the control bound to it; made at bind time.
    std::map<std::string, QPointer<QWidget>> _dictTempText;
};
