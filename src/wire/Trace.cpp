#include "wire/Trace.h"

#include "wire/Message.h"

#include <QElapsedTimer>
#include <QRegularExpression>

namespace wire {

QString TraceLine::text() const
{
    return QStringLiteral("%1 %2 %3")
        .arg(QString::number(seconds, 'f', 3), in ? QStringLiteral("in") : QStringLiteral("out"),
            toPrintable(frame));
}

std::optional<TraceLine> TraceLine::fromText(const QString& line)
{
    static const QRegularExpression form(QStringLiteral("(?:^|\\s)(\\d+\\.\\d{3}) (in|out) (.*)$"));
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    return TraceLine{match.captured(1).toDouble(), match.captured(2) == QLatin1String("in"),
        fromPrintable(match.captured(3))};
}

TraceLine TraceLine::now(bool in, const QString& frame)
{
    static const QElapsedTimer clock = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
    constexpr double SecondsPerMillisecond = 1e-3;
    return {static_cast<double>(clock.elapsed()) * SecondsPerMillisecond, in, frame};
}

} // namespace wire
