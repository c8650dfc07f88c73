#pragma once

#include <QPushButton>

// A push button in a grid of equal cells: it asks for the size of a finger and no more, and paints
// its text as large as its font allows, broken into lines, smaller where that does not fit, and
// elided where even the smallest does not. text() and font() stay what they were set to.
class FitButton : public QPushButton
{
    Q_OBJECT

public:
    // The least size of a key under a finger, in pixels (9 mm on a 7-inch panel).
    static constexpr int Finger = 47;
    // The smallest size that a text is painted in, in pixels.
    static constexpr int SmallestFont = 12;

    // How a text is painted.
    struct Fit
    {
        QString text;          // elided where it must be
        int pixelSize = 0;     // of the font
        bool anywhere = false; // lines are also broken inside words
    };

    explicit FitButton(const QString& text, QWidget* parent = nullptr);

    // The text stays on one line, made smaller instead of broken at its blanks.
    void setOneLine(bool on);
    // The text has a dark rim, for faces that are too light for it.
    void setRimmed(bool on);

    // In: a text (with "&" as buttons have it), its font with a pixel size, the room in pixels.
    // Out: how to paint it inside the room; blanks and breaks at its ends are left out.
    static Fit fit(const QString& text, const QFont& font, const QSize& room);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_oneLine = false;
    bool m_rimmed = false;
    // the last fit and what it was made for: measuring is dear
    Fit m_fit;
    QString m_fitText;
    QFont m_fitFont;
    QSize m_fitRoom;
};
