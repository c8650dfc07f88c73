#include "popups/PopUpDialog.h"

#include "touch/FittedLabel.h"
#include "touch/PopUpStyle.h"

#include <QApplication>
#include <QMainWindow>
#include <QScreen>
#include <QVBoxLayout>

namespace {

constexpr int TitleHeight = 45;

const QWidget* panelWindow()
{
    const auto windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (window->isVisible() && qobject_cast<const QMainWindow*>(window) != nullptr) {
            return window;
        }
    }
    return nullptr;
}

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

void PopUpDialog::centre(QWidget* window)
{
    const QWidget* panel = panelWindow();
    const QRect room = (panel != nullptr ? panel : window)->screen()->availableGeometry();
    const QSize frame = window->frameGeometry().size() - window->size();
    const QSize size = window->size().boundedTo(room.size() - frame);
    if (size != window->size()) {
        window->setFixedSize(size);
    }
    QRect place(QPoint(0, 0), size + frame);
    place.moveCenter((panel != nullptr ? panel->geometry() : room).center());
    place.moveRight(qMin(place.right(), room.right()));
    place.moveBottom(qMin(place.bottom(), room.bottom()));
    place.moveLeft(qMax(place.left(), room.left()));
    place.moveTop(qMax(place.top(), room.top()));
    window->move(place.topLeft());
}

void PopUpDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (minimumSize() != maximumSize()) {
        setFixedSize(sizeHint().expandedTo(minimumSize()).boundedTo(Largest));
    }
    centre(this);
}
