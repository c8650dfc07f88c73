#include "wire/Message.h"

#include "wire/Limits.h"

#include <algorithm>

namespace {
constexpr QChar Comma(u',');
} // namespace

namespace wire {

QString frame(const QString& body)
{
    return Stx + body + Eot;
}

QStringList fields(const QString& message)
{
    const auto length = qMax(qsizetype{0}, message.size() - 2);
    const QStringView body = QStringView(message).mid(1, length);
    const auto commas = std::count(body.begin(), body.end(), Comma);
    QStringList fields;
    fields.reserve(qMin(static_cast<qsizetype>(commas) + 1, MaxFields));
    for (qsizetype begin = 0; begin <= body.size() && fields.size() < MaxFields;) {
        const qsizetype comma = body.indexOf(Comma, begin);
        const qsizetype end = comma < 0 ? body.size() : comma;
        fields.append(body.mid(begin, end - begin).toString());
        begin = end + 1;
    }
    return fields;
}

bool readInt(const QStringList& fields, qsizetype at, int& number)
{
    bool ok = false;
    const int value = fields.value(at).toInt(&ok);
    number = ok ? value : number;
    return ok;
}

QString toPrintable(const QString& text)
{
    QString line;
    line.reserve(text.size());
    for (const QChar c : text) {
        const auto code = c.unicode();
        if (c == QLatin1Char('\\')) {
            line += QLatin1String("\\\\");
        } else if (code >= 0x20 && code <= 0x7e) {
            line += c;
        } else {
            line += QStringLiteral("\\x%1").arg(code & 0xff, 2, 16, QLatin1Char('0'));
        }
    }
    return line;
}

QString fromPrintable(const QString& line)
{
    QString text;
    text.reserve(line.size());
    for (qsizetype i = 0; i < line.size(); ++i) {
        const bool escape = line.at(i) == QLatin1Char('\\') && i + 1 < line.size();
        if (escape && line.at(i + 1) == QLatin1Char('\\')) {
            text += QLatin1Char('\\');
            i += 1;
            continue;
        }
        bool ok = false;
        const ushort code = escape && line.at(i + 1) == QLatin1Char('x')
            ? line.mid(i + 2, 2).toUShort(&ok, 16)
            : ushort{0};
        if (ok && i + 3 < line.size()) {
            text += QChar(code);
            i += 3;
        } else {
            text += line.at(i);
        }
    }
    return text;
}

} // namespace wire
