// The custom paper-size dialog: the user's named paper sizes in a list, a name, a width and a
// length to save as a new paper or over one of the same name, and the smallest and largest page
// the feeder (and a connected flatbed) takes. Sizes are kept in millimetres; only the fields show
// inches when the user picks them. The list itself is the settings model's.
#pragma once

#include "TwPanel.h"
#include "TwPaperSizeTableModel.h"

#include <QStringList>

#include <memory>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
class TwainDialogData;
class TwainNumberFormatter;
namespace Ui {
class TwDlgPaperSize;
}

class TwDlgPaperSize : public TwPanel {
    Q_OBJECT
public:
    // "unitOld" before any conversion.
    static constexpr int kNoUnit = 65535;
    static constexpr int kMaxPapers = 50;
    static constexpr int kMaxNameLength = 32;

    explicit TwDlgPaperSize(QWidget* parent = nullptr);
    ~TwDlgPaperSize() override;

    // Shows the model's papers, runs modally, and lets go of them again.
    int runModal() override;
    // Runs over the main window; afterwards the paper lists are renewed, the newest paper added
    // that still exists becomes the selection (a deleted selection gives way to the model's
    // standard paper), and a change of the paper's size closes the preview and adjusts the area.
    void editCustomPapers();
    void bindControlAll() override;
    void observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                const TwKeyValueChange& change, void* context) override;

    // A row selected loads its paper into the fields; Delete follows the selection.
    void tableViewSelectionDidChange();

    // Names of the papers added during this run, the newest first.
    const QStringList& addedPaperSize() const { return m_addedPaperSize; }
    // The unit of the fields (0 inches, 1 millimetres). The panel's own values are "unit",
    // "paperName", "paperWidth" and "paperLength" (in the unit).
    int unit();
    TwPaperSizeTableModel* papersModel() { return &m_papers; }
    // The selected row, or -1.
    int selectedRow() const;
    void selectRow(int row);

    QLineEdit* txtName() const;
    QLineEdit* txtWidth() const;
    QLineEdit* txtLength() const;
    QComboBox* cmbUnit() const;
    QLabel* labMutil() const;
    QPushButton* btnSave() const;
    QPushButton* btnDelete() const;
    QPushButton* btnClose() const;
    QPushButton* btnHelp() const;
    QTableView* tblPaperSize() const;

public slots:
    // Saves the entered paper as a new one or over the one of that name; the list may hold 50.
    void onSave();
    // Deletes the selected paper after a question.
    void onDelete();
    void onClose();

public:
    // Feeder and flatbed limits in millimetres.
    double dADFMinWidth = 0, dADFMinLength = 0, dADFMaxWidth = 0, dADFMaxLength = 0;
    double dFlatMinWidth = 0, dFlatMinLength = 0, dFlatMaxWidth = 0, dFlatMaxLength = 0;

private:
    // The unit changed: field ranges, limit labels, and the entered size converted.
    void updateFormatter();
    // Shows millimetres in the label in the current unit; 0 shows "-".
    void setLabel(QLabel* label, double millimetres);
    QString sizeText(double widthMillimetres, double lengthMillimetres);
    void readLimits();
    // The string-table format of the key filled with one argument.
    QString formatted(const char* key, const QString& argument) const;

    std::unique_ptr<Ui::TwDlgPaperSize> ui;
    TwPaperSizeTableModel m_papers;
    TwainNumberFormatter* fmtDisplay;
    TwainNumberFormatter* fmtWidth;
    TwainNumberFormatter* fmtLength;
    int unitOld = kNoUnit;
    QStringList m_addedPaperSize;
};
