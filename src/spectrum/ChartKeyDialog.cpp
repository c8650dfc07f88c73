#include "spectrum/ChartKeyDialog.h"

#include "spectrum/ChartKeys.h"
#include "touch/Placement.h"

#include <QEvent>
#include <QVBoxLayout>

namespace {

constexpr QSize DialogSize(392, 400);
constexpr int Distance = 4; // from the edges of the panel, in pixels

} // namespace

ChartKeyDialog::ChartKeyDialog(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
    , m_keys(new ChartKeys(chartKeys::Place::OwnWindow, this))
{
    setObjectName(QStringLiteral("ChartKeyDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setFixedSize(DialogSize);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_keys);
}

void ChartKeyDialog::closeWith(QWidget* chart)
{
    chart->installEventFilter(this);
    connect(chart, &QObject::destroyed, this, &QDialog::close);
}

bool ChartKeyDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Hide) {
        close(); // It only schedules the deletion of this filter.
    }
    return QDialog::eventFilter(watched, event);
}

void ChartKeyDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    move(touch::panelArea(this).topLeft() + QPoint(Distance, Distance));
}
