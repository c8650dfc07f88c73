#include "popups/PopUpFileBoard.h"

#include "popups/ChoiceCells.h"
#include "popups/FileNameEdit.h"
#include "popups/PopUpDialog.h"
#include "touch/PopUpStyle.h"

#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int Margin = 3;
// "New File" and "Cancel" stand side by side.
constexpr int MinColumns = 2;
constexpr int FixedCells = 2;

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
    const choices::Grid grid(rows, columns, MinColumns);

    PopUpDialog dialog(QStringLiteral("PopUpFileBoard"),
        QStringLiteral("Select ") + name + QStringLiteral(" value"), Qt::WindowFlags(), Margin);
    dialog.setStyleSheet(popUpStyle::filesWindow());
    dialog.column()->setSpacing(Margin);
    auto* cells = new ChoiceCells(grid, offered.size(), dialog.maxContentHeight(), FixedCells);
    dialog.column()->addLayout(cells, 1);
    const int present = choices::presentAt(offered, m_present);
    for (int i = 0; i < offered.size(); ++i) {
        const choices::Choice& file = offered.at(i);
        auto* button = cells->addChoice(file.text, popUpStyle::fileChoice(), i);
        if (i == present) {
            cells->setPresent(button);
        }
        connect(button, &QPushButton::clicked, this,
            [this, value = file.value] { button_clicked(value); });
        connect(button, &QPushButton::clicked, &dialog, &QDialog::accept);
    }
    auto* newFile =
        cells->addFixed(QStringLiteral("New File"), popUpStyle::plainGreen(), grid.newFileCell());
    connect(newFile, &QPushButton::clicked, this, &PopUpFileBoard::enter_filename);
    auto* cancel =
        cells->addFixed(QStringLiteral("Cancel"), popUpStyle::cancel(), grid.cancelCell());
    connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    connect(this, &PopUpFileBoard::valid_filename, &dialog, &QDialog::accept);

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
