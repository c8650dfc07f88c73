#pragma once

/// A linear scale: from the values of an axis to pixels and back.
///
/// It holds one value, the pixel at which that value lies, and the number of pixels per unit.
/// Whatever is computed from it is exact at that value: the lower end, or the middle when it was
/// made by aroundMiddle(). A point in the middle of an odd number of pixels then lies on a pixel
/// and does not jump with the rounding error of the axis.
///
/// Pixels are fractional and may count in either direction: an axis that grows upwards has a larger
/// pixel at its lower end. Values outside the axis lie outside its pixels; nothing is clipped.
class Scale
{
public:
    /// Maps every value to pixel 0.
    constexpr Scale() = default;

    /// Maps \a lower to \a lowerPixel and \a upper to \a upperPixel. A scale from a value to itself
    /// maps everything to \a lowerPixel.
    constexpr Scale(double lower, double upper, double lowerPixel, double upperPixel)
        : Scale(upper - lower, lower, lowerPixel, upperPixel - lowerPixel, Anchored())
    {
    }

    /// \return a scale of \a width units, centred on \a middle, from \a firstPixel to
    /// \a lastPixel; exact in the middle of both.
    static constexpr Scale aroundMiddle(
        double middle, double width, double firstPixel, double lastPixel)
    {
        return {width, middle, (firstPixel + lastPixel) / 2.0, lastPixel - firstPixel, Anchored()};
    }

    /// \return where \a value lies, in pixels.
    constexpr double pixel(double value) const
    {
        return m_pixel + (value - m_value) * m_pixelsPerUnit;
    }

    /// \return the value that lies at \a pixel; of a scale without width always the same one.
    constexpr double value(double pixel) const
    {
        return m_pixelsPerUnit == 0.0 ? m_value : m_value + (pixel - m_pixel) / m_pixelsPerUnit;
    }

    /// \return by how many pixels one unit moves a point; negative when pixels fall with the value.
    constexpr double pixelsPerUnit() const { return m_pixelsPerUnit; }

private:
    struct Anchored
    {
    };

    constexpr Scale(double width, double value, double pixel, double pixels, Anchored /*tag*/)
        : m_value(value)
        , m_pixel(pixel)
        , m_pixelsPerUnit(width == 0.0 ? 0.0 : pixels / width)
    {
    }

    double m_value = 0.0; // lies at m_pixel
    double m_pixel = 0.0;
    double m_pixelsPerUnit = 0.0;
};
