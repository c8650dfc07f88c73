#include "popups/AddressEntry.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

namespace {

AddressEntry typed(const QString& keys)
{
    AddressEntry entry;
    for (const QChar key : keys) {
        entry.append(key);
    }
    return entry;
}

} // namespace

class tst_AddressEntry : public QObject
{
    Q_OBJECT

private slots:
    void an_entry_starts_empty()
    {
        QCOMPARE(AddressEntry().text(), u""_s);
        QVERIFY(AddressEntry().isEmpty());
        QVERIFY(!AddressEntry().isValid());
    }

    void a_dot_is_added_after_three_digits_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("text");
        QTest::newRow("three groups") << "192168001"
                                      << "192.168.001";
        QTest::newRow("three digits make no dot yet") << "192"
                                                      << "192";
        QTest::newRow("four groups") << "192168001002"
                                     << "192.168.001.002";
        QTest::newRow("dots typed") << "10.0.0.1"
                                    << "10.0.0.1";
        QTest::newRow("dot typed after three digits") << "192.1"
                                                      << "192.1";
        QTest::newRow("a thirteenth digit is ignored") << "1921680010029"
                                                       << "192.168.001.002";
        QTest::newRow("a dot in the fourth group is ignored") << "1.2.3.4."
                                                              << "1.2.3.4";
        QTest::newRow("fourth digit in the fourth group") << "1.2.3.4567"
                                                          << "1.2.3.456";
        QTest::newRow("a dot first") << "."
                                     << ".";
        QTest::newRow("dots only") << "....."
                                   << "...";
        QTest::newRow("an empty group") << "1..2.3"
                                        << "1..2.3";
    }
    void a_dot_is_added_after_three_digits()
    {
        QFETCH(QString, keys);
        QTEST(typed(keys).text(), "text");
    }

    void what_is_an_address_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<bool>("valid");
        const auto row = [](const char* keys, bool valid) {
            QTest::addRow("%s", keys) << keys << valid;
        };
        row("0.0.0.0", true);
        row("255.255.255.255", true);
        row("192.168.001.002", true);
        row("256.1.1.1", false);
        row("1.1.1.256", false);
        row("1.2.3", false);
        row("1.2.3.", false);
        row("1..2.3", false);
        row(".1.2.3", false);
        row("...", false);
        row("1", false);
    }
    void what_is_an_address()
    {
        QFETCH(QString, keys);
        QTEST(typed(keys).isValid(), "valid");
    }

    void a_group_that_is_not_a_number_is_invalid()
    {
        for (const char* group : {"-1", "a", "0x1"}) {
            AddressEntry entry;
            entry.append(u"1.2.3."_s + QString::fromUtf8(group));
            QVERIFY2(!entry.isValid(), group);
        }
    }

    void backspace_removes_the_last_character()
    {
        AddressEntry entry = typed(u"192168"_s);
        entry.backspace();
        QCOMPARE(entry.text(), u"192.16"_s);
        entry = typed(u"1."_s);
        entry.backspace();
        entry.backspace();
        QVERIFY(entry.isEmpty());
        entry.backspace();
        QCOMPARE(entry.text(), u""_s);
    }

    void clearing_removes_everything()
    {
        AddressEntry entry = typed(u"1.2"_s);
        QVERIFY(!entry.isEmpty());
        entry.clear();
        QVERIFY(entry.isEmpty());
    }
};

QN740_TEST_MAIN(tst_AddressEntry)
#include "tst_AddressEntry.moc"
