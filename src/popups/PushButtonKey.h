#pragma once

#include "touch/KeyButton.h"

/// One key of the on-screen keyboard: its text is its character or its command word.
///
/// It is painted as a key of a menu is: with a face that all keys with the same sheets share.
/// Sheets of what it lies in count as well, so that they stand in one with its own for the face.
///
/// It acts when it is released; "CAPS" then toggles the caps lock and announces the new state,
/// which the keyboard passes on to every key.
class PushButtonKey : public KeyButton
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

protected:
    bool event(QEvent* event) override;
    QString faceSheet() const override;

private:
    void act();

    bool m_capsOn = false;
    mutable QString m_faceSheet; // empty when it has to be made anew
};
