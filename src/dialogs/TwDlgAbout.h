// The about panel: the data source's version texts (from its bundle's info dictionary) and the
// scanner's product, version and interface (from the settings model).
#pragma once

#include "TwPanel.h"

#include <memory>

class QLabel;
namespace Ui {
class TwDlgAbout;
}

class TwDlgAbout : public TwPanel {
    Q_OBJECT
public:
    explicit TwDlgAbout(QWidget* parent = nullptr);
    ~TwDlgAbout() override;

    // The bundle's "CFBundleVersion", "Version Information" and "NSHumanReadableCopyright" are
    // copied into the panel's own values and shown from there; the scanner's texts from the model.
    void bindControlAll() override;

    QLabel* txtDriverVersion() const;
    QLabel* txtDriverVerInfo() const;
    QLabel* txtScannerProduct() const;
    QLabel* txtScannerVersion() const;
    QLabel* txtScannerInterface() const;
    QLabel* txtCopyright() const;

public slots:
    void onOK();

private:
    std::unique_ptr<Ui::TwDlgAbout> ui;
};
