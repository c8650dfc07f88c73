#pragma once

#include "spectrum/CmdMsg.h"
#include "spectrum/Rs422Bus.h"
#include "support/Pty.h"

#include <QByteArray>
#include <QList>

using namespace Qt::StringLiterals;

/// What a card sends and receives, for tests that play one.
namespace cardSide {

inline QByteArray text(
    const QByteArray& command, const QByteArray& data, const QByteArray& address = "0190")
{
    return "[" + address + command + data + "]\r";
}

// The older layout: four decimal digits, then the points.
inline QByteArray spectrum(const QByteArray& points)
{
    return "[0190RFFT" + QByteArray::number(points.size()).rightJustified(4, '0') + points;
}

// The K7150's layout: two bytes with the number of points, the channel, the points.
inline QByteArray k7150Spectrum(int channel, const QByteArray& points)
{
    const auto size = points.size();
    return "[0190RFFT" + QByteArray(1, static_cast<char>(size >> 8)) +
        QByteArray(1, static_cast<char>(size & 0xff)) + QByteArray(1, static_cast<char>(channel)) +
        points;
}

// The byte of a level in dB.
inline char level(double dB)
{
    return static_cast<char>(qRound((dB + 120.0) * 2.0));
}

// A flat spectrum with one higher point.
inline QByteArray carrier(int size, int at, double dB, double floorDB = -100.0)
{
    QByteArray points(size, level(floorDB));
    points[at] = level(dB);
    return points;
}

// The requests among the bytes that the card has received, without their framing. A frame whose
// checksum is wrong appears as "?".
inline QList<QByteArray> requests(const QByteArray& received)
{
    QList<QByteArray> list;
    qsizetype from = 0;
    while ((from = received.indexOf('[', from)) >= 0) {
        const qsizetype to = received.indexOf(']', from);
        if (to < 0 || to + 1 >= received.size()) {
            break;
        }
        unsigned sum = 0;
        for (qsizetype i = from; i <= to; ++i) {
            sum += static_cast<unsigned char>(received.at(i));
        }
        const bool right = (sum & 0xff) == static_cast<unsigned char>(received.at(to + 1));
        list += right ? received.mid(from + 1, to - from - 1) : QByteArray("?");
        from = to + 2;
    }
    return list;
}

inline QList<QByteArray> requests(Pty& pty)
{
    return requests(pty.received());
}

// Those of them whose command begins with the word.
inline QList<QByteArray> only(Pty& pty, const QByteArray& word)
{
    QList<QByteArray> some;
    for (const QByteArray& request : requests(pty)) {
        if (request.mid(4).startsWith(word)) {
            some += request;
        }
    }
    return some;
}

// Answers spectrum polls with the same bytes, once for each request.
inline void answerPolls(Pty& pty, int& answered, const QByteArray& reply)
{
    const auto polls = only(pty, "RFFT").size();
    while (answered < polls) {
        ++answered;
        pty.write(reply);
    }
}

// A spectrum as the bus hands it over.
inline CmdMsg message(const QByteArray& points)
{
    return {u"0190"_s, u"RFFT"_s, QString::fromLatin1(points)};
}

// The bus below an object that is on this port; nullptr when there is none.
inline Rs422Bus* busOn(const QObject* owner, const QString& port)
{
    for (Rs422Bus* bus : owner->findChildren<Rs422Bus*>()) {
        if (bus->portName() == port) {
            return bus;
        }
    }
    return nullptr;
}

} // namespace cardSide
