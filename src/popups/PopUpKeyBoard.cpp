#include "popups/PopUpKeyBoard.h"

#include "popups/ChoiceStyle.h"
#include "popups/Choices.h"
#include "popups/FitButton.h"
#include "popups/PopUpWindow.h"
#include "popups/TitleLabel.h"

#include <QDialog>
#include <QGridLayout>
#include <QPointer>

namespace {

constexpr int Margin = 6;
constexpr int TallestButton = 100;

QString titleOf(const QString& name)
{
    // key texts write "&&" for one "&"
    QString shown = name;
    shown.replace(QStringLiteral("&&"), QStringLiteral("&"));
    return QStringLiteral("Select ") + shown + QStringLiteral(" value");
}

FitButton* newChoice(const QString& text, int columns, bool keepLargeFont, bool enabled)
{
    const choices::Look look = choices::look(text, columns, keepLargeFont);
    auto* button = new FitButton(look.text);
    button->setMaximumHeight(TallestButton);
    if (!enabled) {
        button->setEnabled(false);
        button->setStyleSheet(choiceStyle::disabled());
    } else {
        button->setStyleSheet(look.smallFont ? choiceStyle::small() : choiceStyle::large());
    }
    return button;
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

    QDialog dialog(nullptr, popUpWindow::Titled | Qt::FramelessWindowHint);
    dialog.setObjectName(QStringLiteral("PopUpKeyBoard"));
    dialog.setStyleSheet(choiceStyle::listDialog());
    dialog.setWindowTitle(titleOf(name));
    auto* column = new QVBoxLayout(&dialog);
    column->setContentsMargins(Margin, Margin, Margin, Margin);
    auto* title = new TitleLabel(titleOf(name));
    title->setStyleSheet(choiceStyle::title());
    column->addWidget(title);
    auto* cells = new QGridLayout;
    column->addLayout(cells, 1);
    popUpWindow::shareCells(*cells, grid, grid.rowsFor(offered.size()));

    for (int i = 0; i < offered.size(); ++i) {
        const choices::Choice& choice = offered.at(i);
        auto* button = newChoice(choice.text, grid.columns(), keepLargeFont, !disabled.contains(i));
        const choices::Cell cell = grid.cell(i);
        cells->addWidget(button, cell.row, cell.column);
        // in this order: the selection is there before the dialog closes
        connect(button, &QPushButton::clicked, this,
            [this, value = choice.value] { button_clicked(value); });
        connect(button, &QPushButton::clicked, &dialog, &QDialog::accept);
    }

    auto* cancel = new FitButton(QStringLiteral("Cancel"));
    cancel->setStyleSheet(choiceStyle::cancel());
    cancel->setMaximumHeight(TallestButton);
    cells->addWidget(cancel, grid.cancelCell().row, grid.cancelCell().column);
    cancel->raise(); // over the choice that may stand in its cell
    connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);

    dialog.setFixedSize(popUpWindow::Width, popUpWindow::Height);
    popUpWindow::place(dialog);
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
