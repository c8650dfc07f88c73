#pragma once

#include <QDialog>

class QVBoxLayout;

// The window of a modal editor: a title, then what the editor puts under it. When it comes up it
// takes the size that its contents ask for, held inside the screen, and the middle of the panel.
class PopUpDialog : public QDialog
{
    Q_OBJECT

public:
    // The largest window of an editor, in pixels: it lies inside the screen with a rim around it.
    static constexpr QSize Largest{795, 478};

    // In: the object name; the title, which is also the window's, because the board's screen has no
    // window frames; what kind of window it is besides a customised dialog with a title; pixels
    // around the contents.
    PopUpDialog(const QString& name, const QString& title, Qt::WindowFlags flags, int margin,
        QWidget* parent = nullptr);

    // Where the contents go, from top to bottom; the title stands first.
    QVBoxLayout* column() const { return m_column; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    QVBoxLayout* m_column;
};
