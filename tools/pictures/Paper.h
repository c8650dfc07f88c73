#pragma once

#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>

/// A picture of the paper.
struct PaperPicture
{
    QString name;  ///< of its file, without ending; no two pictures of a paper have the same
    QString title; ///< what it shows
    QImage image;  ///< 800 × 480
};

/// A key as the paper describes it.
struct PaperKey
{
    QString label;              ///< its text, in one line
    QString id;                 ///< its identifier; empty for a key of no menu ("IK")
    QString kind;               ///< what kind of key it is
    QString sends;              ///< what it sends
    QString values;             ///< its ranges, choices, files or steps; may be empty
    QString state;              ///< whether it is shown and can be pressed
    QString opens;              ///< the menu that it opens; empty for none
    QList<PaperPicture> editor; ///< its editor; none for a key that opens none, and for a copy
};

/// A menu with all of its pages and keys.
struct PaperMenu
{
    QString name;              ///< as messages call it
    QList<PaperPicture> pages; ///< one picture of each sub-page
    QList<PaperKey> keys;      ///< in the order of the file
};

/// Everything that a menu file makes visible, for a design review.
struct Paper
{
    QString file;              ///< the path of the menu file
    QList<PaperMenu> menus;    ///< in the order of the file
    QList<PaperKey> immediate; ///< the editors that the unit opens itself ("IK")
    QList<PaperPicture> boxes; ///< the message boxes ("DB"), each alone
    QStringList faults;        ///< steps that could not be drawn

    /// \return all pictures, in their order.
    QList<PaperPicture> pictures() const;
};
