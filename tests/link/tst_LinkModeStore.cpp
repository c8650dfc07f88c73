// The stored link mode when the power is cut, the disk is full or the file is damaged. The mode is
// stored by a program of its own, whose calls on files go wrong one after the other.
#include "support/Program.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

constexpr int MaxCalls = 60;
const QByteArray OldFile("[General]\nSlave=1\n");
const QByteArray NewFile("[General]\nSlave=2\n");

struct Outcome
{
    bool ended; // by itself, with status 0
    QByteArray printed;
};

} // namespace

class tst_LinkModeStore : public QObject
{
    Q_OBJECT

    QString file(const QString& name = u"QN740KB.conf"_s) const
    {
        return m_home->filePath(u"TORVA/"_s + name);
    }

    void put(const QByteArray& contents) const
    {
        QDir(m_home->path()).mkpath(u"TORVA"_s);
        QFile target(file());
        QVERIFY(target.open(QIODevice::WriteOnly));
        QCOMPARE(target.write(contents), contents.size());
    }

    QByteArray contents(const QString& name = u"QN740KB.conf"_s) const
    {
        QFile source(file(name));
        return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
    }

    // Runs the program. how, at: see FileCallFaults.cpp
    Outcome run(const QStringList& arguments, const QString& how = {}, int at = 0,
        const QString& home = {}) const
    {
        QFile::remove(m_home->filePath(u"calls"_s));
        Program program(QString::fromUtf8(QN740_STORE_MODE), arguments,
            {u"XDG_CONFIG_HOME="_s + (home.isEmpty() ? m_home->path() : home),
                u"FAULT_PATH=/TORVA"_s, u"FAULT_HOW="_s + how, u"FAULT_AT="_s + QString::number(at),
                u"FAULT_LOG="_s + m_home->filePath(u"calls"_s),
                u"LD_PRELOAD="_s + QString::fromUtf8(QN740_FILE_CALL_FAULTS)});
        const bool ended = program.ends() && program.exitStatus() == QProcess::NormalExit &&
            program.exitCode() == 0;
        return {ended, program.output() + program.errors()};
    }

    QByteArrayList calls() const
    {
        QFile log(m_home->filePath(u"calls"_s));
        if (!log.open(QIODevice::ReadOnly)) {
            return {};
        }
        return log.readAll().replace(m_home->path().toUtf8() + "/TORVA", "").split('\n');
    }

    // Empties the home and puts one file into it, or none.
    void begin(const QByteArray& old)
    {
        m_home = std::make_unique<QTemporaryDir>();
        if (!old.isEmpty()) {
            put(old);
        }
    }

private slots:
    void init() { m_home = std::make_unique<QTemporaryDir>(); }

    void a_cut_at_any_call_leaves_the_old_mode_or_the_new_one_data()
    {
        QTest::addColumn<QByteArray>("old");
        QTest::addColumn<QByteArray>("fresh");
        QTest::addColumn<QString>("how");
        for (const char* how : {"kill", "half"}) {
            QTest::addRow("no settings, %s", how) << QByteArray() << NewFile << how;
            QTest::addRow("a mode, %s", how) << OldFile << NewFile << how;
            QTest::addRow("settings of others, %s", how)
                << QByteArray("[General]\nSlave=1\nZoom=3\n[Net]\nSlave=5\n")
                << QByteArray("[General]\nSlave=2\nZoom=3\n[Net]\nSlave=5\n") << how;
        }
    }

    void a_cut_at_any_call_leaves_the_old_mode_or_the_new_one()
    {
        QFETCH(QByteArray, old);
        QFETCH(QByteArray, fresh);
        QFETCH(QString, how);
        bool sawOld = false;
        bool sawNew = false;
        bool ended = false;
        for (int at = 1; !ended && at < MaxCalls; ++at) {
            begin(old);
            ended = run({u"2"_s}, how, at).ended;
            const QByteArray left = contents();
            QVERIFY2(left == old || left == fresh, left + " after call " + QByteArray::number(at));
            const bool isNew = left == fresh;
            if (!(isNew ? sawNew : sawOld)) {
                const QByteArray mode = isNew ? "2\n" : old.isEmpty() ? "0\n" : "1\n";
                QCOMPARE(run({}).printed, mode);
            }
            (isNew ? sawNew : sawOld) = true;
            if (QFile::exists(file(u"QN740KB.conf.new"_s))) { // what is left does not disturb
                QVERIFY(run({u"2"_s}).ended);
                QCOMPARE(contents(), fresh);
                QVERIFY(!QFile::exists(file(u"QN740KB.conf.new"_s)));
            }
        }
        QVERIFY(ended);
        QVERIFY(sawOld);
        QCOMPARE(contents(), fresh);
    }

    void a_call_that_fails_leaves_the_old_mode_or_the_new_one_data()
    {
        QTest::addColumn<int>("error");
        QTest::newRow("input/output error") << EIO;
        QTest::newRow("disk full") << ENOSPC;
        QTest::newRow("read-only file system") << EROFS;
        QTest::newRow("no permission") << EACCES;
    }

