// Every Designer form of the product, made by class name, so that the form tests need no list of
// their own: the setting tabs (from the one list of tabs), then the main panel, then the others.
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace FormCatalog {
QStringList classNames();
// A new widget with the named form set up and prepared on it (the panels are QDialogs), or null
// for a name the catalog does not know.
QWidget* create(const QString& className, QWidget* parent = nullptr);
} // namespace FormCatalog
