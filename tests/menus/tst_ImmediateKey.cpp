#include "menus/ImmediateKey.h"

#include "support/TestMain.h"

#include <QSignalSpy>

class tst_ImmediateKey : public QObject
{
    Q_OBJECT

private slots:
    void every_field_is_read()
    {
        const auto key = ImmediateKey::fromFields(
            {"Label", "1", "D1:BR", "1 10", "3", "Auto", "text", "-2.5", "beyond"});
        QVERIFY(key != nullptr);
        QCOMPARE(key->label, QStringLiteral("Label"));
        QCOMPARE(key->type, 1);
        QCOMPARE(key->command, QStringLiteral("D1:BR"));
        QCOMPARE(key->units, QStringLiteral("1 10"));
        QCOMPARE(key->param, 3);
        QCOMPARE(key->options, QStringLiteral("Auto"));
        QCOMPARE(key->padText, QStringLiteral("text"));
        QCOMPARE(key->value, -2.5);
        QVERIFY(!key->large);
        QVERIFY(!key->tog());
        QVERIFY(key->GetKey() != nullptr);
        QCOMPARE(key->GetKey()->text(), QStringLiteral("Label"));
        QVERIFY(!key->GetKey()->isVisible());
    }

    void the_last_two_fields_may_be_missing()
    {
        const auto six = ImmediateKey::fromFields({"L", "0", "C", "", "0", ""});
        QVERIFY(six != nullptr);
        QVERIFY(six->padText.isEmpty());
        QCOMPARE(six->value, 0.0);
        const auto seven = ImmediateKey::fromFields({"L", "0", "C", "", "0", "", "pad"});
        QVERIFY(seven != nullptr);
        QCOMPARE(seven->padText, QStringLiteral("pad"));
    }

    void malformed_fields_make_no_key_data()
    {
        QTest::addColumn<QStringList>("fields");
        QTest::newRow("none") << QStringList{};
        QTest::newRow("five") << QStringList{"L", "0", "C", "", "0"};
        QTest::newRow("type") << QStringList{"L", "x", "C", "", "0", ""};
        QTest::newRow("empty type") << QStringList{"L", "", "C", "", "0", ""};
        QTest::newRow("parameter") << QStringList{"L", "0", "C", "", "1.5", ""};
        QTest::newRow("huge type") << QStringList{"L", "99999999999", "C", "", "0", ""};
        QTest::newRow("value") << QStringList{"L", "0", "C", "", "0", "", "", "x"};
        QTest::newRow("empty value") << QStringList{"L", "0", "C", "", "0", "", "", ""};
        QTest::newRow("nan") << QStringList{"L", "0", "C", "", "0", "", "", "nan"};
        QTest::newRow("too large") << QStringList{"L", "0", "C", "", "0", "", "", "1e60"};
    }
    void malformed_fields_make_no_key()
    {
        QFETCH(QStringList, fields);
        QVERIFY(ImmediateKey::fromFields(fields) == nullptr);
    }

    void a_press_sends_as_on_a_menu()
    {
        const auto key = ImmediateKey::fromFields({"L", "5", "R1:AGC ", "", "0", ""});
        QSignalSpy sent(key.get(), &Key::response_message);
        key->key_button_pushed();
        QCOMPARE(sent.size(), 1);
        QCOMPARE(sent.first().first().toString(),
            QStringLiteral("\x02"
                           "R1:AGC 1"
                           "\x04"));
    }

    void its_button_is_deleted_with_it()
    {
        QPointer<QPushButton> button;
        {
            const auto key = ImmediateKey::fromFields({"L", "0", "C", "", "0", ""});
            button = key->GetKey();
            QVERIFY(button != nullptr);
        }
        QVERIFY(button == nullptr);
    }
};

QN740_TEST_MAIN(tst_ImmediateKey)
#include "tst_ImmediateKey.moc"
