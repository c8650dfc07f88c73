#pragma once

#include <cmath>
#include <complex>

/// An affine map of the I/Q plane: x' = xx · x + xy · y + x0, y' = yx · x + yy · y + y0.
struct PlaneMap
{
    double xx = 1.0; ///< x' for x.
    double xy = 0.0; ///< x' for y.
    double yx = 0.0; ///< y' for x.
    double yy = 1.0; ///< y' for y.
    double x0 = 0.0; ///< x' of the origin.
    double y0 = 0.0; ///< y' of the origin.

    /// \return the map that turns by the angle of \a gain, scales by its magnitude and then moves
    /// by \a origin.
    static PlaneMap complexGain(std::complex<double> gain, std::complex<double> origin = {})
    {
        return {gain.real(), -gain.imag(), gain.imag(), gain.real(), origin.real(), origin.imag()};
    }

    /// \return where the map moves \a point.
    std::complex<double> operator()(std::complex<double> point) const
    {
        return {
            xx * point.real() + xy * point.imag() + x0, yx * point.real() + yy * point.imag() + y0};
    }

    /// \return the factor by which the map changes areas; negative when it mirrors.
    double determinant() const { return xx * yy - xy * yx; }

    /// \return the map that undoes this one; its values are not finite when there is none.
    PlaneMap inverse() const
    {
        const double d = determinant();
        PlaneMap back{yy / d, -xy / d, -yx / d, xx / d, 0.0, 0.0};
        back.x0 = -(back.xx * x0 + back.xy * y0);
        back.y0 = -(back.yx * x0 + back.yy * y0);
        return back;
    }

    /// \return the map that first applies \a inner and then this one.
    PlaneMap after(const PlaneMap& inner) const
    {
        const std::complex<double> origin = (*this)({inner.x0, inner.y0});
        return {xx * inner.xx + xy * inner.yx, xx * inner.xy + xy * inner.yy,
            yx * inner.xx + yy * inner.yx, yx * inner.xy + yy * inner.yy, origin.real(),
            origin.imag()};
    }
};
