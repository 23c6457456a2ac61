#pragma once

#include "PreviewMessages.h"

#include <QString>

// What is said of a preview, a sentence or more in the window's language.

QString wordsOf(Failure failure, const QString &detail);
QString wordsOf(Note note);
/// With the toolkit's own words, which are English.
QString wordsOf(const Refusal &refusal);
