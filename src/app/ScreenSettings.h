#pragma once

#include <QByteArray>
#include <QSize>
#include <QStringList>

/// How the panel stands on a screen that is larger than its 800 × 480 pixels or is mounted turned.
///
/// The integrator says it with two environment variables. QN740_SCALE is a factor from 1 to 8, or
/// "fit" for the largest one with which the whole panel is on the screen. QN740_ROTATION is 0, 90,
/// 180 or 270: by how many degrees the picture is turned clockwise.
///
/// Qt itself scales: the factor is handed to it before the application is made, so that letters and
/// lines are drawn in the screen's own pixels and stay sharp. Turning is the work of Stage.
class ScreenSettings
{
public:
    /// The panel's size before it is scaled, in pixels.
    static constexpr QSize PanelSize{800, 480};
    /// Limits of the scale.
    ///@{
    static constexpr double MinScale = 1.0;
    static constexpr double MaxScale = 8.0;
    ///@}

    /// Reads the environment. \return the settings; what is invalid has its default
    static ScreenSettings fromEnvironment();

    /// Reads the two values; empty: not set.
    /// \param scale    text of QN740_SCALE
    /// \param rotation text of QN740_ROTATION
    ScreenSettings(const QByteArray& scale, const QByteArray& rotation);

    /// \return whether a valid scale, or "fit", was given.
    bool hasScale() const { return m_fit || m_scale > 0; }
    /// \return whether the largest scale that fits was asked for.
    bool isFit() const { return m_fit; }
    /// \return by how many degrees the picture is turned clockwise: 0, 90, 180 or 270.
    int rotation() const { return m_rotation; }
    /// \return one line for each value that is invalid and therefore ignored.
    const QStringList& warnings() const { return m_warnings; }

    /// \return by how much the panel is scaled on a screen of this size in pixels. For "fit" it is
    /// a multiple of 0.05, with which 800 × 480 is a whole number of pixels.
    double scaleOn(const QSize& screen) const;

    /// Hands the scale to Qt. For "fit" it opens the platform once to learn
    /// the size of its screen. It must be called before the application is made.
    /// \param argc, argv those of main(); they are not changed
    void apply(int argc, char** argv) const;

private:
    void readScale(const QByteArray& text);
    void readRotation(const QByteArray& text);

    double m_scale = 0; // none
    bool m_fit = false;
    int m_rotation = 0;
    QStringList m_warnings;
};
