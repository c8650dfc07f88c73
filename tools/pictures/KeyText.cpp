#include "tools/pictures/KeyText.h"

#include "menus/Key.h"
#include "popups/EntryType.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

QString numberKind(int entry)
{
    switch (entry) {
    case entryType::Signed:
        return u"number with a sign"_s;
    case entryType::Frequency:
        return u"number, frequency in MHz"_s;
    case entryType::BitRate:
        return u"number, bit rate in bps"_s;
    case entryType::Hertz:
        return u"number, frequency in Hz"_s;
    case entryType::Angle:
        return u"number, angle in rad"_s;
    case entryType::Percentage:
        return u"number, percentage, sent as a fraction"_s;
    case entryType::Special:
        return u"number with a special value"_s;
    case entryType::Pin:
        return u"number, PIN"_s;
    case entryType::Hexadecimal:
        return u"number, hexadecimal"_s;
    default:
        return u"number"_s;
    }
}

// "1 10:20 30" becomes "1 to 10, 20 to 30".
QString ranges(const QString& units)
{
    QStringList all;
    for (const QString& range : units.split(u':', Qt::SkipEmptyParts)) {
        all += range.section(u' ', 0, 0) + u" to "_s + range.section(u' ', 1);
    }
    return all.join(u", "_s);
}

// "0 Off:1 On" becomes "0 = Off, 1 = On".
QString items(const QString& options)
{
    QStringList all;
    for (const QString& item : options.split(u':', Qt::SkipEmptyParts)) {
        const QString text = item.section(u' ', 1);
        all += text.isEmpty() ? item : item.section(u' ', 0, 0) + u" = "_s + text;
    }
    return all.join(u", "_s);
}

QString sliderValues(const Key& key)
{
    const QString range = key.units.section(u' ', 1) + u" to "_s + key.units.section(u' ', 0, 0);
    const QString steps = QString(key.options).replace(u':', u", "_s);
    return steps.isEmpty() ? range : range + u", in steps of "_s + steps;
}

QString numberValues(const Key& key)
{
    QString text = ranges(key.units);
    if (!key.padText.isEmpty()) {
        text += u"; shows \"%1\""_s.arg(key.padText);
    }
    const bool special = key.param == entryType::Special && !key.options.isEmpty();
    return special ? text + u"; special value "_s + items(key.options) : text;
}

} // namespace

QString keyText::kind(const Key& key)
{
    switch (key.type) {
    case Key::Toggle:
        return u"switch"_s;
    case Key::Number:
        return numberKind(key.param);
    case Key::Selection:
        return u"selection"_s;
    case Key::Slider:
        return u"slider"_s;
    case Key::File:
        return u"file"_s;
    case Key::Command:
        return u"command"_s;
    case Key::Address:
        return u"IPv4 address"_s;
    default:
        return u"unknown type %1"_s.arg(key.type);
    }
}

QString keyText::sends(const Key& key)
{
    switch (key.type) {
    case Key::Toggle:
        return u"%1%2 or %1%3"_s.arg(key.command).arg(0).arg(1);
    case Key::Command:
        return opens(key).isEmpty() ? u"%1%2 and %1%3 in turn"_s.arg(key.command).arg(1).arg(0)
                                    : key.command + u'1';
    case Key::Number:
    case Key::Selection:
    case Key::Slider:
    case Key::Address:
        return key.command + u"value"_s;
    case Key::File:
        return u"%1value or %1name"_s.arg(key.command);
    default:
        return u"nothing"_s;
    }
}

QString keyText::values(const Key& key)
{
    switch (key.type) {
    case Key::Number:
        return numberValues(key);
    case Key::Selection:
    case Key::File:
        return items(key.options);
    case Key::Slider:
        return sliderValues(key);
    default:
        return {};
    }
}

QString keyText::opens(const Key& key)
{
    for (const QString& start : {u"SK:"_s, u"PAX:0:"_s}) {
        if (key.command.startsWith(start)) {
            return key.command.mid(start.size()).section(u':', 0, 0);
        }
    }
    return {};
}

bool keyText::hasEditor(int type)
{
    return type != Key::Toggle && type != Key::Command && type >= 0 && type <= Key::Address;
}
