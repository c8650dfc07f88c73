#include "touch/Edge.h"

#include <QPainter>
#include <QWidget>
#include <qdrawutil.h>

namespace {
constexpr int EdgeWidth = 2;
}

void touch::paintEdge(QWidget* window)
{
    QPainter painter(window);
    qDrawPlainRect(&painter, window->rect(), Qt::black, EdgeWidth);
}
