#pragma once

#include <QGroupBox>

class QPushButton;
class QRadioButton;
class QVBoxLayout;

/// The window in which the operator chooses the link mode: one radio button for each mode, and
/// "Close".
///
/// It does not block the panel and deletes itself when it is closed, by whatever means. It does not
/// know what a mode means: each radio button announces by its signal that it was checked or
/// unchecked, whoever caused it.
class LinkModeDialog : public QGroupBox
{
    Q_OBJECT

public:
    /// Makes the window, with no mode checked. \a parent: the window over which it stands, or
    /// nullptr.
    explicit LinkModeDialog(QWidget* parent = nullptr);

    /// Checks the radio button of a mode as the operator would, with its signal; a number that is
    /// not a mode changes nothing.
    void setMode(int mode);

    /// The same without the signal of that button, for a mode that was changed elsewhere.
    void showMode(int mode);

    /// Shows the window in the middle of \a area (in global coordinates) and inside it.
    void showIn(const QRect& area);

signals:
    /// Emitted when "No Linking" was checked or unchecked.
    void masterToggled(bool on);
    /// Emitted when diversity linking was checked or unchecked.
    void divToggled(bool on);
    /// Emitted when frequency diversity linking was checked or unchecked.
    void freqToggled(bool on);
    /// Emitted when the window was closed.
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void addTitle();
    QRadioButton* addMode(const char* name, const QString& text);
    QRadioButton* button(int mode) const;

    QVBoxLayout* m_layout;
    QRadioButton* m_none;
    QRadioButton* m_diversity;
    QRadioButton* m_frequency;
    QPushButton* m_close;
};