    void a_call_that_fails_leaves_the_old_mode_or_the_new_one()
    {
        QFETCH(int, error);
        begin(OldFile);
        QVERIFY(run({u"2"_s}).ended);
        const int count = static_cast<int>(calls().size()) - 1;
        QVERIFY(count >= 8 && count < MaxCalls);
        for (int at = 0; at <= count; ++at) { // 0: all calls fail
            begin(OldFile);
            const Outcome outcome = run({u"2"_s}, QString::number(error), at);
            QVERIFY2(outcome.ended, QByteArray::number(at));
            QCOMPARE(outcome.printed, QByteArray());
            const QByteArray left = contents();
            QVERIFY2(left == OldFile || left == NewFile, left);
            if (at > 0) {
                QVERIFY2(!QFile::exists(file(u"QN740KB.conf.new"_s)), QByteArray::number(at));
            }
        }
        QCOMPARE(contents(), NewFile); // the last call closes the folder
    }

    void the_calls_come_in_the_order_that_a_power_cut_needs()
    {
        begin(OldFile);
        QVERIFY(run({u"2"_s}).ended);
        QByteArrayList writing = calls();
        while (!writing.isEmpty() && !writing.first().startsWith("open ")) {
            writing.removeFirst();
        }
        writing.removeAll("futimens"); // depends on the time since the last change
        QCOMPARE(writing,
            (QByteArrayList{"open /QN740KB.conf.new", "write", "fchmod", "fsync", "close",
                "rename /QN740KB.conf.new /QN740KB.conf", "look ", "fsync", "close", ""}));
    }

    void an_equal_mode_is_not_written_again()
    {
        begin(NewFile);
        QVERIFY(run({u"2"_s}).ended);
        QVERIFY(!calls().contains("write"));
    }

    // What the disk did not take may be lost at a power cut, though the file reads well.
    void an_equal_mode_is_written_again_when_it_was_not_flushed()
    {
        begin(OldFile);
        QVERIFY(run({u"2"_s}).ended);
        const qsizetype flush = calls().lastIndexOf("fsync") + 1; // of the folder
        begin(OldFile);
        QVERIFY(run({u"2"_s, u"2"_s, u"2"_s}, QString::number(EIO), static_cast<int>(flush)).ended);
        QCOMPARE(calls().count("rename /QN740KB.conf.new /QN740KB.conf"), 2);
    }

    void each_folder_that_is_made_is_flushed()
    {
        begin({});
        const QString home = m_home->filePath(u"TORVA/one/two"_s);
        QVERIFY(QDir(m_home->path()).mkdir(u"TORVA"_s));
        QVERIFY(run({u"2"_s}, {}, 0, home).ended);
        const QByteArrayList made = calls();
        const qsizetype first = made.indexOf("mkdir /one");
        QCOMPARE(made.mid(first, 12),
            (QByteArrayList{"mkdir /one", "look ", "fsync", "close", "mkdir /one/two", "look /one",
                "fsync", "close", "mkdir /one/two/TORVA", "look /one/two", "fsync", "close"}));
    }

    void a_damaged_store_reads_as_mode_0_silently_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("half-written") << OldFile.left(OldFile.size() - 2);
        QTest::newRow("half of a line") << QByteArray("[General]\nSla");
        QTest::newRow("no number") << QByteArray("[General]\nSlave=two\n");
        QTest::newRow("mode and garbage") << QByteArray("[General]\nSlave=2\n\xff\xfe garbage\n");
        QTest::newRow("zeros") << QByteArray(4096, '\0');
        QTest::newRow("group that does not end") << QByteArray("[General\nSlave=2\n");
        QByteArray noise;
        for (int i = 0; i < 200'000; ++i) {
            noise += static_cast<char>(i * 7919 >> 5);
        }
        QTest::newRow("noise") << noise;
        QTest::newRow("large but valid")
            << "[General]\nSlave=2\n[Other]\n" + QByteArray("Key=Value\n").repeated(7000);
    }

    void a_damaged_store_reads_as_mode_0_silently()
    {
        QFETCH(QByteArray, contents);
        begin(" ");
        put(contents);
        const Outcome outcome = run({});
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.printed, "0\n");
        QVERIFY(run({u"2"_s}).ended); // and is replaced
        QCOMPARE(run({}).printed, "2\n");
        QVERIFY(this->contents().size() < 70'000);
    }

    void a_store_that_cannot_be_read_reads_as_mode_0_silently()
    {
        begin(NewFile);
        for (const int error : {EACCES, EIO, ENOENT}) {
            const Outcome outcome = run({}, QString::number(error));
            QVERIFY(outcome.ended);
            QCOMPARE(outcome.printed, "0\n");
        }
        begin({});
        QVERIFY(QDir(m_home->path()).mkpath(u"TORVA/QN740KB.conf/folder"_s));
        QCOMPARE(run({}).printed, "0\n");
        QVERIFY(run({u"2"_s}).ended);
        QCOMPARE(run({}).printed, "0\n");
    }

    void a_lock_that_a_cut_has_left_does_not_block()
    {
        begin(OldFile);
        QFile lock(file(u"QN740KB.conf.lock"_s));
        QVERIFY(lock.open(QIODevice::WriteOnly));
        lock.setFileTime(QDateTime::currentDateTimeUtc().addYears(1), QFile::FileModificationTime);
        lock.close();
        QElapsedTimer timer;
        timer.start();
        QVERIFY(run({u"2"_s}).ended);
        QVERIFY(timer.elapsed() < 5000);
        QCOMPARE(contents(), NewFile);
    }

private:
    std::unique_ptr<QTemporaryDir> m_home;
};

QN740_TEST_MAIN(tst_LinkModeStore)
#include "tst_LinkModeStore.moc"
