#include "menus/Key.h"
#include "menus/KeyDefinition.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

namespace {
const QStringList Fields{u"Tuner CH1"_s, u"gain"_s, u"Gain"_s, u"3"_s, u"R1:GN"_s, u"100 0"_s,
    u"10"_s, u"1:5"_s, u"12.5"_s, u"1"_s, u"2"_s};
} // namespace

class tst_KeyDefinition : public QObject
{
    Q_OBJECT

private slots:
    void each_field_has_its_place()
    {
        const auto key = KeyDefinition::fromFields(Fields);
        QVERIFY(key);
        QCOMPARE(key->menu, u"Tuner CH1"_s);
        QCOMPARE(key->keyId, u"gain"_s);
        QCOMPARE(key->label, u"Gain"_s);
        QCOMPARE(key->type, 3);
        QCOMPARE(key->command, u"R1:GN"_s);
        QCOMPARE(key->units, u"100 0"_s);
        QCOMPARE(key->param, 10);
        QCOMPARE(key->options, u"1:5"_s);
        QCOMPARE(key->value, 12.5);
        QCOMPARE(key->tog, true);
        QCOMPARE(key->state, 2);
        QCOMPARE(key->fixed, false);
    }

    void the_characters_of_its_texts_are_counted()
    {
        // "Tuner CH1", "gain", "Gain", "R1:GN", "100 0" and "1:5"
        QCOMPARE(KeyDefinition::fromFields(Fields)->characters(), 9 + 4 + 4 + 5 + 5 + 3);
    }

    void fewer_than_eleven_fields_are_not_a_definition()
    {
        for (int n = 0; n < Fields.size(); ++n) {
            QVERIFY(!KeyDefinition::fromFields(Fields.mid(0, n)));
        }
        QVERIFY(KeyDefinition::fromFields(QStringList(11, QString())));
    }

    void a_twelfth_field_of_1_asks_for_a_fixed_cell_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<bool>("fixed");
        QTest::newRow("1") << "1" << true;
        QTest::newRow("0") << "0" << false;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("true") << "true" << false;
    }

    void a_twelfth_field_of_1_asks_for_a_fixed_cell()
    {
        QFETCH(QString, field);
        QTEST(KeyDefinition::fromFields(Fields + QStringList{field})->fixed, "fixed");
    }

    void only_1_sets_the_toggle_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<bool>("tog");
        QTest::newRow("1") << "1" << true;
        QTest::newRow("0") << "0" << false;
        QTest::newRow("01") << "01" << false;
        QTest::newRow("blank 1") << " 1" << false;
        QTest::newRow("empty") << "" << false;
    }

    void only_1_sets_the_toggle()
    {
        QFETCH(QString, field);
        QStringList fields = Fields;
        fields[9] = field;
        QTEST(KeyDefinition::fromFields(fields)->tog, "tog");
    }

    void numbers_that_do_not_parse_are_0_data()
    {
        QTest::addColumn<QString>("text");
        for (const char* text : {"", "abc", "1.2.3", "12x", "0x10"}) {
            QTest::addRow("'%s'", text) << QString::fromUtf8(text);
        }
    }

    void numbers_that_do_not_parse_are_0()
    {
        QFETCH(QString, text);
        QStringList fields = Fields;
        for (const int field : {3, 6, 8, 10}) {
            fields[field] = text;
        }
        const auto key = KeyDefinition::fromFields(fields);
        QCOMPARE(key->type, 0);
        QCOMPARE(key->param, 0);
        QCOMPARE(key->value, 0.0);
        QCOMPARE(key->state, 0);
    }

    void a_value_is_a_finite_number_in_single_precision_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("value");
        QTest::newRow("fraction") << "12.5" << 12.5;
        QTest::newRow("single precision") << "2250.3" << double(2250.3F);
        QTest::newRow("negative") << "-3" << -3.0;
        QTest::newRow("exponent") << "1e6" << 1e6;
        QTest::newRow("too large") << "1e60" << 0.0;
        QTest::newRow("infinite") << "inf" << 0.0;
        QTest::newRow("not a number") << "nan" << 0.0;
    }

    void a_value_is_a_finite_number_in_single_precision()
    {
        QFETCH(QString, text);
        QTEST(valueFromText(text), "value");
    }

    void an_update_keeps_identifier_value_and_locked_choices()
    {
        QPushButton button(u"Old"_s);
        Key key;
        key.Set_Key(&button, false);
        key.keyId = u"id"_s;
        key.value = 7;
        key.itemIds = {2};
        KeyDefinition::fromFields(Fields)->update(key);
        QCOMPARE(key.keyId, u"id"_s);
        QCOMPARE(key.value, 7.0);
        QCOMPARE(key.itemIds, QList<int>{2});
        QCOMPARE(key.type, 3);
        QCOMPARE(key.command, u"R1:GN"_s);
        QCOMPARE(key.units, u"100 0"_s);
        QCOMPARE(key.param, 10);
        QCOMPARE(key.options, u"1:5"_s);
        QVERIFY(key.tog());
        QCOMPARE(key.state, 2);
        QCOMPARE(key.label, u"Gain"_s);
        QCOMPARE(button.text(), u"Gain"_s);
        QVERIFY(button.isEnabled()); // the state is stored, not shown
    }

    void an_update_replaces_a_value_of_0()
    {
        Key key;
        KeyDefinition::fromFields(Fields)->update(key);
        QCOMPARE(key.value, 12.5);
    }

    void the_definition_of_a_key_has_all_fields_for_a_copy()
    {
        Key key;
        KeyDefinition::fromFields(Fields)->update(key);
        key.keyId = u"gain"_s;
        key.itemIds = {1, 3};
        const KeyDefinition copy = KeyDefinition::of(key);
        QCOMPARE(copy.keyId, key.keyId);
        QCOMPARE(copy.label, key.label);
        QCOMPARE(copy.type, key.type);
        QCOMPARE(copy.command, key.command);
        QCOMPARE(copy.units, key.units);
        QCOMPARE(copy.param, key.param);
        QCOMPARE(copy.options, key.options);
        QCOMPARE(copy.value, key.value);
        QCOMPARE(copy.tog, key.tog());
        QCOMPARE(copy.state, key.state);
        QCOMPARE(copy.itemIds, key.itemIds);
    }
};

QN740_TEST_MAIN(tst_KeyDefinition)
#include "tst_KeyDefinition.moc"
