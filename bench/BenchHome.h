// A home of the benchmark's own: for the life of the object HOME and XDG_CONFIG_HOME name a
// temporary folder, so that no figure reads or writes the user's settings (the factory profile,
// "Runned", saved profiles) and every run starts from none. Make it first in main(), before
// anything reads the environment.
#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

class BenchHome {
public:
    BenchHome() {
        if (!m_folder.isValid()) {
            std::fprintf(stderr, "cannot make a temporary home: %s\n", qPrintable(m_folder.errorString()));
            std::exit(1);
        }
        qputenv("HOME", QFile::encodeName(m_folder.path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder.filePath(QStringLiteral("config"))));
    }
    BenchHome(const BenchHome&) = delete;
    BenchHome& operator=(const BenchHome&) = delete;

private:
    QTemporaryDir m_folder;
};
