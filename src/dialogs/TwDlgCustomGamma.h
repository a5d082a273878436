// The custom gamma editor: named presets of one gamma per channel (red, green, blue for colour
// images; one for grey and binary images), a black and a white clip point. Sliders and fields edit
// the panel's own values ("nGammaRed" ... slider positions, "fGammaRed" ... gammas, "RGBLink",
// "enableGB", "nClipBlack", "nClipWhite", "currentGammaName", "gammaNames"); the tone tables follow
// every change and feed the curve view and the sample picture. Presets are kept by the settings model, saved
// under a name from the setting-name dialog, loaded by picking a name, and deleted after a question.
#pragma once

#include "TwGammaTable.h"
#include "TwPanel.h"

#include <QPointer>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;
class TwGammaSampleView;
class TwDlgSaveSetting;
class TwGammaTableView;
class TwainDialogData;
namespace Ui {
class TwDlgCustomGamma;
}

class TwDlgCustomGamma : public TwPanel {
    Q_OBJECT
public:
    static constexpr int kMaxPresets = 50;

    explicit TwDlgCustomGamma(QWidget* parent = nullptr);
    ~TwDlgCustomGamma() override;

    // Colour presets (three channels) or monochrome ones (one). Set before running.
    void setIsColor(bool isColor) { m_isColor = isColor; }
    bool isColor() const { return m_isColor; }
    // The preset being edited: a name, or none.
    void setCurrentGammaName(const std::optional<QString>& name);
    std::optional<QString> currentGammaName();
    bool isChanged() const { return m_isChanged; }

    // Captions and channels for the kind, then the modal run; a blank name is none afterwards.
    int runModal() override;
    // Edits the presets of an image kind (0 binary, 1 gray, 2 colour) starting from the kind's
    // current preset, over the main window; the preset shown at the end becomes the kind's.
    void editGammaOf(int kind);
    // Binds the controls, loads the current preset (defaults when it does not exist) and builds
    // the tables; nothing counts as changed yet.
    void bindControlAll() override;
    void observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                const TwKeyValueChange& change, void* context) override;

    // Asks before closing with changes: they are saved under the current name.
    bool windowShouldClose() override;
    // Asks for a name (the current one when saving in place) and stores the preset under it.
    void saveGamma(bool inPlace);
    void RefreshBtnDeleteStatus();
    // Loads the named preset of the current kind; without one, the defaults only when isInit.
    void setDataFromSetting(const QString& name, bool isInit);

    const std::uint8_t* gammaDataR() const { return m_tables.red.data(); }
    const std::uint8_t* gammaDataG() const { return m_tables.green.data(); }
    const std::uint8_t* gammaDataB() const { return m_tables.blue.data(); }
    const TwGammaTables& tables() const { return m_tables; }

    QComboBox* cmbSettingName() const;
    QPushButton* btnSaveAs() const;
    QPushButton* btnDelete() const;
    QPushButton* btnClose() const;
    QCheckBox* btnRGBLink() const;
    QSlider* slider(const char* name) const;
    QLineEdit* field(const char* name) const;
    QLabel* labGammaRed() const;
    TwGammaTableView* viewGamma() const;
    TwGammaSampleView* viewSample() const;

public slots:
    // Saves under a new name.
    void onSaveAs();
    // Deletes the current preset after a question.
    void onDelete();
    // Saves under the current name when something changed, then closes.
    void onClose();

private:
    void reloadGammaNames();
    // Red's slider position to green and blue, each announced.
    void copyRedToGreenAndBlue();
    void makeTables();
    void redisplay();
    TwValue presetRecord();

    std::unique_ptr<Ui::TwDlgCustomGamma> ui;
    TwGammaTables m_tables;
    bool m_isColor = true;
    bool m_isChanged = false;
    QPointer<TwDlgSaveSetting> m_nameDialog; // asks the name a preset is saved under
};
