// The Layout tab: rotation, duplex, double exposure and page separation (with a picture of the
// page order), blank-page removal with its ratio.
#pragma once

#include "TwainView.h"
#include "ui_TwainViewLayout.h"

class TwainViewLayout : public TwainView {
    Q_OBJECT
public:
    explicit TwainViewLayout(QWidget* parent = nullptr);

    void bindControlsToObject(TwainDialogData* model) override;
    // A page order chosen in the double-exposure or page-separation dialog changes the picture.
    void observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                const TwKeyValueChange& change, void* context) override;

    // The icon of a page order: "LeftRightMk2", "RightLeftMk2", "TopBottomMk2", "BottomTopMk2"
    // for 0 to 3, with a "D" before them for page separation; null for any other order.
    static const char* pageOrderIconName(std::int64_t order, bool pageSeparation);
    // The icon's file in this module's bundle, or an empty string.
    static std::string pageOrderIconPath(std::int64_t order, bool pageSeparation);

private:
    void updatePageOrderImage(TwObservable* model, bool pageSeparation);

    Ui::TwainViewLayout ui;
};
