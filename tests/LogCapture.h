#pragma once

#include "OrvaDebug.h"

#include <QFile>
#include <QString>
#include <QTemporaryDir>

// Points the diagnostic log at a fresh file for the lifetime of the object.
class LogCapture {
public:
    LogCapture() : m_path(m_dir.path() + "/orva.log") {
        QFile f(m_path);
        f.open(QIODevice::WriteOnly);
        OrvaSetLogPaths(m_path.toUtf8().constData(), nullptr);
    }
    ~LogCapture() { OrvaSetLogPaths(nullptr, nullptr); }
    QString text() const {
        QFile f(m_path);
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }
    int count(const QString& needle) const { return int(text().count(needle)); }

private:
    QTemporaryDir m_dir;
    QString m_path;
};
