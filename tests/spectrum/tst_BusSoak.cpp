// Ten thousand different requests over a pseudo-terminal to a card that fails three times in ten.
// The timers run in real time.
#include "spectrum/CardSide.h"
#include "spectrum/Rs422Bus.h"
#include "support/Heap.h"
#include "support/TestMain.h"

#include <QSocketNotifier>

#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr int Transactions = 10000;
constexpr int TimeoutMs = 1;
constexpr int InFlight = 3; // queued ahead, so that the queue is never empty

// A card that answers each request or fails on purpose, in six ways.
class FailingCard : public QObject
{
public:
    FailingCard(Pty& pty, quint32 seed)
        : m_pty(pty)
        , m_random(seed)
        , m_notifier(pty.master(), QSocketNotifier::Read)
    {
        connect(&m_notifier, &QSocketNotifier::activated, this, [this] { receive(); });
    }

    int requests = 0;
    int good = 0;
    std::array<int, 6> faults{}; // none, cut, noise before, wrong address, wrong length, late
    QHash<QByteArray, int> seen;

private:
    void receive()
    {
        m_received += m_pty.takeReceived();
        for (const QByteArray& request : cardSide::requests(m_received)) {
            ++requests;
            ++seen[request];
            answer();
        }
        const qsizetype last = m_received.lastIndexOf(']');
        if (last >= 0 && last + 1 < m_received.size()) {
            m_received.remove(0, last + 2);
        }
    }

    void answer()
    {
        const QByteArray points(64, 'p');
        const auto dice = static_cast<int>(m_random() % 100);
        const int fault = dice / 5;
        if (fault >= 6) {
            ++good;
            m_pty.write(cardSide::spectrum(points));
            return;
        }
        ++faults.at(static_cast<size_t>(fault));
        switch (fault) {
        case 1:
            m_pty.write(cardSide::spectrum(points).left(40));
            break;
        case 2:
            m_pty.write("]noise]" + cardSide::spectrum(points));
            break;
        case 3:
            m_pty.write("[0180RFFT0064" + points);
            break;
        case 4:
            m_pty.write("[0190RFFT0400" + points);
            break;
        case 5:
            QTimer::singleShot(
                TimeoutMs + 1, this, [this, points] { m_pty.write(cardSide::spectrum(points)); });
            break;
        default:
            break;
        }
    }

    Pty& m_pty;
    std::mt19937 m_random;
    QSocketNotifier m_notifier;
    QByteArray m_received;
};

} // namespace

class tst_BusSoak : public QObject
{
    Q_OBJECT

private slots:
    void every_request_is_sent_once_and_ends_once()
    {
        DeviceDirectory devices;
        Pty& pty = devices.add(u"ttyUSB11"_s);
        Rs422Bus bus(u"ttyUSB11"_s, '[', ']', true, 921600);
        FailingCard card(pty, 740);
        int queued = 0;
        int answered = 0;
        int lost = 0;
        QHash<QString, int> reported;
        qint64 memoryEarly = 0;
        qint64 memoryLate = 0;
        QEventLoop loop;

        const auto fillQueue = [&] {
            while (queued < Transactions && bus.txCount() < InFlight) {
                bus.sendMessage(u"0190RFFT%1"_s.arg(queued++, 6, 10, QChar(u'0')), TimeoutMs);
            }
        };
        const auto ended = [&] {
            const int all = answered + lost;
            if (all == Transactions / 5) {
                memoryEarly = heapInUse();
            }
            if (all == Transactions) {
                memoryLate = heapInUse();
                loop.quit();
            }
            fillQueue();
        };
        connect(&bus, &Rs422Bus::messageReceived, this, [&](const CmdMsg& message) {
            if (message.command == u"RFFT"_s && message.addressValue == 190) {
                ++answered;
                ended();
            }
        });
        connect(&bus, &Rs422Bus::messageTxSuccess, this, [&](const QString& request) {
            ++reported[request];
            ++lost;
            ended();
        });
        QElapsedTimer timer;
        timer.start();
        QTimer stuck;
        stuck.setSingleShot(true);
        connect(&stuck, &QTimer::timeout, &loop, &QEventLoop::quit);
        stuck.start(280 * 1000);
        fillQueue();
        loop.exec();
        qInfo("%d transactions in %lld ms: %d answered, %d timed out, %d good replies, heap %lld "
              "and %lld KiB",
            answered + lost, static_cast<long long>(timer.elapsed()), answered, lost, card.good,
            static_cast<long long>(memoryEarly / 1024), static_cast<long long>(memoryLate / 1024));

        QCOMPARE(answered + lost, Transactions);
        QVERIFY(answered > Transactions / 10 && lost > Transactions / 10);
        QCOMPARE(card.requests, Transactions);
        QCOMPARE(int(card.seen.size()), Transactions); // none was sent twice
        for (const int times : std::as_const(card.seen)) {
            QCOMPARE(times, 1);
        }
        for (const int times : std::as_const(reported)) {
            QCOMPARE(times, 1);
        }
        // Each kind of failure took place about one time in twenty.
        for (const int times : card.faults) {
            QVERIFY2(times > Transactions / 25 && times < Transactions / 16,
                qPrintable(QString::number(times)));
        }
        // The records of this test itself grow by less than this.
        const qint64 growth = memoryLate - memoryEarly;
        QVERIFY2(growth < 4 * 1024 * 1024, qPrintable(QString::number(growth)));
    }
};

QN740_TEST_MAIN(tst_BusSoak)
#include "tst_BusSoak.moc"
