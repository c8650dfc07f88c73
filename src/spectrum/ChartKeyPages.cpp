#include "spectrum/ChartKeyPages.h"

namespace {

using chartKeys::Entry;
using chartKeys::Key;
using chartKeys::Kind;

const bool Wide = true;

Entry back()
{
    return {Key::Back, QStringLiteral("Back"), Kind::Plain, Wide};
}

QVector<Entry> firstPage(chartKeys::Place place)
{
    QVector<Entry> list{
        {Key::Average, QStringLiteral("Average"), Kind::Switch},
        {Key::MaxHold, QStringLiteral("Max Hold"), Kind::Switch},
        {Key::ToTrace, QStringLiteral("Trace")},
        {Key::ToScale, QStringLiteral("Scale")},
    };
    if (place == chartKeys::Place::BesideChart) {
        list += {Key::ToMarkers, QStringLiteral("Markers")};
        list += {Key::ToMeasure, QStringLiteral("Measure")};
    } else {
        list += {Key::ToMarkers, QStringLiteral("Markers"), Kind::Plain, Wide};
    }
    list += {Key::Close, QStringLiteral("Close"), Kind::Plain, Wide};
    return list;
}

QVector<Entry> tracePage()
{
    return {
        {Key::NoAverage, QStringLiteral("No Avg"), Kind::Choice},
        {Key::Clear, QStringLiteral("Clear")},
        {Key::Power4, QStringLiteral("Power 4"), Kind::Choice},
        {Key::Log4, QStringLiteral("Log 4"), Kind::Choice},
        {Key::Power16, QStringLiteral("Power 16"), Kind::Choice},
        {Key::Log16, QStringLiteral("Log 16"), Kind::Choice},
        {Key::Power64, QStringLiteral("Power 64"), Kind::Choice},
        {Key::Log64, QStringLiteral("Log 64"), Kind::Choice},
        {Key::MaxHold, QStringLiteral("Max Hold"), Kind::Switch},
        {Key::MinHold, QStringLiteral("Min Hold"), Kind::Switch},
        back(),
    };
}

QVector<Entry> scalePage()
{
    return {
        {Key::ReferenceUp, QStringLiteral("Ref ▲"), Kind::Repeat},
        {Key::ReferenceDown, QStringLiteral("Ref ▼"), Kind::Repeat},
        {Key::Decibels10, QStringLiteral("10 dB"), Kind::Choice},
        {Key::Decibels5, QStringLiteral("5 dB"), Kind::Choice},
        {Key::Decibels2, QStringLiteral("2 dB"), Kind::Choice},
        {Key::Decibel1, QStringLiteral("1 dB"), Kind::Choice},
        {Key::AutoScale, QStringLiteral("Auto")},
        {Key::FullScale, QStringLiteral("Full")},
        back(),
    };
}

QVector<Entry> markersPage()
{
    return {
        {Key::MarkPeak, QStringLiteral("Peak")},
        {Key::MarkNextPeak, QStringLiteral("Next peak")},
        {Key::MarkLeft, QStringLiteral("◀"), Kind::Repeat},
        {Key::MarkRight, QStringLiteral("▶"), Kind::Repeat},
        {Key::MarkDelta, QStringLiteral("Delta"), Kind::Switch},
        {Key::MarkOff, QStringLiteral("Off")},
        back(),
    };
}

QVector<Entry> measurePage()
{
    return {
        {Key::ChannelPower, QStringLiteral("Channel power"), Kind::Choice},
        {Key::OccupiedBandwidth, QStringLiteral("Occupied BW"), Kind::Choice},
        {Key::HalfPowerWidth, QStringLiteral("-3 dB BW"), Kind::Choice},
        {Key::CarrierToNoise, QStringLiteral("C/N"), Kind::Choice},
        {Key::FrequencyError, QStringLiteral("Frequency error"), Kind::Choice},
        {Key::NoMeasurement, QStringLiteral("Off"), Kind::Choice},
        {Key::Narrower, QStringLiteral("BW −"), Kind::Repeat},
        {Key::Wider, QStringLiteral("BW +"), Kind::Repeat},
        {Key::ChannelAuto, QStringLiteral("BW auto"), Kind::Choice},
        {Key::Back, QStringLiteral("Back")},
    };
}

} // namespace

const QVector<chartKeys::Page>& chartKeys::pages()
{
    static const QVector<Page> list{
        Page::First, Page::Trace, Page::Scale, Page::Markers, Page::Measure};
    return list;
}

QString chartKeys::title(Page page)
{
    switch (page) {
    case Page::First:
        return QStringLiteral("Chart");
    case Page::Trace:
        return QStringLiteral("Trace");
    case Page::Scale:
        return QStringLiteral("Scale");
    case Page::Markers:
        return QStringLiteral("Markers");
    case Page::Measure:
        return QStringLiteral("Measure");
    }
    return {};
}

QVector<chartKeys::Entry> chartKeys::entries(Page page, Place place)
{
    switch (page) {
    case Page::First:
        return firstPage(place);
    case Page::Trace:
        return tracePage();
    case Page::Scale:
        return scalePage();
    case Page::Markers:
        return markersPage();
    case Page::Measure:
        return measurePage();
    }
    return {};
}

chartKeys::Page chartKeys::pageBehind(Key key, Page page)
{
    switch (key) {
    case Key::ToTrace:
        return Page::Trace;
    case Key::ToScale:
        return Page::Scale;
    case Key::ToMarkers:
        return Page::Markers;
    case Key::ToMeasure:
        return Page::Measure;
    case Key::Back:
        return Page::First;
    default:
        return page;
    }
}
