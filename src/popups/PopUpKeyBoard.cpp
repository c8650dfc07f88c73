#include "popups/PopUpKeyBoard.h"

#include "popups/ChoiceCells.h"
#include "popups/PopUpDialog.h"
#include "touch/PopUpStyle.h"

#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int Margin = 6;
constexpr int FixedCells = 1; // "Cancel"

QString titleOf(const QString& name)
{
    // Main units write "&&" for one "&" in key texts.
    QString shown = name;
    shown.replace(QStringLiteral("&&"), QStringLiteral("&"));
    return QStringLiteral("Select ") + shown + QStringLiteral(" value");
}

QString sheetOf(const choices::Look& look, bool enabled)
{
    if (!enabled) {
        return popUpStyle::deadChoice();
    }
    return look.smallFont ? popUpStyle::longChoice() : popUpStyle::choice();
}

} // namespace

PopUpKeyBoard::PopUpKeyBoard(QObject* parent)
    : QObject(parent)
{
}

QString PopUpKeyBoard::new_pop_keyboard(const QString& choiceList, const QString& name, int rows,
    int columns, const QList<int>& disabled, bool keepLargeFont)
{
    m_selection.clear();
    const QList<choices::Choice> offered = choices::parse(choiceList);
    const choices::Grid grid(rows, columns);

    PopUpDialog dialog(
        QStringLiteral("PopUpKeyBoard"), titleOf(name), Qt::FramelessWindowHint, Margin);
    dialog.setStyleSheet(popUpStyle::listWindow());
    dialog.setFixedSize(PopUpDialog::Largest);
    if (!m_note.isEmpty()) {
        dialog.setNote(m_note);
    }
    auto* cells = new ChoiceCells(grid, offered.size(), dialog.maxContentHeight(), FixedCells);
    dialog.column()->addLayout(cells, 1);
    const int present = choices::presentAt(offered, m_present);
    for (int i = 0; i < offered.size(); ++i) {
        const choices::Look look = choices::look(offered.at(i).text, grid.columns(), keepLargeFont);
        const bool enabled = !disabled.contains(i);
        auto* button = cells->addChoice(look.text, sheetOf(look, enabled), i);
        button->setEnabled(enabled);
        if (i == present) {
            cells->setPresent(button);
        }
        // in this order: the selection is stored before the dialog closes
        connect(button, &QPushButton::clicked, this,
            [this, value = offered.at(i).value] { button_clicked(value); });
        connect(button, &QPushButton::clicked, &dialog, &QDialog::accept);
    }
    auto* cancel =
        cells->addFixed(QStringLiteral("Cancel"), popUpStyle::cancel(), grid.cancelCell());
    connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);

    const QPointer<PopUpKeyBoard> self(this);
    dialog.exec();
    return self != nullptr ? m_selection : QString();
}

QString PopUpKeyBoard::new_pop_keyboard(
    const QString& choiceList, const QString& name, int rows, int columns, bool keepLargeFont)
{
    return new_pop_keyboard(choiceList, name, rows, columns, {}, keepLargeFont);
}

void PopUpKeyBoard::button_clicked(const QString& value)
{
    m_selection = value;
}
