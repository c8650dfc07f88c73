#pragma once

#include "touch/KeyMarks.h"
#include "touch/TextFit.h"

#include <QPushButton>

#include <memory>

/// A push button that paints its text inside itself, however long the text is.
///
/// text() and font() stay what they were set to; what is painted is worked out from them and from
/// the button's size. Keys of menu pages (Plain) keep their font as long as the text has room when
/// it is broken into lines; fitted() breaks them, since TextFit would choose other places for the
/// breaks. Where there is no room, and always on the buttons of pop-ups (Shrinking), TextFit fits
/// the text. "&" is shown as it is and marks no shortcut; "&&", which main units send
/// for one, is shown as one.
///
/// A button may carry the marks of a toggle key in its upper corners. Its text then keeps clear of
/// both corners: it stands in the middle as ever where it does not reach them, and else between or
/// under them, in smaller letters if need be.
class TextButton : public QPushButton
{
    Q_OBJECT

public:
    /// How a button shows its text.
    enum Look {
        Plain = 0,               ///< Keeps the font as long as the text has room when broken.
        Shrinking = 1,           ///< Smaller letters rather than cut; the button fills its cell.
        OneLine = 2 | Shrinking, ///< Smaller letters rather than broken at its blanks.
        Rimmed = 4 | Shrinking,  ///< With a dark rim, for faces too light for white text.
        DarkWhenDisabled = 8     ///< Painted as a disabled key when disabled, whatever its sheet.
    };
    /// Several looks together.
    Q_DECLARE_FLAGS(Looks, Look)

    /// How far a button's text is changed before it is shortened.
    static constexpr TextFit::Limits Limits{12, 12, 400, false};

    /// Makes a button with a text of any length.
    explicit TextButton(const QString& text, QWidget* parent = nullptr, Looks looks = Plain);
    ~TextButton() override;

    /// Breaks a text into lines, at blanks where it has any, and shortens the last line that there
    /// is room for.
    /// \param text    any text; the first Limits.maxCharacters of it count
    /// \param metrics of the font that it is painted in
    /// \param width   of the longest line, in pixels
    /// \param height  of all lines, in pixels; one line is always kept
    static QString fitted(const QString& text, const QFontMetrics& metrics, int width, int height);

    /// Shows marks in the upper corners, none by default.
    void setMarks(const keyMarks::Marks& marks);
    /// \return the marks that are shown.
    const keyMarks::Marks& marks() const { return m_marks; }

    /// \reimp
    QSize sizeHint() const override;
    /// \reimp
    QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
    void paintEvent(QPaintEvent* event) override;

    // The size hint of a button that is not Shrinking.
    // \param asked what a push button would ask for
    static QSize boundedHint(const QSize& asked);
    // Whether the text is to be painted by paintText() instead of where a push button has it.
    bool isTextFitted() const;
    // Paints the text inside the button and clear of the marks.
    void paintText(QPainter& painter, const QColor& colour);

private:
    struct PaintCache;

    PaintCache& cache() const;
    bool shrinks() const;
    bool reachesCorners() const;
    bool linesReachCorners() const;
    QString shownText() const;
    QString fittedText(const QString& text) const;
    void paintFitted();
    void paintDark();
    void paintClearOfCorners(QPainter& painter, const QString& label);
    void paintFit(QPainter& painter, const QRect& room, const TextFit::Fit& way);

    Looks m_looks;
    keyMarks::Marks m_marks;
    mutable std::unique_ptr<PaintCache> m_cache; // made when the button is first painted
};

Q_DECLARE_OPERATORS_FOR_FLAGS(TextButton::Looks)
