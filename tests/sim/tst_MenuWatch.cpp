#include "sim/cli/MenuWatch.h"
#include "support/TestMain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = 20000;
// longer than what is waited for after a change
constexpr int QuietMs = 3 * MenuWatch::SettleMs;

} // namespace

class tst_MenuWatch : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_path;

    bool write(const QString& path, const QByteArray& text) const
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
    }

    bool rename(const QString& from, const QString& to) const
    {
        return std::rename(QFile::encodeName(from), QFile::encodeName(to)) == 0;
    }

private slots:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_path = m_directory->filePath(u"my.menu"_s);
        QVERIFY(write(m_path, "PING\n"));
    }

    void each_way_of_saving_is_noticed_again_and_again_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("in place") << "in place";
        QTest::newRow("another file is renamed") << "rename";
        QTest::newRow("deleted and created") << "delete";
        QTest::newRow("moved away and created, as for a backup") << "backup";
    }

    void each_way_of_saving_is_noticed_again_and_again()
    {
        QFETCH(QString, way);
        const MenuWatch watch(m_path);
        QSignalSpy saved(&watch, &MenuWatch::saved);
        QSignalSpy gone(&watch, &MenuWatch::gone);
        for (int round = 1; round <= 3; ++round) {
            const QByteArray text = "SB,0,Number " + QByteArray::number(round) + '\n';
            const QString other = m_path + u"~"_s;
            if (way == u"rename") {
                QVERIFY(write(other, text) && rename(other, m_path));
            } else if (way == u"delete") {
                QVERIFY(QFile::remove(m_path) && write(m_path, text));
            } else if (way == u"backup") {
                QVERIFY(rename(m_path, other) && write(m_path, text));
            } else {
                QVERIFY(write(m_path, text));
            }
            QTRY_COMPARE_WITH_TIMEOUT(saved.size(), round, LongMs);
        }
        QCOMPARE(gone.size(), 0);
    }

    void a_file_that_is_written_in_pieces_counts_once()
    {
        const MenuWatch watch(m_path);
        QSignalSpy saved(&watch, &MenuWatch::saved);
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        int allowed = 1;
        for (int piece = 0; piece < 5; ++piece) {
            QElapsedTimer elapsed;
            elapsed.start();
            file.write("SB,0,Piece\n");
            file.flush();
            QTest::qWait(MenuWatch::SettleMs / 4);
            // On a loaded machine a pause may be long enough to count as an end.
            allowed += elapsed.elapsed() >= MenuWatch::SettleMs ? 1 : 0;
            QVERIFY(saved.size() < allowed);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!saved.isEmpty(), LongMs);
        QTest::qWait(QuietMs);
        QVERIFY(saved.size() <= allowed);
    }

    void what_changes_no_byte_of_the_file_does_not_count()
    {
        const MenuWatch watch(m_path);
        QSignalSpy saved(&watch, &MenuWatch::saved);
        QVERIFY(write(m_directory->filePath(u"other"_s), "x"));
        QVERIFY(write(m_path, "PING\n"));
        QTest::qWait(QuietMs);
        QCOMPARE(saved.size(), 0);
    }

    void a_file_that_goes_is_announced_once_and_found_when_it_is_back()
    {
        const MenuWatch watch(m_path);
        QSignalSpy saved(&watch, &MenuWatch::saved);
        QSignalSpy gone(&watch, &MenuWatch::gone);
        QVERIFY(QFile::remove(m_path));
        QTRY_COMPARE_WITH_TIMEOUT(gone.size(), 1, LongMs);
        QVERIFY(write(m_directory->filePath(u"other"_s), "x"));
        QTest::qWait(QuietMs);
        QCOMPARE(gone.size(), 1);
        QVERIFY(write(m_path, "PING\n"));
        QTRY_COMPARE_WITH_TIMEOUT(saved.size(), 1, LongMs);
    }

    void a_file_that_was_missing_is_found_with_its_directory()
    {
        const QString path = m_directory->filePath(u"sub/my.menu"_s);
        const MenuWatch watch(path);
        QSignalSpy saved(&watch, &MenuWatch::saved);
        QSignalSpy gone(&watch, &MenuWatch::gone);
        QVERIFY(QDir(m_directory->path()).mkdir(u"sub"_s) && write(path, "PING\n"));
        QTRY_COMPARE_WITH_TIMEOUT(saved.size(), 1, LongMs);
        QVERIFY(QDir(m_directory->filePath(u"sub"_s)).removeRecursively());
        QTRY_COMPARE_WITH_TIMEOUT(gone.size(), 1, LongMs);
        QVERIFY(QDir(m_directory->path()).mkdir(u"sub"_s) && write(path, "VER\n"));
        QTRY_COMPARE_WITH_TIMEOUT(saved.size(), 2, LongMs);
    }

    void a_pipe_in_place_of_the_file_holds_nothing_up()
    {
        const MenuWatch watch(m_path);
        QSignalSpy gone(&watch, &MenuWatch::gone);
        QVERIFY(QFile::remove(m_path));
        QCOMPARE(::mkfifo(QFile::encodeName(m_path), 0600), 0);
        QTRY_COMPARE_WITH_TIMEOUT(gone.size(), 1, LongMs);
    }
};

QN740_TEST_MAIN(tst_MenuWatch)
#include "tst_MenuWatch.moc"
