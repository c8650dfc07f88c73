// These tests draw a menu file with qn740-pictures, as pictures and as a page for design reviews.
#include "menus/Key.h"
#include "support/TestMain.h"
#include "tools/pictures/KeyText.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

// What makes the menus of the tests.
QString definitions()
{
    QString text =
        u"AK,Tuner <1>,freq,RF & \"Frequency\",1,R1:FREQ:,2200.5 2399.5:1435.5 1534.5,1,,2250.5,0,1\n"_s
        u"AK,Tuner <1>,gain,IF Gain dB,3,R1:GAIN:,60 0,0,1:5,24,0,1\n"_s
        u"AK,Tuner <1>,agc,AGC,0,R1:AGC:,,0,,0,1,1\n"_s
        u"AK,Tuner <1>,src,Source,2,R1:SRC:,,0,0 Off:1 On,0,0,0\nCK,Tuner <1>,src,0\n"_s
        u"AK,Tuner <1>,ip,Address,6,IP:,,0,,0,0,1\nCK,Tuner <1>,ip,2\n"_s
        u"AK,Tuner <1>,out,Outputs,5,SK:Outputs:,,0,,0,0,1\n"_s
        u"AK,Tuner <1>,far,Elsewhere,5,SK:Nowhere:,,0,,0,0,1\n"_s
        u"CM,Main,Tuner <1>,freq\nMS,PAX,Tuner <1>,agc\n"_s;
    for (int i = 1; i <= 40; ++i) {
        text += u"AK,Outputs,o%1,Output %1,5,O%1:,,0,,0,0,1\n"_s.arg(i);
    }
    return text + u"AK,Outputs,load,Load,4,LD:,,0,1 A:2 B,0,0,1\n"_s;
}

// What would stand in front of them.
QString disturbances()
{
    return u"DB,Antenna <b>fault</b>,1\nIK,Unlock,1,SYS:PIN:,0 9999,7,\nwait 600000\nPAX,1\nDB,Wait\n"_s
           u"SK,Outputs\n"_s;
}

const QStringList Pages{u"tuner-1.png"_s, u"main.png"_s, u"pax.png"_s, u"outputs-page-1-of-2.png"_s,
    u"outputs-page-2-of-2.png"_s};
const QStringList Editors{u"tuner-1-rf-frequency.png"_s, u"tuner-1-if-gain-db.png"_s,
    u"tuner-1-source.png"_s, u"tuner-1-address.png"_s, u"outputs-load.png"_s};
const QStringList Others{
    u"unlock.png"_s, u"message-box-antenna-b-fault-b.png"_s, u"message-box-wait.png"_s};

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

// The texts and attributes of a page, by element.
struct Content
{
    QHash<QString, QStringList> texts; // of the elements, by name
    QStringList sources;               // of the pictures
    QStringList links;
    QStringList anchors;
    QString error;
};

