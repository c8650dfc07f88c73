#include "link/BoxMessages.h"
#include "support/TestMain.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_BoxMessages : public QObject
{
    Q_OBJECT

private slots:
    void a_box_is_wanted_with_its_text_and_button_data()
    {
        QTest::addColumn<QStringList>("fields");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("okButton");
        QTest::newRow("text alone") << QStringList{u"Text"_s} << "Text" << false;
        QTest::newRow("with a button") << QStringList{u"Text"_s, u"1"_s} << "Text" << true;
        QTest::newRow("another flag") << QStringList{u"Text"_s, u"11"_s} << "Text" << false;
        QTest::newRow("empty") << QStringList{u""_s} << "" << false;
        QTest::newRow("other letters") << QStringList{u"killbox"_s} << "killbox" << false;
    }

    void a_box_is_wanted_with_its_text_and_button()
    {
        QFETCH(QStringList, fields);
        BoxMessages messages;
        const QSignalSpy wanted(&messages, &BoxMessages::boxWanted);
        const QSignalSpy closed(&messages, &BoxMessages::closeWanted);
        messages.take(fields);
        QCOMPARE(wanted.size(), 1);
        QTEST(wanted.at(0).at(0).toString(), "text");
        QTEST(wanted.at(0).at(1).toBool(), "okButton");
        QVERIFY(closed.isEmpty());
    }

    void KILLBOX_closes_the_boxes_and_no_field_does_nothing()
    {
        BoxMessages messages;
        const QSignalSpy wanted(&messages, &BoxMessages::boxWanted);
        const QSignalSpy closed(&messages, &BoxMessages::closeWanted);
        messages.take({});
        QVERIFY(closed.isEmpty());
        messages.take({u"KILLBOX"_s, u"1"_s});
        QCOMPARE(closed.size(), 1);
        QVERIFY(wanted.isEmpty());
    }
};

QN740_TEST_MAIN(tst_BoxMessages)
#include "tst_BoxMessages.moc"
