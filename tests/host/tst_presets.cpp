// What the user keeps between sessions, with the sample scanner loaded through the facade: the
// factory profile, saved and deleted profiles, the last setting used, custom gammas, papers and
// margins, and what wrong or broken preferences turn into. And the sample's own rules: the model
// observes itself once the data is set, and every edit re-evaluates them and runs the value
// reactions. And the facade as the data source drives it without a window, with a small model
// definition: building the model, the paper-source filter, key-path reads and writes, the callback
// and its capability record, and the trace.
#include "FakeModelDef.h"
#include "SampleFixture.h"

class TestPresets : public QObject {
    Q_OBJECT
    TestModelDef def = hostModelDef();
    QTemporaryDir dir;

    // The facade with the small model definition and a bundle without a string table.
    Facade loaded(bool flatbed = true, bool passport = true) {
        return sample.load({.flatbed = flatbed,
                            .bundle = dir.path().toStdString(),
                            .values = capabilityValues(flatbed, passport),
                            .modelDef = &def});
    }

    SampleScanner sample;

    static std::vector<std::string> profileNames(TwainDialogData& model) {
        return codes<std::string>(model.customProfiles(), "ProfileName");
    }
    static TwPreferences stored() { return SampleScanner::preferences(); }

private slots:
    void initTestCase() { QVERIFY2(sample.read(), sample.error.c_str()); }
    void init() { sample.reset(); }

    void firstStartWritesTheFactoryProfileOnce() {
        {
            auto ui = sample.load();
            QVERIFY(ui->dataForKeyPath("profiles.content").isEqual(array({"Untitled", "Factory Default"})));
            QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Untitled"));
        }
        auto prefs = stored();
        QCOMPARE(prefs.copyValue("Runned").intValue(), 1);
        TwValue profiles = prefs.copyValue("profiles");
        QCOMPARE(profiles.list()->size(), size_t(1));
        // The factory profile is the Default section, named.
        QCOMPARE(profiles.list()->at(0).dict()->value("Resolution"),
                 sample.capabilities.dict()->value("Default").dict()->value("Resolution"));

        {
            auto ui = sample.load();
            ui->model()->deleteCustomProfile("Factory Default"); // the only one: untitled is selected
            QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Untitled"));
            QCOMPARE(stored().copyValue("profiles").list()->size(), size_t(0));
        }
        auto again = sample.load(); // the user deleted it: it does not come back
        QCOMPARE(again->model()->ProfileCount(), 0);
        QVERIFY(again->dataForKeyPath("profiles.content").isEqual(array({"Untitled"})));
    }

