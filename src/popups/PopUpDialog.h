#pragma once

#include <QDialog>

class QLabel;
class QVBoxLayout;

/// The window of a modal editor: a title, then what the editor puts under it. When it is shown it
/// takes the size that its contents ask for, limited to the screen, and the middle of the panel.
class PopUpDialog : public QDialog
{
    Q_OBJECT

public:
    /// The largest window of an editor, in pixels: it lies inside the screen with a rim around it.
    static constexpr QSize Largest{795, 478};

    /// Makes the window with its title.
    /// \param name   the object name
    /// \param title  shown inside the window too, because the unit's screen has no window frames
    /// \param flags  what kind of window it is besides a customised dialog with a title
    /// \param margin pixels around the contents
    /// \param parent of the window
    PopUpDialog(const QString& name, const QString& title, Qt::WindowFlags flags, int margin,
        QWidget* parent = nullptr);

    /// \return where the contents go, from top to bottom; the title stands first.
    QVBoxLayout* column() const { return m_column; }

    /// \return how high the contents may be below the title, in pixels.
    int maxContentHeight() const;

    /// Shows a text at the right of the title line, next to the title.
    void setNote(const QString& text);

    /// \reimp Keys that are held down let go when something modal opens over the window or when it
    /// loses the activation: their release may never reach them.
    bool event(QEvent* event) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QVBoxLayout* m_column;
    QLabel* m_title;
};
