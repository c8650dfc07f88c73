#pragma once

#include "scopes/PlotView.h"
#include "scopes/Scope.h"
#include "scopes/Streams.h"
#include "support/Pty.h"

#include <QSignalSpy>
#include <QtTest>

#include <deque>

// A scope with the other end of its line, for the tests of scopes.
namespace scopeFixture {

// The records that the upper plot shows.
inline std::deque<QByteArray> shownRecords(const Scope& scope)
{
    const auto* view = scope.findChild<PlotView*>(QStringLiteral("plotI"));
    const auto* strips = dynamic_cast<const SdiPlot*>(view->content());
    return strips != nullptr ? strips->records() : std::deque<QByteArray>();
}

inline PlotView* plot(const Scope& scope, const char* name)
{
    return scope.findChild<PlotView*>(QLatin1String(name));
}

inline QByteArray steady(int i, int q)
{
    return streams::block(QVector<int>(256, i), QVector<int>(256, q));
}

// A shown scope whose port is a pseudo-terminal.
struct ScopeFixture
{
    DeviceDirectory devices;
    Pty& line = devices.add(QStringLiteral("ttyUSB1"));
    Scope scope{QStringLiteral("ttyUSB1"), 1, nullptr};
    QSignalSpy blocks{&scope, &Scope::rcv_eye_msg};
    QSignalSpy records{&scope, &Scope::rcv_sdi_msg};

    explicit ScopeFixture(bool shown = true)
    {
        scope.resize(262, 310);
        if (shown) {
            scope.show();
            static_cast<void>(QTest::qWaitForWindowExposed(&scope));
        }
    }
};

} // namespace scopeFixture
