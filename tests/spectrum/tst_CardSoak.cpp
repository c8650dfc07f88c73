// A hundred thousand polls of a card of each type that fails three times in ten, over a
// pseudo-terminal. The test controls the time: where no reply comes, it makes the timers run out at
// once and checks their intervals instead.
#include "spectrum/CardSide.h"
#include "spectrum/Clock.h"
#include "spectrum/SpectralCard.h"
#include "support/Heap.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QFile>

#include <array>
#include <random>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

#if defined(QN740_SANITIZED)
constexpr int Transactions = 4000; // of each type; the plain build does the full number
#else
constexpr int Transactions = 50000;
#endif
constexpr int Samples = 5; // of the memory
constexpr int PatienceMs = 10000;
constexpr int Points = 64;

enum Fault { NoReply, Cut, Noise, WrongAddress, WrongLength, Late, FaultCount, Good = FaultCount };

// The memory that the program has in RAM, in bytes.
qint64 residentSize()
{
    QFile file(u"/proc/self/statm"_s);
    const bool open = file.open(QIODevice::ReadOnly);
    return open ? file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE) : 0;
}

// The poll of this number, counted from 0, while all charts are shown.
QByteArray request(int number)
{
    return "0190RFFT" + QByteArray::number(number % 3) + QByteArray::number(number / 3 % 3) +
        "0000";
}

} // namespace

class tst_CardSoak : public QObject
{
    Q_OBJECT

private slots:
    void every_poll_is_sent_once_and_ends_once_and_polling_never_stops_data()
    {
        QTest::addColumn<bool>("k7150");
        QTest::newRow("older type") << false;
        QTest::newRow("K7150") << true;
    }

    void every_poll_is_sent_once_and_ends_once_and_polling_never_stops()
    {
        QFETCH(bool, k7150);
        setUp(k7150);
        std::array<qint64, Samples> heap{};
        std::array<qint64, Samples> resident{};
        QElapsedTimer elapsed;
        elapsed.start();
        for (int number = 0; number < Transactions; ++number) {
            QVERIFY2(receiveOne(), qPrintable(u"polling stopped at %1"_s.arg(number)));
            QCOMPARE(m_request, request(number)); // No poll is left out, none is sent twice.
            answer(dice());
            if (QTest::currentTestFailed()) {
                return;
            }
            QCOMPARE(m_answered + m_lost, number + 1);
            goOn();
            if ((number + 1) % (Transactions / Samples) == 0) {
                const auto at = static_cast<size_t>(number / (Transactions / Samples));
                heap.at(at) = heapInUse();
                resident.at(at) = residentSize();
            }
        }
        qInfo("%d polls in %lld ms: %d answered, %d timed out, %d unasked", Transactions,
            static_cast<long long>(elapsed.elapsed()), m_answered, m_lost, m_unasked);
        for (size_t i = 0; i < Samples; ++i) {
            qInfo("after %zu %%: heap %lld KiB, resident %lld KiB", (i + 1) * 100 / Samples,
                static_cast<long long>(heap.at(i) / 1024),
                static_cast<long long>(resident.at(i) / 1024));
        }
        QCOMPARE(m_spectra, m_answered + m_unasked);
        for (const int times : m_faults) {
            QVERIFY2(times > Transactions / 25 && times < Transactions / 16,
                qPrintable(QString::number(times)));
        }
        constexpr qint64 Flat = 256 * 1024;
        QVERIFY(heap.back() - heap.front() < Flat);
#if !defined(QN740_SANITIZED)
        // The sanitizer keeps freed memory for a while.
        QVERIFY(resident.back() - resident.front() < 4 * Flat);
#endif
    }

