// The dialog in German, French and Japanese: every string table (the module's and the sample's) has
// every English key with the English text's placeholders, the forms' translations are complete
// with the source's placeholders and at most one mnemonic, the sample's choice texts are all
// translated, and the dialog shown through the facade speaks the user's language, falling back to
// the development region for a language without tables.
#include "../preview/PreviewPages.h"
#include "LayoutFit.h"
#include "SampleFixture.h"

#include <QRegularExpression>
#include <QXmlStreamReader>

namespace {

const QStringList kLanguages{"de", "fr", "ja"};

// A string table (an XML property list of key -> text) as a map; empty when it cannot be read.
QMap<QString, QString> readTable(const QString& path) {
    QMap<QString, QString> table;
    const TwValue root = TwPlistReadFile(path.toStdString());
    if (const TwDictionary* d = root.dict())
        for (const auto& [key, value] : *d)
            table.insert(QString::fromStdString(key),
                         value.str() ? QString::fromStdString(*value.str()) : QString());
    return table;
}

// A text's format placeholders, in order of kind: %@, %1$@, %d, %ld, %s, %%.
QStringList placeholders(const QString& text) {
    static const QRegularExpression format(R"(%(?:\d+\$)?(?:l?[dus]|@)|%%)");
    QStringList found;
    for (auto it = format.globalMatch(text); it.hasNext();)
        found << it.next().captured();
    found.sort();
    return found;
}

// Qt's placeholders (%1 ... %9) and the number of mnemonic marks (an "&" not doubled).
QStringList qtPlaceholders(const QString& text) {
    static const QRegularExpression arg(R"(%\d)");
    QStringList found;
    for (auto it = arg.globalMatch(text); it.hasNext();)
        found << it.next().captured();
    found.sort();
    return found;
}
int mnemonics(QString text) {
    return int(text.remove("&&").count('&'));
}

struct FormMessage {
    QString context, source, translation;
    bool unfinished = false;
};
QList<FormMessage> readTs(const QString& path) {
    QList<FormMessage> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return messages;
    QXmlStreamReader xml(&file);
    QString context;
    FormMessage message;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == u"name")
            context = xml.readElementText();
        else if (xml.name() == u"source")
            message = {context, xml.readElementText(), {}, false};
        else if (xml.name() == u"translation") {
            message.unfinished = xml.attributes().value("type") == u"unfinished";
            message.translation = xml.readElementText();
            messages << message;
        }
    }
    return xml.hasError() ? QList<FormMessage>{} : messages;
}

// Prescans deliver an A4 page at 50 dpi.
std::uint16_t pageCallback(std::uint16_t event, void* data) {
    recordEvent(event, data);
    if ((event == kVmxEventPrescan || event == kVmxEventPreviewRescan) && data) {
        auto* record = static_cast<TwPreviewRecord*>(data);
        record->front.pDIB =
            makePageBitmap(413, 585, 1969, QColor(70, 110, 200), "PAGE", &record->front.imageLength);
    }
    return 0;
}

QScreen* screenNamed(const QString& name) {
    for (QScreen* s : QGuiApplication::screens())
        if (s->name() == name)
            return s;
    return nullptr;
}

} // namespace

class TestLanguages : public QObject {
    Q_OBJECT
    SampleScanner sample;
    const QString moduleResources = QString(VMX_SOURCE_DIR) + "/src/resources";
    const QString sampleResources = QString::fromStdString(SampleScanner::kBundle) + "/Contents/Resources";

private slots:
    void init() { QVERIFY2(sample.reset(), sample.error.c_str()); }

