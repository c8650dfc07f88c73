#include "popups/PopUpDialog.h"

#include "touch/FittedLabel.h"
#include "touch/HeldKeys.h"
#include "touch/Placement.h"
#include "touch/PopUpStyle.h"

#include <QEvent>
#include <QVBoxLayout>

namespace {

constexpr int TitleHeight = 45;
constexpr int NoteMargin = 14;

} // namespace

PopUpDialog::PopUpDialog(
    const QString& name, const QString& title, Qt::WindowFlags flags, int margin, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | flags)
    , m_column(new QVBoxLayout(this))
    , m_title(new FittedLabel(this))
{
    setObjectName(name);
    setWindowTitle(title);
    m_title->setObjectName(QStringLiteral("titleLabel"));
    m_title->setText(title);
    m_title->setStyleSheet(popUpStyle::title());
    m_title->setAlignment(Qt::AlignCenter);
    m_title->setFixedHeight(TitleHeight);
    m_column->setContentsMargins(margin, margin, margin, margin);
    m_column->addWidget(m_title);
}

int PopUpDialog::maxContentHeight() const
{
    const QMargins margins = m_column->contentsMargins();
    return Largest.height() - margins.top() - margins.bottom() - TitleHeight - m_column->spacing();
}

// The note is a part of the title, so that it has its look and its line.
void PopUpDialog::setNote(const QString& text)
{
    auto* note = new QLabel(text);
    note->setObjectName(QStringLiteral("noteLabel"));
    note->setTextFormat(Qt::PlainText);
    note->setStyleSheet(QStringLiteral("border: none;")); // the windows' sheets give it one
    auto* line = new QHBoxLayout(m_title);
    line->setContentsMargins(0, 0, NoteMargin, 0);
    line->addStretch(1);
    line->addWidget(note);
}

bool PopUpDialog::event(QEvent* event)
{
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::WindowDeactivate) {
        touch::letGo(this);
    }
    return QDialog::event(event);
}

void PopUpDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (minimumSize() != maximumSize()) {
        setFixedSize(sizeHint().expandedTo(minimumSize()).boundedTo(Largest));
    }
    touch::centreOnPanel(this);
}
