#include "sim/menus/MenuFields.h"

#include <QHash>

namespace {

QStringList list(const char* names)
{
    return QString::fromLatin1(names).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

const QStringList& typeNames()
{
    static const QStringList names = list("toggle number selection slider file command address");
    return names;
}

} // namespace

namespace menuFields {

QStringList names(const QString& word)
{
    static const QHash<QString, QStringList> table{
        {wire::word::AK,
            list("menu id label type command units param options value toggle state fixed")},
        {wire::word::SK, list("menu")},
        {wire::word::CK, list("menu key state")},
        {wire::word::CV, list("menu key value toggle")},
        {wire::word::CM, list("mainMenu menu key")},
        {wire::word::MS, list("mainMenu menu key")},
        {wire::word::Pax, list("on")},
        {wire::word::EI, list("menu key positions")},
        {wire::word::IK, list("label type command units param options padText value")},
        {wire::word::SB, list("time text")},
        {wire::word::DB, list("text ok")},
        {wire::word::Slave, list("mode")},
        {wire::word::SQ, list("demodulator visible")},
        {wire::word::SM, list("demodulator mode")},
        {wire::word::PM, list("phase magnitude0 magnitude1")},
        {wire::word::SH, list("channel visible")},
        {wire::word::LC, list("colour trace")},
        {wire::word::SP, list("channel span")},
        {wire::word::SF, list("channel frequency")},
        {wire::word::HM, list("channel levels")},
        {wire::word::ST, list("on")},
    };
    return table.value(word);
}

QString typeName(int type)
{
    return typeNames().value(type);
}

QString typeText(const QString& name)
{
    const qsizetype type = typeNames().indexOf(name);
    return type < 0 ? name : QString::number(type);
}

} // namespace menuFields
