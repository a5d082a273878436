// Who owns the Qt application: the module makes one when the host has none and deletes it with
// the last facade that used it; an application the host made is never deleted. No application is
// made off the main thread. Runs without an application of its own.
#include "TwApplication.h"
#include "VmxUIControllerImpl.h"
#include "WidgetTestSupport.h"

class TestApplication : public QObject {
    Q_OBJECT

    static TwValue capabilities() {
        return dict({{"Data", dict({{"Resolution", 300}})}, {"Default", dict({{"Resolution", 300}})}});
    }

    // Runs a comma-separated list of facade calls as a data source makes them.
    static void drive(VmxUIControllerImpl& ui, const QString& calls) {
        for (const QString& call : calls.split(',')) {
            if (call == "modal")
                ui.showUi(true, true, false);
            else if (call == "modeless")
                ui.showUi(true, false, false);
            else if (call == "ok" || call == "cancel")
                ui.performDialogAction(call == "ok" ? "onOK" : "onCancel");
            else if (call == "stop")
                ui.stopModal();
            else if (call == "start")
                ui.startModal();
            else if (call == "hide")
                ui.hideUi();
            else if (call == "closeDS")
                ui.closeDS();
            else
                QFAIL(qPrintable("unknown call " + call));
            ui.processEvents(1);
        }
    }

    static std::unique_ptr<VmxUIControllerImpl> facade() {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        OrvaSetLogPaths(nullptr, nullptr);
        ui->setDataWithDictionary(capabilities(), 0);
        return ui;
    }

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

    // Qt keeps a process-wide list of modal windows; a run must leave it as it found it in every
    // order of calls, or a later facade's window trips over a deleted one. A host's application
    // outlives the facades.
    void modalRunsLeaveNoWindowBehind_data() {
        QTest::addColumn<QString>("calls");
        row("OK then hide, twice", "modal,ok,hide,modal,ok,hide,closeDS");
        row("Cancel then hide", "modal,cancel,hide,closeDS");
        row("stopModal then hide", "modal,stop,hide");
        row("hide alone", "modal,hide,modal,hide");
        row("no hide before the end", "modal,ok");
        row("start and stop repeated", "modal,stop,start,stop,start,ok,hide");
        row("modal then modeless", "modal,ok,hide,modeless,cancel,hide");
        row("closeDS while shown", "modal,closeDS,cancel,hide");
    }
    void modalRunsLeaveNoWindowBehind() {
        QFETCH(QString, calls);
        // The module's own application, made again for each facade.
        for (int round = 0; round < 2; ++round) {
            auto ui = facade();
            drive(*ui, calls);
        }
        QCOMPARE(QCoreApplication::instance(), nullptr);
        // A host's application that outlives several facades.
        int argc = 1;
        char name[] = "host";
        char* argv[] = {name, nullptr};
        QApplication host(argc, argv);
        for (int round = 0; round < 3; ++round) {
            {
                auto ui = facade();
                drive(*ui, calls);
                QVERIFY(!TwApplication::ownsApplication());
            }
            QVERIFY(QGuiApplication::modalWindow() == nullptr);
            QCOMPARE(QCoreApplication::instance(), &host); // never deleted by the module
        }
    }
};

QTEST_APPLESS_MAIN(TestApplication)
#include "tst_application.moc"
