// Opening every editor by its key and cancelling it again and again does not use up memory.
#include "menus/Key.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

#include <QFile>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// Returns the memory that this process occupies, in kB.
qint64 residentKilobytes()
{
    QFile file(u"/proc/self/statm"_s);
    return file.open(QIODevice::ReadOnly)
        ? file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE) / 1024
        : 0;
}

// Calls `then` as soon as the event loop of the next dialog runs. This is faster than whenModal(),
// which polls.
void inNextDialog(const std::function<void(QWidget*)>& then)
{
    QTimer::singleShot(0, qApp, [then] {
        QWidget* dialog = QApplication::activeModalWidget();
        QVERIFY(dialog != nullptr);
        then(dialog);
    });
}

void clickOnButton(QWidget* dialog, const char* text)
{
    QPushButton* button = buttonWithText(dialog, QString::fromUtf8(text));
    QVERIFY2(button != nullptr, text);
    button->click();
}

} // namespace

class tst_KeyPressMemory : public QObject
{
    Q_OBJECT

private slots:
    // QN740_CYCLES sets the number of cycles; the memory is checked only when there are enough of
    // them for a leak to show.
    void a_cancelled_editor_leaves_no_memory_behind_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("units");
        QTest::addColumn<int>("param");
        QTest::addColumn<QString>("options");
        QTest::addColumn<QByteArray>("opens");
        QTest::addColumn<QByteArray>("cancels");
        const auto row = [](const char* name, int type, const char* units, int param,
                             const QString& options, const char* opens, const char* cancels) {
            QTest::newRow(name) << type << QString::fromUtf8(units) << param << options
                                << QByteArray(opens) << QByteArray(cancels);
        };
        row("number pad", Key::Number, "950 2150:10 20", 1, {}, "", "CE/Cancel");
        row("selection list", Key::Selection, "", 0, popUps::list(17, u"c"_s), "", "Cancel");
        row("slider", Key::Slider, "100 0", 0, u"1:5"_s, "", "OK");
        row("file board", Key::File, "", 0, popUps::list(9, u"f"_s), "", "Cancel");
        row("file name", Key::File, "", 0, popUps::list(9, u"f"_s), "New File", "Cancel");
        row("address pad", Key::Address, "", 0, {}, "", "CE/Cancel");
    }
    void a_cancelled_editor_leaves_no_memory_behind()
    {
        QFETCH(int, type);
        QFETCH(QString, units);
        QFETCH(int, param);
        QFETCH(QString, options);
        QFETCH(QByteArray, opens);
        QFETCH(QByteArray, cancels);
        Key key;
        key.type = type;
        key.label = u"Setting"_s;
        key.command = u"CMD "_s;
        key.units = units;
        key.param = param;
        key.options = options;
        QSignalSpy sent(&key, &Key::response_message);
        int closed = 0;
        const auto cycle = [&] {
            inNextDialog([&](QWidget* dialog) {
                if (!opens.isEmpty()) {
                    inNextDialog([&](QWidget* over) {
                        QVERIFY(over != dialog);
                        clickOnButton(over, cancels);
                    });
                    clickOnButton(dialog, opens);
                }
                clickOnButton(dialog, cancels);
                ++closed;
            });
            key.key_button_pushed();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        const int wanted = qEnvironmentVariableIntValue("QN740_CYCLES");
        const int cycles = wanted > 0 ? wanted : 50;
        const int warmUp = qMin(cycles, 200);
        for (int i = 0; i < warmUp; ++i) {
            cycle();
        }
        const auto windows = QApplication::topLevelWidgets().size();
        const qint64 before = residentKilobytes();
        for (int i = 0; i < cycles && !QTest::currentTestFailed(); ++i) {
            cycle();
        }
        const qint64 after = residentKilobytes();
        QCOMPARE(closed, warmUp + cycles);
        QVERIFY(sent.isEmpty());
        QCOMPARE(QApplication::topLevelWidgets().size(), windows);
        QVERIFY(qApp->findChildren<Key*>().isEmpty());
        qInfo("%d times opened and cancelled: %lld kB resident before, %lld kB after", cycles,
            static_cast<long long>(before), static_cast<long long>(after));
        QVERIFY(after - before < 2048 || cycles < 1000);
    }
};

QN740_TEST_MAIN(tst_KeyPressMemory)
#include "tst_KeyPressMemory.moc"
