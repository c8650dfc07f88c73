#pragma once

#include "touch/TextButton.h"

#include <QColor>

/// The button of a menu key, made so that a page of them costs little, shown or not.
///
/// styleSheet() answers the sheet of the key as it answers that of any widget, but the style never
/// works on it: the button paints itself with the KeyFace that all buttons with this sheet share.
/// As long as it has not been shown, it takes neither font nor colours from its sheet.
///
/// The style asks a widget for its sheet by the property "styleSheet", which is therefore empty
/// here, and while the button is polished or its sheet changes, it passes as a widget that styles
/// leave alone. Should a style get at the sheet by another way, it does more work, and the button
/// looks the same.
///
/// A release first sends, then the button is painted: a push button by itself is painted before it
/// emits released() and clicked(), which would keep the message back for the time of a painting.
class KeyButton : public TextButton
{
    Q_OBJECT
    /// Always empty. See the description of the class.
    Q_PROPERTY(QString styleSheet READ sheetForStyle WRITE setStyleSheet)

public:
    /// Makes a button without a sheet.
    explicit KeyButton(const QString& text, QWidget* parent = nullptr);

    /// Sets the style sheet, unless it is the present one. To be called when the button lies in a
    /// page below a widget that has a sheet: the style then has nothing to make for the button.
    void setSheet(const QString& sheet);

    /// Tells which colour lies under the button. The page there is then not painted anew with each
    /// change of the button, which fills its corners itself.
    /// \param colour opaque; the same all over the button's place
    void setGround(const QColor& colour);
    /// \return the colour under the button; an invalid one when the page paints it.
    const QColor& ground() const { return m_ground; }

    /// \return the value of the property "styleSheet": an empty text.
    QString sheetForStyle() const { return {}; }

    /// \reimp
    QSize sizeHint() const override;
    /// \reimp On a hidden page the button is not polished.
    void setVisible(bool visible) override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void nextCheckState() override;

    // The sheet that the face is made of: that of the button, if no other one counts.
    virtual QString faceSheet() const;

private:
    void changeSheet(const QString& sheet);
    void polish();
    void takeLook();

    bool m_isPolished = false;
    bool m_isForLater = false; // whether it is made visible on a page that is hidden
    bool m_isChangingSheet = false;
    QSize m_frame; // of its face
    QColor m_ground;
};
