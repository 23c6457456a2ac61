#pragma once

#include <QString>

class QLabel;

/// Has a label say something, hides one that has nothing to say. Screen readers say it, too, but
/// not again and again.
void tell(QLabel &label, const QString &words);
