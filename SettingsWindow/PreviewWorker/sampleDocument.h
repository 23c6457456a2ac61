#pragma once

#include <QSizeF>

#include <string>

/// A document to look at where there is no other: a PDF of eight pages with their numbers and grey
/// lines in the place of text, so that it speaks every language.
/// @param page  its pages' extent in points, not empty
std::string sampleDocument(QSizeF page);
