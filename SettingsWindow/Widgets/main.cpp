#include "MainWindow.h"
#include "inBackground.h"
#include "language.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QLocale>

#include <algorithm>
#include <string_view>

namespace {

/// What the command line asks for. Ends the program where that is help, the version or a mistake.
MainWindow::Setup setupFromArguments(const QCoreApplication &program)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QCoreApplication::translate("main", "Sets what a printer driven by jobfilter can do, and "
                                            "shows the pages as they will come out."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption destination(
        {QStringLiteral("d"), QStringLiteral("destination")},
        QCoreApplication::translate(
            "main", "The printer to begin with, and a set of settings kept for it."),
        QCoreApplication::translate("main", "PRINTER[/SET]"));
    parser.addOption(destination);
    parser.addPositionalArgument(QStringLiteral("document"),
                                 QCoreApplication::translate("main", "A PDF file."),
                                 QStringLiteral("[DOCUMENT]"));
    parser.process(program);

    const QString wanted = parser.value(destination);
    return {PreviewPrograms::ofThisProgram(),
            Model::serversOfTheUser(),
            {},
            wanted.section(u'/', 0, 0),
            wanted.section(u'/', 1),
            parser.positionalArguments().value(0)};
}

/// Whether the program is only asked about itself, which it answers without a screen, too.
bool isQuestion(int argc, char *argv[])
{
    constexpr std::string_view questions[] = {"-h", "--help", "--help-all", "-v", "--version"};
    return std::any_of(argv + 1, argv + argc, [&](std::string_view argument) {
        return std::ranges::find(questions, argument) != std::end(questions);
    });
}

/// Shows the window until it is closed. @return the program's exit status
int run(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(QStringLiteral("jobfilter-settings"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KL_VERSION));
    if (isQuestion(argc, argv)) {
        QCoreApplication program(argc, argv);
        speakLanguage(program, QLocale());
        setupFromArguments(program);
    }
    QApplication program(argc, argv);
    QApplication::setDesktopFileName(QStringLiteral("org.example.jobfilter.settings"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/org.example.jobfilter.settings.svg")));
    speakLanguage(program, QLocale());

    MainWindow window(setupFromArguments(program));
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    endProgram(run(argc, argv));
}
