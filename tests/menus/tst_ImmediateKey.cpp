#include "menus/ImmediateKey.h"

#include "support/TestMain.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_ImmediateKey : public QObject
{
    Q_OBJECT

private slots:
    void every_field_is_read()
    {
        const auto key = ImmediateKey::fromFields({u"Label"_s, u"1"_s, u"D1:BR"_s, u"1 10"_s,
            u"3"_s, u"Auto"_s, u"text"_s, u"-2.5"_s, u"beyond"_s});
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
        const auto six = ImmediateKey::fromFields({u"L"_s, u"0"_s, u"C"_s, u""_s, u"0"_s, u""_s});
        QVERIFY(six != nullptr);
        QVERIFY(six->padText.isEmpty());
        QCOMPARE(six->value, 0.0);
        const auto seven =
            ImmediateKey::fromFields({u"L"_s, u"0"_s, u"C"_s, u""_s, u"0"_s, u""_s, u"pad"_s});
        QVERIFY(seven != nullptr);
        QCOMPARE(seven->padText, QStringLiteral("pad"));
    }

    void malformed_fields_make_no_key_data()
    {
        QTest::addColumn<QStringList>("fields");
        QTest::newRow("none") << QStringList{};
        QTest::newRow("five") << QStringList{u"L"_s, u"0"_s, u"C"_s, u""_s, u"0"_s};
        QTest::newRow("type") << QStringList{u"L"_s, u"x"_s, u"C"_s, u""_s, u"0"_s, u""_s};
        QTest::newRow("empty type") << QStringList{u"L"_s, u""_s, u"C"_s, u""_s, u"0"_s, u""_s};
        QTest::newRow("parameter") << QStringList{u"L"_s, u"0"_s, u"C"_s, u""_s, u"1.5"_s, u""_s};
        QTest::newRow("huge type")
            << QStringList{u"L"_s, u"99999999999"_s, u"C"_s, u""_s, u"0"_s, u""_s};
        QTest::newRow("value") << QStringList{
            u"L"_s, u"0"_s, u"C"_s, u""_s, u"0"_s, u""_s, u""_s, u"x"_s};
        QTest::newRow("empty value")
            << QStringList{u"L"_s, u"0"_s, u"C"_s, u""_s, u"0"_s, u""_s, u""_s, u""_s};
        QTest::newRow("nan") << QStringList{
            u"L"_s, u"0"_s, u"C"_s, u""_s, u"0"_s, u""_s, u""_s, u"nan"_s};
        QTest::newRow("too large")
            << QStringList{u"L"_s, u"0"_s, u"C"_s, u""_s, u"0"_s, u""_s, u""_s, u"1e60"_s};
    }
    void malformed_fields_make_no_key()
    {
        QFETCH(QStringList, fields);
        QVERIFY(ImmediateKey::fromFields(fields) == nullptr);
    }

    void a_press_sends_as_on_a_menu()
    {
        const auto key =
            ImmediateKey::fromFields({u"L"_s, u"5"_s, u"R1:AGC "_s, u""_s, u"0"_s, u""_s});
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
            const auto key =
                ImmediateKey::fromFields({u"L"_s, u"0"_s, u"C"_s, u""_s, u"0"_s, u""_s});
            button = key->GetKey();
            QVERIFY(button != nullptr);
        }
        QVERIFY(button == nullptr);
    }
};

QN740_TEST_MAIN(tst_ImmediateKey)
#include "tst_ImmediateKey.moc"
