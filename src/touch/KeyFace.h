#pragma once

#include "touch/KeyMarks.h"

#include <QColor>
#include <QFont>
#include <QMargins>
#include <QSize>
#include <QString>

#include <array>

class QPainter;
class QStyleOptionButton;

/// What a style sheet makes of a push button: font, colours, sizes, and the picture of its face.
///
/// A widget that carries a style sheet has it parsed, and keeps the result for itself: 50 µs and
/// 20 kB for each, several times that for a change. The thousands of keys of the menus carry six
/// different sheets. So each text is given once to a button that is made for this purpose and
/// deleted again, and what comes out is kept and shared. The style itself paints the faces, one
/// picture for each size and state; the pictures that were not used for the longest time are
/// dropped when they take more than MaxPictureBytes together.
class KeyFace
{
public:
    /// Limit of the memory that the pictures of all faces take together.
    static constexpr int MaxPictureBytes = 1 << 20;

    /// \return the look of a sheet, which is valid until the next call.
    static const KeyFace& of(const QString& sheet);

    /// Forgets all faces: they depend on font, palette and style of the application.
    static void forgetAll();

    /// \return the font of the text.
    const QFont& font() const { return m_font; }
    /// \return the colour of the text.
    const QColor& textColour(bool isEnabled) const { return m_textColours.at(isEnabled ? 1 : 0); }
    /// \return by how much the size hint of a button is larger than its text.
    const QSize& frame() const { return m_frame; }
    /// \return the size that a push button with this sheet and \a text asks for.
    QSize sizeHint(const QString& text) const;

    /// Paints the button without its text, and the marks over it.
    /// \param option the button's outline and state
    /// \param ground the colour around the face; an invalid one for none
    void paintFace(QPainter& painter, const QStyleOptionButton& option,
        const keyMarks::Marks& marks, const QColor& ground = {}) const;
    /// Paints the text of \a option where a push button has it.
    void paintText(QPainter& painter, const QStyleOptionButton& option) const;

private:
    explicit KeyFace(const QString& sheet);

    QString m_sheet;
    QFont m_font;
    std::array<QColor, 2> m_textColours; // disabled, enabled
    QMargins m_contents;                 // from the outline to the place of the text
    QSize m_frame;
};
