#include "TwainViewFeed.h"
#include "TwainDialogData.h"

#include "TwRangeHelpers.h"

TwainViewFeed::TwainViewFeed(QWidget* parent) : TwainView(parent) {
    setUpForm(ui);
    SetTextRange(ui.txtTimeOut, 1, 300, 0); // seconds
    SetTextRange(ui.txtPage, 1, 254, 0);
}

void TwainViewFeed::bindControlsToObject(TwainDialogData* model) {
    TwainView::bindControlsToObject(model);
    if (!model)
        return;
    const TwBindList contents{
        "content.ManualFeed",
        ui.cmbManualFeed,
        "content.DoubleFeedSense",
        ui.cmbSensitivity,
    };
    const TwBindList enables{
        "enable.Feed.ManualFeedTimeOut",
        ui.txtTimeOut,
        "enable.Feed.ManualFeedUnlimited",
        ui.btnTimeOutUnlimited,
        "enable.Feed.DoubleFeed",
        ui.btnDetectDoubleFeed,
        "enable.Feed.DoubleFeedSensitivity",
        ui.cmbSensitivity,
        "enable.Feed.FeedPageMode",
        ui.rdoPage,
        "enable.Feed.FeedPage",
        ui.txtPage,
        "enable.Feed.NoLookAhead",
        ui.cmbNoLookAhead,
    };
    const TwBindList values{
        "Data.Feed.ManualFeedMode",
        ui.cmbManualFeed,
        "Data.Feed.ManualFeedTimeOut",
        ui.txtTimeOut,
        "Data.Feed.ManualFeedUnlimited",
        ui.btnTimeOutUnlimited,
        "Data.Feed.DetectDoubleFeedEnable",
        ui.btnDetectDoubleFeed,
        "Data.Feed.DetectDoubleFeedSensitivity",
        ui.cmbSensitivity,
        "Data.Feed.FeedPageMode",
        ui.rdoPage,
        "Data.Feed.FeedPageNumber",
        ui.txtPage,
    };
    const TwBindList controlDefs{
        "ManualFeed",
        ui.cmbManualFeed,
        "ManualFeedTimeOut",
        ui.txtTimeOut,
        "ManualFeedUnlimited",
        ui.btnTimeOutUnlimited,
        "DetectDoubleFeed",
        ui.btnDetectDoubleFeed,
        "DetectDoubleFeedSensitivity",
        ui.cmbSensitivity,
        "FeedPageMode",
        ui.rdoPage,
        "FeedPageNumber",
        ui.txtPage,
        "NoLookAhead",
        ui.cmbNoLookAhead,
    };
    bindLists(controlDefs, contents, enables, values);
    // The look-ahead choices are the form's own ("On", "Off"), with no list in the model to match
    // a value against: the setting is the chosen row.
    responderBinding()->bindSelectedIndex(ui.cmbNoLookAhead, model, "Data.Feed.NoLookAhead");
}
