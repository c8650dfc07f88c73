#include "app/SetGov.h"
#include "support/TestMain.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

class tst_SetGov : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_path = qgetenv("PATH");
        qputenv("PATH", m_directory->path().toLocal8Bit() + ":/usr/bin:/bin");
    }

    void cleanup() { qputenv("PATH", m_path); }

    void the_governor_is_set_to_performance()
    {
        makeProgram(u"echo \"$#:$1:$2\" > "_s + m_directory->filePath(u"arguments"_s));
        SetGov().changeGov();
        QFile arguments(m_directory->filePath(u"arguments"_s));
        QVERIFY(arguments.open(QIODevice::ReadOnly));
        QCOMPARE(arguments.readAll(), QByteArray("2:--governor:performance\n"));
    }

    void a_missing_program_is_ignored()
    {
        QElapsedTimer elapsed;
        elapsed.start();
        SetGov().changeGov();
        QVERIFY(elapsed.elapsed() < 5000);
    }

    void a_failing_program_is_ignored()
    {
        makeProgram(u"echo > "_s + m_directory->filePath(u"started"_s) + u"; exit 3"_s);
        SetGov().changeGov();
        QVERIFY(QFile::exists(m_directory->filePath(u"started"_s)));
    }

    void a_hanging_program_is_abandoned_after_one_second()
    {
        makeProgram(u"exec sleep 60"_s);
        QElapsedTimer elapsed;
        elapsed.start();
        SetGov().changeGov();
        QVERIFY2(elapsed.elapsed() >= 900, QByteArray::number(elapsed.elapsed()));
        QVERIFY2(elapsed.elapsed() < 20000, QByteArray::number(elapsed.elapsed()));
    }

private:
    void makeProgram(const QString& body)
    {
        QFile program(m_directory->filePath(u"cpufreq-set"_s));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\n" + body.toLocal8Bit() + "\n");
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    QByteArray m_path;
};

QN740_TEST_MAIN(tst_SetGov)
#include "tst_SetGov.moc"
