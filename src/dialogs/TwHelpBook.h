// The data source's help book: its name, kept from the first bundle that has one, and opening its
// first page. The book is looked for in the installed help folder first, then in the data source's
// bundle; a help bundle keeps its book under Contents/Resources or flat in its folder.
#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>

class TwBundle;

class TwHelpBook {
public:
    // Keeps the help book name of the first bundle that has one; false when none has.
    bool registerHelp(const QStringList& bundlePaths);
    QString name() const { return m_name; }
    void clear() { m_name.clear(); }

    // Opens the first page of the data source's book; false (logged) when there is none or the
    // desktop could not open it.
    static bool open(const TwBundle* dataSource);

    // ---- Replaceable for tests ----

    // Opens the help page; the default is QDesktopServices::openUrl.
    using UrlOpener = std::function<bool(const QUrl&)>;
    static void setUrlOpener(UrlOpener opener);
    // Where the help books are looked for first.
    static void setHelpRoot(const QString& folder);

private:
    QString m_name;
};
