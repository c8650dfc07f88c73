// The pictures in the documents must show the panel as it is. This test takes all screens again
// with tools/pictures and compares them.
#include "support/Program.h"
#include "support/TestMain.h"

#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

constexpr int PicturesMs = 240000;
const QString Remake =
    QStringLiteral("is out of date; to make all anew: ./run --pictures docs/pictures");

QString inRoot(const char* path)
{
    return QString::fromUtf8(QN740_ROOT "/") + QLatin1String(path);
}

QString kept(const QString& name)
{
    return inRoot("docs/pictures/") + name;
}

QStringList picturesIn(const QString& directory)
{
    return QDir(directory).entryList({u"*"_s}, QDir::Files | QDir::Hidden, QDir::Name);
}

struct Part
{
    const char* what;
    QRect place;
};

// Returns the parts that stand still in a picture of which other parts move. The list is empty when
// the whole picture can be compared.
QVector<Part> stillParts(const QString& name)
{
    static const QRegularExpression enlargedChart(
        u"^spectrum-(enlarged|keys|holds|scale|delta|channel|occupied|3-db|carrier|frequency)"_s);
    if (enlargedChart.match(name).hasMatch()) {
        return {{"keys", {618, 0, 182, 480}}};
    }
    if (name == u"pax-menu-chart-keys.png"_s) {
        return {{"keys", {0, 0, 400, 480}}, {"keys below", {0, 406, 800, 74}}};
    }
    if (name == u"spectrum-max-hold.png"_s) {
        // The readings need one line or two, and the levels begin below them.
        return {{"keys", {618, 0, 182, 480}}};
    }
    if (name.startsWith(u"spectrum-"_s)) {
        return {{"levels", {0, 0, 36, 430}}, {"keys", {618, 0, 182, 480}}};
    }
    if (name == u"scopes-mode-list.png"_s) {
        return {{"list", {4, 0, 792, 480}}}; // the scopes show beside it
    }
    if (name == u"pax-menu.png"_s) {
        return {{"keys", {0, 0, 400, 480}}, {"keys below", {0, 400, 800, 80}},
            {"scope's title of Q", {476, 70, 22, 82}}, {"scope's title of I", {590, 222, 75, 20}},
            {"spectrum's name", {410, 248, 390, 17}}, {"spectrum's levels", {410, 280, 39, 120}},
            {"spectrum's frequencies", {410, 378, 390, 18}}};
    }
    if (name == u"connection-lost-pax.png"_s) {
        return {{"keys", {0, 0, 400, 480}}, {"notice", {263, 458, 273, 22}}};
    }
    if (!name.startsWith(u"scopes-"_s)) {
        return {};
    }
    QVector<Part> parts{{"mode buttons", {0, 323, 800, 54}}, {"scale of PM", {0, 409, 800, 21}},
        {"status bar", {0, 430, 800, 50}}};
    const bool off = name == u"scopes-off.png"_s;
    constexpr int Scope2 = 268;
    constexpr int Scope3 = 535;
    const auto addEye = [&parts](int left) {
        parts += {{"title of I", {left, 36, 34, 66}}, {"title of Q", {left, 180, 34, 76}},
            {"time of I", {left + 66, 128, 196, 22}}, {"time of Q", {left + 66, 279, 196, 43}}};
    };
    addEye(0);
    if (off) {
        addEye(Scope2);
        addEye(Scope3);
    } else {
        parts += {{"SDI, bytes", {Scope3, 0, 70, 322}}, {"SDI, age", {Scope3, 277, 265, 45}}};
        if (name == u"scopes-one-hidden.png"_s) {
            parts += {{"hidden scope", {Scope2 - 2, 0, 265, 322}}};
        } else {
            parts += {{"title of a constellation's Q", {Scope2, 105, 34, 80}},
                {"title of its I", {Scope2 + 110, 258, 100, 30}},
                {"nothing below", {Scope2, 290, 262, 32}}};
        }
    }
    return parts;
}

