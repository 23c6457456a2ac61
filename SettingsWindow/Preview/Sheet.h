#pragma once

#include <QMetaType>
#include <QSizeF>
#include <QString>

/// A side of a sheet of paper.
enum class Side { Front, Back };

/// A sheet of paper, as it leaves the printer. A value.
struct Sheet {
    enum class Kind {
        Job,        ///< pages of the document, or a sheet of its booklet
        FrontCover, ///< the first one
        BackCover,  ///< the last one
    };
    /// The edge over which the sheet is turned to read its back.
    enum class Edge { Long, Short };

    Kind kind = Kind::Job;
    /// Of the document as the toolkit has left it, counted from 0. A side that stays blank because
    /// the other side of a cover, or the next sheet, asks for it is a page, too.
    int frontPage = 0;
    int backPage = -1; ///< -1 for a sheet that is printed on one side
    Edge turnedOver = Edge::Long;
    /// The tray and the medium that it is taken from, choices of the PPD's options "InputSlot" and
    /// "MediaType" by their keywords; the PPD has the words. Empty where the job does not say.
    QString tray = {};
    QString medium = {};
    QSizeF front = {}; ///< of the front page as it is read, in points
    QSizeF back = {};  ///< of the back page; empty when there is none

    bool hasBack() const { return backPage >= 0; }
    bool operator==(const Sheet &) const = default;
};

Q_DECLARE_METATYPE(Sheet)
