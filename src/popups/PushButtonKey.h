#pragma once

#include <QPushButton>

// One key of the on-screen keyboard: its text is its character or its command word. It acts when
// it is let go; "CAPS" then toggles the caps lock and announces it, and every key hears of it.
class PushButtonKey : public QPushButton
{
    Q_OBJECT

public:
    explicit PushButtonKey(const QString& text, QWidget* parent = nullptr);

    // Out: whether this is a command key, that is one with more than one character.
    bool isCommand() const { return text().size() > 1; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public slots:
    // The caps lock is on or off: a one-character text becomes upper or lower case.
    void getCapLocksChanged(bool on);

signals:
    // The key was pressed; its text.
    void keyPressed(QString text);
    // The "CAPS" key was pressed; the new state.
    void capLocksChanged(bool on);

private:
    void act();

    bool m_capsOn = false;
};
