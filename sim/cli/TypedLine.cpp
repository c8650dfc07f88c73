#include "sim/cli/TypedLine.h"

#include "sim/cli/InputLines.h"
#include "sim/line/UnitDevices.h"
#include "sim/unit/MainUnit.h"
#include "sim/unit/MenuFile.h"
#include "sim/unit/MessageRules.h"
#include "wire/Message.h"

#include <QStringDecoder>

#include <algorithm>

namespace {

QString decoded(const QByteArray& line)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(line);
    return utf8.hasError() ? QString::fromLatin1(line) : text;
}

QString queued(MainUnit& unit, const MenuStep& step)
{
    return unit.type(step) ? QString() : QStringLiteral("too many messages are waiting to be sent");
}

QString sendRaw(MainUnit& unit, const QString& printable)
{
    const QString bytes = wire::fromPrintable(printable);
    if (bytes.isEmpty()) {
        return QStringLiteral("raw needs bytes, as \\x02PING\\x04");
    }
    if (bytes.size() > rules::LongestMessage) {
        return rules::tooLong();
    }
    if (std::any_of(bytes.begin(), bytes.end(), [](QChar c) { return c.unicode() > 0xff; })) {
        return QStringLiteral("raw needs characters of Latin-1");
    }
    return queued(unit, {MenuStep::Kind::Raw, bytes, 0});
}

QString sendStep(MainUnit& unit, const QByteArray& text)
{
    const MenuFile::Line line = MenuFile::parseLine(text);
    return line.fault.isEmpty() && line.step ? queued(unit, *line.step) : line.fault;
}

QString steered(Confirmations& confirmations, const QString& word, const QString& rest)
{
    if (word == QLatin1String("refuse")) {
        return confirmations.refuse(rest);
    }
    return word == QLatin1String("silent") ? confirmations.silence(rest)
                                           : confirmations.delay(rest);
}

QString plugged(UnitDevices& devices, const QString& word, const QString& name)
{
    const bool ok = word == QLatin1String("plug") ? devices.plug(name) : devices.unplug(name);
    return ok ? QString() : QStringLiteral("%1 needs a device of this unit, as ttyUSB1").arg(word);
}

} // namespace

QString typedLine::carryOut(MainUnit& unit, UnitDevices& devices, const QByteArray& text)
{
    if (text.size() > InputLines::MaxLineLength) {
        return rules::tooLong();
    }
    QString line = decoded(text);
    if (line.endsWith(QLatin1Char('\r'))) {
        line.chop(1);
    }
    const auto start = std::find_if(line.begin(), line.end(), [](QChar c) { return !c.isSpace(); });
    const QString trimmed = line.mid(start - line.begin());
    const QString word = trimmed.section(QLatin1Char(' '), 0, 0);
    const QString rest = trimmed.mid(word.size() + 1);
    if (word == QLatin1String("raw")) {
        return sendRaw(unit, rest);
    }
    if (word == QLatin1String("plug") || word == QLatin1String("unplug")) {
        return plugged(devices, word, rest);
    }
    if (word == QLatin1String("refuse") || word == QLatin1String("silent") ||
        word == QLatin1String("delay")) {
        return steered(unit.confirmations(), word, rest);
    }
    if (trimmed == QLatin1String("confirm")) {
        unit.confirmations().clear();
        return {};
    }
    return sendStep(unit, text);
}
