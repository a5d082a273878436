// Who owns the Qt application: the module makes one when the host has none and deletes it with
// the last facade that used it; an application the host made is never deleted. No application is
// made off the main thread. Runs without an application of its own.
#include "OrvaDebug.h"
#include "TwApplication.h"
#include "VmxUIControllerImpl.h"

#include <QApplication>
#include <QTest>

#include <thread>

namespace {
TwValue capabilities() {
    return TwValue::dictionary({{"Data", TwValue::dictionary({{"Resolution", 300}})},
                                {"Default", TwValue::dictionary({{"Resolution", 300}})}});
}

std::unique_ptr<VmxUIControllerImpl> facade() {
    auto ui = std::make_unique<VmxUIControllerImpl>();
    OrvaSetLogPaths(nullptr, nullptr);
    ui->setDataWithDictionary(capabilities(), 0);
    return ui;
}
} // namespace

class TestApplication : public QObject {
    Q_OBJECT
private slots:
    void noApplicationIsMadeOffTheMainThread() {
        QCOMPARE(QCoreApplication::instance(), nullptr);
        auto ui = facade();
        int answer = -1;
        std::thread worker([&] { answer = ui->showMessageBox("From a worker", "", 1); });
        worker.join();
        QCOMPARE(answer, 0);
        QCOMPARE(QCoreApplication::instance(), nullptr);
    }

    void theModuleMakesAnApplicationAndDeletesItAtTheEnd() {
        QCOMPARE(QCoreApplication::instance(), nullptr);
        auto first = facade();
        first->showUi(false, false, false); // flags only: no application needed yet
        QCOMPARE(QCoreApplication::instance(), nullptr);
        first->showUi(true, false, false);
        QVERIFY(QCoreApplication::instance() != nullptr);
        QVERIFY(TwApplication::ownsApplication());
        QVERIFY(!QApplication::quitOnLastWindowClosed());

        auto second = facade();
        second->showUi(true, false, false);
        first->hideUi();
        first.reset();
        QVERIFY2(QCoreApplication::instance() != nullptr, "still used by the second facade");
        second->hideUi();
        second->processEvents(10);
        second.reset();
        QCOMPARE(QCoreApplication::instance(), nullptr);
    }

    void theHostsApplicationIsNeverDeleted() {
        int argc = 1;
        char name[] = "host";
        char* argv[] = {name, nullptr};
        {
            QApplication host(argc, argv);
            {
                auto ui = facade();
                ui->showUi(true, true, false);
                QVERIFY(!TwApplication::ownsApplication());
                ui->processEvents(10);
                ui->hideUi();
            }
            QCOMPARE(QCoreApplication::instance(), &host);
        }
        QCOMPARE(QCoreApplication::instance(), nullptr);
    }
};

QTEST_APPLESS_MAIN(TestApplication)
#include "tst_application.moc"
