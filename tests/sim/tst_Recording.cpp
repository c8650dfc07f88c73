#include "sim/replay/RecordFile.h"
#include "sim/replay/Recording.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class tst_Recording : public QObject
{
    Q_OBJECT

    QTemporaryDir m_directory;

    QString fileWith(const QByteArray& text) const
    {
        QFile file(m_directory.filePath(u"talk.log"_s));
        file.open(QIODevice::WriteOnly);
        file.write(text);
        return file.fileName();
    }

private slots:
    void trace_lines_are_read_with_anything_in_front_and_others_skipped()
    {
        const Recording recording =
            Recording::parse("sim: ready /tmp/dev\n"
                             "0.001 in \\x02PING\\x04\n"
                             "qn740.link: 12.345 out \\x02PONG\\x04\r\n"
                             "\n"
                             "12:00:01 [debug] trace: 13.000 in \\x02SB,0,a\\\\b \\xe4\\x04");
        const auto& lines = recording.lines();
        QCOMPARE(lines.size(), 3);
        QCOMPARE(lines.at(0).seconds, 0.001);
        QVERIFY(lines.at(0).in);
        QCOMPARE(lines.at(0).frame, u"\x02PING\x04"_s);
        QVERIFY(!lines.at(1).in);
        QCOMPARE(lines.at(1).frame, u"\x02PONG\x04"_s);
        QCOMPARE(lines.at(2).frame, QString::fromLatin1("\x02SB,0,a\\b \xe4\x04"));
    }

    void a_line_is_utf8_or_latin1_text()
    {
        const auto lines = Recording::parse("1.000 in \\x02SB,0,\xe4\\x04\n"
                                            "2.000 in \\x02SB,0,\xc3\xa4\\x04\n")
                               .lines();
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines.at(0).frame, QString::fromLatin1("\x02SB,0,\xe4\x04"));
        QCOMPARE(lines.at(1).frame, lines.at(0).frame);
    }

    void unframed_texts_that_follow_each_other_are_one()
    {
        const Recording recording = Recording::parse("1.000 in \\x02ST,1\\x04\n"
                                                     "1.001 out D1:SPEN:1\n"
                                                     "1.002 out D2:SPEN:1\n"
                                                     "1.003 out \\x02PONG\\x04\n"
                                                     "1.004 out D2:SPEN:1\n"
                                                     "1.005 in x\n"
                                                     "1.006 in y\n"
                                                     "1.007 out z\n");
        QStringList frames;
        for (const wire::TraceLine& line : recording.lines()) {
            frames += line.frame;
        }
        QCOMPARE(frames,
            (QStringList{u"\x02ST,1\x04"_s, u"D1:SPEN:1D2:SPEN:1"_s, u"\x02PONG\x04"_s,
                u"D2:SPEN:1"_s, u"x"_s, u"y"_s, u"z"_s}));
    }

    void a_file_without_a_trace_line_is_refused()
    {
        const QString path = fileWith("PING\n12 in PING\n");
        const Recording recording = Recording::load(path);
        QCOMPARE(recording.fault(), path + u": no line as \"12.345 in \\x02PING\\x04\" in it"_s);
        QVERIFY(recording.lines().isEmpty());
    }

    void a_file_that_cannot_be_read_is_refused_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing") << m_directory.filePath(u"none.log"_s);
        QTest::newRow("directory") << m_directory.path();
        QTest::newRow("endless") << "/dev/zero";
    }

    void a_file_that_cannot_be_read_is_refused()
    {
        QFETCH(QString, path);
        const Recording recording = Recording::load(path);
        QVERIFY2(recording.fault().startsWith(path + u": "_s), qPrintable(recording.fault()));
    }

    void what_is_written_is_read_again()
    {
        const QString path = m_directory.filePath(u"new.log"_s);
        RecordFile file(path);
        QVERIFY(file.isOpen());
        const QByteArray all = [] {
            QByteArray bytes;
            for (int i = 0; i < 256; ++i) {
                bytes += char(i);
            }
            return bytes;
        }();
        file.toPanel(all);
        file.fromPanel(QString::fromLatin1(all), true);
        file.fromPanel(u"D1:SPEN:1"_s, false);
        // The lines are in the file at once, while the writer still has it open.
        const auto lines = Recording::load(path).lines();
        QCOMPARE(lines.size(), 3);
        QVERIFY(lines.at(0).in);
        QCOMPARE(lines.at(0).frame.toLatin1(), all);
        QVERIFY(!lines.at(1).in);
        QCOMPARE(lines.at(1).frame.toLatin1(), '\x02' + all + '\x04');
        QCOMPARE(lines.at(2).frame, u"D1:SPEN:1"_s);
        QVERIFY(lines.at(1).seconds >= lines.at(0).seconds);
    }

    void a_file_that_cannot_be_written_is_reported()
    {
        RecordFile file(u"/proc/none/talk.log"_s);
        QVERIFY(!file.isOpen());
        QVERIFY(file.errorString().startsWith(u"/proc/none/talk.log: "_s));
        file.toPanel("x");
    }

    void a_full_disk_is_reported_once()
    {
        RecordFile file(u"/dev/full"_s);
        QVERIFY(file.isOpen());
        QSignalSpy failed(&file, &RecordFile::failed);
        file.toPanel("x");
        file.toPanel("y");
        QCOMPARE(failed.size(), 1);
        QVERIFY(failed.at(0).at(0).toString().startsWith(u"/dev/full: "_s));
        QVERIFY(!file.isOpen());
    }
};

QN740_TEST_MAIN(tst_Recording)
#include "tst_Recording.moc"
