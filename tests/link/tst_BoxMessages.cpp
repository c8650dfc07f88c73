#include "link/BoxMarkup.h"
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

    void tags_are_harmless_up_to_their_limits_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isHarmless");
        const auto row = [](const char* name, const QString& text, bool isHarmless) {
            QTest::newRow(name) << text << isHarmless;
        };
        const auto times = [](const char* text, int count) {
            return QString::fromLatin1(text).repeated(count);
        };
        row("no tag", u"a > b"_s, true);
        row("an open end", u"a < b"_s, false);
        row("the first tag", u"<img>"_s, false);
        row("the last tag", u"<b>a</b><img>"_s, false);
        row("200 tags", times("<b>", 200), true);
        row("200 tags with their ends", times("<b></b>", 100), true);
        row("201 tags", times("<b>", 201), false);
        row("line breaks beside the tags", times("<b>", 200) + times("<br>", 300), true);
        row("two tables", times("<table></table>", 2), true);
        row("three tables", times("<table></table>", 3), false);
        row("100 rows", times("<tr>", 100), true);
        row("101 rows", times("<tr>", 101), false);
        row("100 cells", times("<td>", 100), true);
        row("101 cells", times("<td>", 101), false);
        row("100 headings", times("<th>", 100), true);
        row("101 headings", times("<TH>", 101), false);
        row("rows and cells", times("<tr>", 34) + times("<td>", 33) + times("<th>", 34), false);
        row("a tag of 200 characters", u"<b"_s + QString(197, u' ') + u'>', true);
        row("a tag of 201 characters", u"<b"_s + QString(198, u' ') + u'>', false);
    }

    void tags_are_harmless_up_to_their_limits()
    {
        QFETCH(QString, text);
        QTEST(boxMarkup::isHarmless(text), "isHarmless");
    }
};

QN740_TEST_MAIN(tst_BoxMessages)
#include "tst_BoxMessages.moc"
