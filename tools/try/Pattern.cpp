#include "tools/try/Pattern.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

bool matches(const QString& pattern, const QString& text, bool anywhere)
{
    QStringList parts;
    for (const QString& part : pattern.split(u'*')) {
        parts += QRegularExpression::escape(part);
    }
    QString expression = parts.join(u".*"_s);
    if (!anywhere) {
        expression = QRegularExpression::anchoredPattern(expression);
    }
    const QRegularExpression regular(expression, QRegularExpression::DotMatchesEverythingOption);
    return regular.match(text).hasMatch();
}
