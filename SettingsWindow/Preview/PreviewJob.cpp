#include "PreviewJob.h"

#include <QCoreApplication>
#include <QFileInfo>

PreviewPrograms PreviewPrograms::ofThisProgram()
{
    const QString folder = QCoreApplication::applicationDirPath();
    PreviewPrograms built = {folder + "/jobfilter-preview", folder + "/../Toolkit.bundle"};
    if (QFileInfo(built.worker).isExecutable())
        return built;
    return {KL_INSTALLED_PREVIEW, KL_INSTALLED_TOOLKIT};
}
