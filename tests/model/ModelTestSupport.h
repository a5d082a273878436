// The sample scanner family's papers and a store filled as the facade fills it, for the model tests.
#pragma once

#include "TestSupport.h"
#include "TwainDialogData.h"

inline TwValue paper(int value, const char* display, int mmWidth, int mmLength, int pxLength) {
    return dict({{"value", value},
                 {"display", display},
                 {"mmWidth", mmWidth},
                 {"mmLength", mmLength},
                 {"pxLength", pxLength}});
}

// The sample scanner family's standard papers (tenths of a millimetre).
inline TwValue standardPapers() {
    return array({paper(1, "A4", 2100, 2970, 7016), paper(5, "A5", 1480, 2100, 4961),
                  paper(13, "A6", 1050, 1480, 3496), paper(11, "A3", 2970, 4200, 9921),
                  paper(3, "Letter", 2159, 2794, 6600), paper(4, "Legal", 2159, 3556, 8400),
                  paper(52, "Statement", 1397, 2159, 5100), paper(53, "Business Card", 550, 910, 2150)});
}

inline TwValue rateChoices(std::initializer_list<int> codes) {
    auto list = array();
    for (int c : codes)
        list.list()->push_back(dict({{"value", c}, {"display", std::to_string(c)}}));
    return list;
}

inline TwValue sideValues(int brightness, int contrast, int gamma) {
    return dict({{"Brightness", brightness}, {"Contrast", contrast}, {"Gamma", gamma}});
}

// A Data section with every family the reactions touch, the areas (the main area and three
// sub-areas per side) in millimetres on A4.
inline TwValue sampleData() {
    auto side = [] {
        auto sub = [](double y) {
            return dict({{"X", 10.0}, {"Y", y}, {"Width", 50.0}, {"Length", 20.0}});
        };
        return dict({{"X", 0.0}, {"L1", sub(10.0)}, {"L2", sub(40.0)}, {"L3", sub(70.0)}});
    };
    auto area = dict({{"Front", side()}, {"Back", side()}, {"Y", 0.0}, {"Width", 210.0}, {"Length", 297.0}});
    return dict({{"PaperSource", 0},
                 {"PaperSize", 1},
                 {"Resolution", 300},
                 {"ImageType", 0},
                 {"Landscape", false},
                 {"Feed", dict({{"FeedPageMode", 1}, {"FeedPageNumber", 3}})},
                 {"BinaryImage", dict({{"Front", sideValues(100, 110, 0)},
                                       {"Back", sideValues(200, 210, 1)},
                                       {"Keep2SideSame", false}})},
                 {"GrayImage", dict({{"Front", sideValues(101, 111, 0)}, {"Back", sideValues(201, 211, 2)}})},
                 {"ColorImage", dict({{"Front", sideValues(102, 112, 0)},
                                      {"Back", sideValues(202, 212, 3)},
                                      {"Keep2SideSame", false}})},
                 {"BinaryImageSide", 0},
                 {"GrayImageSide", 0},
                 {"ColorImageSide", 0},
                 {"Area", dict({{"Unit", 1}, {"Measure", area}})},
                 {"AutoCrop", dict({{"Enable", false}})},
                 {"AutoDistinction", dict({{"RateBinaryImage", 0}})}});
}

// The fixture of the tests that work on a store filled as the facade fills it, observing itself,
// with the working copies as a loaded profile leaves them (the front values of every family):
// init() makes both afresh; a test that shapes the definition calls reload().
class ModelFixture : public QObject {
protected:
    std::unique_ptr<TestModelDef> def; // declared first: the store refers to it
    std::unique_ptr<TwainDialogData> model;
    void reload() {
        model.reset();
        model = std::make_unique<TwainDialogData>();
        model->setModelDef(def.get());
        model->setValueForKeyPath(sampleData(), "Data");
        model->setValueForKeyPath(
            dict({{"PaperSize", standardPapers()}, {"RateImage", rateChoices({0, 1, 2, 3})}}), "content");
        model->setValueForKeyPath(dict({{"temporary", "Untitled"}, {"name", "Untitled"}}), "profiles");
        model->setValueForKeyPath(dict({{"text", dict({{"sideFront", "Front side"},
                                                       {"sideBack", "Back side"},
                                                       {"sideBoth", "Both sides"}})}}),
                                  "const");
        for (const char* family : TwainDialogData::kSideFamilies) {
            TwValue front = model->valueForKeyPath(std::string("Data.") + family + ".Front");
            for (auto& [key, value] : *front.dict())
                model->setValueForKeyPathWithoutNotification(value,
                                                             std::string("temp.") + family + "." + key);
            model->setValueForKeyPathWithoutNotification(TwValue(0), std::string("temp.") + family + "Side");
        }
        model->addSelfObserver();
    }
    void reload(const TwValue& rules) {
        def->rules = rules;
        reload();
    }
    void fresh() {
        model.reset();
        def = std::make_unique<TestModelDef>();
        reload();
    }
};
