#include "plot/TextFlow.h"

TextFlow TextFlow::flow(const QVector<Part>& parts, int room, const WidthOf& widthOf)
{
    const QString gap(QLatin1String("   "));
    TextFlow flow;
    flow.lines = QStringList(QString());
    QString widest;
    for (const Part& part : parts) {
        const QString longer = widest.isEmpty() ? part.widest : widest + gap + part.widest;
        const bool fits = widest.isEmpty() || widthOf(longer) <= room;
        if (!fits) {
            flow.lines += QString();
        }
        widest = fits ? longer : part.widest;
        QString& line = flow.lines.last();
        line += line.isEmpty() || part.text.isEmpty() ? part.text : gap + part.text;
    }
    if (flow.lines.size() == 1) {
        flow.singleWidth = widthOf(widest);
    }
    flow.lines.removeAll(QString());
    return flow;
}
