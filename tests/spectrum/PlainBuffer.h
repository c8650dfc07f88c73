#pragma once

#include "spectrum/BusFrame.h"

#include <algorithm>
#include <optional>

/// The rules of bus::ReplyBuffer without any memory of earlier searches: the simplest
/// implementation, to compare with.
struct PlainBuffer
{
    QByteArray bytes;

    std::optional<CmdMsg> add(const QByteArray& piece, bus::Layout layout)
    {
        bytes += piece;
        const qsizetype header = bytes.indexOf("[0190RFFT");
        if (header >= 0) {
            bytes = bytes.mid(header);
            return spectrum(layout);
        }
        const qsizetype open = bytes.indexOf('[');
        const qsizetype close = bytes.indexOf("]\r");
        if (open < 0 || close < 0) {
            return {};
        }
        const QString text = QString::fromLatin1(bytes);
        const qsizetype length = close - open - 9;
        bytes.clear();
        return CmdMsg(text.mid(open + 1, 4), text.mid(open + 5, 4),
            length < 0 ? text.mid(open + 9) : text.mid(open + 9, length));
    }

    std::optional<CmdMsg> spectrum(bus::Layout layout)
    {
        const bool isK7150 = layout == bus::Layout::K7150;
        const qsizetype from = isK7150 ? 11 : 13;
        if (bytes.size() < from) {
            return {};
        }
        const auto byteAt = [this](qsizetype at) { return static_cast<quint8>(bytes.at(at)); };
        const qsizetype length =
            isK7150 ? (byteAt(9) << 8 | byteAt(10)) + 1 : std::max(0, bytes.mid(9, 4).toInt());
        if (bytes.size() < from + length) {
            return {};
        }
        const QString text = QString::fromLatin1(bytes);
        bytes.clear();
        return CmdMsg(text.mid(1, 4), text.mid(5, 4), text.mid(from, length));
    }
};
