#include "Dictionary.h"

#include "sim/menus/MenuFields.h"
#include "spectrum/BusFrame.h"
#include "tools/try/Step.h"
#include "wire/Commands.h"
#include "wire/Message.h"

#include <QSet>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

// What editors, keys and cards are told beside the command words.
const QStringList& otherWords()
{
    static const QStringList Words{u","_s, u":"_s, u" "_s, u"\x02"_s, u"\x04"_s, u"\x04\x02"_s,
        u"KILLBOX"_s, u"More..."_s, u"PAX"_s, u"]\r"_s, u"[0190RNME"_s, u"[0190RVER"_s, u"-"_s,
        u"."_s, u"1e308"_s, u"nan"_s, u"inf"_s, u"2147483648"_s, u"-1"_s, u"wait "_s, u"# "_s,
        u"# qn740: ignore QN"_s, u"\\x"_s, u"\n"_s, u"\"version\": 1"_s, u"\"content\": ["_s,
        u"\"menu\": "_s, u"\"keys\": ["_s, u"\"message\": "_s, u"{"_s, u"}"_s, u"[["_s, u"]"_s,
        u" in \\x02"_s, u" out \\x02"_s, u"\x10|"_s, u"\x10"_s,
        u"<img src=\"/dev/zero\" align=left>"_s, u"<table><tr><td>"_s, u"<ul><li>"_s, u"<b>"_s,
        u"<p style='background:url(/dev/zero)'>"_s, u"&lt;"_s};
    return Words;
}

QByteArray entry(const QString& word)
{
    QByteArray text;
    const QByteArray bytes = word.toLatin1();
    for (const char byte : bytes) {
        if (byte >= ' ' && byte <= '~' && byte != '"' && byte != '\\') {
            text += byte;
        } else {
            text += "\\x" + QByteArray(1, byte).toHex();
        }
    }
    return '"' + text + "\"\n";
}

} // namespace

QByteArray fuzzDictionary()
{
    QStringList words = otherWords();
    words += QString::fromLatin1(bus::SpectrumHeader);
    for (const auto& commands : {wire::toPanel(), wire::fromPanel()}) {
        for (const wire::Command& command : commands) {
            words += QChar(wire::Stx) + command.word + u',';
            for (const QString& name : menuFields::names(command.word)) {
                words += u'"' + name + u"\": "_s;
            }
        }
    }
    for (int type = 0; type < menuFields::KeyTypes; ++type) {
        words += menuFields::typeName(type);
    }
    for (const StepWord& step : stepWords()) {
        words += QLatin1String(step.word) + u' ';
    }
    QByteArray text;
    QSet<QString> seen;
    for (const QString& word : std::as_const(words)) {
        if (!word.isEmpty() && !seen.contains(word)) {
            seen += word;
            text += entry(word);
        }
    }
    return text;
}