    void everyStringTableHasEveryKey_data() {
        QTest::addColumn<QString>("resources");
        QTest::addColumn<QString>("language");
        for (const QString& language : kLanguages) {
            QTest::addRow("module, %s", qPrintable(language)) << moduleResources << language;
            QTest::addRow("sample, %s", qPrintable(language)) << sampleResources << language;
        }
    }
    void everyStringTableHasEveryKey() {
        QFETCH(QString, resources);
        QFETCH(QString, language);
        const QMap<QString, QString> english = readTable(resources + "/en.lproj/Localizable.strings");
        const QMap<QString, QString> table =
            readTable(resources + "/" + language + ".lproj/Localizable.strings");
        QVERIFY(english.size() > 30);
        QStringList problems;
        for (auto it = english.begin(); it != english.end(); ++it) {
            if (!table.contains(it.key()))
                problems << it.key() + " is missing";
            else if (placeholders(table[it.key()]) != placeholders(it.value()))
                problems << it.key() + ": \"" + table[it.key()] + "\" for \"" + it.value() + "\"";
            else if (table[it.key()].isEmpty() != it.value().isEmpty())
                problems << it.key() + " is empty";
        }
        for (const QString& key : table.keys())
            if (!english.contains(key))
                problems << key + " is not in the English table";
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join("\n")));
    }

    void theFormsAreTranslated_data() {
        QTest::addColumn<QString>("language");
        for (const QString& language : kLanguages)
            QTest::newRow(qPrintable(language)) << language;
    }
    void theFormsAreTranslated() {
        QFETCH(QString, language);
        const QList<FormMessage> messages =
            readTs(QString(VMX_SOURCE_DIR) + "/src/translations/vmxui_" + language + ".ts");
        QVERIFY(messages.size() > 400);
        QStringList problems;
        for (const FormMessage& m : messages) {
            const QString where = m.context + ": \"" + m.source + "\"";
            if (m.unfinished || m.translation.isEmpty())
                problems << where + " has no translation";
            else if (qtPlaceholders(m.translation) != qtPlaceholders(m.source))
                problems << where + ": placeholders of \"" + m.translation + "\"";
            else if (mnemonics(m.translation) != mnemonics(m.source))
                problems << where + ": mnemonics of \"" + m.translation + "\"";
        }
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join("\n")));
        // The build made the translation the module reads.
        QVERIFY(
            QFile::exists(QString(VMX_BUNDLE_DIR) + "/Contents/Resources/" + language + ".lproj/Forms.qm"));
    }

    void theSamplesChoicesAreTranslated_data() { theFormsAreTranslated_data(); }
    void theSamplesChoicesAreTranslated() {
        QFETCH(QString, language);
        const QMap<QString, QString> table =
            readTable(sampleResources + "/" + language + ".lproj/ModelDef.strings");
        QStringList missing;
        std::function<void(const TwValue&)> walk = [&](const TwValue& v) {
            if (const TwDictionary* d = v.dict()) {
                for (const char* key : {"display", "localizedText"}) {
                    const TwValue text = d->value(key);
                    if (text.str() && !table.contains(QString::fromStdString(*text.str())))
                        missing << QString::fromStdString(*text.str());
                }
                for (const auto& entry : *d)
                    walk(entry.second);
            } else if (const TwArray* a = v.list()) {
                for (const TwValue& item : *a)
                    walk(item);
            }
        };
        walk(sample.definition);
        QVERIFY2(missing.isEmpty(), qPrintable(missing.join(", ")));
        // Applied, the sample's paper list speaks the language.
        SampleModelDef def(TwPlistReadFile(SampleScanner::kBundle + "/Contents/Resources/ModelDef.plist"));
        UserLanguage user(qPrintable(language));
        def.localize(SampleScanner::kBundle);
        const TwValue sizes = def.UIOptions().dict()->value("PaperSize");
        QVERIFY(sizes.list() && !sizes.list()->empty());
        const TwValue first = sizes.list()->front().dict()->value("display");
        QCOMPARE(QString::fromStdString(*first.str()), table.value("A4 (210 x 297 mm)", "A4 (210 x 297 mm)"));
    }

    // Through the facade: the forms and the string tables in the user's language; a language
    // without tables gives the development region's (English).
    void theDialogSpeaksTheUsersLanguage_data() {
        QTest::addColumn<QByteArray>("language");
        QTest::addColumn<QString>("tables");
        QTest::newRow("German") << QByteArray("de_DE.UTF-8") << "de";
        QTest::newRow("Japanese") << QByteArray("ja") << "ja";
        QTest::newRow("Italian, which has none") << QByteArray("it") << "en";
    }
    void theDialogSpeaksTheUsersLanguage() {
        QFETCH(QByteArray, language);
        QFETCH(QString, tables);
        UserLanguage user(language.constData());
        auto ui = sample.load({.show = true});
        const QMap<QString, QString> strings =
            readTable(sampleResources + "/" + tables + ".lproj/Localizable.strings");
        QCOMPARE(QString::fromStdString(ui->localizedString("IDS_SIDE_FRONT")),
                 strings.value("IDS_SIDE_FRONT"));
        // The Basic tab's label of the paper source, from the form's translation (English without).
        QString label = "Paper &source:";
        if (tables != "en")
            for (const FormMessage& m :
                 readTs(QString(VMX_SOURCE_DIR) + "/src/translations/vmxui_" + tables + ".ts"))
                if (m.context == "TwainViewBasic" && m.source == label)
                    label = m.translation;
        QStringList texts;
        for (const QLabel* l : window(*ui)->findChildren<QLabel*>())
            texts << l->text();
        QVERIFY2(texts.contains(label), qPrintable(label + " is not among " + texts.join(" | ")));
    }

    // The check itself: a label, a button, a check box and a group title squeezed below their
    // texts, and two labels over each other, are each found; the same widgets with room are not.
    void theFitCheckFindsCutTexts() {
        for (bool squeezed : {true, false}) {
            QWidget window;
            window.setObjectName("window");
            window.resize(600, 400);
            auto* label = new QLabel("A label with a fairly long text", &window);
            auto* button = new QPushButton("A button with a long title", &window);
            auto* check = new QCheckBox("A check box with a long title", &window);
            auto* box = new QGroupBox("A group box with a long title", &window);
            auto* under = new QLabel("Under", &window);
            const int w = squeezed ? 60 : 400;
            label->setGeometry(0, 0, w, 30);
            button->setGeometry(0, 40, w, 30);
            check->setGeometry(0, 80, w, 30);
            box->setGeometry(0, 120, w, 60);
            under->setGeometry(squeezed ? 10 : 450, 5, 100, 20);
            window.show();
            const QStringList problems = unfitTexts(&window);
            QVERIFY2(problems.size() == (squeezed ? 5 : 0),
                     qPrintable(problems.join("\n"))); // four cut, one overlap
        }
    }

    // Every window in each language, on a desktop and on a screen at twice the scale: the main
    // dialog with each of its tabs, the preview, the panels its buttons open, the progress panel
    // and a message box show their whole texts, side by side, on their screen.
    void everyWindowFits_data() {
        QTest::addColumn<QByteArray>("language");
        QTest::addColumn<QString>("screen");
        for (const char* language : {"en", "de", "fr", "ja"})
            for (const char* screen : {"desktop", "scaled"})
                QTest::addRow("%s, %s", language, screen) << QByteArray(language) << QString(screen);
    }
    void everyWindowFits() {
        QFETCH(QByteArray, language);
        QFETCH(QString, screen);
        UserLanguage user(language.constData());
        SampleModelDef def(sample.definition.deepCopy());
        def.localize(SampleScanner::kBundle);
        auto ui = sample.load({.callback = &pageCallback, .modelDef = &def, .show = true});
        TwDlgMain* dialog = window(*ui);
        QScreen* target = screenNamed(screen);
        QVERIFY(dialog && target);
        QRect placed = dialog->geometry();
        placed.moveCenter(target->availableGeometry().center());
        dialog->setGeometry(placed);
        QCOMPARE(dialog->screen(), target);
        QStringList problems;
        auto check = [&](const QString& where, QWidget* w) {
            QCoreApplication::processEvents();
            for (const QString& p : unfitTexts(w))
                problems << where + ": " + p;
        };
        auto* tabs = dialog->findChild<QTabWidget*>();
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            check("tab " + tabs->tabText(i), dialog);
        }
        // The panels the buttons open, each checked and closed while it runs.
        TwainDialogController* c = ui->controllerIfMade();
        QList<std::pair<QString, std::function<void()>>> panels{
            {"About",
             [c] {
                 c->onAbout();
             }},
            {"Customize",
             [c] {
                 c->onCustomize();
             }},
            {"Custom paper size",
             [c] {
                 c->onCustomPaperSize();
             }},
            {"Save setting",
             [c] {
                 c->onSaveSetting();
             }},
            {"Double exposure",
             [c] {
                 c->onDoubleExposure();
             }},
            {"Page separation",
             [c] {
                 c->onPageSeparetion();
             }},
        };
        // The colour gamma editor, as the Color tab's button opens it.
        QPushButton colourGamma;
        colourGamma.setProperty("tag", 2);
        panels.push_back({"Custom gamma", [c, &colourGamma] {
                              c->onCustomGamma(&colourGamma);
                          }});
        for (const auto& [name, open] : panels) {
            bool seen = false;
            auto timer = whenModal<QDialog>([&](QDialog* panel) {
                seen = true;
                check(name, panel);
                panel->reject();
            });
            open();
            QTRY_VERIFY2(seen, qPrintable(name + " did not open"));
        }
        QTest::mouseClick(dialog->btnPrescan(), Qt::LeftButton);
        QWidget* preview = ui->controllerIfMade()->dlgPreview();
        QVERIFY(preview && preview->isVisible());
        check("preview", preview);
        ui->showProgressDialog();
        int progressPanels = 0;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->isVisible() && w->inherits("TwDlgScanning")) {
                check("progress", w);
                ++progressPanels;
            }
        ui->hideProgressDialog();
        QCOMPARE(progressPanels, 1);
        const auto text = [&](const char* key) {
            return QString::fromStdString(ui->localizedStringNoEmpty(key));
        };
        const TwMessageBoxSetup setup = TwMessageBoxSetupFor(
            text("IDS_MSG_CONTINUE_SCAN"), text("IDS_DOUBLEFEED") + "\n\n" + text("IDS_ContinueMsg"),
            kVmxButtonsContinueStop | 0x30000, true, text);
        std::unique_ptr<QMessageBox> box(TwCreateMessageBox(setup, dialog));
        box->show();
        check("message box", box.get());
        for (const QString& p : problems)
            qWarning("%s", qPrintable(p));
        QVERIFY2(problems.isEmpty(), qPrintable(QString("%1 texts do not fit").arg(problems.size())));
    }
};

QTEST_MAIN(TestLanguages)
#include "tst_languages.moc"
