// The customize dialog: the user's border-removal and shadow-removal margins (left, top, right,
// bottom) in millimetres or inches. The model keeps them in tenths of a millimetre under
// "Customize.BorderRemoval" and "Customize.RemoveShadow"; the panel shows them in its own values
// ("unit", "removalLeft" ... "shadowBottom") in the chosen unit, and OK stores and saves them.
//
// Changing "unit" converts the eight margins between the units, with a change notice for each so
// that the fields show the new numbers; setting it to the unit it has changes nothing. The largest
// margins are the forms' "maximumMillimetres" of each group; a field shows one decimal in
// millimetres and two in inches.
#pragma once

#include "TwPanel.h"

#include <cstdint>
#include <memory>

class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class TwainNumberFormatter;
namespace Ui {
class TwDlgCustom;
}

class TwDlgCustom : public TwPanel {
    Q_OBJECT
public:
    enum Unit : std::uint32_t { Inch = 0, Millimetre = 1 };
    // The own-value keys of the margins, border removal first, each group left, top, right, bottom.
    static const char* const kMarginKeys[8];

    explicit TwDlgCustom(QWidget* parent = nullptr);
    ~TwDlgCustom() override;

    std::uint32_t unit();
    void setUnit(std::uint32_t unit);
    // A margin in the current unit, by its key.
    double margin(const char* key);

    // Reads the model's margins into the own values in the current unit, then binds.
    void bindControlAll() override;
    void observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                const TwKeyValueChange& change, void* context) override;

    QComboBox* cmbUnit() const;
    QLineEdit* field(const char* key) const;
    QPushButton* btnOK() const;
    QPushButton* btnCancel() const;
    TwainNumberFormatter* fmtRemoval() const { return m_fmtRemoval; }
    TwainNumberFormatter* fmtShadow() const { return m_fmtShadow; }

public slots:
    // Stores the margins in the model (tenths of a millimetre) and saves them; the result of the
    // run stays 0, as nobody asks for it.
    void onOK();
    void onCancel();

private:
    // The formatters' ranges and decimals for the unit.
    void setFormatterUnit(std::uint32_t unit);
    void convertMargins(std::uint32_t from, std::uint32_t to);

    std::unique_ptr<Ui::TwDlgCustom> ui;
    TwainNumberFormatter* m_fmtRemoval = nullptr;
    TwainNumberFormatter* m_fmtShadow = nullptr;
};