    void savingUnderANameThatDiffersInCaseReplacesInPlace() {
        auto ui = sample.load();
        auto& model = *ui->model();
        model.AddCustomProfile("Office");
        model.AddCustomProfile("Home");
        set(*ui, "Data.Resolution", 600);
        QVERIFY(model.IsProfileExist("office"));
        ChangeRecorder watcher(model, {"profiles.name"});
        model.AddCustomProfile("OFFICE");
        QCOMPARE(profileNames(model), (std::vector<std::string>{"Factory Default", "OFFICE", "Home"}));
        QCOMPARE(model.customProfiles().list()->at(1).dict()->value("Resolution").intValue(), 600);
        // The setting-name box is told the new name.
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("OFFICE"));
        QCOMPARE(watcher.last(), TwValue("OFFICE"));
        QCOMPARE(stored().copyValue("profiles").list()->size(), size_t(3));
    }

    void deletingSelectsANeighbour_data() {
        columns<QString, QString>("deleted", "selected");
        row("the last of three: the new last", QString("B"), QString("A"));
        row("the middle: the one that moves up", QString("A"), QString("B"));
        row("an unknown name: untitled", QString("Z"), QString("Untitled"));
    }
    void deletingSelectsANeighbour() {
        QFETCH(QString, deleted);
        auto ui = sample.load();
        auto& model = *ui->model();
        model.AddCustomProfile("A");
        model.AddCustomProfile("B");
        QVERIFY(model.deleteCustomProfile(deleted.toStdString()));
        QTEST(QString::fromStdString(ui->dataForKeyPath("profiles.name").stringValue()), "selected");
    }

    // An edit of the setting selects the untitled one. Only a saved setting (or the untitled one)
    // can be selected by name, which applies it: another letter case picks the one it names, any
    // other name is refused and the selection stays. The area unit is no edit of the setting.
    void aNameSelectsOnlyASavedSetting_data() {
        columns<bool, TwValue, QString, int>("fromLow", "name", "selected", "resolution");
        row("saved", false, TwValue("Low"), "Low", 200);
        row("another case", false, TwValue("LOW"), "Low", 200);
        row("untitled, another case", true, TwValue("untitled"), "Untitled", 200);
        row("no setting", false, TwValue("lettersXYZ"), "Untitled", 600);
        row("no setting, from a saved one", true, TwValue("XYZ"), "Low", 200);
        row("not a name", true, TwValue(5), "Low", 200);
    }
    void aNameSelectsOnlyASavedSetting() {
        auto [fromLow, name] = fetch<bool, TwValue>("fromLow", "name");
        auto ui = sample.load();
        set(*ui, "Data.Resolution", 200);
        ui->model()->AddCustomProfile("Low");
        if (!fromLow)
            set(*ui, "Data.Resolution", 600);
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue(fromLow ? "Low" : "Untitled"));
        set(*ui, "profiles.name", name);
        QTEST(QString::fromStdString(ui->dataForKeyPath("profiles.name").stringValue()), "selected");
        QTEST(ui->dataForKeyPath("Data.Resolution").intValue(), "resolution");
        set(*ui, "Data.Area.Unit", 0);
        QTEST(QString::fromStdString(ui->dataForKeyPath("profiles.name").stringValue()), "selected");
    }

    void theLastSettingComesBack() {
        {
            auto ui = sample.load();
            set(*ui, {{"Data.Resolution", 600}, {"Data.ImageType", 1}});
            ui->model()->saveUntitleProfile();
        }
        {
            auto ui = sample.load();
            QCOMPARE(valuesAt(*ui->model(), {"Data.Resolution", "Data.ImageType", "profiles.name"}),
                     array({600, 1, "Untitled"}));
            QVERIFY(stored().copyValue("profile name").isNull());
            set(*ui, "profiles.name", "Factory Default");
            ui->model()->saveUntitleProfile();
        }
        auto ui = sample.load();
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Factory Default"));
        QCOMPARE(ui->dataForKeyPath("Data.Resolution"),
                 sample.capabilities.dict()->value("Default").dict()->value("Resolution"));
    }

    void aLastProfileDeletedElsewhereFallsBackToTheLastSetting() {
        {
            auto ui = sample.load();
            set(*ui, "Data.Resolution", 400);
            ui->model()->AddCustomProfile("Gone");
            QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Gone"));
            ui->model()->saveUntitleProfile();
        }
        auto prefs = stored();
        prefs.setValue("profiles", array());
        QVERIFY(prefs.synchronize());
        auto ui = sample.load();
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Untitled"));
        QVERIFY(!ui->dataForKeyPath("Default.Resolution").isEqual(TwValue(400)));
        QCOMPARE(ui->dataForKeyPath("Data.Resolution").intValue(), 400);
    }

    // Saved gammas come back and extend the menu (a second save of a name merges into the first);
    // a deleted gamma a profile still names reads as 0.
    void customGammasPersistAndADeletedOneBecomesZero() {
        {
            auto ui = sample.load();
            ui->model()->setCustomGamme("Warm", true, dict({{"Red", array({1, 2})}}));
            ui->model()->setCustomGamme("Warm", true, dict({{"Blue", 3}}));
            ui->model()->setCustomGamme("Mine", false, dict({{"Points", array({0, 128, 255})}}));
            QVERIFY(ui->model()->saveCustomGamma());
        }
        auto ui = sample.load();
        auto& model = *ui->model();
        QCOMPARE(model.customGammaNamesWithColor(true), std::vector<std::string>{"Warm"});
        QVERIFY(model.CustomGammas().dict()->value("Color").isEqual(model.customGammasWithColor(true)));
        TwValue warm = model.customGamme("Warm", true);
        QVERIFY(warm.dict()->value("Red").isArray() && warm.dict()->value("Blue").intValue() == 3);
        TwValue menu = ui->dataForKeyPath("content.Color.Gamma");
        QCOMPARE(menu.list()->size(), ui->dataForKeyPath("content.Gamma").list()->size() + 1);
        QCOMPARE(menu.list()->back().dict()->value("display").stringValue(), std::string("Warm"));

        QVERIFY(TwainDialogData::gammaExist(TwValue("Mine"), ui->dataForKeyPath("content.Gray.Gamma")));
        set(*ui, {{"Data.GrayImage.Front.Gamma", "Mine"}, {"Data.BinaryImage.Back.Gamma", "Mine"}});
        model.AddCustomProfile("Curved");
        model.deleteCustomGamme("Mine", false);
        QVERIFY(!TwainDialogData::gammaExist(TwValue("Mine"), ui->dataForKeyPath("content.Gray.Gamma")));
        set(*ui, "profiles.name", "Factory Default");
        set(*ui, "profiles.name", "Curved");
        QCOMPARE(valuesAt(*ui->model(), {"Data.GrayImage.Front.Gamma", "Data.BinaryImage.Back.Gamma"}),
                 array({0, 0}));
        QVERIFY(stored().copyValue("custom gamma").dict()->value("Gray").list()->empty());
    }

    // An applied profile in inches shows inches (the setting stays in millimetres); a paper source
    // the scanner lacks and a paper that vanished are corrected.
    void appliedProfilesAreShownAndCorrected() {
        auto ui = sample.load({.flatbed = false});
        TwValue profile = ui->dataForKeyPath("Data").deepCopy();
        profile.dict()->set("ProfileName", "Inches");
        profile.dict()->set("PaperSource", 2);
        profile.dict()->set("PaperSize", "Vanished paper");
        TwValue area = profile.dict()->value("Area");
        area.dict()->set("Unit", 0);
        area.dict()->value("Measure").dict()->set("Width", 25.4);
        ui->model()->SettingApply(profile);
        QCOMPARE(valuesAt(*ui->model(), {"Data.Area.Measure.Width", "temp.Area.Width"}), array({25.4, 1.0}));
        QCOMPARE(ui->dataForKeyPath("Data.PaperSource"), ui->dataForKeyPath("Default.PaperSource"));
        QCOMPARE(ui->dataForKeyPath("Data.PaperSize"), TwValue(1));
    }

    // Two processes (two models with preferences of their own) save in turn, each from what it read
    // at its start: different keys are both kept, none of either side's profiles is lost, and a
    // deletion made by one stays although the other still had the profile.
    void twoProcessesSavingInTurnKeepBoth() {
        auto first = sample.load();
        auto second = sample.load();
        first->model()->m_CustomPapers.list()->push_back(customPaper("Card", 55.0, 91.0));
        QVERIFY(first->model()->saveCustomPaperSize());
        second->setDataWithKeyPathValue(dict({{"Customize.BorderRemoval.left", 12}}));
        second->model()->saveCustomize();
        for (int i = 0; i < 20; ++i) {
            first->model()->AddCustomProfile("First " + std::to_string(i));
            second->model()->AddCustomProfile("Second " + std::to_string(i));
        }
        first->model()->deleteCustomProfile("Second 3");
        second->model()->AddCustomProfile("Second 20");
        auto third = sample.load();
        QVERIFY(third->model()->customPaperExist(TwValue("Card")));
        QCOMPARE(third->dataForKeyPath("Customize.BorderRemoval.left").intValue(), 12);
        const auto papers = codes<std::string>(third->dataForKeyPath("content.PaperSizeAll"), "display");
        QVERIFY(papers.back().starts_with("Card - 55.0 x 91.0 mm"));
        auto names = profileNames(*third->model());
        QCOMPARE(names.size(), std::size_t(1 + 20 + 20));
        QVERIFY(std::count(names.begin(), names.end(), "First 19") == 1);
        QVERIFY(std::count(names.begin(), names.end(), "Second 20") == 1);
        QVERIFY(std::count(names.begin(), names.end(), "Second 3") == 0);
    }

    void marginsAreClampedAndDefaulted_data() {
        columns<TwValue, QString, int>("stored", "keyPath", "read");
        auto customize = [](const char* family, const char* side, TwValue v) {
            return dict({{family, dict({{side, v}})}});
        };
        row("border too large", customize("BorderRemoval", "left", 5000), "BorderRemoval.left", 4318);
        row("shadow negative", customize("RemoveShadow", "top", -3), "RemoveShadow.top", 0);
        row("in range", customize("RemoveShadow", "right", 40), "RemoveShadow.right", 40);
        row("not a number", customize("BorderRemoval", "bottom", "wide"), "BorderRemoval.bottom", 30);
        row("not a dictionary", TwValue(5), "RemoveShadow.left", 30);
    }
    void marginsAreClampedAndDefaulted() {
        auto [stored, keyPath] = fetch<TwValue, QString>("stored", "keyPath");
        auto prefs = this->stored();
        prefs.setValue("customize", stored);
        QVERIFY(prefs.synchronize());
        auto ui = sample.load();
        QTEST(ui->dataForKeyPath("Customize." + keyPath.toStdString()).intValue(), "read");
        ui->model()->resetCustomize();
        QCOMPARE(ui->dataForKeyPath("Customize." + keyPath.toStdString()).intValue(), 30);
        QVERIFY(this->stored().copyValue("customize").isNull());
    }

    void wrongTypesInThePreferencesAreIgnored() {
        auto prefs = stored();
        prefs.setValue("Runned", 1);
        prefs.setValue("profiles", array({"not a profile", dict({{"ProfileName", "Kept"}})}));
        prefs.setValue("custom papers", dict({{"Name", "x"}}));
        prefs.setValue("custom gamma", array({1}));
        prefs.setValue("untitle profile", "nothing");
        prefs.setValue("profile name", 7);
        QVERIFY(prefs.synchronize());
        auto ui = sample.load();
        QCOMPARE(profileNames(*ui->model()), std::vector<std::string>{"Kept"});
        QCOMPARE(ui->model()->customPaperSize().list()->size(), size_t(0));
        QVERIFY(ui->model()->customGammaNamesWithColor(true).empty());
        QCOMPARE(ui->dataForKeyPath("profiles.name"), TwValue("Untitled"));
    }

    void anUnreadableFileIsKeptAsideAndStartsEmpty() {
        QString file =
            sample.home->config() + "/" + QString::fromStdString(SampleScanner::kDomain) + ".plist";
        writeFile(file, "<plist><dict><key>profiles</key><array><dict>");
        auto ui = sample.load();
        QCOMPARE(profileNames(*ui->model()), std::vector<std::string>{"Factory Default"});
        QCOMPARE(QDir(sample.home->config()).entryList({"*.unreadable-*"}).size(), 1);
        QVERIFY(TwPlistReadFile(file.toStdString()).isDictionary());
    }

    void withoutABundleIdentifierNothingIsKept() {
        QTemporaryDir bundle;
        QDir().mkpath(bundle.path() + "/Contents/Resources");
        auto ui = sample.load({.bundle = bundle.path().toStdString()});
        auto& model = *ui->model();
        QVERIFY(!model.prepareFactoryProfiles() && !model.saveCustomProfile() &&
                !model.saveCustomPaperSize() && !model.saveCustomGamma());
        QVERIFY(model.customProfiles().isNull());
        model.saveUntitleProfile();
        model.AddCustomProfile("Nowhere");
        QCOMPARE(QDir(sample.home->config()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size(), 0);
        QCOMPARE(ui->dataForKeyPath("profiles.temporary"), TwValue("IDS_TEMPORARY_SETTINGNAME_NEW"));
    }

    // ---- The sample's rules and reactions ----

    void everyRuleHasAValueOnceLoaded() {
        auto ui = sample.load();
        for (auto& [target, rule] : *sample.def.UIEnable().dict()) {
            TwValue value = ui->dataForKeyPath(target);
            QVERIFY2(value.isBoolean(), target.c_str());
        }
        // One-sided paper, and A4 too long to turn.
        QCOMPARE(valuesAt(*ui->model(), {"enable.Duplex", "enable.Landscape", "enable.Deskew"}),
                 array({false, false, true}));
        QCOMPARE(codes(ui->dataForKeyPath("content.RateImageAvail")), (std::vector<int>{0, 1, 2}));
        QCOMPARE(ui->dataForKeyPath("temp.GrayColor"), TwValue("Color")); // the sample's own text
    }

    void aResolutionEditRunsRulesAndReactions() {
        auto ui = sample.load();
        set(*ui, "Data.ImageType=22 profiles.temporary=Untitled profiles.name=Mine");
        QCOMPARE(ui->dataForKeyPath("enable.AutoDistinctionResolution"), TwValue(true));
        set(*ui, "Data.Resolution", TwValue(150));
        QCOMPARE(ui->dataForKeyPath("enable.AutoDistinctionResolution"), TwValue(false));
        QCOMPARE(codes(ui->dataForKeyPath("content.RateImageAvail")), std::vector<int>{0});
        QCOMPARE(valuesAt(*ui->model(), {"temp.GrayDPI", "profiles.name", "temp.GrayColor"}),
                 array({150, "Untitled", "Gray"}));
    }

    void paperEditsReachRulesAndArea() {
        auto ui = sample.load();
        QCOMPARE(ui->dataForKeyPath("enable.Layout.Rotate"), TwValue(true));
        set(*ui, {{"Data.PaperSize", TwValue(5)}, {"Data.Landscape", TwValue(true)}});
        QCOMPARE(valuesAt(*ui->model(), {"enable.Layout.Rotate", "Data.Area.Measure.Width"}),
                 array({false, 210.0}));
        set(*ui, "Data.PaperSize", TwValue(4)); // Legal cannot turn
        QCOMPARE(
            valuesAt(*ui->model(), {"enable.Landscape", "enable.Layout.Rotate", "Data.Area.Measure.Length"}),
            array({false, true, 355.6}));
        // The feeder in duplex: the back side is offered and both sides are selected.
        set(*ui, "Data.PaperSource", TwValue(1));
        QCOMPARE(ui->dataForKeyPath("enable.Area.Back"), TwValue(true));
        for (const char* side : {"temp.BinaryImageSide", "temp.GrayImageSide", "temp.ColorImageSide"})
            QCOMPARE(ui->dataForKeyPath(side), TwValue(2));
        set(*ui, "temp.GrayImageSide", TwValue(1));
        QCOMPARE(ui->dataForKeyPath("temp.GrayImageSideText"), TwValue("Back"));
        // The flatbed switches feed pages off.
        set(*ui, "Data.Feed.FeedPageMode", TwValue(1));
        QCOMPARE(ui->dataForKeyPath("enable.Feed.FeedPage"), TwValue(true));
        set(*ui, "Data.PaperSource", TwValue(2));
        QCOMPARE(valuesAt(*ui->model(), {"Data.Feed.FeedPageMode", "enable.Feed.FeedPage"}),
                 array({0, false}));
    }

    // The default setting is applied before the model observes itself, so the working copies
    // exist and are observed from the start.
    void workingValuesMirrorIntoTheSettingOnceLoaded() {
        auto ui = sample.load();
        set(*ui, "temp.BinaryImage.Brightness", TwValue(90));
        QCOMPARE(ui->dataForKeyPath("Data.BinaryImage.Front.Brightness").intValue(), 90);
        set(*ui, "Data.PaperSource", TwValue(1)); // duplex: both sides are edited together
        set(*ui, "temp.ColorImage.Contrast", TwValue(70));
        QCOMPARE(valuesAt(*ui->model(), {"Data.ColorImage.Front.Contrast", "Data.ColorImage.Back.Contrast"}),
                 array({70, 70}));
    }

    void replacingOrClosingTheModelEndsItsObservation() {
        auto ui = sample.load();
        std::shared_ptr<TwainDialogData> first = ui->model();
        ui->setDataWithDictionary(sample.capabilities.deepCopy(), 0);
        QCOMPARE(first->observationCount(first.get()), std::size_t(0));
        std::shared_ptr<TwainDialogData> second = ui->model();
        QVERIFY(second != first && second->observationCount(second.get()) > 0);
        ui->closeDS();
        QCOMPARE(second->observationCount(second.get()), std::size_t(0));

        auto other = sample.load();
        std::shared_ptr<TwainDialogData> third = other->model();
        other.reset();
        QCOMPARE(third->observationCount(third.get()), std::size_t(0));
    }

    // ---- The facade without a window, with a small model definition ----

    void withoutModelEverythingIsQuiet() {
        VmxUIControllerImpl ui;
        QVERIFY(ui.dataForKeyPath("Data.Resolution").isNull() && ui.DialogData() == nullptr);
        ui.setDataWithKeyPathValue(dict({{"Data.Resolution", 300}}));
        ui.setUIContents(def.options);
        ui.setCallback(&recordEvent);
        ui.showUi(false, true, true);
        ui.hideUi();
        ui.closeDS();
        QVERIFY(ui.dataForKeyPath("Data.Resolution").isNull());
    }

    void paperSourcesFollowTheScanner_data() {
        columns<bool, bool, QList<int>>("flatbed", "passport", "expected");
        row("feeder only", false, false, QList<int>{0, 1});
        row("passport", false, true, QList<int>{0, 1, 5});
        row("flatbed", true, false, QList<int>{0, 2, 3, 1, 4});
        row("both, list order kept", true, true, QList<int>{0, 2, 3, 1, 4, 5});
    }
    void paperSourcesFollowTheScanner() {
        auto [flatbed, passport, expected] = fetch<bool, bool, QList<int>>("flatbed", "passport", "expected");
        auto ui = loaded(flatbed, passport);
        auto got = codes(ui->dataForKeyPath("content.PaperSource"));
        QCOMPARE(QList<int>(got.begin(), got.end()), expected);
        QCOMPARE(codes(ui->dataForKeyPath("content.PaperSourceAll")).size(), size_t(6));
    }

    // The contents are one change per observed list; key-path writes tell once and ignore a
    // value that is no dictionary.
    void contentsAndKeyPathWrites() {
        auto ui = loaded();
        QCOMPARE(ui->dataForKeyPath("Default.Resolution").intValue(), 200);
        ChangeRecorder o(*ui->model(), {"content.Resolution", "content.PaperSource", "Data.Resolution"});
        ui->setUIContents(def.options);
        QCOMPARE(o.count(), 2);
        set(*ui, "Data.Resolution=600 Data.Feed.NoLookAhead=true");
        QCOMPARE(o.count(), 3);
        QCOMPARE(ui->dataForKeyPath("Data.Resolution").intValue(), 600);
        QVERIFY(ui->dataForKeyPath("Data.Feed.NoLookAhead").boolValue());
        ui->setDataWithKeyPathValue(TwValue());
        QCOMPARE(ui->dataForKeyPath("Data.Resolution").intValue(), 600);
    }

    // Values cross the facade as copies both ways: a sub-dictionary the data source shares between
    // two sections, the caller's own tree, and what it reads back never alias the store.
    void valuesCrossTheFacadeAsCopies() {
        TwValue shared = dict({{"Enable", false}, {"Width", 10}});
        TwValue values = capabilityValues(true, true);
        values.dict()->value("Data").dict()->set("Extra", shared);
        values.dict()->value("Default").dict()->set("Extra", shared);
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->setModelDef(&def);
        ui->setDataWithDictionary(values, 0);
        ui->setDataWithKeyPathValue(dict({{"Data.Extra.Enable", true}}));
        QVERIFY(!ui->dataForKeyPath("Default.Extra.Enable").boolValue());
        QVERIFY(!shared.dict()->value("Enable").boolValue());

        TwValue written = dict({{"Width", 20}});
        ui->setDataWithKeyPathValue(dict({{"Data.Extra", written}}));
        written.dict()->set("Width", 30);
        QCOMPARE(ui->dataForKeyPath("Data.Extra.Width").intValue(), 20);

        ui->dataForKeyPath("Data.Extra").dict()->set("Width", 40);
        ui->DialogData()->valueForKeyPath("Data.Extra").dict()->set("Width", 50);
        ui->customPaperSize().list()->clear();
        QCOMPARE(ui->dataForKeyPath("Data.Extra.Width").intValue(), 20);
        // The store's contents, edited in place, are not the model definition's.
        ui->setUIContents(def.options);
        ui->model()->valueForKeyPath("content.Resolution").list()->at(0).dict()->set("display", "changed");
        QCOMPARE(def.options.dict()->value("Resolution").list()->at(0).dict()->value("display").stringValue(),
                 std::string("300 dpi"));
    }

    void eventOneNeedsTheCallbackOfTheCurrentModel() {
        auto ui = loaded();
        g_sent.clear();
        ui->DialogData()->UpdateCapData("Data.Resolution", 300);
        QVERIFY(g_sent.empty()); // no callback yet
        ui->setCallback(&recordEvent);
        ui->DialogData()->UpdateCapData("Data.Resolution", 300);
        QCOMPARE(g_sent.size(), size_t(1));
        QCOMPARE(g_sent[0].code, std::uint16_t(1));
        QCOMPARE(g_sent[0].record.value.uint32, 300u);

        // A rebuilt model carries no callback until the data source hands it over again.
        ui->setDataWithDictionary(capabilityValues(true, true), 0);
        ui->DialogData()->UpdateCapData("Data.ImageType", 2);
        QCOMPARE(g_sent.size(), size_t(1));
        ui->setCallback(&recordEvent);
        ui->DialogData()->UpdateCapData("Data.ImageType", 2);
        QCOMPARE(g_sent.size(), size_t(2));
    }

    void presetsAndTheFrameAreForwardedToTheModel() {
        auto ui = loaded();
        QVERIFY(ui->customPaperSize().isArray());
        ui->model()->setCustomGamme("Soft", true, dict({{"Red", 1}}));
        QCOMPARE(ui->customGamme("Soft", true).dict()->value("Red").intValue(), 1);
        QVERIFY(ui->customGamme("Soft", false).isNull());
        TwPaperFrame frame{0, 0, 0, 0};
        ui->getPaperFrame(&frame);
        TwPaperFrame wanted{10, 20, frame.right - 10, frame.bottom - 20};
        ui->setPaperFrame(wanted);
        TwPaperFrame back{};
        ui->getPaperFrame(&back);
        QCOMPARE(back.left, 10.0);
        QCOMPARE(back.top, 20.0);
        ui->showUi(false, true, true); // without showing: only the flags
        QVERIFY(!ui->isShow() && ui->isShowModal());
        // Closing drops the model: nothing is forwarded any more.
        ui->closeDS();
        QVERIFY(ui->DialogData() == nullptr && ui->dataForKeyPath("Data.Resolution").isNull());
        ui->setPaperFrame(wanted);
        QVERIFY(ui->customPaperSize().isNull());
    }

    void malformedCapabilityValuesAreRefused() {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->setModelDef(&def);
        ui->setDataWithDictionary(array({1, 2}), 0);
        QVERIFY(ui->DialogData() != nullptr); // an empty model, still usable
        QVERIFY(ui->dataForKeyPath("Data.Resolution").isNull());
        QCOMPARE(codes(ui->dataForKeyPath("content.PaperSource")), (std::vector<int>{0, 1}));
    }

    // A data source may blank a text on purpose: the facade and the controller keep its answer.
    void blankTextsOfTheDataSourceAreKept() {
        QTemporaryDir ds;
        writeStrings(ds.path(), dict({{"IDS_OK", ""}}));
        qputenv("LANGUAGE", "en");
        VmxUIControllerImpl ui;
        ui.initWithDSBundle(ds.path().toStdString());
        OrvaSetLogPaths(nullptr, nullptr);
        ui.setModelDef(&def);
        ui.setDataWithDictionary(capabilityValues(true, true), 0);
        QCOMPARE(ui.localizedString("IDS_OK"), std::string());
        QCOMPARE(ui.localizedStringNoEmpty("IDS_OK"), std::string(" "));
        QCOMPARE(ui.controller()->localizedString("IDS_OK"), QString());
        QCOMPARE(ui.controller()->localizedStringNoEmpty("IDS_OK"), QString(" "));
        QCOMPARE(ui.localizedString("IDS_NOT_THERE", "default"), std::string("default"));
    }

    void callsAreTraced() {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->initWithDSBundle(dir.path().toStdString());
        LogCapture log; // after init, which points the log at a place of its own
        OrvaSetLogLevel(kOrvaLogDebug);
        ui->setModelDef(&def);
        ui->setDataWithDictionary(capabilityValues(false, false), 0);
        ui->setCallback(&recordEvent);
        ui->showUi(false, false, true);
        ui->closeDS();
        ui.reset();
        for (const char* line :
             {"ENTER: VmxUIController::setDataWithDictionary", "hasFlatbed = 0, canPassport = 0",
              "ENTER: VmxUIController::showUi", "\tmodal = 0, onlyUI = 1", "ENTER: VmxUIController::closeDS"})
            QVERIFY2(log.text().contains(line), line);
    }
};

QTEST_GUILESS_MAIN(TestPresets)
#include "tst_presets.moc"
