// The Designer forms of the settings dialog: one per setting tab, the main panel and the other
// panels. The catalog makes any of them by class name, so the main panel and the tests need no list
// of their own.
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

class TwFormCatalog {
public:
    // Every form's class name: the setting tabs, then the main panel "TwDlgMain", then the others.
    static QStringList classNames();
    // A new widget with the named form set up on it (the panels are QDialogs), or null for a
    // name the catalog does not know.
    static QWidget* create(const QString& className, QWidget* parent = nullptr);
    // What the forms ask of their widgets through dynamic properties, kept up as things change:
    // - "fieldChars" (number field): wide enough for that many digits in its font and style;
    // - "stepperFor" (spin box): only its arrows; the named field beside it shows the value and
    //   steps with Up and Down, and the stepper is no Tab stop of its own;
    // - "follows" (label): hidden and shown with the named control, so that a row the scanner
    //   model hides leaves no label behind.
    // and Tab follows the order in which the controls are seen (TwSetVisualTabOrder).
    // create() does it; a class that sets a form up itself calls it once after setupUi().
    static void prepare(QWidget* form);
};
