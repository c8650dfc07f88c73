#pragma once

#include <QPushButton>

/// One key of the on-screen keyboard: its text is its character or its command word.
///
/// It acts when it is released; "CAPS" then toggles the caps lock and announces the new state,
/// which the keyboard passes on to every key.
class PushButtonKey : public QPushButton
{
    Q_OBJECT

public:
    /// Makes a key with its character or command word.
    explicit PushButtonKey(const QString& text, QWidget* parent = nullptr);

    /// \return whether this is a command key, that is one with more than one character.
    bool isCommand() const { return text().size() > 1; }

    /// \reimp
    QSize sizeHint() const override;
    /// \reimp
    QSize minimumSizeHint() const override;

public slots:
    /// The caps lock was switched: a one-character text becomes upper or lower case.
    void getCapLocksChanged(bool on);

signals:
    /// Emitted with the key's text when the key was pressed.
    void keyPressed(QString text);
    /// Emitted with the new state when "CAPS" was pressed.
    void capLocksChanged(bool on);

private:
    void act();

    bool m_capsOn = false;
};
