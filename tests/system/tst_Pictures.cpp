// The pictures of the documents show the panel as it is: the tour is walked anew and compared.
#include "support/Program.h"
#include "support/TestMain.h"

#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

constexpr int TourMs = 240000;
constexpr const char* Remake = "is out of date; to make all anew: ./run --pictures docs/pictures";

QString kept(const QString& name)
{
    return QString(QN740_ROOT "/docs/pictures/") + name;
}

QStringList picturesIn(const QString& directory)
{
    return QDir(directory).entryList({"*"}, QDir::Files | QDir::Hidden, QDir::Name);
}

// Signals, and the cursor that blinks in the line of a file's name, look different each time.
bool moves(const QString& name)
{
    return name.startsWith("scopes-") || name.startsWith("spectrum-") ||
        name.startsWith("pax-menu") || name == "file-name.png";
}

// Where two pictures of one size differ first, as text; empty when they are the same.
QString difference(const QImage& one, const QImage& other)
{
    if (one.size() != other.size()) {
        return QString("%1 x %2 pixels, not %3 x %4")
            .arg(other.width())
            .arg(other.height())
            .arg(one.width())
            .arg(one.height());
    }
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            if (one.pixel(x, y) != other.pixel(x, y)) {
                return QString("differs at %1, %2").arg(x).arg(y);
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
        // settings of its own: a link mode left by another run would stand in the status bar
        Program tour(
            QN740_PICTURES, {"--quick", m_made.path()}, {"XDG_CONFIG_HOME=" + m_settings.path()});
        QVERIFY(tour.waitForFinished(TourMs));
        QVERIFY2(tour.exitCode() == 0, tour.errors().constData());
        QVERIFY(picturesIn(m_made.path()).size() > 40);
    }

    void the_documents_have_the_pictures_of_the_tour_and_no_others()
    {
        const QStringList made = picturesIn(m_made.path());
        const QStringList there = picturesIn(QN740_ROOT "/docs/pictures");
        for (const QString& name : made) {
            QVERIFY2(
                there.contains(name), qPrintable(name + " is not there: docs/pictures " + Remake));
        }
        for (const QString& name : there) {
            QVERIFY2(made.contains(name), qPrintable(name + " is not of the tour, delete it"));
        }
    }

    void a_picture_shows_the_panel_as_it_is_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString& name : picturesIn(m_made.path())) {
            if (!moves(name)) {
                QTest::newRow(qPrintable(name)) << name;
            }
        }
    }

    void a_picture_shows_the_panel_as_it_is()
    {
        QFETCH(QString, name);
        const QImage old(kept(name));
        const QImage now(m_made.filePath(name));
        QVERIFY(!now.isNull());
        const QString found = difference(now, old);
        QVERIFY2(found.isEmpty(), qPrintable(QString("%1 %2: %3").arg(name, Remake, found)));
    }

    void what_stands_still_around_a_spectrum_is_as_it_is_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QRect>("part");
        for (const QString& name : picturesIn(m_made.path())) {
            if (name.startsWith("spectrum-")) {
                QTest::addRow("%s, levels", qPrintable(name)) << name << QRect(0, 0, 36, 430);
                QTest::addRow("%s, keys", qPrintable(name)) << name << QRect(618, 0, 182, 480);
            }
        }
    }

    void what_stands_still_around_a_spectrum_is_as_it_is()
    {
        QFETCH(QString, name);
        QFETCH(QRect, part);
        const QImage old(kept(name));
        const QImage now(m_made.filePath(name));
        const QString found = difference(now.copy(part), old.copy(part));
        QVERIFY2(found.isEmpty(), qPrintable(QString("%1 %2: %3").arg(name, Remake, found)));
    }

    void a_picture_that_a_document_names_is_there_data()
    {
        QTest::addColumn<QString>("name");
        QStringList papers{QN740_ROOT "/README.md"};
        QDirIterator docs(QN740_ROOT "/docs", {"*.md"}, QDir::Files);
        while (docs.hasNext()) {
            papers += docs.next();
        }
        const QRegularExpression link(R"(!\[[^\]]*\]\(([^)]*)\))");
        for (const QString& paper : papers) {
            QFile file(paper);
            QVERIFY(file.open(QIODevice::ReadOnly));
            auto links = link.globalMatch(QString::fromUtf8(file.readAll()));
            while (links.hasNext()) {
                const QString target = links.next().captured(1);
                const QString path = QFileInfo(paper).dir().filePath(target);
                QTest::newRow(qPrintable(QFileInfo(paper).fileName() + ' ' + target)) << path;
            }
        }
    }

    void a_picture_that_a_document_names_is_there()
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