    void cleanup()
    {
        m_card.reset();
        m_devices.reset();
    }

private:
    void setUp(bool k7150)
    {
        m_k7150 = k7150;
        m_devices = std::make_unique<DeviceDirectory>();
        m_pty = &m_devices->add(u"ttyUSB11"_s);
        m_card = std::make_unique<SpectralCard>(nullptr, 0, u"ttyUSB11"_s);
        m_random.seed(740);
        m_answered = m_lost = m_unasked = m_spectra = 0;
        m_faults = {};
        m_late.clear();
        m_open = false;
        if (k7150) {
            m_card->setK7150(u"ttyUSB11"_s, u"absent"_s, u"missing"_s);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        m_bus = cardSide::busOn(m_card.get(), u"ttyUSB11"_s);
        connect(m_bus, &Rs422Bus::messageReceived, this, [this](const CmdMsg& message) {
            if (message.command == u"RFFT"_s) {
                ++(std::exchange(m_open, false) ? m_answered : m_unasked);
            }
        });
        connect(m_bus, &Rs422Bus::messageTxSuccess, this,
            [this](const QString& lost, Rs422Bus::Results result) {
                if (lost.mid(4, 4) == u"RFFT"_s) {
                    QVERIFY(m_open && result == Rs422Bus::NoReply);
                    QCOMPARE(lost.toLatin1(), m_request);
                    m_open = false;
                    ++m_lost;
                }
            });
        connect(m_card.get(), &SpectralCard::specUpdate, this, [this] { ++m_spectra; });
        // The requests for the name and for the spans end without a reply.
        if (k7150) {
            m_card->initSA();
        }
        for (int requests = 1; requests <= (k7150 ? 3 : 1); ++requests) {
            QTRY_COMPARE(cardSide::requests(*m_pty).size(), requests);
            testClock::expire(m_bus);
        }
        m_pty->takeReceived();
        m_card->setOverRideVisCheck(true);
        auto* poll = m_card->findChild<QTimer*>(u"pollTimer"_s);
        QVERIFY(poll != nullptr && poll->isActive());
        QCOMPARE(poll->interval(), 50);
        poll->stop(); // From now on the test is the timer.
        m_card->timerTimeOut();
    }

    static void turn()
    {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }

    // Waits for the next request and returns whether exactly one came.
    bool receiveOne()
    {
        QList<QByteArray> received;
        QElapsedTimer elapsed;
        elapsed.start();
        while (received.isEmpty() && elapsed.elapsed() < PatienceMs) {
            turn();
            received = cardSide::requests(*m_pty);
        }
        m_pty->takeReceived();
        if (received.size() != 1 || m_open) {
            return false;
        }
        m_request = received.first();
        m_open = true;
        return true;
    }

    Fault dice()
    {
        const auto fault = static_cast<int>(m_random() % 100) / 5;
        if (fault >= FaultCount) {
            return Good;
        }
        ++m_faults.at(static_cast<size_t>(fault));
        return static_cast<Fault>(fault);
    }

    QByteArray spectrum() const
    {
        const QByteArray points(Points, 'p');
        return m_k7150 ? cardSide::k7150Spectrum(m_request.at(8) - '0', points)
                       : cardSide::spectrum(points);
    }

    void answer(Fault fault)
    {
        const QByteArray good = spectrum();
        QByteArray longer = good;
        longer[m_k7150 ? 9 : 10] = m_k7150 ? 1 : '4';
        QByteArray elsewhere = good;
        elsewhere[3] = '8';
        const std::array<QByteArray, FaultCount + 1> bytes{
            QByteArray(), good.left(40), "]noise]" + good, elsewhere, longer, QByteArray(), good};
        // A late reply comes while the next one is waited for, before that one.
        if (!m_late.isEmpty()) {
            QVERIFY(m_pty->writeUntilRead(m_late));
        }
        m_late = fault == Late ? good : QByteArray();
        QVERIFY(m_pty->writeUntilRead(bytes.at(fault)));
        m_runOut = m_open;
        if (m_open) {
            letItRunOut();
        }
    }

    void letItRunOut()
    {
        int longest = 0;
        for (const auto& timer : testClock::timers(m_bus)) {
            longest = qMax(longest, timer.interval);
        }
        QCOMPARE(longest, 2000);
        testClock::expire(m_bus);
    }

    // Does what the card's timers do until the next request.
    void goOn()
    {
        if (m_runOut && !m_k7150) {
            return; // takeTimeout() has asked again already
        }
        // The timer of an answered request may run out before or after the next request.
        if (!m_runOut && m_random() % 8 != 0) {
            testClock::expire(m_bus);
        }
        if (m_runOut) {
            m_card->timerTimeOut();
            QVERIFY(testClock::timers(m_bus).isEmpty()); // it is too early for a poll
            auto* due = m_card->findChild<QTimer*>(u"replyDueTimer"_s);
            QCOMPARE(due->interval(), 2500);
            testClock::expire(due);
        }
        m_card->timerTimeOut();
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_pty = nullptr;
    std::unique_ptr<SpectralCard> m_card;
    Rs422Bus* m_bus = nullptr;
    std::mt19937 m_random;
    std::array<int, FaultCount> m_faults{};
    QByteArray m_request;
    QByteArray m_late;
    int m_answered = 0;
    int m_lost = 0;
    int m_unasked = 0; // replies that no request waited for
    int m_spectra = 0;
    bool m_k7150 = false;
    bool m_open = false;   // a request was received and has not ended
    bool m_runOut = false; // the last request ended by its timer
};

QN740_TEST_MAIN(tst_CardSoak)
#include "tst_CardSoak.moc"
