#pragma once

#include <QFont>
#include <QSize>
#include <QString>

/// Fits a text of any length into a room of fixed size, for labels and for the buttons of pop-ups.
///
/// Keys of menu pages break their lines by TextButton::fitted(), which keeps the font, and come
/// here only when that would cut the text: the places of their line breaks are part of their look.
///
/// From the font's own size downwards it looks for the largest letters in which the whole text fits
/// with its words kept whole; when there are none, for the largest ones in which it fits with lines
/// broken anywhere; when there are none either, it shortens the text at the smallest size to the
/// longest start that fits and ends it with an ellipsis.
///
/// Measuring a text costs up to some tenths of a millisecond, and a widget may be painted often. A
/// TextFit therefore remembers its last answer, only the first characters of a text are measured at
/// all, and the longest start is found by halving: each question costs a bounded number of
/// measurements.
class TextFit
{
public:
    /// How far a text may be changed before it is shortened.
    struct Limits
    {
        int minWholePixels;      ///< Smallest letters in which words are kept whole, in pixels.
        int minPixels;           ///< Smallest letters altogether, in pixels.
        qsizetype maxCharacters; ///< More characters than these are never shown.
        bool unwrappedFirst;     ///< Whether each size is first tried without new line breaks.
    };

    /// A way to draw a text.
    struct Fit
    {
        QString text;  ///< The text to draw; it ends with an ellipsis where it was shortened.
        QFont font;    ///< The font to draw it in.
        int flags = 0; ///< How lines are broken: Qt::TextWordWrap, Qt::TextWrapAnywhere or none.
    };

    /// Makes a fitter that remembers its last answer.
    explicit TextFit(const Limits& limits);

    /// The same as the static function, with the limits of this fitter. The answer is computed only
    /// when one of the arguments has changed since the last call.
    const Fit& fit(const QString& text, const QFont& font, const QSize& room);

    /// Finds how to draw a text.
    /// \param text   any text
    /// \param font   the font that the text should have; its size is the largest that is used
    /// \param room   width and height in pixels
    /// \param limits how far the text may be changed
    static Fit fit(const QString& text, const QFont& font, const QSize& room, const Limits& limits);

private:
    Limits m_limits;
    Fit m_fit;
    QString m_text;
    QFont m_font;
    QSize m_room;
    bool m_known = false; // whether m_fit answers the question of the other members
};
