#include "popups/PopUpDialog.h"

#include "touch/FittedLabel.h"
#include "touch/Placement.h"
#include "touch/PopUpStyle.h"

#include <QVBoxLayout>

namespace {

constexpr int TitleHeight = 45;

} // namespace

PopUpDialog::PopUpDialog(
    const QString& name, const QString& title, Qt::WindowFlags flags, int margin, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | flags)
    , m_column(new QVBoxLayout(this))
{
    setObjectName(name);
    setWindowTitle(title);
    auto* label = new FittedLabel;
    label->setObjectName(QStringLiteral("titleLabel"));
    label->setText(title);
    label->setStyleSheet(popUpStyle::title());
    label->setAlignment(Qt::AlignCenter);
    label->setFixedHeight(TitleHeight);
    m_column->setContentsMargins(margin, margin, margin, margin);
    m_column->addWidget(label);
}

void PopUpDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (minimumSize() != maximumSize()) {
        setFixedSize(sizeHint().expandedTo(minimumSize()).boundedTo(Largest));
    }
    touch::centreOnPanel(this);
}
