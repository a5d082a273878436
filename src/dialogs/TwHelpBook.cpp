#include "TwHelpBook.h"

#include "OrvaDebug.h"
#include "TwBundle.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>

#include <utility>

namespace {
TwHelpBook::UrlOpener& urlOpener() {
    static TwHelpBook::UrlOpener opener;
    return opener;
}

QString& helpRoot() {
    static QString root = QStringLiteral("/Library/Documentation/OrvanicVMX");
    return root;
}

QString qs(const std::string& s) {
    return QString::fromStdString(s);
}

// The first page of the book the data source names, or empty.
QString firstPage(const TwBundle* ds, QString* folderName) {
    TwValue folderValue = ds ? ds->objectForInfoDictionaryKey("CFBundleHelpBookFolder") : TwValue();
    const QString folder = folderValue.isString() ? qs(*folderValue.str()) : QString();
    *folderName = folder;
    QString bundlePath;
    if (!folder.isEmpty()) {
        QString installed = QDir(helpRoot()).filePath(folder);
        if (QFileInfo(installed).isDir())
            bundlePath = installed;
        else if (ds)
            bundlePath = qs(ds->pathForResource(folder.toStdString(), ""));
    }
    if (bundlePath.isEmpty())
        return {};
    auto help = TwBundle::bundleWithPath(bundlePath.toStdString());
    QString book = help ? qs(help->pathForResource("HelpBook", "")) : QString();
    if (book.isEmpty() && QFileInfo(bundlePath + QStringLiteral("/HelpBook")).isDir())
        book = bundlePath + QStringLiteral("/HelpBook");
    if (!book.isEmpty() && QFileInfo::exists(book + QStringLiteral("/index.html")))
        return book + QStringLiteral("/index.html");
    return {};
}
} // namespace

bool TwHelpBook::registerHelp(const QStringList& bundlePaths) {
    for (const QString& path : bundlePaths) {
        auto bundle = TwBundle::bundleWithPath(path.toStdString());
        if (!bundle)
            continue;
        TwValue name = bundle->objectForInfoDictionaryKey("CFBundleHelpBookName");
        if (!name.isString())
            continue;
        OrvaLog(kOrvaLogDebug, "\tregisterBooksInBundle: '%s'\n", path.toUtf8().constData());
        m_name = qs(*name.str());
        return true;
    }
    return false;
}

bool TwHelpBook::open(const TwBundle* dataSource) {
    QString folder;
    const QString page = firstPage(dataSource, &folder);
    if (page.isEmpty()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: no help book (folder '%s')\n", "TwHelpBook::open",
                folder.toUtf8().constData());
        return false;
    }
    OrvaLog(kOrvaLogDebug, "\t%s: %s\n", "TwHelpBook::open", page.toUtf8().constData());
    const QUrl url = QUrl::fromLocalFile(page);
    if (urlOpener() ? urlOpener()(url) : QDesktopServices::openUrl(url))
        return true;
    // No browser or launcher on the machine: as good as no help book.
    OrvaLog(kOrvaLogError, "ERROR: %s: the desktop could not open %s\n", "TwHelpBook::open",
            page.toUtf8().constData());
    return false;
}

void TwHelpBook::setUrlOpener(UrlOpener opener) {
    urlOpener() = std::move(opener);
}

void TwHelpBook::setHelpRoot(const QString& folder) {
    helpRoot() = folder;
}
