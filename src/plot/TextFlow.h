#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <optional>

/// Short texts, the parts of a read-out, that share lines as long as there is room.
///
/// Where a line ends is decided by the widest text that each part may come to show, so that the
/// lines do not jump when a number gets longer.
struct TextFlow
{
    /// One of the texts.
    struct Part
    {
        QString text;   ///< What it says now; empty when there is nothing to say.
        QString widest; ///< The same with the widest numbers that it may come to show.
    };

    /// Tells the width of a text in pixels.
    using WidthOf = std::function<int(const QString&)>;

    QStringList lines; ///< The lines from top to bottom, without empty ones.
    /// The width in pixels that the only line may come to need; nothing when there are several.
    std::optional<int> singleWidth;

    /// Distributes \a parts over lines, in their order, with a gap of three blanks between two.
    /// \param room the width of a line in pixels. A part that is wider has a line of its own.
    static TextFlow flow(const QVector<Part>& parts, int room, const WidthOf& widthOf);
};
