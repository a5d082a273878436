// The module's side of the Qt application object: one is made when the host has none, work from
// other threads is run on the GUI thread while the caller waits, and one window at a time can be
// in the application's modal run (the platform's runModalForWindow / stopModal).
//
// The modal run is no nested event loop: the window is shown application-modal and returns at
// once; whatever loop the host runs (its own, or the facade's processEvents) drives it. Ending
// the run makes the window non-modal again.
#pragma once

#include <functional>

class QWidget;

namespace TwApplication {

// Makes a QApplication when the process has none. False (logged) when there is none and this is
// not the process's main thread: a Qt application must live on the host's main thread. Every
// true answer holds a reference; release() drops it, and the application made here (never one
// the host made) is deleted with the last reference.
bool acquire();
void release();
// Whether the current application object was made by the module.
bool ownsApplication();
// True on the application's thread, and when there is no application at all.
bool isGuiThread();
// Runs f on the GUI thread and waits for it (a blocking queued call); directly when already on
// it or when there is no application. The GUI thread must be running an event loop.
void runOnGuiThread(const std::function<void()>& f);

// Shows the window application-modal and brings it to the front; the earlier run, if any, ends.
void runModalForWindow(QWidget* window);
// Ends the run: the window becomes non-modal. A window still shown is hidden and shown again, as
// Qt leaves its modal bookkeeping only for a window hidden while modal.
void stopModal();
// The window in the run, or null.
QWidget* modalWindow();
// How many runs were started so far (tests and the trace).
int modalRunsStarted();
// Asks the GUI thread's event loop to wake up and look at its state.
void wakeUp();

} // namespace TwApplication
