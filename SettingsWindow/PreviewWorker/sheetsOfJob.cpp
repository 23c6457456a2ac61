#include "sheetsOfJob.h"

namespace {

Sheet sheetFrom(const PrintedDocument &document, int page)
{
    Sheet sheet;
    sheet.frontPage = page;
    sheet.front = document.pages.at(page);
    sheet.turnedOver = document.turnedOver;
    if (!document.oneSided && page + 1 < document.pages.size()) {
        sheet.backPage = page + 1;
        sheet.back = document.pages.at(page + 1);
    }
    sheet.tray = document.paper.tray;
    sheet.medium = document.paper.medium;
    return sheet;
}

void makeCover(Sheet &sheet, Sheet::Kind kind, const Paper &paper)
{
    sheet.kind = kind;
    sheet.tray = paper.tray;
    sheet.medium = paper.medium;
}

} // namespace

QList<Sheet> sheetsOfJob(const PrintedDocument &document)
{
    QList<Sheet> sheets;
    const int sides = document.oneSided ? 1 : 2;
    for (int page = 0; page < document.pages.size(); page += sides)
        sheets.append(sheetFrom(document, page));
    if (!sheets.isEmpty() && document.backCover)
        makeCover(sheets.last(), Sheet::Kind::BackCover, *document.backCover);
    if (!sheets.isEmpty() && document.frontCover)
        makeCover(sheets.first(), Sheet::Kind::FrontCover, *document.frontCover);
    return sheets;
}
