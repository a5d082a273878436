#include "TwApplication.h"

#include "OrvaDebug.h"
#include "TwBundle.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QPointer>
#include <QThread>
#include <QTranslator>
#include <QWidget>

#include <mutex>

#if defined(__APPLE__)
#include <pthread.h>
#else
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace {

std::mutex g_appLock;
int g_references = 0;
QApplication* g_ownApp = nullptr;
QPointer<QWidget> g_modalWindow;
int g_runsStarted = 0;

// QApplication keeps references to these for its whole life.
int g_argc = 1;
char g_appName[] = "VmxUI";
char* g_argv[] = {g_appName, nullptr};

bool isProcessMainThread() {
#if defined(__APPLE__)
    return pthread_main_np() != 0;
#else
    return static_cast<pid_t>(syscall(SYS_gettid)) == getpid();
#endif
}

// The module's forms in the user's language: the translation ("Forms.qm") of the first language
// folder of the module's bundle that has one, in the order its string tables are chosen (the
// user's language, the development region, English). Installed on the application once, and again
// when the language chosen has changed; the translator belongs to the application.
void translateForms() {
    const std::shared_ptr<TwBundle> bundle = TwBundle::moduleBundle();
    const std::string file = bundle ? bundle->pathForResource("Forms", "qm") : std::string();
    static QPointer<QTranslator> installed;
    const QString path = QString::fromStdString(file);
    if (installed && installed->filePath() == path)
        return;
    if (installed) {
        QCoreApplication::removeTranslator(installed);
        delete installed;
    }
    if (path.isEmpty())
        return; // English, as the forms are written
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (!translator->load(path)) {
        OrvaLog(kOrvaLogError, "ERROR: TwApplication: cannot read the forms' translation %s\n", file.c_str());
        delete translator;
        return;
    }
    QCoreApplication::installTranslator(translator);
    installed = translator;
    OrvaLog(kOrvaLogInfo, "TwApplication: forms translated by %s\n", file.c_str());
}

} // namespace

namespace TwApplication {

bool acquire() {
    std::lock_guard lock(g_appLock);
    if (!QCoreApplication::instance()) {
        if (!isProcessMainThread()) {
            OrvaLog(kOrvaLogError,
                    "ERROR: TwApplication::acquire: no application and not on the main thread; "
                    "nothing is shown\n");
            return false;
        }
        OrvaLog(kOrvaLogInfo, "TwApplication::acquire: the host has no application, making one\n");
        g_ownApp = new QApplication(g_argc, g_argv);
        // Closing our windows must never end the host's loop.
        QApplication::setQuitOnLastWindowClosed(false);
    } else if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        OrvaLog(kOrvaLogError, "ERROR: TwApplication::acquire: the host's application has no widgets\n");
        return false;
    }
    translateForms();
    ++g_references;
    return true;
}

void release() {
    std::lock_guard lock(g_appLock);
    if (g_references == 0)
        return;
    if (--g_references == 0 && g_ownApp && QCoreApplication::instance() == g_ownApp) {
        OrvaLog(kOrvaLogInfo, "TwApplication::release: deleting the module's application\n");
        g_modalWindow = nullptr;
        delete g_ownApp;
        g_ownApp = nullptr;
    }
}

bool ownsApplication() {
    return g_ownApp && QCoreApplication::instance() == g_ownApp;
}

bool isGuiThread() {
    auto* app = QCoreApplication::instance();
    return !app || QThread::currentThread() == app->thread();
}

void runOnGuiThread(const std::function<void()>& f) {
    if (isGuiThread()) {
        f();
        return;
    }
    QMetaObject::invokeMethod(QCoreApplication::instance(), f, Qt::BlockingQueuedConnection);
}

void runModalForWindow(QWidget* window) {
    if (!window)
        return;
    if (g_modalWindow && g_modalWindow != window)
        stopModal();
    g_modalWindow = window;
    ++g_runsStarted;
    if (window->isVisible() && window->windowModality() != Qt::ApplicationModal) {
        // Qt takes a new modality only when the window is shown again.
        window->hide();
    }
    window->setWindowModality(Qt::ApplicationModal);
    window->show();
    window->raise();
    window->activateWindow();
}

void stopModal() {
    QPointer<QWidget> window = g_modalWindow;
    g_modalWindow = nullptr;
    if (!window)
        return;
    if (!window->isVisible()) {
        window->setWindowModality(Qt::NonModal);
        return;
    }
    // Qt takes a window off its process-wide list of modal windows only when the window is hidden
    // while it is still modal; a window made non-modal while shown would stay on the list after it
    // is deleted. So hide it modal, and show it again without modality.
    window->hide();
    window->setWindowModality(Qt::NonModal);
    window->show();
}

QWidget* modalWindow() {
    return g_modalWindow;
}

int modalRunsStarted() {
    return g_runsStarted;
}

void wakeUp() {
    auto* app = QCoreApplication::instance();
    if (!app)
        return;
    if (auto* dispatcher = QAbstractEventDispatcher::instance(app->thread()))
        dispatcher->wakeUp();
}

} // namespace TwApplication
