#pragma once

#include <QPushButton>

// A push button that paints its text inside itself, however long it is; text() and font() stay what
// they were set to; "&" is shown as it is, and "&&", as keys may have it for one, as one. Keys of
// menu pages keep their font while the text, broken into lines at blanks where there are any, has
// room. Where it has not, and with the look Shrinking, as the buttons of pop-ups have it, the
// text gets smaller, and is elided ("…") where that is not enough.
class TextButton : public QPushButton
{
    Q_OBJECT

public:
    // How a button shows its text.
    enum Look {
        Plain = 0,               // in its font, broken into lines, the last one elided
        Shrinking = 1,           // smaller before it is elided; the button fills its cell
        OneLine = 2 | Shrinking, // smaller instead of broken at its blanks
        Rimmed = 4 | Shrinking   // with a dark rim, for faces that are too light for white text
    };
    Q_DECLARE_FLAGS(Looks, Look)

    // The least size of a key under a finger, in pixels (9 mm on a 7-inch panel): what a shrinking
    // button asks for.
    static constexpr int Finger = 47;
    // The smallest size that a text is shrunk to, in pixels.
    static constexpr int SmallestFont = 12;

    explicit TextButton(const QString& text, QWidget* parent = nullptr, Looks looks = Plain);

    // In: a text, the metrics of its font, the room for it in pixels. Out: the text with line
    // breaks, every line at most `width` wide and all of them at most `height` high, but one line
    // at least.
    static QString fitted(const QString& text, const QFontMetrics& metrics, int width, int height);

    // How a shrunk text is painted.
    struct Fit
    {
        QString text;          // elided where it must be
        int pixelSize = 0;     // of the font
        bool anywhere = false; // lines are also broken inside words
    };
    // In: a text, its font with a pixel size, the room in pixels.
    // Out: how to paint it inside the room; blanks and breaks at its ends are left out.
    static Fit shrunk(const QString& text, const QFont& font, const QSize& room);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool shrinks() const;
    QString fittedText(const QString& text) const;
    void paintText(QPainter& painter, const QString& label);

    Looks m_looks;
    // the last fit and what it was made for: measuring is dear
    Fit m_fit;
    QString m_fitText;
    QFont m_fitFont;
    QSize m_fitRoom;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(TextButton::Looks)
