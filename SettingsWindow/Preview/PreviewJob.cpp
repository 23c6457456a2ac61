#include "PreviewJob.h"

#include <QCoreApplication>
#include <QFileInfo>

PreviewPrograms PreviewPrograms::ofThisProgram()
{
    const QString folder = QCoreApplication::applicationDirPath();
    PreviewPrograms built = {folder + "/jobfilter-preview", folder + "/../Toolkit.bundle"};
    if (QFileInfo(built.worker).isExecutable())
        return built;
    const QString installed = folder + "/" KL_WAY_TO_MODULES;
    return {installed + "/jobfilter-preview", installed + "/Toolkit.bundle"};
}
