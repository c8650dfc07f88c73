#include "sim/line/PseudoTerminal.h"
#include "sim/line/UnitDevices.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class tst_UnitDevices : public QObject
{
    Q_OBJECT

private slots:
    void a_new_directory_is_removed_with_its_links()
    {
        QString path;
        {
            UnitDevices devices;
            QVERIFY(devices.isValid());
            path = devices.path();
            PseudoTerminal* line = devices.add(u"ttyO1"_s);
            QVERIFY(line != nullptr);
            QCOMPARE(QFile::symLinkTarget(path + u"/ttyO1"_s), line->slavePath());
        }
        QVERIFY(!QFile::exists(path));
    }

    void a_directory_that_it_created_is_removed()
    {
        QTemporaryDir parent;
        {
            UnitDevices devices(parent.filePath(u"a/dev"_s));
            QVERIFY(devices.isValid());
            QVERIFY(devices.add(u"ttyO1"_s) != nullptr);
            QVERIFY(QDir(parent.filePath(u"a/dev"_s)).exists());
        }
        QVERIFY(!QDir(parent.filePath(u"a/dev"_s)).exists());
    }

    void an_existing_directory_stays_without_the_links()
    {
        QTemporaryDir parent;
        {
            UnitDevices devices(parent.path());
            QVERIFY(devices.add(u"ttyO1"_s) != nullptr);
            QVERIFY(devices.add(u"ttyUSB1"_s) != nullptr);
        }
        QVERIFY(QDir(parent.path()).exists());
        QVERIFY(
            QDir(parent.path()).isEmpty(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot));
    }

    void a_link_of_an_earlier_run_is_replaced()
    {
        QTemporaryDir parent;
        QVERIFY(QFile::link(u"/dev/pts/99999"_s, parent.filePath(u"ttyO1"_s)));
        UnitDevices devices(parent.path());
        PseudoTerminal* line = devices.add(u"ttyO1"_s);
        QVERIFY(line != nullptr);
        QCOMPARE(QFile::symLinkTarget(parent.filePath(u"ttyO1"_s)), line->slavePath());
    }

    void a_device_that_is_unplugged_has_no_link_until_it_is_plugged_in()
    {
        QTemporaryDir parent;
        const QString link = parent.filePath(u"ttyUSB1"_s);
        {
            UnitDevices devices(parent.path());
            PseudoTerminal* line = devices.add(u"ttyUSB1"_s);
            QVERIFY(line != nullptr);
            QVERIFY(devices.unplug(u"ttyUSB1"_s));
            QVERIFY(!QFileInfo(link).isSymLink());
            QVERIFY(!line->isValid());
            QVERIFY(devices.unplug(u"ttyUSB1"_s));
            QVERIFY(devices.plug(u"ttyUSB1"_s));
            QVERIFY(line->isValid());
            QCOMPARE(QFile::symLinkTarget(link), line->slavePath());
            QVERIFY(devices.plug(u"ttyUSB1"_s));
            QVERIFY(!devices.unplug(u"ttyUSB2"_s));
            QVERIFY(!devices.plug(u"ttyUSB2"_s));
        }
        QVERIFY(!QFileInfo(link).isSymLink());
    }

    void a_file_of_that_name_is_left_alone()
    {
        QTemporaryDir parent;
        QFile file(parent.filePath(u"ttyO1"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        {
            UnitDevices devices(parent.path());
            QVERIFY(devices.add(u"ttyO1"_s) == nullptr);
            QVERIFY(devices.errorString().contains(u"ttyO1"_s));
        }
        QVERIFY(file.exists());
    }

    void a_directory_that_cannot_be_created_is_reported()
    {
        UnitDevices devices(u"/proc/none/dev"_s);
        QVERIFY(!devices.isValid());
        QCOMPARE(devices.errorString(), u"/proc/none/dev: cannot be made"_s);
    }
};

QN740_TEST_MAIN(tst_UnitDevices)
#include "tst_UnitDevices.moc"
