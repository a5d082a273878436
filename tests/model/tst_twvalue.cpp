// The value tree: equality and conversions as the settings rules rely on them, reference
// semantics of containers, and the ordered dictionary.
#include "TestSupport.h"

class TestTwValue : public QObject {
    Q_OBJECT
private slots:
    void equality_data() {
        columns<TwValue, TwValue, bool>("a", "b", "equal");
        row("int = real", TwValue(300), TwValue(300.0), true);
        row("int != real fraction", TwValue(1), TwValue(1.5), false);
        row("true = 1", TwValue(true), TwValue(1), true);
        row("number != its string", TwValue(1), TwValue("1"), false);
        row("string case matters", TwValue("ADF"), TwValue("adf"), false);
        row("null = null", TwValue(), TwValue(), true);
        row("null != 0", TwValue(), TwValue(0), false);
        row("arrays deep", TwValue::array({1, "a", TwValue::dictionary({{"k", 2}})}),
            TwValue::array({1.0, "a", TwValue::dictionary({{"k", 2.0}})}), true);
        row("arrays order", TwValue::array({1, 2}), TwValue::array({2, 1}), false);
        row("dicts ignore order", TwValue::dictionary({{"a", 1}, {"b", 2}}),
            TwValue::dictionary({{"b", 2}, {"a", 1}}), true);
        row("dicts extra key", TwValue::dictionary({{"a", 1}}), TwValue::dictionary({{"a", 1}, {"b", 2}}),
            false);
        row("large ints", TwValue(9007199254740993LL), TwValue(9007199254740992LL), false);
    }
    void equality() {
        auto [a, b, equal] = fetch<TwValue, TwValue, bool>("a", "b", "equal");
        QCOMPARE(a.isEqual(b), equal);
        QCOMPARE(b.isEqual(a), equal);
    }

    void conversions_data() {
        columns<TwValue, int, double, bool>("v", "intValue", "doubleValue", "boolValue");
        row("real truncates", TwValue(12.6), 12, 12.6, true);
        row("negative real truncates", TwValue(-2.7), -2, -2.7, true);
        row("leading number", TwValue(" 42abc"), 42, 42.0, true);
        row("real string", TwValue("3.75"), 3, 3.75, true);
        row("no number", TwValue("abc"), 0, 0.0, false);
        row("yes string", TwValue("YES"), 0, 0.0, true);
        row("zeros then digit", TwValue("-007"), -7, -7.0, true);
        row("true", TwValue(true), 1, 1.0, true);
        row("null", TwValue(), 0, 0.0, false);
        row("dictionary", TwValue::dictionary(), 0, 0.0, false);
    }
    void conversions() {
        QFETCH(TwValue, v);
        QTEST(v.intValue(), "intValue");
        QTEST(v.doubleValue(), "doubleValue");
        QTEST(v.boolValue(), "boolValue");
    }

    void unsignedOfNegativeWraps() { QCOMPARE(TwValue(-1).unsignedIntValue(), 0xFFFFFFFFu); }

    void containersAreSharedUntilDeepCopied() {
        TwValue inner = TwValue::dictionary({{"x", 1}});
        TwValue outer = TwValue::dictionary({{"inner", inner}, {"list", TwValue::array({inner})}});
        TwValue alias = outer;
        alias.dict()->set("k", 1);
        QVERIFY(outer.dict()->contains("k"));
        TwValue copy = outer.deepCopy();
        QVERIFY(copy.isEqual(outer));
        copy.dict()->value("inner").dict()->set("x", 5);
        copy.dict()->value("list").list()->at(0).dict()->set("x", 6);
        QCOMPARE(inner.dict()->value("x").intValue(), 1);
    }

    // Far deeper than a thread's stack allows for a recursion per level, even without sanitizers.
    void deepNestingCopiesComparesAndGoesWithoutRecursion() {
        constexpr int kLevels = 300000;
        TwValue deep = TwValue::dictionary({{"leaf", 1}});
        for (int i = 0; i < kLevels; ++i)
            deep = i % 2 ? TwValue::dictionary({{"k", deep}}) : TwValue::array({deep});
        TwValue copy = deep.deepCopy();
        QVERIFY(copy.isEqual(deep));
        TwValue original = deep, copied = copy;
        for (int i = 0; i < kLevels; ++i) {
            QVERIFY(original.list() != copied.list() || !original.list());
            QVERIFY(original.dict() != copied.dict() || !original.dict());
            original = original.list() ? original.list()->at(0) : original.dict()->value("k");
            copied = copied.list() ? copied.list()->at(0) : copied.dict()->value("k");
        }
        copied.dict()->set("leaf", 2);
        QVERIFY(!copy.isEqual(deep));
        QCOMPARE(original.dict()->value("leaf").intValue(), 1);
        deep = TwValue();
        copy = TwValue();
        QCOMPARE(original.dict()->value("leaf").intValue(), 1); // still held here
    }

    void dictionaryKeepsInsertionOrderAndIndex() {
        TwDictionary d;
        // Enough keys to switch to the hashed index, then removals and re-insertions.
        for (int i = 0; i < 40; ++i)
            d.set("k" + std::to_string(39 - i), i);
        d.remove("k20");
        d.set("k5", 100);       // replacing keeps the place
        d.set("k20", 7);        // re-inserted at the end
        d.set("k7", TwValue()); // a null value removes
        auto keys = d.keys();
        QCOMPARE(keys.size(), size_t(39));
        QCOMPARE(keys.front(), std::string("k39"));
        QCOMPARE(keys.back(), std::string("k20"));
        QCOMPARE(d.value("k5").intValue(), 100);
        QCOMPARE(d.value("k20").intValue(), 7);
        QVERIFY(!d.contains("k7"));
        for (std::size_t i = 0; i < keys.size(); ++i)
            QCOMPARE(d.find(keys[i]), std::ptrdiff_t(i));
    }
};

QTEST_APPLESS_MAIN(TestTwValue)
#include "tst_twvalue.moc"
