#include "FormCatalog.h"

#include "TwFormPreparation.h"
#include "TwSettingTabs.h"
#include "ui_TwDlgAbout.h"
#include "ui_TwDlgCustom.h"
#include "ui_TwDlgCustomGamma.h"
#include "ui_TwDlgDoubleExposure.h"
#include "ui_TwDlgMain.h"
#include "ui_TwDlgPageSeparation.h"
#include "ui_TwDlgPaperSize.h"
#include "ui_TwDlgSaveSetting.h"
#include "ui_TwDlgScanning.h"
#include "ui_TwainViewArea.h"
#include "ui_TwainViewBasic.h"
#include "ui_TwainViewBinaryImage.h"
#include "ui_TwainViewColorImage.h"
#include "ui_TwainViewCommon.h"
#include "ui_TwainViewControlSheet.h"
#include "ui_TwainViewFeed.h"
#include "ui_TwainViewGrayImage.h"
#include "ui_TwainViewImprinter.h"
#include "ui_TwainViewLayout.h"
#include "ui_TwainViewPatchCode.h"

#include <QDialog>
#include <QWidget>

namespace {

template <class Form, class Base = QWidget> QWidget* make(QWidget* parent) {
    auto* widget = new Base(parent);
    Form form;
    form.setupUi(widget);
    return widget;
}

struct Entry {
    const char* className;
    QWidget* (*create)(QWidget*);
};

#define TW_TAB_FORM(identifier, inMainPanel) {"TwainView" #identifier, &make<Ui::TwainView##identifier>},
const Entry kTabForms[] = {TW_SETTING_TABS(TW_TAB_FORM)};
#undef TW_TAB_FORM

const Entry kPanelForms[] = {
    {"TwDlgMain", &make<Ui::TwDlgMain, QDialog>},
    {"TwDlgSaveSetting", &make<Ui::TwDlgSaveSetting, QDialog>},
    {"TwDlgPaperSize", &make<Ui::TwDlgPaperSize, QDialog>},
    {"TwDlgCustomGamma", &make<Ui::TwDlgCustomGamma, QDialog>},
    {"TwDlgAbout", &make<Ui::TwDlgAbout, QDialog>},
    {"TwDlgScanning", &make<Ui::TwDlgScanning, QDialog>},
    {"TwDlgDoubleExposure", &make<Ui::TwDlgDoubleExposure, QDialog>},
    {"TwDlgPageSeparation", &make<Ui::TwDlgPageSeparation, QDialog>},
    {"TwDlgCustom", &make<Ui::TwDlgCustom, QDialog>},
};

template <class Visit> void forEachForm(Visit visit) {
    for (const Entry& entry : kTabForms)
        visit(entry);
    for (const Entry& entry : kPanelForms)
        visit(entry);
}

} // namespace

QStringList FormCatalog::classNames() {
    QStringList names;
    forEachForm([&](const Entry& entry) { names << QString::fromLatin1(entry.className); });
    return names;
}

QWidget* FormCatalog::create(const QString& className, QWidget* parent) {
    QWidget* form = nullptr;
    forEachForm([&](const Entry& entry) {
        if (!form && className == QLatin1String(entry.className))
            form = entry.create(parent);
    });
    if (form)
        TwPrepareForm(form);
    return form;
}
