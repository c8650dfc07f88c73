#include "tools/try/ScreenText.h"

#include "tools/try/Glass.h"
#include "tools/try/KeyState.h"

#include <QAbstractButton>

using namespace Qt::StringLiterals;

QStringList screenText::lines()
{
    QStringList lines;
    const auto rows = glass::rows();
    for (const auto& row : rows) {
        QStringList line;
        for (const glass::Text& text : row) {
            const auto* button = qobject_cast<const QAbstractButton*>(text.owner);
            const QString mark = button != nullptr ? keyState::mark(*button) : QString();
            line += mark.isEmpty() ? text.text : u"%1 [%2]"_s.arg(text.text, mark);
        }
        lines += line.join(u" | "_s);
    }
    return lines;
}