// Returns where two pictures first differ, as text, or an empty text when they are the same.
QString difference(const QImage& one, const QImage& other)
{
    if (one.size() != other.size()) {
        return u"%1 x %2 pixels, not %3 x %4"_s.arg(other.width())
            .arg(other.height())
            .arg(one.width())
            .arg(one.height());
    }
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            if (one.pixel(x, y) != other.pixel(x, y)) {
                return u"differs at %1, %2"_s.arg(x).arg(y);
            }
        }
    }
    return {};
}

} // namespace

class tst_Pictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The program gets its own settings, because a link mode left by another run would appear
        // in the status bar.
        Program pictures(QString::fromUtf8(QN740_PICTURES), {u"--quick"_s, m_made.path()},
            {u"XDG_CONFIG_HOME="_s + m_settings.path()});
        QVERIFY(pictures.waitForFinished(PicturesMs));
        QVERIFY2(pictures.exitCode() == 0, pictures.errors().constData());
        QVERIFY(picturesIn(m_made.path()).size() > 40);
    }

    void the_documents_have_all_pictures_and_no_others()
    {
        const QStringList made = picturesIn(m_made.path());
        const QStringList there = picturesIn(inRoot("docs/pictures"));
        for (const QString& name : made) {
            QVERIFY2(there.contains(name),
                qPrintable(name + u" is not there: docs/pictures "_s + Remake));
        }
        for (const QString& name : there) {
            QVERIFY2(
                made.contains(name), qPrintable(name + u" is not taken any more, delete it"_s));
        }
    }

    void a_picture_is_up_to_date_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString& name : picturesIn(m_made.path())) {
            // The cursor in the line of a file's name blinks, so that picture is left out.
            if (stillParts(name).isEmpty() && name != u"file-name.png"_s) {
                QTest::newRow(qPrintable(name)) << name;
            }
        }
    }

    void a_picture_is_up_to_date()
    {
        QFETCH(QString, name);
        const QImage old(kept(name));
        const QImage now(m_made.filePath(name));
        QVERIFY(!now.isNull());
        const QString found = difference(now, old);
        QVERIFY2(found.isEmpty(), qPrintable(u"%1 %2: %3"_s.arg(name, Remake, found)));
    }

    void the_still_parts_around_a_signal_are_up_to_date_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QRect>("part");
        for (const QString& name : picturesIn(m_made.path())) {
            const QVector<Part> parts = stillParts(name);
            for (const Part& part : parts) {
                QTest::addRow("%s, %s", qPrintable(name), part.what) << name << part.place;
            }
        }
    }

    void the_still_parts_around_a_signal_are_up_to_date()
    {
        QFETCH(QString, name);
        QFETCH(QRect, part);
        const QImage old(kept(name));
        const QImage now(m_made.filePath(name));
        const QString found = difference(now.copy(part), old.copy(part));
        QVERIFY2(found.isEmpty(), qPrintable(u"%1 %2: %3"_s.arg(name, Remake, found)));
    }

    void every_picture_in_a_document_exists_data()
    {
        QTest::addColumn<QString>("name");
        QStringList documents{inRoot("README.md")};
        QDirIterator docs(inRoot("docs"), {u"*.md"_s}, QDir::Files);
        while (docs.hasNext()) {
            documents += docs.next();
        }
        const QRegularExpression link(uR"(!\[[^\]]*\]\(([^)]*)\))"_s);
        for (const QString& document : documents) {
            QFile file(document);
            QVERIFY(file.open(QIODevice::ReadOnly));
            auto links = link.globalMatch(QString::fromUtf8(file.readAll()));
            while (links.hasNext()) {
                const QString target = links.next().captured(1);
                const QString path = QFileInfo(document).dir().filePath(target);
                QTest::newRow(qPrintable(QFileInfo(document).fileName() + u' ' + target)) << path;
            }
        }
    }

    void every_picture_in_a_document_exists()
    {
        QFETCH(QString, name);
        QVERIFY2(QFileInfo(name).isFile(), qPrintable(name));
    }

private:
    QTemporaryDir m_made;
    QTemporaryDir m_settings;
};

QN740_TEST_MAIN(tst_Pictures)
#include "tst_Pictures.moc"
