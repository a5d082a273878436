// The Common tab ("Image Processing"): automatic crop and deskew options, automatic colour
// distinction, margins, page fitting, length control, background colour and the cleanup options.
#pragma once

#include "TwainView.h"
#include "ui_TwainViewCommon.h"

class TwainViewCommon : public TwainView {
    Q_OBJECT
public:
    explicit TwainViewCommon(QWidget* parent = nullptr);

    void bindControlsToObject(TwainDialogData* model) override;
    // A new image type relabels the distinction box and the gray/colour text.
    void observeValueForKeyPath(const std::string& keyPath, TwainDialogData* object,
                                const TwKeyValueChange& change, void* context) override;

    // The texts the labels take for an image type: the distinction box title's key and the
    // gray/colour key. 22 and 23 are the multi-resolution types; only 22 is gray.
    static const char* distinctionKey(unsigned imageType);
    static const char* grayColorKey(unsigned imageType);

private:
    Ui::TwainViewCommon ui;
};
