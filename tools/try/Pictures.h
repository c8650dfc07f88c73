#pragma once

#include <QImage>
#include <QRect>
#include <QString>

/// Comparing what is on the screen with a picture of before.
namespace pictures {

/// What a comparison finds.
struct Difference
{
    qsizetype points = 0; ///< how many points differ; of pictures of two sizes, all of them
    QRect place;          ///< the smallest part of the picture that holds them all
    QImage picture;       ///< the present picture, pale, with the points that differ in red
};

/// Compares a picture with the one that it should be.
Difference compare(const QImage& now, const QImage& reference);

} // namespace pictures
