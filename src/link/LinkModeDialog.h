#pragma once

#include <QGroupBox>

class QPushButton;
class QRadioButton;
class QVBoxLayout;

// The window in which the operator chooses the link mode: one radio button a mode and "Close".
//
// It does not block the panel and deletes itself when it is closed, by whatever means. It knows
// nothing of the mode's meaning: each radio button says by its signal that it was checked or
// unchecked, also when showMode() or setMode() checked it.
class LinkModeDialog : public QGroupBox
{
    Q_OBJECT

public:
    // parent: the window over which it stands, nullptr for none.
    explicit LinkModeDialog(QWidget* parent = nullptr);

    // Checks the radio button of a mode as the operator would, signal included; a number that is
    // no mode changes nothing.
    void setMode(int mode);

    // The same, silently: the mode was changed elsewhere.
    void showMode(int mode);

    // Shows the window in the middle of `area` (in global coordinates), wholly inside it.
    void showIn(const QRect& area);

signals:
    void masterToggled(bool on); // "No Linking"
    void divToggled(bool on);
    void freqToggled(bool on);
    // The window was closed.
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QRadioButton* addMode(const char* name, const QString& text);
    QRadioButton* button(int mode) const;

    QVBoxLayout* m_layout;
    QRadioButton* m_none;
    QRadioButton* m_diversity;
    QRadioButton* m_frequency;
    QPushButton* m_close;
};
