#pragma once

#include "touch/TextFit.h"

#include <QPushButton>

/// A push button that paints its text inside itself, however long the text is.
///
/// text() and font() stay what they were set to; what is painted is worked out from them and from
/// the button's size. Keys of menu pages (Plain) keep their font as long as the text has room when
/// it is broken into lines. Where it has none, and always on the buttons of pop-ups (Shrinking),
/// TextFit fits the text. "&" is shown as it is and marks no shortcut; "&&", which main units send
/// for one, is shown as one.
class TextButton : public QPushButton
{
    Q_OBJECT

public:
    /// How a button shows its text.
    enum Look {
        Plain = 0,               ///< Keeps the font as long as the text has room when broken.
        Shrinking = 1,           ///< Smaller letters rather than cut; the button fills its cell.
        OneLine = 2 | Shrinking, ///< Smaller letters rather than broken at its blanks.
        Rimmed = 4 | Shrinking   ///< With a dark rim, for faces too light for white text.
    };
    /// Several looks together.
    Q_DECLARE_FLAGS(Looks, Look)

    /// How far a button's text is changed before it is shortened.
    static constexpr TextFit::Limits Limits{12, 12, 400, false};

    /// Makes a button with a text of any length.
    explicit TextButton(const QString& text, QWidget* parent = nullptr, Looks looks = Plain);

    /// Breaks a text into lines, at blanks where it has any, and shortens the last line that there
    /// is room for.
    /// \param text    any text; the first Limits.maxCharacters of it count
    /// \param metrics of the font that it is painted in
    /// \param width   of the longest line, in pixels
    /// \param height  of all lines, in pixels; one line is always kept
    static QString fitted(const QString& text, const QFontMetrics& metrics, int width, int height);

    /// \reimp
    QSize sizeHint() const override;
    /// \reimp
    QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool shrinks() const;
    QString fittedText(const QString& text) const;
    void paintText(QPainter& painter, const QString& label);

    Looks m_looks;
    TextFit m_fit;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(TextButton::Looks)
