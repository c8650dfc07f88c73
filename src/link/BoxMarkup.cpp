#include "link/BoxMarkup.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MaxTagCharacters = 200;

// A tag with its attributes. Values are words, colours and short numbers: nothing that could name a
// file, and nothing that Qt would have to decode. Families of fonts are left out, as looking for
// each takes long, and sizes in percent, as they multiply.
QRegularExpression tagPattern()
{
    const QString name =
        u"html|body|qt|b|i|u|s|em|strong|big|small|sub|sup|tt|code|pre|nobr|font|span|p|div|center|br|hr|h[1-6]|ul|ol|li|dl|dt|dd|blockquote|a|table|tr|td|th"_s;
    const QString value = u"(?:#[0-9a-f]{3,8}|[+-]?[0-9]{1,3}%?|[a-z]{1,20})"_s;
    const QString attribute =
        u"(?:size|color|bgcolor|align|valign|dir|type|name|width|border|cellspacing|cellpadding|colspan|rowspan)"
        u"\\s*=\\s*(?:%1|\"%1\"|'%1')"_s.arg(value);
    const QString rule =
        u"(?:color|background-color|font-size|font-weight|font-style|text-align|text-decoration)"
        u"\\s*:\\s*(?:#[0-9a-f]{3,8}|[0-9]{1,2}(?:px|pt)|[1-9]00|[a-z-]{1,20})\\s*;?\\s*"_s;
    const QString style = u"style\\s*=\\s*(?:\"\\s*(?:%1)*\"|'\\s*(?:%1)*')"_s.arg(rule);
    return QRegularExpression(
        u"\\A</?(%1)(?:\\s+(?:%2|%3))*\\s*/?>\\z"_s.arg(name, attribute, style),
        QRegularExpression::CaseInsensitiveOption);
}

// The name of the tag, in small letters; empty: it is not a harmless one.
QString nameOf(const QString& tag)
{
    static const QRegularExpression Pattern = tagPattern();
    return tag.size() > MaxTagCharacters ? QString() : Pattern.match(tag).captured(1).toLower();
}

} // namespace

bool boxMarkup::isHarmless(const QString& text)
{
    int tags = 0;
    int tables = 0;
    int cells = 0;
    for (qsizetype at = text.indexOf(u'<'); at >= 0; at = text.indexOf(u'<', at + 1)) {
        const qsizetype end = text.indexOf(u'>', at);
        const QString name = end < 0 ? QString() : nameOf(text.mid(at, end - at + 1));
        if (name.isEmpty()) {
            return false;
        }
        tags += name == "br"_L1 ? 0 : 1;
        tables += name == "table"_L1 && text.at(at + 1) != u'/' ? 1 : 0;
        cells += name == "tr"_L1 || name == "td"_L1 || name == "th"_L1 ? 1 : 0;
    }
    return tags <= MaxTags && tables <= MaxTables && cells <= MaxCells;
}
