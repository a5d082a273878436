// The base of every setting tab. A tab is its Designer form; when the main panel hands it the
// settings model it declares, in four pair lists (contents, enables, values, model definitions),
// which key path each control shows, and its TwResponderBinding makes and later undoes the
// bindings and observations.
#pragma once

#include "TwObservation.h"
#include "TwResponderBinding.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>
#include <string>

class TwainDialogData;

class TwainView : public QWidget, public TwKeyValueObserver {
    Q_OBJECT
public:
    explicit TwainView(QWidget* parent = nullptr);
    ~TwainView() override; // unbinds if still bound

    // Creates the tab of that class ("TwainViewFeed", ...) with its form set up, or null.
    static TwainView* create(const QString& className, QWidget* parent = nullptr);
    // The tabs' class names in the order the main panel shows them; with mainPanelOnly, only the
    // tabs that take part in the main panel.
    static QStringList classNames(bool mainPanelOnly = false);
    // The form's "tabIdentifier": Basic, Common, Layout, BinaryImage, GrayImage, ColorImage, Feed,
    // Area, ControlSheet, Imprinter, PatchCode. It is the dialog name of the tab's model
    // definitions (ModelDef.UIControl.<identifier>.<control>).
    QString identifier() const;

    // Drops an earlier binding object, makes a new one with the tab as responder and keeps the
    // model. Subclasses call this first, then make their own bindings.
    virtual void bindControlsToObject(TwainDialogData* model);
    // Ends every observation and binding the tab made and lets the model go.
    virtual void unbindControls();
    TwResponderBinding* responderBinding() const;
    TwainDialogData* bindObject() const;

    // Observes the bound model at the key path; nothing when unbound.
    void addObserverForKeyPath(const std::string& keyPath, unsigned options);
    // The same with options 1 (new value).
    void addObserverForKeyPath(const std::string& keyPath);

    // Changes of what the tab observes; the base does nothing.
    void observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                const TwKeyValueChange& change, void* context) override;

protected:
    // Sets the form up on the tab (setupUi, then what its dynamic properties ask for).
    template <class Form> void setUpForm(Form& form) {
        form.setupUi(this);
        prepareForm();
    }
    // Binds the four lists in the fixed order: model definitions (with the tab's identifier as
    // dialog name), contents, enables, values. Nothing when unbound.
    void bindLists(const TwBindList& controlDefs, const TwBindList& contents, const TwBindList& enables,
                   const TwBindList& values);
    // A tab taken out of its window unbinds first.
    bool event(QEvent* event) override;

private:
    void prepareForm();
    // Texts of the controls that name an "IDS_" key ("textKey", "rowTextKeys"), from the model's
    // string tables; a key no table has leaves the form's text.
    void applyTextKeys();

    TwainDialogData* m_bindObject = nullptr;
    std::unique_ptr<TwResponderBinding> m_responderBinding;
};
