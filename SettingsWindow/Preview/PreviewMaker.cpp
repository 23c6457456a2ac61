#include "PreviewMaker.h"

class PreviewMaker::Implementation {};

PreviewMaker::PreviewMaker(PreviewPrograms, const PreviewLimits &, QObject *parent)
    : QObject(parent)
{
}

PreviewMaker::~PreviewMaker() = default;

void PreviewMaker::setJob(const PreviewJob &) {}

void PreviewMaker::show(int, Side, QSize, qreal) {}

void PreviewMaker::showThumbnail(int, Side, QSize, qreal) {}

bool PreviewMaker::isBusy() const
{
    return false;
}

void PreviewMaker::stop() {}

PreviewPrograms PreviewPrograms::ofThisProgram()
{
    return {};
}
