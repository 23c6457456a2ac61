#pragma once

#include "Sheet.h"

#include <QList>
#include <QSizeF>
#include <QString>

#include <optional>

/// What sheets are taken from: choices of the PPD, by their keywords.
struct Paper {
    QString tray = {};
    QString medium = {};
};

/// A document as it is printed.
struct PrintedDocument {
    QList<QSizeF> pages; ///< of all sides, blank ones too, in points
    bool oneSided = true;
    Sheet::Edge turnedOver = Sheet::Edge::Long; ///< of two-sided sheets
    Paper paper = {};
    std::optional<Paper> frontCover = {}; ///< the first sheet
    std::optional<Paper> backCover = {};  ///< the last sheet
};

/// Which pages share a sheet: each has one of its own, or two follow each other on front and back.
/// @return in the order of the pages; empty without pages. Of a single sheet that is to be both
///         covers, it is the front one.
QList<Sheet> sheetsOfJob(const PrintedDocument &document);
