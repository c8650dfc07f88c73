#include "popups/PopUpFileBoard.h"

#include "popups/ChoiceStyle.h"
#include "popups/Choices.h"
#include "popups/FileNameEdit.h"
#include "popups/FitButton.h"
#include "popups/PopUpWindow.h"

#include <QDialog>
#include <QGridLayout>
#include <QPointer>

namespace {

constexpr int Margin = 6;
constexpr int TallestButton = 100;
// "New File" and "Cancel" stand side by side
constexpr int LeastColumns = 2;

FitButton* newBoardButton(const QString& text, const QString& sheet)
{
    auto* button = new FitButton(text);
    button->setStyleSheet(sheet);
    button->setMaximumHeight(TallestButton);
    return button;
}

} // namespace

PopUpFileBoard::PopUpFileBoard(QObject* parent)
    : QObject(parent)
{
}

QString PopUpFileBoard::new_pop_fileboard(
    const QString& files, const QString& name, int rows, int columns)
{
    m_selection.clear();
    const QList<choices::Choice> offered = choices::parse(files);
    const choices::Grid grid(rows, columns, LeastColumns);

    QDialog dialog(nullptr, popUpWindow::Titled);
    dialog.setObjectName(QStringLiteral("PopUpFileBoard"));
    dialog.setStyleSheet(choiceStyle::fileDialog());
    dialog.setWindowTitle(QStringLiteral("Select ") + name + QStringLiteral(" value"));
    auto* column = new QVBoxLayout(&dialog);
    column->setContentsMargins(Margin, Margin, Margin, Margin);
    auto* cells = new QGridLayout;
    column->addLayout(cells);
    popUpWindow::shareCells(*cells, grid, grid.rowsFor(offered.size()));

    for (int i = 0; i < offered.size(); ++i) {
        const choices::Choice& file = offered.at(i);
        auto* button = newBoardButton(file.text, choiceStyle::file());
        cells->addWidget(button, grid.cell(i).row, grid.cell(i).column);
        connect(button, &QPushButton::clicked, this,
            [this, value = file.value] { button_clicked(value); });
        connect(button, &QPushButton::clicked, &dialog, &QDialog::accept);
    }

    // over the files that may stand in their cells
    auto* newFile = newBoardButton(QStringLiteral("New File"), choiceStyle::newFile());
    cells->addWidget(newFile, grid.newFileCell().row, grid.newFileCell().column);
    newFile->raise();
    connect(newFile, &QPushButton::clicked, this, &PopUpFileBoard::enter_filename);
    auto* cancel = newBoardButton(QStringLiteral("Cancel"), choiceStyle::cancel());
    cells->addWidget(cancel, grid.cancelCell().row, grid.cancelCell().column);
    cancel->raise();
    connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    connect(this, &PopUpFileBoard::valid_filename, &dialog, &QDialog::accept);

    popUpWindow::place(dialog);
    const QPointer<PopUpFileBoard> self(this);
    dialog.exec();
    return self != nullptr ? m_selection : QString();
}

void PopUpFileBoard::button_clicked(const QString& value)
{
    m_selection = value;
}

void PopUpFileBoard::enter_filename()
{
    const QPointer<PopUpFileBoard> self(this);
    const FileNameEdit edit(QString(), nullptr);
    const QString typed = edit.text();
    if (self != nullptr && !typed.isEmpty()) {
        m_selection = typed;
        emit valid_filename();
    }
}
