#pragma once

#include <QString>
#include <QVector>

/// What the keys of a chart are, and on which page each one stands; without a widget.
namespace chartKeys {

/// What a key does to its chart.
enum class Key {
    Average,   ///< Switches the mean over 16 spectra on or off.
    MaxHold,   ///< Switches max hold on or off.
    MinHold,   ///< Switches min hold on or off.
    Clear,     ///< Starts averaging, max hold and min hold anew.
    NoAverage, ///< Ends the averaging.
    Power4,    ///< Means the powers of 4 spectra.
    Power16,   ///< Means the powers of 16 spectra.
    Power64,   ///< Means the powers of 64 spectra.
    Log4,      ///< Means the decibels of 4 spectra.
    Log16,     ///< Means the decibels of 16 spectra.
    Log64,     ///< Means the decibels of 64 spectra.

    ReferenceUp,   ///< Moves the top of the levels up by one division.
    ReferenceDown, ///< Moves the top of the levels down by one division.
    Decibels10,    ///< 10 dB per division.
    Decibels5,     ///< 5 dB per division.
    Decibels2,     ///< 2 dB per division.
    Decibel1,      ///< 1 dB per division.
    AutoScale,     ///< Fits the levels to noise floor and peak.
    FullScale,     ///< Shows all levels, as at the start.

    MarkPeak,     ///< Sets the active marker to the highest peak.
    MarkNextPeak, ///< Sets the active marker to the next lower peak.
    MarkLeft,     ///< Moves the active marker down by one bin.
    MarkRight,    ///< Moves the active marker up by one bin.
    MarkDelta,    ///< Switches the difference to marker 1 on or off.
    MarkOff,      ///< Removes the active marker.

    ChannelPower,      ///< Measures the power in a channel.
    OccupiedBandwidth, ///< Measures the occupied bandwidth.
    HalfPowerWidth,    ///< Measures the −3 dB bandwidth.
    CarrierToNoise,    ///< Measures C/N and C/N0.
    FrequencyError,    ///< Measures the carrier's distance from the centre.
    NoMeasurement,     ///< Ends the measurement.
    Narrower,          ///< Narrows the channel whose power is measured.
    Wider,             ///< Widens the channel whose power is measured.
    ChannelAuto,       ///< Has the channel found from the spectrum.

    ToTrace,   ///< Opens the page of averaging and hold.
    ToScale,   ///< Opens the page of the levels.
    ToMarkers, ///< Opens the page of the markers.
    ToMeasure, ///< Opens the page of the measurements.
    Back,      ///< Returns to the first page.
    Close      ///< Closes the keys.
};

/// A page of keys.
enum class Page {
    First,   ///< From which the others are opened.
    Trace,   ///< Averaging and hold.
    Scale,   ///< Levels.
    Markers, ///< Markers.
    Measure  ///< Measurements.
};

/// How a key behaves.
enum class Kind {
    Plain,  ///< It does something once.
    Repeat, ///< It does it again while it is held down.
    Switch, ///< It is on or off.
    Choice  ///< It is one of several, of which one is in effect.
};

/// One key of a page. The keys fill a page in their order, two in a row.
struct Entry
{
    Key key = Key::Close;    ///< What it does.
    QString text;            ///< What stands on it.
    Kind kind = Kind::Plain; ///< How it behaves.
    bool isWide = false;     ///< It fills a row alone.
};

/// \return the pages in their order.
const QVector<Page>& pages();

/// \return the title of a page.
QString title(Page page);

/// Where the keys of a chart are.
enum class Place {
    BesideChart, ///< Beside the enlarged chart: all of them.
    OwnWindow    ///< In a window: without measurements, which a chart elsewhere has no room for.
};

/// \return the keys of a page.
QVector<Entry> entries(Page page, Place place = Place::BesideChart);

/// \return the page that a key opens. \param page what is returned for a key that opens none
Page pageBehind(Key key, Page page);

} // namespace chartKeys
