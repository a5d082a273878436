// The two dialogs that pick a page order: double exposure (two pages scanned onto one, with the
// paper size of the result) and page separation (one page split into two). The four orders are
// left to right, right to left, top to bottom and bottom to top, each with its picture. OK accepts
// (returnCode 1), Cancel and the close box do not. Each dialog's edit run loads the model's values,
// runs and stores what was accepted.
#pragma once

#include "TwPanel.h"

#include <memory>

class QComboBox;
class QPushButton;
class TwSegmentedControl;
namespace Ui {
class TwDlgDoubleExposure;
class TwDlgPageSeparation;
} // namespace Ui

class TwDlgPageOrder : public TwPanel {
    Q_OBJECT
public:
    // The page order in the panel's own values, shown by its radio group.
    void setPageOrder(int order);
    int pageOrder();

    void bindControlAll() override;

public slots:
    void onOK();
    void onCancel();

protected:
    explicit TwDlgPageOrder(QWidget* parent);
    // The radio group that shows the page order, given the order pictures of the kind.
    void setPageOrderControl(TwSegmentedControl* control, bool pageSeparation);

private:
    TwSegmentedControl* m_pageOrderControl = nullptr;
};

class TwDlgDoubleExposure : public TwDlgPageOrder {
    Q_OBJECT
public:
    explicit TwDlgDoubleExposure(QWidget* parent = nullptr);
    ~TwDlgDoubleExposure() override;

    // Runs with the model's page order and paper of double exposure, and stores them on OK.
    void editDoubleExposure();

    // The paper size as an index into the model's "content.PaperSizeAllPlusNone".
    void setPaperSize(int index);
    int paperSize();

    void bindControlAll() override;

    TwSegmentedControl* rdoDoubleExposure() const;
    QComboBox* cmbPaperSize() const;
    QPushButton* btnOK() const;
    QPushButton* btnCancel() const;

private:
    std::unique_ptr<Ui::TwDlgDoubleExposure> ui;
};

class TwDlgPageSeparation : public TwDlgPageOrder {
    Q_OBJECT
public:
    explicit TwDlgPageSeparation(QWidget* parent = nullptr);
    ~TwDlgPageSeparation() override;

    // Runs with the model's page order of page separation, and stores it on OK.
    void editPageSeparation();

    TwSegmentedControl* rdoPageSeparation() const;
    QPushButton* btnOK() const;
    QPushButton* btnCancel() const;

private:
    std::unique_ptr<Ui::TwDlgPageSeparation> ui;
};