Content read(const QByteArray& page)
{
    Content content;
    QXmlStreamReader xml(page);
    QStringList open;
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            open += xml.name().toString();
            content.texts[open.constLast()] += QString();
            if (xml.attributes().hasAttribute(u"src"_s)) {
                content.sources += xml.attributes().value(u"src"_s).toString();
            }
            if (xml.attributes().hasAttribute(u"href"_s)) {
                content.links += xml.attributes().value(u"href"_s).toString();
            }
            if (xml.attributes().hasAttribute(u"id"_s)) {
                content.anchors += u'#' + xml.attributes().value(u"id"_s).toString();
            }
            break;
        case QXmlStreamReader::Characters:
            for (const QString& element : std::as_const(open)) {
                content.texts[element].last() += xml.text();
            }
            break;
        case QXmlStreamReader::EndElement:
            open.removeLast();
            break;
        default:
            break;
        }
    }
    content.error = xml.errorString();
    return content;
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_MenuPaper : public QObject
{
    Q_OBJECT

    QString path(const QString& name) const { return m_folder.filePath(name); }

    // Draws a menu file and returns the exit status.
    int draw(const QString& menus, const QStringList& arguments)
    {
        QFile file(path(u"my.menu"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(menus.toUtf8()) < 0) {
            return -1;
        }
        file.close();
        QProcess program;
        program.setWorkingDirectory(m_folder.path());
        program.start(
            QString::fromUtf8(QN740_PICTURES), QStringList{u"--menu"_s, u"my.menu"_s} + arguments);
        const bool ended = program.waitForFinished(60000);
        m_errors = QString::fromUtf8(program.readAllStandardError());
        return ended && program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
    }

    QStringList picturesIn(const QString& folder) const
    {
        return QDir(path(folder)).entryList({u"*.png"_s}, QDir::Files, QDir::Name);
    }

    QTemporaryDir m_folder;
    QString m_errors;

private slots:
    void every_page_editor_and_box_is_drawn_once()
    {
        const QString file = disturbances() + definitions() + disturbances();
        QCOMPARE(draw(file, {u"--html"_s, u"page.html"_s, u"pictures"_s}), 0);
        QCOMPARE(m_errors, QString());
        QStringList all = Pages + Editors + Others;
        for (const QString& again : Others) {
            all += QString(again).replace(u".png"_s, u"-2.png"_s);
        }
        QCOMPARE(picturesIn(u"pictures"_s), sorted(all));
        for (const QString& name : std::as_const(all)) {
            QCOMPARE(QImage(path(u"pictures/"_s + name)).size(), QSize(800, 480));
        }
    }

    void boxes_and_other_messages_do_not_cover_the_rest()
    {
        QCOMPARE(draw(definitions(), {u"plain"_s}), 0);
        QCOMPARE(picturesIn(u"plain"_s), sorted(Pages + Editors));
        for (const QString& name : Pages + Editors) {
            QVERIFY2(QImage(path(u"plain/"_s + name)) == QImage(path(u"pictures/"_s + name)),
                qPrintable(name));
        }
        QVERIFY(QImage(path(u"plain/"_s + Pages.at(3))) != QImage(path(u"plain/"_s + Pages.at(4))));
    }

    void the_page_names_every_key_with_what_it_sends()
    {
        const QByteArray bytes = contents(path(u"page.html"_s));
        const Content page = read(bytes);
        QCOMPARE(page.error, QString());
        QVERIFY(bytes.startsWith("<!DOCTYPE html>"));
        // An HTML reader takes the end of an empty element for a start.
        const QRegularExpression empty(u"<(?!meta|img)[a-z0-9]+[^>]*/>"_s);
        QVERIFY(!empty.match(QString::fromUtf8(bytes)).hasMatch());
        QCOMPARE(page.texts.value(u"h2"_s),
            (QStringList{u"Tuner <1>"_s, u"Main"_s, u"PAX"_s, u"Outputs"_s,
                u"Editors that the unit opens (IK)"_s, u"Message boxes (DB)"_s}));
        const QStringList rows = page.texts.value(u"tr"_s);
        const auto has = [&rows](const char* row) { return rows.contains(QString::fromUtf8(row)); };
        QVERIFY(has("RF & \"Frequency\"freqnumber, frequency in MHzR1:FREQ:value"
                    "2200.5 to 2399.5, 1435.5 to 1534.5enabled"));
        QVERIFY(has("IF Gain dBgainsliderR1:GAIN:value0 to 60, in steps of 1, 5enabled"));
        QVERIFY(has("AGCagcswitchR1:AGC:0 or R1:AGC:1enabled"));
        QVERIFY(has("SourcesrcselectionR1:SRC:value0 = Off, 1 = Ondisabled"));
        QVERIFY(has("AddressipIPv4 addressIP:valuehidden"));
        QVERIFY(has("OutputsoutcommandSK:Outputs:1, for the menu Outputsenabled"));
        QVERIFY(
            has("ElsewherefarcommandSK:Nowhere:1, for the menu Nowhere (not in this file)enabled"));
        QVERIFY(has("Output 40o40commandO40:1 and O40:0 in turnenabled"));
        QVERIFY(rows.filter(u"copy of the key in Tuner <1>"_s).size() == 2);
        QVERIFY(page.texts.value(u"figcaption"_s)
                    .contains(u"Source: R1:SRC:value. selection: 0 = Off, 1 = On"_s));
        for (const QString& link : page.links) {
            QVERIFY2(page.anchors.contains(link), qPrintable(link));
        }
    }

    void the_pictures_are_beside_the_page_or_in_it()
    {
        const Content beside = read(contents(path(u"page.html"_s)));
        QCOMPARE(sorted(beside.sources).size(), picturesIn(u"pictures"_s).size());
        for (const QString& source : beside.sources) {
            QVERIFY2(QFileInfo::exists(path(source)), qPrintable(source));
        }
        QCOMPARE(draw(definitions(), {u"--html"_s, u"one.html"_s}), 0);
        const Content inside = read(contents(path(u"one.html"_s)));
        QCOMPARE(inside.error, QString());
        QCOMPARE(inside.sources.size(), Pages.size() + Editors.size());
        const QString start = u"data:image/png;base64,"_s;
        QVERIFY(inside.sources.constFirst().startsWith(start));
        QImage first;
        QVERIFY(first.loadFromData(
            QByteArray::fromBase64(inside.sources.constFirst().mid(start.size()).toLatin1())));
        QCOMPARE(first, QImage(path(u"plain/tuner-1.png"_s)));
    }

    void a_file_with_faults_is_not_drawn()
    {
        QCOMPARE(draw(definitions() + u"AK,x\n"_s, {u"--html"_s, u"none.html"_s}), 1);
        QVERIFY2(m_errors.startsWith(u"my.menu:53: AK needs 11 fields"_s), qPrintable(m_errors));
        QVERIFY(!QFileInfo::exists(path(u"none.html"_s)));
    }

    void a_key_is_described_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("param");
        QTest::addColumn<QString>("units");
        QTest::addColumn<QString>("options");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("sends");
        QTest::addColumn<QString>("values");
        const auto row = [](int type, int param, const char* units, const char* options,
                             const char* kind, const char* sends, const char* values) {
            QTest::addRow("type %d, parameter %d", type, param)
                << type << param << QString::fromUtf8(units) << QString::fromUtf8(options)
                << QString::fromUtf8(kind) << QString::fromUtf8(sends) << QString::fromUtf8(values);
        };
        row(0, 0, "", "", "switch", "X:0 or X:1", "");
        row(1, 0, "-6 6", "", "number with a sign", "X:value", "-6 to 6");
        row(1, 1, "1 2", "", "number, frequency in MHz", "X:value", "1 to 2");
        row(1, 2, "1 2", "", "number, bit rate in bps", "X:value", "1 to 2");
        row(1, 3, "1 2:3 4", "", "number, frequency in Hz", "X:value", "1 to 2, 3 to 4");
        row(1, 4, "0 1", "", "number, angle in rad", "X:value", "0 to 1");
        row(1, 5, "0 1", "", "number, percentage, sent as a fraction", "X:value", "0 to 1");
        row(1, 6, "1 5", "-1 Auto", "number with a special value", "X:value",
            "1 to 5; special value -1 = Auto");
        row(1, 7, "0 9", "", "number, PIN", "X:value", "0 to 9");
        row(1, 8, "0 9", "", "number, hexadecimal", "X:value", "0 to 9");
        row(1, 9, "0 9", "", "number", "X:value", "0 to 9");
        row(2, 0, "", "0 A:1 B C:alone", "selection", "X:value", "0 = A, 1 = B C, alone");
        row(3, 0, "60 0", "", "slider", "X:value", "0 to 60");
        row(4, 0, "", "1 A", "file", "X:value or X:name", "1 = A");
        row(5, 0, "", "", "command", "X:1 and X:0 in turn", "");
        row(6, 0, "", "", "IPv4 address", "X:value", "");
        row(7, 0, "", "", "unknown type 7", "nothing", "");
    }
    void a_key_is_described()
    {
        Key key;
        QFETCH(int, type);
        QFETCH(int, param);
        key.type = type;
        key.param = param;
        QFETCH(QString, units);
        QFETCH(QString, options);
        key.units = units;
        key.options = options;
        key.command = u"X:"_s;
        QTEST(keyText::kind(key), "kind");
        QTEST(keyText::sends(key), "sends");
        QTEST(keyText::values(key), "values");
        QCOMPARE(keyText::hasEditor(type), type >= 1 && type <= 6 && type != 5);
    }
};

QN740_TEST_MAIN(tst_MenuPaper)
#include "tst_MenuPaper.moc"
