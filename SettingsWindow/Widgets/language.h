#pragma once

class QCoreApplication;
class QLocale;

/// Has a program speak a language: the words of this window, of its model and preview, and of Qt's
/// own dialogs, as far as there are catalogues for it, else English; and has its windows read in
/// the direction of that language. Call it before any window is made.
void speakLanguage(QCoreApplication &program, const QLocale &language);
