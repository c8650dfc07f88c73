#include "sim/line/PseudoTerminal.h"
#include "sim/line/UnitDevices.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

class tst_UnitDevices : public QObject
{
    Q_OBJECT

private slots:
    void a_fresh_directory_comes_and_goes_with_its_links()
    {
        QString path;
        {
            UnitDevices devices;
            QVERIFY(devices.isValid());
            path = devices.path();
            PseudoTerminal* line = devices.add("ttyO1");
            QVERIFY(line != nullptr);
            QCOMPARE(QFile::symLinkTarget(path + "/ttyO1"), line->slavePath());
        }
        QVERIFY(!QFile::exists(path));
    }

    void a_directory_that_it_made_goes_again()
    {
        QTemporaryDir parent;
        {
            UnitDevices devices(parent.filePath("a/dev"));
            QVERIFY(devices.isValid());
            QVERIFY(devices.add("ttyO1") != nullptr);
            QVERIFY(QDir(parent.filePath("a/dev")).exists());
        }
        QVERIFY(!QDir(parent.filePath("a/dev")).exists());
    }

    void a_directory_that_was_there_stays_without_the_links()
    {
        QTemporaryDir parent;
        {
            UnitDevices devices(parent.path());
            QVERIFY(devices.add("ttyO1") != nullptr);
            QVERIFY(devices.add("ttyUSB1") != nullptr);
        }
        QVERIFY(QDir(parent.path()).exists());
        QVERIFY(
            QDir(parent.path()).isEmpty(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot));
    }

    void a_link_of_an_earlier_run_is_replaced()
    {
        QTemporaryDir parent;
        QVERIFY(QFile::link("/dev/pts/99999", parent.filePath("ttyO1")));
        UnitDevices devices(parent.path());
        PseudoTerminal* line = devices.add("ttyO1");
        QVERIFY(line != nullptr);
        QCOMPARE(QFile::symLinkTarget(parent.filePath("ttyO1")), line->slavePath());
    }

    void a_file_of_that_name_is_left_alone()
    {
        QTemporaryDir parent;
        QFile file(parent.filePath("ttyO1"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        {
            UnitDevices devices(parent.path());
            QVERIFY(devices.add("ttyO1") == nullptr);
            QVERIFY(devices.errorString().contains("ttyO1"));
        }
        QVERIFY(file.exists());
    }

    void a_directory_that_cannot_be_made_is_told()
    {
        UnitDevices devices("/proc/none/dev");
        QVERIFY(!devices.isValid());
        QCOMPARE(devices.errorString(), QString("/proc/none/dev: cannot be made"));
    }
};

QN740_TEST_MAIN(tst_UnitDevices)
#include "tst_UnitDevices.moc"
